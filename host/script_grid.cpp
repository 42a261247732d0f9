// The command of `tvo run` that shows the background grid.
#include <string_view>

#include "fields/backgrnd.h"
#include "host/json_text.h"
#include "host/script.h"
#include "host/script_command.h"
#include "host/script_line.h"
#include "platform/helper_text.h"

namespace {

std::string Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == text.npos) return "";
    return std::string(text.substr(first, text.find_last_not_of(" \t") + 1 - first));
}

/// The number of positions that a text of spacings makes on an axis. The grid itself takes whatever a text gives;
/// who types one wants to hear what is wrong with it.
long long CheckedPositions(const std::string& text, const std::string& axis) {
    char unit[kUnitBytes + 1];
    long long positions = 1;
    for (int at = 0, number = 1; read_one_unit_from_string(unit, text.c_str(), &at); ++number) {
        const std::string_view whole = unit;
        const std::string place = axis + ", unit " + std::to_string(number) + " '" + unit + "'";
        if (whole.size() == kUnitBytes) throw ScriptFailure{place + " is too long"};
        const std::size_t star = whole.find('*');
        const std::string spacing = Trimmed(whole.substr(0, star));
        if (spacing.empty()) throw ScriptFailure{place + ": there is no spacing before the star"};
        ScriptNumber(spacing, place + ", spacing", -1e9, 1e9);
        if (star == whole.npos) {
            ++positions;
            continue;
        }
        const std::string count = Trimmed(whole.substr(star + 1));
        if (count.empty()) throw ScriptFailure{place + ": there is no count behind the star"};
        positions += ScriptInteger(count, place + ", count", 0, CBackgrnd::kMaxPositions - 1);
    }
    if (positions > CBackgrnd::kMaxPositions)
        throw ScriptFailure{axis + ": the spacings make " + std::to_string(positions) + " positions; " +
                            std::to_string(CBackgrnd::kMaxPositions) + " are the most"};
    return positions;
}

void RunGrid(Script& script, const ScriptWords& words) {
    if (words.size() == 2 && words[1] == "off") {
        script.m_db.m_bGridShown = false;
        return;
    }
    if (words.size() != 3 && words.size() != 5) throw ScriptFailure{"grid takes X Y, X Y X0 Y0, or off"};
    const long long across = CheckedPositions(words[1], "X"), up = CheckedPositions(words[2], "Y");
    CBackgrnd grid;
    grid.m_nMode = script.m_db.m_cBackgrnd.m_nMode;
    grid.m_strKuaX = words[1].c_str();
    grid.m_strKuaY = words[2].c_str();
    grid.m_strKuaZ = "0*0";
    if (words.size() == 5) {
        grid.m_fX0 = static_cast<float>(ScriptNumber(words[3], "X0"));
        grid.m_fY0 = static_cast<float>(ScriptNumber(words[4], "Y0"));
    }
    script.m_db.m_cBackgrnd = grid;
    script.m_db.m_bGridShown = true;
    PrintJsonLine(script.m_out, {{"type", "grid"}, {"x", across}, {"y", up}});
}

constexpr ScriptCommand kCommands[] = {
    {"grid", "X Y [X0 Y0] | off", 1, 4, RunGrid,
     "show a grid in pictures: spacings in metres such as 6*40 or \"3;4.5*2\", from X0 Y0 on; no undo step"},
};

}  // namespace

std::span<const ScriptCommand> GridCommands() { return kCommands; }
