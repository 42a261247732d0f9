// The editor's view.
#pragma once
#include "view/tvo_view_mgr.h"

/// A click on a component picks it, or takes it back, while a command awaits a selection; a click beside all of them
/// begins a window, as every click does in the view below.
class CEditView : public CTvoViewMgr {
protected:
    void OnLButtonDown(UINT keys, CPoint p) override;

private:
    bool PickAtCursor();
};
