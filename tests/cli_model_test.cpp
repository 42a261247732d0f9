// Model files from the command line: saving that is killed, disks that are full, info and recover.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>
#include <sstream>
#include <string>

#include "tvo_process.h"

namespace {

using nlohmann::json;

/// Axes every 6 m, n by n fields.
std::string Grid(int n) {
    std::ostringstream script;
    for (int i = 0; i <= n; ++i) {
        script << "line " << 6000 * i << " 0 " << 6000 * i << ' ' << 6000 * n << '\n';
        script << "line 0 " << 6000 * i << ' ' << 6000 * n << ' ' << 6000 * i << '\n';
    }
    return script.str();
}

std::set<std::string> NamesIn(const ScratchFolder& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) names.insert(entry.path().filename());
    return names;
}

/// A save of that process is under way, or has been killed.
bool IsSaving(const ScratchFolder& folder, pid_t process) {
    const auto names = NamesIn(folder);
    const std::string mark = ".saving" + std::to_string(process);
    return std::any_of(names.begin(), names.end(), [&](const std::string& name) { return name.ends_with(mark); });
}

/// Starts `tvo run SCRIPT` in a folder, kills it that time after its first save has begun, and waits for its end.
void RunAndKill(const ScratchFolder& folder, const char* script, useconds_t after) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const int nothing = ::open("/dev/null", O_RDWR);
        ::dup2(nothing, STDOUT_FILENO);
        if (::chdir(folder.Path().c_str()) == 0) ::execl(TVO_PROGRAM, TVO_PROGRAM, "run", script, static_cast<char*>(nullptr));
        ::_exit(127);
    }
    // How long a process takes to start depends on the machine and the build.
    for (int i = 0; i < 50'000 && !IsSaving(folder, child) && ::waitpid(child, nullptr, WNOHANG) == 0; ++i) ::usleep(100);
    ::usleep(after);
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child) << "it has ended by itself";
    ASSERT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << status;
}

}  // namespace

TEST(TvoModel, AKilledSaveLeavesTheOldOrTheNewFileWhole) {
    const ScratchFolder folder;
    const std::string grid = Grid(24), more = "start\nline 0 0 144000 144000\n";
    ASSERT_EQ(RunTvo({"run"}, grid + "save one.tvo\n" + more + "save two.tvo\nopen one.tvo\nsave a.tvo\n", folder.Path()).status, 0);
    const std::string one = ReadWholeFile(folder.File("one.tvo")), two = ReadWholeFile(folder.File("two.tvo"));
    ASSERT_GT(two.size(), one.size());
    std::string script = "open two.tvo\nsave a.tvo\nopen one.tvo\nsave a.tvo\n";
    for (int i = 0; i < 6; ++i) script += script;
    folder.Write("script", script);

    std::mt19937 rng(17);
    int ones = 0, twos = 0, inTheMiddle = 0;
#if defined(__SANITIZE_ADDRESS__)
    constexpr int kRounds = 60;  // a process takes long to start
#else
    constexpr int kRounds = 300;
#endif
    for (int round = 0; round < kRounds; ++round) {
        RunAndKill(folder, "script", static_cast<useconds_t>(rng() % 20000));
        const std::string found = ReadWholeFile(folder.File("a.tvo"));
        ASSERT_TRUE(found == one || found == two) << "round " << round << ": " << found.size() << " bytes";
        (found == one ? ones : twos) += 1;
        if (const auto names = NamesIn(folder); names.count("a.tvo~") != 0) {
            const std::string previous = ReadWholeFile(folder.File("a.tvo~"));
            ASSERT_TRUE(previous == one || previous == two) << "round " << round;
            if (names.size() > 5) ++inTheMiddle;
        }
    }
    // Some of them must have been hit while they wrote, or this test tells nothing.
    EXPECT_GT(ones, 0);
    EXPECT_GT(twos, 0);
    EXPECT_GT(inTheMiddle, kRounds / 30);
    // And what they left is gone with the next.
    EXPECT_EQ(RunTvo({"run"}, "open one.tvo\nsave a.tvo\n", folder.Path()).status, 0);
    EXPECT_EQ(NamesIn(folder), (std::set<std::string>{"a.tvo", "a.tvo~", "one.tvo", "two.tvo", "script"}));
}

