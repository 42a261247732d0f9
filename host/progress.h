// A percentage on the terminal for work that takes its time.
#pragma once
#include <chrono>

#include "shell/frame_sink.h"
#include "shell/tvo_frame_base.h"

/// A frame without panes that shows progress: in the status bar of the frame that stands, if that is in a window, else on
/// the error stream, only when a terminal is there, and only for work that has taken over half a second. The line is wiped
/// in the end.
class CTerminalProgress : public CTvoFrameBase, private CFrameSink {
public:
    /// The frame of the process, if there is one, is that again afterwards.
    explicit CTerminalProgress(const char* label, CTvoFrameBase* before = g_pFrame);
    ~CTerminalProgress() override;
    CTerminalProgress(const CTerminalProgress&) = delete;
    CTerminalProgress& operator=(const CTerminalProgress&) = delete;

    void Finish();  // wipes the line

private:
    void OnProgress(int percent) override;
    bool InWindow() const { return m_before && m_before->IsWindow(); }

    const char* m_label;
    CTvoFrameBase* m_before;  // borrowed
    bool m_terminal;
    std::chrono::steady_clock::time_point m_start;
    int m_shown = -1;  // percentage that stands on the terminal, or -1
};
