// What an event of a played session is. Those of the view stand in play_session.cpp, those of the whole editor in
// play_editor.cpp, those that only recordings need in play_record.cpp.
#pragma once
#include <span>
#include <string>
#include <vector>

class PlaySession;

struct PlayEvent {
    const char* name;
    const char* arguments;
    int least, most;  // words behind the name; most -1: any number
    void (*run)(PlaySession& session, const std::vector<std::string>& words);
    const char* help;
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

/// A value of several lines as one word of a script: line ends, tabs and backslashes as \n, \t and \\.
std::string EscapedWord(const std::string& text);
std::string UnescapedWord(const std::string& word);
