#include "controls/entity_pencil.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/canvas/dc.h"
#include "platform/dxf/acad_entity.h"
#include "platform/saturate.h"

namespace {

constexpr double kDegree = std::numbers::pi / 180;
constexpr double kFar = 1 << 29;           // pixels
constexpr double kLargeRadius = 2000;      // pixels; beyond, straight pieces are seen or too many
constexpr double kLargestRadius = 1 << 26; // pixels; beyond, an arc in sight is straight
constexpr double kReadable = 4, kLargestText = 1000;  // pixels of a letter

/// The four corners of a solid or face in their order around.
struct Corners {
    double x[4], y[4];
};
template <typename Face>
Corners CornersOf(const Face& f, bool crosswise) {
    const int third = crosswise ? 3 : 2, fourth = crosswise ? 2 : 3;
    return {{f.m_x[0], f.m_x[1], f.m_x[third], f.m_x[fourth]}, {f.m_y[0], f.m_y[1], f.m_y[third], f.m_y[fourth]}};
}

double TextWidth(const ACAD_TEXT& text) { return static_cast<double>(text.m_strText.size()) * std::fabs(text.m_dHeight); }

}  // namespace

CPoint CEntityPencil::PixelOf(double x, double y) const {
    const auto at = [](double v) { return SaturatedInt(std::floor(std::clamp(v, -kFar, kFar))); };
    return {at(m_placement.X(x)), at(m_placement.Y(y))};
}

void CEntityPencil::Move(double x, double y) {
    m_last = PixelOf(x, y);
    m_dc.MoveTo(m_last);
}

void CEntityPencil::Line(double x, double y) {
    const CPoint to = PixelOf(x, y);
    if (to == m_last) return;
    m_dc.LineTo(to);
    m_last = to;
}

void CEntityPencil::Arc(double x, double y, double r, double start, double sweep) {
    r = std::fabs(r);
    const double endX = x + r * std::cos(start + sweep), endY = y + r * std::sin(start + sweep);
    const double pixels = r * m_placement.scale;
    if (!(pixels <= kLargestRadius)) return Line(endX, endY);
    if (pixels > kLargeRadius) {
        const CPoint centre = PixelOf(x, y);
        m_dc.AngleArc(centre.x, centre.y, SaturatedInt(std::round(pixels)), start / kDegree, sweep / kDegree);
        m_last = m_dc.GetCurrentPosition();
        return Line(endX, endY);
    }
    const double step = 2 * std::acos(1 - 0.4 / std::max(pixels, 1.0));  // four tenths of a pixel of sag
    const int count = std::clamp(SaturatedInt(std::ceil(std::fabs(sweep) / step)), 1, 720);
    for (int i = 1; i <= count; ++i) {
        const double angle = start + sweep * i / count;
        Line(x + r * std::cos(angle), y + r * std::sin(angle));
    }
}

// A quarter of the arc's angle has the tangent of the bulge.
void CEntityPencil::Side(const ACAD_VERTEX& p, const ACAD_VERTEX& q) {
    const double b = p.m_dBulge, dx = q.m_x - p.m_x, dy = q.m_y - p.m_y;
    if (std::fabs(b) < 1e-8 || (dx == 0 && dy == 0)) return Line(q.m_x, q.m_y);
    const double offset = (1 - b * b) / (4 * b);
    const double x = (p.m_x + q.m_x) / 2 - dy * offset, y = (p.m_y + q.m_y) / 2 + dx * offset;
    Arc(x, y, std::hypot(p.m_x - x, p.m_y - y), std::atan2(p.m_y - y, p.m_x - x), 4 * std::atan(b));
    Line(q.m_x, q.m_y);
}

