#include "host/editor/import_dialog.h"

#include "host/editor/edit_frame.h"

bool RunImportDialog(CEditFrame& frame, const std::string& path) {
    frame.Warn("无法打开 " + path);
    return false;
}
