// What the file writers of this folder share. Errors are errno numbers; 0 is none.
#pragma once
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
