// All commands of the editor, entered in the command table and the screen menu.
#pragma once
#include <string>

class CEditFrame;

/// Enters the library's commands, those that draw and the editor's families in g_cCmdMap, and all of them by branches in
/// g_cScrnMenuData, which is emptied first.
void AddEditorCommands();

/// Runs a command of the families, or one of the frame's own for showing. False for an identity that is none of these.
bool RunEditorCommand(CEditFrame& frame, int id);

/// The typed names of the families and what they do, for people.
std::string EditorCommandHelp();
