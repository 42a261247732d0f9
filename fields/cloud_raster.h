// Paints the values of a field into a picture. Internal.
#pragma once
#include <array>
#include <cstdint>

#include "fields/chang.h"
#include "platform/canvas/surface.h"

class CFieldMesh;

/// What a cloud is painted with: the colours of the steps between two values.
struct CloudColors {
    double min = 0, max = 0;
    std::array<std::uint32_t, CChang::kColorSteps> pixel{};
};

/// Paints the box over the whole surface, its greatest y on the topmost row. A pixel shows the value at its
/// centre, by the first triangle that holds it; pixels off the field stay.
void PaintCloud(const CChang& field, const CFieldMesh& mesh, const CFRect& box, const CloudColors& colors,
                CSurface& surface);
