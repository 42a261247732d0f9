// The dialog that brings a drawing into the model.
#pragma once
#include <string>

class CEditFrame;

/// Shows the drawing with its layers, imports those that are ticked as one undo step, and leaves the report
/// in a window. False, and the model as it was, for a cancel and for a drawing that can't be taken.
bool RunImportDialog(CEditFrame& frame, const std::string& path);
