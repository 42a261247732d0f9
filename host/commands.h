// The commands of tvo. Each adds itself to the command line.
#pragma once
#include <functional>

namespace CLI {
class App;
}

/// A command on the command line. `run` does what was asked once the arguments have been read, and gives the program's
/// exit status; it may throw DataFailure and UsageFailure.
struct Command {
    CLI::App* app = nullptr;  // borrowed from the program's App
    std::function<int()> run;
};

Command AddLayersCommand(CLI::App& app);
Command AddCheckCommand(CLI::App& app);
Command AddEditCommand(CLI::App& app);
Command AddExportCommand(CLI::App& app);
Command AddImportCommand(CLI::App& app);
Command AddInfoCommand(CLI::App& app);
Command AddPlayCommand(CLI::App& app);
Command AddRecordCommand(CLI::App& app);
Command AddRecoverCommand(CLI::App& app);
Command AddRunCommand(CLI::App& app);
