#include "host/editor/drawing_preview.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include "platform/acad_color.h"
#include "platform/canvas/dc.h"
#include "platform/dxf/dxf.h"
#include "platform/saturate.h"

namespace {

constexpr COLORREF kGround = RGB(24, 24, 28);
constexpr int kMargin = 10;  // pixels
constexpr double kDegree = std::numbers::pi / 180;

COLORREF Dimmed(COLORREF c) {
    const auto channel = [&](int shift) { return ((c >> shift & 0xFF) * 2 + (kGround >> shift & 0xFF) * 7) / 9 << shift; };
    return channel(0) | channel(8) | channel(16);
}

/// A row of points on its way to the screen.
class Pencil {
public:
    Pencil(CDC& dc, double scale, double left, double top) : m_dc(dc), m_scale(scale), m_left(left), m_top(top) {}

    void Add(double x, double y) {
        constexpr double kFar = 1 << 20;  // pixels
        m_points.push_back({SaturatedInt(std::clamp((x - m_left) * m_scale, -kFar, kFar)),
                            SaturatedInt(std::clamp((m_top - y) * m_scale, -kFar, kFar))});
    }
    /// Anticlockwise for a positive sweep, in radians; steps of half a pixel's sag at most.
    void AddArc(double x, double y, double r, double start, double sweep) {
        const double pixels = std::max(std::fabs(r) * m_scale, 1.0);
        const double step = 2 * std::acos(std::max(0.5, 1 - 0.5 / pixels));
        const int count = std::clamp(static_cast<int>(std::ceil(std::fabs(sweep) / step)), 1, 720);
        for (int i = 0; i <= count; ++i) {
            const double a = start + sweep * i / count;
            Add(x + r * std::cos(a), y + r * std::sin(a));
        }
    }
    /// The arc of a polyline's side: a quarter of its angle has the tangent `bulge`.
    void AddSide(const ACAD_VERTEX& p, const ACAD_VERTEX& q) {
        const double b = p.m_dBulge, dx = q.m_x - p.m_x, dy = q.m_y - p.m_y;
        if (std::fabs(b) < 1e-8 || (dx == 0 && dy == 0)) return Add(q.m_x, q.m_y);
        const double offset = (1 - b * b) / (4 * b);
        const double x = (p.m_x + q.m_x) / 2 - dy * offset, y = (p.m_y + q.m_y) / 2 + dx * offset;
        AddArc(x, y, std::hypot(p.m_x - x, p.m_y - y), std::atan2(p.m_y - y, p.m_x - x), 4 * std::atan(b));
    }
    void Draw() {
        if (m_points.size() > 1) m_dc.Polyline(m_points.data(), static_cast<int>(m_points.size()));
        if (!m_points.empty()) m_dc.SetPixel(m_points.back(), m_dc.GetTextColor());  // lines end before their last pixel
        m_points.clear();
    }

private:
    CDC& m_dc;
    double m_scale, m_left, m_top;
    std::vector<CPoint> m_points;
};

void Trace(Pencil& pencil, const ACAD_ENTITY& entity) {
    switch (entity.GetType()) {
        case kAcadLine: {
            const auto& line = static_cast<const ACAD_LINE&>(entity);
            pencil.Add(line.m_x1, line.m_y1);
            pencil.Add(line.m_x2, line.m_y2);
            break;
        }
        case kAcadCircle: {
            const auto& circle = static_cast<const ACAD_CIRCLE&>(entity);
            pencil.AddArc(circle.m_x, circle.m_y, circle.m_dRadius, 0, 2 * std::numbers::pi);
            break;
        }
        case kAcadArc: {
            const auto& arc = static_cast<const ACAD_ARC&>(entity);
            double sweep = std::fmod(arc.m_dEnd - arc.m_dStart, 360);
            if (!(sweep > 0)) sweep += 360;
            pencil.AddArc(arc.m_x, arc.m_y, arc.m_dRadius, arc.m_dStart * kDegree, sweep * kDegree);
            break;
        }
        case kAcadPolyline: {
            const auto corners = static_cast<const ACAD_POLYLINE&>(entity).Vertices();
            if (!corners.empty()) pencil.Add(corners[0].m_x, corners[0].m_y);
            for (std::size_t i = 0; i + 1 < corners.size(); ++i) pencil.AddSide(corners[i], corners[i + 1]);
            break;
        }
        default: break;
    }
    pencil.Draw();
}

bool IsShown(const ACAD_ENTITY& entity) {
    const auto type = entity.GetType();
    return type == kAcadLine || type == kAcadCircle || type == kAcadArc || type == kAcadPolyline;
}

}  // namespace

