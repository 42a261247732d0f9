// The editor's command that writes a session down.
#include "host/editor/edit_frame.h"
#include "host/editor/editor_command.h"
#include "host/editor/reason_text.h"
#include "host/editor/session_recorder.h"
#include "platform/window_system.h"

namespace {

/// Begins a recording, or ends the one that runs.
void Record(CEditFrame& frame) {
    if (const SessionRecorder* const running = frame.Recorder()) {
        const std::string path = running->Path(), failure = running->Failure();
        frame.StopRecording();
        if (failure.empty()) frame.Tell("记录结束: " + path);
        else frame.Warn("记录没有写全: " + MessageInChinese(failure));
        return;
    }
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    const auto path = system->AskPath({true, "记录到", "操作记录", "*.play", "记录.play"});
    if (!path) return;
    frame.StartRecording(*path, false);
    frame.Tell("正在记录到 " + *path + ", 再次输入\"记录\"结束; 用 tvo play 重放");
}

constexpr EditorCommand kCommands[] = {
    {0x90001, "文件", "记录", "Record", "把操作记录成脚本, 再次点击结束", Record},
};

}  // namespace

std::span<const EditorCommand> RecordEditorCommands() { return kCommands; }
