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
#include "host/models/model_build.h"
#include "host/models/model_writer.h"
#include "host/play_event.h"
#include "host/settings/profile_settings.h"
#include "host/settings/settings_file.h"
#include "host/tvo_model_host.h"
#include "platform/canvas/system_metrics.h"
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

std::string Exact(float v) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, v).ptr};
}

std::string At(CPoint p) { return std::to_string(p.x).append(" ").append(std::to_string(p.y)); }

/// Saves the model and goes on with what was saved, as the played session will: components in the order of
/// the file, nothing to undo. Throws DataFailure, the model as it was, if the file doesn't hold all of it.
void BeginFrom(const std::string& file, CEditFrame& frame) {
    const TvoModelHost host;
    CTvoHostDataBase& db = frame.DataBase();
    const int modified = db.GetContain().IfModified();
    const SavedModel saved = SaveModel(file, db, host);
    db.GetContain().SetModifiedFlag(modified);  // this was no save of the user's
    CTvoHostDataBase trial;
    const BuiltModel built = OpenModel(file, trial, host);
    if (saved.leftOut != 0 || !built.hostDataRead || built.nodes != saved.nodes ||
        built.lines != saved.lines || built.plates != saved.plates || built.others != saved.others)
        throw DataFailure(file + ": the model holds what a file doesn't keep, such as a field");
    OpenModel(file, db, host);
    db.GetContain().SetModifiedFlag(modified);
    frame.ModelChanged();
}

}  // namespace

SessionRecorder::SessionRecorder(CEditFrame& frame) : m_frame(frame) {
    if (CWindowSystem* system = CWindowSystem::Current()) system->m_watcher = this;
}

SessionRecorder::~SessionRecorder() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (system && system->m_watcher == this) system->m_watcher = nullptr;
    StopWriting();
}

// ---- the beginning ----------------------------------------------------------------------------------------

/// Settings that the editor finds.
std::string SessionRecorder::Surroundings() const {
    std::string text;
    const auto enter = [&](const char* word, const std::string& path, const std::string& name,
                           const std::string& value) {
        text.append(word).append(1, ' ').append(ScriptWord(path)).append(1, ' ').append(ScriptWord(name));
        text.append(1, ' ').append(ScriptWord(value)).append(1, '\n');
    };
    SettingsFile profile{std::string()};
    SaveProfile(profile);
    for (const auto& [key, value] : profile.Values()) enter("profile", key.first, key.second, value);
    for (const auto& [name, value] : SnapSettings(m_frame.View()))
        enter("setting", kSnapSettingsPath, name, value);
    enter("setting", CEditFrame::kLayoutPath, "menu", std::to_string(m_frame.m_nScrnMenuWidth));
    enter("setting", CEditFrame::kLayoutPath, "prompt", std::to_string(m_frame.m_nPromptHeight));
    if (IsDarkPalette()) text += "palette dark\n";
    return text;
}

/// What is seen.
std::string SessionRecorder::Look() const {
    std::string text = "look";
    const CTvoViewMgr& view = m_frame.View();
    const CFCoor& coor = view.m_cCoor;
    for (const float v :
         {coor.GetScale(), coor.m_cOrigin.x, coor.m_cOrigin.y, coor.m_cOrigin.z, coor.m_fAlpha, coor.m_fBeta})
        (text += ' ') += Exact(v);
    for (const int flag : {coor.IsReverseY(), view.m_bShowCoordinate, view.m_bShowGrid, view.m_bOrtho,
                           view.m_bGridSnap, view.m_bObjectSnap, view.m_bAngleSnap})
        text += flag ? " 1" : " 0";
    text += m_frame.Document().IsModified() ? " 1" : " 0";
    return text;
}

