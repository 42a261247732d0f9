#include "platform/canvas/client_dc.h"

#include "platform/canvas/system_metrics.h"
#include "platform/window.h"

namespace {

std::shared_ptr<CSurface> SurfaceOf(CWnd* window) {
    if (window) {
        window->ShowLater();
        return window->ClientSurface();
    }
    static const auto screen =
        std::make_shared<CSurface>(GetSystemMetrics(SM_CXFULLSCREEN), GetSystemMetrics(SM_CYFULLSCREEN));
    return screen;
}

}  // namespace

CClientDC::CClientDC(CWnd* window) : CDC(SurfaceOf(window)) {}
