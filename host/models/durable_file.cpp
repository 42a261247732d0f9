#include "host/models/durable_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>

#include "host/failure.h"
#include "host/models/file_system.h"

namespace {

constexpr char kBesideMark[] = ".saving";  // a process number follows

/// Where a chain of symbolic links ends, whether something stands there or not.
std::string FollowLinks(std::string path) {
    for (int links = 0; links < 40; ++links) {
        char to[PATH_MAX];
        const ssize_t n = ::readlink(path.c_str(), to, sizeof to);
        if (n <= 0 || n == static_cast<ssize_t>(sizeof to)) break;
        const std::string next(to, static_cast<std::size_t>(n));
        path = next[0] == '/' ? next : FolderOf(path) + "/" + next;
    }
    return path;
}

/// Where files can't have two names, the previous one is copied.
int CopyFile(const std::string& from, const std::string& to) {
    const int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) return errno;
    const int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    int error = out < 0 ? errno : 0;
    const auto buffer = std::make_unique<char[]>(1 << 16);
    while (error == 0) {
        const ssize_t n = ::read(in, buffer.get(), 1 << 16);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) error = errno;
        if (n <= 0) break;
        error = WriteAll(out, {buffer.get(), static_cast<std::size_t>(n)});
    }
    if (error == 0 && ::fsync(out) != 0) error = errno;
    ::close(in);
    if (out >= 0 && ::close(out) != 0 && error == 0) error = errno;
    return error;
}

/// Takes away what killed writers left beside the file: those whose lock nobody holds any more.
void ClearLeftovers(const std::string& target) {
    const std::string folder = FolderOf(target);
    const std::string prefix = target.substr(target.rfind('/') + 1) + kBesideMark;
    DIR* const listing = ::opendir(folder.c_str());
    if (!listing) return;
    while (const dirent* entry = ::readdir(listing)) {
        const std::string_view name = entry->d_name;
        if (!name.starts_with(prefix) || name.size() == prefix.size() ||
            name.find_first_not_of("0123456789", prefix.size()) != std::string_view::npos)
            continue;
        const std::string path = folder + "/" + std::string(name);
        const int file = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (file < 0) continue;
        if (::flock(file, LOCK_EX | LOCK_NB) == 0) {
            ::unlink((path + "~").c_str());  // first: it is found by the other
            ::unlink(path.c_str());
        }
        ::close(file);
    }
    ::closedir(listing);
}

}  // namespace

DurableFile::DurableFile(const std::string& path) : m_path(path), m_target(FollowLinks(path)) {
    struct stat before {};
    const bool standing = ::stat(m_target.c_str(), &before) == 0;
    if (standing && S_ISDIR(before.st_mode)) Fail(EISDIR);
    if (standing && !S_ISREG(before.st_mode)) throw DataFailure("cannot write " + m_path + ": not a regular file");
    // A rename would replace a file that its owner has protected.
    if (standing && ::access(m_target.c_str(), W_OK) != 0) Fail(errno);
    ClearLeftovers(m_target);
    m_beside = m_target + kBesideMark + std::to_string(::getpid());
    m_file = ::open(m_beside.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_file < 0) Fail(errno);
    ::flock(m_file, LOCK_EX | LOCK_NB);
    if (standing) (void)::fchmod(m_file, before.st_mode & 07777);
}

DurableFile::~DurableFile() {
    if (m_file >= 0) ::close(m_file);
    if (!m_committed) ::unlink(m_beside.c_str());
}

void DurableFile::Fail(int error) const { throw DataFailure("cannot write " + m_path + ": " + std::strerror(error)); }

void DurableFile::Write(std::string_view bytes) {
    if (const int error = WriteAll(m_file, bytes)) Fail(error);
}

void DurableFile::WriteAt(std::size_t at, std::string_view bytes) {
    if (::lseek(m_file, static_cast<off_t>(at), SEEK_SET) < 0) Fail(errno);
    Write(bytes);
    if (::lseek(m_file, 0, SEEK_END) < 0) Fail(errno);
}

// The file before gets a second name; its own stays, so that at no moment it has none.
void DurableFile::KeepPrevious() const {
    struct stat before {};
    if (::lstat(m_target.c_str(), &before) != 0) return;
    const std::string second = m_beside + "~";
    ::unlink(second.c_str());
    int error = 0;
    if (::link(m_target.c_str(), second.c_str()) != 0) error = CopyFile(m_target, second);
    if (error == 0 && ::rename(second.c_str(), (m_target + "~").c_str()) != 0) error = errno;
    // Also when all went well: where a kill has left NAME~ as a second name of this very file, the renaming does nothing
    // and the name stays.
    ::unlink(second.c_str());
    if (error != 0) Fail(error);
}

void DurableFile::Commit() {
    if (m_sync && ::fsync(m_file) != 0) Fail(errno);
    KeepPrevious();
    // The lock goes with the closing, so the name changes first. What could go wrong at closing, on a network disk for
    // one, the sync has told.
    if (::rename(m_beside.c_str(), m_target.c_str()) != 0) Fail(errno);
    m_committed = true;
    if (m_sync) SyncFolder(FolderOf(m_target));
}
