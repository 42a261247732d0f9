#include "host/editor/print_command.h"

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "host/editor/document.h"
#include "host/editor/edit_frame.h"
#include "host/editor/reason_text.h"
#include "host/failure.h"
#include "host/print/pdf.h"
#include "host/print/printers.h"
#include "model/paths.h"
#include "platform/dialog.h"
#include "platform/number_text.h"
#include "platform/window_system.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr const char* kPapers[] = {"A4", "A3", "A2", "A1", "A0"};
constexpr const char* kFit = "充满";
constexpr const char* kPdfTitle = "打印成 PDF";

/// What the view shows.
Extent ShownPart(CTvoViewMgr& view) {
    const CFRect world = view.m_cCoor.DPtoFP(view.GetClientRect());
    return {world.m_fMinX, world.m_fMinY, world.m_fMaxX, world.m_fMaxY};
}

bool ReadPage(const DialogForm& form, PdfPage& page) {
    const std::string paper = form.Value("paper"), scale = form.Value("scale");
    for (std::size_t i = 0; i < std::size(kPapers); ++i)
        if (paper == std::to_string(i)) page.paper = kPapers[i];
    page.landscape = form.Value("turn") == "0";
    page.scale = 0;
    if (scale.empty() || scale == kFit) return true;
    const auto n = ScaleFrom(scale);
    if (n) page.scale = *n;
    return n.has_value();
}

std::string Told(const WrittenPdf& written, const PdfPage& page) {
    return page.paper + ", 1:" + FixedReal(written.scale, written.scale < 10 ? 2 : 0) +
           (written.cut ? "; 这个比例放不下全部图形" : "");
}

std::string ModelName(CEditFrame& frame) {
    const std::string& model = frame.Document().Path();
    return model.empty() ? "未命名" : std::filesystem::path(model).stem().string();
}

void PrintToFile(CEditFrame& frame, CWindowSystem& system, const PdfPage& page) {
    const std::filesystem::path folder = std::filesystem::path(frame.Document().Path()).parent_path();
    const auto chosen = system.AskPath(
        {true, kPdfTitle, "PDF 文件", "*.pdf", (folder / (ModelName(frame) + ".pdf")).string()});
    if (!chosen || chosen->empty()) return;
    const std::string path = ConfirmFileExt(CString(*chosen), "pdf").GetString();
    try {
        const WrittenPdf written = WritePdf(path, frame.DataBase(), page);
        frame.Tell("已打印 " + path + ": " + Told(written, page));
    } catch (const DataFailure& failure) {
        frame.Warn("无法打印 " + path + ": " + ReasonInChinese(failure.what(), path));
    }
}

/// A folder of its own, gone with the object. The file in it bears the model's name: print systems show it.
class PassingFolder {
public:
    PassingFolder() {
        std::error_code error;
        m_path = (std::filesystem::temp_directory_path(error) / "tvo_print_XXXXXX").string();
        if (!::mkdtemp(m_path.data())) m_path.clear();
    }
    PassingFolder(const PassingFolder&) = delete;
    PassingFolder& operator=(const PassingFolder&) = delete;
    ~PassingFolder() {
        std::error_code error;
        if (!m_path.empty()) std::filesystem::remove_all(m_path, error);
    }
    std::string File(const std::string& name) const { return m_path.empty() ? name : m_path + "/" + name; }
    bool IsThere() const { return !m_path.empty(); }

private:
    std::string m_path;
};

/// What hinders the page's going to the printer; empty: it went.
std::string PrintOn(CEditFrame& frame, CWindowSystem& system, const std::string& printer,
                    const PdfPage& page) {
    const PassingFolder folder;
    if (!folder.IsThere()) return "不能写临时文件";
    const std::string file = folder.File(ModelName(frame) + ".pdf");
    WrittenPdf written;
    try {
        written = WritePdf(file, frame.DataBase(), page);
    } catch (const DataFailure& failure) {
        return ReasonInChinese(failure.what(), file);
    }
    system.ShowBusy(true);
    const PrintJob job = SendToPrinter(system, printer, file);
    system.ShowBusy(false);
    if (job.wrong.empty())
        frame.Tell("已送到打印机 " + printer + ": " + Told(written, page) +
                   (job.job.empty() ? "" : ", 任务 " + job.job));
    else if (!job.details.empty()) frame.Tell(job.details);
    return job.wrong;
}

/// The printer would not take it: a file it can be all the same.
bool WantsFileInstead(CWindowSystem& system, const std::string& text) {
    DialogForm form;
    form.m_name = "print-failed";
    form.m_title = "打印";
    form.m_fields = {{DialogField::Kind::kNote, "text", "", text, {}}};
    form.m_buttons = {kPdfTitle, "取消"};
    return system.RunDialog(form) == 0;
}

}  // namespace

void PrintModel(CEditFrame& frame) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    system->ShowBusy(true);
    const PrinterList printers = FindPrinters(*system);
    system->ShowBusy(false);
    std::vector<std::string> targets = {"PDF 文件"};
    targets.insert(targets.end(), printers.names.begin(), printers.names.end());
    PdfPage page;
    DialogForm form;
    form.m_name = "print";
    form.m_title = "打印";
    form.m_fields = {
        {DialogField::Kind::kChoice, "to", "打印到", "0", targets},
        {DialogField::Kind::kChoice, "paper", "图幅", "0", {std::begin(kPapers), std::end(kPapers)}},
        {DialogField::Kind::kChoice, "turn", "方向", "0", {"横向", "纵向"}},
        {DialogField::Kind::kChoice, "part", "范围", "0", {"全部图形", "当前显示"}},
        {DialogField::Kind::kText, "scale", "比例 (充满 或 1:n)", kFit, {}}};
    if (!printers.none.empty())
        form.m_fields.push_back(
            {DialogField::Kind::kNote, "none", "", printers.none + ", 可以打印成 PDF 文件", {}});
    std::size_t target = 0;
    form.m_check = [&](DialogForm& f) -> std::string {
        for (target = 0; target < targets.size() && f.Value("to") != std::to_string(target);) ++target;
        if (target == targets.size()) return "没有这台打印机";
        return ReadPage(f, page) ? "" : "比例应是“充满”或 1:100 这样的数";
    };
    if (system->RunDialog(form) != 0 || !form.m_check(form).empty()) return;
    if (form.Value("part") == "1") page.window = ShownPart(frame.View());
    const std::string& model = frame.Document().Path();
    page.caption = model.empty() ? "未命名" : std::filesystem::path(model).filename().string();
    if (target > 0) {
        const std::string wrong = PrintOn(frame, *system, targets[target], page);
        if (wrong.empty()) return;
        const std::string text = "无法送到打印机 " + targets[target] + ": " + wrong;
        frame.Tell(text);
        if (!WantsFileInstead(*system, text)) return;
    }
    PrintToFile(frame, *system, page);
}
