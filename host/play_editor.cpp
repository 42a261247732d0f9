// The events of a played session that belong to the whole editor: its other windows, what it asks, what it looks like.
#include <algorithm>
#include <memory>
#include <utility>

#include "host/editor/document.h"
#include "host/editor/edit_frame.h"
#include "host/file_output.h"
#include "host/json_text.h"
#include "host/play_event.h"
#include "host/play_session.h"
#include "host/png/png_writer.h"
#include "host/script_line.h"
#include "host/window_picture.h"
#include "platform/canvas/surface.h"
#include "view/tvo_view_mgr.h"

namespace {

using Words = std::vector<std::string>;

constexpr int kLargestWindow = 16384;

int Pixel(const std::string& word, const char* what) { return static_cast<int>(ScriptInteger(word, what, -1000000, 1000000)); }

void OpenEditor(PlaySession& session, const Words& words) {
    if (words.size() == 2) throw ScriptFailure{"editor takes W and H, and a FILE after them"};
    const bool sized = words.size() > 2;
    const int width = sized ? static_cast<int>(ScriptInteger(words[1], "W", 0, kLargestWindow)) : 1200;
    const int height = sized ? static_cast<int>(ScriptInteger(words[2], "H", 0, kLargestWindow)) : 800;
    session.UseEditor(width, height, words.size() > 3 ? session.FileNamed(words[3]) : "");
}

// ---- other windows ----------------------------------------------------------------------------------------

struct MouseWord {
    const char* name;
    UINT message;
};
constexpr MouseWord kMouse[] = {{"move", WM_MOUSEMOVE},     {"ldown", WM_LBUTTONDOWN},   {"lup", WM_LBUTTONUP},
                                {"ldbl", WM_LBUTTONDBLCLK}, {"mdown", WM_MBUTTONDOWN},   {"mup", WM_MBUTTONUP},
                                {"rdown", WM_RBUTTONDOWN},  {"rup", WM_RBUTTONUP}};

/// What happens in a window: words[at] and what belongs to it.
void Act(PlaySession& session, CWnd& window, const Words& words, std::size_t at) {
    const std::string& what = words[at];
    const auto need = [&](std::size_t count, const char* arguments) {
        if (words.size() != at + 1 + count) throw ScriptFailure{what + " takes " + arguments};
    };
    for (const MouseWord& mouse : kMouse) {
        if (what != mouse.name) continue;
        need(2, "X and Y");
        session.m_system.DeliverMouse(window, mouse.message, session.m_held, {Pixel(words[at + 1], "X"), Pixel(words[at + 2], "Y")});
        return;
    }
    if (what == "wheel") {
        need(3, "X, Y and D");
        CPoint screen(Pixel(words[at + 1], "X"), Pixel(words[at + 2], "Y"));
        window.ClientToScreen(screen);
        session.m_system.DeliverWheel(window, session.m_held, static_cast<int>(ScriptInteger(words[at + 3], "D", -100000, 100000)), screen);
    } else if (what == "key") {
        if (words.size() < at + 2) throw ScriptFailure{"key takes NAME [ctrl] [shift]"};
        const PlayKey key = KeyNamed(words, at + 1);
        session.m_system.DeliverKey(window, key.key, key.shift, key.control, key.text);
    } else if (what == "type") {
        need(1, "TEXT");
        session.m_system.DeliverKey(window, 0, false, false, UnescapedWord(words[at + 1]));
    } else if (what == "size") {
        need(2, "W and H");
        const CRect now = window.GetWindowRect();
        const CSize size(static_cast<int>(ScriptInteger(words[at + 1], "W", 0, kLargestWindow)),
                         static_cast<int>(ScriptInteger(words[at + 2], "H", 0, kLargestWindow)));
        SizeWindow(session.m_system, window, size, {now.left, now.top, now.left + size.cx, now.top + size.cy});
    } else if (what == "leave") {
        need(0, "nothing");
        session.m_system.DeliverLeave(window);
    } else if (what == "close") {
        need(0, "nothing");
        session.m_system.DeliverClose(window);
    } else {
        throw ScriptFailure{"'" + what + "' is nothing that happens in a window; move, ldown, lup, ldbl, mdown, mup, rdown, rup, "
                                         "wheel, key, type, size, leave and close are"};
    }
}

CWnd& Named(PlaySession& session, const std::string& name) {
    CWnd* const window = session.Editor().WindowNamed(name);
    if (!window) throw ScriptFailure{"there is no window '" + name + "'"};
    return *window;
}

void ActInPane(PlaySession& session, const Words& words) { Act(session, Named(session, words[0]), words, 1); }
void ActInWindow(PlaySession& session, const Words& words) { Act(session, Named(session, words[1]), words, 2); }

void Timer(PlaySession& session, const Words& words) {
    CWnd& window = words[1] == "frame"  ? static_cast<CWnd&>(session.Editor())
                   : words[1] == "view" ? static_cast<CWnd&>(session.View())
                                        : Named(session, words[1]);
    session.m_system.DeliverTimer(window, static_cast<unsigned>(ScriptInteger(words[2], "ID", 0, 1000000)));
}

void Close(PlaySession& session, const Words&) {
    CEditFrame& frame = session.Editor();
    session.m_system.DeliverClose(frame);
    PrintJsonLine(session.m_out, {{"type", "close"}, {"closed", !frame.IsWindow()}});
}

void Journal(PlaySession& session, const Words&) { session.Editor().Document().KeepJournal(); }

void Drop(PlaySession& session, const Words& words) {
    std::vector<std::string> files;
    for (std::size_t i = 1; i < words.size(); ++i) files.push_back(session.FileNamed(words[i]));
    session.m_system.DeliverDrop(session.Editor().View(), files);
}

// ---- answers laid ready -----------------------------------------------------------------------------------

void Answer(PlaySession& session, const Words& words) {
    DialogAnswer answer;
    answer.m_dialog = words[1];
    std::size_t i = 2;
    if (i < words.size() && words[i].find('=') == std::string::npos) {
        answer.m_button = words[i] == "cancel" ? -1 : static_cast<int>(ScriptInteger(words[i], "BUTTON", 0, 20));
        ++i;
    }
    for (; i < words.size(); ++i) {
        const std::size_t sign = words[i].find('=');
        if (sign == std::string::npos) throw ScriptFailure{"'" + words[i] + "' is no name=value"};
        answer.m_values.emplace_back(words[i].substr(0, sign), UnescapedWord(words[i].substr(sign + 1)));
    }
    session.m_system.m_answers.push_back(std::move(answer));
}

void Path(PlaySession& session, const Words& words) {
    if (words[1] == "cancel") session.m_system.m_paths.emplace_back(std::nullopt);
    else session.m_system.m_paths.emplace_back(session.FileNamed(words[1]));
}

void Clipboard(PlaySession& session, const Words& words) { session.m_system.m_clipboard = UnescapedWord(words[1]); }

void Program(PlaySession& session, const Words& words) {
    ProcessOutput output;
    output.m_started = ScriptInteger(words[1], "0|1", 0, 1) != 0;
    output.m_timedOut = ScriptInteger(words[2], "0|1", 0, 1) != 0;
    output.m_status = static_cast<int>(ScriptInteger(words[3], "STATUS", -1, 255));
    output.m_text = UnescapedWord(words[4]);
    output.m_errors = UnescapedWord(words[5]);
    session.m_system.m_outputs.push_back(std::move(output));
}

void Ticks(PlaySession& session, const Words& words) {
    for (std::size_t i = 1; i < words.size(); ++i)
        session.m_system.m_ticks.push_back(ScriptInteger(words[i], "N", 0, 1000000000000));
}

void Advance(PlaySession& session, const Words& words) {
    session.m_system.Advance(static_cast<int>(ScriptInteger(words[1], "MS", 0, 1000000)));
}

// ---- what there is to see ---------------------------------------------------------------------------------

void Windows(PlaySession& session, const Words&) {
    CEditFrame& frame = session.Editor();
    PrintJsonLine(session.m_out, {{"type", "windows"}, {"title", frame.GetWindowText().GetString()}, {"tools", frame.ToolNames()}});
}

void WindowPng(PlaySession& session, const Words& words) {
    const CWnd& window = words.size() > 2 ? Named(session, words[2]) : session.Editor();
    const auto picture = PictureOfWindow(session.m_system, window);
    ReplaceFile(words[1], [&](const std::string& name) {
        std::string error;  // "name: reason"
        return WritePng(*picture, name, error) ? "" : error.substr(std::min(error.size(), name.size() + 2));
    });
}

constexpr PlayEvent kEvents[] = {
    {"editor", "[W H [FILE]]", 0, 3, OpenEditor,
     "first of all: the whole editor, 1200 by 800, with a file or the sample net"},
    {"menu", "WHAT ...", 2, -1, ActInPane, "in the screen menu: move, ldown, lup, rdown X Y ..."},
    {"bar", "WHAT ...", 2, -1, ActInPane, "in the status bar"},
    {"tools", "WHAT ...", 2, -1, ActInPane, "in the toolbar"},
    {"window", "NAME WHAT ...", 2, -1, ActInWindow, "in another window, such as check or report: the same, leave, close, size W H"},
    {"answer", "DIALOG [BUTTON] NAME=VALUE ...", 1, -1, Answer,
     "lays ready what the next dialog will be answered; BUTTON from 0, or cancel", PlayEvent::kPrepares},
    {"path", "FILE", 1, 1, Path, "lays ready what the next question for a file will be answered; or cancel", PlayEvent::kPrepares},
    {"clipboard", "TEXT", 1, 1, Clipboard, "what the clipboard holds", PlayEvent::kPrepares},
    {"program", "0|1 0|1 STATUS TEXT ERRORS", 5, 5, Program,
     "what the next program that is called does: started, timed out, how it ended, what it wrote", PlayEvent::kPrepares},
    {"ticks", "N ...", 1, -1, Ticks, "by how much the clock goes on at each of its next readings",
     PlayEvent::kPrepares},
    {"advance", "MS", 1, 1, Advance, "the clock goes on; timers that are due fire"},
    {"timer", "NAME ID", 2, 2, Timer, "a timer of a window has run down, by the window's name, frame or view"},
    {"meanwhile", "N EVENT ...", 2, -1, nullptr,
     "lays ready what happens while the N-th question of the next event stands", PlayEvent::kPrepares},
    {"journal", "", 0, 0, Journal, "keeps a journal from now on, as tvo edit does, and offers what a crash has left"},
    {"drop", "FILE ...", 1, -1, Drop, "files are dropped on the view"},
    {"close", "", 0, 0, Close, "the user closes the editor; prints whether it went"},
    {"windows", "", 0, 0, Windows, "prints the title and the other windows that are open"},
    {"windowpng", "FILE [NAME]", 1, 2, WindowPng, "the whole window, or another by name, as PNG"},
};

}  // namespace

void SizeWindow(CWindowSystem& system, CWnd& window, CSize size, const CRect& place) {
    if (system.m_watcher) system.m_watcher->OnResize(window, size);
    window.MoveWindow(place);
    system.Drain();
    if (system.m_watcher) system.m_watcher->OnSettled();
}

std::span<const PlayEvent> EditorPlayEvents() { return kEvents; }
