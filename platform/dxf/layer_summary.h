// What stands on each layer of a drawing.
#pragma once
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class ACAD_ENTITY;
class DXF;

/// A box; empty until something is put in.
struct DxfExtent {
    bool   m_bEmpty = true;
    double m_dMinX = 0, m_dMinY = 0, m_dMaxX = 0, m_dMaxY = 0;
    void Add(double x, double y);
};

/// Takes in a line, polyline (without its closing side), arc or circle, exactly. Other kinds leave it as it is.
void AddToExtent(DxfExtent& extent, const ACAD_ENTITY& entity);

struct DxfLayerSummary {
    std::string   m_strName;           // UTF-8, as first met
    bool          m_bInTable = false;  // the layer table has it
    bool          m_bOff = false;
    bool          m_bFrozen = false;
    std::uint64_t m_nLine = 0;
    std::uint64_t m_nPolyline = 0;
    std::uint64_t m_nPolylineClosed = 0;  // of these, with the closed flag
    std::uint64_t m_nArc = 0;
    std::uint64_t m_nCircle = 0;
    std::uint64_t m_nOther = 0;
    std::uint64_t m_nPaperSpace = 0;  // of all, on sheets
    std::uint64_t m_nDropped = 0;     // not among these: numbers not finite or too far
    std::vector<std::pair<std::string, std::uint64_t>> m_arrOther;  // the others by kind, as first met
    DxfExtent     m_extent;           // of lines, polylines without closing sides, arcs (exact) and circles
};

/// One row per layer: in the order in which entities first name them, then those without entities.
/// Names that differ in ASCII case only are one layer.
std::vector<DxfLayerSummary> SummarizeLayers(const DXF& drawing);
