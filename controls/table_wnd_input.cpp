// CTableWnd: mouse and keys.
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "controls/scroll_track.h"
#include "controls/table_layout.h"
#include "controls/table_wnd.h"
#include "platform/canvas/client_dc.h"

namespace {

/// Notches of the wheel, downwards, for a turn of 120 each.
int Notches(int delta) { return std::clamp(-delta / 120, -100, 100); }

}  // namespace

void CTableWnd::OnSize(int, int) {
    EndEdit(true);
    Refresh();
}

// ---- keys -------------------------------------------------------------------------------------------------

void CTableWnd::OnKeyDown(UINT key, LPARAM) {
    const bool shift = ::IsKeyDown(VK_SHIFT), control = ::IsKeyDown(VK_CONTROL);
    const auto page = static_cast<int>(std::min<std::int64_t>(RowTrack().page, 1 << 20));
    const int last = GetRowCount() - 1, row = std::max(m_nRow, 0), column = std::max(m_nColumn, 0);
    switch (key) {
        case VK_UP: return MoveTo(control ? 0 : row - 1, column, shift);
        case VK_DOWN: return MoveTo(control ? last : m_nRow < 0 ? 0 : row + 1, column, shift);
        case VK_LEFT: return MoveTo(row, column - 1, shift);
        case VK_RIGHT: return MoveTo(row, column + 1, shift);
        case VK_PRIOR: return MoveTo(row - page, column, shift);
        case VK_NEXT: return MoveTo(row > last - page ? last : row + page, column, shift);
        case VK_HOME: return MoveTo(control ? 0 : row, control ? column : 0, shift);
        case VK_END: return MoveTo(control ? last : row, control ? column : ColumnCount() - 1, shift);
        case VK_TAB: return MoveTo(row, column + (shift ? -1 : 1), false);
        case VK_F2:
        case VK_RETURN:
            if (m_nRow >= 0) StartEdit(m_nRow, m_nColumn);
            return;
        case 'A':
            if (control) SelectAll();
            return;
        case 'C':
            if (control) CopyBlock();
            return;
        case 'V':
            if (control) PasteBlock();
            return;
        default: return;
    }
}

// What is typed takes the place of the text.
void CTableWnd::OnChar(UINT code) {
    if (code < 32 || code == 127 || ::IsKeyDown(VK_CONTROL) || m_nRow < 0) return;
    if (IsEditing()) {  // further characters of the key that began it
        m_edit.SendMessage(WM_CHAR, code);
        return;
    }
    if (!StartEdit(m_nRow, m_nColumn)) return;
    m_edit.SetWindowText("");
    m_edit.SendMessage(WM_CHAR, code);
}

void CTableWnd::CellEdit::OnKeyDown(UINT key, LPARAM) {
    const int row = m_table.m_nEditRow, column = m_table.m_nEditColumn;
    switch (key) {
        case VK_RETURN:
            if (m_table.EndEdit(true) && !m_table.IsEditing()) m_table.MoveTo(row + 1, column, false);
            return;
        case VK_TAB:
            if (m_table.EndEdit(true) && !m_table.IsEditing()) m_table.MoveTo(row, column + (::IsKeyDown(VK_SHIFT) ? -1 : 1), false);
            return;
        case VK_ESCAPE: m_table.EndEdit(false); return;
        default: return;
    }
}

void CTableWnd::CellEdit::OnChar(UINT code) {
    if (code == VK_BACK || code >= 32) CEdit::OnChar(code);
}

// ---- mouse ------------------------------------------------------------------------------------------------

int CTableWnd::HeadBorderAt(const CPoint& p) const {
    if (p.y < 0 || p.y >= kHeadHeight) return -1;
    for (int i = ColumnCount() - 1; i >= 0; --i)  // of narrow ones the last: it can be drawn open
        if (std::abs(std::int64_t{p.x} - ColumnLeft(i + 1)) <= kHeadGrip) return i;
    return -1;
}

