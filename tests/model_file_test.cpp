// Model files: what is saved comes back, and what is damaged is told and mended as far as it goes.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "host/failure.h"
#include "host/models/model_build.h"
#include "host/models/model_plan.h"
#include "host/models/model_writer.h"
#include "host/models/text_form.h"
#include "model_tongue.h"
#include "platform/errors.h"

namespace {

namespace fs = std::filesystem;

class ModelFileTest : public testing::Test {
protected:
    ModelFileTest() {
        std::string name = (fs::temp_directory_path() / "tvo_model_XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~ModelFileTest() override {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }

    std::string File(const std::string& name = "a.tvo") const { return (m_folder / name).string(); }
    static std::string Read(const std::string& path) {
        std::ostringstream bytes;
        bytes << std::ifstream(path, std::ios::binary).rdbuf();
        return bytes.str();
    }
    std::string Write(const std::string& bytes, const std::string& name = "a.tvo") const {
        std::ofstream(File(name), std::ios::binary) << bytes;
        return File(name);
    }
    std::string Names() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder)) names.insert(entry.path().filename());
        std::string text;
        for (const std::string& name : names) text += name + " ";
        return text;
    }
    /// The bytes of the model with everything in it.
    std::string Everything() const {
        CTestNet net;
        BuildEverything(net);
        SaveModel(File("everything"), net, m_host, false);
        return Read(File("everything"));
    }
    /// What opening says, or nothing when it went well.
    std::string Refusal(const std::string& bytes, CGridDataBase& into) const {
        try {
            OpenModel(Write(bytes), into, m_host);
        } catch (const DataFailure& failure) {
            return failure.what();
        }
        return "";
    }

    fs::path m_folder;
    NoteHost m_host;
};

std::string RandomNet(std::mt19937& rng) {
    std::string text;
    const auto lattice = [&] { return std::to_string(static_cast<int>(rng() % 13) * 1000); };
    for (int i = 0; i < 25; ++i) {
        switch (rng() % 6) {
            case 0: text += "arc " + lattice() + "," + lattice() + " 3000 " + std::to_string(rng() % 360) + ".." + std::to_string(rng() % 360); break;
            case 1: text += "storey " + std::to_string(rng() % 3); break;
            case 2: text += "0,0 - 12000,500; delete " + lattice() + "," + lattice(); break;
            default: text += lattice() + "," + lattice() + " - " + lattice() + "," + lattice(); break;
        }
        text += "; ";
    }
    return text;
}

}  // namespace

// ---- what is saved comes back ---------------------------------------------------------------------

TEST_F(ModelFileTest, EverythingComesBackAndTheBytesStayTheSame) {
    const CToleranceScope tolerance(35);
    CTestNet net;
    BuildEverything(net);
    net.SetCurCeng(2);
    const std::string before = TextOfModel(net);
    const SavedModel saved = SaveModel(File(), net, m_host);
    EXPECT_EQ(net.GetContain().IfModified(), 0);
    EXPECT_EQ(saved.bytes, Read(File()).size());
    EXPECT_EQ(saved.plates, 2u);
    EXPECT_EQ(saved.others, 1u);

    g_cTvoProfile.m_nNetTolerance = 90;
    CTestNet opened;
    Build(opened, "0,0 - 1000,0; 500,-500 - 500,500");
    opened.m_bAutoMerge = 0;
    m_host.m_motto = "";
    const BuiltModel built = OpenModel(File(), opened, m_host);
    EXPECT_EQ(TextOfModel(opened), before);
    EXPECT_EQ(built.Remarks(), "");
    EXPECT_EQ(m_host.m_motto, "plates on grids");
    EXPECT_EQ(opened.CanUndo(), 0);
    EXPECT_EQ(opened.GetContain().IfModified(), 0);
    EXPECT_EQ(opened.m_bAutoMerge, 0);  // the session's

    SaveModel(File("again.tvo"), opened, m_host);
    EXPECT_EQ(Read(File("again.tvo")), Read(File()));
    // Drawing goes on as if nothing had been. The plates are left to themselves here.
    for (CTestNet* model : {&net, &opened}) {
        model->SetCurCeng(-1);
        model->m_bAutoMerge = 1;
        g_pCurrentDataBase = model;
        Build(*model, "start; 1000,-500 - 1000,4500; delete 3000,2000; 0,1000 ~ 2000,1000 -30");
    }
    EXPECT_EQ(TextOfModel(opened), TextOfModel(net));
}

