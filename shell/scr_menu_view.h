// CScrMenuView: the pane that shows one level of the command tree.
#pragma once
#include "platform/canvas/font.h"
#include "platform/window.h"
#include "shell/scr_menu_data.h"

class CTvoFrameBase;

/// Shows the path from the root down to the open branch, the branches beside it, and what lies in it, one row each, from
/// g_cScrnMenuData. A click on a branch opens or closes it, one on a command runs it. The rows are copies, so that the
/// tree may change under them.
class CScrMenuView : public CView {
public:
    static constexpr int kRowHeight = 21, kSeparatorHeight = 2;  // pixels

    CScrMenuView();
    ~CScrMenuView() override;

    void OnInitialUpdate() override;  // the root's level
    void OnDraw(CDC* dc) override;

    /// As a click on an item does, from code: what is expanded is closed, what is not is opened.
    void ToggleItem(int id, int bExpanded);
    /// The row that lies under a point, and its rectangle; null between and behind the rows.
    CScrMenuItem* HitTest(int x, int y, CRect& rect);
    CRect GetBorder(int index) const;    // where a row is drawn
    int GetIndexByCmdID(int id) const;   // the row of an item; -1
    int HasChildren(int id) const;       // a row shown has it as parent
    void Regenerate();                   // the rows made anew from the tree, the same branch open
    void GetCurrentState(unsigned& id, int& expanded) const;  // the branch last clicked, and what became of it
    void DrawScrMenuItem(CDC* dc, CRect rect, const CScrMenuItem& item);
    void DrawBorder(CDC* dc);
    void TakeColours();  // from the palette in force

    COLORREF m_crBranch, m_crBranchHot;    // fill of a row with a branch
    COLORREF m_crCommand, m_crCommandHot;  // and with a command
    int m_bShowBuddies = 1;      // 0: of the open branch's level it alone
    int m_bFirstClick = 1;       // the first click on anything opens
    CFont m_cFont;
    CScrMenuItem m_cClicked;     // the branch last clicked
    CScrMenuItem m_cHot;         // the row under the pointer
    CScrMenuItem m_cCurrent;     // the item last clicked, at first the root
    int m_nLastExpand = -1;      // last value given to OnExpandNode by a click
    CScrMenuItems m_aShown;      // the rows, from the top
    CTvoFrameBase* m_pFrame = nullptr;  // borrowed

protected:
    void OnPaint() override;
    BOOL OnEraseBkgnd(CDC* dc) override;
    void OnSysColorChange() override;
    void OnMouseMove(UINT keys, CPoint p) override;
    void OnMouseLeave() override;
    void OnLButtonDown(UINT keys, CPoint p) override;
    void OnLButtonDblClk(UINT, CPoint) override {}  // other rows lie there by then
    void OnRButtonDown(UINT keys, CPoint p) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;  // zooms if the pointer is over the view

private:
    void ShowRoot();
    void Build(const CScrMenuItem& branch, bool open);
    void Choose(CScrMenuItem item, bool open, bool byClick);
    void Run(const CScrMenuItem& item);
    void CloseClicked();
    void ShowHot(bool hot);
    void DrawRow(CDC* dc, int index, int hot);
    COLORREF FillOf(const CScrMenuItem& item) const;
    static int HeightOf(const CScrMenuItem& item);
    void RepaintAfterClick();

    int m_nHotRow = -1;      // of m_cHot, as long as it is there: several rows may have one identity
    int m_nBranch = 0;       // the branch that the rows were made for; 0: the root's level
    bool m_bBranchOpen = false;
};
