#include "host/play_session.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <ostream>
#include <span>
#include <vector>

#include "host/edit_commands.h"
#include "host/editor/edit_frame.h"
#include "host/failure.h"
#include "host/file_output.h"
#include "host/glyphs/freetype_glyph_source.h"
#include "host/json_text.h"
#include "host/play_event.h"
#include "host/play_frame.h"
#include "host/png/png_writer.h"
#include "host/script_line.h"
#include "platform/canvas/client_dc.h"
#include "shell/prompt_view.h"
#include "view/tvo_view_mgr.h"

namespace {

using Words = std::vector<std::string>;

constexpr int kLargestView = 16384;

int Pixel(const std::string& word, const char* what) { return static_cast<int>(ScriptInteger(word, what, -1000000, 1000000)); }

void Resize(PlaySession& session, const Words& words) {
    session.Resize(static_cast<int>(ScriptInteger(words[1], "W", 0, kLargestView)),
                   static_cast<int>(ScriptInteger(words[2], "H", 0, kLargestView)));
}

void Move(PlaySession& session, const Words& words) {
    session.Mouse(WM_MOUSEMOVE, Pixel(words[1], "X"), Pixel(words[2], "Y"));
}

// With a place the pointer goes there first: what a press stores is the cursor, which has followed the pointer.
template <unsigned kMessage>
void Button(PlaySession& session, const Words& words) {
    if (words.size() == 2) throw ScriptFailure{words[0] + " takes X and Y or nothing"};
    if (words.size() == 3) Move(session, words);
    session.Mouse(kMessage, session.m_x, session.m_y);
}

void Wheel(PlaySession& session, const Words& words) {
    const int x = Pixel(words[1], "X"), y = Pixel(words[2], "Y");
    const int delta = static_cast<int>(ScriptInteger(words[3], "D", -100000, 100000));
    CPoint screen(x, y);
    session.View().ClientToScreen(screen);
    session.m_system.DeliverWheel(session.View(), session.m_held, delta, screen);
}

struct KeyName {
    const char* name;
    unsigned key;
    const char* text;
};
constexpr KeyName kKeys[] = {{"enter", VK_RETURN, ""}, {"space", VK_SPACE, " "}, {"tab", VK_TAB, ""},
                             {"esc", VK_ESCAPE, ""},   {"left", VK_LEFT, ""},    {"right", VK_RIGHT, ""},
                             {"up", VK_UP, ""},        {"down", VK_DOWN, ""},    {"back", VK_BACK, "\b"},
                             {"pgup", VK_PRIOR, ""},   {"pgdn", VK_NEXT, ""},    {"home", VK_HOME, ""},
                             {"end", VK_END, ""},      {"delete", VK_DELETE, ""}};

void PressKey(PlaySession& session, const Words& words) {
    const PlayKey key = KeyNamed(words, 1);
    session.Key(key.key, key.shift, key.control, key.text);
}

template <unsigned kKey>
void Press(PlaySession& session, const Words&) {
    session.Key(kKey, false, false, "");
}

// A blank is a key as it is for hands: it ends what is typed, like Enter.
void Type(PlaySession& session, const Words& words) {
    std::string piece;
    for (const char c : words[1]) {
        if (c != ' ') {
            piece += c;
            continue;
        }
        session.Key(0, false, false, std::exchange(piece, {}));
        session.Key(VK_SPACE, false, false, " ");
    }
    session.Key(0, false, false, piece);
}

// On a screen it is what this shows.
void Png(PlaySession& session, const Words& words) {
    auto glass = session.View().Peer()->Shown();
    if (!glass) glass = session.View().ClientSurface();
    ReplaceFile(words[1], [&](const std::string& name) {
        std::string error;  // "name: reason"
        return WritePng(*glass, name, error) ? "" : error.substr(std::min(error.size(), name.size() + 2));
    });
}

void State(PlaySession& session, const Words&) {
    CTvoViewMgr& view = session.View();
    Json stack = Json::array(), selection = Json::array();
    for (POSITION p = view.m_cViewStack.GetHeadPosition(); p;) {
        const CDtWorkEx* const work = view.m_cViewStack.GetNext(p).m_pWork;
        stack.push_back(work ? Json(work->m_strName.GetString()) : Json(nullptr));
    }
    for (POSITION p = view.m_pSelectedList->GetHeadPosition(); p;)
        selection.push_back(view.m_pSelectedList->GetNext(p)->get_m_dwGouJianID());
    const auto& history = session.Frame().GetPromptView()->m_aHistory;
    const CFPoint origin = view.m_cCoor.GetOrigin();
    PrintJsonLine(session.m_out,
                  {{"type", "state"},
                   {"work", view.m_nWorkState},
                   {"command", view.m_pWork ? Json(view.m_pWork->m_strName.GetString()) : Json(nullptr)},
                   {"hint", view.m_nObjectHint},
                   {"select", view.m_nSelectKind},
                   {"points", view.m_nInputPoint},
                   {"stack", stack},
                   {"selection", selection},
                   {"prompt", g_strPrompt.GetString()},
                   {"last", history.IsEmpty() ? "" : history[history.GetUpperBound()].GetString()},
                   {"scale", JsonNumber(static_cast<double>(view.m_cCoor.GetScale()))},
                   {"x", JsonNumber(static_cast<double>(origin.x))},
                   {"y", JsonNumber(static_cast<double>(origin.y))},
                   {"cursor", Json::array({JsonNumber(static_cast<double>(view.m_cCursor.x)), JsonNumber(static_cast<double>(view.m_cCursor.y))})},
                   {"snap", view.m_bSnapHit ? g_nSnapSymbolKind : -1}});
}

void Prompt(PlaySession& session, const Words&) {
    Json lines = Json::array();
    for (const CString& line : session.Frame().GetPromptView()->m_aHistory) lines.push_back(line.GetString());
    PrintJsonLine(session.m_out, {{"type", "prompt"}, {"lines", lines}, {"prompt", g_strPrompt.GetString()}});
}

constexpr PlayEvent kEvents[] = {
    {"size", "W H", 2, 2, Resize, "the view's size in pixels, 800 by 600 at the start; with editor the window's"},
    {"move", "X Y", 2, 2, Move, "the pointer goes to a pixel of the view"},
    {"ldown", "[X Y]", 0, 2, Button<WM_LBUTTONDOWN>, "the left button goes down, there"},
    {"lup", "[X Y]", 0, 2, Button<WM_LBUTTONUP>, "and up"},
    {"ldbl", "[X Y]", 0, 2, Button<WM_LBUTTONDBLCLK>, "goes down the second time of a double click"},
    {"mdown", "[X Y]", 0, 2, Button<WM_MBUTTONDOWN>, "the middle button: moves the view"},
    {"mup", "[X Y]", 0, 2, Button<WM_MBUTTONUP>, "and up"},
    {"rdown", "[X Y]", 0, 2, Button<WM_RBUTTONDOWN>, "the right button: ends, or repeats"},
    {"rup", "[X Y]", 0, 2, Button<WM_RBUTTONUP>, "and up"},
    {"wheel", "X Y D", 3, 3, Wheel, "the wheel turns over a pixel: D above 0 zooms in"},
    {"key", "NAME [ctrl] [shift]", 1, 3, PressKey, "a key: F1 to F12, arrows by name, letters, ..."},
    {"type", "TEXT", 1, -1, Type, "types into the command line; a blank acts as Enter"},
    {"enter", "", 0, 0, Press<VK_RETURN>, "the Enter key"},
    {"esc", "", 0, 0, Press<VK_ESCAPE>, "the Esc key: empties the line, then cancels the command"},
    {"tab", "", 0, 0, Press<VK_TAB>, "the Tab key: the next way to select"},
    {"png", "FILE", 1, 1, Png, "the view as it stands on the glass, as PNG; with W H it is that of tvo run"},
    {"state", "", 0, 0, State, "prints what runs, what it awaits, the view"},
    {"prompt", "", 0, 0, Prompt, "prints the whole history of the command line"},
};

const PlayEvent* FindEvent(const Words& words) {
    for (const std::span<const PlayEvent> family : {std::span<const PlayEvent>(kEvents), EditorPlayEvents(), RecordPlayEvents()})
        for (const PlayEvent& event : family)
            if (words[0] == event.name && !(words[0] == "png" && words.size() > 2)) return &event;
    return nullptr;
}

}  // namespace

