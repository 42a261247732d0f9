// The integer types and records that the window toolkit's interfaces speak in.
#pragma once
#include <cstdint>
#include <utility>

#include "platform/saturate.h"

using COLORREF = unsigned long;  // 0x00BBGGRR: red in the low byte
using DWORD = unsigned long;
using UINT = unsigned int;
using BOOL = int;
#ifndef TRUE
#define TRUE 1
#define FALSE 0
#endif

constexpr COLORREF RGB(int r, int g, int b) {
    return static_cast<COLORREF>((r & 0xFF) | (g & 0xFF) << 8 | (b & 0xFF) << 16);
}
constexpr int GetRValue(COLORREF c) { return static_cast<int>(c & 0xFF); }
constexpr int GetGValue(COLORREF c) { return static_cast<int>(c >> 8 & 0xFF); }
constexpr int GetBValue(COLORREF c) { return static_cast<int>(c >> 16 & 0xFF); }

/// A device point.
struct CPoint {
    int x = 0, y = 0;
    CPoint() = default;
    CPoint(int px, int py) : x(px), y(py) {}
    void Offset(int dx, int dy) {  // no farther than an int reaches
        x = SaturatedInt(static_cast<double>(x) + dx);
        y = SaturatedInt(static_cast<double>(y) + dy);
    }
    friend bool operator==(const CPoint& a, const CPoint& b) { return a.x == b.x && a.y == b.y; }
};

struct CSize {
    int cx = 0, cy = 0;
    CSize() = default;
    CSize(int w, int h) : cx(w), cy(h) {}
};

/// A device rectangle; right and bottom are not part of it. Sizes and borders that an int does not hold
/// become the nearest one that it does: the rectangle may reach from one end of the integers to the other.
struct CRect {
    int left = 0, top = 0, right = 0, bottom = 0;
    CRect() = default;
    CRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}
    CRect(const CPoint& a, const CPoint& b) : left(a.x), top(a.y), right(b.x), bottom(b.y) {}
    int Width() const { return Moved(right, -std::int64_t{left}); }
    int Height() const { return Moved(bottom, -std::int64_t{top}); }
    CPoint TopLeft() const { return {left, top}; }
    CPoint BottomRight() const { return {right, bottom}; }
    CPoint CenterPoint() const { return {Middle(left, right), Middle(top, bottom)}; }
    bool IsRectEmpty() const { return left >= right || top >= bottom; }
    bool PtInRect(const CPoint& p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
    void InflateRect(int dx, int dy) {
        left = Moved(left, -std::int64_t{dx});
        top = Moved(top, -std::int64_t{dy});
        right = Moved(right, dx);
        bottom = Moved(bottom, dy);
    }
    void NormalizeRect() {
        if (left > right) std::swap(left, right);
        if (top > bottom) std::swap(top, bottom);
    }
    friend bool operator==(const CRect& a, const CRect& b) {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }

private:
    static int Moved(int v, std::int64_t by) { return SaturatedInt(static_cast<double>(v + by)); }
    static int Middle(int low, int high) { return static_cast<int>(low + (std::int64_t{high} - low) / 2); }
};