TEST_F(ModelFileTest, RandomNetsComeBack) {
    std::mt19937 rng(20240901);
    for (int round = 0; round < 60; ++round) {
        CTestNet net;
        const std::string text = RandomNet(rng);
        Build(net, text);
        SaveModel(File(), net, m_host, false);
        CTestNet opened;
        OpenModel(File(), opened, m_host);
        ASSERT_EQ(TextOfModel(opened), TextOfModel(net)) << "round " << round << ": " << text;
        SaveModel(File("again"), opened, m_host, false);
        ASSERT_EQ(Read(File("again")), Read(File())) << "round " << round << ": " << text;
    }
}

TEST_F(ModelFileTest, LongRowsAreCutIntoSections) {
    CTestNet net;
    for (int i = 0; i < 20000; ++i) net.AddNetNode(static_cast<float>(i % 200) * 100, static_cast<float>(i) / 200 * 100);
    SaveModel(File(), net, m_host, false);
    std::string bytes = Read(File());
    const ModelFile file = TakeApart(bytes);
    ASSERT_EQ(file.sections.size(), 4u);  // counters, two of nodes, the host's data
    CTestNet opened;
    OpenModel(File(), opened, m_host);
    EXPECT_EQ(TextOfModel(opened), TextOfModel(net));
    // A damage costs one of them.
    bytes[static_cast<std::size_t>(file.sections[1].offset) + 5000] ^= 1;
    const ModelFile damaged = TakeApart(bytes);
    ModelPlan plan = PlanModel(damaged, m_host);
    EXPECT_EQ(BuildModel(plan, damaged.header, opened, m_host).nodes, 20000u - kMostInSection);
}

TEST_F(ModelFileTest, AModelOfNothingComesBack) {
    CTestNet net, opened;
    m_host.m_motto = "";
    SaveModel(File(), net, m_host);
    OpenModel(File(), opened, m_host);
    EXPECT_EQ(TextOfModel(opened), TextOfModel(net));
}

TEST_F(ModelFileTest, TypesThatNobodyKnowsAreLeftOutAndTold) {
    CTestNet net;
    BuildEverything(net);
    const SavedModel saved = SaveModel(File(), net, ModelHost());
    EXPECT_EQ(saved.leftOut, 1u);
    CTestNet opened;
    EXPECT_EQ(OpenModel(File(), opened, ModelHost()).plates, 2u);
}

// ---- damage ---------------------------------------------------------------------------------------

TEST_F(ModelFileTest, ACutFileIsRefusedAndTheOpenModelStands) {
    const std::string whole = Everything();
    CTestNet net;
    Build(net, "0,0 - 1000,0");
    const std::string before = TextOfModel(net);
    std::vector<std::size_t> cuts{0, 4, 8, kModelHeaderSize - 1, kModelHeaderSize};
    for (const ModelSection& section : TakeApart(whole).sections)
        for (const std::size_t at : {0u, 1u, 31u, 32u, 33u}) cuts.push_back(static_cast<std::size_t>(section.offset) + at);
    std::mt19937 rng(5);
    for (int i = 0; i < 300; ++i) cuts.push_back(rng() % whole.size());
    for (const std::size_t cut : cuts) {
        const std::string said = Refusal(whole.substr(0, cut), net);
        ASSERT_NE(said.find("byte "), std::string::npos) << "cut at " << cut << ": " << said;
        ASSERT_EQ(TextOfModel(net), before) << "cut at " << cut;
    }
    EXPECT_EQ(Refusal(whole, net), "");
    EXPECT_NE(Refusal(whole + std::string(40, 'x'), net).find("there is no whole head"), std::string::npos);
    const std::size_t lines = SectionAt(whole, SectionKind::kLines);
    EXPECT_NE(Refusal(whole.substr(0, lines + 40), net).find("lines section at byte " + std::to_string(lines) + ": the file ends within it"),
              std::string::npos);
}

