#include "controls/dxf_wnd.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "controls/entity_pencil.h"
#include "platform/acad_color.h"
#include "platform/dxf/dxf.h"
#include "platform/dxf/layer_summary.h"
#include "platform/saturate.h"

namespace {

constexpr int kMargin = 10;  // pixels about a drawing that fits
constexpr std::size_t kTrimmedOf = 20;   // of so many items one may lie out at each end
constexpr double kRoomAbout = 5;         // about what most of them take up, in its size: what lies there belongs to it
constexpr double kLeastScale = 1e-13, kMostScale = 1e9;

/// From where to where most of the ranges go, with room about it.
std::pair<double, double> MostOf(std::vector<double>& from, std::vector<double>& to) {
    const std::size_t out = std::max<std::size_t>(from.size() / kTrimmedOf, 1);
    const auto low = from.begin() + static_cast<std::ptrdiff_t>(out);
    const auto high = to.end() - 1 - static_cast<std::ptrdiff_t>(out);
    std::nth_element(from.begin(), low, from.end());
    std::nth_element(to.begin(), high, to.end());
    const double room = kRoomAbout * std::max(*high - *low, 0.0);
    return {*low - room, *high + room};
}

std::string Folded(std::string name) {
    for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return name;
}

}  // namespace

CDxfWnd::CDxfWnd() = default;
CDxfWnd::~CDxfWnd() { DestroyWindow(); }

// ---- the drawing ------------------------------------------------------------------------------------------

BOOL CDxfWnd::Open(const CString& file) {
    SetDrawing(nullptr);
    auto drawing = std::make_unique<DXF>();
    drawing->Read_FileDxf_To_Mem(file.GetString());
    const DxfOutcome outcome = drawing->GetResult().m_eOutcome;
    if (outcome != DxfOutcome::Ok && outcome != DxfOutcome::Truncated) return 0;
    SetDrawing(drawing.get());
    m_own = std::move(drawing);
    return 1;
}

void CDxfWnd::SetDrawing(const DXF* drawing) {
    if (drawing != m_own.get() || !drawing) m_own.reset();
    m_drawing = drawing;
    TakeOver();
    Fit();
}

void CDxfWnd::TakeOver() {
    m_layers.clear();
    m_items.clear();
    m_mapRow.clear();
    m_bDrag = false;
    if (!m_drawing) return;
    for (const DxfLayerSummary& layer : SummarizeLayers(*m_drawing)) {
        m_mapRow.emplace(Folded(layer.m_strName), m_layers.size());
        const auto count = layer.m_nLine + layer.m_nPolyline + layer.m_nArc + layer.m_nCircle + layer.m_nOther;
        m_layers.push_back({CString(layer.m_strName), count, 7, !layer.m_bOff && !layer.m_bFrozen});
    }
    std::map<const DxfLayer*, std::size_t> rowOf;  // only looked up
    for (const DxfLayer& layer : m_drawing->GetLayers())
        if (const auto found = m_mapRow.find(Folded(layer.m_strName)); found != m_mapRow.end()) {
            rowOf[&layer] = found->second;
            if (layer.m_bInTable) m_layers[found->second].m_nColor = std::clamp(layer.m_nColor, 1, 255);
        }
    DxfExtent all;
    for (const ACAD_ENTITY* const entity : m_drawing->GetEntities()) {
        const DxfExtent box = ExtentOfDrawn(*entity);
        const auto row = rowOf.find(entity->m_pLayer);
        if (box.m_bEmpty || row == rowOf.end()) continue;
        const int own = entity->m_nColor;
        const int color = own >= 1 && own <= 255 ? own : m_layers[row->second].m_nColor;
        m_items.push_back({entity, box.m_dMinX, box.m_dMinY, box.m_dMaxX, box.m_dMaxY, row->second, GetAcadRGBColor(color)});
        all.Add(box.m_dMinX, box.m_dMinY);
        all.Add(box.m_dMaxX, box.m_dMaxY);
    }
    m_minX = all.m_dMinX, m_minY = all.m_dMinY, m_maxX = all.m_dMaxX, m_maxY = all.m_dMaxY;
    LeaveOutStrays();
}

// A single point a hundred kilometres off would make the drawing a dot. What fits at first is then all but that.
void CDxfWnd::LeaveOutStrays() {
    if (m_items.size() < kTrimmedOf) return;
    std::vector<double> minX, minY, maxX, maxY;
    for (const Item& item : m_items) {
        minX.push_back(item.minX);
        minY.push_back(item.minY);
        maxX.push_back(item.maxX);
        maxY.push_back(item.maxY);
    }
    const auto [left, right] = MostOf(minX, maxX);
    const auto [bottom, top] = MostOf(minY, maxY);
    DxfExtent most;
    for (const Item& item : m_items) {
        if (item.minX < left || item.maxX > right || item.minY < bottom || item.maxY > top) continue;
        most.Add(item.minX, item.minY);
        most.Add(item.maxX, item.maxY);
    }
    if (most.m_bEmpty) return;
    const double width = most.m_dMaxX - most.m_dMinX, height = most.m_dMaxY - most.m_dMinY;
    if (m_maxX - m_minX <= kRoomAbout * width && m_maxY - m_minY <= kRoomAbout * height) return;  // all shows well enough
    m_minX = most.m_dMinX, m_minY = most.m_dMinY, m_maxX = most.m_dMaxX, m_maxY = most.m_dMaxY;
}

