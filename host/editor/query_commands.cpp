// The editor's commands that ask: coordinates, areas, storeys; and texts.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "host/editor/check_list.h"
#include "host/editor/edit_frame.h"
#include "host/editor/editor_command.h"
#include "host/editor/plate_pick.h"
#include "host/plate_look.h"
#include "host/point_command.h"
#include "model/profile.h"
#include "plates/mian_goujian.h"
#include "platform/dialog.h"
#include "platform/number_text.h"
#include "platform/window_system.h"
#include "view/tvo_view_mgr.h"

namespace {

std::string Millimetres(double v) { return FixedReal(v, 2); }

// ---- coordinates ------------------------------------------------------------------------------------------

class CoordinateCommand : public PointCommand {
public:
    CoordinateCommand() : PointCommand("Coord", {"请输入要查询的点"}, nullptr) {}

private:
    unsigned TakePoint() override {
        const CFPoint& p = m_points[0];
        AppendPromptText(CString("坐标 X = " + Millimetres(p.x) + ", Y = " + Millimetres(p.y)));
        return QS_FINISH;
    }
};

// ---- areas ------------------------------------------------------------------------------------------------

CString AreaLine(const std::string& what, double area, double around) {
    return CString(what + "面积 = " + FixedReal(area / 1e6, 3) + " m², 周长 = " + FixedReal(around / 1e3, 3) +
                   " m");
}

/// Of a plate that is clicked, or, after P, of a polygon of points. A click inside a plate snaps to nothing.
class AreaCommand : public CDtWorkEx {
public:
    AreaCommand() {
        m_strName = "Area";
        m_strPrompt = kPlatePrompt;
        m_nObjectHint = QS_TEXT;
        m_nMouseMask = MN_LDOWN;
    }

    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override {
        if (hint == OH_POINT) return TakeCorner(*static_cast<const CFPoint*>(object));
        const CString text(static_cast<const char*>(object));
        if (byDefault) return m_corners.size() > 2 ? TellPolygon() : unsigned{QS_FINISH};
        CFPoint at;
        if (!m_polygon && text.CompareNoCase("P") == 0) return BeginPolygon();
        if (!m_polygon && ReadPlace(text.GetString(), at))
            return TellPlate(at) ? unsigned{QS_FINISH} : Awaited();
        if (!text.IsEmpty()) AppendPromptText(CString("*") + text + ": 未知命令参数*");
        return Awaited();
    }
    unsigned OnMouseNotify(unsigned, unsigned, CFPoint point) override {
        return TellPlate(point) ? unsigned{DTW_NORMAL} : unsigned{DTW_NONE};
    }
    unsigned OnQueryState() override {
        SetPromptText(m_strPrompt);
        return Awaited();
    }

private:
    static constexpr const char* kPlatePrompt = "请点取板, 或 <P> 输入多边形各点";

    unsigned Awaited() const { return m_polygon ? unsigned{QS_POINT} | QS_TEXT : unsigned{QS_TEXT}; }
    bool TellPlate(const CFPoint& at) {
        CMianGouJian* const plate = PlateAt(*static_cast<CTvoHostDataBase*>(m_pDataBase), at);
        if (!plate) AppendPromptText("此处没有板");
        else
            AppendPromptText(AreaLine("板 " + std::to_string(plate->get_m_dwGouJianNO()) + ": ",
                                      plate->GetArea(), plate->GetZhouChang()));
        return plate != nullptr;
    }
    unsigned BeginPolygon() {
        m_polygon = true;
        m_nMouseMask = 0;
        SetPromptText("请输入多边形第1点");
        return Awaited();
    }
    unsigned TakeCorner(const CFPoint& p) {
        m_corners.push_back(p);
        if (m_corners.size() == 1) SwitchRubberLine(new CPolyRubberLine, 0);
        SetPromptText("请输入下一点, 右键结束");
        return Awaited();
    }
    unsigned TellPolygon() {
        double area = 0, around = 0;
        for (std::size_t i = 0, j = m_corners.size() - 1; i < m_corners.size(); j = i++) {
            const double x1 = m_corners[j].x, y1 = m_corners[j].y, x2 = m_corners[i].x, y2 = m_corners[i].y;
            area += (x1 * y2 - x2 * y1) / 2;
            around += std::hypot(x2 - x1, y2 - y1);
        }
        AppendPromptText(AreaLine("", std::fabs(area), around));
        return QS_FINISH;
    }

    bool m_polygon = false;
    std::vector<CFPoint> m_corners;
};

// ---- texts ------------------------------------------------------------------------------------------------

class TextCommand : public PointCommand {
public:
    TextCommand(CString text, double height, double degrees)
        : PointCommand("Text", {"请输入文字左下角点"}, nullptr),
          m_text(std::move(text)),
          m_height(static_cast<float>(height)),
          m_angle(static_cast<float>(degrees * std::numbers::pi / 180)) {}

private:
    void Draw() override {
        Db().DrawTextA(m_points[0].x, m_points[0].y, m_text, 0, GJ_STATUS_NORMAL, m_height, m_angle, nullptr,
                       0);
    }

