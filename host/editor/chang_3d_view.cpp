#include "host/editor/chang_3d_view.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "fields/field_palette.h"
#include "fields/field_ruler.h"
#include "fields/gj_chang.h"
#include "host/editor/field_actions.h"
#include "host/editor/spacing_text.h"
#include "host/field_look.h"
#include "host/host_data_base.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"
#include "platform/canvas/system_metrics.h"
#include "platform/saturate.h"
#include "platform/window_system.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kFirstAlpha = -0.5, kFirstBeta = 0.65;
constexpr double kLeastZoom = 0.05, kMostZoom = 200;
constexpr double kFarthest = 1e6;     // units from the middle
constexpr double kHeightOfOne = 0.5;  // of half a diagonal, at ratio 1
constexpr double kLeastMost = 0.01, kLargestMost = 1000;
constexpr double kRadiansAPixel = 0.01;  // of a drag
constexpr double kStep = 5 * kPi / 180;  // of an arrow key
constexpr double kWheelStep = 1.2;       // a notch
constexpr int kNotch = 120;
constexpr unsigned kRestTimer = 1;
constexpr int kRest = 200;          // ms
constexpr int kBar = 40, kGap = 8;  // units
constexpr int kRulerWidth = 110, kRulerHeight = 420;
constexpr COLORREF kKnob = RGB(60, 120, 200);

struct PartLook {
    const char* caption;
    int width;  // units
};
// In the order of the parts. Of the slider and the box there is no caption.
constexpr PartLook kParts[] = {{"退出", 52}, {"刷新", 52}, {"", 200}, {"", 56}, {"设置比例最大值", 116}};

CRect Inside(const CRect& r, int by) { return {r.left + by, r.top + by, r.right - by, r.bottom - by}; }

}  // namespace

// ---- life -------------------------------------------------------------------------------------------------

CChang3DView::CChang3DView(CTvoHostDataBase& db, std::uint32_t field) : m_db(db), m_id(field) {
    Reset();
    Refresh();
}

CChang3DView::~CChang3DView() { DestroyWindow(); }

void CChang3DView::Refresh() {
    const std::vector<CGjChang*> fields = AllFields(m_db);
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const CGjChang* f) { return f->get_m_dwGouJianID() == m_id; });
    CGjChang* const field = found != fields.end() ? *found : CurrentField(m_db);
    m_relief = m_thin = FieldRelief();
    m_ruler.Clear();
    Invalidate();
    if (!field) return;
    m_id = field->get_m_dwGouJianID();
    m_relief = FieldRelief(*field->m_pChang);
    if (static_cast<int>(m_relief.Triangles().size()) > kMovingTriangles)
        m_thin = m_relief.Thinned(kMovingTriangles);
    const COLORREF background = COLORREF{g_cTvoProfile.m_crBackground};
    for (int i = 0; i < static_cast<int>(m_colors.size()); ++i)
        m_colors[static_cast<std::size_t>(i)] = ApartFrom(FieldColor(field->m_nColorScheme, i), background);
    m_ruler.m_nColorScheme = field->m_nColorScheme;
    m_ruler.m_fValueScale = field->m_fValueScale;
    float range[2];
    if (!field->m_pChang->GetMinMaxZ(range[0], range[1])) return;
    for (const float value : range) m_ruler.m_arrNode.Add({m_ruler.m_arrNode.GetSize() + 1, 0, 0, {value}});
}

void CChang3DView::Reset() {
    m_alpha = kFirstAlpha;
    m_beta = kFirstBeta;
    m_zoom = 1;
    m_x = m_y = 0;
    m_ratio = 1;
    m_most = kFirstMost;
    m_typed = NumberText(m_most);
    m_typing = false;
    Invalidate();
}

// ---- places -----------------------------------------------------------------------------------------------

CRect CChang3DView::Area() const {
    const CRect client = GetClientRect();
    return {0, 0, client.right, std::max(client.bottom - kBar, 0)};
}

CRect CChang3DView::Place(Part part) const {
    const int top = Area().bottom;
    int left = kGap;
    for (int i = 0; i < part; ++i) left += kParts[i].width + kGap;
    return {left, top + kGap, left + kParts[part].width, top + kBar - kGap};
}

