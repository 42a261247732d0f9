#include "host/editor/list_window.h"

#include <algorithm>
#include <sstream>

#include "platform/canvas/client_dc.h"
#include "platform/canvas/system_metrics.h"

namespace {

constexpr int kRow = 22, kLine = 19, kMargin = 6, kBar = 12;  // pixels

COLORREF Half(COLORREF a, COLORREF b) { return ((a >> 1) & 0x7F7F7F) + ((b >> 1) & 0x7F7F7F); }

}  // namespace

ListWindow::ListWindow(std::string note, std::vector<ListColumn> columns, std::vector<Row> rows)
    : m_columns(std::move(columns)), m_rows(std::move(rows)) {
    std::istringstream lines(note);
    for (std::string line; std::getline(lines, line);) m_note.push_back(line);
    m_font.CreateFont(-13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
}

// ---- layout -----------------------------------------------------------------------------------------------

int ListWindow::HeadTop() const {
    return m_note.empty() ? 0 : static_cast<int>(m_note.size()) * kLine + 2 * kMargin;
}
int ListWindow::RowsTop() const { return HeadTop() + (m_columns.empty() ? 0 : kRow); }
int ListWindow::Visible() const { return std::max(1, (GetClientRect().Height() - RowsTop()) / kRow); }
int ListWindow::MostFirst() const { return std::max(0, static_cast<int>(m_rows.size()) - Visible()); }

void ListWindow::ScrollTo(int first) {
    first = std::clamp(first, 0, MostFirst());
    if (first == m_first) return;
    m_first = first;
    Invalidate();
}

void ListWindow::OnSize(int, int) {
    m_first = std::clamp(m_first, 0, MostFirst());
    Invalidate();
}

// ---- picture ----------------------------------------------------------------------------------------------

void ListWindow::DrawRow(CDC& dc, int row, const CRect& place) {
    const bool head = row < 0;
    CRect cell = place;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        const ListColumn& column = m_columns[i];
        cell.right =
            i + 1 == m_columns.size() ? place.right : std::min(place.right, cell.left + column.width);
        CRect inner(cell.left + kMargin, cell.top, cell.right - kMargin, cell.bottom);
        const auto& cells = head ? m_rows.front() : m_rows[static_cast<std::size_t>(row)];
        const std::string text = head ? column.head : i < cells.size() ? cells[i] : std::string();
        const int saved = dc.SaveDC();
        dc.IntersectClipRect(inner);
        dc.DrawText(CString(text), &inner, (column.right ? DT_RIGHT : DT_LEFT) | DT_SINGLELINE | DT_VCENTER);
        dc.RestoreDC(saved);
        cell.left = cell.right;
    }
}

void ListWindow::OnPaint() {
    CClientDC dc(this);
    const CRect client = GetClientRect();
    const COLORREF window = GetSysColor(COLOR_WINDOW), face = GetSysColor(COLOR_BTNFACE);
    CBrush ground(window), headGround(face), chosen(GetSysColor(COLOR_HIGHLIGHT)), hover(Half(window, face));
    dc.FillRect(client, &ground);
    CFont* const old = dc.SelectObject(&m_font);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(GetSysColor(COLOR_WINDOWTEXT));
    for (std::size_t i = 0; i < m_note.size(); ++i)
        dc.TextOut(kMargin, kMargin + static_cast<int>(i) * kLine, CString(m_note[i]));
    const int count = static_cast<int>(m_rows.size()), right = client.right - (MostFirst() ? kBar : 0);
    if (!m_columns.empty() && count > 0) {
        const CRect head(0, HeadTop(), client.right, HeadTop() + kRow);
        dc.FillRect(head, &headGround);
        DrawRow(dc, -1, CRect(0, head.top, right, head.bottom));
    }
    for (int row = m_first, y = RowsTop(); row < count && y < client.bottom; ++row, y += kRow) {
        const CRect place(0, y, right, y + kRow);
        if (row == m_chosen || row == m_hover) dc.FillRect(place, row == m_chosen ? &chosen : &hover);
        dc.SetTextColor(GetSysColor(row == m_chosen ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
        DrawRow(dc, row, place);
    }
    if (MostFirst()) {
        const int room = client.bottom - RowsTop(), length = std::max(20, room * Visible() / count);
        const int top = RowsTop() + (room - length) * m_first / MostFirst();
        dc.FillRect(CRect(right, RowsTop(), client.right, client.bottom), &headGround);
        CBrush thumb(GetSysColor(COLOR_BTNSHADOW));
        dc.FillRect(CRect(right + 2, top, client.right - 2, top + length), &thumb);
    }
    dc.SelectObject(old);
    ShowLater();
}

// ---- input ------------------------------------------------------------------------------------------------

void ListWindow::Choose(int row) {
    if (row < 0 || row >= static_cast<int>(m_rows.size())) return;
    m_chosen = row;
    if (row < m_first) ScrollTo(row);
    if (row >= m_first + Visible()) ScrollTo(row - Visible() + 1);
    Invalidate();
    if (m_onRow) m_onRow(row);
}

void ListWindow::ScrollByBar(int y) {
    const int room = std::max(1, GetClientRect().bottom - RowsTop());
    ScrollTo((y - RowsTop()) * static_cast<int>(m_rows.size()) / room - Visible() / 2);
}

void ListWindow::OnLButtonDown(UINT, CPoint p) {
    m_dragging = MostFirst() > 0 && p.x >= GetClientRect().right - kBar && p.y >= RowsTop();
    if (m_dragging) return ScrollByBar(p.y);
    if (p.y >= RowsTop()) Choose(m_first + (p.y - RowsTop()) / kRow);
}

void ListWindow::OnMouseMove(UINT keys, CPoint p) {
    m_dragging = m_dragging && (keys & MK_LBUTTON);
    if (m_dragging) return ScrollByBar(p.y);
    const int row = p.y < RowsTop() ? -1 : m_first + (p.y - RowsTop()) / kRow;
    if (row == m_hover) return;
    m_hover = row;
    Invalidate();
}

BOOL ListWindow::OnMouseWheel(UINT, int delta, CPoint) {
    ScrollTo(m_first - delta / 40);
    return 1;
}

void ListWindow::OnKeyDown(UINT key, LPARAM) {
    switch (key) {
        case VK_UP:
            return Choose(std::max(0, m_chosen - 1));
        case VK_DOWN:
            return Choose(m_chosen + 1);
        case VK_ESCAPE:
            return OnClose();
        default:
            return;
    }
}
