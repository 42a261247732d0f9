// Sessions played in a window of the toolkit show, pixel by pixel, what they show without a screen.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tvo_process.h"

namespace {

namespace fs = std::filesystem;

const char* const kEditor = R"(
editor 900 700
state
move 300 200
key F3
type line 0,0 @5000<30 
png lines.png
wheel 400 300 120
mdown 400 300
move 430 340
mup
key left
key up
move 250 260
type 圆
enter
ldown 300 260
lup
move 340 300
png rubber.png
esc
size 1000 760
key F5
png resized.png
state
)";

std::string Pictures(const fs::path& folder) {
    std::string names;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".png") names += entry.path().filename().string() + " ";
    return names;
}

}  // namespace

TEST(QtWindow, ShowsWhatTheSystemWithoutAScreenDraws) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::setenv("LSAN_OPTIONS", "suppressions=" TVO_TEST_DATA "/lsan.supp:print_suppressions=0", 1);
    ::setenv("XDG_RUNTIME_DIR", fs::temp_directory_path().c_str(), 0);
    const struct {
        const char* name;
        std::string script;
    } rows[] = {
        {"the sample session", ReadWholeFile(TVO_SOURCE_DIR "/examples/small_building.play")},
        {"the whole editor", kEditor},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ScratchFolder without, with;
        const TvoRun plain = RunTvo({"play"}, row.script, without.Path());
        ASSERT_EQ(plain.status, 0) << plain.err;
        const TvoRun window = RunTvo({"play", "--window"}, row.script, with.Path());
        ASSERT_EQ(window.status, 0) << window.err;
        EXPECT_EQ(window.out, plain.out);
        ASSERT_NE(Pictures(without.Path()), "");
        EXPECT_EQ(Pictures(with.Path()), Pictures(without.Path()));
        for (const auto& entry : fs::directory_iterator(without.Path())) {
            if (entry.path().extension() != ".png") continue;
            const std::string name = entry.path().filename().string();
            EXPECT_TRUE(ReadWholeFile(with.File(name)) == ReadWholeFile(without.File(name)))
                << name << " differs";
        }
    }
}

TEST(QtWindow, WithoutADisplayItIsSaidWhatToDo) {
    ::unsetenv("QT_QPA_PLATFORM");
    ::unsetenv("WAYLAND_DISPLAY");
    const struct {
        const char *name, *display, *says;
    } rows[] = {{"none is set", "", "xvfb-run tvo edit"}, {"none is there", ":4711", "Check DISPLAY"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ::setenv("DISPLAY", row.display, 1);
        const TvoRun run = RunTvo({"edit"});
        EXPECT_EQ(run.status, 1);
        EXPECT_NE(run.err.find(row.says), std::string::npos) << run.err;
    }
}
