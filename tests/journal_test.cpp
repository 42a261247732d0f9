// Journals: whatever is done to a model and however the session ends, it comes back as it was.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>

#include "file_fixtures.h"
#include "host/failure.h"
#include "host/host_data_base.h"
#include "host/models/journal_recovery.h"
#include "host/models/model_journal.h"
#include "host/models/model_writer.h"
#include "host/tvo_model_host.h"
#include "host/tvo_rider.h"
#include "model/gj_text.h"
#include "model/profile.h"
#include "plates/mian_goujian.h"

namespace {

namespace fs = std::filesystem;
const TvoModelHost kHost;

std::string Read(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}
void Write(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

/// A model under random edits, the same for the same seed.
class Session {
public:
    explicit Session(unsigned seed) : m_rng(seed) {}

    void Step() {
        g_pCurrentDataBase = &m_db;
        switch (m_rng() % 20) {
            case 0: case 1: m_db.Undo(nullptr, nullptr); break;
            case 2: m_db.Redo(nullptr, nullptr); break;
            case 3: m_db.SetCurCeng(static_cast<int>(m_rng() % 3)); break;
            case 4: m_db.GetBackgrnd().m_strKuaX = m_rng() % 2 ? "3*4" : "6*40"; m_db.m_bGridShown = true; break;
            case 5: m_rng() % 2 ? m_db.Hide_GouJian(GJLX_NET_LINE) : m_db.Show_GouJian(GJLX_NET_LINE); break;
            case 6: m_db.SortBianHaoAll(); break;
            case 7: m_db.ScaleText(1.5f, nullptr); break;
            case 8: m_db.m_bBianHaoDirty = 1; g_cTvoProfile.m_nNetTolerance = 40 + static_cast<int>(m_rng() % 3); break;
            default:
                m_db.Start();
                for (auto edits = 1 + m_rng() % 3; edits > 0; --edits) Edit();
        }
    }
    /// The model as a file.
    std::string Saved() { return SavedOf(m_db); }
    static std::string SavedOf(CTvoHostDataBase& db) {
        const TempFolder folder;
        const int modified = db.GetContain().IfModified();
        SaveModel(folder.path + "a", db, kHost, false);
        db.GetContain().SetModifiedFlag(modified);
        return Read(folder.path + "a");
    }

    CTvoHostDataBase m_db;

private:
    CFPoint Point() {
        const auto x = static_cast<float>(m_rng() % 9), y = static_cast<float>(m_rng() % 7);
        return {x * 1000, y * 1000, 0};
    }
    template <class Component>
    Component* Any(unsigned char type) {
        CArray<CGouJianEx*> all;
        m_db.GetGouJianArray(type, &all);
        std::sort(all.begin(), all.end(), [](auto* a, auto* b) { return a->m_dwGouJianID < b->m_dwGouJianID; });
        return all.IsEmpty() ? nullptr : static_cast<Component*>(all[static_cast<int>(m_rng() % static_cast<unsigned>(all.GetSize()))]);
    }
    void Edit() {
        const CFPoint a = Point(), b = Point();
        switch (m_rng() % 10) {
            case 0: m_db.DrawTextA(a.x, a.y, "厅 hall", m_rng() % 3, GJ_STATUS_NORMAL, 250, 0, nullptr, 0); break;
            case 1: m_db.DrawCircle(a.x, a.y, 700, 0, 0xFF, 2, GJ_STATUS_NORMAL, 1); break;
            case 2: if (auto* line = Any<CGjNetLine>(GJLX_NET_LINE)) m_db.AddRider(line, 240, m_rng() % 2, GJ_STATUS_NORMAL); break;
            case 3: m_db.FormPlates(); break;
            case 4: if (auto* plate = Any<CMianGouJian>(GJLX_MIAN)) m_db.SetLoad(plate, 2.5); break;
            case 5: m_db.KeepNode(m_db.AddNetNode(a.x + 300, a.y)); break;
            case 6: if (auto* line = Any<CGjNetLine>(GJLX_NET_LINE)) m_db.DoEdit([&] { m_db.DeleteNetLine(line); }); break;
            case 7: m_db.Clear_GouJian(GJLX_TEXT, 1); break;
            default: m_db.DoEdit([&] { m_db.AddNetLine(a, b, m_rng() % 4 == 0, -40); });
        }
    }
    std::mt19937 m_rng;
};

class Journal : public testing::Test {
protected:
    Journal() {
        ::setenv("XDG_STATE_HOME", (m_folder.path + "state").c_str(), 1);
        m_journal.SetSync(false);
    }
    ~Journal() override { g_cTvoProfile.m_nNetTolerance = m_tolerance; }

    std::string File() const { return m_folder.path + "house.tvo"; }
    std::string JournalFile() const { return m_folder.path + ".house.tvo-journal"; }
    /// What the journal of that file gives, saved.
    std::string Recovered(const std::string& journal, RecoveredModel* result = nullptr) {
        CTvoHostDataBase db;
        const RecoveredModel recovered = RecoverJournal(journal, db, kHost);
        if (result) *result = recovered;
        return Session::SavedOf(db);
    }

    const int m_tolerance = g_cTvoProfile.m_nNetTolerance;
    TempFolder m_folder;
    ModelJournal m_journal;
};

}  // namespace

TEST_F(Journal, RandomSessionsComeBackByteForByte) {
    for (unsigned round = 0; round < 40; ++round) {
        Session session(20261121 + round);
        ModelJournal journal;
        journal.SetSync(false);
        if (round % 5 == 4) journal.SetMostLength(3000);
        if (round % 2) {
            for (int i = 0; i < 10; ++i) session.Step();
            SaveModel(File(), session.m_db, kHost, false);
        }
        journal.Begin(session.m_db, kHost, round % 2 ? File() : "");
        for (unsigned step = 0; step < 40; ++step) {
            session.Step();
            if (step % 3 == 0) journal.Flush();
            if (step % 17 == 16) EmptyModel(session.m_db);
            if (step % 13 == 12) {
                SaveModel(File(), session.m_db, kHost, false);
                journal.OnSaved(File());
            }
            if (step % 4 != 3) continue;
            journal.Flush();
            if (journal.Steps() == 0) continue;
            ASSERT_EQ(Recovered(journal.Path()) == session.Saved(), true) << "round " << round << ", step " << step;
        }
        const std::string path = journal.Path();
        journal.Close();
        EXPECT_FALSE(fs::exists(path));
    }
}

// A cut or a flipped bit costs the steps from there on, and whoever recovers hears of those that stood behind it.
TEST_F(Journal, ADamageCostsTheStepsFromThereOn) {
    Session session(7);
    std::vector<std::string> states{session.Saved()};
    std::vector<std::size_t> ends;
    m_journal.Begin(session.m_db, kHost, "");
    while (m_journal.Steps() < 6) {
        session.Step();
        const auto before = m_journal.Steps();
        m_journal.Flush();
        if (m_journal.Steps() == before) continue;
        states.push_back(session.Saved());
        ends.push_back(Read(m_journal.Path()).size());
    }
    const std::string whole = Read(m_journal.Path());
    const std::string damaged = m_folder.path + "damaged";
    const auto check = [&](const std::string& bytes, std::size_t at, bool cut) {
        Write(damaged, bytes);
        const auto left = static_cast<std::size_t>(std::upper_bound(ends.begin(), ends.end(), at) - ends.begin());
        const auto leftover = ReadLeftover(damaged);
        if (!leftover) return at < 60;  // in its head
        const std::size_t lost = cut ? 0 : ends.size() - left - 1;
        if (leftover->steps != left || leftover->lost != lost) return false;
        if (left == 0) return leftover->base == (lost > 0 ? JournalLeftover::Base::kMissing : JournalLeftover::Base::kStands);
        RecoveredModel result;
        return Recovered(damaged, &result) == states[left] && result.steps == left && result.lost == lost;
    };
    for (std::size_t cut = 0; cut < whole.size(); cut += cut < ends[3] ? 5 : 1) ASSERT_TRUE(check(whole.substr(0, cut), cut, true)) << "cut at " << cut;
    std::mt19937 rng(8);
    for (std::size_t at = 0; at < whole.size(); at += 1 + rng() % 7) {
        std::string bytes = whole;
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << rng() % 8));
        ASSERT_TRUE(check(bytes, at, false)) << "bit flipped at " << at;
    }
}

