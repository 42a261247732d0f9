#include "host/editor/session_recorder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "host/editor/document.h"
#include "host/editor/edit_frame.h"
#include "host/editor/setting_dialogs.h"
#include "host/failure.h"
#include "host/models/model_writer.h"
#include "host/play_event.h"
#include "host/settings/profile_settings.h"
#include "host/settings/settings_file.h"
#include "host/tvo_model_host.h"
#include "shell/prompt_view.h"
#include "view/tvo_view_mgr.h"

namespace {

const char* MouseWord(UINT message) {
    switch (message) {
        case WM_LBUTTONDOWN:
            return "ldown";
        case WM_LBUTTONUP:
            return "lup";
        case WM_LBUTTONDBLCLK:
            return "ldbl";
        case WM_MBUTTONDOWN:
            return "mdown";
        case WM_MBUTTONUP:
            return "mup";
        case WM_RBUTTONDOWN:
            return "rdown";
        case WM_RBUTTONUP:
            return "rup";
        default:
            return "";
    }
}

/// A word of a script, with quotes where it needs them.
std::string Quoted(const std::string& text) {
    if (!text.empty() && text.find_first_of(" \t\r#\"") == std::string::npos) return text;
    std::string quoted(1, '"');
    for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
    quoted.push_back('"');
    return quoted;
}

std::string Exact(float v) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, v).ptr};
}

std::string At(CPoint p) { return std::to_string(p.x).append(" ").append(std::to_string(p.y)); }

}  // namespace

SessionRecorder::SessionRecorder(CEditFrame& frame, const std::string& path, bool bare)
    : m_frame(frame), m_path(path) {
    for (const std::string& mine : {path, path + ".start.tvo"}) {
        std::error_code ignored;
        if (std::filesystem::equivalent(mine, frame.Document().Path(), ignored))
            throw DataFailure(mine + ": is the model that is open; record under another name");
    }
    if (::access(path.c_str(), F_OK) == 0 && std::rename(path.c_str(), (path + "~").c_str()) != 0)
        throw DataFailure(path + ": " + std::strerror(errno));
    m_file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_file < 0) throw DataFailure(path + ": " + std::strerror(errno));
    try {
        WriteHead(bare);
    } catch (...) {
        ::close(m_file);
        throw;
    }
    if (CWindowSystem* system = CWindowSystem::Current()) system->m_watcher = this;
}

SessionRecorder::~SessionRecorder() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (system && system->m_watcher == this) system->m_watcher = nullptr;
    ::close(m_file);
}

void SessionRecorder::WriteHead(bool bare) {
    const CRect place = m_frame.GetClientRect();
    std::string head = "# A session at the editor. Repeat it with: tvo play " + Quoted(m_path) + "\n";
    const auto enter = [&](const char* word, const std::string& path, const std::string& name,
                           const std::string& value) {
        head.append(word).append(1, ' ').append(Quoted(path)).append(1, ' ').append(Quoted(name));
        head.append(1, ' ').append(Quoted(EscapedWord(value))).append(1, '\n');
    };
    SettingsFile profile{std::string()};
    SaveProfile(profile);
    for (const auto& [key, value] : profile.Values()) enter("profile", key.first, key.second, value);
    for (const auto& [name, value] : SnapSettings(m_frame.View()))
        enter("setting", kSnapSettingsPath, name, value);
    enter("setting", CEditFrame::kLayoutPath, "menu", std::to_string(m_frame.m_nScrnMenuWidth));
    enter("setting", CEditFrame::kLayoutPath, "prompt", std::to_string(m_frame.m_nPromptHeight));
    const std::vector<std::string> recent = EditorDocument::Recent();
    for (std::size_t i = 0; i < recent.size(); ++i)
        enter("setting", EditorDocument::kRecentPath, std::string("File").append(std::to_string(i + 1)), recent[i]);
    head.append("editor ").append(At({place.Width(), place.Height()}));
    if (!bare) {
        const std::string model = m_path + ".start.tvo";
        CObjectUndoContainEx& store = m_frame.DataBase().GetContain();
        const int modified = store.IfModified();
        SaveModel(model, m_frame.DataBase(), TvoModelHost());
        store.SetModifiedFlag(modified);  // this was no save of the user's
        (head += ' ') += Quoted(model);
    }
    const CTvoViewMgr& view = m_frame.View();
    const CFCoor& coor = view.m_cCoor;
    head += "\nlook";
    for (const float v :
         {coor.GetScale(), coor.m_cOrigin.x, coor.m_cOrigin.y, coor.m_cOrigin.z, coor.m_fAlpha, coor.m_fBeta})
        (head += ' ') += Exact(v);
    for (const int flag : {coor.IsReverseY(), view.m_bShowCoordinate, view.m_bShowGrid, view.m_bOrtho,
                           view.m_bGridSnap, view.m_bObjectSnap, view.m_bAngleSnap})
        head += flag ? " 1" : " 0";
    head += m_frame.Document().IsModified() ? " 1" : " 0";
    if (!bare) head += m_frame.Document().Path().empty() ? "\nunnamed" : "\nnamed " + Quoted(m_path + ".played.tvo");
    Put(head + "\n");
    if (!m_failure.empty()) throw DataFailure(m_failure);
}

