#include "host/editor/axis_grid_view.h"

#include <algorithm>
#include <cmath>

#include "model/profile.h"
#include "platform/canvas/dc.h"
#include "platform/saturate.h"
#include "view/tvo_view_kernel.h"

namespace {

constexpr double kRadians = 3.14159265358979323846 / 180;
constexpr int kRow = 16;  // pixels between rows of dimensions
constexpr int kMargin = 2 * kRow + 14;
constexpr int kLetters = 12;  // pixels
constexpr COLORREF kAxis = RGB(224, 80, 80), kMeasure = RGB(64, 176, 96), kInsertion = RGB(255, 208, 0);

/// From the grid's own coordinates to pixels.
class Picture {
public:
    Picture(const AxisGrid& grid, const CRect& client) : m_place(grid, {0, 0}) {
        double minX = 0, minY = 0, maxX = 0, maxY = 0;  // the insertion point shows too
        for (const AxisPiece& axis : grid.Axes())
            for (const AxisPoint& p : axis.Path()) {
                const AxisPoint q = m_place(p);
                minX = std::min(minX, q.x);
                maxX = std::max(maxX, q.x);
                minY = std::min(minY, q.y);
                maxY = std::max(maxY, q.y);
            }
        const double width = std::max(maxX - minX, 1.0), height = std::max(maxY - minY, 1.0);
        m_scale = std::max(1.0, std::min((client.Width() - 2.0 * kMargin), 1e5)) / width;
        m_scale = std::min(m_scale, std::max(1.0, std::min((client.Height() - 2.0 * kMargin), 1e5)) / height);
        m_x = client.Width() / 2.0 - (minX + maxX) / 2 * m_scale;
        m_y = client.Height() / 2.0 + (minY + maxY) / 2 * m_scale;
    }
    AxisPoint operator()(AxisPoint p) const {
        const AxisPoint q = m_place(p);
        return {m_x + q.x * m_scale, m_y - q.y * m_scale};
    }
    double Pixels(double length) const { return length * m_scale; }

private:
    AxisPlacing m_place;
    double m_scale, m_x, m_y;
};

CPoint Pixel(AxisPoint p) {
    return {SaturatedInt(std::floor(p.x + 0.5)), SaturatedInt(std::floor(p.y + 0.5))};
}

void DrawLine(CDC& dc, AxisPoint a, AxisPoint b) {
    dc.MoveTo(Pixel(a));
    dc.LineTo(Pixel(b));
}

/// A text about a point, along a direction on the screen, turned so that it can be read. Left out where it
/// does not fit.
bool DrawLabel(CDC& dc, AxisPoint at, double degrees, const std::string& text, double room) {
    const CSize size = dc.GetTextExtent(CString(text));
    if (size.cx + 4 > room) return false;
    double a = std::fmod(degrees, 180);
    if (a > 90.001) a -= 180;
    if (a <= -89.999) a += 180;
    LOGFONT shape;
    shape.lfHeight = kLetters;
    shape.lfEscapement = SaturatedInt(std::round(a * 10));
    CFont font;
    font.CreateFontIndirect(&shape);
    CFont* const old = dc.SelectObject(&font);
    const double c = std::cos(a * kRadians), s = std::sin(a * kRadians);
    const CPoint corner =
        Pixel({at.x - size.cx / 2.0 * c - size.cy / 2.0 * s, at.y + size.cx / 2.0 * s - size.cy / 2.0 * c});
    dc.TextOut(corner.x, corner.y, CString(text));
    dc.SelectObject(old);
    return true;
}

/// A chain of measures along a straight side: a tick at each axis, each spacing beside its bay, or each unit
/// where bays are too narrow; the total one row further out.
void DrawChain(CDC& dc, AxisPoint from, AxisPoint to, double outX, double outY, const Spacings& spacings) {
    const double total = spacings.Total(), length = std::hypot(to.x - from.x, to.y - from.y);
    if (!(total > 0) || length < 1) return;
    const double degrees = std::atan2(from.y - to.y, to.x - from.x) / kRadians;
    const auto at = [&](double s, double row) {
        return AxisPoint{from.x + (to.x - from.x) * s / total + outX * row,
                         from.y + (to.y - from.y) * s / total + outY * row};
    };
    const auto label = [&](double a, double b, double row, const std::string& text) {
        return DrawLabel(dc, at((a + b) / 2, row), degrees, text, (b - a) / total * length);
    };
    constexpr double kLine = kRow * 0.75, kText = kLine + kRow * 0.55;
    DrawLine(dc, at(0, kLine), at(total, kLine));
    const auto tick = [&](double s) { DrawLine(dc, at(s, kLine - 3), at(s, kLine + 4)); };
    tick(0);
    double s = 0;
    for (const SpacingUnit& unit : spacings.units) {
        const double start = s;
        const bool bays =
            unit.count * 4 < length &&
            dc.GetTextExtent(CString(NumberText(unit.spacing))).cx + 4 <= unit.spacing / total * length;
        for (int i = 0; i < unit.count; ++i, s += unit.spacing) {
            if (bays) label(s, s + unit.spacing, kText, NumberText(unit.spacing));
            if (unit.spacing / total * length >= 3) tick(s + unit.spacing);
        }
        tick(s);
        if (!bays) label(start, s, kText, NumberText(unit.spacing) + "*" + std::to_string(unit.count));
    }
    if (spacings.units.size() == 1 && spacings.units[0].count == 1) return;
    DrawLine(dc, at(0, kLine + kRow), at(total, kLine + kRow));
    DrawLine(dc, at(0, kLine + kRow - 3), at(0, kLine + kRow + 4));
    DrawLine(dc, at(total, kLine + kRow - 3), at(total, kLine + kRow + 4));
    label(0, total, kText + kRow, NumberText(std::round(total * 1000) / 1000));
}

void DrawStraightMeasures(CDC& dc, const AxisGrid& grid, const Picture& picture) {
    const double c = std::cos(grid.turn * kRadians), s = std::sin(grid.turn * kRadians);
    const AxisPoint origin = picture({0, 0}), along = picture({grid.across.Total(), 0}),
                    up = picture({0, grid.deep.Total()});
    DrawChain(dc, origin, along, s, c, grid.across);  // below, on the screen
    DrawChain(dc, origin, up, -c, s, grid.deep);      // left
}

void DrawRoundMeasures(CDC& dc, const AxisGrid& grid, const Picture& picture) {
    const double outer = grid.inner + grid.deep.Total();
    const auto on = [&](double radius, double degrees) {
        return picture({radius * std::cos(degrees * kRadians), radius * std::sin(degrees * kRadians)});
    };
    const AxisPoint centre = picture({0, 0}), start = on(outer, 0);
    const double r = picture.Pixels(outer);
    double a = 0;
    for (const SpacingUnit& unit : grid.across.units) {
        const double room = r * unit.spacing * kRadians;
        for (int i = 0; i < unit.count; ++i, a += unit.spacing) {
            const double middle = a + unit.spacing / 2;
            const AxisPoint rim = on(outer, middle);
            const double dx = (rim.x - centre.x) / std::max(r, 1.0),
                         dy = (rim.y - centre.y) / std::max(r, 1.0);
            DrawLabel(dc, {rim.x + dx * kRow * 0.8, rim.y + dy * kRow * 0.8}, middle + grid.turn - 90,
                      NumberText(unit.spacing) + "°", room);
        }
    }
    // Depths along the first axis, on the side away from the bays.
    const double c = std::cos(grid.turn * kRadians), s = std::sin(grid.turn * kRadians);
    DrawChain(dc, on(grid.inner, 0), start, s, c, grid.deep);
    if (grid.inner > 0)
        DrawLabel(dc,
                  {(centre.x + on(grid.inner, 0).x) / 2 + s * kRow * 0.7,
                   (centre.y + on(grid.inner, 0).y) / 2 + c * kRow * 0.7},
                  grid.turn, std::string("R").append(NumberText(grid.inner)), picture.Pixels(grid.inner));
}

}  // namespace

