// The editor's commands about plates.
#include "host/editor/editor_command.h"

std::span<const EditorCommand> PlateEditorCommands() { return {}; }