std::string SessionRecorder::Head(const std::string& file, bool snapshot) {
    const CRect place = m_frame.GetClientRect();
    std::string head = Surroundings();
    for (const std::string& line : m_before) head += line + "\n";
    if (!file.empty())
        if (const auto stands = m_files.Read(file)) head += *stands + "\n";
    head += "editor " + At({place.Width(), place.Height()});
    if (!file.empty()) (head += ' ') += ScriptWord(m_files.Named(file));
    head += "\n" + Look() + "\n";
    if (snapshot)
        head += m_frame.Document().Path().empty()
                    ? "unnamed\n"
                    : "named " + ScriptWord(m_files.Named(m_frame.Document().Path())) + "\n";
    // Behind the opening, which enters its file.
    std::vector<std::string> recent = EditorDocument::Recent();
    recent.resize(EditorDocument::kMostRecent);
    for (std::size_t i = 0; i < recent.size(); ++i)
        head += "recent " + std::to_string(i + 1) + " " + ScriptWord(m_files.Named(recent[i])) + "\n";
    m_before.clear();
    return head;
}

void SessionRecorder::Opened(const std::string& file) {
    m_kept = Head(file, false);
    m_ticks.clear();
    m_depth = 0;
}

void SessionRecorder::WillRead(const std::string& path) {
    if (m_mute) return;
    if (const auto line = m_files.Read(path)) Before(*line);
}

// ---- the file ---------------------------------------------------------------------------------------------

void SessionRecorder::WriteTo(const std::string& path, From from) {
    StopWriting();
    std::error_code ignored;
    if (std::filesystem::equivalent(path, m_frame.Document().Path(), ignored))
        throw DataFailure(path + ": is the model that is open; record under another name");
    if (from == From::kStart && !KnowsStart())
        throw DataFailure(path + ": too much has been done to tell it from the start");
    std::string folder = path + ".files";
    for (int i = 2; std::filesystem::exists(folder, ignored); ++i)
        folder = path + "." + std::to_string(i) + ".files";
    const std::string name = std::filesystem::path(folder).filename().string();
    std::string beside = path + ".new";  // takes the name when all of it stands; a file that has it is somebody's
    for (int i = 2; std::filesystem::exists(std::filesystem::symlink_status(beside, ignored)); ++i)
        beside = path + "." + std::to_string(i) + ".new";
    const int file = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (file < 0) throw DataFailure(path + ": " + std::strerror(errno));
    m_file = file;
    m_path = path;
    m_failure.clear();
    try {
        if (from == From::kNow) {
            std::filesystem::create_directories(folder, ignored);
            const std::string model = folder + "/start.tvo";
            try {
                BeginFrom(model, m_frame);
            } catch (...) {
                std::filesystem::remove_all(folder, ignored);  // made just now
                throw;
            }
            m_files.Forget();
            m_event.clear();
            m_before.clear();
            m_kept = Head(model, true);
            std::filesystem::remove(model, ignored);  // its copy goes with the others
            m_whole = true;
            m_settling = false;
            m_held = 0;
            m_input.reset();
        }
        m_files.CopyTo(folder);
        const std::string head = "# A session at the editor. Repeat it with: tvo play " + ScriptWord(path) +
                                 "\nfiles " + ScriptWord(name) + "\n" + m_kept;
        Put(head, 0);
        m_end = static_cast<std::int64_t>(head.size());
        ShowEvent();
        if (!m_failure.empty()) throw DataFailure(m_failure);
        if (::access(path.c_str(), F_OK) == 0 && std::rename(path.c_str(), (path + "~").c_str()) != 0)
            throw DataFailure(path + ": " + std::strerror(errno));
        if (std::rename(beside.c_str(), path.c_str()) != 0)
            throw DataFailure(path + ": " + std::strerror(errno));
    } catch (...) {
        ::close(std::exchange(m_file, -1));
        ::unlink(beside.c_str());
        m_files.StopCopying();
        throw;
    }
}

void SessionRecorder::StopWriting() {
    if (m_file < 0) return;
    if (m_depth == 0 && m_frame.IsWindow()) NoteInput();  // what stands there in the end
    ::close(std::exchange(m_file, -1));
    m_files.StopCopying();
}

void SessionRecorder::StopAtWish() {
    const std::int64_t cut = m_end - static_cast<std::int64_t>(m_typed);
    if (m_file >= 0 && ::ftruncate(m_file, static_cast<off_t>(cut)) != 0 && m_failure.empty())
        m_failure = m_path + ": " + std::strerror(errno);
    StopWriting();
}

