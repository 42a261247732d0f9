// Programs of others that the user is handed over to.
#pragma once

/// Runs a program with arguments, which blanks part outside of double quotes. With `wait` returns when it has ended.
/// "程序运行失败！" if it can't be started, unless `silent`.
void ExecuteAndWait(const char* program, const char* arguments, int silent, int wait);

/// Opens a result file for the user: one that ends in ".OUT" or ".TXT" in a text editor, any other in a viewer, both by
/// default the desktop's own. The settings "TextEditor" and "Viewer" of "OutsidePrograms" name others. Nothing happens for
/// a file that isn't there; a name too short for an extension is told.
void OpenJJS(const char* file, int fullPath);
