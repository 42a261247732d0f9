#include "platform/dxf/base_sgt.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>

#include "platform/string.h"

namespace {

bool AllFinite(std::initializer_list<float> numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](float v) { return std::isfinite(v); });
}

/// An arc with a positive radius, anticlockwise, its angles from 0 to 360.
struct ArcRun {
    double r, start, end;
    /// Degrees; an end below the start lies in the next turn.
    double Sweep() const { return end < start ? end - start + 360 : end - start; }
};

double WithinTurn(double degrees) {
    if (degrees >= 0 && degrees <= 360) return degrees;
    const double rest = std::fmod(degrees, 360);
    return rest < 0 ? rest + 360 : rest;
}

// A negative radius points away from where the angles do.
ArcRun RunOf(float r, float a1, float a2) {
    const double turn = r < 0 ? 180 : 0, start = double{a1}, end = double{a2};
    if (std::abs(end - start) >= 360) return {std::abs(double{r}), 0, 360};
    return {std::abs(double{r}), WithinTurn(start + turn), WithinTurn(end + turn)};
}

/// Exact on the axes, where the arcs of plans begin and end.
ACAD_VERTEX PointAt(double x, double y, double r, double degrees) {
    constexpr double kCos[] = {1, 0, -1, 0}, kSin[] = {0, 1, 0, -1};
    const double quarters = degrees / 90;
    if (quarters == std::floor(quarters)) {
        const auto i = static_cast<std::size_t>(std::fmod(quarters, 4));
        return {x + r * kCos[i], y + r * kSin[i], 0};
    }
    const double a = degrees * (std::numbers::pi / 180);
    return {x + r * std::cos(a), y + r * std::sin(a), 0};
}

}  // namespace

void CBase_SGT::Close() {
    DXF::Close();
    m_nCurColor = kAcadColorByLayer;
    m_nCurLType = 0;
}

void CBase_SGT::Add_Default_LineType() {
    if (m_bTablesDone) return;
    m_lineTypes.clear();
    for (const DxfLineType& type : StandardLineTypes()) m_lineTypes.push_back(&type);
}

void CBase_SGT::SetCurColor(int index) {
    m_nCurColor = index >= 0 && index < kAcadColorByLayer ? index : kAcadColorByLayer;
}

void CBase_SGT::SetCurLType(const char* name) {
    if (!name) return;
    const CString wanted(name);
    if (wanted.CompareNoCase("BYLAYER") == 0) m_nCurLType = 0;
    for (std::size_t i = 0; i < m_lineTypes.size(); ++i)
        if (wanted.CompareNoCase(m_lineTypes[i]->m_szName) == 0) m_nCurLType = static_cast<int>(i) + 1;
}

// --- entities ---------------------------------------------------------------------------------------------

template <class T>
T* CBase_SGT::Add(const T& entity, const char* kind) {
    if (!m_pDrawLayer) m_pDrawLayer = &LayerZero();
    const DxfKind*& drawnKind = m_apDrawnKind[entity.GetType()];
    if (!drawnKind) drawnKind = &m_kinds.emplace_back(DxfKind{kind});
    T* const added = m_arena.New<T>(entity);
    added->m_pLayer = m_pDrawLayer;
    added->m_pKind = drawnKind;
    added->m_nColor = static_cast<std::int16_t>(m_nCurColor);
    added->m_nLType = static_cast<std::uint8_t>(m_nCurLType);
    added->m_bFloats = true;
    m_arrEntity.Add(added);
    return added;
}

ACAD_LINE* CBase_SGT::AddLine(float x1, float y1, float z1, float x2, float y2, float z2) {
    if (!AllFinite({x1, y1, z1, x2, y2, z2})) return nullptr;
    ACAD_LINE line;
    line.m_x1 = double{x1};
    line.m_y1 = double{y1};
    line.m_z1 = double{z1};
    line.m_x2 = double{x2};
    line.m_y2 = double{y2};
    line.m_z2 = double{z2};
    return Add(line, "LINE");
}

