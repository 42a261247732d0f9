#include "host/editor/print_command.h"

#include <filesystem>
#include <iterator>
#include <string>

#include "host/editor/document.h"
#include "host/editor/edit_frame.h"
#include "host/failure.h"
#include "host/print/pdf.h"
#include "model/paths.h"
#include "platform/dialog.h"
#include "platform/number_text.h"
#include "platform/window_system.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr const char* kPapers[] = {"A4", "A3", "A2", "A1", "A0"};
constexpr const char* kFit = "充满";

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

}  // namespace

void PrintModel(CEditFrame& frame) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    PdfPage page;
    DialogForm form;
    form.m_name = "print";
    form.m_title = "打印成 PDF";
    form.m_fields = {
        {DialogField::Kind::kChoice, "paper", "图幅", "0", {std::begin(kPapers), std::end(kPapers)}},
        {DialogField::Kind::kChoice, "turn", "方向", "0", {"横向", "纵向"}},
        {DialogField::Kind::kChoice, "part", "范围", "0", {"全部图形", "当前显示"}},
        {DialogField::Kind::kText, "scale", "比例 (充满 或 1:n)", kFit, {}}};
    form.m_check = [&](DialogForm& f) -> std::string {
        return ReadPage(f, page) ? "" : "比例应是“充满”或 1:100 这样的数";
    };
    if (system->RunDialog(form) != 0 || !ReadPage(form, page)) return;
    if (form.Value("part") == "1") page.window = ShownPart(frame.View());
    const std::string& model = frame.Document().Path();
    page.caption = model.empty() ? "未命名" : std::filesystem::path(model).filename().string();
    const std::string stem =
        model.empty() ? "未命名" : std::filesystem::path(model).replace_extension().string();
    const auto chosen = system->AskPath({true, "打印成 PDF", "PDF 文件", "*.pdf", stem + ".pdf"});
    if (!chosen || chosen->empty()) return;
    const std::string path = ConfirmFileExt(CString(*chosen), "pdf").GetString();
    try {
        const WrittenPdf written = WritePdf(path, frame.DataBase(), page);
        frame.Tell("已打印 " + path + ": " + page.paper +
                   ", 1:" + FixedReal(written.scale, written.scale < 10 ? 2 : 0) +
                   (written.cut ? "; 这个比例放不下全部图形" : ""));
    } catch (const DataFailure& failure) {
        frame.Warn("无法打印 " + path + ": " + ReasonInChinese(failure.what(), path));
    }
}
