#include "platform/canvas/client_dc.h"

#include "platform/canvas/system_metrics.h"

namespace {

ClientSurfaceSource& Source() {
    static ClientSurfaceSource source;
    return source;
}

}  // namespace

CClientDC::CClientDC(CWnd* window) : CDC(ClientSurface(window)) {}

void SetClientSurfaceSource(ClientSurfaceSource source) { Source() = std::move(source); }

std::shared_ptr<CSurface> ClientSurface(CWnd* window) {
    if (Source()) return Source()(window);
    static const auto shared =
        std::make_shared<CSurface>(GetSystemMetrics(SM_CXFULLSCREEN), GetSystemMetrics(SM_CYFULLSCREEN));
    return shared;
}