TEST_F(Journal, WhatIsSavedIsTheBaseAndACrashAboutASaveLosesNothing) {
    Session session(3);
    SaveModel(File(), session.m_db, kHost, false);
    m_journal.Begin(session.m_db, kHost, File());
    EXPECT_EQ(m_journal.Path(), JournalFile());
    EXPECT_EQ(FindLeftover(File())->held, true);
    for (int i = 0; i < 12; ++i) session.Step(), m_journal.Flush();
    const std::string journal = Read(JournalFile());
    SaveModel(File(), session.m_db, kHost, false);
    m_journal.OnSaved(File());
    EXPECT_EQ(m_journal.Steps(), 0u);
    m_journal.Close();
    EXPECT_FALSE(FindLeftover(File()).has_value());

    Write(JournalFile(), journal);  // as if the crash had come before OnSaved
    EXPECT_EQ(FindLeftover(File())->base, JournalLeftover::Base::kBefore);
    RecoveredModel result;
    EXPECT_TRUE(Recovered(JournalFile(), &result) == session.Saved());
    EXPECT_TRUE(result.alreadySaved);

    fs::remove(File() + "~");
    EXPECT_EQ(FindLeftover(File())->base, JournalLeftover::Base::kMissing);
    CTvoHostDataBase untouched;
    untouched.AddNetNode(0, 0);
    EXPECT_THROW(RecoverJournal(JournalFile(), untouched, kHost), DataFailure);
    EXPECT_EQ(untouched.GetGouJianCount(), 1);

    // Who begins over a journal that was left keeps it.
    m_journal.Begin(session.m_db, kHost, File(), /*unsaved=*/true);
    EXPECT_TRUE(Read(JournalFile() + "~") == journal);
    EXPECT_TRUE(Recovered(JournalFile()) == session.Saved());
}

