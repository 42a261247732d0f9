// The files that a recorded session reads.
#pragma once
#include <sys/stat.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// Names the paths of a session so that they mean something on another machine, and keeps what stood in the
/// files when they were read. A path becomes "@K/NAME", where K counts the folders; when the session is
/// played that is a file in a folder of the playing's own. Until a folder for the copies is given the files
/// are only held open: what is replaced or taken away meanwhile still has its old content.
class SessionFiles {
public:
    SessionFiles() = default;
    ~SessionFiles() { Forget(); }
    SessionFiles(const SessionFiles&) = delete;
    SessionFiles& operator=(const SessionFiles&) = delete;

    /// "" for ""; the same path always gets the same.
    std::string Named(const std::string& path);
    /// The session is about to look at a file. The line of a script that has it stand there as it stands now;
    /// none when the script has it so already.
    std::optional<std::string> Read(const std::string& path);

    /// The session has written the file itself.
    void Written(const std::string& path);

    /// Copies what was read so far and what will be read. The folder is made when it is needed. Throws
    /// DataFailure, also when a file was written over in place since it was read.
    void CopyTo(const std::string& folder);
    /// Copies no more; what was read is still held.
    void StopCopying() { m_folder.clear(); }
    /// Has the session read nothing yet.
    void Forget();

    /// What went wrong with a copy since CopyTo; empty: nothing.
    const std::string& Failure() const { return m_failure; }
    std::size_t Copied() const { return m_copied; }
    std::uint64_t CopiedBytes() const { return m_bytes; }
    /// Larger files stay where they are, and the script names them there.
    static constexpr std::int64_t kMostCopied = std::int64_t{256} << 20;
    static constexpr std::size_t kMostHeld = 200;
    /// Are all files that were read still at hand?
    bool IsWhole() const { return m_whole; }

private:
    struct Kept {
        int file;          // held open
        struct stat as;    // when it was read
        std::string path;  // for messages
        std::string copy;  // its name in the folder
    };
    void Copy(const Kept& kept);

    std::map<std::string, std::size_t> m_folders;  // their numbers, from 1 on
    std::map<std::string, struct stat> m_known;    // as the script has them, by path
    std::vector<Kept> m_kept;
    std::string m_folder;  // of the copies; empty: none are made
    std::string m_failure;
    std::size_t m_copied = 0;
    std::uint64_t m_bytes = 0;
    bool m_whole = true;
};
