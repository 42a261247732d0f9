// The whole editor, played by tvo play as somebody would use it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tvo_process.h"

namespace {

namespace fs = std::filesystem;
using json = nlohmann::json;

constexpr const char* kNew = "editor 1000 700\ntype New \n";

TvoRun Play(const std::string& script, const fs::path& folder = {}) {
    return RunTvo({"play"}, script, folder);
}

std::vector<json> Played(const std::string& script, const fs::path& folder = {}) {
    const TvoRun run = Play(script, folder);
    EXPECT_EQ(run.status, 0) << run.err;
    return run.Json();
}

/// The results of one type, in their order.
std::vector<json> Of(const std::vector<json>& lines, const char* type) {
    std::vector<json> found;
    for (const json& line : lines)
        if (line["type"] == type) found.push_back(line);
    return found;
}

json Last(const std::vector<json>& lines, const char* type) {
    const auto found = Of(lines, type);
    return found.empty() ? json() : found.back();
}

/// All that stands in a model, as it is after a script.
std::string DumpAfter(const std::string& script, const fs::path& folder = {}) {
    const TvoRun run = Play(script + "dump\n", folder);
    EXPECT_EQ(run.status, 0) << run.err;
    return run.out;
}

TEST(Editor, StartsWithASampleWhosePlatesShow) {
    const auto lines = Played("editor\nstat\nwindows\nclose\n");
    EXPECT_GT(lines[0]["plates"], 5);
    EXPECT_EQ(lines[0]["dangling"], 0);
    EXPECT_EQ(lines[0]["canUndo"], false);
    EXPECT_EQ(lines[1]["title"], "未命名 - TvoBase");
    EXPECT_EQ(lines[2]["closed"], true) << "nobody has changed it";
}

TEST(Editor, PlatesAreFormedDeletedAndMerged) {
    const std::string rooms =
        std::string(kNew) + "type Rect 0,0 6000,4000 \ntype Line 3000,0 3000,4000 \ntype FormPlates \nstat\n";
    struct {
        const char* name;
        const char* script;
        int lines, plates;
    } const rows[] = {
        {"a plate is deleted", "type 删除板 1000,1000 \nrdown\nrup\nstat\n", 7, 1},
        {"picked twice is not picked", "type 删除板 1000,1000 1000,1000 \nrdown\nrup\nstat\n", 7, 2},
        {"the next edit at its lines forms it again",
         "type 删除板 1000,1000 \nrdown\nrup\ntype Line 1500,0 1500,4000 \nstat\n", 10, 3},
        {"two become one", "type 合并板 1000,1000 5000,1000 \nrdown\nrup\nstat\n", 4, 1},
        {"one alone stays", "type 合并板 1000,1000 \nrdown\nrup\nstat\n", 7, 2},
        {"beside all plates nothing is picked", "type 合并板 9000,1000 5000,1000 \nrdown\nrup\nstat\n", 7, 2},
        {"cancelled", "type 删除板 1000,1000 \nesc\nstat\n", 7, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto stats = Of(Played(rooms + row.script + "type u \nstat\n"), "stat");
        EXPECT_EQ(stats[0]["plates"], 2);
        EXPECT_EQ(stats[1]["lines"], row.lines);
        EXPECT_EQ(stats[1]["plates"], row.plates);
        const bool changed = stats[1] != stats[0];
        EXPECT_EQ(stats[2]["plates"], changed && row.lines != 10 ? 2
                                      : row.lines == 10          ? 1
                                                                 : 0)
            << "one undo step";
    }
}

TEST(Editor, ClicksPickPlatesWithoutSnapping) {
    const auto lines =
        Played(std::string(kNew) +
               "type Rect 0,0 6000,4000 \ntype Line 3000,0 3000,4000 \ntype FormPlates \n"
               "type Zoom w 0,0 6000,4000 \nstate\ntype 面积\nenter\nldown 300 200\nlup\nprompt\n");
    const auto said = Last(lines, "prompt")["lines"];
    EXPECT_NE(said.back().get<std::string>().find("面积 = 12.000 m², 周长 = 14.000 m"), std::string::npos)
        << said.back();
}

TEST(Editor, AClickPicksALineAndOneBesideBeginsAWindow) {
    const std::string erase = std::string(kNew) +
        "type Zoom w -1000,-1000 9000,7000 \ntype Line 0,0 6000,0 \ntype Line 0,3000 6000,3000 \ntype Erase \n";
    const auto click = [](const char* at) { return std::string("move ") + at + "\nldown\nlup\n"; };
    const char* const on = "400 468", * const beside = "400 100";  // of the lower line
    const auto picked = Last(Played(erase + click(on) + "state\n"), "state");
    EXPECT_EQ(picked["selection"].size(), 1u);
    EXPECT_EQ(picked["command"], "SingleSelect");
    const auto back = Last(Played(erase + click(on) + click(on) + "state\n"), "state");
    EXPECT_EQ(back["selection"].size(), 0u) << "picked twice is not picked";
    EXPECT_EQ(Last(Played(erase + click(beside) + "state\n"), "state")["command"], "WindowSelect");
    EXPECT_EQ(Last(Played(erase + click(on) + "rdown\nrup\nstat\n"), "stat")["lines"], 1);
    // The pick leaves nothing of the cursor behind.
    const ScratchFolder folder;
    Played(erase + click(on) + "move 10 10\npng a.png\n", folder.Path());
    Played(erase + click("450 468") + "move 10 10\npng b.png\n", folder.Path());
    EXPECT_TRUE(ReadWholeFile(folder.File("a.png")) == ReadWholeFile(folder.File("b.png")));
}

TEST(Editor, KeysOfTheDesktopWork) {
    const ScratchFolder folder;
    const std::string drawn = std::string(kNew) + "type Line 0,0 6000,0 \ntype Line 0,3000 6000,3000 \n";
    EXPECT_EQ(Last(Played(drawn + "key Z ctrl\nstat\n"), "stat")["lines"], 1);
    EXPECT_EQ(Last(Played(drawn + "key Z ctrl\nkey Y ctrl\nstat\n"), "stat")["lines"], 2);
    EXPECT_EQ(Last(Played(drawn + "type Line 0,500 \nkey Z ctrl\nstat\n"), "stat")["lines"], 1) << "in a command";
    EXPECT_EQ(Last(Played(drawn + "type x\nkey Z ctrl\nstat\n"), "stat")["lines"], 2) << "the typed text's own";
    Played(drawn + "path kept.tvo\nkey S ctrl\n", folder.Path());
    EXPECT_TRUE(fs::exists(folder.Path() / "kept.tvo"));
}

TEST(Editor, TextHeightsAreEdits) {
    const ScratchFolder folder;
    const auto lines = Played(std::string(kNew) + "text 1000 1000 900 0 hall\ntype All \nmove 5 5\npng a.png\ntype 字高 2 \nmove 5 5\n"
        "png b.png\ndump texts\nkey Z ctrl\nmove 5 5\npng c.png\ndump texts\n", folder.Path());
    const auto texts = Of(lines, "text");
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0]["height"], 2000.0);
    EXPECT_EQ(texts[1]["height"], 900.0);
    const std::string before = ReadWholeFile(folder.File("a.png"));
    EXPECT_FALSE(before == ReadWholeFile(folder.File("b.png")));
    EXPECT_TRUE(before == ReadWholeFile(folder.File("c.png")));
}