AxisGridView::~AxisGridView() { DestroyWindow(); }

void AxisGridView::OnDraw(CDC* dc) {
    const CRect client = GetClientRect();
    dc->FillSolidRect(client, COLORREF{g_cTvoProfile.m_crBackground});
    if (!m_valid) return;
    const Picture picture(m_grid, client);
    CPen axisPen(PS_SOLID, 1, kAxis), measurePen(PS_SOLID, 1, kMeasure), crossPen(PS_SOLID, 2, kInsertion);
    CFont font;
    font.CreateFont(kLetters, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
    CPen* const oldPen = dc->SelectObject(&measurePen);
    CFont* const oldFont = dc->SelectObject(&font);
    const int oldMode = dc->SetBkMode(TRANSPARENT);
    const COLORREF oldColor = dc->SetTextColor(kMeasure);
    const UINT oldAlign = dc->SetTextAlign(TA_LEFT | TA_TOP);
    if (m_grid.arc) DrawRoundMeasures(*dc, m_grid, picture);
    else DrawStraightMeasures(*dc, m_grid, picture);
    dc->SelectObject(&axisPen);
    for (const AxisPiece& axis : m_grid.Axes()) {
        std::vector<CPoint> path;
        for (const AxisPoint& p : axis.Path()) path.push_back(Pixel(picture(p)));
        dc->Polyline(path.data(), static_cast<int>(path.size()));
        dc->SetPixel(path.back(), kAxis);
    }
    dc->SelectObject(&crossPen);
    const AxisPoint at = picture(m_grid.InsertionPoint());
    DrawLine(*dc, {at.x - 6, at.y - 6}, {at.x + 6, at.y + 6});
    DrawLine(*dc, {at.x - 6, at.y + 6}, {at.x + 6, at.y - 6});
    dc->SetTextAlign(oldAlign);
    dc->SetTextColor(oldColor);
    dc->SetBkMode(oldMode);
    dc->SelectObject(oldFont);
    dc->SelectObject(oldPen);
}

int AxisGridRubber::DrawRange(CTvoViewKernel* view, CDC& dc, int) {
    const CFPoint cursor = view->EffectivePoint();
    const AxisPlacing place(m_grid, {static_cast<double>(cursor.x), static_cast<double>(cursor.y)});
    for (const AxisPiece& axis : m_grid.Axes()) {
        std::vector<CPoint> path;
        for (const AxisPoint& p : axis.Path()) {
            const AxisPoint q = place(p);
            path.push_back(view->PixelOf({static_cast<float>(q.x), static_cast<float>(q.y), 0}));
        }
        dc.Polyline(path.data(), static_cast<int>(path.size()));
    }
    return 1;
}
