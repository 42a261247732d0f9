// CPopupTip: tips that belong to places of a window.
#pragma once
#include <vector>

#include "platform/string.h"
#include "platform/win_types.h"

class CWnd;

/// Gives a window the tip of the place under the pointer. The window hands it the pointer's moves; it must outlive this.
class CPopupTip {
public:
    explicit CPopupTip(CWnd& window) : m_window(window) {}

    void AddTip(const CRect& place, const CString& text);  // over those that were added before
    void RemoveAll();                                      // the one that is shown goes with the next move
    void Relay(const CPoint& p);                           // the pointer is here now, in the client area
    const CString& Shown() const { return m_strShown; }    // empty: none

private:
    struct Tip {
        CRect place;
        CString text;
    };
    CWnd& m_window;
    std::vector<Tip> m_tips;
    CString m_strShown;
};
