#include "host/editor/import_dialog.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "controls/dxf_wnd.h"
#include "fields/dxf_import.h"
#include "host/drawing.h"
#include "host/editor/document.h"
#include "host/editor/drawing_size.h"
#include "host/editor/edit_frame.h"
#include "host/editor/reason_text.h"
#include "host/editor/spacing_text.h"
#include "host/editor/tool_table.h"
#include "host/import_job.h"
#include "host/models/model_build.h"
#include "host/net_walk.h"
#include "host/plate_look.h"
#include "model/profile.h"
#include "platform/dialog.h"
#include "platform/dxf/layer_summary.h"
#include "platform/number_text.h"
#include "platform/window_system.h"
#include "view/tvo_view_mgr.h"

namespace {

// Drawings are full of bulges that are nothing but rounding.
constexpr double kFlattestSide = 1e-4;                  // degrees of half the sweep
constexpr int kReportWidth = 470, kReportHeight = 330;  // pixels

/// What a net takes from a layer.
std::uint64_t Usable(const DxfLayerSummary& layer) {
    return layer.m_nLine + layer.m_nPolyline + layer.m_nArc + layer.m_nCircle;
}

constexpr const char* kLayerHeads[] = {"图层", "直线", "多段线", "圆弧", "圆", "其它", "状态"};

/// Its cells under the heads.
std::string Described(const DxfLayerSummary& layer) {
    std::string text = PlainText(layer.m_strName);
    std::replace(text.begin(), text.end(), '\t', ' ');
    for (const std::uint64_t count : {layer.m_nLine, layer.m_nPolyline, layer.m_nArc, layer.m_nCircle, layer.m_nOther}) {
        text += '\t';
        if (count) text += std::to_string(count);
    }
    return text.append(1, '\t').append(layer.m_bFrozen ? "冻结" : layer.m_bOff ? "关闭" : "");
}

// In names of layers, capitals. Numbers and measures of axes are none.
constexpr const char* kAxisWords[] = {"AXIS", "DOTE", "轴"};
constexpr const char* kNoAxisWords[] = {"轴号", "编号", "标注", "尺寸", "TEXT", "DIM", "NUM"};

/// Layers whose name says that they hold axes; of a drawing with one useful layer that one.
std::string ProposedTicks(const std::vector<DxfLayerSummary>& layers) {
    std::string ticks(layers.size(), '0');
    const auto useful = static_cast<std::size_t>(
        std::count_if(layers.begin(), layers.end(), [](const auto& l) { return Usable(l) > 0; }));
    for (std::size_t i = 0; i < layers.size(); ++i) {
        CString name(layers[i].m_strName);
        name.MakeUpper();
        const auto says = [&](const auto& words) {
            return std::any_of(std::begin(words), std::end(words),
                               [&](const char* word) { return name.Find(word) >= 0; });
        };
        const bool axis = says(kAxisWords) && !says(kNoAxisWords);
        if (Usable(layers[i]) > 0 && (axis || useful == 1)) ticks[i] = '1';
    }
    return ticks;
}

/// What was asked for. Names that differ in ASCII case only are one row of the dialog, and several layers of
/// the drawing.
std::set<const DxfLayer*> Ticked(const DXF& drawing, const std::vector<DxfLayerSummary>& rows,
                                 const std::string& ticks) {
    std::set<const DxfLayer*> layers;  // only looked up
    for (std::size_t i = 0; i < rows.size() && i < ticks.size(); ++i)
        for (const DxfLayer& layer : drawing.GetLayers())
            if (ticks[i] == '1' && CString(layer.m_strName).CompareNoCase(rows[i].m_strName.c_str()) == 0)
                layers.insert(&layer);
    return layers;
}

bool ReadScale(const std::string& text, double& scale) {
    if (!CheckScale(text).empty()) return false;
    scale = std::strtod(text.c_str(), nullptr);
    return true;
}

enum Target { kIntoNew = 0, kIntoThis = 1 };

struct Choice {
    std::set<const DxfLayer*> layers;
    std::string names;
    double scale = 1;
    Target target = kIntoNew;
    bool plates = true;
};

/// The unit of the drawing and the scale that it stands for: one follows the other, whichever is changed.
class UnitFields {
public:
    explicit UnitFields(const DxfHeader& header) {
        const std::size_t unit = UnitOfHeader(header.m_nInsUnits);
        m_known = unit < DrawingUnits().size();
        m_unit = std::to_string(m_known ? unit : 0);
        m_scale = NumberText(m_known ? DrawingUnits()[unit].millimetres : 1);
    }
    void AddTo(DialogForm& form) const {
        std::vector<std::string> names;
        for (const DrawingUnit& unit : DrawingUnits()) names.push_back(unit.name);
        names.push_back("自定");
        form.m_fields.push_back({DialogField::Kind::kChoice, "unit", m_known ? "图纸单位" : "图纸单位 (图中未说明)", m_unit, names});
        form.m_fields.push_back({DialogField::Kind::kNumber, "scale", "比例 (乘到毫米)", m_scale, {}});
    }
    void Follow(DialogForm& form) {
        const std::string unit = form.Value("unit"), scale = form.Value("scale");
        if (unit != m_unit) {
            for (std::size_t i = 0; i < DrawingUnits().size(); ++i)
                if (unit == std::to_string(i)) form.SetValue("scale", NumberText(DrawingUnits()[i].millimetres));
        } else if (double value = 0; scale != m_scale && ReadScale(scale, value)) {
            form.SetValue("unit", std::to_string(UnitOfScale(value)));
        }
        m_unit = form.Value("unit");
        m_scale = form.Value("scale");
    }

private:
    std::string m_unit, m_scale;  // as they stood
    bool m_known = false;         // the drawing tells
};

/// Shows the dialog; false for a cancel.
bool AskLayers(CEditFrame& frame, const std::string& path, const DXF& drawing,
               const std::vector<DxfLayerSummary>& rows, Choice& choice) {
    CDxfWnd preview;  // what will not come is faint
    preview.SetDrawing(&drawing);
    preview.SetHiddenDimmed(true);
    DialogForm form;
    form.m_name = "import";
    form.m_title = "DXF 输入: " + std::filesystem::path(path).filename().string();
    std::vector<std::string> described;
    for (const DxfLayerSummary& row : rows) described.push_back(Described(row));
    const bool fresh = !frame.Document().IsModified() && frame.Document().Path().empty();
    form.m_fields = {{DialogField::Kind::kTicks, "layers", "", ProposedTicks(rows), described}};
    form.m_fields.back().m_heads = {std::begin(kLayerHeads), std::end(kLayerHeads)};
    UnitFields unit(drawing.GetHeader());
    unit.AddTo(form);
    form.m_fields.push_back({DialogField::Kind::kNote, "size", "输入后大小", "", {}});
    form.m_fields.push_back({DialogField::Kind::kWarning, "warning", "", "", {}});
    form.m_fields.push_back({DialogField::Kind::kChoice, "target", "放到", fresh ? "0" : "1", {"新模型", "当前模型"}});
    form.m_fields.push_back({DialogField::Kind::kCheck, "plates", "形成板", "1", {}});
    form.m_preview = &preview;
    form.m_previewWidth = 460;
    form.m_previewHeight = 400;
    const DrawingSizes sizes(drawing, rows);
    const double tolerance = g_cTvoProfile.m_nNetTolerance;
    form.m_check = [&](DialogForm& f) -> std::string {
        unit.Follow(f);
        const auto layers = Ticked(drawing, rows, f.Value("layers"));
        // With nothing ticked yet all can be looked at, and the unit judged.
        const std::string shown = layers.empty() ? std::string(rows.size(), '1') : f.Value("layers");
        for (std::size_t i = 0; i < rows.size(); ++i)
            preview.SetLayerShown(CString(rows[i].m_strName), i < shown.size() && shown[i] == '1');
        double scale = 0;
        const bool scaled = ReadScale(f.Value("scale"), scale);
        const DrawingSizes::Size size = scaled ? sizes.Of(shown, scale, tolerance) : DrawingSizes::Size();
        f.SetValue("size", SizeText(size) + (layers.empty() && scaled ? " (全部图层)" : ""));
        f.SetValue("warning", SizeWarning(size, tolerance));
        if (layers.empty()) return "请勾选图层";
        return scaled ? "" : "比例应是 1e-9 到 1e9 的数";
    };
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || system->RunDialog(form) != 0) return false;
    const std::string ticks = form.Value("layers");
    choice.layers = Ticked(drawing, rows, ticks);
    for (std::size_t i = 0; i < rows.size() && i < ticks.size(); ++i)
        if (ticks[i] == '1')
            choice.names += (choice.names.empty() ? "" : ", ") + PlainText(rows[i].m_strName);
    choice.target = form.Value("target") == "1" ? kIntoThis : kIntoNew;
    choice.plates = form.Value("plates") == "1";
    return ReadScale(form.Value("scale"), choice.scale);
}

