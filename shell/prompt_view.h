// CPromptView: the command line, with its prompt and its history.
#pragma once
#include "platform/canvas/font.h"
#include "platform/containers.h"
#include "platform/string.h"
#include "platform/window.h"

class CPromptView;
class CTvoFrameBase;
class CTvoViewMgr;

/// The present prompt; one for the process. Idle it is "命令:".
extern CString g_strPrompt;

/// What has been said, read-only. What is typed here goes to the input line.
class CResultOutput : public CEdit {
public:
    CPromptView* m_pPromptView = nullptr;  // borrowed

protected:
    void OnKeyDown(UINT key, LPARAM flags) override;  // function keys act from here, too
    void OnChar(UINT code) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;
};

/// The input line. It has the focus nearly all the time, so that every key of the editor arrives here.
class CPromptInput : public CEdit {
public:
    CPromptView* m_pPromptView = nullptr;  // borrowed

protected:
    void OnKeyDown(UINT key, LPARAM flags) override;
    void OnChar(UINT code) override;  // Enter, Space, Tab and Esc are keys, not text
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;

private:
    void OnEnter(CTvoViewMgr& view, UINT key, const CString& text);
    bool AnswerSelection(CTvoViewMgr& view, const CString& text);
    void RunCommand(CTvoViewMgr& view, int id);
    void OnEscape(CTvoViewMgr& view, const CString& text);
};

/// A pane: the history above, the prompt and right of it the input line below.
class CPromptView : public CView {
public:
    CPromptView() = default;
    ~CPromptView() override;

    /// Mode 1: the prompt and what stands in the input line go to the history, if anything does; `text` is not used. Any
    /// other: a new prompt; the one before goes to the history, unless it is that of idle or text is being handled.
    void AddPromptText(const CString& text, int mode);
    void AppendPromptText(const CString& text);  // a line of the history; the prompt stays
    /// History alone, without a repaint. A line with "qe_inter_cmd_", an echo that leaves no trace, is dropped.
    void __AddPrompttext(const CString& text);
    const CString& GetCurrentPrompt() const { return g_strPrompt; }
    void SetParaPrompt(const CString& text);
    void RestoreParaPrompt();  // that of idle
    CString GetInput() const { return m_cInput.GetWindowText(); }
    void ClearInput() { m_cInput.SetWindowText(""); }
    void OnInitialUpdate() override;
    void OnDraw(CDC* dc) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;  // zooms if the pointer is over the view

    CFont m_cFont;
    CArray<CString> m_aHistory;         // at most 101 lines
    CTvoFrameBase* m_pFrame = nullptr;  // borrowed
    CResultOutput m_cOutput;
    CPromptInput m_cInput;
    CRect m_rcOutput, m_rcInput;
    int m_bInInput = 0;  // a command handles typed text
    unsigned m_nDisplays = 0;  // how often the history was written anew

protected:
    int OnCreate() override;
    void OnSize(int width, int height) override;

private:
    void Display();
    void RePositionParaPrompt();
};
