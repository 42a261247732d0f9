// The drawing writer for figures in space.
#pragma once
#include "platform/dxf/base_sgt.h"

/// A drawing with lines and texts at any height.
class CDXF_3D : public CBase_SGT {
public:
    using CBase_SGT::Draw_Line;
    using CBase_SGT::Draw_Text;
    void Draw_Line(float x1, float y1, float z1, float x2, float y2, float z2, float /*width*/) {
        AddLine(x1, y1, z1, x2, y2, z2);
    }
    /// The text lies in a horizontal plane; `angle` is in radians.
    void Draw_Text(float x, float y, float z, float height, float angle, const char* text) {
        AddText(x, y, z, height, angle, text);
    }
};