// A press beside the thumb turns a page.
bool CTableWnd::PressBar(const CPoint& p) {
    const CRect place = CellsPlace(), client = GetClientRect();
    const bool rowBar = place.right < client.right && p.x >= place.right && p.y >= place.top && p.y < place.bottom;
    const bool columnBar = place.bottom < client.bottom && p.y >= place.bottom && p.x < place.right;
    if (!rowBar && !columnBar) return false;
    const ScrollTrack track = rowBar ? RowTrack() : ColumnTrack();
    const int first = rowBar ? m_nFirst : m_nLeft, at = rowBar ? p.y - place.top : p.x, thumb = track.ThumbAt(first);
    if (at >= thumb && at < thumb + track.Thumb()) {
        m_eDrag = rowBar ? Drag::kRowBar : Drag::kColumnBar;
        m_nGrip = at - thumb;
        SetCapture();
        return true;
    }
    const std::int64_t next = first + (at < thumb ? -track.page : track.page);
    if (rowBar) SetFirst(next);
    else SetLeft(next);
    return true;
}

void CTableWnd::OnLButtonDown(UINT keys, CPoint p) {
    EndEdit(true);
    SetFocus();
    if (const int border = HeadBorderAt(p); border >= 0) {
        m_eDrag = Drag::kHead;
        m_nGrip = border;
        SetCapture();
    } else if (PressBar(p)) {
        Invalidate();
    } else if (int row = 0, column = 0; CellAt(p, row, column)) {
        m_eDrag = Drag::kCells;
        SetCapture();
        const bool again = row == m_nRow;  // which is no choice of another
        SelectCell(row, column, (keys & MK_SHIFT) != 0);
        if (again && m_onSelect) m_onSelect(row);
    }
}

void CTableWnd::OnMouseMove(UINT keys, CPoint p) {
    if (m_eDrag == Drag::kNone || (keys & MK_LBUTTON) == 0) {
        m_eDrag = Drag::kNone;
        TellTip(p);
        return;
    }
    const CRect place = CellsPlace();
    p = {std::clamp(p.x, -kMostColumn, kMostColumn * 10), std::clamp(p.y, -kMostColumn, kMostColumn * 10)};
    switch (m_eDrag) {
        case Drag::kRowBar: SetFirst(RowTrack().FirstFor(p.y - place.top - m_nGrip)); break;
        case Drag::kColumnBar: SetLeft(ColumnTrack().FirstFor(p.x - m_nGrip)); break;
        case Drag::kHead: SetColumnWidth(m_nGrip, p.x - ColumnLeft(m_nGrip)); break;
        default: {
            // Beyond an edge the next row comes into sight.
            int row = m_nFirst + (p.y < place.top ? -1 : (p.y - place.top) / kRowHeight), column = 0;
            row = std::clamp(row, 0, std::max(GetRowCount() - 1, 0));
            while (column + 1 < ColumnCount() && p.x >= ColumnLeft(column + 1)) ++column;
            if (row != m_nRow || column != m_nColumn) SelectCell(row, column, true);
            return;
        }
    }
    Invalidate();
}

// Of a text that is cut off, the whole.
void CTableWnd::TellTip(const CPoint& p) {
    m_tips.RemoveAll();
    if (int row = 0, column = 0; CellAt(p, row, column)) {
        const CRect cell = GetCellRect(row, column);
        const CString text = GetText(row, column);
        CClientDC dc(this);
        CFont* const old = dc.SelectObject(&m_font);
        if (dc.GetTextExtent(text).cx > cell.Width() - 2 * kTextGap) m_tips.AddTip(cell, text);
        dc.SelectObject(old);
    }
    m_tips.Relay(p);
}

void CTableWnd::OnLButtonUp(UINT, CPoint) {
    m_eDrag = Drag::kNone;
    ReleaseCapture();
}

void CTableWnd::OnLButtonDblClk(UINT keys, CPoint p) {
    int row = 0, column = 0;
    if (!CellAt(p, row, column)) return OnLButtonDown(keys, p);
    SelectCell(row, column);
    StartEdit(row, column);
}

BOOL CTableWnd::OnMouseWheel(UINT keys, int delta, CPoint) {
    EndEdit(true);
    if ((keys & MK_SHIFT) != 0) SetLeft(m_nLeft + std::int64_t{Notches(delta)} * 3 * kRowHeight);
    else SetFirst(m_nFirst + std::int64_t{Notches(delta)} * kWheelRows);
    Invalidate();
    return 1;
}
