// The editor's command that writes a session down.
#include <optional>
#include <string>
#include <vector>

#include "host/editor/edit_frame.h"
#include "host/editor/editor_command.h"
#include "host/editor/reason_text.h"
#include "host/editor/session_recorder.h"
#include "host/failure.h"
#include "platform/window_system.h"

namespace {

void Tell(const std::string& text) { CWindowSystem::Current()->ShowMessage(text); }

// What is told about a recording stands in a box: the history is part of the session.
void Stop(SessionRecorder& recorder) {
    recorder.StopAtWish();
    const SessionFiles& files = recorder.Files();
    if (!recorder.Failure().empty()) return Tell("记录没有写全: " + MessageInChinese(recorder.Failure()));
    std::string text = "记录结束: " + recorder.Path();
    if (files.Copied() > 0)
        text += "\n读过的 " + std::to_string(files.Copied()) + " 个文件 (" +
                std::to_string((files.CopiedBytes() + 1023) / 1024) + " KB) 已复制到旁边的文件夹, 请一起发送";
    Tell(text);
}

/// From the start? Nothing for a cancel.
std::optional<bool> AskFrom(CWindowSystem& system, bool knowsStart) {
    DialogForm form;
    form.m_name = "record";
    form.m_title = "记录";
    std::vector<std::string> choices = {"从现在起的操作"};
    if (knowsStart) choices.insert(choices.begin(), "从编辑器启动起的全部操作");
    form.m_fields = {{DialogField::Kind::kChoice, "from", "记录", "0", choices},
                     {DialogField::Kind::kNote,
                      "text",
                      "",
                      "从现在起的记录以当前模型开始, 之前的操作不能再撤销, 在编辑器里也是.\n"
                      "读过的文件会复制到脚本旁边. 再次输入“记录”结束.",
                      {}}};
    if (system.RunDialog(form) != 0) return {};
    return knowsStart && form.Value("from") != "1";
}

/// Begins a recording, or ends the one that runs.
void Record(CEditFrame& frame) {
    SessionRecorder* const recorder = frame.Recorder();
    CWindowSystem* const system = CWindowSystem::Current();
    if (!recorder || !system) return;
    const RecorderMuted muted(*recorder);
    if (recorder->IsWriting()) return Stop(*recorder);
    const auto fromStart = AskFrom(*system, recorder->KnowsStart());
    if (!fromStart) return;
    const auto path = system->AskPath({true, "记录到", "操作记录", "*.play", "记录.play"});
    if (!path) return;
    try {
        frame.StartRecording(*path, *fromStart);
    } catch (const DataFailure& failure) {
        Tell("不能记录: " + MessageInChinese(failure.what()));
    }
}

constexpr EditorCommand kCommands[] = {
    {0x90001, "文件", "记录", "Record", "把操作记录成脚本, 再次点击结束", Record},
};

}  // namespace

std::span<const EditorCommand> RecordEditorCommands() { return kCommands; }
