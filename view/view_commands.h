// The commands of navigation: zoom, window zoom, pan.
#pragma once
#include <cstdint>

#include "view/dt_work_ex.h"

class CTvoViewMgr;

/// Zoom by a letter: in, out, all, extents (also for an empty answer), window.
class CZoom : public CDtWorkEx {
public:
    CZoom();
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override;
    unsigned OnQueryState() override;
    void OnComplete() override;
    void DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) override;

    int m_nMode = 0;              // 3: window
    int m_bDone = 0;
    int m_nCorners = 0;           // how many are given
    CFPoint m_cCorner1, m_cCorner2;

private:
    CTvoViewMgr* View() const;
    unsigned OnLetter(const char* text);
};

/// Shows what lies in a rectangle. With m_bRepeat it asks for the next one at once.
class CShowRect : public CDtWorkEx {
public:
    CShowRect();
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override;
    unsigned OnQueryState() override;
    void DrawCursor(CTvoViewKernel*, CFPoint&, CDC*) override {}  // the platform's cursor shows
};

/// Moves the view with the pointer. Where that would cost too much, a line shows the move, which is made at the end.
class CShowMove : public CDtWorkEx {
public:
    CShowMove();
    void OnPrepare() override;
    void OnComplete() override;
    void OnCancel() override;
    int BlitAfterComplete() override { return 0; }
    unsigned OnMouseNotify(unsigned event, unsigned keys, CFPoint point) override;
    unsigned OnQueryState() override;
    void DrawCursor(CTvoViewKernel*, CFPoint&, CDC*) override {}

    CFPoint m_cDragStart, m_cDragEnd;  // world
    CPoint m_ptStart;                  // pixel
    std::int64_t m_nResult = DTW_NONE;
    int m_nButton = 0;                 // MN_ of the one that drags
    int m_nMoveCount = 0;
    int m_bLiveDrag = 1;

private:
    CTvoViewMgr* View() const;
    void OnDrag(CFPoint point);
    void Try(CTvoViewMgr& view);
    unsigned OnDrop(CFPoint point);
    void End();
};
