// tvo, the reference host: the axis net from the command line.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <iterator>
#include <new>

#include "host/commands.h"
#include "host/failure.h"
#include "model/profile.h"

namespace {

int Main(int argc, char** argv) {
    CLI::App app("From a DXF plan to a clean axis net and its picture.", "tvo");
    app.set_version_flag("--version", "tvo " TVO_VERSION);
    app.require_subcommand(1);
    app.footer("tvo COMMAND --help tells all about a command.\n"
               "\nStatus: 0 done; 1 the data could not be used; 2 wrong usage.\n");
    const Command commands[] = {AddLayersCommand(app), AddImportCommand(app), AddCheckCommand(app),
                                AddInfoCommand(app),   AddExportCommand(app), AddRunCommand(app),
                                AddEditCommand(app),   AddPlayCommand(app), AddRecordCommand(app),  AddRecoverCommand(app)};
    // Said here since CLI11 would only miss a command.
    const auto named = [&](const Command& command) { return command.app->get_name() == argv[1]; };
    if (argc > 1 && argv[1][0] != '-' && std::none_of(std::begin(commands), std::end(commands), named)) {
        std::cerr << "error: there is no command '" << argv[1] << "'; tvo --help lists them\n";
        return kWrongUsage;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kWrongUsage;
    }
    // Arrows would clutter a picture, and come back as lines from an exported drawing.
    g_cTvoProfile.m_bShowLineDirection = 0;
    // In the editor's view the usual dark red would drown in the plates' colours.
    for (const char* command : {"edit", "play", "record"})
        if (app.got_subcommand(command)) g_cTvoProfile.m_nLineColor = 1;
    int status = kWrongUsage;
    for (const Command& command : commands)
        if (app.got_subcommand(command.app)) status = command.run();
    std::cout.flush();
    if (!std::cout) throw DataFailure("cannot write to the standard output");
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Main(argc, argv);
    } catch (const DataFailure& failure) {
        std::cerr << "error: " << failure.what() << '\n';
        return kDataUnusable;
    } catch (const UsageFailure& failure) {
        std::cerr << "error: " << failure.what() << '\n';
        return kWrongUsage;
    } catch (const std::bad_alloc&) {
        std::cerr << "error: not enough memory\n";
        return kDataUnusable;
    } catch (const std::exception& failure) {
        std::cerr << "error: " << failure.what() << '\n';
        return kDataUnusable;
    }
}