    CString m_text;
    float m_height, m_angle;  // mm, radians
};

bool ReadNumber(const std::string& text, double& value) {
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return !text.empty() && end && *end == '\0' && std::isfinite(value);
}

void AskText(CEditFrame& frame) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    const double least = g_cTvoProfile.m_fTextHeightMin / 1000.0,
                 most = g_cTvoProfile.m_fTextHeightMax / 1000.0;
    static std::string height = "0.5", angle = "0";  // those of the last one
    DialogForm form;
    form.m_name = "text";
    form.m_title = "文字";
    form.m_fields = {{DialogField::Kind::kText, "text", "文字", "", {}},
                     {DialogField::Kind::kNumber, "height", "字高(米)", height, {}},
                     {DialogField::Kind::kNumber, "angle", "角度(度)", angle, {}}};
    form.m_check = [&](DialogForm& f) -> std::string {
        double h = 0, a = 0;
        if (CString(f.Value("text")).IsEmpty()) return "请输入文字";
        if (f.Value("text").find_first_of("\r\n\t") != std::string::npos) return "文字只能是一行";
        if (!ReadNumber(f.Value("height"), h) || h < least || h > most)
            return "字高应在 " + FixedReal(least, 2) + " 到 " + FixedReal(most, 2) + " 米之间";
        return ReadNumber(f.Value("angle"), a) && std::fabs(a) <= 36000 ? "" : "角度不是数";
    };
    if (system->RunDialog(form) != 0) return;
    double h = 0, a = 0;
    ReadNumber(height = form.Value("height"), h);
    ReadNumber(angle = form.Value("angle"), a);
    frame.Start(new TextCommand(CString(form.Value("text")), h * 1000, a));
}

// ---- storeys ----------------------------------------------------------------------------------------------

std::string StoreyName(int storey) { return storey == -1 ? "未分层" : std::to_string(storey) + " 层"; }

void AskStorey(CEditFrame& frame) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    CTvoHostDataBase& db = frame.DataBase();
    std::map<int, int> counts;
    for (POSITION p = db.GetContain().GetHeadPosition(); p;) ++counts[db.GetContain().GetNext(p)->m_nCeng];
    std::string note = "构件数: ";
    for (const auto& [storey, count] : counts)
        note += (note.back() == ' ' ? "" : ", ") + StoreyName(storey) + " " + std::to_string(count);
    if (counts.empty()) note = "还没有构件";
    DialogForm form;
    form.m_name = "storey";
    form.m_title = "楼层";
    form.m_fields = {
        {DialogField::Kind::kNote, "note", "", note, {}},
        {DialogField::Kind::kNumber, "storey", "当前楼层 (-1 未分层)", std::to_string(db.GetCurCeng()), {}},
        {DialogField::Kind::kCheck, "only", "只显示当前楼层", db.m_bOneStorey ? "1" : "0", {}}};
    const auto read = [](const DialogForm& f, double& storey) {
        return ReadNumber(f.Value("storey"), storey) && storey >= -1 && storey <= 1000000 &&
               storey == std::floor(storey);
    };
    form.m_check = [&](DialogForm& f) -> std::string {
        double storey = 0;
        return read(f, storey) ? "" : "楼层应是从 -1 起的整数";
    };
    if (system->RunDialog(form) != 0) return;
    double chosen = 0;
    read(form, chosen);
    if (const int storey = static_cast<int>(chosen); storey != db.GetCurCeng()) {
        db.SetCurCeng(storey);
        db.GetContain().SetModifiedFlag(1);  // the file keeps it
    }
    db.m_bOneStorey = form.Value("only") == "1";
    frame.Tell("当前楼层: " + StoreyName(db.GetCurCeng()) + (db.m_bOneStorey ? ", 只显示本层" : ""));
    frame.ModelChanged();
}

constexpr EditorCommand kCommands[] = {
    {0x70001, "查询", "坐标", "Coord", "点的坐标",
     [](CEditFrame& frame) { frame.Start(new CoordinateCommand); }},
    {0x70002, "查询", "面积", "Area", "板或多边形的面积",
     [](CEditFrame& frame) { frame.Start(new AreaCommand); }},
    {0x70003, "查询", "检查", "Check", "列出使板不能围成的地方", ShowCheckList},
    {0x70004, "绘图", "文字", "Text", "写一行文字", AskText},
    {0x70005, "设置", "楼层", "Storey", "当前楼层", AskStorey},
};

}  // namespace

std::span<const EditorCommand> QueryEditorCommands() { return kCommands; }
