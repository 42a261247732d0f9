// Constants and plain records of the drawing interface.
#pragma once
#include <cstdint>

#include "platform/win_types.h"

// clang-format off: the tables of constants read better unbroken

class CDC;
class CGdiObject;

using HDC = CDC*;  // a device context is its own handle
using HGDIOBJ = CGdiObject*;

// Raster modes: what a drawn pixel makes of pen (P) and surface (D). The mode less one, read as four bits, is
// the truth table: bit 2 P + D holds the result.
enum : int {
    R2_BLACK = 1, R2_NOTMERGEPEN = 2, R2_MASKNOTPEN = 3, R2_NOTCOPYPEN = 4, R2_MASKPENNOT = 5, R2_NOT = 6,
    R2_XORPEN = 7, R2_NOTMASKPEN = 8, R2_MASKPEN = 9, R2_NOTXORPEN = 10, R2_NOP = 11, R2_MERGENOTPEN = 12,
    R2_COPYPEN = 13, R2_MERGEPENNOT = 14, R2_MERGEPEN = 15, R2_WHITE = 16
};

// Block transfer modes: bits 16 to 23 are the truth table over pattern, source and destination.
enum : DWORD {
    SRCCOPY = 0x00CC0020, SRCPAINT = 0x00EE0086, SRCAND = 0x008800C6, SRCINVERT = 0x00660046,
    SRCERASE = 0x00440328, NOTSRCCOPY = 0x00330008, NOTSRCERASE = 0x001100A6, MERGECOPY = 0x00C000CA,
    MERGEPAINT = 0x00BB0226, PATCOPY = 0x00F00021, PATPAINT = 0x00FB0A09, PATINVERT = 0x005A0049,
    DSTINVERT = 0x00550009, BLACKNESS = 0x00000042, WHITENESS = 0x00FF0062
};

// Pen styles. The low four bits are the line style.
enum : int {
    PS_SOLID = 0, PS_DASH = 1, PS_DOT = 2, PS_DASHDOT = 3, PS_DASHDOTDOT = 4, PS_NULL = 5, PS_INSIDEFRAME = 6,
    PS_STYLE_MASK = 0xF, PS_ENDCAP_ROUND = 0, PS_ENDCAP_SQUARE = 0x100, PS_ENDCAP_FLAT = 0x200,
    PS_ENDCAP_MASK = 0xF00, PS_JOIN_ROUND = 0, PS_JOIN_BEVEL = 0x1000, PS_JOIN_MITER = 0x2000,
    PS_COSMETIC = 0, PS_GEOMETRIC = 0x10000
};

// Brush and hatch styles.
enum : int { BS_SOLID = 0, BS_NULL = 1, BS_HOLLOW = 1, BS_HATCHED = 2 };
enum : int {
    HS_HORIZONTAL = 0, HS_VERTICAL = 1, HS_FDIAGONAL = 2, HS_BDIAGONAL = 3, HS_CROSS = 4, HS_DIAGCROSS = 5
};

// Stock objects.
enum : int {
    WHITE_BRUSH = 0, LTGRAY_BRUSH = 1, GRAY_BRUSH = 2, DKGRAY_BRUSH = 3, BLACK_BRUSH = 4, NULL_BRUSH = 5,
    HOLLOW_BRUSH = 5, WHITE_PEN = 6, BLACK_PEN = 7, NULL_PEN = 8, OEM_FIXED_FONT = 10, ANSI_FIXED_FONT = 11,
    ANSI_VAR_FONT = 12, SYSTEM_FONT = 13, DEVICE_DEFAULT_FONT = 14, SYSTEM_FIXED_FONT = 16,
    DEFAULT_GUI_FONT = 17
};

enum : int { TRANSPARENT = 1, OPAQUE = 2 };                           // background modes
enum : int { ALTERNATE = 1, WINDING = 2 };                            // polygon fill modes
enum : int { ERROR = 0, NULLREGION = 1, SIMPLEREGION = 2, COMPLEXREGION = 3 };
enum : int { COLORONCOLOR = 3 };                                      // the one stretching mode

// Text alignment.
enum : UINT {
    TA_NOUPDATECP = 0, TA_UPDATECP = 1, TA_LEFT = 0, TA_RIGHT = 2, TA_CENTER = 6, TA_TOP = 0, TA_BOTTOM = 8,
    TA_BASELINE = 24
};
enum : UINT { ETO_OPAQUE = 2, ETO_CLIPPED = 4 };
enum : UINT {
    DT_TOP = 0, DT_LEFT = 0, DT_CENTER = 1, DT_RIGHT = 2, DT_VCENTER = 4, DT_BOTTOM = 8,
    DT_SINGLELINE = 32, DT_NOCLIP = 256, DT_CALCRECT = 1024, DT_NOPREFIX = 2048
};

// Fonts.
enum : int {
    FW_NORMAL = 400, FW_BOLD = 700, ANSI_CHARSET = 0, DEFAULT_CHARSET = 1, GB2312_CHARSET = 134,
    DEFAULT_QUALITY = 0, NONANTIALIASED_QUALITY = 3, ANTIALIASED_QUALITY = 4
};

// Device capabilities.
enum : int {
    TECHNOLOGY = 2, HORZRES = 8, VERTRES = 10, BITSPIXEL = 12, PLANES = 14, LOGPIXELSX = 88, LOGPIXELSY = 90
};

enum : UINT { DI_MASK = 1, DI_IMAGE = 2, DI_NORMAL = 3 };  // what DrawIconEx paints

constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;  // GetPixel and SetPixel outside of the clip

struct LOGPEN {
    int lopnStyle = PS_SOLID;
    int lopnWidth = 1;
    COLORREF lopnColor = 0;
};

struct LOGBRUSH {
    int lbStyle = BS_SOLID;
    COLORREF lbColor = 0;
    int lbHatch = 0;  // hatch style if lbStyle is BS_HATCHED
};

struct LOGFONT {
    int lfHeight = 0;       // pixels: > 0 of the cell, < 0 of the em square, 0 the default of 16
    int lfWidth = 0;        // kept, not read: the face's own width counts
    int lfEscapement = 0;   // direction of the line of text in tenths of a degree, anticlockwise
    int lfOrientation = 0;  // kept, not read: characters always stand on their line
    int lfWeight = FW_NORMAL;
    int lfItalic = 0;
    int lfUnderline = 0;
    int lfStrikeOut = 0;
    int lfCharSet = DEFAULT_CHARSET;
    int lfQuality = DEFAULT_QUALITY;
    char lfFaceName[64] = {};  // UTF-8
};

struct TEXTMETRIC {
    int tmHeight = 0;  // ascent and descent
    int tmAscent = 0;
    int tmDescent = 0;
    int tmInternalLeading = 0;
    int tmExternalLeading = 0;
    int tmAveCharWidth = 0;
    int tmMaxCharWidth = 0;
    int tmWeight = FW_NORMAL;
};
