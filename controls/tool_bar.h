// CTvoToolBar: a row of buttons with pictures.
#pragma once
#include <vector>

#include "controls/tool_pictures.h"
#include "platform/string.h"
#include "platform/window.h"

/// Buttons in the order in which they were added. A press that is released on its button posts WM_COMMAND with the
/// button's number to the parent window. The bar never takes the focus.
class CTvoToolBar : public CView {
public:
    static constexpr int kHeight = 28;  // pixels

    ~CTvoToolBar() override;
    BOOL Create(CWnd* parent);

    void AddButton(int id, const CString& tip, ToolPicture picture);
    void AddSeparator();
    void RemoveAllButtons();
    void SetPictureSize(int pixels);        // 16 at first; 24 fits too
    void CheckButton(int id, bool checked);   // it stays pressed
    void EnableButton(int id, bool enabled);  // off: pale, and dead
    int HitTest(const CPoint& p) const;       // number of the button, -1: none
    CRect ButtonRect(int id) const;           // empty: none
    void OnDraw(CDC* dc) override;

protected:
    void OnMouseMove(UINT keys, CPoint p) override;
    void OnMouseLeave() override;
    void OnLButtonDown(UINT keys, CPoint p) override;
    void OnLButtonUp(UINT keys, CPoint p) override;

private:
    struct Button {
        int m_id = -1;  // -1: a separator
        CString m_tip;
        ToolPicture m_picture = nullptr;
        bool m_checked = false, m_enabled = true;
        int m_left = 0, m_width = 0;
    };
    const Button* ButtonAt(const CPoint& p) const;
    Button* Find(int id);
    CRect PlaceOf(const Button& button) const;
    void Arrange();
    void SetHot(int id);

    std::vector<Button> m_buttons;
    int m_picture = 16;  // side of a picture, pixels
    int m_hot = -1;      // under the pointer
    int m_pressed = -1;  // the button that the mouse went down on
};
