// CTvoFrameBase: the main window that hosts derive from.
#pragma once
#include <memory>

#include "geometry/fpoint.h"
#include "platform/containers.h"
#include "platform/string.h"
#include "platform/window.h"

class CPromptView;
class CScrMenuItem;
class CTvoDataBase;
class CTvoViewMgr;

/// The frame holds the panes, turns command identities into commands and remembers the last one. Without a window it
/// keeps silent; everything that goes through it tests for the pane it needs.
class CTvoFrameBase : public CWnd {
public:
    CTvoFrameBase();
    CTvoFrameBase(const CTvoFrameBase&) = delete;
    CTvoFrameBase& operator=(const CTvoFrameBase&) = delete;
    ~CTvoFrameBase() override;

    // --- hooks; the order of these slots is fixed ---
    virtual void CreateToolBar() {}
    virtual void CreateStatusBar() {}
    /// The seven basic commands. A host overrides it, and calls it for what it doesn't know.
    virtual void InvokeCommand(int id, int arg);
    virtual void AfterCommandComplete(int /*id*/) {}
    virtual void OnExpandNode(CScrMenuItem*, int) {}
    /// The graphic view, new; the frame owns it.
    virtual CTvoViewMgr* GetGraphicView();
    virtual void RepeatCommand();
    virtual void RegisterCommandRange(int base);  // once is enough
    virtual void UnregisterCommandRange(int base);
    virtual void RemoveAllCommandRange();
    virtual int IsCommandRange(int id);
    virtual void InvokeCommandRange(int base, int index);
    /// What is shown for a mouse position; null for nothing.
    virtual const char* GetMMP_Text(float, float) { return nullptr; }
    virtual void DoCommand_Pan();
    virtual void DoCommand_Zoom();
    virtual void DoCommand_SingleSelect();
    virtual void DoCommand_WindowSelect();
    virtual void DoCommand_PolygonSelect();
    virtual void DoCommand_Undo();
    virtual void DoCommand_Redo();
    virtual void SetSnapOption() {}

    // --- what hosts without windows show their own way
    /// Percent of a long task, 0 to 100.
    virtual void ShowProgress(int percent);
    virtual void ShutDownProgress();  // the task is done
    /// Adds a line to the prompt's history.
    virtual void AppendPromptText(CString text);

    // --- panes
    /// Makes the view and the prompt, lays them out and has them begin.
    void CreatePanes(CTvoDataBase* db);
    CTvoViewMgr* GetDtView() const { return m_pView; }
    CPromptView* GetPromptView() const { return m_pPrompt.get(); }

    // --- commands
    void InvokeAny(int id);  // by its range, if it is of one

    // --- prompt; nothing without one
    void SetPromptText(const CString& text);
    void RestoreParaPrompt();
    CString GetInput() const;
    void FocusToCommandLine();
    void PostKeyToCommandLine(UINT key);

    // --- status bar; nothing without one
    void SetLocate(const CFPoint& at);
    void SetOffset(const CFPoint& offset);
    void SetStatusPrompt(const CString& text);
    void SetMouseMovePrompt(const CString& text);
    void SetMouseMousePromptText(float x, float y);
    void SyncStsToStatusBar();

    int m_nCurrentCommand = -1;
    int m_nCurrentArg = -1;
    int m_bRangeCommand = -1;
    CArray<int> m_aCommandRange;      // bases
    int m_bShowScrnMenu = 1, m_bShowPrompt = 1, m_bShowStatusBar = 1;
    int m_nScrnMenuWidth = 110;
    int m_nPromptHeight = 155;
    int m_bClosing = 0;
    CTvoViewMgr* m_pView = nullptr;   // borrowed, or the one of m_pOwnView
    CString m_strPane[2];             // the two texts of the status bar
    int m_nPercent = -1;              // of the progress bar; -1: none

protected:
    void OnSize(int width, int height) override;
    void OnDestroy() override;

private:
    void ShowPane(int pane, const CString& text);

    std::unique_ptr<CTvoViewMgr> m_pOwnView;
    std::unique_ptr<CPromptView> m_pPrompt;
    bool m_bShownAll = false;         // the first size that shows anything has been
};

/// The one frame of the process, or null.
extern CTvoFrameBase* g_pFrame;
