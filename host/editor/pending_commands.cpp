// Families that have no commands yet.
#include "host/editor/editor_command.h"

std::span<const EditorCommand> FieldEditorCommands() { return {}; }
std::span<const EditorCommand> SettingEditorCommands() { return {}; }
