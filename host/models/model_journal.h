// ModelJournal: what is done to a model goes to the disk step by step.
#pragma once
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/models/held_file.h"
#include "host/models/journal_format.h"
#include "model/store_watcher.h"

class CGridDataBase;
class MemoryStream;
class ModelHost;

/// Something about a journal that the user should hear.
struct JournalTrouble {
    enum Kind { kHeldByAnother, kNotWritten };
    Kind kind;
    std::string path;    // of the journal
    std::string reason;  // what the system says
};

/// Keeps a journal of a model beside its file, or in the user's state folder while it has no name: from its
/// base (the file as it was saved last) on, each step, undo and redo as what it left behind, synced. After a
/// crash RecoverJournal puts the model together again. While the journal lives its file is locked, so that
/// nobody takes it for one that was left.
///
/// The host calls Flush after each event that it has handled. A step that may still grow is written as far as
/// it is, and again when it has grown. Steps that follow one another within an event are written by
/// themselves: Start, Undo and Redo of the container see to that.
///
/// Nothing here throws. A journal that can't be written is told once (TakeTrouble); each later step tries
/// again, with the whole model.
class ModelJournal final : public CStoreWatcher {
public:
    ModelJournal() = default;
    /// Leaves a journal with steps where it is: who goes without Close has crashed.
    ~ModelJournal() override;
    ModelJournal(const ModelJournal&) = delete;
    ModelJournal& operator=(const ModelJournal&) = delete;

    // --- the life of a model; data base and host are borrowed until Close or the next Begin ---
    /// Begins for a model that was opened from, saved to, or is to have the file; "" for one without a name.
    /// Take `unsaved` when the model is not what the file holds, as after a recovery: it is then written
    /// whole at once. The journal before goes once the new one stands. One that a crash has left at the place
    /// is kept as NAME~, unless it is `broughtBack`, from which this model was recovered: that one goes once the
    /// new one has all of it on the disk, wherever it lies.
    void Begin(CGridDataBase& db, const ModelHost& host, const std::string& modelPath, bool unsaved = false,
               const std::string& broughtBack = {});
    /// Writes what has changed. Costs next to nothing when nothing has.
    void Flush();
    /// The model has just been saved in that file: it is the new base.
    void OnSaved(const std::string& modelPath);
    /// Ends in good order: the journal goes.
    void Close();

    /// What has gone wrong since the last call; the same thing is told only once.
    std::optional<JournalTrouble> TakeTrouble();

    const std::string& Path() const { return m_file.Path(); }  // empty while none can be written
    /// Is all of it on the disk, as of the last Begin or Flush?
    bool Stands() const { return m_file.IsOpen() && !m_failing; }
    std::uint32_t Steps() const { return m_told.steps; }       // in the file
    /// Whether a write waits until the disk has it; benchmarks turn it off.
    void SetSync(bool sync) { m_sync = sync; }
    /// A journal longer than this begins anew with the whole model.
    void SetMostLength(std::size_t bytes) { m_mostLength = bytes; }

    // --- the store's ---
    void OnChanged(const CGouJianEx& component) override;
    void OnStepEnd() override { Flush(); }
    void OnEmptied() override;
    void OnGone() override { m_db = nullptr; }  // the journal stays, as after a crash

private:
    enum class Scope { kChanges, kWhole };
    /// What the file tells, beside the components.
    struct Told {
        std::uint32_t steps = 0;
        std::map<std::uint32_t, std::uint32_t> counters;
        std::string data;  // of the host
        int tolerance = 0, storey = 0;
    };

    void StopWatching();
    void RemoveFile();
    void Place(bool unsaved);
    int PlaceAt(const std::string& path, bool unsaved);
    bool Due() const;
    int Append();
    void NoteSettings();
    std::string Describe(Scope scope, Told& told);
    void Add(JournalStep& step, MemoryStream& blocks, CGouJianEx& component);
    SectionKind KindOf(CGouJianEx& component);
    void Fail(JournalTrouble::Kind kind, const std::string& path, int error);

    CGridDataBase* m_db = nullptr;      // borrowed
    const ModelHost* m_host = nullptr;  // borrowed
    std::string m_modelPath;            // empty: without a name
    std::string m_broughtBack;          // a journal that is to go when this one stands
    HeldFile m_file;
    std::vector<std::uint32_t> m_touched;  // identities of what has changed since the last step
    bool m_emptied = false;                // the store was emptied since
    bool m_baseless = false;  // no file and no step to stand on: the next step is of the whole model
    Told m_told;
    std::array<signed char, 256> m_known{};  // type bytes of the host: 1 made, -1 not, 0 not asked yet
    bool m_sync = true;
    std::size_t m_mostLength = std::size_t{256} << 20;
    std::optional<JournalTrouble> m_trouble;
    bool m_failing = false;  // the last write went wrong
};