// ---- the file ---------------------------------------------------------------------------------------------

void SessionRecorder::Put(const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t n =
            ::pwrite(m_file, text.data() + done, text.size() - done, m_end + static_cast<off_t>(done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            if (m_failure.empty()) m_failure = m_path + ": " + std::strerror(n < 0 ? errno : ENOSPC);
            return;
        }
        done += static_cast<std::size_t>(n);
    }
    m_end += static_cast<std::int64_t>(done);
}

// The event before is whole by now.
void SessionRecorder::Event(const std::string& line) {
    m_input.reset();  // whatever happens may take the text or leave it; what it did is seen when it is done
    m_settling = true;
    if (!m_event.empty()) {
        WriteEvent();
        m_event.clear();
        m_before.clear();
        m_ticks.clear();
    }
    m_event = line + "\n";
    const std::int64_t begin = m_end;
    Put(m_event);
    m_end = begin;  // what comes before it will be written over it
}

void SessionRecorder::OnSettled() {
    if (std::exchange(m_settling, false)) m_input = m_frame.GetInput().GetString();
}

void SessionRecorder::Before(const std::string& line) {
    if (m_event.empty()) return;
    m_before.push_back(line);
    const std::int64_t begin = m_end;
    WriteEvent();
    m_end = begin;
}

void SessionRecorder::WriteEvent() {
    std::string text;
    for (const std::string& line : m_before) text += line + "\n";
    if (!m_ticks.empty()) {
        text += "ticks";
        for (const std::int64_t step : m_ticks) (text += ' ') += std::to_string(step);
        text += "\n";
    }
    Put(text + m_event);
}

// ---- events -----------------------------------------------------------------------------------------------

bool SessionRecorder::Prefix(const CWnd& window, std::string& words) const {
    if (&window == m_frame.GetDtView()) return true;
    const std::string name = m_frame.NameOf(window);
    if (name.empty()) return false;
    words = name == "menu" || name == "bar" || name == "tools" ? name + " " : "window " + Quoted(name) + " ";
    return true;
}

// Whatever way text came into the command line, it stands there before the event that looks at it.
void SessionRecorder::NoteInput() {
    const std::string now = m_frame.GetInput().GetString();
    if (m_input == now) return;
    Event("input " + Quoted(EscapedWord(now)));
    m_input = now;
}

void SessionRecorder::NoteHeld(UINT keys) {
    const UINT held = keys & (MK_SHIFT | MK_CONTROL);
    if (held == m_held) return;
    m_held = held;
    Event(std::string("hold") + (held & MK_CONTROL ? " ctrl" : "") + (held & MK_SHIFT ? " shift" : ""));
}

