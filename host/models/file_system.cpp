#include "host/models/file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

int WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(file, bytes.data(), std::min<std::size_t>(bytes.size(), 1 << 30));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return errno;
        if (n == 0) return ENOSPC;
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return 0;
}

void SyncFolder(const std::string& folder) {
    const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) return;
    (void)::fsync(file);
    ::close(file);
}

std::string ReadFileBytes(const std::string& path, int& error, std::time_t* time) {
    std::string bytes;
    error = 0;
    const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0) error = errno;
    if (error == 0 && !S_ISREG(status.st_mode)) error = EINVAL;
    if (error == 0) bytes.resize(static_cast<std::size_t>(status.st_size));
    if (error == 0 && time) *time = status.st_mtime;
    for (std::size_t have = 0; error == 0 && have < bytes.size();) {
        const ssize_t n =
            ::read(file, bytes.data() + have, std::min<std::size_t>(bytes.size() - have, 1 << 30));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) error = errno;
        if (n <= 0) bytes.resize(have);
        if (n > 0) have += static_cast<std::size_t>(n);
    }
    if (file >= 0) ::close(file);
    return bytes;
}

FileStamp StampOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return {};
    return {static_cast<std::int64_t>(status.st_ino), status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}