void SessionRecorder::LoseTrack() {
    m_whole = false;
    if (m_file >= 0 && m_failure.empty())
        m_failure = m_path + ": a model from a journal is not in the recording";
}

void SessionRecorder::Put(const std::string& text, std::int64_t at) {
    if (m_file < 0) return;
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = ::pwrite(m_file, text.data() + done, text.size() - done,
                                   static_cast<off_t>(at) + static_cast<off_t>(done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            if (m_failure.empty()) m_failure = m_path + ": " + std::strerror(n < 0 ? errno : ENOSPC);
            return;
        }
        done += static_cast<std::size_t>(n);
    }
}

void SessionRecorder::Keep(const std::string& text) {
    m_end += static_cast<std::int64_t>(text.size());
    if (!m_whole) return;
    m_whole = m_kept.size() + text.size() <= kMostKept;
    if (m_whole) m_kept += text;
    else std::string().swap(m_kept);
}

/// The event that is being handled, and what belongs before it.
std::string SessionRecorder::EventText() const {
    std::string text;
    for (const std::string& line : m_before) text += line + "\n";
    if (!m_ticks.empty()) {
        text += "ticks";
        for (const std::int64_t step : m_ticks) (text += ' ') += std::to_string(step);
        text += "\n";
    }
    return text + m_event;
}

void SessionRecorder::ShowEvent() {
    if (m_file >= 0 && !m_event.empty()) Put(EventText(), m_end);
}

// Whatever way text came into the command line, it stands there before the next event.
void SessionRecorder::NoteInput() {
    const std::string now = m_frame.GetInput().GetString();
    if (m_input != now) Line("input " + ScriptWord(now));
    m_input = now;
}

void SessionRecorder::Event(const std::string& line) {
    NoteInput();
    Line(line);
    m_settling = true;
    // Whatever happens may take the text or leave it; what it did is seen when it is done.
    if (m_asking.empty()) m_input.reset();
}

// The event before is whole by now, unless this one comes while that one asks something.
void SessionRecorder::Line(const std::string& line) {
    if (!m_asking.empty()) return Before("meanwhile " + std::to_string(m_asking.back()) + " " + line);
    const std::string before = EventText();
    const bool typed = m_event.starts_with("input ");
    Keep(before);
    m_typed = typed ? before.size() : 0;
    m_before.clear();
    m_ticks.clear();
    m_asked = 0;
    m_event = line + "\n";
    ShowEvent();
}

void SessionRecorder::Before(const std::string& line) {
    m_before.push_back(line);
    ShowEvent();
}

void SessionRecorder::OnSettled() {
    m_depth = std::max(0, m_depth - 1);
    if (m_depth == 0 && std::exchange(m_settling, false)) m_input = m_frame.GetInput().GetString();
}

void SessionRecorder::OnAsk() { m_asking.push_back(++m_asked); }

void SessionRecorder::Answered() {
    if (!m_asking.empty()) m_asking.pop_back();
}

// ---- events -----------------------------------------------------------------------------------------------

bool SessionRecorder::Prefix(const CWnd& window, std::string& words) const {
    if (&window == m_frame.GetDtView()) return true;
    const std::string name = m_frame.NameOf(window);
    if (name.empty()) return false;
    words =
        name == "menu" || name == "bar" || name == "tools" ? name + " " : "window " + ScriptWord(name) + " ";
    return true;
}

void SessionRecorder::NoteHeld(UINT keys) {
    const UINT held = keys & (MK_SHIFT | MK_CONTROL);
    if (held == m_held) return;
    m_held = held;
    Event(std::string("hold") + (held & MK_CONTROL ? " ctrl" : "") + (held & MK_SHIFT ? " shift" : ""));
}

void SessionRecorder::OnMouse(CWnd& window, UINT message, UINT keys, CPoint client) {
    ++m_depth;
    std::string words;
    if (!Prefix(window, words)) return;
    const bool view = words.empty();
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
    ++m_depth;
    std::string words;
    if (!Prefix(window, words)) return;
    NoteHeld(keys);
    window.ScreenToClient(screen);
    Event(words + "wheel " + At(screen) + " " + std::to_string(delta));
}

