// The main window that hosts derive from: what the model calls on it.
#pragma once
#include "platform/string.h"
#include "platform/window.h"

class CTvoViewMgr;

/// The frame holds the view, shows progress and keeps the prompt. Without a backend it keeps silent: hosts
/// override what they can show.
class CTvoFrameBase : public CWnd {
public:
    CTvoFrameBase();
    CTvoFrameBase(const CTvoFrameBase&) = delete;
    CTvoFrameBase& operator=(const CTvoFrameBase&) = delete;
    ~CTvoFrameBase() override;

    CTvoViewMgr* GetDtView() const { return m_pView; }
    /// Percent of a long task, 0 to 100.
    virtual void ShowProgress(int /*percent*/) {}
    virtual void ShutDownProgress() {}  // the task is done
    /// Adds a line to the prompt's history.
    virtual void AppendPromptText(CString /*text*/) {}

    CTvoViewMgr* m_pView = nullptr;  // borrowed
};

/// The one frame of the process, or null.
extern CTvoFrameBase* g_pFrame;