PlayKey KeyNamed(const std::vector<std::string>& words, std::size_t first) {
    PlayKey pressed;
    for (std::size_t i = first + 1; i < words.size(); ++i) {
        if (words[i] == "shift") pressed.shift = true;
        else if (words[i] == "ctrl") pressed.control = true;
        else throw ScriptFailure{"with a key goes ctrl or shift, not '" + words[i] + "'"};
    }
    std::string name = words[first];
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const KeyName& key : kKeys) {
        if (name != key.name) continue;
        pressed.key = key.key;
        pressed.text = key.text;
        return pressed;
    }
    if (name.size() > 1 && name[0] == 'f' && name.find_first_not_of("0123456789", 1) == std::string::npos) {
        pressed.key = VK_F1 + static_cast<unsigned>(ScriptInteger(name.substr(1), "F key", 1, 12)) - 1;
        return pressed;
    }
    const unsigned char c = name.empty() ? 0 : static_cast<unsigned char>(name[0]);
    if (name.size() != 1 || !std::isalnum(c))
        throw ScriptFailure{"there is no key '" + words[first] +
                            "'; known are enter, space, tab, esc, left, right, up, down, back, pgup, pgdn, home, end, delete, F1 to F12, letters and digits"};
    pressed.key = static_cast<unsigned>(std::toupper(c));
    if (!pressed.control) pressed.text = words[first];
    return pressed;
}

