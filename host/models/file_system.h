// What the file writers of this folder share. Errors are errno numbers; 0 is none.
#pragma once
#include <array>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

std::string FolderOf(const std::string& path);
int WriteAll(int file, std::string_view bytes);
/// Until the disk has the names in it. Some file systems can't sync a folder, and say so; the files are safe
/// either way.
void SyncFolder(const std::string& folder);
/// A regular file whole. `time`, if given, becomes when it was written last.
std::string ReadFileBytes(const std::string& path, int& error, std::time_t* time = nullptr);
/// Changes whenever another file takes the name, or something is written into it; all zero: there is none.
using FileStamp = std::array<std::int64_t, 4>;
FileStamp StampOf(const std::string& path);