// ---- layers -----------------------------------------------------------------------------------------------

std::size_t CDxfWnd::LayerOf(const CString& name) const {
    const auto found = m_mapRow.find(Folded(name.GetString()));
    return found == m_mapRow.end() ? m_layers.size() : found->second;
}

BOOL CDxfWnd::SetLayerShown(const CString& name, bool shown) {
    const std::size_t index = LayerOf(name);
    if (index == m_layers.size()) return 0;
    SwitchLayer(index, shown);
    return 1;
}

bool CDxfWnd::IsLayerShown(const CString& name) const {
    const std::size_t index = LayerOf(name);
    return index < m_layers.size() && m_layers[index].m_bShown;
}

void CDxfWnd::SwitchLayer(std::size_t index, bool shown) {
    if (std::exchange(m_layers[index].m_bShown, shown) != shown) Redraw();
}

void CDxfWnd::SetHiddenDimmed(bool dimmed) {
    if (std::exchange(m_bDimmed, dimmed) != dimmed) Redraw();
}

// ---- view -------------------------------------------------------------------------------------------------

void CDxfWnd::Redraw() {
    m_bDirty = true;
    Invalidate();
}

void CDxfWnd::Fit() {
    m_bDrag = false;
    m_bFitted = true;
    m_scale = 0;
    const CRect place = DrawingPlace();
    if (!m_items.empty() && !place.IsRectEmpty()) {
        const double width = m_maxX - m_minX, height = m_maxY - m_minY;
        const double wide = std::max(1, place.Width() - 2 * kMargin) / std::max(width, 1e-9);
        const double high = std::max(1, place.Height() - 2 * kMargin) / std::max(height, 1e-9);
        m_scale = std::clamp(std::min(wide, high), kLeastScale, kMostScale);
        m_left = m_minX + width / 2 - place.Width() / m_scale / 2;
        m_top = m_minY + height / 2 + place.Height() / m_scale / 2;
    }
    Redraw();
}

void CDxfWnd::ZoomAt(const CPoint& p, double factor) {
    EndDrag();
    const double scale = m_scale * factor;
    if (!(scale >= kLeastScale && scale <= kMostScale)) return;
    const CRect place = DrawingPlace();
    const double x = static_cast<double>(p.x) - place.left, y = static_cast<double>(p.y) - place.top;
    m_left += x / m_scale - x / scale;
    m_top -= y / m_scale - y / scale;
    m_scale = scale;
    m_bFitted = false;
    Redraw();
}

CPoint CDxfWnd::PixelOf(double x, double y) const {
    const CRect place = DrawingPlace();
    return {SaturatedInt(std::floor((x - m_left) * m_scale + place.left)),
            SaturatedInt(std::floor((m_top - y) * m_scale + place.top))};
}

// What was moved or zoomed stays at its corner.
void CDxfWnd::OnSize(int, int) {
    EndDrag();
    if (m_bFitted || !(m_scale > 0)) return Fit();
    Redraw();
}

// ---- mouse ------------------------------------------------------------------------------------------------

void CDxfWnd::BeginDrag(const CPoint& p) {
    if (m_bDrag || !(m_scale > 0)) return;
    m_bDrag = true;
    m_ptHeld = p;
    m_ptShift = {};
    SetCapture();
}

void CDxfWnd::EndDrag() {
    if (!m_bDrag) return;
    m_bDrag = false;
    ReleaseCapture();
    if (m_ptShift == CPoint()) return;
    m_left -= m_ptShift.x / m_scale;
    m_top += m_ptShift.y / m_scale;
    m_ptShift = {};
    m_bFitted = false;
    Redraw();
}

void CDxfWnd::OnMouseMove(UINT keys, CPoint p) {
    if (!m_bDrag) return;
    if ((keys & (MK_LBUTTON | MK_MBUTTON)) == 0) return EndDrag();  // released where nobody saw it
    const auto distance = [](int to, int from) { return SaturatedInt(static_cast<double>(to) - from, -(1 << 24), 1 << 24); };
    const CPoint shift(distance(p.x, m_ptHeld.x), distance(p.y, m_ptHeld.y));
    if (shift == m_ptShift) return;
    m_ptShift = shift;
    Invalidate();
}

void CDxfWnd::OnLButtonUp(UINT keys, CPoint p) {
    if (m_bDrag) OnMouseMove(keys | MK_LBUTTON, p);
    EndDrag();
}

BOOL CDxfWnd::OnMouseWheel(UINT, int delta, CPoint screen) {
    ScreenToClient(screen);
    ZoomAt(screen, std::pow(1.2, std::clamp(delta / 120.0, -10.0, 10.0)));
    return 1;
}
