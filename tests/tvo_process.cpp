#include "tvo_process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <utility>

namespace {

void AppendQuoted(std::string& command, const std::string& word) {
    command += '\'';
    for (const char c : word) {
        if (c == '\'')
            command += "'\\''";
        else
            command += c;
    }
    command += "' ";
}

}  // namespace

std::vector<nlohmann::json> TvoRun::Json() const {
    std::vector<nlohmann::json> objects;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) {
        objects.push_back(nlohmann::json::parse(line, nullptr, false));
        EXPECT_TRUE(objects.back().is_object()) << "no JSON object: " << line;
    }
    return objects;
}

TvoRun RunTvo(const std::vector<std::string>& arguments, const std::string& input, const std::filesystem::path& folder) {
    const ScratchFolder scratch;
    scratch.Write("in", input);
    std::string command;
    if (!folder.empty()) {
        command += "cd ";
        AppendQuoted(command, folder.string());
        command += "&& ";
    }
    AppendQuoted(command, TVO_PROGRAM);
    for (const std::string& argument : arguments) AppendQuoted(command, argument);
    for (const auto& [sign, name] : {std::pair("<", "in"), std::pair(">", "out"), std::pair("2>", "err")}) {
        command += sign;
        AppendQuoted(command, scratch.File(name));
    }
    const int ended = std::system(command.c_str());
    TvoRun run;
    run.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 1000 + WTERMSIG(ended);
    run.out = ReadWholeFile(scratch.File("out"));
    run.err = ReadWholeFile(scratch.File("err"));
    return run;
}

ScratchFolder::ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tvo_test_XXXXXX").string();
    if (::mkdtemp(name.data())) m_path = name;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    if (!m_path.empty()) std::filesystem::remove_all(m_path, ignored);
}

std::string ScratchFolder::Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(File(name), std::ios::binary) << bytes;
    return File(name);
}

std::string ReadWholeFile(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}
