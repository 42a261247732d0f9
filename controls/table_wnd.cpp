#include "controls/table_wnd.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "controls/scroll_track.h"
#include "controls/table_layout.h"
#include "platform/canvas/client_dc.h"
#include "platform/canvas/system_metrics.h"
#include "platform/saturate.h"
#include "platform/window_system.h"

CTableWnd::CTableWnd() : m_edit(*this), m_tips(*this) {
    m_font.CreateFont(13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
}

CTableWnd::~CTableWnd() { DestroyWindow(); }

// ---- columns ----------------------------------------------------------------------------------------------

int CTableWnd::AddColumn(const CString& head, int width, bool editable, bool right) {
    m_columns.push_back({head, std::clamp(width, kLeastColumn, kMostColumn), editable, right});
    Refresh();
    return ColumnCount() - 1;
}

void CTableWnd::SetColumnWidth(int column, int width) {
    if (column < 0 || column >= ColumnCount()) return;
    m_columns[static_cast<std::size_t>(column)].m_nWidth = std::clamp(width, kLeastColumn, kMostColumn);
    Refresh();
}

void CTableWnd::Refresh() {
    const int rows = GetRowCount();
    if (m_nRow >= rows || m_nColumn >= ColumnCount()) m_nRow = m_nColumn = m_nAnchorRow = m_nAnchorColumn = -1;
    m_nAnchorRow = std::min(m_nAnchorRow, rows - 1);
    m_block.m_nBottom = std::min(m_block.m_nBottom, rows - 1);
    if (m_nRow < 0) m_block = {};
    if (m_nEditRow >= rows) EndEdit(false);
    SetFirst(m_nFirst);
    SetLeft(m_nLeft);
    Invalidate();
}

// ---- place ------------------------------------------------------------------------------------------------

int CTableWnd::TotalWidth() const {
    std::int64_t width = 0;
    for (const CTableColumn& column : m_columns) width += column.m_nWidth;
    return static_cast<int>(std::min<std::int64_t>(width, 1 << 30));
}

// A bar takes room from the cells, which may call for the other.
CRect CTableWnd::CellsPlace() const {
    CRect place = GetClientRect();
    place.top = std::min(kHeadHeight, place.bottom);
    const auto tooLong = [&] { return std::int64_t{GetRowCount()} * kRowHeight > place.Height(); };
    const auto tooWide = [&] { return TotalWidth() > place.Width(); };
    if (tooLong()) place.right = std::max(place.right - kBarWidth, 0);
    if (tooWide()) {
        const bool before = tooLong();
        place.bottom = std::max(place.bottom - kBarWidth, place.top);
        if (!before && tooLong()) place.right = std::max(place.right - kBarWidth, 0);
    }
    return place;
}

ScrollTrack CTableWnd::RowTrack() const {
    const CRect place = CellsPlace();
    return {GetRowCount(), std::max(place.Height() / kRowHeight, 1), place.Height()};
}

ScrollTrack CTableWnd::ColumnTrack() const {
    const CRect place = CellsPlace();
    return {TotalWidth(), std::max(place.Width(), 1), place.Width()};
}

int CTableWnd::ColumnLeft(int column) const {
    int left = -m_nLeft;
    for (int i = 0; i < column; ++i) left += m_columns[static_cast<std::size_t>(i)].m_nWidth;
    return left;
}

CRect CTableWnd::GetCellRect(int row, int column) const {
    if (row < m_nFirst || row >= GetRowCount() || column < 0 || column >= ColumnCount()) return {};
    const CRect place = CellsPlace();
    const std::int64_t top = place.top + std::int64_t{row - m_nFirst} * kRowHeight;
    if (top >= place.bottom) return {};
    const int left = ColumnLeft(column), right = left + m_columns[static_cast<std::size_t>(column)].m_nWidth;
    return {left, static_cast<int>(top), right, static_cast<int>(top) + kRowHeight};
}

bool CTableWnd::CellAt(const CPoint& p, int& row, int& column) const {
    const CRect place = CellsPlace();
    if (!place.PtInRect(p)) return false;
    row = m_nFirst + (p.y - place.top) / kRowHeight;
    if (row >= GetRowCount()) return false;
    for (column = 0; column < ColumnCount(); ++column)
        if (p.x < ColumnLeft(column + 1)) return true;
    return false;
}

void CTableWnd::SetFirst(std::int64_t row) { m_nFirst = static_cast<int>(RowTrack().Within(row)); }
void CTableWnd::SetLeft(std::int64_t left) { m_nLeft = static_cast<int>(ColumnTrack().Within(left)); }

void CTableWnd::ScrollTo(int row) {
    EndEdit(true);
    SetFirst(row);
    Invalidate();
}

void CTableWnd::EnsureVisible(int row, int column) {
    const CRect place = CellsPlace();
    const auto page = static_cast<int>(RowTrack().page);
    if (row < m_nFirst) SetFirst(row);
    if (row >= m_nFirst + page) SetFirst(std::int64_t{row} - page + 1);
    if (column < 0 || column >= ColumnCount()) return;
    const int left = ColumnLeft(column), right = ColumnLeft(column + 1);
    if (right > place.right) SetLeft(std::int64_t{m_nLeft} + right - place.right);
    if (ColumnLeft(column) < 0) SetLeft(std::int64_t{m_nLeft} + std::min(left, ColumnLeft(column)));
}

// ---- choice -----------------------------------------------------------------------------------------------

void CTableWnd::SelectRow(int row) {
    if (row < 0) {
        EndEdit(true);
        m_nRow = m_nColumn = m_nAnchorRow = m_nAnchorColumn = -1;
        m_block = {};
        Invalidate();
        return;
    }
    if (row < GetRowCount() && ColumnCount() > 0) {
        SelectCell(row, 0);
        m_block = {row, 0, row, ColumnCount() - 1};
    }
}

void CTableWnd::SelectCell(int row, int column, bool extend) {
    if (row < 0 || row >= GetRowCount() || column < 0 || column >= ColumnCount()) return;
    EndEdit(true);
    if (!extend || m_nAnchorRow < 0) {
        m_nAnchorRow = row;
        m_nAnchorColumn = column;
    }
    const int before = m_nRow;
    m_nRow = row;
    m_nColumn = column;
    m_block = {std::min(row, m_nAnchorRow), std::min(column, m_nAnchorColumn), std::max(row, m_nAnchorRow),
               std::max(column, m_nAnchorColumn)};
    if (m_bSelectRows) {
        m_block.m_nLeft = 0;
        m_block.m_nRight = ColumnCount() - 1;
    }
    EnsureVisible(row, m_bSelectRows ? -1 : column);
    Invalidate();
    if (row != before && m_onSelect) m_onSelect(row);
}

void CTableWnd::SelectAll() {
    if (GetRowCount() == 0 || ColumnCount() == 0) return;
    EndEdit(true);
    if (m_nRow < 0) m_nRow = m_nColumn = 0;
    m_nAnchorRow = m_nAnchorColumn = 0;
    m_block = {0, 0, GetRowCount() - 1, ColumnCount() - 1};
    Invalidate();
}

void CTableWnd::MoveTo(int row, int column, bool extend) {
    SelectCell(std::clamp(row, 0, std::max(GetRowCount() - 1, 0)), std::clamp(column, 0, std::max(ColumnCount() - 1, 0)),
               extend);
}

// ---- editing ----------------------------------------------------------------------------------------------

bool CTableWnd::StartEdit(int row, int column) {
    if (column < 0 || column >= ColumnCount() || row < 0 || row >= GetRowCount()) return false;
    if (!m_columns[static_cast<std::size_t>(column)].m_bEditable || !IsWindow()) return false;
    EndEdit(true);
    EnsureVisible(row, column);
    CRect place = GetCellRect(row, column);
    const CRect cells = CellsPlace();
    place.left = std::max(place.left, cells.left);
    place.right = std::max(std::min(place.right, cells.right), place.left + 1);
    if (!m_edit.IsWindow()) m_edit.Create(this, place, WindowKind::kEditLine);
    else m_edit.MoveWindow(place);
    m_edit.SetWindowText(GetText(row, column));
    m_edit.ShowWindow(1);
    m_edit.SetFocus();
    m_nEditRow = row;
    m_nEditColumn = column;
    return true;
}

// The places are put back first: a callback may start the next edit.
bool CTableWnd::EndEdit(bool keep) {
    if (!IsEditing()) return true;
    const int row = m_nEditRow, column = m_nEditColumn;
    m_nEditRow = m_nEditColumn = -1;
    const CString text = m_edit.GetWindowText();
    m_edit.ShowWindow(0);
    SetFocus();
    Invalidate();
    if (!keep || row >= GetRowCount() || text == GetText(row, column)) return true;
    if (!SetText(row, column, text)) return false;
    if (m_onEdit) m_onEdit(row, column, text);
    return true;
}

// ---- clipboard --------------------------------------------------------------------------------------------

// A tab or an end of line within a text would tear its cell in two.
CString CTableWnd::BlockText() const {
    std::string text;
    for (int row = m_block.m_nTop; row <= m_block.m_nBottom; ++row) {
        for (int column = m_block.m_nLeft; column <= m_block.m_nRight; ++column) {
            if (column > m_block.m_nLeft) text += '\t';
            for (const char c : std::string(GetText(row, column).GetString()))
                text += c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
        }
        if (row < m_block.m_nBottom) text += '\n';
    }
    return CString(text);
}

void CTableWnd::CopyBlock() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (system && !m_block.IsEmpty()) system->SetClipboardText(BlockText().GetString());
}

