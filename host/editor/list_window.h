// ListWindow: a table to look at, whose rows can be clicked.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "platform/canvas/font.h"
#include "platform/window.h"

struct ListColumn {
    std::string head;
    int width = 80;      // pixels; the last column takes what is left
    bool right = false;  // figures stand at the right
};

/// Draws all of itself: a note above, heads, rows, and a bar that tells which part of the rows shows. The
/// wheel and the bar scroll, a click chooses a row and calls m_onRow with its index.
class ListWindow : public CWnd {
public:
    using Row = std::vector<std::string>;

    ListWindow(std::string note, std::vector<ListColumn> columns, std::vector<Row> rows);
    ~ListWindow() override { DestroyWindow(); }

    std::function<void(int row)> m_onRow;  // may be empty
    const std::vector<Row>& Rows() const { return m_rows; }

protected:
    void OnPaint() override;
    void OnSize(int width, int height) override;
    void OnLButtonDown(UINT keys, CPoint p) override;
    void OnMouseMove(UINT keys, CPoint p) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;
    void OnKeyDown(UINT key, LPARAM flags) override;

private:
    int HeadTop() const;  // below the note
    int RowsTop() const;
    int Visible() const;  // rows that fit, at least 1
    int MostFirst() const;
    void ScrollTo(int first);
    void ScrollByBar(int y);
    void Choose(int row);
    void DrawRow(CDC& dc, int row, const CRect& place);

    std::vector<std::string> m_note;  // its lines
    std::vector<ListColumn> m_columns;
    std::vector<Row> m_rows;
    CFont m_font;
    int m_first = 0;          // row at the top
    int m_chosen = -1;        // row
    int m_hover = -1;         // row
    bool m_dragging = false;  // the bar
};
