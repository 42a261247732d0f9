// What an event of a played session is. Those of the view stand in play_session.cpp, those of the whole editor in
// play_editor.cpp, those that only recordings need in play_record.cpp.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "platform/win_types.h"

class CWindowSystem;
class CWnd;
class PlaySession;

struct PlayEvent {
    enum Kind { kHappens, kPrepares };  // what prepares may stand before `editor`, and belongs to the event behind it
    const char* name;
    const char* arguments;
    int least, most;  // words behind the name; most -1: any number
    void (*run)(PlaySession& session, const std::vector<std::string>& words);
    const char* help;
    Kind kind = kHappens;
};

std::span<const PlayEvent> EditorPlayEvents();
std::span<const PlayEvent> RecordPlayEvents();  // those that only recordings need

/// A key by the name that scripts have for it, with ctrl and shift.
struct PlayKey {
    unsigned key = 0;
    bool shift = false, control = false;
    std::string text;  // what it types
};
/// The key of words[first] and what goes with it. Throws ScriptFailure.
PlayKey KeyNamed(const std::vector<std::string>& words, std::size_t first);
/// The other way round; empty for a key that has no name.
std::string NameOfKey(unsigned key);

/// The user gives a window of its own another size.
void SizeWindow(CWindowSystem& system, CWnd& window, CSize size, const CRect& place);

/// A value of several lines as one word of a script: line ends, tabs and backslashes as \n, \r, \t and \\.
std::string EscapedWord(const std::string& text);
std::string UnescapedWord(const std::string& word);
/// A word as it stands in a script: escaped, and in quotes where it needs them.
std::string ScriptWord(const std::string& text);