// Who else writes the file, however often, takes nothing from what was not saved.
TEST_F(Journal, AFileThatOthersHaveReplacedIsStoodOnByAnotherName) {
    Session session(6), other(7);
    for (int i = 0; i < 20; ++i) session.Step();
    SaveModel(File(), session.m_db, kHost, false);
    {
        ModelJournal crashed;
        crashed.SetSync(false);
        crashed.Begin(session.m_db, kHost, File());
        while (crashed.Steps() < 5) session.Step(), crashed.Flush();
    }
    const std::string wanted = session.Saved();
    for (int i = 0; i < 3; ++i) other.Step(), SaveModel(File(), other.m_db, kHost, false);
    EXPECT_EQ(FindLeftover(File())->base, JournalLeftover::Base::kBefore);
    RecoveredModel result;
    EXPECT_TRUE(Recovered(JournalFile(), &result) == wanted);
    EXPECT_TRUE(result.replaced);

    m_journal.Begin(other.m_db, kHost, File());  // not wanted now: kept with what it stands on
    EXPECT_TRUE(Recovered(JournalFile() + "~") == wanted);
    m_journal.Begin(session.m_db, kHost, "", /*unsaved=*/true, JournalFile() + "~");  // wanted after all
    EXPECT_TRUE(Recovered(m_journal.Path()) == wanted);
    m_journal.Close();
    for (const auto& entry : fs::directory_iterator(m_folder.path)) EXPECT_EQ(entry.path().string().find("journal"), std::string::npos) << entry.path();
}

