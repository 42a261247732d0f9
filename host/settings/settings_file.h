// The user's settings in a text file.
#pragma once
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/models/file_system.h"

/// Settings by the path of their group and their name, as CWindowSystem's ReadSetting and WriteSetting want them. A line of
/// the file is `path\name = value`, UTF-8; bytes that a line can't hold stand as %HH. It is replaced whole.
///
/// A file that can't be one of settings (a folder, unreadable, too long, with NUL bytes, not UTF-8) is set aside as
/// NAME.broken-N and the settings start empty; one with some lines that make no sense is set aside too, and its other lines
/// hold. Nothing here throws; what the user should hear is in TakeMessages, in Chinese.
///
/// Several sessions may share a file: Save changes what this one has written and leaves the rest as the others have left it.
class SettingsFile {
public:
    /// $XDG_CONFIG_HOME/tvobase/settings, or ~/.config/tvobase/settings; empty when there is neither: nothing is kept then.
    static std::string DefaultPath();

    explicit SettingsFile(std::string path = DefaultPath());
    ~SettingsFile() { Save(); }
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;

    std::optional<std::string> Read(const std::string& path, const std::string& name) const;
    void Write(const std::string& path, const std::string& name, const std::string& value);
    /// All of them, by path and name.
    const std::map<std::pair<std::string, std::string>, std::string>& Values() const { return m_values; }
    /// Writes the file if anything has changed since. At the end this happens by itself; call it after changes that matter.
    void Save();
    /// Takes over what other sessions have saved since; what this one has written and not saved stays.
    void Refresh();

    std::vector<std::string> TakeMessages() { return std::exchange(m_messages, {}); }
    void Tell(std::string message) { m_messages.push_back(std::move(message)); }

private:
    using Key = std::pair<std::string, std::string>;

    void Load();
    bool ChangedByOthers();  // since it was looked at last
    std::string Text() const;
    std::size_t TakeLines(std::string_view text);  // the number of those that make no sense
    void SetAside(const std::string& reason);

    std::string m_path;
    std::map<Key, std::string> m_values;
    std::set<Key> m_written;  // what is to be saved
    std::vector<std::string> m_messages;
    FileStamp m_stamp{};      // of the file as it was read or saved last
    bool m_rewrite = false;  // it was set aside and its readable lines are to be saved
    bool m_told = false;     // that it can't be written
};
