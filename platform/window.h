// CWnd: what the model calls on a window.
#pragma once
#include "platform/win_types.h"

/// A window. The base class has no screen: it takes every call and shows nothing.
class CWnd {
public:
    virtual ~CWnd() = default;
    /// Marks a part (null: all) of the client area for repainting.
    virtual void InvalidateRect(const CRect*, BOOL /*erase*/) {}
    void Invalidate(BOOL erase = TRUE) { InvalidateRect(nullptr, erase); }
};
