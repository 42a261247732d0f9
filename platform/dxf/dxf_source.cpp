#include "platform/dxf/dxf_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

// A pipe or a device is refused: it may never end, and opening one may wait for ever but for O_NONBLOCK.
// The file is read, not mapped, since a mapped file that somebody cuts short ends the process.
DxfByteSource::DxfByteSource(const char* path) {
    m_fd = path ? ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1;
    if (m_fd < 0) {
        m_strError = path ? std::strerror(errno) : "no path";
        return;
    }
    struct stat info {};
    m_bOpen = ::fstat(m_fd, &info) == 0 && S_ISREG(info.st_mode);
    if (m_bOpen) return;
    m_strError = S_ISDIR(info.st_mode) ? "a folder" : "not a regular file";
    ::close(m_fd);
    m_fd = -1;
}

DxfByteSource::~DxfByteSource() {
    if (m_fd >= 0) ::close(m_fd);
}

std::size_t DxfByteSource::Read(char* to, std::size_t bytes) {
    if (m_fd < 0) {
        const std::size_t n = std::min(bytes, m_memory.size());
        if (n > 0) std::memcpy(to, m_memory.data(), n);
        m_memory.remove_prefix(n);
        return n;
    }
    ssize_t n = 0;
    do n = ::read(m_fd, to, bytes);
    while (n < 0 && errno == EINTR);
    if (n < 0) m_strError = std::strerror(errno);
    return n > 0 ? static_cast<std::size_t>(n) : 0;
}
