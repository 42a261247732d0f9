// One line of a script for `tvo run`: its words and the numbers in them.
#pragma once
#include <string>
#include <string_view>
#include <vector>

/// What is wrong with a line. The message goes behind "error: line N: ".
struct ScriptFailure {
    std::string message;
};

/// The word before a colour.
inline constexpr std::string_view kColorWord = "colour";

/// Splits a line at white space; `#` outside quotes starts a comment, unless it begins the six digits of a colour behind
/// kColorWord. A word in double quotes may hold spaces and `#`, and a quote by two of them. Throws ScriptFailure when
/// a quote stays open.
std::vector<std::string> SplitScriptLine(std::string_view line);

/// A finite number; a coordinate may be up to 1e12 in size, since beyond that a float says nothing useful. `what` names
/// the argument in the message of the ScriptFailure.
double ScriptNumber(const std::string& word, std::string_view what, double least = -1e12, double most = 1e12);

/// A whole number from `least` to `most`.
long long ScriptInteger(const std::string& word, std::string_view what, long long least, long long most);