void SessionRecorder::OnMouse(CWnd& window, UINT message, UINT keys, CPoint client) {
    std::string words;
    if (!Prefix(window, words)) return;
    const bool view = words.empty();
    if (message != WM_MOUSEMOVE) NoteInput();
    NoteHeld(keys);
    if (message == WM_MOUSEMOVE) {
        Event(words + "move " + At(client));
    } else if (view) {
        // A press with a place would move there first, and there was no such move.
        if (client.x != m_pointer.x || client.y != m_pointer.y) Event("at " + At(client));
        Event(MouseWord(message));
    } else {
        Event(words + MouseWord(message) + " " + At(client));
    }
    if (view) m_pointer = client;
}

void SessionRecorder::OnWheel(CWnd& window, UINT keys, int delta, CPoint screen) {
    std::string words;
    if (!Prefix(window, words)) return;
    NoteInput();
    NoteHeld(keys);
    window.ScreenToClient(screen);
    Event(words + "wheel " + At(screen) + " " + std::to_string(delta));
}

// Keys that only type are no events: what they made is noted with the next one.
void SessionRecorder::OnKey(CWnd& window, UINT key, bool shift, bool control, const std::string& text) {
    const CPromptView* const prompt = m_frame.GetPromptView();
    const bool line = prompt && (&window == &prompt->m_cInput || &window == &prompt->m_cOutput);
    std::string words;
    if (!line && !Prefix(window, words)) return;
    const std::string name = NameOfKey(key);
    const bool types = !text.empty() && key != VK_SPACE && static_cast<unsigned char>(text[0]) >= 32;
    if (line && !types && key != VK_BACK) NoteInput();
    const bool other = types && text != name;  // the name alone would type something else
    if (name.empty() || (line && (types || key == VK_BACK)) || (!line && other)) {
        if (!line && types) Event(words + "type " + Quoted(text));
        return;
    }
    Event(words + "key " + name + (control ? " ctrl" : "") + (shift ? " shift" : ""));
}

void SessionRecorder::OnDrop(CWnd&, const std::vector<std::string>& files) {
    std::string line = "drop";
    for (const std::string& file : files) (line += ' ') += Quoted(file);
    Event(line);
}

void SessionRecorder::OnClose(CWnd& window) {
    std::string words;
    if (&window == &m_frame) Event("close");
    else if (Prefix(window, words) && !words.empty()) Event(words + "close");
}

void SessionRecorder::OnResize(CWnd& window, CSize size) {
    std::string words;
    if (&window == &m_frame) Event("size " + At({size.cx, size.cy}));
    else if (Prefix(window, words) && !words.empty()) Event(words + "size " + At({size.cx, size.cy}));
}

// ---- answers ----------------------------------------------------------------------------------------------

void SessionRecorder::OnDialog(const DialogForm& form, int button) {
    std::string line =
        "answer " + Quoted(form.m_name) + " " + (button < 0 ? "cancel" : std::to_string(button));
    if (button >= 0)
        for (const DialogField& field : form.m_fields)
            if (field.IsAnswered())
                (line += ' ') += Quoted(field.m_name + "=" + EscapedWord(field.m_value));
    Before(line);
}

void SessionRecorder::OnPath(const PathRequest&, const std::optional<std::string>& path) {
    Before("path " + (path ? Quoted(*path) : "cancel"));
}

void SessionRecorder::OnClipboard(const std::string& text) {
    Before("clipboard " + Quoted(EscapedWord(text)));
}

void SessionRecorder::OnTicks(std::int64_t ticks) {
    const std::int64_t step = m_clock < 0 ? 0 : std::max<std::int64_t>(0, ticks - m_clock);
    m_clock = ticks;
    if (m_event.empty()) return;
    m_ticks.push_back(step);
    const std::int64_t begin = m_end;
    WriteEvent();
    m_end = begin;
}
