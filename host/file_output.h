// Files that are either written whole or not at all.
#pragma once
#include <functional>
#include <string>
#include <string_view>

/// ReplaceWholeFile, but throws DataFailure with the path and the reason.
void ReplaceFile(const std::string& path, const std::function<std::string(const std::string&)>& write);

/// The same with the bytes at hand.
void ReplaceFile(const std::string& path, std::string_view bytes);

/// Throws DataFailure with the path and the reason unless `path` is a file that can be opened for reading.
void RequireReadable(const std::string& path);
