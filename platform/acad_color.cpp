#include "platform/acad_color.h"

#include <algorithm>
#include <array>
#include <cstdint>

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

namespace {

constexpr int kIndexOfBlack = 7;

struct Channels {
    std::array<int, 256> r, g, b;
};

const Channels& TableChannels() {
    static const Channels table = [] {
        Channels t{};
        for (std::size_t i = 0; i < 256; ++i) {
            const COLORREF c = GetAcadRGBColor(static_cast<int>(i));
            t.r[i] = GetRValue(c);
            t.g[i] = GetGValue(c);
            t.b[i] = GetBValue(c);
        }
        return t;
    }();
    return table;
}

int NearestIndex(int r, int g, int b) {
    if ((r | g | b) == 0) return kIndexOfBlack;
    const Channels& table = TableChannels();
    std::array<int, 256> distance;
    for (std::size_t i = 0; i < 256; ++i) {
        const int dr = table.r[i] - r, dg = table.g[i] - g, db = table.b[i] - b;
        distance[i] = dr * dr + dg * dg + db * db;
    }
    return static_cast<int>(std::min_element(distance.begin() + 1, distance.end()) - distance.begin());
}

}  // namespace

// A model has few colours and asks for them again and again: the latest answers are kept, each colour in a place of
// its own that others may take over.
int RGB2AcadIndex(int r, int g, int b) {
    struct Known {
        std::uint32_t color = 0;
        int index = kIndexOfBlack;
    };
    static thread_local std::array<Known, 256> known;
    const auto channel = [](int v) { return static_cast<std::uint32_t>(std::clamp(v, 0, 255)); };
    const std::uint32_t color = channel(r) | channel(g) << 8 | channel(b) << 16;
    Known& entry = known[(color * 0x9E3779B1u) >> 24];
    if (entry.color != color)
        entry = {color, NearestIndex(static_cast<int>(channel(r)), static_cast<int>(channel(g)), static_cast<int>(channel(b)))};
    return entry.index;
}