int CTableWnd::PasteBlock() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || m_block.IsEmpty()) return 0;
    const std::string text = system->ClipboardText();
    const int top = m_block.m_nTop, left = m_block.m_nLeft;
    std::vector<std::vector<std::string>> rows(1, std::vector<std::string>(1));
    for (const char c : text) {
        if (c == '\n') rows.emplace_back(1);
        else if (c == '\t') rows.back().emplace_back();
        else if (c != '\r') rows.back().back() += c;
    }
    if (rows.size() > 1 && rows.back().size() == 1 && rows.back()[0].empty()) rows.pop_back();
    GrowTo(SaturatedInt(static_cast<double>(top) + static_cast<double>(rows.size())));
    int taken = 0;
    for (std::size_t i = 0; i < rows.size() && top + static_cast<std::int64_t>(i) < GetRowCount(); ++i)
        for (std::size_t j = 0; j < rows[i].size() && left + static_cast<std::int64_t>(j) < ColumnCount(); ++j) {
            const int row = top + static_cast<int>(i), column = left + static_cast<int>(j);
            if (!m_columns[static_cast<std::size_t>(column)].m_bEditable) continue;
            const CString cell(rows[i][j]);
            if (!SetText(row, column, cell)) continue;
            ++taken;
            if (m_onEdit) m_onEdit(row, column, cell);
        }
    Refresh();
    return taken;
}