TEST(TvoModel, AFullDiskIsToldAndNothingIsLost) {
    const ScratchFolder folder;
    ASSERT_EQ(RunTvo({"run"}, "line 0 0 6000 0\nsave a.tvo\n", folder.Path()).status, 0);
    const std::string before = ReadWholeFile(folder.File("a.tvo"));
    folder.Write("script", Grid(40) + "save a.tvo\nstat\n");
    // A limit on the length of files stands for the disk; 512 or 1024 bytes a block.
    const std::string command = "cd '" + folder.Path().string() + "' && trap '' XFSZ && ulimit -f 20 && '" TVO_PROGRAM
                                "' run --keep-going script > out 2> err";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
    EXPECT_NE(ReadWholeFile(folder.File("err")).find("cannot write a.tvo: File too large"), std::string::npos);
    EXPECT_NE(ReadWholeFile(folder.File("out")).find("\"nodes\":1681"), std::string::npos);
    EXPECT_EQ(ReadWholeFile(folder.File("a.tvo")), before);
    EXPECT_EQ(NamesIn(folder), (std::set<std::string>{"a.tvo", "script", "out", "err"}));
}

TEST(TvoModel, ASavedModelGoesOnWhereItWas) {
    const ScratchFolder folder;
    const std::string drawn = Grid(4) + "set storey 3\nset tolerance 80\narc 0 0 9000 10 80\nset merge 0\n";
    const std::string goOn = "start\nline 0 3000 24000 3000\nbulge 1000 0 3000 0 -30\nundo\nredo\ndump\nsave b.tvo\n";
    const TvoRun through = RunTvo({"run"}, drawn + goOn, folder.Path());
    const std::string bytes = ReadWholeFile(folder.File("b.tvo"));
    ASSERT_EQ(RunTvo({"run"}, drawn + "save \"a model.tvo\"\n", folder.Path()).status, 0);
    const TvoRun later = RunTvo({"run"}, "node 1 1\nopen \"a model.tvo\"\nset merge 0\nundo\n" + goOn, folder.Path());
    EXPECT_EQ(later.status, 0) << later.err;
    const auto dump = [](const TvoRun& run) {
        std::string text;
        for (const json& object : run.Json())
            if (object["type"] == "node" || object["type"] == "line") text += object.dump() + "\n";
        return text;
    };
    EXPECT_EQ(dump(later), dump(through));
    EXPECT_EQ(ReadWholeFile(folder.File("b.tvo")), bytes);
}

TEST(TvoModel, TellsWhatIsInAModel) {
    const ScratchFolder folder;
    ASSERT_EQ(RunTvo({"run"}, Grid(2) + "set storey 3\narc 0 0 9000 0 180\nset tolerance 80\nsave a.tvo\n", folder.Path()).status, 0);
    const TvoRun run = RunTvo({"info", "a.tvo", "--json"}, "", folder.Path());
    EXPECT_EQ(run.status, 0);
    const json info = run.Json().at(0);
    EXPECT_EQ(info["whole"], true);
    EXPECT_EQ(info["nodes"], 11);
    EXPECT_EQ(info["lines"], 13);
    EXPECT_EQ(info["unit"], "mm");
    EXPECT_EQ(info["tolerance"], 80);
    EXPECT_EQ(info["currentStorey"], 3);
    EXPECT_NEAR(info["extent"][0].get<double>(), -9000, 0.01);
    EXPECT_NEAR(info["extent"][3].get<double>(), 12000, 0.01);
    EXPECT_EQ(info["storeys"], (json::parse(R"([{"storey":-1,"nodes":9,"lines":12,"plates":0},{"storey":3,"nodes":2,"lines":1,"plates":0}])")));
    EXPECT_EQ(info["sections"].size(), 3u);
    EXPECT_EQ(info["bytes"], ReadWholeFile(folder.File("a.tvo")).size());
    EXPECT_NE(RunTvo({"info", "a.tvo"}, "", folder.Path()).out.find("storey 3: nodes 2, lines 1, plates 0"), std::string::npos);
}

