// A context on a black surface, for tests.
#pragma once
#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>

#include "platform/canvas/dc.h"

namespace canvas_test {

__extension__ typedef __int128 Wide;
using Pixel = std::pair<int, int>;
using Random = std::mt19937;

inline constexpr COLORREF kWhite = RGB(255, 255, 255);
inline constexpr double kPi = 3.141592653589793;

inline int Pick(Random& random, int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }

/// A context on a black surface.
struct Canvas {
    explicit Canvas(int width, int height, int density = 1)
        : surface(std::make_shared<CSurface>(width, height, density)), dc(surface) {}
    std::set<Pixel> Lit() const {
        std::set<Pixel> lit;
        for (int y = 0; y < surface->Height(); ++y) {
            for (int x = 0; x < surface->Width(); ++x) {
                if (surface->At(x, y) != 0) lit.emplace(x, y);
            }
        }
        return lit;
    }
    std::shared_ptr<CSurface> surface;
    CDC dc;
};

/// Rows of '.' and '#'.
inline std::string Show(const Canvas& c) {
    std::string text;
    for (int y = 0; y < c.surface->Height(); ++y) {
        for (int x = 0; x < c.surface->Width(); ++x) text += c.surface->At(x, y) != 0 ? '#' : '.';
        text += '\n';
    }
    return text;
}

inline void Noise(CSurface& surface, Random& random) {
    for (int y = 0; y < surface.Height(); ++y) {
        for (int x = 0; x < surface.Width(); ++x) surface.Row(y)[x] = random() & 0xFFFFFF;
    }
}

inline CRect RandomClip(Random& random, int size) {
    CRect r(Pick(random, -10, size), Pick(random, -10, size), Pick(random, 0, size + 10),
            Pick(random, 0, size + 10));
    r.NormalizeRect();
    return r;
}

}  // namespace canvas_test
