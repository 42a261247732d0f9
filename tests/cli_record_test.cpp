// Sessions that are written down and played again.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tvo_process.h"

namespace {

namespace fs = std::filesystem;

std::string BytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

/// What a run told, without the folders of files: those are others when a session is played.
std::string Told(const TvoRun& run) {
    std::string told;
    std::istringstream words(run.out);
    for (std::string line; std::getline(words, line);)
        for (std::size_t i = 0; i <= line.size(); ++i) {
            if (i == line.size()) told += '\n';
            else if (line[i] != '/') told += line[i];
            else
                while (!told.empty() && told.back() != ' ' && told.back() != '"' && told.back() != '\n')
                    told.pop_back();
        }
    return told;
}

/// Somebody at the editor: from a seed, always the same.
class Hands {
public:
    Hands(unsigned seed, std::string folder) : m_random(seed), m_folder(std::move(folder)) {}

    /// `calm`: nothing is asked while a command runs, so that each answer that is laid ready is taken.
    std::string Session(int events, bool calm) {
        m_calm = calm;
        std::string script;
        while (events-- > 0) script += Event();
        return script;
    }

private:
    int Below(int n) { return static_cast<int>(m_random() % static_cast<unsigned>(n)); }
    template <std::size_t N>
    std::string Of(const char* const (&all)[N]) {
        return all[Below(static_cast<int>(N))];
    }
    std::string Pixel(int width = 760, int height = 520) {
        return " " + std::to_string(Below(width)) + " " + std::to_string(Below(height)) + "\n";
    }
    std::string Click() { return "move" + Pixel() + "ldown\nlup\n"; }
    std::string Point() {
        switch (Below(4)) {
            case 0:
                return "type " + std::to_string(Below(9) * 1500) + "," + std::to_string(Below(9) * 1500) +
                       " \n";
            case 1:
                return "type @" + std::to_string(1 + Below(9)) + "000<" + std::to_string(Below(24) * 15) +
                       " \n";
            default:
                return Click();
        }
    }
    std::string Size() {
        return "size " + std::to_string(500 + Below(700)) + " " + std::to_string(400 + Below(500)) + "\n";
    }
    std::string Drawing() {
        std::string script =
            "type " + Of({"直线", "折线", "矩形", "圆弧", "圆心弧", "圆", "距离", "坐标", "面积", "Window"}) +
            " \n";
        for (int points = 1 + Below(4); points > 0; --points) script += Point();
        return script + Of({"", "rdown\nrup\n", "esc\nesc\n", "key enter\n"});
    }
    /// A command that asks, with what it is answered; some answers come for nothing, and some questions get
    /// none.
    std::string Asking() {
        std::string script = m_calm ? "esc\nesc\nesc\nesc\n" : "";
        if (Below(4) == 0)
            script += "meanwhile 1 " + (Below(2) ? Size() : "timer frame " + std::to_string(Below(3)) + "\n");
        switch (Below(9)) {
            case 0:
                return script + "answer import " + Of({"0", "cancel"}) + "\npath " + m_folder +
                       "/in/plan.dxf\ntype DXF输入 \n";
            case 1:
                return script + "answer unsaved 1\npath \"" + m_folder + "/in/my house.tvo\"\ntype 打开 \n";
            case 2:
                return script + "path \"" + m_folder + Of({"/in/my house.tvo", "/in/new.tvo", "/in/a\\nb"}) +
                       "\"\nanswer overwrite 0\ntype 另存 \n";
            case 3:
                return script + "path " + m_folder +
                       "/in/cloud.txt\nanswer field-value 0 value=0\ntype 打开场 \n";
            case 4:
                return script + "answer unsaved 1\nanswer recent 0 file=" + std::to_string(Below(3)) +
                       "\ntype 最近 \n";
            case 5:
                return script + "answer snap 0 size=" + std::to_string(5 + Below(30)) +
                       "\ntype 捕捉总信息 \n";
            case 6:
                return script + "answer steps 0 min=" + std::to_string(10 + Below(90)) + "\ntype 步长设置 \n";
            case 7:
                return script + "answer unsaved 1\ndrop " + m_folder +
                       Of({"/in/plan.dxf\n", "/in/gone.tvo\n"});
            default:
                return script + "type " + Of({"新建", "DXF输出", "打印", "正交轴网", "文字", "楼层"}) + " \n";
        }
    }
    std::string Space() {
        std::string script = Below(3) ? "" : "type 三维场 \n";
        for (int i = 1 + Below(4); i > 0; --i) switch (Below(5)) {
                case 0:
                    script += "window field-3d wheel 200 200 " + Of({"120\n", "-120\n"});
                    break;
                case 1:
                    script +=
                        "window field-3d ldown" + Pixel(500, 400) + "window field-3d move" + Pixel(500, 400);
                    break;
                case 2:
                    script += "window field-3d lup" + Pixel(500, 400);
                    break;
                case 3:
                    script += "window " + Of({"field-3d", "report", "check"}) + " " +
                              Of({"key left\n", "size 400 300\n", "type 7\n", "ldown 60 60\n", "lup 60 60\n",
                                  "close\n"});
                    break;
                default:
                    script += "advance " + std::to_string(Below(900)) + "\n";
            }
        return script;
    }
    std::string Event() {
        switch (Below(16)) {
            case 0:
            case 1:
            case 2:
                return Drawing();
            case 3:
                return "move" + Pixel();
            case 4:
                return Click();
            case 5:
                return "type " +
                       Of({"u", "re", "u", "z", "形成板", "检查", "All", "删除", "云图", "加密", "nothing"}) +
                       " \n";
            case 6:
                return "key " +
                       Of({"F2", "F3", "F4", "F5", "F7", "F8", "left", "up shift", "down ctrl", "pgup",
                           "back", "tab", "esc", "enter", "delete", "home", "x"}) +
                       "\n";
            case 7:
                return "wheel " + std::to_string(Below(760)) + " " + std::to_string(Below(520)) +
                       Of({" 120\n", " -120\n"});
            case 8:
                return "ticks 0 " + std::to_string(Below(3) * 400000) + " " +
                       std::to_string(Below(9) * 1000) + "\nmdown" + Pixel() + "move" + Pixel() + "move" +
                       Pixel() + Of({"mup\n", "mup\n", ""});
            case 9:
                return "menu move" + Pixel(100, 400) + Of({"menu ldown", "menu move"}) + Pixel(100, 400) +
                       Of({"menu leave\n", "menu lup 20 20\n"});
            case 10:
                return Of({"bar", "tools"}) + " ldown" + Pixel(400, 24) +
                       Of({"bar lup 9 9\n", "tools lup 50 9\n", "tools leave\n"});
            case 11:
                return Below(9) == 0 ? "palette " + Of({"dark\n", "light\n"}) : Below(3) ? "hold" + Of({"\n", " shift\n", " ctrl\n"}) : Size();
            case 12:
                return "type " + Of({"1000", "直", "4,4", "\"#", "a\\nb"}) + "\n";
            case 13:
                return Space();
            default:
                return Asking();
        }
    }

