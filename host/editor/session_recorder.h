// Writes down a session at the editor so that `tvo play` repeats it.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/editor/session_files.h"
#include "platform/window_system.h"

class CEditFrame;

/// Looks on at the window system and tells each event as a line of a script: what the pointer, the keys and
/// the timers did and where, sizes, what dialogs were answered, how long things took whose length decides
/// what happens. Text that was typed, pasted or composed stands as the line that it made. What is done inside
/// dialogs is no event, its outcome is; what happens to the other windows while one is open is told as such.
///
/// It looks on from the start of the editor and keeps the script in memory, so that a session can be written
/// down from its beginning when something has gone wrong, with all that undo can take back. Once it writes to
/// a file each line is there before the event is handled, so that a session that ends in a crash is told to
/// its last click; what the event was answered is put before it afterwards.
class SessionRecorder : public CWindowWatcher {
public:
    /// Looks on at this frame, which outlives it. To be made before the frame opens a file.
    explicit SessionRecorder(CEditFrame& frame);
    ~SessionRecorder() override;
    SessionRecorder(const SessionRecorder&) = delete;
    SessionRecorder& operator=(const SessionRecorder&) = delete;

    /// The editor has opened that file, or the sample for "": the script begins with it.
    void Opened(const std::string& file);
    /// The model came by a way that no script can go, such as from the journal of a crash: it can't be told
    /// from before.
    void LoseTrack();
    /// The editor is about to look at a file.
    void WillRead(const std::string& path);
    void DidWrite(const std::string& path) { m_files.Written(path); }  // which the played session does as well

    // --- the file
    enum class From { kStart, kNow };
    /// Writes the session to a file, with copies of what it reads beside: from the editor's start on, or from
    /// now on, with the model as it stands; what was done before can't be undone any more then. A file of
    /// that name is kept as NAME~. Throws DataFailure when it can't be written, or the start is not at hand
    /// any more; nothing is written then.
    void WriteTo(const std::string& path, From from);
    void StopWriting();
    /// The same within an event that is the user's wish to stop, which is taken off again.
    void StopAtWish();
    bool IsWriting() const { return m_file >= 0; }
    /// Can it be written from the start?
    bool KnowsStart() const { return m_whole && m_files.IsWhole(); }
    const std::string& Path() const { return m_path; }  // of the file, the last one
    /// What went wrong with the file since it was opened, once; empty: nothing.
    const std::string& Failure() const { return m_failure.empty() ? m_files.Failure() : m_failure; }
    const SessionFiles& Files() const { return m_files; }
    /// A script that grew longer than this is no more kept in memory.
    static constexpr std::size_t kMostKept = std::size_t{64} << 20;

    // --- the window system's
    void OnMouse(CWnd& window, UINT message, UINT keys, CPoint client) override;
    void OnWheel(CWnd& window, UINT keys, int delta, CPoint screen) override;
    void OnKey(CWnd& window, UINT key, bool shift, bool control, const std::string& text) override;
    void OnDrop(CWnd& window, const std::vector<std::string>& files) override;
    void OnClose(CWnd& window) override;
    void OnResize(CWnd& window, CSize size) override;
    void OnLeave(CWnd& window) override;
    void OnTimer(CWnd& window, unsigned id) override;
    void OnPalette(bool dark) override;
    void OnSettled() override;
    void OnAsk() override;
    void OnTold() override { Answered(); }
    void OnDialog(const DialogForm& form, int button) override;
    void OnPath(const PathRequest& request, const std::optional<std::string>& path) override;
    void OnClipboard(const std::string& text) override;
    void OnProgram(const ProcessOutput& output) override;
    void OnTicks(std::int64_t ticks) override;

private:
    std::string Head(const std::string& file, bool snapshot);
    std::string Surroundings() const;
    std::string Look() const;
    /// The words that begin an event of a window, none for the view's. False for a window that scripts don't
    /// know.
    bool Prefix(const CWnd& window, std::string& words) const;
    void NoteHeld(UINT keys);
    void NoteInput();
    void Event(const std::string& line);  // with the text in the command line before it
    void Line(const std::string& line);
    void Before(const std::string& line);  // of the event that is being handled
    void Answered();
    std::string EventText() const;
    void ShowEvent();
    void Put(const std::string& text, std::int64_t at);
    void Keep(const std::string& text);

    CEditFrame& m_frame;  // borrowed
    SessionFiles m_files;
    std::string m_kept;   // the script without the event that is being handled; void unless m_whole
    bool m_whole = true;  // m_kept begins with the start
    std::string m_path;
    int m_file = -1;
    std::int64_t m_end = 0;  // of the file before the event that is being handled, bytes
    std::string m_failure;
    std::string m_event;                // the last line
    std::vector<std::string> m_before;  // lines that belong before it
    std::vector<std::int64_t> m_ticks;  // steps of the clock at its readings during the event
    std::int64_t m_clock = -1;          // at the last reading
    std::size_t m_typed = 0;            // bytes before the event that are its text in the command line
    int m_depth = 0;            // events being handled: one, and those that came while it asked something
    int m_asked = 0;            // questions since the event began
    std::vector<int> m_asking;  // numbers of those that stand open
    std::optional<std::string> m_input;  // what stands in the command line, if the script knows
    bool m_settling = false;             // the event that is being handled stands in the script
    CPoint m_pointer;                    // of the view's events, where the script has it
    UINT m_held = 0;                     // MK_SHIFT and MK_CONTROL, as the script has them
    bool m_mute = false;                 // what is asked now is about the recording, and no part of it
    friend class RecorderMuted;
};

/// While it stands the recorder doesn't hear what is asked.
class RecorderMuted {
public:
    explicit RecorderMuted(SessionRecorder& recorder) : m_recorder(recorder) { recorder.m_mute = true; }
    RecorderMuted(const RecorderMuted&) = delete;
    RecorderMuted& operator=(const RecorderMuted&) = delete;
    ~RecorderMuted() { m_recorder.m_mute = false; }

private:
    SessionRecorder& m_recorder;
};