// ---- the report -------------------------------------------------------------------------------------------

std::string KindText(const std::map<std::string, std::uint64_t>& counts) {
    std::uint64_t sum = 0;
    std::string text;
    for (const auto& [kind, count] : counts) {
        sum += count;
        text += (text.empty() ? "" : ", ") + PlainText(kind) + " " + std::to_string(count);
    }
    return std::to_string(sum) + (text.empty() ? "" : ": " + text);
}

std::vector<std::vector<std::string>> ReportRows(CTvoHostDataBase& db, const std::string& path, const Choice& choice,
                                        const DxfImportReport& report) {
    const auto number = [](std::uint64_t n) { return std::to_string(n); };
    const DxfPieceCounts& pieces = report.pieces;
    const auto lines = NetLines(db);
    const auto arcs =
        std::count_if(lines.begin(), lines.end(), [](const CGjNetLine* line) { return line->m_nArc == 1; });
    std::vector<std::vector<std::string>> rows = {
        {"图纸", PlainText(path)},
        {"图层", choice.names},
        {"图元", "图纸共 " + number(report.entities)},
        {"取用", KindText(report.taken)},
        {"线段", number(pieces.taken) + ", 其中 " + number(pieces.existed) + " 已存在"},
        {"拒绝", "太短 " + number(pieces.tooShort) + ", 两端同点 " + number(pieces.degenerate) + ", 不是数 " +
                     number(pieces.notFinite + report.dropped)},
        {"跳过", KindText(report.skipped)},
        {"轴网", "节点 " + number(NetNodes(db).size()) + ", 轴线 " + number(lines.size()) + " (圆弧 " +
                     std::to_string(arcs) + ")"},
    };
    if (db.PlatesFollow()) {
        rows.push_back({"板", number(NetPlates(db).size()) + ", 共 " + AreaText(PlateArea(db))});
        if (const std::size_t dangling = DanglingLines(db).size())
            rows.push_back({"提示", number(dangling) + " 条轴线不围成板, 用“检查”查看"});
    }
    if (report.closedNotMade)
        rows.push_back({"提示", number(report.closedNotMade) + " 条闭合多段线的闭合边没有生成"});
    if (report.read.m_eOutcome == DxfOutcome::Truncated)
        rows.push_back({"提示", "图纸在第 " + number(report.read.m_nLine) + " 行中断, 取用前面部分"});
    return rows;
}

