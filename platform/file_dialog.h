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

/// Shows the dialog, that of the window system unless another one was set. FALSE when the user cancels, when there is
/// no window system to show one, and when the answer is longer than the room for it.
BOOL GetSaveFileNameA(OPENFILENAME* request);

/// A dialog that GetSaveFileNameA calls from here on instead; an empty one takes it away. Returns the one before.
using SaveFileDialog = std::function<BOOL(OPENFILENAME&)>;
SaveFileDialog SetSaveFileDialog(SaveFileDialog dialog);
