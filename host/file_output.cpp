#include "host/file_output.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "host/failure.h"

namespace {

std::string Reason(int error) { return error ? std::strerror(error) : "unknown reason"; }

[[noreturn]] void FailToWrite(const std::string& path, const std::string& reason) {
    throw DataFailure("cannot write " + path + ": " + reason);
}

/// Follows a symbolic link, so that the file it names is replaced and not the link.
std::string RealPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
}

std::string WriteBytes(const std::string& path, std::string_view bytes) {
    errno = 0;
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return Reason(errno);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const int error = errno;
    const bool closed = std::fclose(file) == 0;
    return written && closed ? "" : Reason(written ? errno : error);
}

}  // namespace

void ReplaceFile(const std::string& path, const std::function<std::string(const std::string&)>& write) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        if (S_ISDIR(status.st_mode)) FailToWrite(path, Reason(EISDIR));
        if (const std::string reason = write(path); !reason.empty()) FailToWrite(path, reason);
        return;
    }
    const std::string target = RealPath(path);
    const std::string beside = target + ".part" + std::to_string(::getpid());
    std::string reason = write(beside);
    if (reason.empty() && std::rename(beside.c_str(), target.c_str()) != 0) reason = Reason(errno);
    if (reason.empty()) return;
    std::remove(beside.c_str());
    FailToWrite(path, reason);
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
