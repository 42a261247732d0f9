// tvo play: a session at the editor's view, event by event.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "host/commands.h"
#include "host/edit_commands.h"
#include "host/editor/command_table.h"
#include "host/play_session.h"
#include "host/script_reader.h"
#include "host/window_module.h"

namespace {

const char* const kAbout =
    "Plays a session of the editor without a screen: mouse, keys and typed text, one event a line, for\n"
    "tests, demonstrations and reports of faults. The view is 800 by 600 pixels at the start and shows\n"
    "the background grid, 240 by 150 m. All that tvo run knows works too, on the same model.";

std::string Footer() {
    return std::string(kAbout) + "\n\nEvents:\n" + PlaySession::Help() +
           "\nCommands that are typed (type line, enter), besides Zoom, Z, Pan, P, Undo, U, Redo, Re:\n" + EditCommandHelp() +
           "\nWith the whole editor these, too:\n" + EditorCommandHelp() +
           "\nPoints are typed as x,y or r<angle, with @ before for relative ones. F3 switches snapping to\n"
           "objects, F4 to angles, F2 to the grid; F5 shows all.\n"
           "\nResults:\n"
           "  state:  {\"type\":\"state\",\"work\":0 or 1,\"command\":NAME or null,\"hint\":N,\"select\":N,\"points\":N,\n"
           "           \"stack\":[NAME or null,...],\"selection\":[ID...],\"prompt\":TEXT,\"last\":TEXT,\"scale\":F,\"x\":F,\n"
           "           \"y\":F,\"cursor\":[X,Y],\"snap\":N}; hint: 8 a selection, 16 text, 32 a point; snap: -1 none\n"
           "  prompt: {\"type\":\"prompt\",\"lines\":[TEXT...],\"prompt\":TEXT}\n"
           "\nStatus: as that of tvo run.\n"
           "\nExample:  printf 'type line\\nenter\\ntype 0,0\\nenter\\ntype @6000<0\\nenter\\nstate\\nstat\\n' | tvo play\n";
}

}  // namespace

Command AddPlayCommand(CLI::App& app) {
    auto options = std::make_shared<ScriptSource>();
    auto record = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand("play", "Play a session of the editor, event by event");
    command->add_option("SCRIPT", options->file, "file of events; - or nothing: the standard input");
    command->add_flag("--keep-going", options->keepGoing, "go on after a bad line");
    command->add_option("--record", *record, "write the session down again, from the event editor on");
    auto window = std::make_shared<bool>(false);
    command->add_flag("--window", *window, "in a window, for whoever looks on; pictures are then what it shows");
    command->footer(Footer());
    return {command, [options, record, window] {
                std::unique_ptr<WindowModule> module;
                if (*window) {
                    TvoQtOptions scripted;
                    scripted.m_scripted = true;
                    module = std::make_unique<WindowModule>(scripted);
                }
                PlaySession session(std::cout, module ? &module->System() : nullptr);
                session.m_record = *record;
                if (options->file != "-")
                    session.m_folder = std::filesystem::path(options->file).parent_path().string();
                return ReadScript(*options, [&](std::string_view line) { session.Run(line); });
            }};
}
