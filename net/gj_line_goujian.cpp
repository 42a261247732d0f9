#include "net/gj_line_goujian.h"

#include <array>
#include <cmath>

#include "geometry/angles.h"
#include "geometry/fregion.h"
#include "geometry/tolerance.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"

namespace {

using Strip = std::array<CFShoot, 4>;

/// Anticlockwise from the right of the start.
Strip StraightStrip(const CGjNetLine& line, float width) {
    const CGjNetNode &from = *line.m_pStartNode, &to = *line.m_pEndNode;
    const float angle = get_line_angle(from.m_fX, from.m_fY, to.m_fX, to.m_fY);
    const float length = line.GetLength(), half = width / 2;
    Strip strip{CFShoot(0, -half, 0), CFShoot(length, -half, 0), CFShoot(length, half, 0),
                CFShoot(0, half, 0)};
    for (CFShoot& corner : strip) frame_to_model(angle, from.m_fX, from.m_fY, &corner.x, &corner.y);
    return strip;
}

/// From the inner end at the start outwards, along the outer arc, and back along the inner one.
Strip ArcStrip(const CGjNetLine& line, float width) {
    float cx, cy, a1, a2;
    line.GetCenterPoint(cx, cy);
    line.GetDirectionAngle(a1, a2);
    const float inner = line.GetR() - width / 2, outer = line.GetR() + width / 2;
    const float b = line.m_fBulge * tolerance::kHalfTurnF / 180.0f;
    const auto at = [&](float r, float angle, float c) {
        return CFShoot(cx + r * std::cos(angle), cy + r * std::sin(angle), c);
    };
    return {at(inner, a1, 0), at(outer, a1, b), at(outer, a2, 0), at(inner, a2, -b)};
}

}  // namespace

CFPoint CGjLineGouJian::GetCentroid() { return m_pNetLine ? m_pNetLine->GetCentroid() : CFPoint(0, 0, 0); }
CFPoint CGjLineGouJian::GetSortPoint() { return m_pNetLine ? m_pNetLine->GetSortPoint() : CFPoint(0, 0, 0); }

void CGjLineGouJian::GetDiTuRegion(float width, CFRegion& out) {
    out.RemoveAll();
    const CGjNetLine* line = GetNetLine();
    if (!line || !line->m_pStartNode || !line->m_pEndNode) return;
    for (const CFShoot& corner : line->m_nArc ? ArcStrip(*line, width) : StraightStrip(*line, width))
        out.Add(corner);
}
