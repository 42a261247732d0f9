// Where journals lie.
#pragma once
#include <string>
#include <vector>

#include "host/models/journal_format.h"

/// The path with links followed and without detours, so that a file has one name.
std::string PlainPath(const std::string& path);

/// $XDG_STATE_HOME/tvobase, or ~/.local/state/tvobase; empty when there is neither.
std::string StateFolder();

/// .NAME-journal beside the model.
std::string JournalBeside(const std::string& modelPath);
/// In the state folder, for a model whose own folder can't be written. Empty without such a folder.
std::string JournalInState(const std::string& modelPath);
/// JOURNAL-base, beside the journal: another name of the model file that its steps stand on.
std::string BaseBeside(const std::string& journalPath);
/// In the state folder, for a model without a name: one that no file has yet. The folder is made.
std::string NewJournalInState();
/// Every journal in the state folder, in the order of their names.
std::vector<std::string> JournalsInState();

/// Length and checksum of a model file; no base when it can't be read.
JournalBase BaseOf(const std::string& modelPath);