// ---- drawing ----------------------------------------------------------------------------------------------

void CTableWnd::OnPaint() {
    CClientDC dc(this);
    CBrush ground(GetSysColor(COLOR_WINDOW));
    dc.FillRect(GetClientRect(), &ground);
    CFont* const old = dc.SelectObject(&m_font);
    dc.SetBkMode(TRANSPARENT);
    DrawCells(dc);
    DrawHeads(dc);
    DrawBars(dc);
    dc.SelectObject(old);
}

void CTableWnd::DrawHeads(CDC& dc) {
    const CRect place = CellsPlace();
    CBrush face(GetSysColor(COLOR_BTNFACE)), line(GetSysColor(COLOR_BTNSHADOW));
    CRect heads(0, 0, GetClientRect().right, place.top);
    dc.FillRect(&heads, &face);
    dc.SetTextColor(GetSysColor(COLOR_BTNTEXT));
    for (int i = 0; i < ColumnCount(); ++i) {
        CRect head(ColumnLeft(i), 0, ColumnLeft(i + 1), place.top);
        if (head.right <= 0 || head.left >= place.right) continue;
        dc.FillRect(CRect(head.right - 1, 0, head.right, place.top), &line);
        head.left += kTextGap;
        head.right -= kTextGap;
        const CTableColumn& column = m_columns[static_cast<std::size_t>(i)];
        dc.DrawText(column.m_strHead, &head,
                    DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | (column.m_bRight ? DT_RIGHT : DT_LEFT));
    }
    dc.FillRect(CRect(0, place.top - 1, heads.right, place.top), &line);
}

void CTableWnd::DrawCells(CDC& dc) {
    const CRect place = CellsPlace();
    CBrush chosen(GetSysColor(COLOR_HIGHLIGHT)), line(GetSysColor(COLOR_BTNFACE));
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(place);
    const int rows = GetRowCount();
    for (int row = m_nFirst, top = place.top; row < rows && top < place.bottom; ++row, top += kRowHeight) {
        for (int column = 0; column < ColumnCount(); ++column) {
            CRect cell(ColumnLeft(column), top, ColumnLeft(column + 1), top + kRowHeight);
            if (cell.right <= place.left || cell.left >= place.right) continue;
            const bool on = m_block.Contains(row, column);
            if (on) dc.FillRect(&cell, &chosen);
            dc.FillRect(CRect(cell.right - 1, cell.top, cell.right, cell.bottom), &line);
            dc.FillRect(CRect(cell.left, cell.bottom - 1, cell.right, cell.bottom), &line);
            const CRect inner(cell.left, cell.top, cell.right - 1, cell.bottom - 1);
            if (row == m_nRow && column == m_nColumn && !m_bSelectRows) dc.DrawFocusRect(&inner);
            dc.SetTextColor(GetSysColor(on ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
            cell.left += kTextGap;
            cell.right -= kTextGap;
            const UINT right = m_columns[static_cast<std::size_t>(column)].m_bRight ? DT_RIGHT : DT_LEFT;
            dc.DrawText(GetText(row, column), &cell, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | right);
        }
    }
    dc.RestoreDC(saved);
}

void CTableWnd::DrawBars(CDC& dc) {
    const CRect place = CellsPlace(), client = GetClientRect();
    CBrush face(GetSysColor(COLOR_BTNFACE)), thumb(GetSysColor(COLOR_BTNSHADOW));
    const ScrollTrack rows = RowTrack(), columns = ColumnTrack();
    if (place.right < client.right) {
        dc.FillRect(CRect(place.right, place.top, client.right, client.bottom), &face);
        const int at = place.top + rows.ThumbAt(m_nFirst);
        dc.FillRect(CRect(place.right + 2, at, client.right - 2, at + rows.Thumb()), &thumb);
    }
    if (place.bottom < client.bottom) {
        dc.FillRect(CRect(0, place.bottom, client.right, client.bottom), &face);
        const int at = columns.ThumbAt(m_nLeft);
        dc.FillRect(CRect(at, place.bottom + 2, at + columns.Thumb(), client.bottom - 2), &thumb);
    }
}
