#include "host/editor/document.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>

#include "host/editor/edit_frame.h"
#include "host/editor/import_dialog.h"
#include "host/editor/reason_text.h"
#include "host/editor/sample_net.h"
#include "host/editor/session_recorder.h"
#include "host/failure.h"
#include "host/models/model_build.h"
#include "host/models/model_writer.h"
#include "host/tvo_model_host.h"
#include "platform/dialog.h"
#include "platform/window_system.h"
#include "view/tvo_view_mgr.h"

namespace {

namespace fs = std::filesystem;


std::string AbsolutePath(const std::string& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

std::string FileName(const std::string& path) { return fs::path(path).filename().string(); }

bool EndsWithNoCase(const std::string& text, const char* ending) {
    const std::size_t length = std::strlen(ending);
    return text.size() >= length && CString(text.substr(text.size() - length)).CompareNoCase(ending) == 0;
}

int RunForm(DialogForm& form) {
    CWindowSystem* const system = CWindowSystem::Current();
    return system ? system->RunDialog(form) : -1;
}

DialogForm Question(const char* name, const std::string& text, std::vector<std::string> buttons) {
    DialogForm form;
    form.m_name = name;
    form.m_title = "TvoBase";
    form.m_fields = {{DialogField::Kind::kNote, "text", "", text, {}}};
    form.m_buttons = std::move(buttons);
    return form;
}

/// What was left out of a file, for people; empty when nothing was.
std::string Remarks(const BuiltModel& built) {
    std::string text;
    if (built.unresolvedPlates) text += std::to_string(built.unresolvedPlates) + " 块板缺少边线";
    if (built.unresolvedOthers)
        text +=
            (text.empty() ? "" : ", ") + std::to_string(built.unresolvedOthers) + " 个构件缺少所依附的构件";
    if (!text.empty()) text += ", 没有读入";
    if (!built.hostDataRead) text += std::string(text.empty() ? "" : "; ") + "附加数据没有读入";
    return text;
}

}  // namespace

bool IsDrawingName(const std::string& path) { return EndsWithNoCase(path, ".dxf"); }

std::string WhyUnreadable(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return ReasonOf(errno);
    if (S_ISDIR(status.st_mode)) return ReasonOf(EISDIR);
    if (!S_ISREG(status.st_mode)) return "不是普通文件";
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (!file) return ReasonOf(errno);
    std::fclose(file);
    return {};
}

// ---- state ------------------------------------------------------------------------------------------------

bool EditorDocument::IsModified() const { return m_frame.DataBase().GetContain().IfModified() != 0; }

std::string EditorDocument::Name() const { return m_path.empty() ? "未命名" : FileName(m_path); }

std::string EditorDocument::Title() const { return Name() + (IsModified() ? "*" : "") + " - TvoBase"; }

bool EditorDocument::MayLeave() {
    if (!IsModified()) return true;
    DialogForm form = Question("unsaved", "“" + Name() + "”有未保存的修改", {"保存", "不保存", "取消"});
    const int button = RunForm(form);
    return button == 0 ? Save() : button == 1;
}

// ---- opening ----------------------------------------------------------------------------------------------

bool EditorDocument::StartEmpty() {
    if (!MayLeave()) return false;
    m_frame.LeaveModel();
    EmptyModel(m_frame.DataBase());
    m_frame.DataBase().GetContain().SetModifiedFlag(0);
    m_path.clear();
    BeginJournal(false);
    m_frame.ModelReplaced();
    return true;
}

void EditorDocument::ShowSample() {
    m_frame.LeaveModel();
    EmptyModel(m_frame.DataBase());
    DrawSampleNet(m_frame.DataBase());
    m_path.clear();
    BeginJournal(false);
    m_frame.ModelReplaced();
}

void EditorDocument::AskOpen() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    PathRequest request;
    request.m_title = "打开";
    request.m_description = "模型和图纸";
    request.m_pattern = "*.tvo *.dxf";
    if (const auto path = system->AskPath(request)) OpenAsked(*path);
}

void EditorDocument::AskRecent() {
    const std::vector<std::string> files = Recent();
    if (files.empty()) return m_frame.Tell("还没有打开过文件");
    DialogForm form;
    form.m_name = "recent";
    form.m_title = "最近的文件";
    form.m_fields = {{DialogField::Kind::kChoice, "file", "文件", "0", files}};
    form.m_buttons = {"打开", "取消"};
    if (RunForm(form) != 0) return;
    const std::string chosen = form.Value("file");
    for (std::size_t i = 0; i < files.size(); ++i)
        if (chosen == std::to_string(i)) OpenAsked(files[i]);
}

