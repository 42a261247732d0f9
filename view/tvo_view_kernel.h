// CTvoViewKernel: the interactive drawing surface of the editor.
#pragma once
#include <cstdint>
#include <memory>
#include <mutex>

#include "geometry/fcoor.h"
#include "geometry/fpoint.h"
#include "platform/canvas/dc.h"
#include "platform/canvas/font.h"
#include "platform/containers.h"
#include "platform/string.h"
#include "platform/window.h"
#include "view/list_index.h"
#include "view/oper_stack_item.h"
#include "view/work_codes.h"

class CDtWorkEx;
class CFRegion;
class CGouJianEx;
class CSelectCommand;
class CTvoDataBase;
class CTvoFrameBase;


/// The view: it owns the transform, the points given so far, the running command and the stack of suspended ones. All
/// input reaches the command through here. A mouse handler at most asks the command's OnMouseNotify; what the command
/// does then is driven by one private message that the handlers post, so that it never runs inside a handler.
///
/// The model is rendered once into an off-screen picture, the base map. Cursor and rubber line are drawn over it in XOR.
///
/// Components (the selection, those inside the window) are borrowed from the data base, which takes one out before it is
/// freed. Commands are owned from DoWork on, save the stock select and show commands, which live as long as the view.
class CTvoViewKernel : public CView {
public:
    CTvoViewKernel();
    ~CTvoViewKernel() override;

    // --- hooks; the order of these slots is fixed ---
    /// The running command ends: it is deleted, or, if it is a stock select command, its owner is.
    virtual void ClearWork(int bCancel);
    /// Starts a command and owns it from here on; what ran before is suspended.
    virtual void DoWork(CDtWorkEx* pWork);
    virtual void Draw_Axis(CDC* dc);
    virtual void ShowLocate();  // cursor and offset to the status bar
    virtual void SetPromptText(CString text);  // to the status bar, not to the history
    virtual void DrawCrossCursor(CFPoint& at, CDC* dc);
    virtual void ClearSelectedList();  // all become normal
    virtual void DrawSelectedList(CDC* dc, CFCoor* coor);
    virtual int InFilter(CGouJianEx* pGouJian);  // it may be selected
    /// Toggles what the region (or rectangle) hits: 1 if anything changed. Mode 1: all of a component must lie inside.
    virtual int HitTest(CFRegion& region, CGouJianExList*& selected, int mode, CGouJianExList& added, CGouJianExList& removed);
    virtual int HitTest(CFRect& rect, CGouJianExList*& selected, int mode, int bFirst, CGouJianExList& added,
                        CGouJianExList& removed);
    virtual void OnOverlapBaseMap(CDC*) {}

    // --- commands
    CDtWorkEx* GetWorkingCommand();  // the one that is logically running: under a stock command, the one below
    bool IsStockObject(const CDtWorkEx* pWork) const;
    bool IsBusy() const { return m_nWorkState == 1; }
    bool IsSelecting() const;
    bool IsShowing() const;
    bool IsSnapping() const { return m_bGridSnap || m_bObjectSnap || m_bAngleSnap; }
    void PushViewStack();
    int PeekViewStack(COperStackItem& item);  // 0 and the item as it was on an empty stack
    int PopViewStack(COperStackItem& item);
    void SwitchState(COperStackItem item, unsigned code);
    void RevokeCurCmd(int bCancel);         // ends the running command; the one below resumes
    void ReSetToInitialState(int bCancel);  // ends everything
    int OnNormal();
    int OnInput(const char* text);  // always 1
    int ResponseFunctionKey(unsigned code);
    void ClearResultSize() { m_nInputPoint = 0; }
    /// Makes a command the running one, for the view's own commands: what goes on around notices the change.
    void SetWork(CDtWorkEx* pWork);
    /// A command's end: deleted now, or when the last call of its hooks that is under way returns.
    void EndLife(CDtWorkEx* pWork);
    /// Its last hook, and its end. False if the hook has switched another command in: that one goes on.
    bool EndByHook(CDtWorkEx* pWork, int bCancel);
    /// Calls a hook of a command: true if what runs is the same afterwards.
    template <class F>
    bool Called(CDtWorkEx* work, F hook);

    // --- keyboard
    void SetCursorByKbd(int key);
    void ProcessCursorByKbd(float dx, float dy);
    int ProcessInputCoor(const char* text, CFPoint& out);
    void AddInputCoordByKbd();

