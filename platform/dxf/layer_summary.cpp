#include "platform/dxf/layer_summary.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <unordered_map>

#include "platform/dxf/dxf.h"

namespace {

constexpr double kDegree = std::numbers::pi / 180;

std::string Folded(std::string name) {
    for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
    return name;
}

/// An arc in degrees, anticlockwise: its ends and the quadrant points that it covers.
void AddArc(DxfExtent& extent, double x, double y, double radius, double start, double sweep) {
    const double r = std::abs(radius);
    for (const double angle : {start, start + sweep})
        extent.Add(x + r * std::cos(angle * kDegree), y + r * std::sin(angle * kDegree));
    const double first = std::ceil(start / 90);
    constexpr int kCos[] = {1, 0, -1, 0}, kSin[] = {0, 1, 0, -1};
    for (int i = 0; i < 4 && (first + i) * 90 <= start + sweep; ++i) {
        const double turns = std::fmod(first + i, 4);
        const auto quadrant = static_cast<std::size_t>(turns < 0 ? turns + 4 : turns);
        extent.Add(x + r * kCos[quadrant], y + r * kSin[quadrant]);
    }
}

void AddArc(DxfExtent& extent, const ACAD_ARC& arc) {
    double sweep = std::fmod(arc.m_dEnd - arc.m_dStart, 360);
    if (!(sweep > 0)) sweep += 360;  // equal angles are a full turn
    AddArc(extent, arc.m_x, arc.m_y, arc.m_dRadius, std::fmod(arc.m_dStart, 360), sweep);
}

/// The side of a polyline from p to q. Its ends are in the extent already.
void AddSide(DxfExtent& extent, const ACAD_VERTEX& p, const ACAD_VERTEX& q) {
    const double bulge = p.m_dBulge;
    const double dx = q.m_x - p.m_x, dy = q.m_y - p.m_y;
    constexpr double kFlat = 1e-8;  // the rise of a flatter arc is lost in the rounding of its centre
    if (std::abs(bulge) < kFlat || (dx == 0 && dy == 0)) return;
    const double offset = (1 - bulge * bulge) / (4 * bulge);  // of the centre, to the left, in chords
    const double x = (p.m_x + q.m_x) / 2 - dy * offset, y = (p.m_y + q.m_y) / 2 + dx * offset;
    if (!std::isfinite(x) || !std::isfinite(y)) return;
    const ACAD_VERTEX& from = bulge > 0 ? p : q;
    const double start = std::atan2(from.m_y - y, from.m_x - x) / kDegree;
    AddArc(extent, x, y, std::hypot(p.m_x - x, p.m_y - y), start, 4 * std::atan(std::abs(bulge)) / kDegree);
}

void AddPolyline(DxfExtent& extent, const ACAD_POLYLINE& polyline) {
    const auto vertices = polyline.Vertices();
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        extent.Add(vertices[i].m_x, vertices[i].m_y);
        if (i > 0) AddSide(extent, vertices[i - 1], vertices[i]);
    }
}

void CountOther(DxfLayerSummary& row, const std::string& kind) {
    ++row.m_nOther;
    const auto at = std::find_if(row.m_arrOther.begin(), row.m_arrOther.end(),
                                 [&](const auto& other) { return other.first == kind; });
    if (at != row.m_arrOther.end())
        ++at->second;
    else
        row.m_arrOther.emplace_back(kind, 1);
}

void Count(DxfLayerSummary& row, const ACAD_ENTITY& entity) {
    if (entity.m_bPaperSpace) ++row.m_nPaperSpace;
    AddToExtent(row.m_extent, entity);
    switch (entity.GetType()) {
        case kAcadLine: ++row.m_nLine; break;
        case kAcadPolyline:
            ++row.m_nPolyline;
            if (static_cast<const ACAD_POLYLINE&>(entity).m_bClosed) ++row.m_nPolylineClosed;
            break;
        case kAcadArc: ++row.m_nArc; break;
        case kAcadCircle: ++row.m_nCircle; break;
        default: CountOther(row, entity.GetKind()); break;
    }
}

}  // namespace

void DxfExtent::Add(double x, double y) {
    if (!std::isfinite(x) || !std::isfinite(y)) return;
    if (m_bEmpty) {
        *this = {false, x, y, x, y};
        return;
    }
    m_dMinX = std::min(m_dMinX, x);
    m_dMinY = std::min(m_dMinY, y);
    m_dMaxX = std::max(m_dMaxX, x);
    m_dMaxY = std::max(m_dMaxY, y);
}

void AddToExtent(DxfExtent& extent, const ACAD_ENTITY& entity) {
    switch (entity.GetType()) {
        case kAcadLine: {
            const auto& line = static_cast<const ACAD_LINE&>(entity);
            extent.Add(line.m_x1, line.m_y1);
            extent.Add(line.m_x2, line.m_y2);
            break;
        }
        case kAcadPolyline: AddPolyline(extent, static_cast<const ACAD_POLYLINE&>(entity)); break;
        case kAcadArc: AddArc(extent, static_cast<const ACAD_ARC&>(entity)); break;
        case kAcadCircle: {
            const auto& circle = static_cast<const ACAD_CIRCLE&>(entity);
            AddArc(extent, circle.m_x, circle.m_y, circle.m_dRadius, 0, 360);
            break;
        }
        default: break;
    }
}

std::vector<DxfLayerSummary> SummarizeLayers(const DXF& drawing) {
    std::vector<DxfLayerSummary> rows;
    std::map<std::string, std::size_t> rowOfName;  // folded
    std::unordered_map<const DxfLayer*, std::size_t> rowOfLayer;
    const auto rowOf = [&](const DxfLayer& layer) {
        const auto [known, fresh] = rowOfLayer.try_emplace(&layer, 0);
        if (!fresh) return known->second;
        const auto [named, first] = rowOfName.try_emplace(Folded(layer.m_strName), rows.size());
        if (first) rows.emplace_back().m_strName = layer.m_strName;
        DxfLayerSummary& row = rows[named->second];
        row.m_nDropped += layer.m_nDropped;
        if (layer.m_bInTable) {
            row.m_bInTable = true;
            row.m_bOff = layer.m_bOff;
            row.m_bFrozen = layer.m_bFrozen;
        }
        return known->second = named->second;
    };
    for (const ACAD_ENTITY* entity : drawing.GetEntities()) Count(rows[rowOf(*entity->m_pLayer)], *entity);
    for (const DxfLayer& layer : drawing.GetLayers()) rowOf(layer);
    return rows;
}