// A file that is none is told before anything is asked.
bool EditorDocument::CanRead(const std::string& path) {
    m_frame.WillRead(path);
    const std::string why = WhyUnreadable(path);
    if (!why.empty()) m_frame.Warn("无法打开 " + path + ": " + why);
    return why.empty();
}

bool EditorDocument::OpenAsked(const std::string& path) {
    return CanRead(path) &&
           (IsDrawingName(path) ? RunImportDialog(m_frame, path) : MayLeave() && OpenModelFile(path));
}

bool EditorDocument::ImportAsked(const std::string& path) {
    return CanRead(path) && RunImportDialog(m_frame, path);
}

bool EditorDocument::Open(const std::string& path) {
    return CanRead(path) && (IsDrawingName(path) ? RunImportDialog(m_frame, path) : OpenModelFile(path));
}

bool EditorDocument::OpenModelFile(const std::string& path) {
    if (m_keeping && OfferOf(path)) return true;
    m_frame.LeaveModel();
    std::string remarks;
    try {
        remarks = Remarks(OpenModel(path, m_frame.DataBase(), TvoModelHost()));
    } catch (const DataFailure& failure) {
        m_frame.Warn("无法打开 " + path + ": 不是模型文件或已损坏 (" + ReasonInChinese(failure.what(), path) + ")");
        return false;
    }
    TakeFile(AbsolutePath(path));
    BeginJournal(false);
    m_frame.ModelReplaced();
    m_frame.Tell("已打开 " + m_path);
    if (!remarks.empty()) m_frame.Warn(path + ": " + remarks);
    return true;
}

// ---- saving -----------------------------------------------------------------------------------------------

bool EditorDocument::Save() {
    if (m_path.empty()) return SaveAs();
    m_frame.WillRead(m_path);
    const FileStamp now = StampOf(m_path);
    if (m_stamp != FileStamp{} && now != FileStamp{} && now != m_stamp) {
        DialogForm form = Question("changed", "“" + Name() + "”已被别的程序改过; 替换时那个文件留作 " + Name() + "~",
                                   {"替换", "另存", "取消"});
        const int button = RunForm(form);
        if (button != 0) return button == 1 && SaveAs();
    }
    return SaveTo(m_path);
}

// A path that only the ending made is one that nobody has been asked about.
bool EditorDocument::SaveAs() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return false;
    PathRequest request;
    request.m_save = true;
    request.m_title = "另存为";
    request.m_description = "TvoBase 模型";
    request.m_pattern = "*.tvo";
    request.m_proposed = m_path.empty() ? "未命名.tvo" : m_path;
    const auto chosen = system->AskPath(request);
    if (!chosen || chosen->empty()) return false;
    std::string path = *chosen;
    if (!EndsWithNoCase(path, ".tvo")) {
        path += ".tvo";
        std::error_code error;
        m_frame.WillRead(path);
        DialogForm form = Question("overwrite", path + " 已存在", {"替换", "取消"});
        if (fs::exists(path, error) && RunForm(form) != 0) return false;
    }
    return SaveTo(AbsolutePath(path));
}

bool EditorDocument::SaveTo(const std::string& path) {
    try {
        const SavedModel saved = SaveModel(path, m_frame.DataBase(), TvoModelHost());
        TakeFile(path);
        if (SessionRecorder* const recorder = m_frame.Recorder()) recorder->DidWrite(path);
        if (m_keeping) m_journal.OnSaved(path);
        m_frame.Tell("已保存 " + path);
        if (saved.leftOut)
            m_frame.Warn(path + ": " + std::to_string(saved.leftOut) + " 个构件没有存入 (如场: 它来自结果文件, 不随模型保存)");
        return true;
    } catch (const DataFailure& failure) {
        m_frame.Warn("无法保存 " + path + ": " + ReasonInChinese(failure.what(), path));
        return false;
    }
}

// ---- recent files -----------------------------------------------------------------------------------------

std::vector<std::string> EditorDocument::Recent() {
    std::vector<std::string> files;
    CWindowSystem* const system = CWindowSystem::Current();
    for (std::size_t i = 0; system && i < kMostRecent; ++i) {
        const auto file = system->ReadSetting(kRecentPath, "File" + std::to_string(i + 1));
        if (file && !file->empty() && std::find(files.begin(), files.end(), *file) == files.end())
            files.push_back(*file);
    }
    return files;
}

/// The model is what this file holds, or shall hold; it leads the list of recent ones.
void EditorDocument::TakeFile(const std::string& path) {
    m_path = path;
    m_stamp = StampOf(path);
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    std::vector<std::string> files = Recent();
    std::erase(files, path);
    files.insert(files.begin(), path);
    files.resize(kMostRecent);
    for (std::size_t i = kMostRecent; i > 0; --i)  // File1 last: with that the settings are saved
        system->WriteSetting(kRecentPath, "File" + std::to_string(i), files[i - 1]);
}