    // --- snapping: 1, the point and the kind of what was found, else 0 and -1
    int GetSnapPoint(CFPoint& pt, int& kind);
    int GetSnapPointByObject(CFPoint& pt, int& kind);
    int GetSnapPointByAngle(CFPoint& pt, int& kind);
    int GetSnapPointByBackgrid(CFPoint& pt, int& kind);
    /// Draws in XOR; the rectangle that the symbol touched.
    CRect DrawSnapSymbol(CDC* dc, unsigned long colour, CFPoint pt, int kind);
    CRect DrawSnapSymbolByObject(CDC* dc, unsigned long colour, CFPoint pt, int kind);
    CRect DrawSnapSymbolByAngle(CDC* dc, unsigned long colour, CFPoint pt);
    CRect DrawSnapSymbolByBackgrid(CDC* dc, unsigned long colour, CFPoint pt);
    CRect DrawRectSnapSymbol(CDC* dc, unsigned long colour, CFPoint pt);
    CRect DrawCircleSnapSymbol(CDC* dc, unsigned long colour, CFPoint pt);
    CRect DrawTriangleSnapSymbol(CDC* dc, unsigned long colour, CFPoint pt);

    // --- the picture
    void CreateBaseMap(CDC* dc);
    void CopyBaseMap(CDC* mem, CDC* ref, CDC* src);
    void OverlapBaseMap(CDC* dc, unsigned mask);  // value 1: the cursor, 2: the rubber line; 4 has no effect
    void BlitScreen(CDC* dst, CDC* src);
    void DrawCursor(CDC* dc);
    void DrawRubberLine(CDC* dc);
    void OnDraw(CDC* dc) override;
    /// The picture of a component goes; it is painted anew with the next paint.
    void ReGenObject(CGouJianEx* pGouJian);
    void GetGouJianInViewPort(CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& map, CRect rect);
    void SetDataBase(CTvoDataBase* db);  // of the view and its stock commands
    void RefreshViewPort();  // m_mapViewPort for the client area
    /// For the data base: the component is about to be freed.
    void ForgetComponent(CGouJianEx* pGouJian);
    CFPoint EffectivePoint() const;  // cursor plus offset
    CFPoint WorldOf(const CPoint& pixel) const { return m_cCoor.DPtoFP(pixel); }
    CPoint PixelOf(const CFPoint& world) const { return m_cCoor.FP2toDP(world); }
    int CurrentCommandId() const;  // the frame's; -1 without one

    CFont m_cFont;                       // labels
    CTvoFrameBase* m_pFrame = nullptr;   // borrowed; null while there is no frame
    CTvoDataBase* m_pDataBase = nullptr; // borrowed
    CDtWorkEx* m_pWork = nullptr;        // the running command; owned unless it is a stock object
    CFPoint m_aInputPoint[kMostInputPoints];  // given to the running command so far, world
    std::int16_t m_nInputPoint = 0;      // how many of them are valid
    CFCoor m_aCoorHistory[10];           // saved transforms
    std::uint16_t m_nCoorHistory = 0;    // how many are valid
    float m_fKbdStep;                    // world length of one press of an arrow key
    CFPoint m_cCursor;                   // world, after snapping
    CFPoint m_cCursorOffset;             // always added to the cursor
    CFCoor m_cCoor;                      // the view transform
    int m_bKbdPointAdded = 0;            // the point of this click is stored already
    int m_bKbdMoved = 0;                 // the next move is an echo of SetCursorPos: the cursor stays
    std::uint32_t m_nWorkMessage = WM_DTVIEW_IDLE;
    int m_nWorkState = 0;                // 0 idle, 1 a command runs
    std::uint32_t m_nObjectHint = 0;     // what the running command awaits, QS_...
    int m_bNeedBlit = 0;
    CList<COperStackItem> m_cViewStack;  // suspended commands; the head is the top
    std::recursive_mutex m_csWork;       // around the completing of a command
    CDtWorkEx* m_pShowCommand[2] = {};   // stock objects: window zoom, pan
    int m_nShowMethod = 0;               // index into these
    int m_bSnapHit = 0;                  // result of the last GetSnapPoint
    int m_bShowCoordinate = 1;
    int m_bShowGrid = 1;
    int m_bOrtho = 0;
    int m_bGridSnap = 0;
    int m_bObjectSnap = 0;
    int m_bAngleSnap = 0;
    float m_fSnapAngle[10] = {-60, -45, -30, 0, 30, 45, 60, 90, 180, 270};  // degrees
    int m_bKeepSelected = 0;             // a switch of commands leaves the selection; once set it stays
    std::uint8_t m_byteFilter = 255;     // type that may be selected
    CByteArray m_aFilter;                // further ones
    int m_nSelectKind = -1;              // stock select command: 0 single, 1 window, 2 polygon
    CDtWorkEx* m_pSelectCommand[3] = {}; // the stock select commands
    CGouJianExList* m_pSelectedList;     // the current selection; the list is owned
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapViewPort;  // components inside the window
    int m_bPlaneSnap = 0;                // snapped points get z 0
    CDC m_cBaseMap;                      // off-screen picture of the model
    int m_nClientWidth = 0, m_nClientHeight = 0;  // when the base map was made
    int m_bBaseMapDirty = 1;             // to be rebuilt on the next paint
    CArray<unsigned, unsigned> m_aFunctionKey;  // registered by the running command

protected:
    LRESULT WindowProc(UINT message, WPARAM w, LPARAM l) override;
    LRESULT OnWmDtviewWork(WPARAM w, LPARAM l);
    LRESULT OnWnDtviewIdle(WPARAM, LPARAM) { return 0; }
    BOOL OnSetCursor() override;
    void OnLButtonDown(UINT keys, CPoint p) override;
    void OnLButtonUp(UINT keys, CPoint p) override;
    void OnMButtonDown(UINT keys, CPoint p) override;
    void OnMButtonUp(UINT keys, CPoint p) override;
    void OnRButtonDown(UINT keys, CPoint p) override;
    void OnRButtonUp(UINT keys, CPoint p) override;
    void OnMouseMove(UINT keys, CPoint p) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;
    void OnPaint() override;