std::string NameOfKey(unsigned key) {
    for (const KeyName& known : kKeys)
        if (key == known.key) return known.name;
    if (key >= VK_F1 && key <= VK_F12) return std::string(1, 'F').append(std::to_string(key - VK_F1 + 1));
    if (key < 128 && std::isalnum(static_cast<int>(key))) return std::string(1, static_cast<char>(std::tolower(static_cast<int>(key))));
    return {};
}

PlaySession::PlaySession(std::ostream& out, CWindowSystem* system)
    : m_ownSystem(system ? nullptr : std::make_unique<CWindowSystem>()),
      m_system(system ? *system : *m_ownSystem),
      m_script(out),
      m_out(out) {
    AddEditCommands();
    m_frame = std::make_unique<CPlayFrame>(m_script.m_db);
    m_script.m_db.m_pFrame = m_frame.get();
    m_frame->m_bShowScrnMenu = 0;
    m_frame->Create(nullptr, CPlayFrame::PlaceFor(800, 600), WindowKind::kFrame);
    m_frame->CreatePanes(&m_script.m_db);
    m_system.Drain();
    m_system.m_onAsk = [this] { Asked(); };
}

PlaySession::~PlaySession() {
    m_system.m_onAsk = nullptr;
    m_script.m_db.m_pFrame = nullptr;
}

void PlaySession::UseEditor(int width, int height, const std::string& file) {
    if (m_started) throw ScriptFailure{"editor stands before all other events"};
    UseSystemFonts();  // as on a screen; without any the built-in letters stay
    m_frame.reset();   // one frame at a time
    auto editor = std::make_unique<CEditFrame>(m_script.m_db);
    m_editor = editor.get();
    m_frame = std::move(editor);
    m_editor->Open({0, 0, width, height}, file);
    m_system.Drain();
    if (!m_record.empty()) m_editor->StartRecording(m_record, true);
}

CEditFrame& PlaySession::Editor() {
    if (!m_editor) throw ScriptFailure{"this is for the whole editor; begin the script with: editor"};
    return *m_editor;
}

// The editor's boxes are told as they come.
void PlaySession::TellMessages() {
    for (; m_editor && m_told < m_system.m_messages.size(); ++m_told)
        PrintJsonLine(m_out, {{"type", "message"}, {"text", m_system.m_messages[m_told]}});
}

CTvoViewMgr& PlaySession::View() { return *m_frame->GetDtView(); }

void PlaySession::Resize(int width, int height) {
    SizeWindow(m_system, *m_frame, {width, height}, m_editor ? CRect(0, 0, width, height) : CPlayFrame::PlaceFor(width, height));
}

void PlaySession::Mouse(unsigned message, int x, int y) {
    m_x = x;
    m_y = y;
    m_system.DeliverMouse(View(), message, m_held, {x, y});
}

void PlaySession::Key(unsigned key, bool shift, bool control, const std::string& text) {
    m_system.DeliverKey(m_frame->GetPromptView()->m_cInput, key, shift, control, text);
}

