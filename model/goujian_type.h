// The type bytes of components, and two process-wide tables by type byte.
#pragma once

/// Type byte of a component, the top 8 bits of its identity. 0 is never given; 11 to 15 and 17 to 254 are free
/// for a host; a component of type 255 is counted and listed, but neither numbered nor written out.
enum : unsigned char {
    GJLX_NET_NODE = 1,
    GJLX_NET_LINE = 2,
    GJLX_MIAN = 3,
    GJLX_TEXT = 4,
    GJLX_CHANG = 5,
    GJLX_POINT = 6,
    GJLX_LINE = 7,
    GJLX_ARC = 8,
    GJLX_CIRCLE = 9,
    GJLX_CIRCLE_RGN = 10,
    GJLX_POLYGON_RGN = 16,
};

constexpr int kTypeCount = 256;

/// What CGouJianEx::QueryBasicType answers: the shape family of a class, whatever its type byte.
enum BasicType { kBasicOther = 0, kBasicNode = 1, kBasicLine = 2, kBasicPlate = 3, kBasicText = 4 };

/// Status byte of a component. Drawing knows a further mode 3, muted, that is never stored.
enum : unsigned char { GJ_STATUS_NORMAL = 0, GJ_STATUS_SELECTED = 1, GJ_STATUS_HIDDEN = 2 };

/// Snap switches, one a type byte, all on at start. Types outside 1..255 are ignored and read as off.
void EnableSnap(int type);
void DisableSnap(int type);
int IsSnapEnabled(int type);

/// A status word for each type byte, for hosts; the library itself only clears it.
extern int g_cGjStatus[kTypeCount];
