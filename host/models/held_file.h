// A file that one process alone has.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// An open file with a lock on it that goes with the process, however this ends. Errors are errno numbers; 0
/// is none.
class HeldFile {
public:
    HeldFile() = default;
    ~HeldFile() { Release(); }
    HeldFile(HeldFile&& other) noexcept { *this = std::move(other); }
    HeldFile& operator=(HeldFile&& other) noexcept;

    enum class Mode { kMake, kMakeEmpty, kExisting };
    /// Opens and locks the file of that name. EWOULDBLOCK: somebody else has it.
    int Take(const std::string& path, Mode mode);
    /// Closes the file; it stays where it is.
    void Release();
    /// Takes it away, then closes it.
    void Remove();

    /// One write at the end, then until the disk has it. On an error the file is as long as before, where
    /// that can be had.
    int Append(std::string_view bytes, bool sync);
    /// Takes the place of the file of that name and is called so from now on.
    int RenameTo(const std::string& path, bool sync);

    bool IsOpen() const { return m_file >= 0; }
    bool Stands() const;  // open, and still under its name: what has lost that is lost with this process
    const std::string& Path() const { return m_path; }
    std::size_t Length() const { return m_length; }

private:
    int m_file = -1;
    std::string m_path;
    std::size_t m_length = 0;  // as far as this process knows
};

/// Whether somebody has such a file at this moment.
bool IsHeld(const std::string& path);