TEST_F(Journal, AModelThatStandsOnNothingKnowsItsFileAllTheSame) {
    Session session(9), other(10);
    for (int i = 0; i < 20; ++i) session.Step(), other.Step();
    SaveModel(File(), session.m_db, kHost, false);
    {
        ModelJournal crashed;  // of a model that was brought back before
        crashed.SetSync(false);
        crashed.Begin(session.m_db, kHost, File(), /*unsaved=*/true);
        while (crashed.Steps() < 5) session.Step(), crashed.Flush();
    }
    RecoveredModel result;
    EXPECT_TRUE(Recovered(JournalFile(), &result) == session.Saved());
    EXPECT_FALSE(result.replaced);
    SaveModel(File(), other.m_db, kHost, false);
    EXPECT_TRUE(Recovered(JournalFile(), &result) == session.Saved());
    EXPECT_TRUE(result.replaced);
}

TEST_F(Journal, TheSecondEditorOfAFileIsToldAndKeepsAJournalToo) {
    Session first(3), second(4);
    SaveModel(File(), first.m_db, kHost, false);
    m_journal.Begin(first.m_db, kHost, File());
    ModelJournal other;
    other.Begin(second.m_db, kHost, File());
    const auto trouble = other.TakeTrouble();
    ASSERT_TRUE(trouble && trouble->kind == JournalTrouble::kHeldByAnother);
    EXPECT_EQ(trouble->path, JournalFile());
    EXPECT_FALSE(other.TakeTrouble().has_value());
    EXPECT_NE(other.Path().find("/state/tvobase/unnamed-"), std::string::npos) << other.Path();
    for (int i = 0; i < 5; ++i) second.Step(), other.Flush();
    EXPECT_TRUE(FindLeftovers().empty());  // it is held
    const std::string left = Read(other.Path());
    Write(m_folder.path + "state/tvobase/unnamed-0-1.tvo-journal", left);
    ASSERT_EQ(FindLeftovers().size(), 1u);
    DiscardJournal(FindLeftovers()[0].path);
    EXPECT_TRUE(FindLeftovers().empty());
}

TEST_F(Journal, AFolderThatGoesTakesNoStepWithIt) {
    Session session(8);
    const std::string folder = m_folder.path + "gone";
    fs::create_directory(folder);
    SaveModel(folder + "/house.tvo", session.m_db, kHost, false);
    m_journal.Begin(session.m_db, kHost, folder + "/house.tvo");
    for (int i = 0; i < 5; ++i) session.Step(), m_journal.Flush();
    fs::remove_all(folder);
    for (int i = 0; i < 15; ++i) session.Step(), m_journal.Flush();
    EXPECT_FALSE(m_journal.TakeTrouble().has_value()) << "there is another place";
    EXPECT_TRUE(Recovered(m_journal.Path()) == session.Saved());
}

TEST_F(Journal, ADiskThatIsFullIsToldOnceAndTriedAgain) {
    Session session(5);
    m_journal.Begin(session.m_db, kHost, "");
    for (int i = 0; i < 10; ++i) session.Step(), m_journal.Flush();
    ASSERT_FALSE(m_journal.TakeTrouble().has_value());
    const std::string before = session.Saved();
    const auto old = ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{}, tight{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    tight = limit;
    tight.rlim_cur = Read(m_journal.Path()).size() + 5;  // the next step is torn
    ::setrlimit(RLIMIT_FSIZE, &tight);
    session.m_db.Start();
    session.m_db.AddNetNode(90000, 90000);
    m_journal.Flush();
    EXPECT_EQ(m_journal.TakeTrouble()->kind, JournalTrouble::kNotWritten);
    tight.rlim_cur = 100;  // nor is there room for another journal
    ::setrlimit(RLIMIT_FSIZE, &tight);
    session.m_db.AddNetNode(91000, 90000);
    m_journal.Flush();
    EXPECT_FALSE(m_journal.TakeTrouble().has_value());
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::signal(SIGXFSZ, old);
    EXPECT_TRUE(Recovered(m_journal.Path()) == before);
    session.m_db.AddNetNode(92000, 90000);
    m_journal.Flush();
    EXPECT_TRUE(Recovered(m_journal.Path()) == session.Saved());
}
