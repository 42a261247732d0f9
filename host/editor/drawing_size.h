// How large what is taken of a drawing will be, and whether that looks like a building.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "platform/dxf/layer_summary.h"

class DXF;

/// A unit of drawings.
struct DrawingUnit {
    int insUnits;  // as headers number them
    const char* name;
    double millimetres;
};
const std::vector<DrawingUnit>& DrawingUnits();
/// Its place among them; their number for one that is none of them, or none.
std::size_t UnitOfHeader(int insUnits);
std::size_t UnitOfScale(double millimetres);

/// Sizes of all that a net would take, for each layer of a summary, in units of the drawing.
class DrawingSizes {
public:
    /// Layers as SummarizeLayers gives them. Both are looked at here only.
    DrawingSizes(const DXF& drawing, const std::vector<DxfLayerSummary>& layers);

    /// What the layers that are ticked ('1') would be at a scale.
    struct Size {
        bool empty = true;
        double width = 0, height = 0;  // millimetres
        double farthest = 0;           // greatest coordinate, either sign, millimetres
        std::size_t pieces = 0,
                    tooShort = 0;  // sides, arcs and half circles; of these no longer than the tolerance
    };
    Size Of(const std::string& ticks, double scale, double tolerance) const;

private:
    struct Layer {
        DxfExtent extent;
        std::vector<double> lengths;  // of its pieces from end to end, ascending
    };
    std::vector<Layer> m_layers;
};

std::string SizeText(const DrawingSizes::Size& size);  // "52.3 × 34.2 米"; empty for nothing
/// What looks wrong; empty for nothing. Under a metre or over five kilometres, or a fifth of all too short:
/// mostly the unit. Or so far out that coordinates, which are floats, step by 8 mm and more.
std::string SizeWarning(const DrawingSizes::Size& size, double tolerance);
