#include "controls/tool_bar.h"

#include <algorithm>
#include <utility>

#include "platform/canvas/dc.h"
#include "platform/canvas/system_metrics.h"

namespace {

constexpr int kMargin = 4;  // around a picture, pixels
constexpr int kSeparator = 9;

}  // namespace

CTvoToolBar::~CTvoToolBar() { DestroyWindow(); }

BOOL CTvoToolBar::Create(CWnd* parent) { return CWnd::Create(parent, CRect(), WindowKind::kBar); }

// ---- buttons ----------------------------------------------------------------------------------------------

void CTvoToolBar::AddButton(int id, const CString& tip, ToolPicture picture) {
    Button button;
    button.m_id = id;
    button.m_tip = tip;
    button.m_picture = picture;
    m_buttons.push_back(button);
    Arrange();
}

void CTvoToolBar::AddSeparator() {
    m_buttons.emplace_back();
    Arrange();
}

void CTvoToolBar::RemoveAllButtons() {
    m_buttons.clear();
    m_hot = m_pressed = -1;
    Invalidate();
}

void CTvoToolBar::SetPictureSize(int pixels) {
    m_picture = std::clamp(pixels, 8, kHeight - 4);
    Arrange();
}

void CTvoToolBar::Arrange() {
    int left = 3;
    for (Button& button : m_buttons) {
        button.m_left = left;
        button.m_width = button.m_id == -1 ? kSeparator : m_picture + 2 * kMargin;
        left += button.m_width;
    }
    Invalidate();
}

CTvoToolBar::Button* CTvoToolBar::Find(int id) {
    const auto found = std::find_if(m_buttons.begin(), m_buttons.end(), [&](const Button& b) { return b.m_id == id; });
    return id == -1 || found == m_buttons.end() ? nullptr : &*found;
}

void CTvoToolBar::CheckButton(int id, bool checked) {
    if (Button* button = Find(id)) button->m_checked = checked;
    Invalidate();
}

void CTvoToolBar::EnableButton(int id, bool enabled) {
    if (Button* button = Find(id)) button->m_enabled = enabled;
    Invalidate();
}

CRect CTvoToolBar::PlaceOf(const Button& button) const {
    const int height = std::min(m_picture + 2 * kMargin, kHeight - 2);
    const int top = (kHeight - height) / 2;
    return {button.m_left, top, button.m_left + button.m_width, top + height};
}

const CTvoToolBar::Button* CTvoToolBar::ButtonAt(const CPoint& p) const {
    for (const Button& button : m_buttons)
        if (button.m_id != -1 && PlaceOf(button).PtInRect(p)) return &button;
    return nullptr;
}

int CTvoToolBar::HitTest(const CPoint& p) const {
    const Button* const button = ButtonAt(p);
    return button ? button->m_id : -1;
}

CRect CTvoToolBar::ButtonRect(int id) const {
    const Button* const button = const_cast<CTvoToolBar*>(this)->Find(id);
    return button ? PlaceOf(*button) : CRect();
}

// ---- the mouse --------------------------------------------------------------------------------------------

void CTvoToolBar::SetHot(int id) {
    if (std::exchange(m_hot, id) == id) return;
    const Button* const button = Find(id);
    SetTip(button ? button->m_tip : CString());
    Invalidate();
}

void CTvoToolBar::OnMouseMove(UINT, CPoint p) { SetHot(HitTest(p)); }
void CTvoToolBar::OnMouseLeave() { SetHot(-1); }

void CTvoToolBar::OnLButtonDown(UINT, CPoint p) {
    const Button* const button = ButtonAt(p);
    if (!button || !button->m_enabled) return;
    m_pressed = button->m_id;
    SetCapture();
    Invalidate();
}

void CTvoToolBar::OnLButtonUp(UINT, CPoint p) {
    const int pressed = std::exchange(m_pressed, -1);
    if (pressed == -1) return;
    ReleaseCapture();
    Invalidate();
    if (HitTest(p) == pressed && GetParent()) GetParent()->PostMessage(WM_COMMAND, static_cast<WPARAM>(pressed));
}

// ---- drawing ----------------------------------------------------------------------------------------------

void CTvoToolBar::OnDraw(CDC* dc) {
    const CRect client = GetClientRect();
    dc->FillSolidRect(client, GetSysColor(COLOR_BTNFACE));
    dc->FillSolidRect(0, client.bottom - 1, client.right, 1, GetSysColor(COLOR_BTNSHADOW));
    for (const Button& button : m_buttons) {
        const CRect place = PlaceOf(button);
        if (button.m_id == -1) {
            const int middle = place.CenterPoint().x;
            dc->FillSolidRect(middle, place.top + 3, 1, place.Height() - 6, GetSysColor(COLOR_MENU_LINE));
            continue;
        }
        const bool hot = button.m_enabled && button.m_id == m_hot;
        const bool down = button.m_checked || (hot && button.m_id == m_pressed);
        if (hot || down) {
            dc->FillSolidRect(place, GetSysColor(down ? COLOR_TOOL_PRESSED : COLOR_TOOL_HOT));
            CBrush edge(GetSysColor(COLOR_TOOL_ACCENT));
            dc->FrameRect(&place, &edge);
        }
        if (!button.m_picture) continue;
        const int left = place.left + (place.Width() - m_picture) / 2, top = place.top + (place.Height() - m_picture) / 2;
        const CRect box(left, top, left + m_picture, top + m_picture);
        ToolColours colours{GetSysColor(COLOR_TOOL_INK), GetSysColor(COLOR_TOOL_ACCENT)};
        if (!button.m_enabled) colours.m_ink = colours.m_accent = GetSysColor(COLOR_MENU_LINE);
        button.m_picture(*dc, box, colours);
    }
}
