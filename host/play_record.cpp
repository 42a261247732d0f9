// The events of a played session that only recordings need.
#include <cmath>
#include <filesystem>
#include <fstream>

#include "host/editor/document.h"
#include "host/editor/edit_frame.h"
#include "host/play_event.h"
#include "host/play_session.h"
#include "host/script_line.h"
#include "host/settings/profile_settings.h"
#include "host/settings/settings_file.h"
#include "shell/prompt_view.h"
#include "view/tvo_view_mgr.h"

namespace {

using Words = std::vector<std::string>;

void At(PlaySession& session, const Words& words) {
    session.m_x = static_cast<int>(ScriptInteger(words[1], "X", -1000000, 1000000));
    session.m_y = static_cast<int>(ScriptInteger(words[2], "Y", -1000000, 1000000));
}

void Hold(PlaySession& session, const Words& words) {
    session.m_held = 0;
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (words[i] == "ctrl") session.m_held |= MK_CONTROL;
        else if (words[i] == "shift") session.m_held |= MK_SHIFT;
        else throw ScriptFailure{"hold takes ctrl and shift, not '" + words[i] + "'"};
    }
}

void Input(PlaySession& session, const Words& words) {
    session.Frame().GetPromptView()->m_cInput.SetWindowText(CString(UnescapedWord(words[1])));
}

void Setting(PlaySession& session, const Words& words) {
    session.m_system.WriteSetting(words[1], words[2], UnescapedWord(words[3]));
}

void Profile(PlaySession&, const Words& words) {
    SettingsFile settings{std::string()};
    settings.Write(words[1], words[2], UnescapedWord(words[3]));
    LoadProfile(settings);
    for (const std::string& message : settings.TakeMessages()) throw ScriptFailure{message};
}

void Look(PlaySession& session, const Words& words) {
    float value[6];
    for (std::size_t i = 0; i < 6; ++i)
        value[i] = static_cast<float>(ScriptNumber(words[i + 1], "the view", -3e38, 3e38));
    if (!(value[0] > 0)) throw ScriptFailure{"the scale must be above 0"};
    int flag[8] = {};
    for (std::size_t i = 0; i < 8; ++i)
        flag[i] = static_cast<int>(ScriptInteger(words[i + 7], "a switch", 0, 1));
    CTvoViewMgr& view = session.View();
    CFCoor& coor = view.m_cCoor;
    coor.Init({value[1], value[2], 0}, value[0], flag[0]);
    coor.m_cOrigin.z = value[3];
    coor.m_fAlpha = value[4];
    coor.m_fBeta = value[5];
    int* const switches[] = {&view.m_bShowCoordinate, &view.m_bShowGrid,   &view.m_bOrtho,
                             &view.m_bGridSnap,       &view.m_bObjectSnap, &view.m_bAngleSnap};
    for (std::size_t i = 0; i < std::size(switches); ++i) *switches[i] = flag[i + 1];
    session.Frame().SyncStsToStatusBar();
    session.m_script.m_db.GetContain().SetModifiedFlag(flag[7]);
    session.Editor().ModelChanged();
    session.m_system.Drain();
}

void Name(PlaySession& session, const Words& words) {
    session.Editor().Document().TakeName(words.size() > 1 ? session.FileNamed(words[1]) : "");
    session.m_system.Drain();
}

void Palette(PlaySession& session, const Words& words) {
    if (words[1] != "dark" && words[1] != "light") throw ScriptFailure{"a palette is dark or light, not '" + words[1] + "'"};
    session.m_system.UsePalette(words[1] == "dark");
}

// ---- files ------------------------------------------------------------------------------------------------

namespace fs = std::filesystem;

// What was played before goes, if it is that.
void Files(PlaySession& session, const Words& words) {
    const std::string name = UnescapedWord(words[1]);
    if (name.empty() || name.find('/') != std::string::npos || name[0] == '.')
        throw ScriptFailure{"the folder of the files lies beside the script"};
    const std::string stem = name.ends_with(".files") ? name.substr(0, name.size() - 6) : name;
    const fs::path beside = session.m_folder.empty() ? fs::path(".") : fs::path(session.m_folder);
    std::error_code error;
    const fs::path played = fs::absolute(beside / (stem + ".played"), error).lexically_normal(), mark = played / ".played";
    if (fs::exists(fs::symlink_status(mark, error))) fs::remove_all(played, error);
    if (fs::exists(played, error)) throw ScriptFailure{played.string() + " is in the way: it was made by something else"};
    if (!fs::create_directory(played, error) || !std::ofstream(mark))
        throw ScriptFailure{"cannot make the folder " + played.string() + ", in which the session is played"};
    session.m_copies = (beside / name).string() + "/";
    session.m_played = played.string() + "/";
}

