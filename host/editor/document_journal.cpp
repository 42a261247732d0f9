// EditorDocument: the journal, and what a crash has left.
#include <algorithm>
#include <ctime>
#include <filesystem>

#include "host/editor/document.h"
#include "host/editor/edit_frame.h"
#include "host/editor/reason_text.h"
#include "host/editor/session_recorder.h"
#include "host/failure.h"
#include "host/models/journal_recovery.h"
#include "host/tvo_model_host.h"
#include "platform/dialog.h"
#include "platform/window_system.h"

namespace {

const TvoModelHost kHost;  // the journal borrows it

std::string TimeText(std::time_t time) {
    std::tm local{};
    char text[40] = "";
    if (::localtime_r(&time, &local)) std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &local);
    return text;
}

std::string NameOf(const JournalLeftover& leftover) {
    return leftover.modelPath.empty() ? "未命名"
                                      : std::filesystem::path(leftover.modelPath).filename().string();
}

std::string Described(const JournalLeftover& leftover) {
    return NameOf(leftover) + ", " + std::to_string(leftover.steps) + " 步, " + TimeText(leftover.time);
}

/// One that can be brought back.
bool IsOffered(const JournalLeftover& leftover) {
    return !leftover.held && leftover.steps > 0 && leftover.base != JournalLeftover::Base::kMissing;
}

}  // namespace

void EditorDocument::BeginJournal(bool unsaved, const std::string& broughtBack) {
    if (m_keeping) m_journal.Begin(m_frame.DataBase(), kHost, m_path, unsaved, broughtBack);
}

void EditorDocument::FlushJournal() {
    if (!m_keeping) return;
    m_journal.Flush();
    const auto trouble = m_journal.TakeTrouble();
    if (!trouble) return;
    if (trouble->kind == JournalTrouble::kHeldByAnother)
        m_frame.Warn("“" + Name() + "”正在另一个窗口中编辑; 两边都保存时, 后保存的一边会先询问");
    else
        m_frame.Warn("恢复日志写不进 " + trouble->path + ": " +
                     ReasonInChinese(trouble->reason, trouble->path));
}

void EditorDocument::CloseJournal() {
    if (m_keeping) m_journal.Close();
}

void EditorDocument::KeepJournal() {
    if (m_keeping) return;
    m_keeping = true;
    if (m_path.empty()) {
        BeginJournal(IsModified());
        OfferLeftovers();
    } else if (!OfferOf(m_path)) {
        BeginJournal(IsModified());
    }
}

bool EditorDocument::Recover(const JournalLeftover& leftover) {
    m_frame.LeaveModel();
    try {
        const RecoveredModel recovered = RecoverJournal(leftover.path, m_frame.DataBase(), kHost);
        if (SessionRecorder* const recorder = m_frame.Recorder()) recorder->LoseTrack();
        // A file that somebody else has written in between stays theirs: saving will ask for a name.
        m_path.clear();
        if (!recovered.replaced && !leftover.modelPath.empty()) TakeFile(leftover.modelPath);
        BeginJournal(!recovered.alreadySaved, leftover.path);
        m_frame.ModelReplaced();
        m_frame.Tell(
            "已恢复“" + Name() + "”: " + std::to_string(recovered.steps) + " 步" +
            (recovered.lost ? ", 日志损坏, 其后 " + std::to_string(recovered.lost) + " 步丢失" : ""));
        if (recovered.replaced)
            m_frame.Warn(leftover.modelPath + " 在此期间已被别的程序改过; 恢复的模型没有文件名, 请另存");
        return true;
    } catch (const DataFailure& failure) {
        m_frame.Warn("无法恢复 " + leftover.path + ": " + ReasonInChinese(failure.what(), leftover.path));
        return false;
    }
}

// Not wanted now, it is kept as NAME~ beside the new journal.
bool EditorDocument::OfferOf(const std::string& path) {
    const auto leftover = FindLeftover(path);
    if (leftover && !leftover->held && leftover->steps > 0 && leftover->base == JournalLeftover::Base::kMissing)
        m_frame.Warn("上次留下的恢复日志有 " + std::to_string(leftover->steps) +
                     " 步, 但模型文件已被别的程序改过, 不能接上; 日志留作 " + leftover->path + "~");
    if (!leftover || !IsOffered(*leftover)) return false;
    DialogForm form;
    form.m_name = "recover";
    form.m_title = "恢复";
    form.m_fields = {{DialogField::Kind::kNote, "text", "", "上次没有正常关闭: " + Described(*leftover), {}}};
    form.m_buttons = {"恢复", "不恢复"};
    CWindowSystem* const system = CWindowSystem::Current();
    return system && system->RunDialog(form) == 0 && Recover(*leftover);
}

void EditorDocument::OfferLeftovers() {
    CWindowSystem* const system = CWindowSystem::Current();
    for (;;) {
        std::vector<JournalLeftover> left = FindLeftovers();
        for (const std::string& file : Recent())  // beside the models that were last worked on
            if (auto beside = FindLeftover(file);
                beside && std::none_of(left.begin(), left.end(), [&](const JournalLeftover& l) { return l.path == beside->path; }))
                left.push_back(std::move(*beside));
        std::erase_if(left,
                      [&](const JournalLeftover& l) { return !IsOffered(l) || l.path == m_journal.Path(); });
        if (left.empty() || !system) return;
        std::stable_sort(left.begin(), left.end(),  // the newest is what somebody misses
                         [](const JournalLeftover& a, const JournalLeftover& b) { return a.time > b.time; });
        DialogForm form;
        form.m_name = "leftovers";
        form.m_title = "恢复";
        std::vector<std::string> described;
        for (const JournalLeftover& leftover : left) described.push_back(Described(leftover));
        form.m_fields = {{DialogField::Kind::kNote, "text", "", "有模型上次没有正常关闭", {}},
                         {DialogField::Kind::kChoice, "model", "模型", "0", described}};
        form.m_buttons = {"恢复", "丢弃", "以后"};
        const int button = system->RunDialog(form);
        if (button < 0) return;
        std::size_t chosen = 0;
        while (chosen + 1 < left.size() && form.Value("model") != std::to_string(chosen)) ++chosen;
        if (button == 0) {
            Recover(left[chosen]);
            return;
        }
        DiscardJournal(left[chosen].path);
    }
}
