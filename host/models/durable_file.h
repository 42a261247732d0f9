// A file that is replaced whole and outlives a crash.
#pragma once
#include <string>
#include <string_view>

/// Writes beside a file and takes its place in the end. Until Commit has renamed it, the file of that name is the old
/// one; from then on the new one. Whatever happens in between, a power failure or a kill among it, one of the two
/// stands there whole. The file before is kept as NAME~.
///
/// A symbolic link is followed: the file that it names is replaced. Permissions stay those of the file before. What a
/// killed writer left beside the file is cleared away by the next. All operations throw DataFailure with the path and
/// the reason.
class DurableFile {
public:
    /// Opens the file beside. Refused for anything but a regular file that may be written, or a new name.
    explicit DurableFile(const std::string& path);
    /// Takes the file beside away, unless it was committed.
    ~DurableFile();
    DurableFile(const DurableFile&) = delete;
    DurableFile& operator=(const DurableFile&) = delete;

    void Write(std::string_view bytes);
    /// Overwrites bytes at a place that was written before.
    void WriteAt(std::size_t at, std::string_view bytes);
    /// Syncs, keeps the file before, renames, syncs the folder.
    void Commit();

    /// Whether Commit waits until the disk has it; benchmarks turn it off.
    void SetSync(bool sync) { m_sync = sync; }

private:
    [[noreturn]] void Fail(int error) const;
    void KeepPrevious() const;

    std::string m_path;    // as the caller named it, for messages
    std::string m_target;  // links followed
    std::string m_beside;
    int m_file = -1;
    bool m_sync = true;
    bool m_committed = false;
};
