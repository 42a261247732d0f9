#include "host/editor/command_table.h"

#include <algorithm>
#include <iterator>

#include "host/edit_commands.h"
#include "host/editor/edit_frame.h"
#include "host/editor/editor_command.h"
#include "shell/cmd_map.h"
#include "shell/scr_menu_data.h"
#include "view/tvo_view_mgr.h"

namespace {

// The branches of the screen menu, from the top; those that families add of their own follow.
constexpr const char* kBranches[] = {"文件", "绘图", "修改", "显示", "板", "场", "查询", "设置"};
constexpr int kFirstBranch = 0x80001;

/// Commands that have their names, or what they do, elsewhere.
struct MenuCommand {
    int id;
    const char* branch;
    const char* chinese;
    const char* english;  // null: typed names stand in the table already
    const char* tip;
};

constexpr MenuCommand kDrawing[] = {
    {kCmdLine, "绘图", "直线", nullptr, "两点直线"},
    {kCmdPolyline, "绘图", "折线", nullptr, "连续直线, 右键结束, C 闭合"},
    {kCmdRectangle, "绘图", "矩形", nullptr, "两角点矩形"},
    {kCmdArc3, "绘图", "圆弧", nullptr, "起点, 终点, 弧上一点"},
    {kCmdArcCentre, "绘图", "圆心弧", nullptr, "圆心, 起点, 终点"},
    {kCmdCircle, "绘图", "圆", nullptr, "圆心和圆上一点"},
    {kCmdErase, "修改", "删除", nullptr, "删除选中的轴线"},
    {kCmdTextHeight, "修改", "字高", nullptr, "全部文字的高度"},
    {CMD_UNDO, "修改", "撤销", "UndoStep", "回退一步"},
    {CMD_REDO, "修改", "重做", "RedoStep", "重做一步"},
    {kCmdDistance, "查询", "距离", nullptr, "两点的距离"},
};

void ShowAll(CEditFrame& frame) { frame.View()._Svr_ShowAll(); }
void ShowExtent(CEditFrame& frame) { frame.View()._Svr_Extends(); }
void ShowBefore(CEditFrame& frame) { frame.View()._Svr_ShowPre(); }
void ZoomIn(CEditFrame& frame) { frame.View()._Svr_ShowZoomIn(); }
void ZoomOut(CEditFrame& frame) { frame.View()._Svr_ShowZoomOut(); }
void ShowAgain(CEditFrame& frame) { frame.View()._Svr_ShowAgain(); }
void ShowWindow(CEditFrame& frame) { frame.View()._Svr_ShowRect(); }
void ShowMove(CEditFrame& frame) {
    frame.View().m_nShowMethod = 1;
    frame.View()._SvrSwitchShowMethod();
}

constexpr EditorCommand kShowing[] = {
    {0x20101, "显示", "全图", "All", "模型和网格全部显示 (F5)", ShowAll},
    {0x20102, "显示", "满屏", "Extents", "模型充满窗口", ShowExtent},
    {0x20103, "显示", "开窗", "Window", "放大一个矩形", ShowWindow},
    {0x20104, "显示", "平移", "Move", "移动图形, 中键也可", ShowMove},
    {0x20105, "显示", "放大", "In", "滚轮也可", ZoomIn},
    {0x20106, "显示", "缩小", "Out", "滚轮也可", ZoomOut},
    {0x20107, "显示", "前屏", "Previous", "回到前一屏", ShowBefore},
    {0x20108, "显示", "重画", "Redraw", "重新画图", ShowAgain},
};

std::span<const EditorCommand> ShowEditorCommands() { return kShowing; }

constexpr std::span<const EditorCommand> (*kFamilies[])() = {FileEditorCommands,    ShowEditorCommands,    PlateEditorCommands,
                                                             FieldEditorCommands,   QueryEditorCommands,   SettingEditorCommands,
                                                             RecordEditorCommands};

/// The screen menu as it is being filled: a branch is made when its first command comes.
class MenuFiller {
public:
    MenuFiller() {
        g_cScrnMenuData.m_arrItem.RemoveAll();
        for (const char* branch : kBranches) Branch(branch);
    }
    void Add(const char* branch, const char* name, int id, const char* tip) {
        g_cScrnMenuData.AddScrMenuItem(nullptr, name, name, id, Branch(branch), 1, tip, 0);
    }

private:
    int Branch(const char* caption) {
        const CString wanted(caption);
        int id = kFirstBranch;
        for (const CScrMenuItem& item : g_cScrnMenuData.m_arrItem) {
            if (item.m_nType != 0) continue;
            if (item.m_szCaption == wanted) return item.m_nCmdID;
            ++id;
        }
        g_cScrnMenuData.AddScrMenuItem(nullptr, "", caption, id, 0, 0, "", 0);
        return id;
    }
};

}  // namespace

void AddEditorCommands() {
    AddEditCommands();
    MenuFiller menu;
    const auto enter = [](const char* name, int id) { g_cCmdMap.AddCommandMap(name, id, 0); };
    for (const MenuCommand& command : kDrawing) {
        menu.Add(command.branch, command.chinese, command.id, command.tip);
        if (!command.english) continue;
        enter(command.chinese, command.id);
        enter(command.english, command.id);
    }
    for (const auto family : kFamilies)
        for (const EditorCommand& command : family()) {
            menu.Add(command.branch, command.chinese, command.id, command.tip);
            enter(command.chinese, command.id);
            enter(command.english, command.id);
        }
}

bool RunEditorCommand(CEditFrame& frame, int id) {
    for (const auto family : kFamilies)
        for (const EditorCommand& command : family()) {
            if (command.id != id) continue;
            command.run(frame);
            return true;
        }
    return false;
}

std::string EditorCommandHelp() {
    std::string text;
    for (const auto family : kFamilies)
        for (const EditorCommand& command : family())
            text += std::string("  ") + command.english + ", " + command.chinese + "\n";
    return text;
}