    std::mt19937 m_random;
    std::string m_folder;
    bool m_calm = false;
};

/// The files that sessions open; they write there too.
void LayOut(const fs::path& in, const std::string& house) {
    fs::remove_all(in);
    fs::create_directories(in);
    fs::copy_file(std::string(TVO_TEST_DATA) + "/open_cells.dxf", in / "plan.dxf");
    std::ofstream(in / "cloud.txt")
        << "node 1 0 0 0\nnode 2 12 0 1.5\nnode 3 0 9 2.5\nnode 4 12 9 4\ntri 1 2 3\ntri 2 4 3\n";
    std::ofstream(in / "my house.tvo", std::ios::binary) << house;
}

enum class From { kProgram, kStart, kNow };

// Played by random hands, recorded and played again without the files that it read, every session ends with
// the same model, state, messages and pictures: all of them when it is told from its start, also after it has
// gone on for a while; view and model when it is told from somewhere on.
TEST(TvoRecord, RepeatsRandomSessionsExactly) {
    const ScratchFolder scratch;
    const std::string folder = scratch.Path().string(), record = folder + "/r.play";
    ASSERT_EQ(
        RunTvo({"play"}, "editor 700 500\ntype 矩形 0,0 6000,6000 \nsave " + folder + "/house.tvo\n").status,
        0);
    fs::create_directory(folder + "/1");
    fs::create_directory(folder + "/2");
    const std::string house = BytesOf(folder + "/house.tvo");
    int ended = 0, whole = 0;
    for (unsigned seed = 1; seed <= 50; ++seed) {
        const From from = seed % 3 == 0 ? From::kNow : seed % 3 == 1 ? From::kStart : From::kProgram;
        LayOut(folder + "/in", house);
        Hands hands(seed, folder);
        std::string script =
            "editor 900 700" + std::string(seed % 4 ? "\n" : " \"" + folder + "/in/my house.tvo\"\n");
        script += hands.Session(12, true);
        if (from != From::kProgram)
            script += "mup\ntools lup 9 9\nesc\nesc\nesc\nesc\nanswer record 0 from=" +
                      std::string(from == From::kNow ? "1" : "0") + "\npath " + record + "\ntype 记录 \n";
        script += hands.Session(25, false);
        const auto end = [&](const std::string& n) {
            return "\npng " + folder + n + "/view.png\nwindowpng " + folder + n + "/window.png\nsave " +
                   folder + n + "/end.tvo\nstate\n" + (from == From::kNow ? "" : "prompt\n");
        };
        std::vector<std::string> arguments = {"play", "--keep-going"};
        if (from == From::kProgram) arguments.insert(arguments.end(), {"--record", record});
        const TvoRun first = RunTvo(arguments, script + end("/1"));
        ASSERT_LE(first.status, 1) << "seed " << seed << first.err << script;
        // The menu was hit there; or there was a field, which no file keeps.
        const bool refused = from == From::kNow && first.out.find("不能记录") != std::string::npos;
        if (refused || first.out.find("记录结束") != std::string::npos) {
            ++ended;
            continue;
        }
        fs::remove_all(folder + "/in");
        const std::string recorded = BytesOf(record);
        ASSERT_NE(recorded.find("\nlook "), std::string::npos) << "seed " << seed << script;
        std::ofstream(record, std::ios::binary | std::ios::app) << end("/2");
        const TvoRun second = RunTvo({"play", record});
        const std::string why =
            "seed " + std::to_string(seed) + "\n" + script + "---- recorded:\n" + recorded;
        ASSERT_EQ(second.status, 0) << second.err << why;
        ASSERT_TRUE(BytesOf(folder + "/1/end.tvo") == BytesOf(folder + "/2/end.tvo"))
            << "the models differ, " << why;
        ASSERT_TRUE(BytesOf(folder + "/1/view.png") == BytesOf(folder + "/2/view.png"))
            << "the views differ, " << why;
        if (from != From::kNow) {
            ASSERT_EQ(Told(first), Told(second)) << why;
            // Names of folders stand in the history, and are others.
            if (first.out.find(folder + "/in") != std::string::npos) continue;
            ASSERT_TRUE(BytesOf(folder + "/1/window.png") == BytesOf(folder + "/2/window.png"))
                << "the windows differ, " << why;
            ++whole;
        }
    }
    EXPECT_LT(ended, 10);
    EXPECT_GT(whole, 2);
}

TEST(TvoRecord, KeepsTheRecordingBeforeAndSaysWhyItCannotWrite) {
    const ScratchFolder scratch;
    const std::string folder = scratch.File("");
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
