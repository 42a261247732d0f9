// CEasyTableWnd: a table that keeps its texts itself.
#pragma once
#include <vector>

#include "controls/table_wnd.h"

/// A table over rows that it owns. A row may be shorter than there are columns; what is missing is empty.
class CEasyTableWnd : public CTableWnd {
public:
    using Row = std::vector<CString>;

    int GetRowCount() const override { return static_cast<int>(m_rows.size()); }
    CString GetText(int row, int column) const override;  // empty out of the table
    BOOL SetText(int row, int column, const CString& text) override;

    int AddRow(Row row);  // its index
    void SetRows(std::vector<Row> rows);
    const std::vector<Row>& GetRows() const { return m_rows; }
    void DeleteRow(int row);
    void RemoveAll() { SetRows({}); }

    bool m_bGrow = false;  // texts that are put in may add rows

protected:
    void GrowTo(int rows) override;

private:
    std::vector<Row> m_rows;
};