TEST(TvoModel, RecoversWhatIsWhole) {
    const ScratchFolder folder;
    ASSERT_EQ(RunTvo({"run"}, Grid(2) + "save a.tvo\n", folder.Path()).status, 0);
    const std::string whole = ReadWholeFile(folder.File("a.tvo"));
    const std::size_t lines = whole.find("LINE") - 4;
    folder.Write("cut.tvo", whole.substr(0, lines + 100));

    const TvoRun opened = RunTvo({"run"}, "line 0 0 1 1000\nopen cut.tvo\n", folder.Path());
    EXPECT_EQ(opened.err, "error: line 2: cannot open cut.tvo: lines section at byte " + std::to_string(lines) + ": the file ends within it\n");
    const TvoRun info = RunTvo({"info", "cut.tvo"}, "", folder.Path());
    EXPECT_EQ(info.status, 1);
    EXPECT_NE(info.out.find("the file ends within it"), std::string::npos);
    const TvoRun recovered = RunTvo({"recover", "cut.tvo"}, "", folder.Path());
    EXPECT_EQ(recovered.status, 0) << recovered.err;
    EXPECT_NE(recovered.out.find("nodes: 9 of 9 kept, 1 of 1 section whole\nlines: 0 of 12 kept, 0 of 1 section whole\n"), std::string::npos)
        << recovered.out;
    EXPECT_EQ(RunTvo({"info", "cut.tvo.recovered.tvo"}, "", folder.Path()).status, 0);

    EXPECT_EQ(RunTvo({"recover", "a.tvo", "-o", "again.tvo"}, "", folder.Path()).status, 0);
    EXPECT_EQ(ReadWholeFile(folder.File("again.tvo")), whole);
    EXPECT_EQ(RunTvo({"recover", "a.tvo", "-o", "./a.tvo"}, "", folder.Path()).status, 2);
    EXPECT_EQ(RunTvo({"recover", "a.tvo", "-o", "/nowhere/a.tvo"}, "", folder.Path()).err,
              "error: cannot write /nowhere/a.tvo: No such file or directory\n");
    folder.Write("none.tvo", whole.substr(0, 80)  /* the header */);
    const TvoRun nothing = RunTvo({"recover", "none.tvo"}, "", folder.Path());
    EXPECT_EQ(nothing.status, 1);
    EXPECT_EQ(nothing.err, "error: none.tvo: nothing could be recovered\n");
    EXPECT_EQ(NamesIn(folder).count("none.tvo.recovered.tvo"), 0u);
}

TEST(TvoModel, TellsOfAJournalThatIsNone) {
    const ScratchFolder folder;
    ASSERT_EQ(RunTvo({"run"}, Grid(2) + "save a.tvo\n", folder.Path()).status, 0);
    EXPECT_EQ(RunTvo({"recover", "a.tvo", "--journal"}, "", folder.Path()).err, "error: there is no journal of a.tvo\n");
    folder.Write(".a.tvo-journal", std::string("\x89TVJ\r\n\x1A\n", 8) + std::string(40, '\0'));
    EXPECT_EQ(RunTvo({"recover", "a.tvo", "--journal"}, "", folder.Path()).status, 1);
    EXPECT_EQ(RunTvo({"recover", "a.tvo"}, "", folder.Path()).status, 0);
}

TEST(TvoExport, WritesASavedModelAsADrawing) {
    const ScratchFolder folder;
    const std::string model = folder.File("a.tvo"), drawing = folder.File("a.dxf");
    const TvoRun script = RunScript("line 0 0 6000 0\narc 0 0 6000 0 90\nsave " + model + "\nexport " + folder.File("s") + " 2000\n");
    ASSERT_EQ(script.status, 0) << script.err;
    EXPECT_EQ(script.Json().back()["file"], folder.File("s.dxf"));  // with its ending
    ASSERT_EQ(RunTvo({"export", model, folder.File("a")}).status, 0);
    EXPECT_NE(ReadWholeFile(drawing).find("AC1009"), std::string::npos);
    EXPECT_NE(ReadWholeFile(drawing).find("ARC\r\n  8\r\n0\r\n"), std::string::npos);
    const TvoRun newer = RunTvo({"export", model, drawing, "--dxf-version", "2000", "--json"});
    EXPECT_EQ(newer.Json()[0]["entities"], script.Json().back()["entities"]);
    EXPECT_EQ(ReadWholeFile(drawing), ReadWholeFile(folder.File("s.dxf")));  // the same model, the same bytes

    const TvoRun again = RunTvo({"import", drawing, "--layer", "0", "--dxf", folder.File("b.dxf"), "--dxf-version", "2000"});
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(ReadWholeFile(folder.File("b.dxf")), ReadWholeFile(drawing));

    const std::string before = ReadWholeFile(drawing);
    const std::string full = folder.File("full.dxf");
    std::filesystem::create_symlink("/dev/full", full);
    struct {
        const char* name;
        std::vector<std::string> arguments;
        int status;
        std::string message;
    } const rows[] = {
        {"no model", {"export", folder.File("no.tvo"), drawing}, 1, "no.tvo"},
        {"no such folder", {"export", model, folder.File("no/a.dxf")}, 1, "cannot write " + folder.File("no/a.dxf") + ": No such"},
        {"full disk", {"export", model, full}, 1, "No space left"},
        {"version that isn't written", {"export", model, drawing, "--dxf-version", "2018"}, 2, "r12 or 2000"},
    };
    for (const auto& row : rows) {
        const TvoRun run = RunTvo(row.arguments);
        EXPECT_EQ(run.status, row.status) << row.name;
        EXPECT_NE(run.err.find(row.message), std::string::npos) << row.name << ": " << run.err;
    }
    EXPECT_EQ(ReadWholeFile(drawing), before);
}

