// The canvas at 1920 x 1080: lines, figures, blocks and text. Processor time, the least of several runs.
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "platform/canvas/dc.h"

namespace {

constexpr int kWidth = 1920, kHeight = 1080;
constexpr int kLines = 100000;

struct Segment {
    CPoint a, b;
};

std::vector<Segment> Segments(int reach) {
    std::mt19937 random(1);
    const auto within = [&](int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low));
    };
    std::vector<Segment> segments;
    for (int i = 0; i < kLines; ++i) {
        const CPoint a(within(0, kWidth), within(0, kHeight));
        const CPoint b = reach > 0 ? CPoint(a.x + within(-reach, reach + 1), a.y + within(-reach, reach + 1))
                                   : CPoint(within(0, kWidth), within(0, kHeight));
        segments.push_back({a, b});
    }
    return segments;
}

double ProcessorSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

void Measure(const char* name, int count, const std::function<void()>& work) {
    double best = 1e9;
    for (int run = 0; run < 7; ++run) {
        const double start = ProcessorSeconds();
        work();
        best = std::min(best, ProcessorSeconds() - start);
    }
    std::printf("%-44s %7d times %9.2f ms %10.1f ns each\n", name, count, best * 1e3, best * 1e9 / count);
}

}  // namespace

int main() {
    CDC dc(std::make_shared<CSurface>(kWidth, kHeight));
    const auto tiny = Segments(10), full = Segments(0), zoomed = Segments(1 << 20);
    const auto draw = [&](const std::vector<Segment>& segments) {
        for (const Segment& s : segments) {
            dc.MoveTo(s.a);
            dc.LineTo(s.b);
        }
    };
    const auto with = [&](int style, int width, int rop, const std::vector<Segment>& segments) {
        return [&, style, width, rop] {
            CPen pen(style, width, RGB(0, 200, 255));
            CPen* old = dc.SelectObject(&pen);
            dc.SetROP2(rop);
            draw(segments);
            dc.SelectObject(old);
            dc.SetROP2(R2_COPYPEN);
        };
    };
    Measure("lines of some 10 pixels", kLines, with(PS_SOLID, 1, R2_COPYPEN, tiny));
    Measure("lines of some 10 pixels, XOR", kLines, with(PS_SOLID, 1, R2_XORPEN, tiny));
    Measure("lines across the screen", kLines, with(PS_SOLID, 1, R2_COPYPEN, full));
    Measure("lines across the screen, XOR", kLines, with(PS_SOLID, 1, R2_XORPEN, full));
    Measure("lines that leave the screen, 1e6 long", kLines, with(PS_SOLID, 1, R2_COPYPEN, zoomed));
    Measure("dotted lines of some 10 pixels", kLines, with(PS_DOT, 1, R2_COPYPEN, tiny));
    Measure("lines of some 10 pixels, 3 wide", kLines, with(PS_SOLID, 3, R2_COPYPEN, tiny));

    dc.SelectStockObject(NULL_BRUSH);
    dc.SelectStockObject(WHITE_PEN);
    Measure("circles of radius 3", kLines, [&] {
        for (const Segment& s : tiny) dc.Ellipse(s.a.x - 3, s.a.y - 3, s.a.x + 4, s.a.y + 4);
    });
    Measure("quarter arcs of radius 50", kLines, [&] {
        for (const Segment& s : tiny) {
            dc.MoveTo(s.a.x + 50, s.a.y);
            dc.AngleArc(s.a.x, s.a.y, 50, 0, 90);
        }
    });
    Measure("arcs of radius 1e8 across the screen", 1000, [&] {
        for (int i = 0; i < 1000; ++i) {
            dc.MoveTo(960 + i, 540);
            dc.AngleArc(960 + i, 540 + 100000000, 100000000, 89.9, 0.2);
        }
    });
    CBrush grip(RGB(0, 0, 255));
    dc.SelectObject(&grip);
    Measure("grip squares", kLines, [&] {
        for (const Segment& s : tiny) dc.Rectangle(s.a.x - 3, s.a.y - 3, s.a.x + 4, s.a.y + 4);
    });
    dc.SetBkMode(TRANSPARENT);
    Measure("numbers of 6 digits, 14 high", 10000, [&] {
        for (int i = 0; i < 10000; ++i)
            dc.TextOut(full[static_cast<std::size_t>(i)].a.x, full[static_cast<std::size_t>(i)].a.y, "123456",
                       6);
    });
    CDC memory;
    CBitmap bitmap;
    memory.CreateCompatibleDC(&dc);
    bitmap.CreateCompatibleBitmap(&dc, kWidth, kHeight);
    memory.SelectObject(&bitmap);
    Measure("copy of the screen", 1, [&] { memory.BitBlt(0, 0, kWidth, kHeight, &dc, 0, 0, SRCCOPY); });
    Measure("XOR of the screen", 1, [&] { memory.BitBlt(0, 0, kWidth, kHeight, &dc, 0, 0, SRCINVERT); });
    Measure("fill of the screen", 1, [&] { memory.PatBlt(0, 0, kWidth, kHeight, BLACKNESS); });
}