void PlaySession::Run(std::string_view line) {
    if (!PlayOne(line)) return;
    TellMessages();
    m_system.ShowNow();
}

// What was laid ready for an event goes with it, whether it went well or not.
bool PlaySession::PlayOne(std::string_view line) {
    m_prepares = false;
    m_asked = 0;
    const auto over = [this] {
        m_asked = 0;
        if (!m_prepares) m_meanwhile.clear();
    };
    try {
        const bool played = Play(line);
        if (!played) m_prepares = true;
        over();
        if (m_wrong) throw ScriptFailure(*std::exchange(m_wrong, std::nullopt));
        return played;
    } catch (...) {
        m_wrong.reset();
        over();
        throw;
    }
}

bool PlaySession::Play(std::string_view line) {
    // Text to type stands as it is, quotes and all.
    const std::size_t first = line.find_first_not_of(" \t\r");
    std::string_view rest = first == std::string_view::npos ? std::string_view() : line.substr(first);
    while (!rest.empty() && rest.back() == '\r') rest.remove_suffix(1);
    if (rest.starts_with("meanwhile ")) {
        std::size_t end = 10;
        const std::string number(rest.substr(end, rest.find(' ', end) - end));
        end += number.size();
        const std::string then(rest.substr(end));
        const Words event = SplitScriptLine(then);
        // A question holds up all else: neither does a command run, nor is the window closed.
        if (event.empty() || event[0] == "editor" || event[0] == "close" || !FindEvent(event))
            throw ScriptFailure{"that can't happen while a question stands"};
        m_meanwhile.push_back({static_cast<int>(ScriptInteger(number, "N", 1, 1000000)), then});
        m_prepares = true;
        return true;
    }
    if (rest.starts_with("type ")) {
        m_started = true;
        Type(*this, {"type", std::string(rest.substr(5))});
        return true;
    }
    const Words words = SplitScriptLine(line);
    if (words.empty()) return false;
    const PlayEvent* const event = FindEvent(words);
    if (!event) {
        m_started = true;
        m_script.Run(line);
        m_system.Drain();
        return true;
    }
    const int count = static_cast<int>(words.size()) - 1;
    if (count < event->least || (event->most >= 0 && count > event->most))
        throw ScriptFailure{std::string(event->name) + " takes " + (*event->arguments ? event->arguments : "no arguments")};
    try {
        event->run(*this, words);
    } catch (const DataFailure& failure) {
        throw ScriptFailure{failure.what()};
    }
    m_prepares = event->kind == PlayEvent::kPrepares;
    if (!m_prepares) m_started = true;
    return true;
}

void PlaySession::Asked() {
    const int now = ++m_asked;
    const bool prepares = m_prepares;  // the event that asks, not what happens meanwhile
    for (std::size_t i = 0; i < m_meanwhile.size(); ++i) {
        if (m_meanwhile[i].question != now) continue;
        const std::string line = m_meanwhile[i].line;
        try {
            Play(line);
        } catch (const ScriptFailure& failure) {
            if (!m_wrong) m_wrong = failure;  // told when the event is over
        }
    }
    m_prepares = prepares;
}

std::string PlaySession::FileNamed(const std::string& word) const {
    const std::string path = UnescapedWord(word);
    const std::size_t slash = path.find('/');
    if (m_played.empty() || slash == std::string::npos || slash < 2 || path[0] != '@' ||
        path.find_first_not_of("0123456789", 1) != slash)
        return path;
    const std::string name = path.substr(slash + 1);
    if (name.empty() || name.find('/') != std::string::npos || name == "." || name == "..")
        throw ScriptFailure{"'" + word + "' is no file of the session"};
    const std::string folder = m_played + path.substr(1, slash - 1);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return folder + "/" + name;
}

std::string PlaySession::Help() {
    std::string text;
    for (const std::span<const PlayEvent> family : {std::span<const PlayEvent>(kEvents), EditorPlayEvents(), RecordPlayEvents()})
        for (const PlayEvent& event : family) {
            std::string head = std::string("  ").append(event.name) + " " + event.arguments;
            head.resize(std::max<std::size_t>(head.size() + 2, 32), ' ');
            text += head + event.help + "\n";
        }
    return text;
}
