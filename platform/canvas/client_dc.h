// CClientDC: draws on the client area of a window.
#pragma once
#include <memory>

#include "platform/canvas/dc.h"

class CWnd;

/// A device context of a window's client area while it lives. One of a window that stands nowhere draws nothing; one of
/// no window (null) has a surface as large as the full screen, for measuring text.
class CClientDC : public CDC {
public:
    explicit CClientDC(CWnd* window);
};
