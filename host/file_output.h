// Files that are either written whole or not at all.
#pragma once
#include <functional>
#include <string>
#include <string_view>

/// Lets `write` make a file beside `path` and renames it to `path` once that went well, so that nobody ever
/// sees half a file. `write` gets the name to write to and returns the reason when it cannot, else an empty text.
/// A path that is there and no regular file (a device, a pipe) is written to as it stands. Throws DataFailure
/// with the path and the reason.
void ReplaceFile(const std::string& path, const std::function<std::string(const std::string&)>& write);

/// The same with the bytes at hand.
void ReplaceFile(const std::string& path, std::string_view bytes);

/// Throws DataFailure with the path and the reason unless `path` is a file that can be opened for reading.
void RequireReadable(const std::string& path);
