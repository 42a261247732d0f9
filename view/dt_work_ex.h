// CDtWorkEx: one interactive operation, the main extension point for hosts.
#pragma once
#include <cstdint>

#include "geometry/fpoint.h"
#include "platform/containers.h"
#include "platform/string.h"
#include "platform/window.h"
#include "view/work_codes.h"

class CDC;
class CPromptView;
class CRubberLine;
class CTvoDataBase;
class CTvoFrameBase;
class CTvoViewKernel;

/// A command: it asks for points, text or a selection, one step at a time, and then does something to the model. It never
/// waits: the view calls it when input has come, and what it answers says what it awaits next (QS_...).
///
/// A host makes one, sets m_pView and m_pDataBase and gives it to the view's DoWork; from there on the view owns it and
/// deletes it. The view calls Run; on DTW_START OnPrepare and RegisterFunctionKey; then OnGetObject, OnMouseNotify and
/// OnGetFunctionKey as input comes; after another command on top of it RegisterFunctionKey and OnQueryState; at last
/// OnComplete or OnCancel. Enter during a selection that ends in QS_FINISH calls both, OnCancel first.
class CDtWorkEx {
public:
    CDtWorkEx();
    CDtWorkEx(const CDtWorkEx&) = delete;
    CDtWorkEx& operator=(const CDtWorkEx&) = delete;

    // --- the hooks of derived classes; the order of the slots is fixed ---
    /// Deletes the rubber line; with m_bEchoPrompt the current prompt goes to the history; the prompt becomes that of
    /// idle.
    virtual ~CDtWorkEx();
    /// Switches the command in: state and points start afresh, DTW_START is posted.
    virtual void Run();
    virtual void OnPrepare() {}
    virtual void OnComplete();  // closes the progress bar; m_bEchoPrompt becomes m_bHasDefault
    virtual void OnCancel();    // the prompt becomes that of idle; m_bEchoPrompt becomes 1
    virtual int IsSelectCommand() { return 0; }
    /// Its own picture while a selection runs on top of it.
    virtual int DrawBackgrndWhileSelecting(CTvoViewKernel*, CDC&) { return 0; }
    virtual int BlitAfterComplete() { return 1; }
    /// Input: what `object` points to is told by the hint. `byDefault` is 1 only for an empty text from a right click,
    /// which asks for the default. Answers with QS_...
    virtual unsigned OnGetObject(OBJECT_HINT, void* /*object*/, int /*byDefault*/) { return 0; }
    /// A mouse event of m_nMouseMask, at a world point. Answers with a work code, which is posted as it stands.
    virtual unsigned OnMouseNotify(unsigned /*event*/, unsigned /*keys*/, CFPoint) { return DTW_NONE; }
    virtual unsigned OnQueryState() = 0;
    virtual void RegisterFunctionKey(CArray<unsigned, unsigned>&) {}
    virtual void OnGetFunctionKey(unsigned) {}
    /// A full-window cross.
    virtual void DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc);
    virtual void OnExternalNotify(void*, int) {}
    /// The base of angle snapping: the last input point. Asked only when there is one.
    virtual CFPoint QueryAngleSnapPoint();

    // --- for derived classes ---
    void SetPromptText(const CString& text);     // becomes the prompt
    void AppendPromptText(const CString& text);  // a line of the history, unless it is blank
    /// Hands over to the stock select command `kind`; returns QS_SELECT, for OnGetObject to return. Null leaves the
    /// further types as they were.
    unsigned SwitchToSelectCommand(int kind, unsigned char filter, const CByteArray* filters);
    void SwitchRubberLine(CRubberLine* line, int draw);  // takes ownership; draws it at once with `draw` 1
    void RemoveRubberLine();
    void ShowProgress(int percent);

    CTvoViewKernel* m_pView = nullptr;       // set before DoWork; borrowed
    CTvoDataBase* m_pDataBase = nullptr;     // borrowed
    CString m_strPrompt;
    CString m_strName;
    int m_nObjectHint = QS_POINT;            // what it awaits first
    int m_nSelectKind = -1;                  // select command: 0 single, 1 window, 2 polygon
    std::uint8_t m_byteFilter = 0;           // type that a selection may take
    CRubberLine* m_pRubberLine = nullptr;    // owned
    std::uint32_t m_nMouseMask = 0;          // MN_...
    HCURSOR m_hCursor;                       // g_hCursorNull
    int m_bRepeat = 0;                       // the show commands start anew after each result
    int m_bSelectFirst = 0;                  // Run hands over to the single select, with this command as owner
    int m_bTakeClicks = 0;                   // then clicks come here and not to hit testing
    int m_bEchoPrompt = 1;                   // at the end the prompt goes to the history
    CByteArray m_aFilter;                    // further types that a selection may take
    int m_bHasDefault = 0;                   // an empty answer takes the default
    int m_bPlainCancel = 0;                  // choice of the cancel echo
    int m_bEnterAsPoint = 1;                 // Enter and Space give a point at the cursor
    int m_bRubberDrawn = 0;                  // what the last DrawRange returned
    int m_bCompleted = 0;                    // the view has called OnComplete

protected:
    CTvoFrameBase* Frame() const;   // null without one
    CPromptView* Prompt() const;    // null without one

private:
    friend class CommandCall;
    friend class CTvoViewKernel;
    void LeavePrompt();  // once

    int m_nCalls = 0;            // calls of its hooks that are under way
    bool m_bDue = false;         // to be deleted when the last of them returns
    bool m_bLeft = false;        // the prompt is no longer its own
    bool m_bCompleting = false;  // a right click has called OnComplete, which may not have returned
};
