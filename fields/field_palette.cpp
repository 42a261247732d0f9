#include "fields/field_palette.h"

#include <cmath>
#include <span>

#include "fields/chang.h"
#include "platform/saturate.h"

namespace {

struct Tone {
    int r, g, b;
};

constexpr Tone kRainbow[] = {{0, 0, 255}, {0, 255, 255}, {0, 255, 0}, {255, 255, 0}, {255, 0, 0}};
// Neither end is as dark or as light as a background is likely to be.
constexpr Tone kGreys[] = {{40, 40, 40}, {225, 225, 225}};
constexpr Tone kDiverging[] = {{0, 0, 255}, {255, 255, 255}, {255, 0, 0}};
// Lightness grows evenly from dark violet to light yellow, which every kind of eye sees.
constexpr Tone kEven[] = {{68, 1, 84},    {71, 44, 122}, {59, 81, 139},  {44, 113, 142}, {33, 144, 141},
                          {39, 173, 129}, {92, 200, 99}, {170, 220, 50}, {253, 231, 37}};

COLORREF Between(std::span<const Tone> tones, double t) {
    const double place = t * static_cast<double>(tones.size() - 1);
    const auto first = static_cast<std::size_t>(SaturatedInt(place, 0, static_cast<int>(tones.size()) - 2));
    const double share = place - static_cast<double>(first);
    const Tone &a = tones[first], &b = tones[first + 1];
    const auto mixed = [share](int p, int q) {
        return SaturatedInt(std::floor(p + share * (q - p) + 0.5), 0, 255);
    };
    return RGB(mixed(a.r, b.r), mixed(a.g, b.g), mixed(a.b, b.b));
}

}  // namespace

COLORREF FieldColor(int scheme, int step) {
    const double t = static_cast<double>(step) / (CChang::kColorSteps - 1);
    switch (scheme) {
        case 2:
            return Between(kRainbow, 1 - t);
        case 3:
            return Between(kGreys, t);
        case 4:
            return Between(kDiverging, t);
        case 5:
            return Between(kEven, t);
        default:
            return Between(kRainbow, t);
    }
}

int FieldColorStep(double value, double min, double max) {
    if (!(max - min >= 1e-7) || !std::isfinite(value)) return 0;
    return SaturatedInt((value - min) / (max - min) * CChang::kColorSteps, 0, CChang::kColorSteps - 1);
}

COLORREF ApartFrom(COLORREF color, COLORREF background) {
    if (color != background) return color;
    return RGB(GetRValue(color), GetGValue(color), GetBValue(color) < 255 ? GetBValue(color) + 1 : 254);
}
