#include "host/models/model_journal.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
#include <utility>

#include "host/models/journal_places.h"
#include "host/models/journal_recovery.h"
#include "host/models/memory_stream.h"
#include "host/models/model_assembler.h"
#include "host/models/model_content.h"
#include "host/models/model_host.h"
#include "host/models/model_writer.h"
#include "model/profile.h"
#include "net/grid_data_base.h"

namespace {

std::string DataOf(CGridDataBase& db, const ModelHost& host) {
    MemoryStream stream;
    host.WriteData(db, stream.Stream());
    return std::string(stream.Bytes());
}

/// A journal whose first step was cut in the middle holds nothing. A file that is no journal is somebody's.
bool IsWorthKeeping(const std::string& path) {
    const auto leftover = ReadLeftover(path);
    return !leftover || leftover->steps + leftover->lost > 0;
}

/// Under the first name that is free, with what it stands on: what a crash has left is nobody's to throw away.
void KeepAside(const std::string& path) {
    std::string kept = path + "~";
    for (int i = 2; ::link(path.c_str(), kept.c_str()) != 0 && errno == EEXIST && i < 1000; ++i)
        kept = path + "~" + std::to_string(i);
    (void)::link(BaseBeside(path).c_str(), BaseBeside(kept).c_str());
}

}  // namespace

ModelJournal::~ModelJournal() {
    StopWatching();
    if (m_told.steps == 0) RemoveFile();
}

void ModelJournal::RemoveFile() {
    if (m_file.Stands()) ::unlink(BaseBeside(m_file.Path()).c_str());
    m_file.Remove();
}

void ModelJournal::StopWatching() {
    if (m_db && m_db->GetContain().GetWatcher() == this) m_db->GetContain().SetWatcher(nullptr);
    m_db = nullptr;
}

// ---- the life of a model ------------------------------------------------------------------------------

void ModelJournal::Begin(CGridDataBase& db, const ModelHost& host, const std::string& modelPath,
                         bool unsaved, const std::string& broughtBack) {
    StopWatching();
    m_db = &db;
    m_host = &host;
    m_known = {};
    m_modelPath = modelPath.empty() ? "" : PlainPath(modelPath);
    m_broughtBack = broughtBack;
    Place(unsaved);
    db.GetContain().SetWatcher(this);
}

void ModelJournal::OnSaved(const std::string& modelPath) {
    if (!m_db) return;
    m_modelPath = PlainPath(modelPath);
    Place(false);
}

void ModelJournal::Close() {
    StopWatching();
    m_touched.clear();
    RemoveFile();
    m_told = {};
}

std::optional<JournalTrouble> ModelJournal::TakeTrouble() { return std::exchange(m_trouble, std::nullopt); }

void ModelJournal::Fail(JournalTrouble::Kind kind, const std::string& path, int error) {
    const bool writing = kind == JournalTrouble::kNotWritten;
    if (!writing || !m_failing) m_trouble = {kind, path, std::strerror(error)};
    m_failing |= writing;
}

// ---- where it lies ------------------------------------------------------------------------------------

/// A new journal for the model at the first place where there can be one.
void ModelJournal::Place(bool unsaved) {
    m_touched.clear();
    m_emptied = false;
    NoteSettings();
    std::vector<std::string> places;
    if (!m_modelPath.empty()) places = {JournalBeside(m_modelPath), JournalInState(m_modelPath)};
    const bool ownUnnamed = m_modelPath.empty() && m_file.IsOpen();
    places.push_back(ownUnnamed ? m_file.Path() : NewJournalInState());
    int first = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i].empty()) continue;
        int error = ENOMEM;
        try {
            error = PlaceAt(places[i], unsaved);
        } catch (const std::bad_alloc&) {
        }
        if (error == 0) {
            m_failing = false;
            if (const std::string old = std::exchange(m_broughtBack, {}); !old.empty() && old != m_file.Path())
                DiscardJournal(old);
            return;
        }
        if (first == 0) first = error;
        if (error != EWOULDBLOCK || i + 1 == places.size()) continue;
        Fail(JournalTrouble::kHeldByAnother, places[i], error);
        i = places.size() - 2;  // a file of its own, then
    }
    Fail(JournalTrouble::kNotWritten, places.front(), first != 0 ? first : ENOENT);
}

/// The new journal stands whole before it takes the name of an old one.
int ModelJournal::PlaceAt(const std::string& path, bool unsaved) {
    const bool ours = m_file.Stands() && m_file.Path() == path;
    HeldFile before;  // what another session has left there
    if (!ours) {
        std::error_code ignored;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
        if (const int error = before.Take(path, HeldFile::Mode::kMake)) return error;
    }
    HeldFile next;
    int error = next.Take(path + ".new", HeldFile::Mode::kMakeEmpty);
    const JournalHeader header{BaseOf(m_modelPath), unsaved, m_modelPath, 0};
    std::string bytes = JournalHeaderBytes(header);
    const bool kept = before.Length() > bytes.size() && path != m_broughtBack && IsWorthKeeping(path);
    Told told = m_told;
    told.steps = 0;
    told.counters.clear();
    if (unsaved) bytes += Describe(Scope::kWhole, told);
    if (error == 0) error = next.Append(bytes, m_sync);
    if (error == 0 && kept) KeepAside(path);
    if (error == 0) error = next.RenameTo(path, m_sync);
    if (error != 0) {
        next.Remove();
        if (before.Length() == 0) before.Remove();
        return error;
    }
    // The file as it is now under one more name: should somebody replace it, the steps have their base still.
    // The file system may not have such names; then there is none.
    ::unlink(BaseBeside(path).c_str());
    if (header.base.file && !unsaved) (void)!::link(m_modelPath.c_str(), BaseBeside(path).c_str());
    if (!ours) RemoveFile();
    m_file = std::move(next);
    m_told = std::move(told);
    m_baseless = !unsaved && !header.base.file;
    return 0;
}

