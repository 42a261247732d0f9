// The editor's commands that ask.
#include "host/editor/editor_command.h"

std::span<const EditorCommand> QueryEditorCommands() { return {}; }