void CEntityPencil::Draw(const ACAD_ENTITY& entity, COLORREF color) {
    const auto ring = [&](const Corners& c) {
        Move(c.x[3], c.y[3]);
        for (int i = 0; i < 4; ++i) Line(c.x[i], c.y[i]);
    };
    switch (entity.GetType()) {
        case kAcadLine: {
            const auto& line = static_cast<const ACAD_LINE&>(entity);
            Move(line.m_x1, line.m_y1);
            Line(line.m_x2, line.m_y2);
            break;
        }
        case kAcadCircle: {
            const auto& circle = static_cast<const ACAD_CIRCLE&>(entity);
            Move(circle.m_x + std::fabs(circle.m_dRadius), circle.m_y);
            Arc(circle.m_x, circle.m_y, circle.m_dRadius, 0, 2 * std::numbers::pi);
            break;
        }
        case kAcadArc: {
            const auto& arc = static_cast<const ACAD_ARC&>(entity);
            double sweep = std::fmod(arc.m_dEnd - arc.m_dStart, 360);
            if (!(sweep > 0)) sweep += 360;
            const double start = std::fmod(arc.m_dStart, 360) * kDegree, r = std::fabs(arc.m_dRadius);
            Move(arc.m_x + r * std::cos(start), arc.m_y + r * std::sin(start));
            Arc(arc.m_x, arc.m_y, r, start, sweep * kDegree);
            break;
        }
        case kAcadPolyline: {
            const auto& line = static_cast<const ACAD_POLYLINE&>(entity);
            const auto corners = line.Vertices();
            if (corners.empty()) return;
            Move(corners[0].m_x, corners[0].m_y);
            for (std::size_t i = 0; i + 1 < corners.size(); ++i) Side(corners[i], corners[i + 1]);
            if (line.m_bClosed && corners.size() > 1) Side(corners.back(), corners[0]);
            break;
        }
        case kAcadSolid: ring(CornersOf(static_cast<const ACAD_SOLID&>(entity), true)); break;
        case kAcad3dFace: ring(CornersOf(static_cast<const ACAD_3DFACE&>(entity), false)); break;
        case kAcadPoint: {
            const auto& point = static_cast<const ACAD_POINT&>(entity);
            Move(point.m_x, point.m_y);
            break;
        }
        case kAcadText: {
            const auto& text = static_cast<const ACAD_TEXT&>(entity);
            const double height = std::fabs(text.m_dHeight) * m_placement.scale;
            if (!(height >= kReadable && height <= kLargestText)) return;
            CFont font;
            const int tenths = SaturatedInt(std::round(std::fmod(text.m_dAngle, 360) * 10));
            font.CreateFont(-SaturatedInt(std::round(height)), 0, tenths, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0,
                            DEFAULT_QUALITY, 0, "");
            CFont* const old = m_dc.SelectObject(&font);
            m_dc.SetTextColor(color);
            const CPoint at = PixelOf(text.m_x, text.m_y);
            m_dc.TextOut(at.x, at.y, text.m_strText.data(), SaturatedInt(static_cast<double>(text.m_strText.size()), 0, 1000));
            m_dc.SelectObject(old);
            return;
        }
        default: return;
    }
    m_dc.SetPixel(m_last, color);  // lines leave their last pixel out
}

DxfExtent ExtentOfDrawn(const ACAD_ENTITY& entity) {
    DxfExtent box;
    const auto ring = [&](const Corners& c) {
        for (int i = 0; i < 4; ++i) box.Add(c.x[i], c.y[i]);
    };
    const auto around = [&](double x, double y, double reach) {
        box.Add(x - reach, y - reach);
        box.Add(x + reach, y + reach);
    };
    switch (entity.GetType()) {
        case kAcadSolid: ring(CornersOf(static_cast<const ACAD_SOLID&>(entity), true)); break;
        case kAcad3dFace: ring(CornersOf(static_cast<const ACAD_3DFACE&>(entity), false)); break;
        case kAcadPoint: around(static_cast<const ACAD_POINT&>(entity).m_x, static_cast<const ACAD_POINT&>(entity).m_y, 0); break;
        case kAcadText: {
            const auto& text = static_cast<const ACAD_TEXT&>(entity);
            around(text.m_x, text.m_y, TextWidth(text));
            break;
        }
        case kAcadPolyline: {
            AddToExtent(box, entity);
            const auto& line = static_cast<const ACAD_POLYLINE&>(entity);
            const auto corners = line.Vertices();
            if (!line.m_bClosed || corners.empty() || corners.back().m_dBulge == 0) break;
            const ACAD_VERTEX &p = corners.back(), &q = corners[0];  // the side that closes reaches as far as its arc
            const double chord = std::hypot(q.m_x - p.m_x, q.m_y - p.m_y), b = std::fabs(p.m_dBulge);
            const double reach = chord * (b + 1 / std::max(b, 0.1));
            around(p.m_x, p.m_y, std::isfinite(reach) ? reach : 0);
            break;
        }
        default: AddToExtent(box, entity);
    }
    return box;
}
