// CWnd and the cursor: what the model calls on the window system.
#pragma once
#include "platform/win_types.h"

/// A window. The base class has no screen: it takes every call and shows nothing.
class CWnd {
public:
    CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    virtual ~CWnd() = default;
    /// Marks a part (null: all) of the client area for repainting.
    virtual void InvalidateRect(const CRect*, BOOL /*erase*/) {}
    void Invalidate(BOOL erase = TRUE) { InvalidateRect(nullptr, erase); }
};

/// A mouse cursor, by number; 0 is none.
using HCURSOR = int;
constexpr HCURSOR IDC_WAIT = 32514;

/// Makes a cursor the one that is shown; returns the one before.
HCURSOR SetCursor(HCURSOR cursor);
HCURSOR GetCursor();