// A flipped bit never goes unnoticed. What is kept of the rest is as it was: every component that is brought back was
// in the model, letter by letter but for the lines at a node and what a header would have told.
TEST_F(ModelFileTest, FlippedBitsAreFoundAndTheRestIsBroughtBack) {
    const std::string whole = Everything();
    const auto withoutStar = [](std::vector<std::string> lines) {
        std::set<std::string> known;
        for (std::string& line : lines) known.insert(line.substr(0, line.find(" star")));
        return known;
    };
    CTestNet original;
    ASSERT_EQ(Refusal(whole, original), "");
    const auto known = withoutStar(LinesOfModel(original));
    CTestNet net;
    std::mt19937 rng(6);
    std::size_t broughtBack = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string bytes = whole;
        for (auto flips = 1 + rng() % 3; flips > 0; --flips) bytes[rng() % bytes.size()] ^= static_cast<char>(1 << rng() % 8);
        if (rng() % 8 == 0) bytes.erase(rng() % bytes.size(), 1 + rng() % 40);
        if (rng() % 8 == 0) bytes.insert(rng() % bytes.size(), 1 + rng() % 40, '\x55');
        if (bytes == whole) continue;
        const ModelFile file = TakeApart(bytes);
        ASSERT_FALSE(file.faults.empty()) << "round " << round;
        ModelPlan plan = PlanModel(file, m_host);
        BuildModel(plan, file.header, net, m_host);
        for (const std::string& line : withoutStar(LinesOfModel(net))) ASSERT_TRUE(known.count(line)) << "round " << round << ": " << line;
        broughtBack += LinesOfModel(net).size();
    }
    EXPECT_GT(broughtBack, 3000 * known.size() / 4);
}

