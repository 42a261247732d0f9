// Models put together again from the journals that a crash has left.
#pragma once
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "host/models/model_build.h"

class CGridDataBase;
class ModelHost;

/// A journal that stands where a session should have taken it away.
struct JournalLeftover {
    enum class Base {
        kStands,   // the model file is as it was, or none is needed
        kBefore,   // the model file is another now, but the old one is there as NAME~ or under the name that
                   // the journal gave it: the crash came while saving, or just after, or somebody else has
                   // replaced the file
        kMissing,  // there is no such file any more: nothing can be recovered
    };
    std::string path;       // of the journal
    std::string modelPath;  // empty: the model had no name yet
    std::size_t steps = 0;
    std::time_t time = 0;  // when the last step was written
    Base base = Base::kStands;
    bool held = false;     // by a session that lives: the model is being edited there
    bool torn = false;     // its end is no whole step: the one that was being written
    std::size_t lost = 0;  // whole steps behind a damage, which can not be brought back
};

/// What a journal holds. Nothing when the file isn't there or no journal.
std::optional<JournalLeftover> ReadLeftover(const std::string& journalPath);

/// The journal of a model file: one that was left with steps in it, or one that another session holds.
std::optional<JournalLeftover> FindLeftover(const std::string& modelPath);

/// Those in the state folder that were left with steps in them: of models without a name, and of models whose
/// folder couldn't be written.
std::vector<JournalLeftover> FindLeftovers();

/// Takes a journal away that nobody wants back. Never one that is held.
void DiscardJournal(const std::string& journalPath);

struct RecoveredModel {
    BuiltModel built;
    std::size_t steps = 0;      // that were brought back
    std::size_t lost = 0;       // whole ones behind a damage, which could not
    std::size_t faults = 0;     // things in it that can't be used
    bool alreadySaved = false;  // the model file holds just this: nothing was lost in the crash
    bool replaced = false;      // the model file is another one now: this should not take its place unasked

    /// "12 steps brought back; the journal is damaged, 3 steps behind that are lost" and the like.
    std::string Text() const;
};

/// Puts the model as it was after the last whole step in the place of the one that stands in the data base.
/// It counts as modified then, unless it is already saved. Throws DataFailure when the base is missing or the
/// journal can't be read; the model in the data base stands then. The journal stays until ModelJournal::Begin
/// (with `unsaved`) or DiscardJournal.
RecoveredModel RecoverJournal(const std::string& journalPath, CGridDataBase& db, const ModelHost& host);