// The angle goes through float degrees: a right angle, which floats in radians only come near, is 90 again.
ACAD_TEXT* CBase_SGT::AddText(float x, float y, float z, float height, float angle, const char* text) {
    const float degrees = static_cast<float>(double{angle} * (180 / std::numbers::pi));
    if (!AllFinite({x, y, z, height, degrees}) || !(height > 0) || !text || !*text) return nullptr;
    ACAD_TEXT entity;
    entity.m_nStyle = static_cast<std::uint8_t>(m_styles.size());
    entity.m_x = double{x};
    entity.m_y = double{y};
    entity.m_z = double{z};
    entity.m_dHeight = double{height};
    entity.m_dAngle = double{degrees};
    entity.m_strText = m_arena.Copy(std::string_view(text));
    return Add(entity, "TEXT");
}

ACAD_POLYLINE* CBase_SGT::AddPolyline(std::span<const ACAD_VERTEX> vertices, float startWidth,
                                      float endWidth) {
    ACAD_POLYLINE polyline;
    polyline.m_pVertices = m_arena.Copy(vertices);
    polyline.m_nVertices = static_cast<std::uint32_t>(vertices.size());
    polyline.m_fStartWidth = std::abs(startWidth);
    polyline.m_fEndWidth = std::abs(endWidth);
    return Add(polyline, "POLYLINE");
}

ACAD_POINT* CBase_SGT::Draw_Point(float x, float y) {
    if (!AllFinite({x, y})) return nullptr;
    ACAD_POINT point;
    point.m_x = double{x};
    point.m_y = double{y};
    return Add(point, "POINT");
}

ACAD_LINE* CBase_SGT::Draw_Line(float x1, float y1, float x2, float y2, float /*width*/) {
    return AddLine(x1, y1, 0, x2, y2, 0);
}

ACAD_TEXT* CBase_SGT::Draw_Text(float x, float y, float height, float angle, const char* text) {
    return AddText(x, y, 0, height, angle, text);
}

ACAD_ARC* CBase_SGT::Draw_Arc(float cx, float cy, float r, float a1, float a2, float /*width*/) {
    if (!AllFinite({cx, cy, r, a1, a2}) || r == 0) return nullptr;
    const ArcRun run = RunOf(r, a1, a2);
    if (run.Sweep() == 0) return nullptr;  // a reader would take it for the full circle
    ACAD_ARC arc;
    arc.m_x = double{cx};
    arc.m_y = double{cy};
    arc.m_dRadius = run.r;
    arc.m_dStart = run.start;
    arc.m_dEnd = run.end;
    return Add(arc, "ARC");
}

ACAD_CIRCLE* CBase_SGT::Draw_Circle(float cx, float cy, float r, float /*width*/) {
    if (!AllFinite({cx, cy, r}) || r == 0) return nullptr;
    ACAD_CIRCLE circle;
    circle.m_x = double{cx};
    circle.m_y = double{cy};
    circle.m_dRadius = std::abs(double{r});
    return Add(circle, "CIRCLE");
}

ACAD_POLYLINE* CBase_SGT::Draw_Pline(float x1, float y1, float x2, float y2, float startWidth, float endWidth,
                                     float /*width*/) {
    if (!AllFinite({x1, y1, x2, y2, startWidth, endWidth})) return nullptr;
    const ACAD_VERTEX ends[] = {{double{x1}, double{y1}, 0}, {double{x2}, double{y2}, 0}};
    return AddPolyline(ends, startWidth, endWidth);
}

ACAD_POLYLINE* CBase_SGT::Draw_PArc(float cx, float cy, float r, float a1, float a2, float startWidth,
                                    float endWidth) {
    if (!AllFinite({cx, cy, r, a1, a2, startWidth, endWidth}) || r == 0) return nullptr;
    const ArcRun run = RunOf(r, a1, a2);
    const double sweep = run.Sweep();
    if (sweep == 0) return nullptr;
    const int pieces = sweep > 180 ? 2 : 1;  // a bulge can't tell more than half a turn well
    const double step = sweep / pieces;
    ACAD_VERTEX vertices[3];
    for (int i = 0; i <= pieces; ++i) {
        vertices[i] = PointAt(double{cx}, double{cy}, run.r, run.start + i * step);
        if (i < pieces) vertices[i].m_dBulge = std::tan(step / 4 * (std::numbers::pi / 180));
    }
    return AddPolyline({vertices, static_cast<std::size_t>(pieces) + 1}, startWidth, endWidth);
}
