// CTvoFrameBase: the main window that hosts derive from.
#pragma once
#include <memory>

#include "controls/flat_splitter_wnd.h"
#include "controls/tool_bar.h"
#include "geometry/fpoint.h"
#include "platform/containers.h"
#include "platform/string.h"
#include "platform/window.h"
#include "shell/session_log.h"
#include "shell/tvo_status_bar.h"

class CFrameSink;
class CPromptView;
class CScrMenuItem;
class CScrMenuView;
class CTvoDataBase;
class CTvoViewMgr;

/// Commands of menus and tool bars.
enum : int {
    ID_SHOW_ZOOM_IN = 57013, ID_SHOW_ZOOM_OUT, ID_SHOW_ALL, ID_SHOW_MOVE, ID_SHOW_RECT, ID_SHOW_AGAIN, ID_SHOW_PRE,
    ID_EDIT_SSELECT, ID_EDIT_WSELECT, ID_EDIT_MSELECT,
    ID_UNDO = 32754, ID_REDO = 32755,
};

/// The frame holds the panes, turns command identities into commands and remembers the last one. Without a window it
/// keeps silent; everything that goes through it tests for the pane it needs.
///
///     tool bar
///     view            | screen menu
///     ----------------------------- may be dragged, as may the bar above
///     prompt
///     status bar
class CTvoFrameBase : public CWnd {
public:
    CTvoFrameBase();  // opens the session log, if it is on
    CTvoFrameBase(const CTvoFrameBase&) = delete;
    CTvoFrameBase& operator=(const CTvoFrameBase&) = delete;
    ~CTvoFrameBase() override;

    // --- hooks; the order of these slots is fixed ---
    virtual void CreateToolBar();    // "图形工具栏"; a frame that overrides it with nothing has none
    virtual void CreateStatusBar();  // likewise
    /// The seven basic commands. A host overrides it, and calls it for what it doesn't know.
    virtual void InvokeCommand(int id, int arg);
    virtual void AfterCommandComplete(int /*id*/) {}
    /// A branch of the screen menu opens (1) or closes (0). The item is the frame's for the call.
    virtual void OnExpandNode(CScrMenuItem*, int) {}
    /// The graphic view, new; the frame owns it. Null: the library's own.
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

    // --- panes; each null until CreatePanes
    /// Makes bars and panes, lays them out and has them begin; the keyboard is the command line's.
    void CreatePanes(CTvoDataBase* db);
    CTvoViewMgr* GetDtView() const { return m_pView; }
    CScrMenuView* GetScrMenuView() const { return m_pMenu.get(); }
    CPromptView* GetPromptView() const { return m_pPrompt.get(); }
    void ShowScrnMenu(int show);
    void ShowPromptWnd(int show);
    void ShowStatusBar(int show);
    /// The first size of the process that a view can show anything in shows all. For tests: the next one does.
    static void ResetFirstSize();

    // --- commands
    void InvokeAny(int id);  // by its range, if it is of one
    BOOL OnCommand(int id) override;  // of menus and tool bars
    void OnShowZoomIn();
    void OnShowZoomout();
    void OnShowAll();
    void OnShowMove();
    void OnShowRect();
    void OnShowAgain();
    void OnShowPre();
    void OnEditSselect();
    void OnEditWselect();
    void OnEditMselect();
    void OnUndo();
    void OnRedo();

    // --- prompt; nothing without one
    void AppendPromptText(const CString& text);  // a line of its history, and of the session log
    void SetPromptText(const CString& text);
    void RestoreParaPrompt();
    CString GetInput() const;
    void FocusToCommandLine();
    void PostKeyToCommandLine(UINT key);
    /// A sign that turns at the end of the history while a long task lives.
    void SetTickTagMode(int on);

    // --- status bar; nothing without one
    void SetLocate(const CFPoint& at);
    void SetOffset(const CFPoint& offset);
    void SetStatusPrompt(const CString& text);
    void SetMouseMovePrompt(const CString& text);
    void SetMouseMousePromptText(float x, float y);
    void SyncStsToStatusBar();
    void ShowProgress(int percent);  // of a long task, 0 to 100
    void ShutDownProgress();         // the task is done

    int m_nCurrentCommand = -1;
    int m_nCurrentArg = -1;
    int m_bRangeCommand = -1;
    CArray<int> m_aCommandRange;      // bases
    int m_bShowScrnMenu = 1, m_bShowPrompt = 1, m_bShowStatusBar = 1;
    int m_nScrnMenuWidth = 110;       // pixels; dragging changes it
    int m_nPromptHeight = 155;        // likewise
    int m_bClosing = 0;
    /// The one of m_pOwnView, or borrowed: then who lent it takes it away, and m_pFrame from it, before either dies.
    CTvoViewMgr* m_pView = nullptr;
    CTvoStatusBar m_cStatusBar;
    CTvoToolBar m_cToolBar;
    int m_nTick = 0;                  // signs shown so far
    int m_nTickMode = 0;              // 1 while the sign turns
    int m_bTickShown = 0;             // it stands at the end of the history
    CFrameSink* m_pSink = nullptr;    // hears progress and prompts; borrowed, may be null

protected:
    /// First of all in a destructor, so that nothing speaks to a frame that is half gone.
    void BeginClosing();
    void OnSize(int width, int height) override;
    void OnDestroy() override;
    void OnClose() override;
    void OnActivate(bool active) override;
    void OnSetFocus() override { FocusToCommandLine(); }
    void OnTimer(unsigned id) override;

private:
    struct Tool;
    static const Tool kTools[];

    void OnCreateClient(CTvoDataBase* db);
    void Layout();
    void TakeTickOff(CString& text) const;
    /// Of the toolkit's menu bar; this frame has none.
    void SetMenuMode(int) {}

protected:
    CSplitterWndEx m_outer;    // rows: the inner one, the prompt
    TCFlatSplitterWnd m_inner; // columns: the view, the screen menu

private:
    std::unique_ptr<CTvoViewMgr> m_pOwnView;
    std::unique_ptr<CScrMenuView> m_pMenu;
    std::unique_ptr<CPromptView> m_pPrompt;
    CSessionLog m_log;
    bool m_bPanesStand = false;
    unsigned m_nTickedDisplay = 0;  // the prompt's count of displays when the sign was put there
};

/// The one frame of the process, or null.
extern CTvoFrameBase* g_pFrame;
