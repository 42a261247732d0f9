// The command of `tvo run` that writes DXF drawings.
#include "host/dxf_output.h"
#include "host/host_data_base.h"
#include "host/json_text.h"
#include "host/script.h"
#include "host/script_command.h"
#include "host/script_line.h"

namespace {

void RunExport(Script& script, const ScriptWords& words) {
    const std::string wanted = words.size() > 2 ? words[2] : "r12";
    DxfVersion version = DxfVersion::R12;
    if (!ReadDxfVersion(wanted, version)) throw ScriptFailure{"VERSION: " + CheckDxfVersion(wanted)};
    const SavedDrawing saved = SaveDrawing(words[1], script.m_db, version);
    PrintJsonLine(script.m_out, {{"type", "export"},
                                 {"file", saved.file},
                                 {"version", wanted},
                                 {"entities", saved.entities},
                                 {"bytes", saved.bytes}});
}

constexpr ScriptCommand kCommands[] = {
    {"export", "FILE.dxf [r12|2000]", 1, 2, RunExport,
     "write what the view shows as a DXF drawing; hidden things stay out"},
};

}  // namespace

std::span<const ScriptCommand> DrawingCommands() { return kCommands; }