// ---- steps --------------------------------------------------------------------------------------------

void ModelJournal::OnChanged(const CGouJianEx& component) {
    m_touched.push_back(component.get_m_dwGouJianID());
}

void ModelJournal::OnEmptied() {
    m_touched.clear();
    m_emptied = true;
}

bool ModelJournal::Due() const {
    return !m_touched.empty() || m_emptied || m_told.tolerance != g_cTvoProfile.m_nNetTolerance ||
           m_told.storey != m_db->GetCurCeng() || m_told.data != DataOf(*m_db, *m_host);
}

void ModelJournal::Flush() {
    if (!m_db) return;
    int error = ENOMEM;
    try {
        if (!Due()) return;
        // Where a write has failed, nobody knows what of it the disk has.
        if (m_failing || !m_file.Stands() || m_file.Length() > m_mostLength) return Place(true);
        error = Append();
    } catch (const std::bad_alloc&) {
    }
    m_touched.clear();
    m_emptied = false;
    if (error == 0) return;
    NoteSettings();  // the next step tells all
    Fail(JournalTrouble::kNotWritten, m_file.Path(), error);
}

void ModelJournal::NoteSettings() {
    m_told.tolerance = g_cTvoProfile.m_nNetTolerance;
    m_told.storey = m_db->GetCurCeng();
    try {
        m_told.data = DataOf(*m_db, *m_host);
    } catch (const std::bad_alloc&) {
    }
}

int ModelJournal::Append() {
    Told told = m_told;
    const int error =
        m_file.Append(Describe(m_emptied || m_baseless ? Scope::kWhole : Scope::kChanges, told), m_sync);
    if (error != 0) return error;
    m_told = std::move(told);
    m_baseless = false;
    return 0;
}

/// The bytes of the next step. What it tells is entered in `told`.
std::string ModelJournal::Describe(Scope scope, Told& told) {
    JournalStep step;
    MemoryStream blocks;
    step.whole = scope == Scope::kWhole;
    const bool first = told.steps == 0;
    if (step.whole) told.counters.clear();
    step.number = ++told.steps;
    step.tolerance = told.tolerance = g_cTvoProfile.m_nNetTolerance;
    step.currentStorey = told.storey = m_db->GetCurCeng();
    for (const auto& [type, highest] : CountersOf(*m_db)) {
        const auto [at, isNew] = told.counters.emplace(type, highest);
        if (!isNew && at->second == highest && !first) continue;
        at->second = highest;
        step.counters.emplace_back(type, highest);
    }
    if (std::string data = DataOf(*m_db, *m_host); data != told.data || first || step.whole) {
        told.data = std::move(data);
        step.hostData = told.data;
    }
    if (step.whole) {
        const ModelContent content = ContentOf(*m_db);
        for (const auto* family : {&content.nodes, &content.lines, &content.plates})
            for (CGouJianEx* component : *family) Add(step, blocks, *component);
        for (const auto& [type, family] : content.others)
            for (CGouJianEx* component : family) Add(step, blocks, *component);
    } else {
        std::sort(m_touched.begin(), m_touched.end());
        m_touched.erase(std::unique(m_touched.begin(), m_touched.end()), m_touched.end());
        for (const std::uint32_t id : m_touched) {
            if (CGouJianEx* component = m_db->FindGouJian(id)) Add(step, blocks, *component);
            else step.changes.push_back({id, {}, 0, {}, 0});
        }
    }
    step.blocks = blocks.Bytes();
    return StepBytes(step);
}

void ModelJournal::Add(JournalStep& step, MemoryStream& blocks, CGouJianEx& component) {
    const SectionKind kind = KindOf(component);
    if (kind == SectionKind{}) return;  // a file doesn't hold it either
    const std::size_t before = blocks.Size();
    if (kind == SectionKind::kHost) m_host->Write(component, blocks.Stream());
    else component.WriteBinary(blocks.Stream());
    step.changes.push_back({component.get_m_dwGouJianID(), kind, component.get_m_dwGouJianNO(),
                            AttributesOf(component, kind),
                            static_cast<std::uint32_t>(blocks.Size() - before)});
}

SectionKind ModelJournal::KindOf(CGouJianEx& component) {
    switch (component.QueryBasicType()) {
        case kBasicNode:
            return SectionKind::kNodes;
        case kBasicLine:
            return SectionKind::kLines;
        case kBasicPlate:
            return SectionKind::kPlates;
        default:
            break;
    }
    signed char& known = m_known[component.get_Gjlx()];
    if (known == 0) known = m_host->Make(component.get_Gjlx()) ? 1 : -1;
    return known > 0 ? SectionKind::kHost : SectionKind{};
}
