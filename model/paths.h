// Paths of files: their parts, and what stands under them.
//
// Both slashes separate parts. Functions that reach the file system turn backslashes round first. Lists
// of files are in ascending order of their names. Drive, folder, title and extension written one behind
// the other are the path again: a folder ends with its slash, an extension begins with its point.
#pragma once
#include <cstdint>

#include "platform/string.h"

/// The folder in which the current work's files stand.
extern CString G_strWorkPath;

// --- parts of a path --------------------------------------------------------------------------------------

CString get_drive(const CString& path);      // "c:" or empty
CString get_file_path(const CString& path);  // drive and folder
CString get_file_name(const CString& path);  // title and extension
CString get_file_title(const CString& path);
CString get_file_ext(const CString& path);           // ".dxf" or empty
CString get_file_dir_and_name(const CString& path);  // all but the extension
void split_path_name(const CString& path, CString& folder, CString& name);
void SplitPathName(const CString& path, CString& drive, CString& dir, CString& title, CString& ext);

/// Ends with a slash; an empty path stays empty, since "/" would be another folder.
CString IncludeTrailingSlash(const CString& path);
/// The folder of a work's chief file, as G_strWorkPath holds it.
CString ExtractWorkPath(const CString& file);
/// Appends the extension ("dxf" or ".dxf") unless the path has it, ASCII case aside: "a.txt" becomes
/// "a.txt.dxf". A path that names no file, empty or with a slash at its end, stays as it is.
CString ConfirmFileExt(const CString& path, const CString& ext);

CString get_my_exe_directory();  // of the running program, slash included
CString GetModulePath();         // of this library, slash included

// --- the file system --------------------------------------------------------------------------------------

int file_exists(const CString& path);  // a regular file that opens for reading
int directory_exists(const CString& path);
/// The same under G_strWorkPath, or with `fullPath` under the name itself.
int FileExists(const char* name, int fullPath);
int FolderExists(const char* name, int fullPath);

/// Makes every missing level; 1 if the folder stands afterwards.
int force_directory(const CString& path);

// These append to `out` and return how many.
int get_sub_directory(const CString& folder, CStringArray& out);   // names of the folders right under it
int enum_sub_directory(const CString& folder, CStringArray& out);  // full paths, all levels, no links
int get_files(const CString& pattern, CStringArray& out);          // full paths that match "folder/*.ext"
int GetFiles(const CString& folder, const CString& ext, CStringArray& out);  // names; "" or "*": every file

/// Deletes the files (never folders) of the list above; how many went.
int DeleteFiles(const CString& pattern);
int DeleteFiles2(const CString& folder, const CString& ext);

/// Whether this program has the file open, or another one holds a lock on it.
int IsFileOpen(const CString& path);
/// Seconds since 1970-01-01 UTC; 0 if there is no such file.
std::int64_t GetFileWriteTime(const CString& path);