CChang3DView::Part CChang3DView::PartAt(CPoint p) const {
    for (int i = 0; i < static_cast<int>(std::size(kParts)); ++i)
        if (Place(static_cast<Part>(i)).PtInRect(p)) return static_cast<Part>(i);
    return kNoPart;
}

ReliefView CChang3DView::Sight() const {
    CRect area = Area();
    if (area.Width() > 4 * kRulerWidth) area.left += kRulerWidth;  // beside the ruler
    const double lift = m_ratio * kHeightOfOne;
    ReliefView view;
    view.alpha = static_cast<float>(m_alpha);
    view.beta = static_cast<float>(m_beta);
    view.lift = static_cast<float>(lift);
    // All of it fits however it is turned, but for the last corners of a plan seen from above.
    const double high = 0.9 * std::hypot(1.0, lift / 2);
    view.scale =
        0.46 * std::max(1.0, std::min(static_cast<double>(area.Width()), area.Height() / high)) * m_zoom;
    view.x = area.left + area.Width() / 2.0 + m_x;
    view.y = area.top + area.Height() / 2.0 + m_y;
    return view;
}

// ---- painting ---------------------------------------------------------------------------------------------

void CChang3DView::OnDraw(CDC* dc) {
    const CRect client = GetClientRect(), area = Area();
    const COLORREF background = COLORREF{g_cTvoProfile.m_crBackground};
    dc->FillSolidRect(area, background);
    if (CSurface* const surface = dc->Surface(); surface && client.Width() > 0) {
        // The pixels of the surface itself, which may be finer than the units of the client area.
        const double fine = static_cast<double>(surface->Width()) / client.Width();
        const int k = std::max(1, SaturatedInt(fine + 0.5));
        ReliefView view = Sight();
        view.x *= k;
        view.y *= k;
        view.scale *= k;
        const bool few = m_moving && !m_thin.Triangles().empty();
        PaintRelief(few ? m_thin : m_relief, view, m_colors, RGB(128, 128, 128),
                    CRect(0, 0, area.right * k, area.bottom * k), *surface);
    }
    if (HasField()) DrawRuler(*dc, area);
    CFont font;
    font.CreateFont(14, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
    CFont* const oldFont = dc->SelectObject(&font);
    const int oldMode = dc->SetBkMode(TRANSPARENT);
    const COLORREF oldColor = dc->SetTextColor(RulerInk(background));
    if (!HasField()) {
        CRect whole = area;
        dc->DrawText("没有可显示的场", -1, &whole, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    }
    dc->SetTextColor(RGB(128, 128, 128));
    CRect hint(kGap, area.bottom - 24, area.right - kGap, area.bottom - 4);
    dc->DrawText("左键转动  中键平移  滚轮缩放  Home 复原", -1, &hint, DT_RIGHT | DT_VCENTER | DT_SINGLELINE);
    DrawBar(*dc);
    dc->SetTextColor(oldColor);
    dc->SetBkMode(oldMode);
    dc->SelectObject(oldFont);
}

void CChang3DView::DrawRuler(CDC& dc, const CRect& area) {
    const int width = std::min(kRulerWidth, area.Width() / 3), height = std::min(kRulerHeight, area.Height());
    if (width < 40 || height < 80) return;
    CBitmap bitmap;
    if (!bitmap.CreateCompatibleBitmap(&dc, width, height)) return;
    CDC ruler;
    ruler.CreateCompatibleDC(&dc);
    ruler.Attach(bitmap.Surface());
    const COLORREF background = COLORREF{g_cTvoProfile.m_crBackground};
    m_ruler.DrawRuler(&ruler, CRect(0, 0, width, height), nullptr, background);
    TransparentBlt2(&dc, 0, 0, width, height, &ruler, 0, 0, width, height, background);
}

void CChang3DView::DrawBar(CDC& dc) {
    const CRect client = GetClientRect();
    const COLORREF face = GetSysColor(COLOR_BTNFACE), edge = GetSysColor(COLOR_BTNSHADOW), ink = GetSysColor(COLOR_BTNTEXT);
    dc.FillSolidRect(CRect(0, Area().bottom, client.right, client.bottom), face);
    dc.SetTextColor(ink);
    for (const Part part : {kExit, kRefresh, kSetMost}) {
        CRect place = Place(part);
        dc.FillSolidRect(place, m_pressed == part ? edge : GetSysColor(COLOR_WINDOW));
        dc.Draw3dRect(place, edge, edge);
        dc.SetBkMode(TRANSPARENT);
        dc.DrawText(kParts[part].caption, -1, &place, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    }
    const CRect slider = Place(kSlider);
    const int middle = (slider.top + slider.bottom) / 2,
              knob = slider.left + SaturatedInt(m_ratio / m_most * slider.Width(), 0, slider.Width());
    dc.FillSolidRect(CRect(slider.left, middle - 2, slider.right, middle + 2), edge);
    dc.FillSolidRect(CRect(slider.left, middle - 2, knob, middle + 2), kKnob);
    dc.FillSolidRect(CRect(knob - 4, slider.top + 3, knob + 4, slider.bottom - 3), kKnob);
    const CRect box = Place(kMost);
    dc.FillSolidRect(box, GetSysColor(COLOR_WINDOW));
    dc.Draw3dRect(box, m_typing ? kKnob : edge, m_typing ? kKnob : edge);
    dc.SetBkMode(TRANSPARENT);
    CRect text = Inside(box, 4);
    dc.DrawText(CString(m_typed), &text, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
    if (m_typing) {
        const int caret = text.left + dc.GetTextExtent(CString(m_typed)).cx + 1;
        dc.FillSolidRect(CRect(caret, box.top + 4, caret + 1, box.bottom - 4), ink);
        dc.SetBkMode(TRANSPARENT);
    }
    CRect rest(Place(kSetMost).right + 2 * kGap, Area().bottom, client.right - kGap, client.bottom);
    const std::string ratio = "比例 " + NumberText(std::round(m_ratio * 100) / 100);
    if (rest.Width() > 0) dc.DrawText(CString(ratio), &rest, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
}

// ---- the bar ----------------------------------------------------------------------------------------------

void CChang3DView::TakeMost() {
    const std::string wrong = CheckNumber(m_typed, "比例最大值", kLeastMost, kLargestMost);
    m_typing = false;
    if (wrong.empty()) {
        m_most = *TypedNumber(m_typed);
        m_ratio = std::min(m_ratio, m_most);
    } else if (CWindowSystem* const system = CWindowSystem::Current()) {
        system->ShowMessage(wrong);
    }
    m_typed = NumberText(m_most);
    Invalidate();
}

void CChang3DView::LeaveBox() {
    m_typing = false;
    m_typed = NumberText(m_most);
    Invalidate();
}

void CChang3DView::Press(Part part) {
    if (part == kExit) SendMessage(WM_CLOSE);
    else if (part == kRefresh) Refresh();
    else if (part == kSetMost) TakeMost();
}

void CChang3DView::SlideTo(int x) {
    const CRect slider = Place(kSlider);
    m_ratio = std::clamp((static_cast<double>(x) - slider.left) / slider.Width(), 0.0, 1.0) * m_most;
    Moving();
}

// ---- turning, moving, zooming -----------------------------------------------------------------------------

void CChang3DView::Turn(double alpha, double beta) {
    m_alpha = std::remainder(m_alpha + alpha, 2 * kPi);
    m_beta = std::clamp(m_beta + beta, -kPi / 2, kPi / 2);
    Moving();
}

// What lies under the pointer stays there.
void CChang3DView::ZoomAt(CPoint p, double factor) {
    const double zoom = std::clamp(m_zoom * factor, kLeastZoom, kMostZoom), by = zoom / m_zoom;
    const ReliefView before = Sight();
    m_zoom = zoom;
    m_x = std::clamp(m_x + (p.x - before.x) * (1 - by), -kFarthest, kFarthest);
    m_y = std::clamp(m_y + (p.y - before.y) * (1 - by), -kFarthest, kFarthest);
    Moving();
}

void CChang3DView::Moving() {
    m_moving = true;
    Invalidate();
    if (m_drag == Drag::kNone) SetTimer(kRestTimer, kRest);
}

void CChang3DView::OnTimer(unsigned id) {
    if (id != kRestTimer) return;
    KillTimer(kRestTimer);
    if (m_drag != Drag::kNone) return;
    m_moving = false;
    Invalidate();
}

void CChang3DView::StartDrag(Drag drag, UINT, CPoint p) {
    if (m_typing && PartAt(p) != kSetMost) LeaveBox();
    m_drag = drag;
    m_last = p;
    SetFocus();
    SetCapture();
}

void CChang3DView::EndDrag() {
    if (m_drag == Drag::kNone) return;
    m_drag = Drag::kNone;
    m_pressed = kNoPart;
    m_moving = false;
    ReleaseCapture();
    Invalidate();
}

void CChang3DView::OnLButtonDown(UINT keys, CPoint p) {
    const Part part = PartAt(p);
    if (part == kMost) {
        m_typing = true;
        SetFocus();
        Invalidate();
    } else if (part == kSlider) {
        StartDrag(Drag::kSlide, keys, p);
        SlideTo(p.x);
    } else if (part != kNoPart) {
        StartDrag(Drag::kPress, keys, p);
        m_pressed = part;
        Invalidate();
    } else if (Area().PtInRect(p)) {
        StartDrag(Drag::kTurn, keys, p);
    }
}

void CChang3DView::OnLButtonUp(UINT, CPoint p) {
    const Part pressed = m_pressed;
    EndDrag();
    if (pressed != kNoPart && PartAt(p) == pressed) Press(pressed);
}

void CChang3DView::OnMButtonUp(UINT, CPoint) { EndDrag(); }
void CChang3DView::OnRButtonUp(UINT, CPoint) { EndDrag(); }

void CChang3DView::OnMouseMove(UINT, CPoint p) {
    const double dx = static_cast<double>(p.x) - m_last.x, dy = static_cast<double>(p.y) - m_last.y;
    m_last = p;
    switch (m_drag) {
        case Drag::kTurn:
            return Turn(-dx * kRadiansAPixel, dy * kRadiansAPixel);
        case Drag::kMove:
            m_x = std::clamp(m_x + dx, -kFarthest, kFarthest);
            m_y = std::clamp(m_y + dy, -kFarthest, kFarthest);
            return Moving();
        case Drag::kSlide:
            return SlideTo(p.x);
        default:
            return;
    }
}

BOOL CChang3DView::OnMouseWheel(UINT, int delta, CPoint screen) {
    ScreenToClient(screen);
    ZoomAt(screen, std::pow(kWheelStep, std::clamp(static_cast<double>(delta) / kNotch, -20.0, 20.0)));
    return 1;
}

void CChang3DView::OnKeyDown(UINT key, LPARAM) {
    if (m_typing) {
        if (key == VK_RETURN) TakeMost();
        if (key == VK_ESCAPE) LeaveBox();
        return;  // what is typed comes as characters
    }
    const CPoint middle = Area().CenterPoint();
    switch (key) {
        case VK_LEFT:
            return Turn(kStep, 0);
        case VK_RIGHT:
            return Turn(-kStep, 0);
        case VK_UP:
            return Turn(0, -kStep);
        case VK_DOWN:
            return Turn(0, kStep);
        case VK_PRIOR:
            return ZoomAt(middle, kWheelStep);
        case VK_NEXT:
            return ZoomAt(middle, 1 / kWheelStep);
        case VK_HOME:
        case 'R':
            return Reset();
        case VK_F5:
            return Refresh();
        case VK_ESCAPE:
            SendMessage(WM_CLOSE);
            return;
        default:
            return;
    }
}

void CChang3DView::OnChar(UINT code) {
    constexpr std::size_t kMostTyped = 7;
    if (!m_typing) return;
    if (code == VK_BACK && !m_typed.empty()) m_typed.pop_back();
    else if (((code >= '0' && code <= '9') || code == '.') && m_typed.size() < kMostTyped)
        m_typed += static_cast<char>(code);
    Invalidate();
}