/// The longest row of dark pixels in a picture that isn't the frame about the drawing, which is longer than `most`.
std::size_t LongestRow(const std::string& pgm, std::size_t most) {
    std::istringstream in(pgm);
    std::string magic;
    std::size_t width = 0, height = 0, white = 0, longest = 0;
    in >> magic >> width >> height >> white;
    const std::string pixels = pgm.substr(pgm.size() - width * height);
    for (std::size_t y = 0, run = 0; y < height; ++y, run = 0)
        for (std::size_t x = 0; x < width; ++x) {
            const bool dark = static_cast<unsigned char>(pixels[y * width + x]) < 200;
            if (!dark && run < most) longest = std::max(longest, run);
            run = dark ? run + 1 : 0;
        }
    return longest;
}

TEST(TvoExport, WritesAPageAtAScale) {
    const ScratchFolder folder;
    ASSERT_EQ(RunTvo({"run"}, "line 0 0 10000 0\ntext 2000 500 500 0 大厅\nsave a.tvo\n", folder.Path()).status, 0);
    const std::vector<std::string> page{"export", "a.tvo", "a.pdf", "--scale", "1:100", "--json"};
    const TvoRun run = RunTvo(page, "", folder.Path());
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.Json()[0]["width"], 297);
    EXPECT_EQ(run.Json()[0]["whole"], true);
    const std::string bytes = ReadWholeFile(folder.File("a.pdf"));
    RunTvo(page, "", folder.Path());
    EXPECT_TRUE(ReadWholeFile(folder.File("a.pdf")) == bytes) << "the same model, the same bytes";
    const TvoRun fit = RunTvo({"export", "a.tvo", "fit.pdf", "--paper", "a3", "--portrait", "--json"}, "", folder.Path());
    EXPECT_EQ(fit.Json()[0]["height"], 420);
    EXPECT_EQ(fit.Json()[0]["scale"], 37);  // 10 m and the width of its ends on 275 mm
    EXPECT_EQ(RunTvo({"export", "a.tvo", "cut.pdf", "--scale", "10", "--json"}, "", folder.Path()).Json()[0]["whole"], false);
    const struct {
        std::vector<std::string> arguments;
        int status;
        const char* message;
    } rows[] = {
        {{"export", "a.tvo", "b.pdf", "--paper", "A9"}, 2, "none of A0 to A4"},
        {{"export", "a.tvo", "b.pdf", "--scale", "0"}, 2, "no scale such as 1:100"},
        {{"export", "a.tvo", "b.pdf", "--scale", "1:nan"}, 2, "no scale such as 1:100"},
        {{"export", "a.tvo", "no/b.pdf"}, 1, "cannot write no/b.pdf: No such"},
    };
    for (const auto& row : rows) {
        const TvoRun bad = RunTvo(row.arguments, "", folder.Path());
        EXPECT_EQ(bad.status, row.status) << row.message;
        EXPECT_NE(bad.err.find(row.message), std::string::npos) << bad.err;
    }
    const std::string in = "cd " + folder.Path().string() + " && ";
    if (std::system("command -v pdftoppm >/dev/null && command -v pdftotext >/dev/null") != 0) GTEST_SKIP() << "no poppler-utils";
    ASSERT_EQ(std::system((in + "pdftoppm -r 254 -gray a.pdf a && pdftotext a.pdf").c_str()), 0);
    EXPECT_NEAR(static_cast<double>(LongestRow(ReadWholeFile(folder.File("a-1.pgm")), 2000)), 1000, 16);  // 10 m, 100 mm, 10 pixels to each, nodes at its ends
    const std::string text = ReadWholeFile(folder.File("a.txt"));
    EXPECT_NE(text.find("大厅"), std::string::npos) << text;
    EXPECT_NE(text.find("1:100"), std::string::npos) << text;
}
