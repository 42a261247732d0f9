// CTextProgressCtrl: a bar that fills, with its percentage written over it.
#pragma once
#include "platform/canvas/font.h"
#include "platform/window.h"

/// Shows how far a long task is. A new position shows at once, since no events are handled while the task runs.
class CTextProgressCtrl : public CView {
public:
    CTextProgressCtrl();
    ~CTextProgressCtrl() override;

    BOOL Create(CWnd* parent, const CRect& place, int id);
    void SetRange(int lower, int upper);  // the position is kept within; an upper bound below the lower is taken as the lower
    int SetPos(int pos);                  // the position before
    int GetPos() const { return m_nPos; }
    CString Text() const;                 // "42%"
    void OnDraw(CDC* dc) override;

    int m_nID = 0;  // of the control, its parent's affair

private:
    CFont m_font;
    int m_nLower = 0, m_nUpper = 100;
    int m_nPos = 0;
};
