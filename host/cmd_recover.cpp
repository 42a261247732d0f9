// tvo recover: brings back what is whole in a damaged model file, and what a crash has left in a journal.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "host/commands.h"
#include "host/failure.h"
#include "host/host_data_base.h"
#include "host/models/journal_recovery.h"
#include "host/models/model_build.h"
#include "host/models/model_plan.h"
#include "host/models/model_writer.h"
#include "host/part_kinds.h"
#include "host/tvo_model_host.h"

namespace {

struct RecoverOptions {
    std::string file;
    std::string out;
    bool journal = false;
};

const char* const kFooter =
    "Reads what the file holds section by section. A section whose checksum does not hold is lost; so are lines\n"
    "of which a node is gone, plates of which a line is gone, and riders without their line. Everything else is\n"
    "saved as a model of its own.\n"
    "\nWith --journal it is the steps that a crashed session of the editor has left in the journal of FILE: the model is\n"
    "put together as it was after the last of them. FILE may be the journal itself; those of models without a name lie in\n"
    "$XDG_STATE_HOME/tvobase or ~/.local/state/tvobase. File and journal stay as they are.\n"
    "\nStatus: 0 when something was saved, 1 when there was nothing to save or it could not be written.\n"
    "\nExamples:  tvo recover house.tvo -o house-again.tvo\n"
    "           tvo recover house.tvo --journal\n";

void RefuseItself(const RecoverOptions& options) {
    std::error_code unknown;
    if (options.out == options.file || std::filesystem::equivalent(options.out, options.file, unknown))
        throw UsageFailure("the model recovered can't take the place of " + options.file);
}

void PrintFaults(const ModelFile& file, const ModelPlan& plan) {
    for (const ModelFault& fault : file.faults) std::cout << "  " << fault.Text() << '\n';
    for (const ModelFault& fault : plan.faults) std::cout << "  " << fault.Text() << '\n';
    if (plan.faultCount > plan.faults.size())
        std::cout << "  and " << plan.faultCount - plan.faults.size() << " more of this kind\n";
}

// Without a header nobody knows how many there were; then the heads of the sections tell.
void PrintKind(const char* name, SectionKind kind, const ModelFile& file, const ModelPlan& plan, std::size_t kept,
               std::uint32_t ModelHeader::*told) {
    const KindTally& tally = plan.tally[static_cast<std::size_t>(SectionRank(kind))];
    const std::uint64_t were = file.header ? (*file.header).*told : tally.told;
    if (were == 0 && tally.sections == 0) return;
    std::cout << name << ": " << kept << " of " << were << " kept, " << tally.whole << " of " << tally.sections
              << (tally.sections == 1 ? " section" : " sections") << " whole\n";
}

std::string ShownSteps(std::size_t steps) { return std::to_string(steps) + (steps == 1 ? " step" : " steps"); }

int RunJournal(const RecoverOptions& options, const JournalLeftover& journal) {
    if (journal.held) throw DataFailure(journal.path + ": the model is being edited at this moment");
    const TvoModelHost host;
    CTvoHostDataBase db;
    const RecoveredModel recovered = RecoverJournal(journal.path, db, host);
    std::cout << journal.path << ": " << recovered.Text() << '\n';
    if (recovered.steps == 0) throw DataFailure(journal.path + ": there is no step to bring back");
    SaveModel(options.out, db, host);
    std::cout << "saved " << options.out << '\n';
    return kDone;
}

int RunRecover(const RecoverOptions& given) {
    RecoverOptions options = given;
    auto journal = ReadLeftover(options.file);
    const bool isJournal = journal.has_value();
    if (!journal) journal = FindLeftover(options.file);
    if (options.out.empty()) options.out = options.file + ".recovered.tvo";
    RefuseItself(options);
    if (options.journal && !journal) throw DataFailure("there is no journal of " + options.file);
    if (options.journal || isJournal) return RunJournal(options, *journal);
    if (journal && !journal->held)
        std::cout << journal->path << " has " << ShownSteps(journal->steps) << " that were never saved; --journal brings them back\n";
    const ModelFile file = ReadModelFile(options.file, /*anyStart=*/true);
    const TvoModelHost host;
    ModelPlan plan = PlanModel(file, host);
    const std::size_t faults = file.faults.size() + static_cast<std::size_t>(plan.faultCount);
    std::cout << options.file << ": " << (faults == 0 ? "no" : std::to_string(faults)) << (faults == 1 ? " fault\n" : " faults\n");
    PrintFaults(file, plan);

    CTvoHostDataBase db;
    const BuiltModel built = BuildModel(plan, file.header, db, host);
    PrintKind("nodes", SectionKind::kNodes, file, plan, built.nodes, &ModelHeader::nodes);
    PrintKind("lines", SectionKind::kLines, file, plan, built.lines, &ModelHeader::lines);
    PrintKind("plates", SectionKind::kPlates, file, plan, built.plates, &ModelHeader::plates);
    PrintKind("other components", SectionKind::kHost, file, plan, built.others, &ModelHeader::others);
    for (const PartKind& kind : kPartKinds)
        if (const int count = db.GetGouJianCount(kind.type); HasOwnSections(kind) && count > 0)
            std::cout << "  " << kind.many << ": " << count << '\n';
    if (faults > 0 && built.nodes + built.lines + built.plates + built.others == 0)
        throw DataFailure(options.file + ": nothing could be recovered");
    if (plan.tally[0].whole == 0) std::cout << "counters of identities: lost, they go on behind the highest identity\n";
    if (!file.header) std::cout << "header: lost, the net tolerance is " << ModelHeader{}.tolerance << " again\n";
    if (const std::string remarks = built.Remarks(); !remarks.empty()) std::cout << remarks << '\n';
    SaveModel(options.out, db, host);
    std::cout << "saved " << options.out << '\n';
    return kDone;
}

}  // namespace

Command AddRecoverCommand(CLI::App& app) {
    auto options = std::make_shared<RecoverOptions>();
    CLI::App* command = app.add_subcommand("recover", "Bring back what is whole in a damaged model file");
    command->add_option("FILE", options->file, "the model file")->required();
    command->add_option("-o,--out", options->out, "where to save; without it FILE.recovered.tvo");
    command->add_flag("--journal", options->journal, "bring back what a crash has left in its journal");
    command->footer(kFooter);
    return {command, [options] { return RunRecover(*options); }};
}