void ShowReport(CEditFrame& frame, const std::vector<std::vector<std::string>>& rows) {
    auto window = std::make_unique<ToolTable>();
    window->Column("项目", 70);
    window->Column("内容", 300);
    window->Fill(rows);
    const int left = std::max(0, frame.GetClientRect().right - kReportWidth - 140), top = 60;
    frame.ShowTool("report", std::move(window), {left, top, left + kReportWidth, top + kReportHeight},
                   "DXF 输入报告");
}

}  // namespace

bool RunImportDialog(CEditFrame& frame, const std::string& path) {
    DXF drawing;
    drawing.Read_FileDxf_To_Mem(path.c_str());
    DxfImportReport report;
    report.read = drawing.GetResult();
    report.header = drawing.GetHeader();
    if (!report.read.Ok() && report.read.m_eOutcome != DxfOutcome::Truncated) {
        frame.Warn("无法打开 " + path + ": 不是 DXF 图纸或已损坏 (" +
                   ReasonInChinese(report.read.m_strReason, path) + ")");
        return false;
    }
    std::vector<DxfLayerSummary> rows = SummarizeLayers(drawing);
    if (std::none_of(rows.begin(), rows.end(), [](const DxfLayerSummary& row) { return Usable(row) > 0; })) {
        frame.Warn(path + ": 图纸中没有直线, 多段线, 圆弧或圆");
        return false;
    }
    Choice choice;
    if (!AskLayers(frame, path, drawing, rows, choice)) return false;
    if (choice.target == kIntoNew && !frame.Document().StartEmpty()) return false;
    frame.View().ReSetToInitialState(1);

    CTvoHostDataBase& db = frame.DataBase();
    DxfImportOptions options;
    options.scale = choice.scale;
    options.flattest = kFlattestSide;
    db.Start();
    db.DoEdit([&] { ImportDxfLayers(drawing, choice.layers, options, db, &frame, report); });
    db.DeleteIndependentNetNode();
    if (choice.plates) db.FormPlates();
    db.SortBianHaoAll();
    frame.ShutDownProgress();
    frame.ModelReplaced();
    frame.Tell("已输入 " + path + ": 轴线 " + std::to_string(NetLines(db).size()) + " 条, 板 " +
               std::to_string(NetPlates(db).size()) + " 块");
    ShowReport(frame, ReportRows(db, path, choice, report));
    return true;
}
