#include "controls/popup_tip.h"

#include <algorithm>

#include "platform/window.h"

void CPopupTip::AddTip(const CRect& place, const CString& text) { m_tips.push_back({place, text}); }

void CPopupTip::RemoveAll() { m_tips.clear(); }

void CPopupTip::Relay(const CPoint& p) {
    const auto found = std::find_if(m_tips.rbegin(), m_tips.rend(), [&](const Tip& t) { return t.place.PtInRect(p); });
    const CString text = found == m_tips.rend() ? CString() : found->text;
    if (text == m_strShown) return;
    m_strShown = text;
    m_window.SetTip(text);
}
