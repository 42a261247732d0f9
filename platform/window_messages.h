// The messages that windows get, and the keys and buttons in them.
#pragma once
#include <cstdint>

#include "platform/win_types.h"

using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

// clang-format off
enum : UINT {
    WM_CREATE = 0x0001, WM_DESTROY = 0x0002, WM_SIZE = 0x0005, WM_ACTIVATE = 0x0006, WM_SETFOCUS = 0x0007, WM_PAINT = 0x000F,
    WM_CLOSE = 0x0010, WM_ERASEBKGND = 0x0014, WM_SYSCOLORCHANGE = 0x0015, WM_SETCURSOR = 0x0020, WM_KEYDOWN = 0x0100, WM_CHAR = 0x0102, WM_COMMAND = 0x0111, WM_TIMER = 0x0113,
    WM_MOUSEMOVE = 0x0200, WM_LBUTTONDOWN = 0x0201, WM_LBUTTONUP = 0x0202, WM_LBUTTONDBLCLK = 0x0203, WM_RBUTTONDOWN = 0x0204,
    WM_RBUTTONUP = 0x0205, WM_MBUTTONDOWN = 0x0207, WM_MBUTTONUP = 0x0208, WM_MOUSEWHEEL = 0x020A, WM_MOUSELEAVE = 0x02A3,
};
enum : UINT { MK_LBUTTON = 0x01, MK_RBUTTON = 0x02, MK_SHIFT = 0x04, MK_CONTROL = 0x08, MK_MBUTTON = 0x10 };
enum : UINT {
    VK_BACK = 8, VK_TAB = 9, VK_RETURN = 13, VK_SHIFT = 16, VK_CONTROL = 17, VK_ESCAPE = 27, VK_SPACE = 32, VK_PRIOR = 33, VK_NEXT = 34, VK_END = 35, VK_HOME = 36,
    VK_LEFT = 37, VK_UP = 38, VK_RIGHT = 39, VK_DOWN = 40, VK_DELETE = 46,
    VK_F1 = 112, VK_F2, VK_F3, VK_F4, VK_F5, VK_F6, VK_F7, VK_F8, VK_F9, VK_F10, VK_F11, VK_F12,
};
// clang-format on

/// A point as the second parameter of a mouse message. All of both ints fits: the keyboard may take the
/// pointer far out of the window.
inline LPARAM PointParam(const CPoint& p) {
    return static_cast<LPARAM>(static_cast<std::uint64_t>(static_cast<std::uint32_t>(p.y)) << 32 |
                               static_cast<std::uint32_t>(p.x));
}
inline CPoint PointFromParam(LPARAM l) {
    const auto bits = static_cast<std::uint64_t>(l);
    return {static_cast<int>(static_cast<std::uint32_t>(bits)),
            static_cast<int>(static_cast<std::uint32_t>(bits >> 32))};
}
/// Keys in the low half, the signed turn of the wheel above.
inline WPARAM WheelParam(UINT keys, int delta) {
    return static_cast<WPARAM>(static_cast<std::uint64_t>(static_cast<std::uint32_t>(delta)) << 32 | keys);
}
inline UINT WheelKeys(WPARAM w) { return static_cast<UINT>(w & 0xFFFFFFFF); }
inline int WheelDelta(WPARAM w) {
    return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(w) >> 32));
}
