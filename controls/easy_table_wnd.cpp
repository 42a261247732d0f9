#include "controls/easy_table_wnd.h"

#include <algorithm>
#include <utility>

CString CEasyTableWnd::GetText(int row, int column) const {
    if (row < 0 || row >= GetRowCount() || column < 0) return {};
    const Row& texts = m_rows[static_cast<std::size_t>(row)];
    const auto i = static_cast<std::size_t>(column);
    return i < texts.size() ? texts[i] : CString();
}

BOOL CEasyTableWnd::SetText(int row, int column, const CString& text) {
    if (row < 0 || row >= GetRowCount() || column < 0 || column >= static_cast<int>(GetColumns().size())) return 0;
    Row& texts = m_rows[static_cast<std::size_t>(row)];
    const auto i = static_cast<std::size_t>(column);
    if (texts.size() <= i) texts.resize(i + 1);
    texts[i] = text;
    Invalidate();
    return 1;
}

int CEasyTableWnd::AddRow(Row row) {
    m_rows.push_back(std::move(row));
    Refresh();
    return GetRowCount() - 1;
}

void CEasyTableWnd::SetRows(std::vector<Row> rows) {
    EndEdit(false);
    m_rows = std::move(rows);
    Refresh();
}

void CEasyTableWnd::DeleteRow(int row) {
    if (row < 0 || row >= GetRowCount()) return;
    EndEdit(false);
    m_rows.erase(m_rows.begin() + row);
    Refresh();
}

void CEasyTableWnd::GrowTo(int rows) {
    if (m_bGrow && rows > GetRowCount()) m_rows.resize(static_cast<std::size_t>(rows));
}
