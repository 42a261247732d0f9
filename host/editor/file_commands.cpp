// The editor's commands about files.
#include <filesystem>
#include <string>

#include "geometry/fcoor.h"
#include "host/editor/document.h"
#include "host/editor/edit_frame.h"
#include "host/editor/editor_command.h"
#include "host/editor/print_command.h"
#include "host/editor/reason_text.h"
#include "model/dxf_export.h"
#include "model/paths.h"
#include "platform/dialog.h"
#include "platform/window_system.h"

namespace {

void ImportDrawing(CEditFrame& frame) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    if (const auto path = system->AskPath({false, "DXF 输入", "DXF 图纸", "*.dxf", ""}))
        frame.Document().ImportAsked(*path);
}

std::string Stem(const std::string& path) {
    return path.empty() ? "未命名" : std::filesystem::path(path).replace_extension().string();
}

void ExportDrawing(CEditFrame& frame) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    DialogForm form;
    form.m_name = "export";
    form.m_title = "DXF 输出";
    form.m_fields = {{DialogField::Kind::kChoice, "version", "版本", "0", {"R12", "2000"}}};
    if (system->RunDialog(form) != 0) return;
    const auto chosen =
        system->AskPath({true, "DXF 输出", "DXF 图纸", "*.dxf", Stem(frame.Document().Path()) + ".dxf"});
    if (!chosen || chosen->empty()) return;
    const std::string path = ConfirmFileExt(CString(*chosen), "dxf").GetString();
    CFCoor millimetres;  // device units are model units
    const DxfVersion version = form.Value("version") == "1" ? DxfVersion::R2000 : DxfVersion::R12;
    const DxfExportResult result = ExportDxf(frame.DataBase(), path, version, millimetres);
    frame.ShutDownProgress();
    if (result.written) frame.Tell("已输出 " + path + ": 图元 " + std::to_string(result.entities) + " 个");
    else frame.Warn("无法输出 " + path + ": " + ReasonInChinese(result.reason, path));
}

constexpr EditorCommand kCommands[] = {
    {0x30001, "文件", "新建", "New", "新的空模型", [](CEditFrame& frame) { frame.Document().New(); }},
    {0x30002, "文件", "打开", "Open", "打开模型或图纸",
     [](CEditFrame& frame) { frame.Document().AskOpen(); }},
    {0x30003, "文件", "最近", "Recent", "最近的文件",
     [](CEditFrame& frame) { frame.Document().AskRecent(); }},
    {0x30004, "文件", "保存", "Save", "保存模型", [](CEditFrame& frame) { frame.Document().Save(); }},
    {0x30005, "文件", "另存", "SaveAs", "另存为别的文件",
     [](CEditFrame& frame) { frame.Document().SaveAs(); }},
    {0x30006, "文件", "DXF输入", "DxfIn", "把图纸的图层变成轴网", ImportDrawing},
    {0x30007, "文件", "DXF输出", "DxfOut", "写成 DXF 图纸", ExportDrawing},
    {0x30008, "文件", "打印", "Print", "打印, 或成 PDF 文件", PrintModel},
};

}  // namespace

std::span<const EditorCommand> FileEditorCommands() { return kCommands; }
