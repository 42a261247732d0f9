#include "platform/canvas/system_metrics.h"

#include <map>

namespace {

std::map<int, int>& Metrics() {
    static std::map<int, int> metrics{
        {SM_CXSCREEN, 1920}, {SM_CYSCREEN, 1080}, {SM_CXFULLSCREEN, 1920}, {SM_CYFULLSCREEN, 1080}};
    return metrics;
}

}  // namespace

int GetSystemMetrics(int index) {
    const auto found = Metrics().find(index);
    return found == Metrics().end() ? 0 : found->second;
}

void SetSystemMetrics(int index, int value) { Metrics()[index] = value; }

COLORREF GetSysColor(int index) {
    switch (index) {
        case COLOR_WINDOW:
        case COLOR_BTNHIGHLIGHT:
        case COLOR_HIGHLIGHTTEXT:
            return RGB(255, 255, 255);
        case COLOR_BTNFACE:
            return RGB(240, 240, 240);
        case COLOR_BTNSHADOW:
            return RGB(160, 160, 160);
        case COLOR_GRAYTEXT:
            return RGB(109, 109, 109);
        case COLOR_HIGHLIGHT:
            return RGB(0, 120, 215);
        default:
            return 0;
    }
}
