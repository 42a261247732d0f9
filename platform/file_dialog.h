// The system's dialog that asks for a file to save.
#pragma once
#include <functional>

#include "platform/win_types.h"

class CWnd;

/// What the dialog is asked, and where its answer goes. Texts are UTF-8.
struct OPENFILENAME {
    CWnd* hwndOwner = nullptr;          // borrowed; may be null
    const char* lpstrFilter = nullptr;  // descriptions and patterns in turn, each ended by 0, an empty one last
    char* lpstrFile = nullptr;          // in: the name proposed, out: the one chosen
    DWORD nMaxFile = 0;                 // bytes of lpstrFile, the 0 included
    DWORD Flags = 0;                    // OFN_...
};

constexpr DWORD OFN_OVERWRITEPROMPT = 2;  // ask before a file that is there is taken
constexpr DWORD OFN_HIDEREADONLY = 4;     // no read-only box

/// Shows the dialog. FALSE when the user cancels, and when there is no window system to show one.
BOOL GetSaveFileNameA(OPENFILENAME* request);

/// The window system's own dialog, which GetSaveFileNameA calls from here on; an empty one takes it away. Returns the
/// one before.
using SaveFileDialog = std::function<BOOL(OPENFILENAME&)>;
SaveFileDialog SetSaveFileDialog(SaveFileDialog dialog);
