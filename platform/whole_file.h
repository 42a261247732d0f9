// Files that are either written whole or not at all.
#pragma once
#include <functional>
#include <string>

/// Lets `write` make a file beside `path` and renames it to `path` once that went well, so that nobody ever sees half
/// a file and a failure leaves the one that was there. `write` gets the name to write to and returns the reason when
/// it cannot, else an empty text; so does this. A symbolic link stays, and the file it names is replaced, or made. The
/// permissions of a file that was there stay. A path that is there and no regular file (a device, a pipe) is written to
/// as it stands.
std::string ReplaceWholeFile(const std::string& path, const std::function<std::string(const std::string&)>& write);

/// What an errno means.
std::string ErrorReason(int error);
