#include "host/models/journal_recovery.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "host/failure.h"
#include "host/models/file_system.h"
#include "host/models/held_file.h"
#include "host/models/journal_places.h"
#include "host/models/journal_replay.h"
#include "host/models/model_plan.h"
#include "net/grid_data_base.h"

namespace {

/// A journal in memory. The steps point into its bytes.
struct OpenJournal {
    std::string bytes;
    JournalContent content;
    std::time_t time = 0;
};

/// Null with an errno when it can't be read.
std::unique_ptr<OpenJournal> OpenJournalFile(const std::string& path, int& error) {
    auto journal = std::make_unique<OpenJournal>();
    journal->bytes = ReadFileBytes(path, error, &journal->time);
    if (error != 0) return nullptr;
    journal->content = ReadJournal(journal->bytes);
    return journal;
}

bool NeedsBase(const JournalContent& content) {
    return content.header->base.file && !content.header->whole && std::none_of(content.steps.begin(), content.steps.end(),
                                                     [](const JournalStep& step) { return step.whole; });
}

/// The file that the steps stand on; empty when it is nowhere any more.
std::string BaseFileOf(const JournalHeader& header, const std::string& journalPath) {
    for (const std::string& path : {header.modelPath, header.modelPath + "~", BaseBeside(journalPath)})
        if (BaseOf(path) == header.base) return path;
    return {};
}

/// Without a base and without a step of the whole model there is nothing that the steps could stand on.
JournalLeftover::Base FindBase(const JournalContent& content, const std::string& journalPath) {
    using enum JournalLeftover::Base;
    const JournalHeader& header = *content.header;
    const bool whole = content.steps.empty() ? content.lost == 0 : content.steps.front().whole;
    if (!header.base.file || header.whole) return whole ? kStands : kMissing;
    if (!NeedsBase(content)) return kStands;
    const std::string base = BaseFileOf(header, journalPath);
    return base.empty() ? kMissing : base == header.modelPath ? kStands : kBefore;
}

std::string Counted(std::size_t n, const char* what) {
    return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

}  // namespace

std::optional<JournalLeftover> ReadLeftover(const std::string& journalPath) {
    int error = 0;
    const auto journal = OpenJournalFile(journalPath, error);
    if (!journal || !journal->content.header) return {};
    const JournalContent& content = journal->content;
    JournalLeftover leftover;
    leftover.path = journalPath;
    leftover.modelPath = content.header->modelPath;
    leftover.steps = content.steps.size();
    leftover.time = journal->time;
    leftover.base = FindBase(content, journalPath);
    leftover.held = IsHeld(journalPath);
    leftover.torn = content.torn;
    leftover.lost = content.lost;
    return leftover;
}

std::optional<JournalLeftover> FindLeftover(const std::string& modelPath) {
    const std::string plain = PlainPath(modelPath);
    for (const std::string& path : {JournalBeside(plain), JournalInState(plain)}) {
        auto leftover = path.empty() ? std::nullopt : ReadLeftover(path);
        if (leftover && (leftover->held || leftover->steps + leftover->lost > 0)) return leftover;
    }
    return {};
}

std::vector<JournalLeftover> FindLeftovers() {
    std::vector<JournalLeftover> found;
    for (const std::string& path : JournalsInState()) {
        auto leftover = ReadLeftover(path);
        if (leftover && !leftover->held && leftover->steps + leftover->lost > 0)
            found.push_back(std::move(*leftover));
    }
    return found;
}

void DiscardJournal(const std::string& journalPath) {
    HeldFile file;
    if (file.Take(journalPath, HeldFile::Mode::kExisting) != 0) return;
    ::unlink(BaseBeside(journalPath).c_str());
    file.Remove();
}

std::string RecoveredModel::Text() const {
    std::string text = Counted(steps, "step") + " brought back";
    if (alreadySaved) text += "; the model file holds them already";
    if (replaced) text += "; the model file has been replaced since, they stand on the one before";
    if (lost > 0)
        text += "; the journal is damaged, " + Counted(lost, "step") + " behind that " +
                (lost == 1 ? "is" : "are") + " lost";
    if (faults > 0) text += "; " + Counted(faults, "thing") + " in it can't be used";
    if (const std::string remarks = built.Remarks(); !remarks.empty()) text += "; " + remarks;
    return text;
}

RecoveredModel RecoverJournal(const std::string& journalPath, CGridDataBase& db, const ModelHost& host) {
    const auto fail = [&](const std::string& reason) {
        throw DataFailure("cannot recover " + journalPath + ": " + reason);
    };
    int error = 0;
    const auto journal = OpenJournalFile(journalPath, error);
    if (!journal) fail(std::strerror(error));
    const JournalContent& content = journal->content;
    if (!content.header) fail("this is no journal, or its head is damaged");
    const std::string& modelPath = content.header->modelPath;
    const JournalLeftover::Base standing = FindBase(content, journalPath);
    if (standing == JournalLeftover::Base::kMissing)
        fail(modelPath.empty() ? "its first step is damaged"
                               : modelPath + ", on which it stands, is another file now");
    // A journal that needs no file may find another one than it left.
    const JournalBase now = BaseOf(modelPath);
    const bool before = standing == JournalLeftover::Base::kBefore || (now.file && now != content.header->base);
    std::optional<ModelFile> base;
    if (NeedsBase(content)) base = ReadModelFile(BaseFileOf(*content.header, journalPath));

    const std::string bytes = ReplaySteps(base ? &*base : nullptr, content.steps);
    const ModelFile file = TakeApart(bytes);
    ModelPlan plan = PlanModel(file, host);
    RecoveredModel recovered;
    recovered.steps = content.steps.size();
    recovered.lost = content.lost;
    recovered.faults = file.faults.size() + static_cast<std::size_t>(plan.faultCount);
    recovered.built = BuildModel(plan, file.header, db, host);
    recovered.alreadySaved = before && ReadFileBytes(modelPath, error) == bytes && error == 0;
    recovered.replaced = before && !recovered.alreadySaved;
    db.GetContain().SetModifiedFlag(recovered.alreadySaved || recovered.steps == 0 ? 0 : 1);
    return recovered;
}