void File(PlaySession& session, const Words& words) {
    const std::string to = session.FileNamed(words[1]), copy = UnescapedWord(words[2]);
    if (session.m_played.empty() || !to.starts_with(session.m_played)) throw ScriptFailure{"file takes a file of the session"};
    const bool large = copy.starts_with("/");  // too large for the recording's folder
    const fs::path from = large ? fs::path(copy) : fs::path(session.m_copies + copy);
    std::error_code error;
    fs::remove(to, error);
    fs::copy_file(from, to, error);
    if (error) throw ScriptFailure{from.string() + ", which the session reads: " + error.message()};
}

void NoFile(PlaySession& session, const Words& words) {
    std::error_code error;
    const std::string path = session.FileNamed(words[1]);
    if (!session.m_played.empty() && path.starts_with(session.m_played)) fs::remove(path, error);
}

void RecentFile(PlaySession& session, const Words& words) {
    const auto number = ScriptInteger(words[1], "N", 1, static_cast<long long>(EditorDocument::kMostRecent));
    session.m_system.WriteSetting(EditorDocument::kRecentPath, "File" + std::to_string(number),
                                  words[2].empty() ? "" : session.FileNamed(words[2]));
}

constexpr PlayEvent kEvents[] = {
    {"files", "NAME.files", 1, 1, Files,
     "what the session reads lies there, beside the script; it is played in a folder NAME.played", PlayEvent::kPrepares},
    {"file", "@K/FILE COPY", 2, 2, File, "a copy of those stands there now; FILE lies in the K-th folder of the session", PlayEvent::kPrepares},
    {"nofile", "@K/FILE", 1, 1, NoFile, "and now it doesn't", PlayEvent::kPrepares},
    {"recent", "N FILE", 2, 2, RecentFile, "the N-th of the recent files, from 1 on", PlayEvent::kPrepares},
    {"palette", "dark|light", 1, 1, Palette, "the colours of the surroundings", PlayEvent::kPrepares},
    {"named", "FILE", 1, 1, Name, "where saving goes from here on; nothing is written yet"},
    {"unnamed", "", 0, 0, Name, "the model has no file: saving asks for one"},
    {"setting", "PATH NAME VALUE", 3, 3, Setting, "a setting that the editor finds; may stand before editor",
     PlayEvent::kPrepares},
    {"profile", "PATH NAME VALUE", 3, 3, Profile, "the same for what the profile holds", PlayEvent::kPrepares},
    {"at", "X Y", 2, 2, At, "the pointer is there without having moved"},
    {"hold", "[ctrl] [shift]", 0, 2, Hold, "these keys are down at the pointer's events from here on"},
    {"input", "TEXT", 1, 1, Input, "what stands in the command line, by whatever way it came there"},
    {"look", "SCALE X Y Z ALPHA BETA FLIP 0|1 ...", 14, 14, Look,
     "what is seen; six switches in the order of the status bar; whether there is something to save"},
};

}  // namespace

std::span<const PlayEvent> RecordPlayEvents() { return kEvents; }

std::string EscapedWord(const std::string& text) {
    std::string word;
    for (const char c : text) {
        if (c == '\n') word += "\\n";
        else if (c == '\r') word += "\\r";
        else if (c == '\t') word += "\\t";
        else if (c == '\\') word += "\\\\";
        else if (c != '\0') word += c;
    }
    return word;
}

std::string UnescapedWord(const std::string& word) {
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
        const char next = word[i] == '\\' && i + 1 < word.size() ? word[i + 1] : '\0';
        const char meant = next == 'n' ? '\n' : next == 'r' ? '\r' : next == 't' ? '\t' : next == '\\' ? '\\' : '\0';
        text += meant ? meant : word[i];
        if (meant) ++i;
    }
    return text;
}

std::string ScriptWord(const std::string& text) {
    const std::string word = EscapedWord(text);
    if (!word.empty() && word.find_first_of(" #\"\f\v") == std::string::npos) return word;
    std::string quoted(1, '"');
    for (const char c : word) quoted.append(c == '"' ? 2 : 1, c);
    quoted.push_back('"');
    return quoted;
}