// Keys that only type are no events: what they made is noted with the next one.
void SessionRecorder::OnKey(CWnd& window, UINT key, bool shift, bool control, const std::string& text) {
    ++m_depth;
    const CPromptView* const prompt = m_frame.GetPromptView();
    // The view hands its keys on to the line.
    const bool line = &window == &m_frame.View() ||
                      (prompt && (&window == &prompt->m_cInput || &window == &prompt->m_cOutput));
    std::string words;
    if (!line && !Prefix(window, words)) return;
    const std::string name = NameOfKey(key);
    const bool types = !text.empty() && key != VK_SPACE && static_cast<unsigned char>(text[0]) >= 32;
    const bool other = types && text != name;  // the name alone would type something else
    if (name.empty() || (line && (types || key == VK_BACK)) || (!line && other)) {
        if (!line && types) Event(words + "type " + ScriptWord(text));
        return;
    }
    Event(words + "key " + name + (control ? " ctrl" : "") + (shift ? " shift" : ""));
}

void SessionRecorder::OnDrop(CWnd&, const std::vector<std::string>& files) {
    ++m_depth;
    std::string line = "drop";
    for (const std::string& file : files) (line += ' ') += ScriptWord(m_files.Named(file));
    Event(line);
}

void SessionRecorder::OnClose(CWnd& window) {
    ++m_depth;
    std::string words;
    if (&window == &m_frame) Event("close");
    else if (Prefix(window, words) && !words.empty()) Event(words + "close");
}

void SessionRecorder::OnLeave(CWnd& window) {
    ++m_depth;
    std::string words;
    if (Prefix(window, words) && !words.empty()) Event(words + "leave");
}

void SessionRecorder::OnPalette(bool dark) {
    ++m_depth;
    if (!m_kept.empty()) Event(dark ? "palette dark" : "palette light");
}

void SessionRecorder::OnTimer(CWnd& window, unsigned id) {
    ++m_depth;
    std::string name = &window == &m_frame              ? "frame"
                       : &window == m_frame.GetDtView() ? "view"
                                                        : m_frame.NameOf(window);
    if (!name.empty()) Event("timer " + ScriptWord(name) + " " + std::to_string(id));
}

void SessionRecorder::OnResize(CWnd& window, CSize size) {
    ++m_depth;
    std::string words;
    if (&window == &m_frame) Event("size " + At({size.cx, size.cy}));
    else if (Prefix(window, words) && !words.empty()) Event(words + "size " + At({size.cx, size.cy}));
}

// ---- answers ----------------------------------------------------------------------------------------------

void SessionRecorder::OnDialog(const DialogForm& form, int button) {
    Answered();
    if (m_mute) return;
    std::string line =
        "answer " + ScriptWord(form.m_name) + " " + (button < 0 ? "cancel" : std::to_string(button));
    if (button >= 0)
        for (const DialogField& field : form.m_fields)
            if (field.IsAnswered()) (line += ' ') += ScriptWord(field.m_name + "=" + field.m_value);
    Before(line);
}

void SessionRecorder::OnPath(const PathRequest& request, const std::optional<std::string>& path) {
    Answered();
    if (m_mute) return;
    if (path && !request.m_save) WillRead(*path);
    Before("path " + (path ? ScriptWord(m_files.Named(*path)) : "cancel"));
}

void SessionRecorder::OnClipboard(const std::string& text) { Before("clipboard " + ScriptWord(text)); }

void SessionRecorder::OnProgram(const ProcessOutput& output) {
    Before("program " + std::to_string(output.m_started) + " " + std::to_string(output.m_timedOut) + " " +
           std::to_string(output.m_status) + " " + ScriptWord(output.m_text) + " " +
           ScriptWord(output.m_errors));
}

void SessionRecorder::OnTicks(std::int64_t ticks) {
    const std::int64_t step = m_clock < 0 ? 0 : std::max<std::int64_t>(0, ticks - m_clock);
    m_clock = ticks;
    m_ticks.push_back(step);
    ShowEvent();
}
