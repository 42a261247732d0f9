// How nodes and lines look in each drawing mode. Internal to the library.
#pragma once
#include "model/profile.h"
#include "platform/acad_color.h"

/// Colour and line type for a mode, from the colour indices of the normal and the selected state. For any other
/// mode, hidden among them, both references stay as they are.
inline void NetDrawInfo(unsigned char mode, int normal, int selected, unsigned long& colour, int& lineType) {
    if (mode != 0 && mode != 1 && mode != 3) return;
    colour = GetAcadRGBColor(mode == 0 ? normal : mode == 1 ? selected : g_cTvoProfile.m_nMutedColor);
    lineType = mode == 1;
}
