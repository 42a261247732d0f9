// The private messages of the view, and the codes and words that commands and the view speak in.
#pragma once
#include "platform/win_types.h"

/// Posted by the mouse handlers: the first while no command runs, whose handler does nothing, the second while one does.
/// So the posting code needs no branch.
enum : UINT { WM_DTVIEW_IDLE = 0x500, WM_DTVIEW_WORK = 0x501 };

/// What a work message tells, in its first parameter.
enum : unsigned {
    DTW_START = 0x600,    // a command has just been switched in
    DTW_POINT = 0x601,    // a point was clicked
    DTW_NORMAL = 0x602,   // normal end of the running step (a right click)
    DTW_CANCEL = 0x603,   // ESC on an empty command line
    DTW_INPUT = 0x604,    // typed text; the second parameter points to it
    DTW_REQUERY = 0x605,  // a suspended command has come back: ask it what it awaits
    DTW_NONE = 0x606,     // no input of its own: evaluate the awaited state and repaint
};

/// What the second argument of a command's OnGetObject points to.
enum OBJECT_HINT {
    OH_TEXT = 0,     // the typed text, char*
    OH_POINT = 1,    // a CFPoint*, world coordinates
    OH_OBJECT = 2,   // the view's selected list; a single CGouJianEx* from the single select with an owner
    OH_REMOVED = 3,  // a CGouJianEx* that a click took out of the selection
};

/// What a command awaits: the result of OnGetObject and OnQueryState. The first three are tested for equality, the others
/// are bits; 0 awaits nothing.
enum : unsigned {
    QS_CANCEL = 1,   // cancel the command
    QS_FINISH = 2,   // it is done
    QS_RESTART = 4,  // run it again from Run
    QS_SELECT = 8,   // switch to the stock select command
    QS_TEXT = 16,    // text
    QS_POINT = 32,   // a point
};

/// The mouse events that a command may ask for, and that its OnMouseNotify is told.
enum : unsigned {
    MN_LDOWN = 1,
    MN_LUP = 2,
    MN_MDOWN = 4,
    MN_MUP = 8,
    MN_RDOWN = 16,
    MN_RUP = 32,
    MN_MOVE = 64,
};
