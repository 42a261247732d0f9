// The editor's commands of settings, and of axis grids, whose dialogs stand beside these.
#include "host/editor/axis_grid_dialog.h"
#include "host/editor/edit_frame.h"
#include "host/editor/editor_command.h"
#include "host/editor/setting_dialogs.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr int kBase = 0x60001;

constexpr EditorCommand kCommands[] = {
    {kBase + 0, "绘图", "正交轴网", "AxisGrid", "按开间和进深生成正交轴网",
     [](CEditFrame& frame) { AskAxisGrid(frame.DataBase(), frame.View(), false); }},
    {kBase + 1, "绘图", "圆弧轴网", "ArcGrid", "按开间角和进深生成圆弧轴网",
     [](CEditFrame& frame) { AskAxisGrid(frame.DataBase(), frame.View(), true); }},
    {kBase + 2, "设置", "捕捉角度设置", "SnapAngles", "角度捕捉的十个方向",
     [](CEditFrame& frame) { AskSnapAngles(frame.View()); }},
    {kBase + 3, "设置", "捕捉总信息", "SnapSettings", "显示和捕捉的开关, 靶标大小",
     [](CEditFrame& frame) { frame.SetSnapOption(); }},
    {kBase + 4, "设置", "步长设置", "Steps", "键盘步长和背景网格",
     [](CEditFrame& frame) { AskSteps(frame.DataBase(), frame.View()); }},
};

}  // namespace

std::span<const EditorCommand> SettingEditorCommands() { return kCommands; }
