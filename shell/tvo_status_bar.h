// CTvoStatusBar: two texts and six switches at the frame's lower edge.
#pragma once
#include <memory>

#include "controls/text_progress_ctrl.h"
#include "geometry/fpoint.h"
#include "platform/canvas/font.h"
#include "platform/string.h"
#include "platform/window.h"

class CTvoViewMgr;

/// Pane 0 shows the cursor's coordinate, pane 1 the offset or a prompt, panes 2 to 7 are buttons that mirror the view's
/// switches: a click on one rules the view, and the frame's SyncStsToStatusBar goes the other way. Without a window the
/// texts and states are kept all the same.
class CTvoStatusBar : public CView {
public:
    static constexpr int kHeight = 24;  // pixels
    static constexpr int kPanes = 8, kFirstButton = 2;
    static constexpr int kProgressID = 58001;

    CTvoStatusBar();
    ~CTvoStatusBar() override;
    BOOL Create(CWnd* parent);

    // --- texts; shown at once
    void ShowCoordinate(const CFPoint& at);  // nothing if it is the one shown last
    void ShowOffset(const CFPoint& offset);
    void SetPromptText(const CString& text);  // blue, in pane 1
    void SetMouseMovePrompt(const CString& text);
    void ClearCoordinate();
    const CString& GetPaneText(int pane) const { return m_strPane[pane]; }  // 0 or 1

    // --- switches
    int HitTest(const CPoint& p) const;  // the button under a point, 2 to 7; -1
    void SyncStsFromView();              // the view's switches to the states
    void SyncStsToView();                // and back; the view is repainted

    // --- progress
    void ShowProgress(int percent);  // 1 to 100, the nearer of them for others
    void ShutDownProgressCtrl();     // no longer seen
    void DeleteProgressCtrl();
    int GetProgress() const;         // shown now; -1: none

    void OnDraw(CDC* dc) override;
    void DrawButton(CDC* dc, int pane);
    void ShowCoordinateText(CDC* dc, int pane, const CString& text);

    CTvoViewMgr* m_pView = nullptr;  // borrowed; may be null
    CFont m_cFont, m_cSmallFont;     // heights 15 and 12
    CRect m_rcPane[kPanes];
    int m_nState[kPanes] = {};       // of the buttons; the first two are not used
    CString m_szCaption[kPanes];     // likewise
    CFPoint m_cCoordinate, m_cOffset;  // shown last
    std::unique_ptr<CTextProgressCtrl> m_pProgress;  // null until it is first needed

protected:
    void OnSize(int width, int height) override;
    void OnLButtonDown(UINT keys, CPoint p) override;
    void OnDestroy() override;

private:
    void Say(int pane, const CString& text, bool prompt);
    void DrawPane(CDC* dc, int pane);
    void DrawField(CDC* dc, int pane, const CString& text, CFont& font, COLORREF ink);
    int* Switch(int pane) const;  // the view's switch behind a button; null without a view

    CString m_strPane[kFirstButton];  // the texts of the fields
    bool m_prompt = false;            // pane 1 shows a prompt
    bool m_progressShown = false;
};

/// "x,y,z", each divided by what the profile shows coordinates in.
CString CoordinateText(const CFPoint& p);
