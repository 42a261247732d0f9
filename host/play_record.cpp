// The events of a played session that only recordings need.
#include <cmath>

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
    session.Editor().Document().TakeName(words.size() > 1 ? words[1] : "");
    session.m_system.Drain();
}

constexpr PlayEvent kEvents[] = {
    {"named", "FILE", 1, 1, Name, "where saving goes from here on; nothing is written yet"},
    {"unnamed", "", 0, 0, Name, "the model has no file: saving asks for one"},
    {"setting", "PATH NAME VALUE", 3, 3, Setting, "a setting that the editor finds; may stand before editor"},
    {"profile", "PATH NAME VALUE", 3, 3, Profile, "the same for what the profile holds"},
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
        else if (c == '\t') word += "\\t";
        else if (c == '\\') word += "\\\\";
        else if (c != '\r' && c != '\0') word += c;
    }
    return word;
}

std::string UnescapedWord(const std::string& word) {
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
        const char next = word[i] == '\\' && i + 1 < word.size() ? word[i + 1] : '\0';
        const char meant = next == 'n' ? '\n' : next == 't' ? '\t' : next == '\\' ? '\\' : '\0';
        text += meant ? meant : word[i];
        if (meant) ++i;
    }
    return text;
}
