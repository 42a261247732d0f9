#include "host/script_line.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v'; }

/// Does the text begin with a word such as #FF8000?
bool BeginsWithColor(std::string_view text) {
    constexpr std::size_t kLength = 7;
    return text.size() >= kLength && (text.size() == kLength || IsBlank(text[kLength])) &&
           text.substr(1, kLength - 1).find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

/// The word whose opening quote stands at `i`, which moves behind the closing one. Two quotes in it are one of its letters.
std::string QuotedWord(std::string_view line, std::size_t& i) {
    std::string word;
    for (;;) {
        const std::size_t end = line.find('"', i + 1);
        if (end == std::string_view::npos) throw ScriptFailure{"a quote is not closed"};
        word += line.substr(i + 1, end - i - 1);
        i = end + 1;
        if (i == line.size() || line[i] != '"') return word;
        word += '"';
    }
}

/// std::from_chars knows no plus sign; people write one.
std::string_view WithoutPlus(std::string_view word) {
    if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
    return word;
}

[[noreturn]] void Refuse(std::string_view what, const std::string& word, const std::string& why) {
    throw ScriptFailure{std::string(what) + ": '" + word + "' " + why};
}

std::string Shown(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

}  // namespace

std::vector<std::string> SplitScriptLine(std::string_view line) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < line.size();) {
        if (IsBlank(line[i])) {
            ++i;
        } else if (line[i] == '#' && !words.empty() && words.back() == kColorWord && BeginsWithColor(line.substr(i))) {
            words.emplace_back(line.substr(i, 7));
            i += 7;
        } else if (line[i] == '#') {
            break;
        } else if (line[i] == '"') {
            words.push_back(QuotedWord(line, i));
        } else {
            const std::size_t first = i;
            while (i < line.size() && !IsBlank(line[i]) && line[i] != '#' && line[i] != '"') ++i;
            words.emplace_back(line.substr(first, i - first));
        }
    }
    return words;
}

double ScriptNumber(const std::string& word, std::string_view what, double least, double most) {
    const std::string_view text = WithoutPlus(word);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument || end != text.data() + text.size()) Refuse(what, word, "is not a number");
    if (error == std::errc::result_out_of_range) {
        // Too small for a double is zero, too large is refused below.
        const bool tiny = word.find("e-") != std::string::npos || word.find("E-") != std::string::npos;
        value = tiny ? 0 : HUGE_VAL;
    } else if (!std::isfinite(value)) {
        Refuse(what, word, "is not a finite number");
    }
    if (!(value >= least && value <= most))
        Refuse(what, word, "is out of range, " + Shown(least) + " to " + Shown(most));
    return value;
}

long long ScriptInteger(const std::string& word, std::string_view what, long long least, long long most) {
    const std::string_view text = WithoutPlus(word);
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument || end != text.data() + text.size())
        Refuse(what, word, "is not a whole number");
    if (error == std::errc::result_out_of_range || value < least || value > most)
        Refuse(what, word, "is out of range, " + std::to_string(least) + " to " + std::to_string(most));
    return value;
}
