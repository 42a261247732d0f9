#include "host/edit_commands.h"

#include <cmath>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "host/host_data_base.h"
#include "host/point_command.h"
#include "net/gj_net_line.h"
#include "platform/number_text.h"
#include "platform/saturate.h"
#include "shell/cmd_map.h"
#include "view/rubber_line.h"
#include "view/simple_commands.h"
#include "view/tvo_view_mgr.h"

namespace {

struct EditCommand {
    int id;
    const char* chinese;
    const char* english;
    const char* help;
};

constexpr EditCommand kCommands[] = {
    {kCmdLine, "直线", "Line", "a line by two points"},
    {kCmdPolyline, "折线", "PLine", "lines through points; a right click ends, C closes"},
    {kCmdRectangle, "矩形", "Rect", "four lines by two corners"},
    {kCmdArc3, "圆弧", "Arc", "an arc by its start, its end and a point between"},
    {kCmdArcCentre, "圆心弧", "ArcC", "an arc by its centre, its start and its end, anticlockwise"},
    {kCmdCircle, "圆", "Circle", "a circle by its centre and a point on it"},
    {kCmdErase, "删除", "Erase", "deletes the lines that are selected; a right click ends the selection"},
    {kCmdDistance, "距离", "Dist", "tells the distance of two points"},
    {kCmdTextHeight, "字高", "TextHeight", "sets the height of all texts, in metres"},
};

CString Length(double millimetres) { return CString(FixedReal(millimetres, 2)); }

class LineCommand : public PointCommand {
public:
    LineCommand() : PointCommand("Line", {"请输入起点", "请输入终点"}, new CLineRubberLine) {}

private:
    void Draw() override { AddLine(m_points[0], m_points[1]); }
};

/// Draws each piece as it is given; all of them are one undo step.
class PolylineCommand : public PointCommand {
public:
    PolylineCommand() : PointCommand("PLine", {"请输入起点", "请输入下一点, 右键结束, <C>闭合"}, new CLineRubberLine) {
        m_nObjectHint = QS_POINT;
    }
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override {
        if (hint != OH_TEXT) return PointCommand::OnGetObject(hint, object, byDefault);
        const CString text(static_cast<const char*>(object));
        if (text.IsEmpty() && byDefault) return QS_FINISH;
        if (text.CompareNoCase("C") == 0 && m_points.size() > 2) {
            Db().DoEdit([&] { AddLine(m_points.back(), m_points.front()); });
            return QS_FINISH;
        }
        AppendPromptText(CString("*") + text + ": 未知命令参数*");
        return Awaited();
    }
    unsigned OnQueryState() override {
        Ask();
        return Awaited();
    }

private:
    unsigned Awaited() const { return m_points.empty() ? unsigned{QS_POINT} : unsigned{QS_POINT} | QS_TEXT; }
    unsigned TakePoint() override {
        const std::size_t n = m_points.size();
        if (n == 2) Db().Start();
        if (n > 1) Db().DoEdit([&] { AddLine(m_points[n - 2], m_points[n - 1]); });
        Ask();
        return Awaited();
    }
};

class RectangleCommand : public PointCommand {
public:
    RectangleCommand() : PointCommand("Rect", {"请输入第1角点", "请输入第2角点"}, new CRectRubberLine) {}

private:
    void Draw() override {
        const CFPoint a = m_points[0], c = m_points[1], b(c.x, a.y, 0), d(a.x, c.y, 0);
        AddLine(a, b);
        AddLine(b, c);
        AddLine(c, d);
        AddLine(d, a);
    }
};

class Arc3Command : public PointCommand {
public:
    Arc3Command() : PointCommand("Arc", {"请输入圆弧起点", "请输入圆弧终点", "请输入圆弧经过的点"}, new CArcRubberLine) {}

private:
    void Draw() override { Db().AddArc(m_points[0], m_points[1], m_points[2]); }
};

float Degrees(const CFPoint& from, const CFPoint& to) {
    const double a = std::atan2(static_cast<double>(to.y) - from.y, static_cast<double>(to.x) - from.x) * 180 / 3.14159265358979323846;
    return static_cast<float>(a < 0 ? a + 360 : a);
}

float Distance(const CFPoint& a, const CFPoint& b) { return std::hypot(a.x - b.x, a.y - b.y); }

class ArcCentreCommand : public PointCommand {
public:
    ArcCentreCommand() : PointCommand("ArcC", {"请输入圆心", "请输入圆弧起点", "请输入圆弧终点"}, new CPieRubberLine) {}

private:
    void Draw() override {
        const float r = Distance(m_points[0], m_points[1]);
        if (r > 0) Db().AddArc(m_points[0], r, Degrees(m_points[0], m_points[1]), Degrees(m_points[0], m_points[2]));
        else TellTooNear();
    }
};

class CircleCommand : public PointCommand {
public:
    CircleCommand() : PointCommand("Circle", {"请输入圆心", "请输入圆上一点"}, new CCircleRubberLine) {}

private:
    void Draw() override {
        const float r = Distance(m_points[0], m_points[1]);
        if (!(r > 0)) return TellTooNear();
        // A line of the net has two ends: two halves.
        Db().AddArc(m_points[0], r, 0, 180);
        Db().AddArc(m_points[0], r, 180, 360);
    }
};

class DistanceCommand : public PointCommand {
public:
    DistanceCommand() : PointCommand("Dist", {"请输入第1点", "请输入第2点"}, new CLineRubberLine) {}

private:
    unsigned TakePoint() override {
        if (m_points.size() < 2) return PointCommand::TakePoint();
        const CFPoint &a = m_points[0], &b = m_points[1];
        AppendPromptText(CString("距离 = ") + Length(std::hypot(static_cast<double>(b.x) - a.x, static_cast<double>(b.y) - a.y)) +
                         ", dx = " + Length(static_cast<double>(b.x) - a.x) + ", dy = " + Length(static_cast<double>(b.y) - a.y));
        return QS_FINISH;
    }
};

/// The heights of the texts themselves change, as one undo step, where the library's command changes their pictures alone.
class TextHeightCommand : public CCmdSetTextHeight {
public:
    using CCmdSetTextHeight::CCmdSetTextHeight;
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override {
        // The pictures that stand are left alone: undo brings them back.
        CTvoDataBase* const base = std::exchange(m_pDataBase, nullptr);
        const unsigned state = CCmdSetTextHeight::OnGetObject(hint, object, byDefault);
        m_pDataBase = base;
        const char* const text = hint == OH_TEXT ? static_cast<const char*>(object) : "";
        if (state != QS_FINISH || !*text) return state;
        const double height = LeadingReal(text) * 1000;  // of metres
        static_cast<CTvoViewMgr*>(m_pView)->m_nTextHeight = SaturatedInt(height);
        auto& db = *static_cast<CTvoHostDataBase*>(m_pDataBase);
        db.Start();
        AppendPromptText(CString(std::to_string(db.SetTextHeights(static_cast<float>(height))) + " 个文字改了字高"));
        return state;
    }
};

/// Deletes lines that are picked first. The selection stays while the view is moved.
class EraseCommand : public CCmdSimpleSelect {
public:
    EraseCommand(CTvoHostDataBase& db, CTvoViewMgr& view) : CCmdSimpleSelect(&db, &view, GJLX_NET_LINE, 0) {
        m_strName = "Erase";
        m_strPrompt = "请选择要删除的轴线";
        m_pEnd = [](CTvoDataBase* base, CTvoViewMgr* shown, CArray<CGouJianEx*, CGouJianEx*>& lines) {
            auto& net = *static_cast<CTvoHostDataBase*>(base);
            shown->ClearSelectedList();  // what is deleted is selected no more
            net.Start();
            net.DoEdit([&] { net.DeleteNetLine(lines); });
        };
    }
    void OnPrepare() override { m_pView->m_bKeepSelected = 1; }
};

}  // namespace

