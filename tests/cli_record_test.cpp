// Sessions that are written down and played again.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "tvo_process.h"

namespace {

std::string BytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

/// The last state that was printed, without the points that a command before may have left behind.
nlohmann::json StateOf(const TvoRun& run) {
    nlohmann::json state;
    for (const auto& line : run.Json())
        if (line["type"] == "state") state = line;
    state.erase("points");
    return state;
}

/// What somebody does in the editor with mouse, wheel, keys and dialogs; what it looks like afterwards.
struct Session {
    const char* name;
    const char* events;
};

const Session kSessions[] = {
    {"typed and clicked",
     "type 直线\nenter\nmove 300 300\nldown\nlup\nmove 420 318\nldown\nlup\nrdown\nrup\nmove 200 "
     "200\nldown\nlup\ntype @6000<90 "
     "\nesc\nkey F3\nkey F8\nwheel 400 300 240\ntype u \n"},
    {"text that is left in the line",
     "type 矩形\nenter\ntype 1000,1000\nldown 300 200\nlup\ntype zz\nesc\nesc\nkey left\nkey up shift\n"},
    {"a drag with the middle button",
     "mdown 500 300\nmove 520 330\nmove 560 350\nmup\ntype z \ntype w \nldown 100 100\nlup\nldown 300 "
     "300\nlup\n"},
    {"within a drag that is slow",
     "type nothing \nticks 0 900000\nmdown 500 300\nmove 520 330\nmove 560 350\n"},
    {"windows select",
     "type 删除 \nmove 520 300\nldown\nlup\nmove 300 100\nldown\nlup\ntab\ntab\nmove 350 "
     "350\nldown\nlup\nrdown\nrup\n"},
    {"a size and a refused command",
     "size 900 700\ntype nothing \nmove 10 10\nwheel 10 10 -120\nsize 1000 650\n"},
};

// Played, recorded and played again, every session ends with the same state, model and picture: typed text
// comes back whatever way it was entered, and a pan decides by the time that it took then.
TEST(TvoRecord, RepeatsASessionExactly) {
    const std::string folder = testing::TempDir() + "tvo_record/";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    for (const bool midway : {false, true})
        for (const Session& session : kSessions) {
            SCOPED_TRACE(std::string(session.name) + (midway ? ", begun midway" : ""));
            const std::string record = folder + "record.play";
            const auto end = [&](const char* n) {
                return "state\nwindowpng " + folder + n + ".png\nsave " + folder + n + ".tvo\n";
            };
            const std::string before = "key F4\ntype Line 500,700 2500,2700 \nwheel 300 300 120\n";
            std::string script = "editor 1000 700\n";
            if (midway) script += before + "path " + record + "\ntype 记录 \n" + session.events;
            else script += session.events;
            const TvoRun first = RunTvo(midway ? std::vector<std::string>{"play"}
                                               : std::vector<std::string>{"play", "--record", record},
                                        script + end("1"));
            ASSERT_EQ(first.status, 0) << first.err;
            const std::string recorded = BytesOf(record);
            ASSERT_NE(recorded.find("\nlook "), std::string::npos) << recorded;
            const TvoRun second = RunTvo({"play"}, recorded + end("2"));
            ASSERT_EQ(second.status, 0) << second.err << recorded;
            EXPECT_TRUE(BytesOf(folder + "1.tvo") == BytesOf(folder + "2.tvo")) << "the models differ\n"
                                                                                << recorded;
            EXPECT_EQ(StateOf(first), StateOf(second)) << recorded;
            const std::string picture = BytesOf(folder + "1.png");
            EXPECT_GT(picture.size(), 1000u);
            EXPECT_TRUE(midway || picture == BytesOf(folder + "2.png")) << "the pictures differ\n"
                                                                        << recorded;
        }
}

TEST(TvoRecord, KeepsTheRecordingBeforeAndSaysWhyItCannotWrite) {
    const std::string folder = testing::TempDir() + "tvo_record_files/";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const std::string record = folder + "r.play";
    std::ofstream(record) << "precious";
    const TvoRun good = RunTvo({"play", "--record", record}, "editor 800 600\ntype Line \n");
    EXPECT_EQ(good.status, 0) << good.err;
    EXPECT_EQ(BytesOf(record + "~"), "precious");
    EXPECT_NE(BytesOf(record).find("input Line\nkey space\n"), std::string::npos) << BytesOf(record);
    const TvoRun bad = RunTvo({"play", "--record", folder + "none/r.play"}, "editor 800 600\n");
    EXPECT_NE(bad.status, 0);
    EXPECT_NE(bad.err.find(folder + "none/r.play"), std::string::npos) << bad.err;
}

}  // namespace
