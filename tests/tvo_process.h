// Runs the built tvo as a user would, for end-to-end tests.
#pragma once
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// How one run ended and what it said.
struct TvoRun {
    int status = -1;  // exit status; 1000 + signal number if it was killed
    std::string out;
    std::string err;

    /// The lines of `out` as JSON objects; a line that is none fails the test.
    std::vector<nlohmann::json> Json() const;
};

/// Runs tvo with the arguments, in `folder` if that is not empty, `input` as its standard input.
TvoRun RunTvo(const std::vector<std::string>& arguments, const std::string& input = "",
              const std::filesystem::path& folder = {});

/// Runs a script through `tvo run -`.
inline TvoRun RunScript(const std::string& script) { return RunTvo({"run", "-"}, script); }

/// A fresh folder for the files of a test, gone with the object.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string File(const std::string& name) const { return (m_path / name).string(); }
    std::string Write(const std::string& name, const std::string& bytes) const;  // the file's path
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

std::string ReadWholeFile(const std::string& path);