TEST(Editor, PointsOutOfReachAreRefused) {
    for (const char* points : {"0,0 1e30,5", "1e12,1e12"}) {
        const auto lines = Played(std::string(kNew) + "type Line " + points + " \nstat\nprompt\n");
        EXPECT_EQ(Last(lines, "stat")["nodes"], 0) << points;
        EXPECT_NE(Last(lines, "prompt")["lines"].dump().find("点太远"), std::string::npos) << points;
    }
}

TEST(Editor, Measures) {
    struct {
        const char* typed;
        const char* said;
    } const rows[] = {
        {"坐标 1500,-250 ", "坐标 X = 1500.00, Y = -250.00"},
        {"面积 P 0,0 4000,0 4000,3000 \nrdown", "面积 = 6.000 m², 周长 = 12.000 m"},
        {"面积 9000,9000 ", "此处没有板"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(
            Last(Played(std::string(kNew) + "type " + row.typed + "\nprompt\n"), "prompt")["lines"].back(),
            row.said);
}

TEST(Editor, ARowOfTheCheckGoesToItsPlace) {
    const std::string click = "window check ldown 50 30\nwindow check lup 50 30\nstate\n";
    const auto lines =
        Played(std::string(kNew) +
               "type Rect 0,0 6000,4000 \ntype 检查 \nprompt\nwindows\ntype Line 3000,0 3000,2500 \ntype 检查 "
               "\nwindows\nstate\n" + click + "key F5\n" + click + "window check close\nwindows\n");
    EXPECT_EQ(Last(lines, "prompt")["lines"].back(), "检查: 没有发现问题");
    EXPECT_EQ(Of(lines, "windows")[0]["tools"], json::array());
    EXPECT_EQ(Of(lines, "windows")[1]["tools"], json::array({"check"}));
    EXPECT_EQ(Of(lines, "windows")[2]["tools"], json::array());
    const auto states = Of(lines, "state");
    EXPECT_EQ(states[2]["scale"], states[1]["scale"]) << "a click on the chosen row goes there again";
    EXPECT_GT(states[1]["scale"], states[0]["scale"]);
    // The dangling end stands in the middle of the view: its width is the frame's without the menu's.
    const double scale = states[1]["scale"].get<double>();
    EXPECT_LT(states[1]["x"].get<double>(), 3000);
    EXPECT_LT(3000 - states[1]["x"].get<double>(), 1000 / scale);
    EXPECT_GT(states[1]["y"].get<double>(), 2500);
}

TEST(Editor, TextsAndStoreys) {
    const auto lines =
        Played(std::string(kNew) +
               "answer text \"text=办公室 1\" height=0.6 angle=90\ntype 文字 1000,2000 \ndump texts\n"
               "answer text text=a height=99\ntype 文字 \nanswer storey storey=2 only=1\ntype 楼层 \ntype "
               "Line 0,0 5000,0 \n"
               "dump lines\nanswer storey storey=1.5\ntype 楼层 \n");
    EXPECT_EQ(lines[0]["text"], "办公室 1");
    EXPECT_EQ(lines[0]["height"], 600.0);
    EXPECT_EQ(lines[2]["storey"], 2);
    EXPECT_EQ(Of(lines, "message").size(), 2u) << "a height and a storey that are none";
}

TEST(Editor, SavesOpensAndRemembers) {
    const ScratchFolder folder;
    const std::string draw = "type Rect 0,0 6000,4000 \ntype FormPlates \n";
    const std::string drawn = DumpAfter(kNew + draw);
    const auto lines =
        Played(kNew + draw +
                   "windows\npath 房屋\ntype 保存 \nwindows\ntype Line 9000,0 9000,4000 \nwindows\ntype u \n"
                   "type Save \ntype New \nstat\nanswer recent 0 file=0\ntype 最近 \nwindows\nstat\n",
               folder.Path());
    EXPECT_TRUE(fs::exists(folder.Path() / "房屋.tvo"));
    const auto titles = Of(lines, "windows");
    EXPECT_EQ(titles[0]["title"], "未命名* - TvoBase");
    EXPECT_EQ(titles[1]["title"], "房屋.tvo - TvoBase");
    EXPECT_EQ(titles[2]["title"], "房屋.tvo* - TvoBase");
    EXPECT_EQ(titles[3]["title"], "房屋.tvo - TvoBase");
    EXPECT_EQ(Of(lines, "stat")[0]["lines"], 0);
    EXPECT_EQ(Of(lines, "stat")[1]["plates"], 1);
    const std::string file = folder.File("房屋.tvo");
    EXPECT_EQ(DumpAfter("editor 900 600 " + file + "\n"), drawn) << "by argument";
    EXPECT_EQ(DumpAfter(std::string(kNew) + "drop " + file + "\n"), drawn) << "by drop";
}

TEST(Editor, AsksBeforeAModelGoes) {
    const std::string changed = std::string(kNew) + "type Line 0,0 5000,0 \n";
    struct {
        const char* name;
        const char* answers;
        bool closes, saved;
    } const rows[] = {
        {"saved", "answer unsaved 0\npath kept.tvo\n", true, true},
        {"saved to nowhere", "answer unsaved 0\npath cancel\n", false, false},
        {"saved where it can't be", "answer unsaved 0\npath /nowhere/kept.tvo\n", false, false},
        {"thrown away", "answer unsaved 1\n", true, false},
        {"cancelled", "answer unsaved cancel\n", false, false},
        {"dialog closed", "", false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ScratchFolder folder;
        const auto lines = Played(changed + row.answers + "close\n", folder.Path());
        EXPECT_EQ(Last(lines, "close")["closed"], row.closes);
        EXPECT_EQ(fs::exists(folder.Path() / "kept.tvo"), row.saved);
        const auto stat = Last(Played(changed + row.answers + "type New \nstat\n", folder.Path()), "stat");
        EXPECT_EQ(stat["lines"], row.closes ? 0 : 1) << "a new model asks the same";
    }
}

TEST(Editor, BadFilesLeaveTheModel) {
    const ScratchFolder folder;
    folder.Write("rubbish.tvo", "no model at all");
    folder.Write("rubbish.dxf", "no drawing at all");
    folder.Write("empty.dxf", "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n");
    fs::create_directory(folder.Path() / "folder.tvo");
    const std::string draw = std::string(kNew) + "type Rect 0,0 6000,4000 \n";
    const std::string before = DumpAfter(draw);
    for (const char* name :
         {"rubbish.tvo", "missing.tvo", "folder.tvo", "rubbish.dxf", "missing.dxf", "empty.dxf"}) {
        SCOPED_TRACE(name);
        const std::string file = folder.File(name);
        for (const std::string& way :
             {"path " + file + "\nanswer unsaved 1\ntype 打开 \n", "answer unsaved 1\ndrop " + file + "\n"}) {
            const TvoRun run = Play(draw + way + "windows\ndump\n");
            ASSERT_EQ(run.status, 0) << run.err;
            const auto lines = run.Json();
            ASSERT_EQ(Of(lines, "message").size(), 1u);
            const auto text = lines[0]["text"].get<std::string>();
            EXPECT_NE(text.find(name), std::string::npos) << text;
            EXPECT_EQ(lines[1]["title"], "未命名* - TvoBase");
            EXPECT_TRUE(run.out.ends_with(before)) << "the model is another";
        }
    }
}

TEST(Editor, ImportsADrawing) {
    const std::string plan = TVO_SOURCE_DIR "/examples/office_plan.dxf";
    const auto run = RunTvo({"import", plan, "--layer", "轴线", "--json"}).Json()[0];
    // Rows of the dialog in the drawing's order: 轴线 is the first.
    struct {
        const char* name;
        const char* answer;
        bool taken;
    } const rows[] = {
        {"into a new model", "answer import 0 layers=1000000 target=0", true},
        {"without plates", "answer import 0 layers=1000000 target=0 plates=0", true},
        {"no layer ticked", "answer import 0 layers=0000000", false},
        {"no scale", "answer import 0 layers=1000000 scale=0", false},
        {"cancelled", "answer import cancel", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto lines = Played("editor\n" + std::string(row.answer) + "\npath " + plan +
                                  "\ntype DXF输入 \nstat\nwindows\n");
        const auto stat = Last(lines, "stat");
        EXPECT_EQ(stat["lines"] == run["lines"], row.taken);
        EXPECT_EQ(Last(lines, "windows")["tools"], row.taken ? json::array({"report"}) : json::array());
        if (row.taken) {
            EXPECT_EQ(stat["nodes"], run["nodes"]);
            EXPECT_EQ(stat["plates"],
                      std::string(row.answer).ends_with("plates=0") ? json(0) : run["plates"]["count"]);
        }
    }
    const auto imported = [&](const std::string& values) {
        return DumpAfter("editor\nanswer import 0 layers=1000000 target=0 " + values + "\npath " + plan + "\ntype DXF输入 \n");
    };
    EXPECT_EQ(imported("unit=1"), imported("scale=10")) << "centimetres";
    EXPECT_EQ(imported("unit=1 scale=1"), imported("")) << "what was typed last holds";
    const auto stats =
        Of(Played(std::string(kNew) +
                  "type Line 0,90000 5000,90000 \nanswer import 0 layers=1100000 target=1\ndrop " + plan +
                  "\nstat\ntype u \nstat\n"),
           "stat");
    EXPECT_GT(stats[0]["lines"], run["lines"]);
    EXPECT_EQ(stats[1]["lines"], 1) << "two layers are one undo step";
}

TEST(Editor, PrintsWhatIsWanted) {
    const ScratchFolder folder;
    const auto lines = Played(
        std::string(kNew) +
            "type Rect 0,0 20000,10000 \nanswer print 0 paper=1 scale=1:100\npath page\ntype 打印 \nprompt\n"
            "answer print 0 scale=none\ntype 打印 \nanswer print 0 part=1\npath /nowhere/page.pdf\ntype 打印 "
            "\n",
        folder.Path());
    EXPECT_TRUE(ReadWholeFile(folder.File("page.pdf")).starts_with("%PDF"));
    EXPECT_NE(Last(lines, "prompt")["lines"].back().get<std::string>().find("A3, 1:100"), std::string::npos);
    EXPECT_EQ(Of(lines, "message").size(), 2u) << "no scale, no folder";
}

TEST(Editor, ExportsADrawing) {
    const ScratchFolder folder;
    const auto lines =
        Played(std::string(kNew) +
                   "type Rect 0,0 6000,4000 \nanswer export 0 version=1\npath out\ntype DXF输出 \n"
                   "answer export 0\npath /nowhere/out.dxf\ntype DXF输出 \n",
               folder.Path());
    EXPECT_NE(ReadWholeFile(folder.File("out.dxf")).find("AC1015"), std::string::npos);
    EXPECT_EQ(Of(lines, "message").size(), 1u);
}

TEST(Editor, AsksBeforeAFileThatAnotherHasWrittenIsReplaced) {
    const ScratchFolder folder;
    ASSERT_EQ(RunTvo({"run"}, "line 0 0 6000 0\nsave a.tvo\n", folder.Path()).status, 0);
    const std::string mine = "editor 900 600 a.tvo\ntype Line 0,5000 6000,5000 \nsave a.tvo\ntype Line 0,9000 6000,9000 \n";
    const auto title = [&](const std::string& rest) {
        return Last(Played(mine + rest + "type Save \nwindows\n", folder.Path()), "windows")["title"];
    };
    EXPECT_EQ(title(""), "a.tvo* - TvoBase") << "nobody has said yes";
    EXPECT_EQ(title("answer changed 0\n"), "a.tvo - TvoBase");
    EXPECT_EQ(title("answer changed 1\npath b.tvo\n"), "b.tvo - TvoBase");
    EXPECT_EQ(title("answer changed 0\ntype Save \ntype Line 0,7000 6000,7000 \n"), "a.tvo - TvoBase") << "asked once";
}

// A script that ends without closing the editor leaves what a crash leaves.
TEST(Editor, OffersWhatACrashHasLeft) {
    const ScratchFolder folder;
    ::setenv("XDG_STATE_HOME", folder.File("state").c_str(), 1);
    const std::string file = folder.File("kept.tvo");
    const std::string draw =
        "type Rect 0,0 6000,4000 \ntype FormPlates \ntype Line 3000,0 3000,4000 \ntype u \n";
    const std::string drawn = DumpAfter(kNew + draw);

    Played(std::string(kNew) + "journal\n" + draw);  // without a name
    EXPECT_EQ(DumpAfter("editor\nanswer leftovers 0 model=0\njournal\n"), drawn)
        << "recovered, and left again";
    EXPECT_EQ(DumpAfter("editor\nanswer leftovers 0 model=0\njournal\npath " + file + "\ntype Save \n"),
              drawn);
    EXPECT_EQ(Last(Played("editor\nanswer leftovers 0\njournal\nwindows\nclose\n"), "windows")["title"],
              "未命名 - TvoBase")
        << "once it is saved there is nothing to offer";

    const std::string edit = "type Line 0,9000 6000,9000 \n";
    Played("editor 900 600 " + file + "\njournal\n" + edit);  // with a file
    const std::string edited = DumpAfter("editor 900 600 " + file + "\n" + edit);
    EXPECT_EQ(DumpAfter("editor 900 600 " + file + "\nanswer recover 0\njournal\n"), edited);
    EXPECT_EQ(DumpAfter("editor\njournal\nanswer recover 0\npath " + file + "\ntype Open \n"), edited);
    const auto refused = Played("editor 900 600 " + file + "\njournal\nwindows\nclose\n");
    EXPECT_EQ(Last(refused, "windows")["title"], "kept.tvo - TvoBase");
    EXPECT_EQ(Last(refused, "close")["closed"], true);

    Played("editor 900 600 " + file + "\njournal\n" + edit);  // and the file replaced twice since
    ASSERT_EQ(RunTvo({"run"}, "node 1 1\nsave " + file + "\nnode 9000 9000\nsave " + file + "\n").status, 0);
    const std::string back = DumpAfter("editor 900 600 " + file + "\nanswer recover 0\njournal\nwindows\n");
    EXPECT_TRUE(back.ends_with(edited)) << back;
    EXPECT_NE(back.find("请另存"), std::string::npos) << back;
    EXPECT_NE(back.find("未命名* - TvoBase"), std::string::npos) << back;
    const auto others = Played("editor 900 600 " + file + "\njournal\nstat\nwindows\n");
    EXPECT_EQ(Last(others, "stat")["nodes"], 2) << "the other's file stands, and nothing is offered twice";
    ::unsetenv("XDG_STATE_HOME");
}

}  // namespace
