// CClientDC: draws on the client area of a window.
#pragma once
#include <functional>
#include <memory>

#include "platform/canvas/dc.h"

class CWnd;

/// A device context of a window's client area while it lives.
class CClientDC : public CDC {
public:
    explicit CClientDC(CWnd* window);
};

/// Names the surface of a window's client area. Without a source, all windows share one surface of the size
/// that the system reports for the full screen, which is made at first use.
using ClientSurfaceSource = std::function<std::shared_ptr<CSurface>(CWnd*)>;
void SetClientSurfaceSource(ClientSurfaceSource source);
std::shared_ptr<CSurface> ClientSurface(CWnd* window);