    CSelectCommand* Selecting() const;  // the running select command, or null
    void EndSuspended(int bCancel);  // each command on the stack, but for the running one
    void ShowCopy(unsigned mask);    // base map, with overlays as in OverlapBaseMap, to the window
    void GoIdle();                   // no command, no selection, no filter
    void RebuildBaseMap();
    void PurgeStack(const CDtWorkEx* pWork);  // what names the command goes

private:
    friend class CommandCall;

    int Dispatch(WPARAM code, LPARAM l);
    int Await();
    void Finish();
    void CancelByKey();
    void ShowCursor(HCURSOR cursor);
    void NotifyMouse(unsigned event, UINT keys, CPoint p);
    void StorePoint(const CFPoint& p);
    void MoveCursor(CDC& dc, const CFPoint& to);
    void EraseSnapSymbol(CDC& dc);
    void UpdateSnapSymbol(CDC& dc, int kind);
    template <class Hits>
    int ToggleHits(CGouJianExList& candidates, Hits hits, CGouJianExList& selected, int bFirst, CGouJianExList& added,
                   CGouJianExList& removed);

    unsigned m_nWorkSerial = 0;            // counts the changes of m_pWork
    unsigned m_nSwitches = 0;              // counts the commands switched in
    unsigned m_nStarts = 0;                // of these the new ones
    CListIndex m_cSelectedIndex, m_cAddedIndex[3], m_cRemovedIndex[3];  // of the selection and the select commands' lists
    std::shared_ptr<CSurface> m_pScratch;  // of the last copy of the base map, to be used again
};

/// Around a call of a command's hook: the command may end, or another be switched in, within. It then lives on till the
/// call returns, and the view sees that its answer is nobody's.
class CommandCall {
public:
    CommandCall(CTvoViewKernel& view, CDtWorkEx* work);
    CommandCall(const CommandCall&) = delete;
    CommandCall& operator=(const CommandCall&) = delete;
    ~CommandCall();
    /// The command that was called is still the running one.
    bool Stands() const { return m_view.m_nWorkSerial == m_serial; }

private:
    CTvoViewKernel& m_view;
    CDtWorkEx* m_work;
    unsigned m_serial;
};

template <class F>
bool CTvoViewKernel::Called(CDtWorkEx* work, F hook) {
    const CommandCall call(*this, work);
    hook();
    return call.Stands();
}

/// The one view of the process, for code that has no other way to it; null without one.
extern CTvoViewKernel* g_pViewKernel;

// The snap symbol on the screen. It is drawn in XOR, and must be drawn again to go away.
extern int g_bSnapSymbolShown;
extern int g_bSnapSymbolErasing;    // the symbol is being drawn to erase it
extern CFPoint g_cSnapSymbolPoint;  // where the shown one stands
extern int g_nSnapSymbolKind;

extern const int CATCH_SIZE;   // pixels: snap distance and pick box
extern const int CURSOR_SIZE;  // pixels: the box of the cross cursor

/// With m_bOrtho the point moved onto the horizontal or the vertical through `base`, else as it is.
CFPoint GetOrthoPoint(CTvoViewKernel* view, CFPoint base, CFPoint p);

/// "x,y", "r<a" (degrees), either with "@" before for relative: 1, and the two values; else 0.
int ParseCoordString(CString text, float* values, int* pPolar, int* pRelative);
