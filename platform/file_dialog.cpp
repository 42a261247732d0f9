#include "platform/file_dialog.h"

#include <utility>

namespace {

SaveFileDialog& Dialog() {
    static SaveFileDialog dialog;
    return dialog;
}

}  // namespace

BOOL GetSaveFileNameA(OPENFILENAME* request) { return request && Dialog() ? Dialog()(*request) : FALSE; }

SaveFileDialog SetSaveFileDialog(SaveFileDialog dialog) { return std::exchange(Dialog(), std::move(dialog)); }
