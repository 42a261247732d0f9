#include "host/file_output.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "host/failure.h"
#include "platform/whole_file.h"

namespace {

[[noreturn]] void FailToWrite(const std::string& path, const std::string& reason) {
    throw DataFailure("cannot write " + path + ": " + reason);
}

std::string WriteBytes(const std::string& path, std::string_view bytes) {
    errno = 0;
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return ErrorReason(errno);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const int error = errno;
    const bool closed = std::fclose(file) == 0;
    return written && closed ? "" : ErrorReason(written ? errno : error);
}

}  // namespace

void ReplaceFile(const std::string& path, const std::function<std::string(const std::string&)>& write) {
    if (const std::string reason = ReplaceWholeFile(path, write); !reason.empty()) FailToWrite(path, reason);
}

void ReplaceFile(const std::string& path, std::string_view bytes) {
    ReplaceFile(path, [&](const std::string& name) { return WriteBytes(name, bytes); });
}

void RequireReadable(const std::string& path) {
    errno = 0;
    struct stat status {};
    int error = 0;
    if (::stat(path.c_str(), &status) != 0 || ::access(path.c_str(), R_OK) != 0)
        error = errno;
    else if (S_ISDIR(status.st_mode))
        error = EISDIR;
    if (error) throw DataFailure("cannot read " + path + ": " + std::strerror(error));
}
