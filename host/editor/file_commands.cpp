// The editor's commands about files.
#include "host/editor/document.h"
#include "host/editor/edit_frame.h"
#include "host/editor/editor_command.h"
#include "host/editor/import_dialog.h"

namespace {

constexpr EditorCommand kCommands[] = {
    {0x30001, "文件", "新建", "New", "新的空模型", [](CEditFrame& frame) { frame.Document().New(); }},
    {0x30002, "文件", "打开", "Open", "打开模型或图纸", [](CEditFrame& frame) { frame.Document().AskOpen(); }},
    {0x30003, "文件", "最近", "Recent", "最近的文件", [](CEditFrame& frame) { frame.Document().AskRecent(); }},
    {0x30004, "文件", "保存", "Save", "保存模型", [](CEditFrame& frame) { frame.Document().Save(); }},
    {0x30005, "文件", "另存", "SaveAs", "另存为别的文件", [](CEditFrame& frame) { frame.Document().SaveAs(); }},
};

}  // namespace

std::span<const EditorCommand> FileEditorCommands() { return kCommands; }
