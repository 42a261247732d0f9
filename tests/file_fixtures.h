// What tests of files share: files and folders that go by themselves, arrays as readable text.
#pragma once
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/containers.h"
#include "platform/string.h"

/// A temporary file with that content, the stream at its start.
class TempFile {
public:
    explicit TempFile(const std::string& content = "") : m_file(std::tmpfile()) {
        std::fwrite(content.data(), 1, content.size(), m_file);
        std::rewind(m_file);
    }
    ~TempFile() { std::fclose(m_file); }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    operator std::FILE*() const { return m_file; }
    long At() const { return std::ftell(m_file); }
    std::string Content() const {
        std::string all;
        std::fseek(m_file, 0, SEEK_SET);
        for (int c; (c = std::fgetc(m_file)) != EOF;) all += static_cast<char>(c);
        return all;
    }

private:
    std::FILE* m_file;
};

/// An empty folder that goes with all it holds.
class TempFolder {
public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "tvo_files_XXXXXX").string();
        path = mkdtemp(name.data());
        path += '/';
    }
    ~TempFolder() { std::filesystem::remove_all(path); }
    void Put(const std::string& name) const { std::ofstream(path + name) << "x"; }
    std::string path;
};

inline std::string Shown(const char* text) {
    return text ? std::string("[").append(text).append("]") : "null";
}

inline std::string Show(const CStringArray& a) {
    std::string out;
    for (const CString& s : a) out.append("[").append(s.View()).append("]");
    return out;
}

template <class T>
std::string Show(const CArrayOf<T>& a) {
    std::string out;
    for (const T v : a) out += std::to_string(v).substr(0, 12) + " ";
    return out;
}

inline CArray<float, float> Floats(std::initializer_list<float> values) {
    CArray<float, float> a;
    for (const float v : values) a.Add(v);
    return a;
}
