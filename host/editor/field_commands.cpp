// The editor's commands of fields.
#include <memory>

#include "fields/gj_chang.h"
#include "host/editor/chang_3d_view.h"
#include "host/editor/edit_frame.h"
#include "host/editor/editor_command.h"
#include "host/editor/field_actions.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr int kBase = 0x50001;
constexpr const char* kBranch = "场";

template <void (*kAction)(CTvoHostDataBase&, CTvoViewMgr&)>
void Do(CEditFrame& frame) {
    kAction(frame.DataBase(), frame.View());
}

template <FIELD_DISPLAY kDisplay>
void Show(CEditFrame& frame) {
    ShowFieldsAs(frame.DataBase(), frame.View(), kDisplay);
}

void Show3D(CEditFrame& frame) {
    const CGjChang* const field = CurrentField(frame.DataBase());
    if (!field) return frame.Tell("*没有显示的场, 请先打开场*");
    const CRect at = frame.GetWindowRect();
    frame.ShowTool("field-3d", std::make_unique<CChang3DView>(frame.DataBase(), field->get_m_dwGouJianID()),
                   CRect(at.left + 60, at.top + 60, at.left + 860, at.top + 660), "Chang3DView");
}

constexpr EditorCommand kCommands[] = {
    {kBase + 0, kBranch, "打开场", "FieldOpen", "从文件读入场并显示", Do<OpenField>},
    {kBase + 1, kBranch, "云图", "Cloud", "以颜色显示场", Show<FIELD_DISPLAY_CLOUD>},
    {kBase + 2, kBranch, "等值线", "Isolines", "以等值线显示场", Show<FIELD_DISPLAY_ISOLINE>},
    {kBase + 3, kBranch, "数字", "Digits", "以数字显示场", Show<FIELD_DISPLAY_DIGIT>},
    {kBase + 4, kBranch, "网格", "FieldMesh", "显示或关闭场的三角形", Do<SwitchFieldMesh>},
    {kBase + 5, kBranch, "节点数值", "FieldNumbers", "显示或关闭节点上的数值", Do<SwitchFieldNumbers>},
    {kBase + 6, kBranch, "数值", "FieldValue", "点取位置, 查询场的数值", Do<AskFieldValues>},
    {kBase + 7, kBranch, "加密", "Densify", "每个三角形分为四个", Do<DensifyCurrentField>},
    {kBase + 8, kBranch, "场设置", "FieldLook", "选择场和数值, 色标, 比例", Do<AskFieldLook>},
    {kBase + 9, kBranch, "三维场", "Field3D", "以空间曲面显示场", Show3D},
    {kBase + 10, kBranch, "删除场", "FieldDelete", "删除当前的场", [](CEditFrame& frame) {
         frame.CloseTool("field-3d");  // it shows that one
         DeleteCurrentField(frame.DataBase(), frame.View());
     }},
};

}  // namespace

std::span<const EditorCommand> FieldEditorCommands() { return kCommands; }
