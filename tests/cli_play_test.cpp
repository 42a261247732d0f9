// tvo play, run as a user would.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tvo_process.h"

namespace {

using json = nlohmann::json;

TvoRun Play(const std::string& script, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{"play"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTvo(arguments, script);
}

TEST(TvoPlay, DrawsByTypingAndClicking) {
    const TvoRun run = Play(
        "type Zoom w 0,0 8000,6000 \nstate\ntype 直线\nenter\nldown 100 500\nlup\ntype @4000<0 \nstat\nrdown\nrup\nstate\n"
        "type 1000,1000 @0,2000 \nstat\ntype u \nstat\ndump lines\nprompt\n");
    ASSERT_EQ(run.status, 0) << run.err;
    const auto lines = run.Json();
    EXPECT_NEAR(lines[0]["scale"].get<double>(), 0.1, 1e-6);
    EXPECT_EQ(lines[0]["command"], nullptr);
    EXPECT_EQ(lines[1]["lines"], 1);
    EXPECT_EQ(lines[2]["command"], "Line") << "a right click with nothing running repeats";
    EXPECT_EQ(lines[2]["stack"], json::array({nullptr}));
    EXPECT_EQ(lines[2]["hint"], 32);
    EXPECT_EQ(lines[3]["lines"], 2) << "the new one meets the end of the first";
    EXPECT_EQ(lines[4]["lines"], 1);
    EXPECT_EQ(lines[5]["length"], 4000.0);
    EXPECT_EQ(lines.back()["lines"].back(), "UNDO: 回退一步");
}

TEST(TvoPlay, EveryCommandDraws) {
    struct { const char* typed; int nodes, lines; } const rows[] = {
        {"Line 0,0 6000,0 ", 2, 1},
        {"PLine 0,0 6000,0 6000,4000 C ", 3, 3},
        {"Rect 0,0 6000,4000 ", 4, 4},
        {"圆弧 0,0 6000,0 3000,-1000 ", 2, 1},
        {"圆心弧 0,0 3000,0 0,3000 ", 2, 1},
        {"Circle 0,0 3000,0 ", 2, 2},
        {"Dist 0,0 3000,4000 ", 0, 0},
    };
    for (const auto& row : rows) {
        const TvoRun run = Play("key F3\ntype " + std::string(row.typed) + "\nstate\nstat\nprompt\ntype u \nstat\n");
        ASSERT_EQ(run.status, 0) << row.typed << run.err;
        const auto lines = run.Json();
        EXPECT_EQ(lines[0]["work"], 0) << row.typed;
        EXPECT_EQ(lines[1]["nodes"], row.nodes) << row.typed;
        EXPECT_EQ(lines[1]["lines"], row.lines) << row.typed;
        EXPECT_EQ(lines[3]["lines"], 0) << row.typed << "is one undo step";
        if (row.lines == 0) {
            EXPECT_EQ(lines[2]["lines"].back(), "距离 = 5000.00, dx = 3000.00, dy = 4000.00");
        }
    }
}

TEST(TvoPlay, ErasesWhatAWindowTouchesAndPlatesFollow) {
    const TvoRun run = Play(
        "type Zoom w 0,0 8000,6000 \ntype Rect 1000,1000 7000,5000 \ntype Line 4000,1000 4000,5000 \nplates\nstat\ntype 删除\nenter\n"
        "move 450 300\nldown\nlup\nmove 350 250\nstate\nldown\nlup\nstate\nrdown\nrup\nstat\ntype u \nstat\n");
    ASSERT_EQ(run.status, 0) << run.err;
    const auto lines = run.Json();
    EXPECT_EQ(lines[0]["plates"], 2);
    EXPECT_EQ(lines[1]["command"], "WindowSelect");
    EXPECT_EQ(lines[1]["stack"], json::array({"Erase", nullptr}));
    EXPECT_EQ(lines[2]["selection"].size(), 1u);
    EXPECT_EQ(lines[3]["plates"], 1);
    EXPECT_EQ(lines[3]["lines"], 4);
    EXPECT_EQ(lines[4]["plates"], 2);
}

TEST(TvoPlay, PlaysTheExample) {
    const ScratchFolder folder;
    const TvoRun run = RunTvo({"play", TVO_SOURCE_DIR "/examples/small_building.play"}, "", folder.Path());
    ASSERT_EQ(run.status, 0) << run.err;
    json last;
    for (const json& line : run.Json())
        if (line["type"] == "stat") last = line;
    EXPECT_EQ(last["plates"], 9);
    for (const char* picture : {"glass.png", "building.png"}) EXPECT_GT(ReadWholeFile(folder.File(picture)).size(), 2000u) << picture;
}

TEST(TvoPlay, TellsWhatIsWrong) {
    struct { const char* name; const char* line; const char* message; } const rows[] = {
        {"half a place", "ldown 5", "ldown takes X and Y or nothing"},
        {"no place", "move", "move takes X Y"},
        {"a place that is none", "move a 5", "X: 'a'"},
        {"no such key", "key blue", "there is no key 'blue'"},
        {"F13", "key F13", "F key"},
        {"a modifier that is none", "key F2 alt", "ctrl or shift"},
        {"no such command", "fly", "there is no command 'fly'"},
        {"too large a view", "size 1000000 5", "W: "},
        {"nowhere to write", "png /nowhere/a.png", "/nowhere"},
    };
    for (const auto& row : rows) {
        const TvoRun run = Play(std::string("# first\n") + row.line + "\n");
        EXPECT_EQ(run.status, 2) << row.name;
        EXPECT_NE(run.err.find("line 2: "), std::string::npos) << row.name << run.err;
        EXPECT_NE(run.err.find(row.message), std::string::npos) << row.name << run.err;
    }
    // Whatever is typed or clicked is no error of the script's: the editor answers it.
    const TvoRun odd = Play("size 0 0\nwheel 5 5 120\ntype 没有这个命令 \nsize 1 1\nkey F5\nmdown 3 3\nsize 900 2\nmup\nesc\nprompt\n");
    EXPECT_EQ(odd.status, 0) << odd.err;
    EXPECT_EQ(odd.Json().back()["lines"][1], "***非法命令或参数: 没有这个命令***");
}

}  // namespace
