#include "host/models/held_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "host/models/file_system.h"

namespace {

/// Does the name still stand for the open file? Another process may have moved it away before it was locked.
bool IsNamed(int file, const std::string& path) {
    struct stat open {
    }, named{};
    return ::fstat(file, &open) == 0 && ::stat(path.c_str(), &named) == 0 && open.st_ino == named.st_ino &&
           open.st_dev == named.st_dev;
}

}  // namespace

HeldFile& HeldFile::operator=(HeldFile&& other) noexcept {
    std::swap(m_file, other.m_file);
    std::swap(m_path, other.m_path);
    std::swap(m_length, other.m_length);
    return *this;
}

int HeldFile::Take(const std::string& path, Mode mode) {
    Release();
    const int make = mode == Mode::kExisting ? 0 : O_CREAT;
    for (int attempt = 0; attempt < 10; ++attempt) {
        const int file =
            ::open(path.c_str(), O_RDWR | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | make, 0600);
        if (file < 0) return errno;
        struct stat status {};
        int error = ::fstat(file, &status) != 0 ? errno : S_ISREG(status.st_mode) ? 0 : EINVAL;
        if (error == 0 && ::flock(file, LOCK_EX | LOCK_NB) != 0) error = errno;
        if (error == 0 && !IsNamed(file, path)) {
            ::close(file);
            continue;
        }
        if (error == 0 && mode == Mode::kMakeEmpty && ::ftruncate(file, 0) != 0) error = errno;
        if (error != 0) {
            ::close(file);
            return error;
        }
        m_file = file;
        m_path = path;
        m_length = mode == Mode::kMakeEmpty ? 0 : static_cast<std::size_t>(status.st_size);
        return 0;
    }
    return EWOULDBLOCK;
}

void HeldFile::Release() {
    if (m_file >= 0) ::close(m_file);
    m_file = -1;
    m_path.clear();
    m_length = 0;
}

bool HeldFile::Stands() const { return m_file >= 0 && IsNamed(m_file, m_path); }

void HeldFile::Remove() {
    if (Stands()) ::unlink(m_path.c_str());
    Release();
}

int HeldFile::Append(std::string_view bytes, bool sync) {
    if (m_file < 0) return EBADF;
    int error = WriteAll(m_file, bytes);
    if (error == 0 && sync && ::fdatasync(m_file) != 0) error = errno;
    if (error == 0) m_length += bytes.size();
    else (void)!::ftruncate(m_file, static_cast<off_t>(m_length));  // a reader passes over what stays
    return error;
}

int HeldFile::RenameTo(const std::string& path, bool sync) {
    if (::rename(m_path.c_str(), path.c_str()) != 0) return errno;
    m_path = path;
    if (sync) SyncFolder(FolderOf(path));
    return 0;
}

bool IsHeld(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) return false;
    const bool held = ::flock(file, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    ::close(file);
    return held;
}
