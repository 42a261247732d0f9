#include "platform/canvas/gdi_object.h"

#include <array>
#include <cstddef>

#include "platform/canvas/brush.h"
#include "platform/canvas/font.h"
#include "platform/canvas/pen.h"

BOOL CGdiObject::DeleteObject() {
    const BOOL created = m_bCreated ? 1 : 0;
    m_bCreated = false;
    Reset();
    return created;
}

CGdiObject* GetStockObject(int index) {
    // Never destroyed: a device context of static life may still hold them at the end of the process.
    static auto& brushes = *new std::array<CBrush, 6>;
    static auto& pens = *new std::array<CPen, 3>;
    static auto& font = *new CFont;
    static const bool made = [] {
        for (int i = WHITE_BRUSH; i <= NULL_BRUSH; ++i)
            brushes[static_cast<std::size_t>(i)].CreateStockObject(i);
        for (int i = WHITE_PEN; i <= NULL_PEN; ++i)
            pens[static_cast<std::size_t>(i - WHITE_PEN)].CreateStockObject(i);
        return font.CreateStockObject(SYSTEM_FONT) != 0;
    }();
    static_cast<void>(made);
    if (index >= WHITE_BRUSH && index <= NULL_BRUSH) return &brushes[static_cast<std::size_t>(index)];
    if (index >= WHITE_PEN && index <= NULL_PEN) return &pens[static_cast<std::size_t>(index - WHITE_PEN)];
    if (index >= OEM_FIXED_FONT && index <= DEFAULT_GUI_FONT && index != 15) return &font;
    return nullptr;
}
