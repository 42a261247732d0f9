#include "platform/acad_color.h"

namespace {

// Hues stand 15 degrees apart from red, ten entries each: five values, each with full and half saturation.
COLORREF ColorOfHue(int index) {
    constexpr int kValues[] = {255, 204, 153, 127, 76};
    const int step = index / 10 - 1;  // 0 to 23
    const int value = kValues[index % 10 / 2];
    const bool pale = index % 2 != 0;
    // How far a channel stands between the lowest and the highest, in quarters; fractions are dropped.
    const auto channel = [&](int quarters) {
        return pale ? value * (4 + quarters) / 8 : value * quarters / 4;
    };
    const int rising = step % 4, falling = 4 - rising;
    switch (step / 4) {
        case 0: return RGB(channel(4), channel(rising), channel(0));
        case 1: return RGB(channel(falling), channel(4), channel(0));
        case 2: return RGB(channel(0), channel(4), channel(rising));
        case 3: return RGB(channel(0), channel(falling), channel(4));
        case 4: return RGB(channel(rising), channel(0), channel(4));
        default: return RGB(channel(4), channel(0), channel(falling));
    }
}

}  // namespace

COLORREF GetAcadRGBColor(int index) {
    constexpr COLORREF kFirst[] = {
        RGB(0, 0, 0),   RGB(255, 0, 0),   RGB(255, 255, 0),   RGB(0, 255, 0),     RGB(0, 255, 255),
        RGB(0, 0, 255), RGB(255, 0, 255), RGB(255, 255, 255), RGB(128, 128, 128), RGB(192, 192, 192)};
    constexpr int kGrey[] = {51, 91, 132, 173, 214, 255};
    if (index < 0 || index > 255) return kFirst[7];
    if (index < 10) return kFirst[index];
    if (index < 250) return ColorOfHue(index);
    const int grey = kGrey[index - 250];
    return RGB(grey, grey, grey);
}