TEST_F(ModelFileTest, ADamagedSectionCostsWhatDependsOnIt) {
    const std::string whole = Everything();
    struct {
        SectionKind kind;
        const char* name;
        const char* kept;  // nodes lines plates others
    } const rows[] = {
        {SectionKind::kCounters, "counters", "15 13 2 1"}, {SectionKind::kNodes, "nodes", "0 0 0 0"},
        {SectionKind::kLines, "lines", "15 0 0 0"},        {SectionKind::kPlates, "plates", "15 13 0 0"},
        {SectionKind::kHost, "host components", "15 13 2 0"}, {SectionKind::kData, "host data", "15 13 2 1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::size_t at = SectionAt(whole, row.kind);
        for (const std::size_t inside : {std::size_t{9}, kSectionHeadSize + 3}) {  // the head, the payload
            std::string bytes = whole;
            bytes[at + inside] ^= 0x10;
            const ModelFile file = TakeApart(bytes);
            ModelPlan plan = PlanModel(file, m_host);
            CTestNet net;
            const BuiltModel built = BuildModel(plan, file.header, net, m_host);
            std::ostringstream kept;
            kept << built.nodes << ' ' << built.lines << ' ' << built.plates << ' ' << built.others;
            EXPECT_EQ(kept.str(), row.kept);
            const std::string said = Refusal(bytes, net);
            EXPECT_NE(said.find("at byte " + std::to_string(at) + ": "), std::string::npos) << said;
            const std::string who = inside > kSectionHeadSize ? row.name + std::string(" section at") : "section ";
            EXPECT_NE(said.find(who), std::string::npos) << said;
        }
    }
}

TEST_F(ModelFileTest, NonsenseBehindTrueChecksumsIsRefused) {
    const std::string whole = Everything();
    const std::size_t nodes = SectionAt(whole, SectionKind::kNodes) + kSectionHeadSize;
    const std::size_t lines = SectionAt(whole, SectionKind::kLines) + kSectionHeadSize;
    const std::size_t plates = SectionAt(whole, SectionKind::kPlates) + kSectionHeadSize;
    const std::size_t host = SectionAt(whole, SectionKind::kHost) + kSectionHeadSize;
    const std::size_t counters = SectionAt(whole, SectionKind::kCounters) + kSectionHeadSize;
    struct {
        const char* name;
        std::size_t at;
        std::uint32_t word;
        const char* message;  // empty: opened
        std::size_t messageAt;
    } const rows[] = {
        {"NaN for x", nodes + 8, 0x7FC00000, "nodes section at byte", nodes},
        {"infinity for y", nodes + 12, 0xFF800000, "node 16777217 lies at", nodes},
        {"a node too far out", nodes + 8, 0x7F000000, "node 16777217 lies at", nodes},
        {"an identity twice", nodes + 16 + 4, 0x01000001, "identity 16777217 stands there twice", nodes + 16},
        {"an identity out of order", nodes + 4, 0x01000009, "is out of order", nodes + 16},
        {"a line's type byte on a node", nodes + 4, 0x02000001, "has type byte 2, which is wrong here", nodes},
        {"no type byte", nodes + 4, 1, "has type byte 0", nodes},
        {"no sequence number", nodes + 4, 0x01000000, "no number", nodes},
        {"a line from nowhere", lines + 16, 0x0100FFFF, "which is not there", lines},
        {"a line to a line", lines + 24, 0x02000001, "which is not there", lines},
        {"a kind of line", lines + 8, 7, "is of kind 7", lines},
        {"NaN for a bulge", lines + 28, 0x7FC00000, "has a bulge that is none", lines},
        {"a plate of too many sides", plates + 8, 100001, "a plate with impossible counts", plates},
        {"a plate of fewer than none", plates + 8, 0xFFFFFFFF, "a plate with impossible counts", plates},
        {"a remark longer than the section", host + 8, 0xFFFFFF00, "it ends within a component", host},
        {"a remark of another type", host + 4, 0x1F000001, "is of another type", host},
        {"a remark without bytes for its plate", host + 8, 3, "can't be read", host},
        {"a status that is none", host + 24, 3, "can't be read", host},
        {"a counter behind", counters + 4, 3, "the counter of type 1 lies below", counters - kSectionHeadSize},
        {"a counter of no type", counters, 0, "type byte 0 is out of place", counters},
        {"no tolerance", 36, 0, "header at byte 36: a net tolerance of 0", 36},
        {"another unit", 32, 1, "header at byte 32: unit 1", 32},
        {"another version", 8, 2, "header at byte 8: version 2", 8},
        {"a count that is not so", 16, 99, "it tells of 99 nodes, and there are 15", 0},
        {"a section of another kind", lines - kSectionHeadSize + 4, FourLetters("WALL"), "it tells of 13 lines", 0},
        {"a section longer than the file", lines - kSectionHeadSize + 16, 0x7FFFFFFF, "the file ends within it", lines - kSectionHeadSize},
        {"a section with a count of its own", lines - kSectionHeadSize + 12, 0xFFFFFFFF, "it tells of 13 lines", 0},
        {"a host's type that is not known", host - kSectionHeadSize + 8, 31, "components of type 31 are not known", host - kSectionHeadSize},
        {"a plate that names no line", plates + 20, 0x0200FFFF, "", 0},
        {"a plate that doesn't close", plates + 24, 0, "", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::string bytes = whole;
        SetWord(bytes, row.at, row.word);
        Reseal(bytes);
        CTestNet net;
        const std::string said = Refusal(bytes, net);
        if (*row.message == 0) {
            EXPECT_EQ(said, "");
            CArray<CGouJianEx*> left;
            EXPECT_EQ(net.GetGouJianArray(GJLX_MIAN, &left), 1);
            EXPECT_EQ(OpenModel(File(), net, m_host).Remarks(),
                      "1 plates could not be resolved and were left out; 1 components of which the ground is missing were left out: component 503316481");
        } else {
            EXPECT_NE(said.find(row.message), std::string::npos) << said;
            EXPECT_NE(said.find("at byte " + std::to_string(row.messageAt)), std::string::npos) << said;
            EXPECT_EQ(LinesOfModel(net).size(), 0u);
        }
    }
}

// Whatever numbers stand there, nothing hangs or falls, and what was built can be saved and edited.
TEST_F(ModelFileTest, RandomNumbersBehindTrueChecksumsDoNoHarm) {
    const std::string whole = Everything();
    SetErrorHandler([](int, const char*) {});  // numbers that are nearly used up are told of, again and again
    std::mt19937 rng(7);
    const std::uint32_t odd[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x7F800000, 0x7FC00000, 0x01000001, 0x02000002, 0x5D5E0B6B};
    for (int round = 0; round < 700; ++round) {
        std::string bytes = whole;
        for (auto i = 1 + rng() % 4; i > 0; --i) SetWord(bytes, rng() % (bytes.size() / 4) * 4, rng() % 2 ? odd[rng() % 10] : static_cast<std::uint32_t>(rng()));
        if (TakeApart(bytes).sections.empty()) continue;
        Reseal(bytes);
        CTestNet net;
        const ModelFile file = TakeApart(bytes);
        ModelPlan plan = PlanModel(file, m_host);
        const bool sound = file.faults.empty() && plan.faults.empty();
        BuildModel(plan, std::nullopt, net, m_host);
        const std::string built = TextOfModel(net);
        SaveModel(File("b.tvo"), net, m_host, false);
        CTestNet again;
        OpenModel(File("b.tvo"), again, m_host);
        ASSERT_EQ(TextOfModel(again), built) << "round " << round << (sound ? ", sound" : "");
        net.AddNetLine(P(0, 0), P(5000, 5000), 0, 0);
    }
    SetErrorHandler(nullptr);
}

// ---- the file on the disk -------------------------------------------------------------------------

TEST_F(ModelFileTest, SavingReplacesTheFileAndKeepsThePrevious) {
    CTestNet net;
    Build(net, "0,0 - 1000,0");
    SaveModel(File(), net, m_host);
    const std::string first = Read(File());
    EXPECT_EQ(Names(), "a.tvo ");
    ::chmod(File().c_str(), 0640);
    fs::create_symlink("a.tvo", m_folder / "link.tvo");
    Write("left by a writer that was killed", "a.tvo.saving999999");
    Write("not of that kind", "a.tvo.saving");
    Build(net, "5000,0 - 6000,0");
    SaveModel(File("link.tvo"), net, m_host);
    EXPECT_EQ(Names(), "a.tvo a.tvo.saving a.tvo~ link.tvo ");
    EXPECT_TRUE(fs::is_symlink(m_folder / "link.tvo"));
    EXPECT_EQ(Read(File("a.tvo~")), first);
    EXPECT_NE(Read(File()), first);
    EXPECT_EQ(fs::status(File()).permissions(), fs::perms(0640));
    // A link to nothing yet.
    fs::create_directory(m_folder / "sub");
    fs::create_symlink("sub/new.tvo", m_folder / "later.tvo");
    SaveModel(File("later.tvo"), net, m_host);
    EXPECT_EQ(Read(File("sub/new.tvo")), Read(File()));
}

TEST_F(ModelFileTest, WhatCannotBeWrittenIsToldAndLeavesTheModelModified) {
    CTestNet net;
    Build(net, "0,0 - 1000,0");
    fs::create_symlink("/nowhere/b.tvo", m_folder / "broken.tvo");
    struct {
        std::string path;
        const char* reason;
    } const rows[] = {
        {"/nowhere/a.tvo", "No such file or directory"},
        {m_folder.string(), "Is a directory"},
        {"/dev/full", "not a regular file"},
        {File("broken.tvo"), "No such file or directory"},
        {"", "No such file or directory"},
        {File(std::string(300, 'x')), "File name too long"},
    };
    for (const auto& row : rows) {
        try {
            SaveModel(row.path, net, m_host);
            ADD_FAILURE() << row.path << " was written";
        } catch (const DataFailure& failure) {
            EXPECT_EQ(failure.what(), "cannot write " + row.path + ": " + row.reason);
        }
        EXPECT_EQ(net.GetContain().IfModified(), 1);
    }
    EXPECT_EQ(Names(), "broken.tvo ");
    for (const auto& [path, reason] : {std::pair("/nowhere/a.tvo", "No such file"), std::pair("/dev/zero", "not a regular file"),
                                       std::pair("/tmp", "Is a directory")}) {
        try {
            OpenModel(path, net, m_host);
            ADD_FAILURE() << path << " was opened";
        } catch (const DataFailure& failure) {
            EXPECT_NE(std::string(failure.what()).find(reason), std::string::npos) << failure.what();
        }
    }
}

// ---- text -----------------------------------------------------------------------------------------

TEST_F(ModelFileTest, TheTextFormBringsBackAllButThePlacesOfNodes) {
    CTestNet net;
    BuildEverything(net);
    SaveModelText(File("a.txt"), net);
    std::string text = Read(File("a.txt"));
    for (std::size_t at = 0; (at = text.find("###Wang", at)) != std::string::npos; at += 40) text.insert(at, "; a remark\n\n; another\n");
    CTestNet loaded;
    const TextTally tally = LoadModelText(Write(text, "b.txt"), loaded);
    EXPECT_EQ(tally.nodes, 15u);
    EXPECT_EQ(tally.lines, 13u);
    EXPECT_EQ(tally.plates, 2u);
    for (const CGjNetNode* node : NodesOf(loaded)) EXPECT_EQ(node->m_fX, 0);
    SaveModelText(File("c.txt"), loaded);
    const auto withoutPlaces = [](std::string t) {  // the last two numbers of a node's second line
        std::istringstream in(t);
        std::string out, line;
        for (bool node = false; std::getline(in, line);) {
            if (node) line.resize(line.rfind(',', line.rfind(',') - 1));
            node = line.starts_with("###WangDian");
            out += line + "\n";
        }
        return out;
    };
    EXPECT_EQ(withoutPlaces(Read(File("c.txt"))), withoutPlaces(Read(File("a.txt"))));
    EXPECT_THROW(LoadModelText(File("b.txt"), loaded), DataFailure);  // not empty
}

TEST_F(ModelFileTest, TextsThatMakeNoSenseAreRefusedOrReadInPart) {
    CTestNet net;
    BuildEverything(net);
    SaveModelText(File("a.txt"), net);
    const std::string whole = Read(File("a.txt"));
    std::mt19937 rng(8);
    int refused = 0;
    for (int round = 0; round < 400; ++round) {
        std::string text = whole.substr(0, rng() % 3 ? whole.size() : rng() % whole.size());
        for (auto i = rng() % 4; i > 0 && !text.empty(); --i) text[rng() % text.size()] = static_cast<char>(rng() % 2 ? rng() : "0123456789,-#\n;"[rng() % 15]);
        CTestNet loaded;
        try {
            LoadModelText(Write(text, "b.txt"), loaded);
        } catch (const DataFailure& failure) {
            ++refused;
            ASSERT_NE(std::string(failure.what()).find("b.txt: byte "), std::string::npos) << failure.what();
            ASSERT_EQ(LinesOfModel(loaded).size(), 0u) << "round " << round;
        }
    }
    EXPECT_GT(refused, 50);
}