DrawingPreview::DrawingPreview(const DXF& drawing) : m_drawing(drawing) {
    for (int i = 0; i < drawing.GetEntityCount(); ++i) AddToExtent(m_extent, *drawing.GetEntity(i));
}

void DrawingPreview::Choose(std::vector<const DxfLayer*> layers) {
    std::sort(layers.begin(), layers.end(), std::less<>());
    if (layers == m_chosen) return;
    m_chosen = std::move(layers);
    Invalidate();
}

void DrawingPreview::Fit() {
    const CRect client = GetClientRect();
    if (m_extent.m_bEmpty || client.IsRectEmpty()) return;
    const double width = std::max(m_extent.m_dMaxX - m_extent.m_dMinX, 1e-6), height = std::max(m_extent.m_dMaxY - m_extent.m_dMinY, 1e-6);
    m_scale = std::max(1, client.Width() - 2 * kMargin) / width;
    m_scale = std::min(m_scale, std::max(1, client.Height() - 2 * kMargin) / height);
    m_left = (m_extent.m_dMinX + m_extent.m_dMaxX) / 2 - client.Width() / m_scale / 2;
    m_top = (m_extent.m_dMinY + m_extent.m_dMaxY) / 2 + client.Height() / m_scale / 2;
}

void DrawingPreview::OnSize(int, int) {
    Fit();
    Invalidate();
}

void DrawingPreview::DrawEntities(CDC& dc, bool chosen) {
    Pencil pencil(dc, m_scale, m_left, m_top);
    COLORREF last = CLR_INVALID;
    CPen pen;
    for (int i = 0; i < m_drawing.GetEntityCount(); ++i) {
        const ACAD_ENTITY& entity = *m_drawing.GetEntity(i);
        if (!IsShown(entity)) continue;
        if (std::binary_search(m_chosen.begin(), m_chosen.end(), entity.m_pLayer, std::less<>()) != chosen) continue;
        const int own = entity.m_nColor;
        COLORREF color = GetAcadRGBColor(own >= 1 && own <= 255 ? own : std::clamp(entity.m_pLayer->m_nColor, 1, 255));
        if (!chosen) color = Dimmed(color);
        if (color != last) {
            dc.SelectStockObject(BLACK_PEN);
            pen.DeleteObject();
            pen.CreatePen(PS_SOLID, 1, last = color);
            dc.SelectObject(&pen);
            dc.SetTextColor(color);
        }
        Trace(pencil, entity);
    }
    dc.SelectStockObject(BLACK_PEN);
}

void DrawingPreview::OnDraw(CDC* dc) {
    CBrush ground(kGround);
    dc->FillRect(GetClientRect(), &ground);
    if (!(m_scale > 0)) return;
    const int saved = dc->SaveDC();
    DrawEntities(*dc, false);
    DrawEntities(*dc, true);
    dc->RestoreDC(saved);
}

void DrawingPreview::OnLButtonDown(UINT, CPoint p) {
    m_held = p;
    SetCapture();
}

void DrawingPreview::OnMouseMove(UINT keys, CPoint p) {
    if (!(keys & MK_LBUTTON) || !(m_scale > 0)) return;
    m_left -= (p.x - m_held.x) / m_scale;
    m_top += (p.y - m_held.y) / m_scale;
    m_held = p;
    Invalidate();
}

BOOL DrawingPreview::OnMouseWheel(UINT, int delta, CPoint screen) {
    const double factor = std::pow(1.2, std::clamp(delta / 120.0, -10.0, 10.0)), scale = m_scale * factor;
    if (!(scale > 1e-12 && scale < 1e9)) return 1;
    ScreenToClient(screen);
    m_left += screen.x / m_scale - screen.x / scale;
    m_top -= screen.y / m_scale - screen.y / scale;
    m_scale = scale;
    Invalidate();
    return 1;
}