void AddEditCommands() {
    g_cCmdMap.AddBasicCommands();
    for (const EditCommand& command : kCommands) {
        g_cCmdMap.AddCommandMap(command.chinese, command.id, 0);
        g_cCmdMap.AddCommandMap(command.english, command.id, 0);
    }
}

std::string EditCommandHelp() {
    std::string text;
    for (const EditCommand& command : kCommands) {
        std::string head = std::string("  ").append(command.english) + ", " + command.chinese;
        // A Chinese character takes two columns and three bytes.
        const std::size_t letters = std::string(command.chinese).size() / 3;
        head.resize(std::max<std::size_t>(head.size() + 2, 28 + letters), ' ');
        text += head + command.help + "\n";
    }
    return text;
}

CDtWorkEx* MakeEditCommand(int id, CTvoHostDataBase& db, CTvoViewMgr& view) {
    CDtWorkEx* command = nullptr;
    switch (id) {
        case kCmdLine: command = new LineCommand; break;
        case kCmdPolyline: command = new PolylineCommand; break;
        case kCmdRectangle: command = new RectangleCommand; break;
        case kCmdArc3: command = new Arc3Command; break;
        case kCmdArcCentre: command = new ArcCentreCommand; break;
        case kCmdCircle: command = new CircleCommand; break;
        case kCmdErase: command = new EraseCommand(db, view); break;
        case kCmdDistance: command = new DistanceCommand; break;
        case kCmdTextHeight: command = new TextHeightCommand(&db, &view, 0); break;
        default: return nullptr;
    }
    command->m_pView = &view;
    command->m_pDataBase = &db;
    return command;
}
