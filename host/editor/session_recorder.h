// Writes down a session at the editor so that `tvo play` repeats it.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/window_system.h"

class CEditFrame;

/// Looks on at the window system and writes each event as a line of a script: what the pointer and the keys
/// did and where, sizes, what dialogs were answered, how long things took whose length decides what happens.
/// Text that was typed, pasted or composed stands as the line that it made. What happens inside dialogs is no
/// event, its outcome is.
///
/// Each line is in the file before the event is handled, so that a session that ends in a crash is told to
/// its last click; what the event was answered is put before it afterwards.
class SessionRecorder : public CWindowWatcher {
public:
    /// Begins a recording of this frame, which outlives it. A file of that name is kept as NAME~. The script
    /// begins with the frame as it is now: its size, the model (written beside as NAME.start.tvo, unless the editor
    /// was just started without a file), view and switches. Throws DataFailure when it can't be written.
    SessionRecorder(CEditFrame& frame, const std::string& path, bool bare);
    ~SessionRecorder() override;
    SessionRecorder(const SessionRecorder&) = delete;
    SessionRecorder& operator=(const SessionRecorder&) = delete;

    const std::string& Path() const { return m_path; }
    /// What went wrong with the file since it was opened, once; empty: nothing.
    const std::string& Failure() const { return m_failure; }

    void OnMouse(CWnd& window, UINT message, UINT keys, CPoint client) override;
    void OnWheel(CWnd& window, UINT keys, int delta, CPoint screen) override;
    void OnKey(CWnd& window, UINT key, bool shift, bool control, const std::string& text) override;
    void OnDrop(CWnd& window, const std::vector<std::string>& files) override;
    void OnClose(CWnd& window) override;
    void OnResize(CWnd& window, CSize size) override;
    void OnSettled() override;
    void OnDialog(const DialogForm& form, int button) override;
    void OnPath(const PathRequest& request, const std::optional<std::string>& path) override;
    void OnClipboard(const std::string& text) override;
    void OnTicks(std::int64_t ticks) override;

private:
    void WriteHead(bool bare);
    /// The words that begin an event of a window, none for the view's. False for a window that scripts don't
    /// know.
    bool Prefix(const CWnd& window, std::string& words) const;
    void NoteInput();
    void NoteHeld(UINT keys);
    void Event(const std::string& line);
    void Before(const std::string& line);  // of the event that is being handled
    void Put(const std::string& text);
    void WriteEvent();

    CEditFrame& m_frame;  // borrowed
    std::string m_path;
    int m_file = -1;
    std::string m_failure;
    std::string m_event;                // the last line
    std::vector<std::string> m_before;  // lines that belong before it
    std::vector<std::int64_t> m_ticks;  // steps of the clock at its readings during the event
    std::int64_t m_clock = -1;          // at the last reading
    std::int64_t m_end = 0;             // of the file before the last event, bytes
    std::optional<std::string> m_input;  // what stands in the command line, if the script knows
    bool m_settling = false;            // the event that is being handled stands in the script
    CPoint m_pointer;                   // of the view's events, where the script has it
    UINT m_held = 0;                    // MK_SHIFT and MK_CONTROL, as the script has them
};
