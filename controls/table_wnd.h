// CTableWnd: a table of texts.
#pragma once
#include <functional>
#include <vector>

#include "controls/popup_tip.h"
#include "platform/canvas/font.h"
#include "platform/window.h"

struct ScrollTrack;

/// Cells of a table: from a row and column to another, both of them in it.
struct CTableBlock {
    int m_nTop = 0, m_nLeft = 0, m_nBottom = -1, m_nRight = -1;
    bool IsEmpty() const { return m_nTop > m_nBottom || m_nLeft > m_nRight; }
    bool Contains(int row, int column) const {
        return row >= m_nTop && row <= m_nBottom && column >= m_nLeft && column <= m_nRight;
    }
};

struct CTableColumn {
    CString m_strHead;
    int m_nWidth = 80;        // pixels
    bool m_bEditable = true;
    bool m_bRight = false;    // texts stand at the right, as figures do
};

/// Shows rows of texts under the heads of columns. It asks for the texts of what is in sight alone, so that a table may be
/// as long as its owner can answer for. Where there is more than fits the wheel, keys and bars scroll; borders of heads can
/// be drawn. A click chooses a cell, a drag, or one with Shift, a block; or rows as a whole, with m_bSelectRows.
/// Editing happens in the cell: F2, Enter, a double click or typing start it, Enter, Tab and a click elsewhere end it, Esc
/// leaves the cell as it was. Ctrl+A chooses all, Ctrl+C copies the block as lines of texts between tabs, Ctrl+V puts such a text in from the
/// first cell of the block on.
class CTableWnd : public CWnd {
public:
    CTableWnd();
    ~CTableWnd() override;

    // --- what a table is made of
    virtual int GetRowCount() const = 0;
    virtual CString GetText(int row, int column) const = 0;
    /// 0 refuses the text. Rows and columns are within the table.
    virtual BOOL SetText(int /*row*/, int /*column*/, const CString& /*text*/) { return 0; }

    int AddColumn(const CString& head, int width, bool editable = true, bool right = false);  // its index
    const std::vector<CTableColumn>& GetColumns() const { return m_columns; }
    void SetColumnWidth(int column, int width);
    int GetCellsWidth() const { return CellsPlace().Width(); }  // pixels, beside a bar
    void Refresh();  // rows have come, gone or changed

    // --- choice
    const CTableBlock& GetBlock() const { return m_block; }  // empty: nothing is chosen
    int GetRow() const { return m_nRow; }                    // of the cell that was chosen last; -1: none
    int GetColumn() const { return m_nColumn; }
    void SelectRow(int row);  // in sight; -1: none
    void SelectCell(int row, int column, bool extend = false);
    void SelectAll();  // all rows; the cell that was chosen last stays that

    // --- scrolling
    int GetFirstRow() const { return m_nFirst; }  // at the top
    void ScrollTo(int row);                       // as far up as the table's end lets it
    void EnsureVisible(int row, int column);
    CRect GetCellRect(int row, int column) const;  // in the client area; empty if out of sight
    bool CellAt(const CPoint& p, int& row, int& column) const;

    // --- editing
    bool StartEdit(int row, int column);  // false for a cell that can't be edited
    bool EndEdit(bool keep);              // false if the text was refused; the cell is then as it was
    bool IsEditing() const { return m_nEditRow >= 0; }
    CEdit& GetEdit() { return m_edit; }

    // --- clipboard
    CString BlockText() const;
    void CopyBlock();
    int PasteBlock();  // number of cells that took a text

    std::function<void(int row)> m_onSelect;  // another row was chosen, or one was clicked; may be empty
    std::function<void(int row, int column, const CString& text)> m_onEdit;  // after a cell took a text; may be empty
    bool m_bSelectRows = false;

protected:
    /// More rows may be needed for a text that is put in. By default a table doesn't grow.
    virtual void GrowTo(int /*rows*/) {}

    void OnPaint() override;
    void OnSize(int width, int height) override;
    void OnKeyDown(UINT key, LPARAM flags) override;
    void OnChar(UINT code) override;
    void OnMouseMove(UINT keys, CPoint p) override;
    void OnLButtonDown(UINT keys, CPoint p) override;
    void OnLButtonUp(UINT keys, CPoint p) override;
    void OnLButtonDblClk(UINT keys, CPoint p) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;

private:
    /// The edit control in a cell.
    class CellEdit : public CEdit {
    public:
        explicit CellEdit(CTableWnd& table) : m_table(table) {}
        ~CellEdit() override { DestroyWindow(); }

    protected:
        void OnKeyDown(UINT key, LPARAM flags) override;
        void OnChar(UINT code) override;

    private:
        CTableWnd& m_table;
    };
    enum class Drag { kNone, kCells, kRowBar, kColumnBar, kHead };

    int ColumnCount() const { return static_cast<int>(m_columns.size()); }
    int TotalWidth() const;
    CRect CellsPlace() const;  // without heads and bars
    ScrollTrack RowTrack() const;
    ScrollTrack ColumnTrack() const;
    int ColumnLeft(int column) const;  // in the client area
    int HeadBorderAt(const CPoint& p) const;
    void MoveTo(int row, int column, bool extend);
    bool PressBar(const CPoint& p);
    void SetFirst(std::int64_t row);
    void SetLeft(std::int64_t left);
    void DrawHeads(CDC& dc);
    void DrawCells(CDC& dc);
    void DrawBars(CDC& dc);
    void TellTip(const CPoint& p);

    std::vector<CTableColumn> m_columns;
    CFont m_font;
    CellEdit m_edit;
    CPopupTip m_tips;        // the text under the pointer, if it is cut off
    CTableBlock m_block;     // what is chosen
    int m_nRow = -1;         // the cell that was chosen last
    int m_nColumn = -1;
    int m_nAnchorRow = -1;   // where the block was begun
    int m_nAnchorColumn = -1;
    int m_nFirst = 0;        // row at the top
    int m_nLeft = 0;         // pixels that are scrolled away to the left
    int m_nEditRow = -1;     // -1: nothing is edited
    int m_nEditColumn = -1;
    Drag m_eDrag = Drag::kNone;
    int m_nGrip = 0;         // of a bar: where its thumb was grasped; of heads: the column
};
