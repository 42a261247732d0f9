#include "shell/outside_programs.h"

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "model/paths.h"
#include "platform/gbk.h"
#include "platform/process.h"
#include "platform/window_system.h"
#include "shell/tvo_frame_base.h"

namespace {

constexpr std::size_t kExtension = 4;  // bytes of GBK, the point too

bool Start(const std::vector<std::string>& words, bool wait) {
    CWindowSystem* const system = CWindowSystem::Current();
    return system ? system->RunProgram(words, wait) : RunProcess(words, wait);
}

void Tell(const CString& text) {
    if (CWindowSystem* system = CWindowSystem::Current()) system->ShowMessage(text.GetString());
    else std::fprintf(stderr, "%s\n", text.GetString());
}

/// What the user has set, else what opens files on this desktop.
std::vector<std::string> Program(const char* setting) {
    CWindowSystem* const system = CWindowSystem::Current();
    const auto set = system ? system->ReadSetting("OutsidePrograms", setting) : std::nullopt;
    std::vector<std::string> words = SplitArguments(set.value_or(""));
    if (words.empty()) words.push_back("xdg-open");
    return words;
}

}  // namespace

void ExecuteAndWait(const char* program, const char* arguments, int silent, int wait) {
    std::vector<std::string> words{program ? program : ""};
    for (std::string& word : SplitArguments(arguments ? arguments : "")) words.push_back(std::move(word));
    if (!Start(words, wait != 0) && !silent) Tell("程序运行失败！");
}

void OpenJJS(const char* file, int fullPath) {
    const CString name(file);
    if (!FileExists(name, fullPath)) return;
    if (GbkLength(name.View()) < kExtension) {
        const CString text = CString("无法确定文件") + name + "的文件类型";
        if (g_pFrame) g_pFrame->AppendPromptText(text);
        else Tell(text);
        return;  // there is no extension to go by
    }
    const CString extension = name.Right(kExtension);
    CString path = fullPath ? name : IncludeTrailingSlash(G_strWorkPath) + name;
    path.Replace("\\", "/");  // as it was found
    if (path[0] != '/') path = "./" + path;  // neither an option of the program's nor a name with a scheme
    const bool text = extension.CompareNoCase(".OUT") == 0 || extension.CompareNoCase(".TXT") == 0;
    std::vector<std::string> words = Program(text ? "TextEditor" : "Viewer");
    words.push_back(path.GetString());  // one argument, whatever blanks it has
    Start(words, false);
}
