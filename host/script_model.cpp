// The commands of `tvo run` that save and open models.
#include "host/json_text.h"
#include "host/models/model_build.h"
#include "host/models/model_writer.h"
#include "host/models/text_form.h"
#include "host/script.h"
#include "host/script_command.h"
#include "host/tvo_model_host.h"

namespace {

using Words = ScriptWords;

Json Counts(const char* type, const std::string& file, std::size_t nodes, std::size_t lines, std::size_t plates) {
    return {{"type", type}, {"file", file}, {"nodes", nodes}, {"lines", lines}, {"plates", plates}};
}

void RunSave(Script& script, const Words& words) {
    const SavedModel saved = SaveModel(words[1], script.m_db, TvoModelHost());
    Json json = Counts("save", words[1], saved.nodes, saved.lines, saved.plates);
    json["others"] = saved.others;
    json["leftOut"] = saved.leftOut;
    json["bytes"] = saved.bytes;
    PrintJsonLine(script.m_out, json);
}

void RunOpen(Script& script, const Words& words) {
    const BuiltModel built = OpenModel(words[1], script.m_db, TvoModelHost());
    Json json = Counts("open", words[1], built.nodes, built.lines, built.plates);
    json["others"] = built.others;
    json["unresolved"] = built.unresolvedPlates + built.unresolvedOthers;
    if (const std::string remarks = built.Remarks(); !remarks.empty()) json["remarks"] = remarks;
    PrintJsonLine(script.m_out, json);
}

void RunSaveText(Script& script, const Words& words) {
    const TextTally tally = SaveModelText(words[1], script.m_db);
    Json json = Counts("savetext", words[1], tally.nodes, tally.lines, tally.plates);
    json["leftOut"] = tally.leftOut;
    PrintJsonLine(script.m_out, json);
}

void RunLoadText(Script& script, const Words& words) {
    const TextTally tally = LoadModelText(words[1], script.m_db);
    Json json = Counts("loadtext", words[1], tally.nodes, tally.lines, tally.plates);
    json["unresolved"] = tally.leftOut;
    json["remarks"] = "the text form does not bring the places of nodes back: all lie at (0, 0)";
    PrintJsonLine(script.m_out, json);
}

constexpr ScriptCommand kCommands[] = {
    {"save", "FILE", 1, 1, RunSave, "save the model; the file before is kept as FILE~"},
    {"open", "FILE", 1, 1, RunOpen, "open a saved model in the place of this one"},
    {"savetext", "FILE", 1, 1, RunSaveText, "write nodes, lines and plates as text"},
    {"loadtext", "FILE", 1, 1, RunLoadText, "read such a text into an empty model; places of nodes don't come back"},
};

}  // namespace

std::span<const ScriptCommand> ModelCommands() { return kCommands; }
