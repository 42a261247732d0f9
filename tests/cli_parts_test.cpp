// tvo run: texts, graphics and riders, as their users see them.
#include <gtest/gtest.h>

#include "tvo_process.h"

namespace {

using nlohmann::json;

const char* const kParts =
    "line 0 0 8000 0\nbulge 8000 0 8000 6000 -60\n"
    "text 1000 5000 500 30 \"Hall <A> 大厅\" tag 3\n"
    "text 0 0 300 0 plain colour #0060C0\n"
    "point 500 500 colour 1\npline 0 -1500 8000 -1500 120 colour 7\nparc 4000 3000 1500 30 300 -3 colour 6\n"
    "circle 4000 3000 1000 60\ndisc 6500 4500 400 tag 9 colour 2\npolygon 5000 500 7000 500 7000 1500 colour 140\n"
    "rider 33554433 300\nrider 33554434 400 tag 5\n";

std::string TypesOf(const TvoRun& run) {
    std::string types;
    for (const json& object : run.Json())
        if (object["type"] != "result" && object["type"] != "added") types += object["type"].get<std::string>() + " ";
    return types;
}

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

TEST(TvoParts, TellsEachComponentOnce) {
    const TvoRun run = RunScript(std::string(kParts) + "dump all\n");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(TypesOf(run), "node node node line line text text point pline arc circle disc polygon rider rider ");
    const auto objects = run.Json();
    EXPECT_EQ(objects[2].dump(), R"({"id":67108865,"kind":"text","type":"added"})");
    EXPECT_TRUE(Has(run.out, R"("storey":-1,"box":[750.0,5000.0,3814.58252,7058.0127],"x":1000.0,"y":5000.0,"height":500.0,"angle":30.0,"colour":"#00ff00","text":"Hall <A> 大厅"})"))
        << run.out;
    EXPECT_TRUE(Has(run.out, R"("colour":"#0060c0","text":"plain"})")) << run.out;
    EXPECT_TRUE(Has(run.out, R"("line":33554433,"width":300.0,"outline":[[0.0,-150.0,0.0],[8000.0,-150.0,0.0],[8000.0,150.0,0.0],[0.0,150.0,0.0]]})"))
        << run.out;
}

TEST(TvoParts, TextsHoldWhateverCanBeRead) {
    struct {
        const char* name;
        const char* word;
        const char* text;
        const char* svg;
    } const rows[] = {
        {"a quote written twice", R"("3"" pipe # 4")", "3\" pipe # 4", ">3&quot; pipe # 4</text>"},
        {"nothing but quotes", R"("""""")", "\"\"", ">&quot;&quot;</text>"},
        {"what XML has no place for", "a\xEF\xBF\xBE\xEF\xBF\xBF中", "a\xEF\xBF\xBE\xEF\xBF\xBF中", ">a\xEF\xBF\xBD\xEF\xBF\xBD中</text>"},
    };
    const ScratchFolder folder;
    for (const auto& row : rows) {
        const TvoRun run = RunTvo({"run"}, "text 0 0 300 0 " + std::string(row.word) + " tag 1\ndump texts\nsvg a.svg\n", folder.Path());
        ASSERT_EQ(run.status, 0) << row.name << run.err;
        EXPECT_EQ(run.Json().at(1)["text"], row.text) << row.name;
        EXPECT_TRUE(Has(ReadWholeFile(folder.File("a.svg")), row.svg)) << row.name;
    }
}

TEST(TvoParts, StepsAreTakenBack) {
    struct {
        const char* name;
        const char* script;
        const char* left;
    } const rows[] = {
        {"nothing is drawn any more", "undo\ndump texts\ndump riders\ndump discs\n", ""},
        {"a rider is broken", "start\nline 3000 -1000 3000 1000\ndump riders\n", "rider rider rider "},
        {"and whole again", "start\nline 3000 -1000 3000 1000\nundo\ndump riders\n", "rider rider "},
        {"and broken again", "start\nline 3000 -1000 3000 1000\nundo\nredo\ndump riders\n", "rider rider rider "},
        {"a rider goes with its line", "start\ndelete 33554433\ndump riders\n", "rider "},
        {"and comes back", "start\ndelete 33554433\nundo\ndump riders\n", "rider rider "},
        {"texts go by their tag", "start\nclear texts 3\ndump texts\n", "text "},
        {"and come back", "start\nclear texts 3\nundo\ndump texts\n", "text text "},
    };
    for (const auto& row : rows) {
        const TvoRun run = RunScript(std::string("start\n") + kParts + row.script);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(TypesOf(run), row.left) << row.name;
    }
    const auto heights = [](const char* behind) {
        std::string text;
        for (const json& object : RunScript(std::string(kParts) + "start\nsettextheight 700\n" + behind + "dump texts\n").Json())
            if (object["type"] == "text") text += object["id"].dump() + ":" + object["height"].dump() + " ";
        return text;
    };
    EXPECT_EQ(heights(""), "67108865:700.0 67108866:700.0 ");
    EXPECT_EQ(heights("undo\n"), "67108865:500.0 67108866:300.0 ");
    EXPECT_EQ(heights("undo\nredo\n"), "67108865:700.0 67108866:700.0 ");
}

TEST(TvoParts, PicturesShowWhatIsNotHidden) {
    const ScratchFolder folder;
    const TvoRun run = RunTvo({"run"}, std::string(kParts) + "svg a.svg\nhide texts 3\nhide lines\nhide nodes\nhide discs 9\nhide riders\nhide 9\nsvg b.svg\n"
                              "png b.png 300 200\nsave b.tvo\nopen b.tvo\nsvg c.svg\nshow texts\nsvg d.svg\n", folder.Path());
    EXPECT_EQ(run.status, 0) << run.err;
    const std::string shown = ReadWholeFile(folder.File("a.svg")), hidden = ReadWholeFile(folder.File("b.svg"));
    struct {
        const char* name;
        const char* part;
        bool hidden;
    } const rows[] = {
        {"a turned text", "font-size=\"500\"", true},
        {"by its angle, about its place", "rotate(-30 1000 -5000)\">Hall &lt;A&gt; 大厅</text>", true},
        {"another text", ">plain</text>", false},
        {"a point", "fill=\"#ff0000\"/>", false},
        {"white ink is dark", "<line x1=\"0\" y1=\"1500\" x2=\"8000\" y2=\"1500\" fill=\"none\" stroke=\"#333333\" stroke-width=\"120\"", false},
        {"an arc beyond a half turn, in two", "<path d=\"M5299.03811 -3750A1500 1500 0 0 0 2551.11126 -3388.22857A1500 1500 0 0 0 4750 -1700.96189\"", false},
        {"a circle", "<circle cx=\"4000\" cy=\"-3000\" r=\"1000\" fill=\"none\"", true},
        {"a disc", "<circle cx=\"6500\" cy=\"-4500\" r=\"400\" fill=\"#ffff00\"/>", true},
        {"a polygon", "<polygon points=\"5000,-500 7000,-500 7000,-1500\"", false},
        {"a rider's edge", "<line x1=\"0\" y1=\"150\" x2=\"8000\" y2=\"150\"", true},
        {"a line of the net", "<line x1=\"0\" y1=\"0\" x2=\"8000\" y2=\"0\"/>", true},
        {"a node", "<circle cx=\"8000\" cy=\"-6000\"", true},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(Has(shown, row.part)) << row.name << "\n" << shown;
        EXPECT_EQ(Has(hidden, row.part), !row.hidden) << row.name << "\n" << hidden;
    }
    EXPECT_EQ(ReadWholeFile(folder.File("c.svg")), hidden);  // what is hidden stays so in the file
    EXPECT_TRUE(Has(ReadWholeFile(folder.File("d.svg")), "大厅"));
    EXPECT_GT(ReadWholeFile(folder.File("b.png")).size(), 300u);
    const TvoRun info = RunTvo({"info", "b.tvo", "--json"}, "", folder.Path());
    EXPECT_EQ(info.Json().at(0)["kinds"], (json{{"texts", 2}, {"points", 1}, {"plines", 1}, {"arcs", 1}, {"circles", 1}, {"discs", 1}, {"polygons", 1}, {"riders", 2}}));
}

TEST(TvoParts, TellsWhatIsWrong) {
    struct {
        const char* line;
        const char* message;
    } const rows[] = {
        {"text 0 0 0 0 a", "HEIGHT: '0' must be greater than 0"},
        {"text 0 0 300 0 \"\"", "a text of nothing"},
        {"text 0 0 300 0 \"\xC0\xAF\"", "the text is not UTF-8"},
        {"text 0 0 300 0 \"a\tb\"", "the text holds a control character"},
        {"text 0 0 300 0 a colour", "colour needs a value behind it"},
        {"text 0 0 300 0 a size 4", "'size' is neither colour nor tag"},
        {"point 0 0 colour 256", "colour: '256' is out of range, 0 to 255"},
        {"point 0 0 colour \"#12345\"", "is no colour such as #FF8000"},
        {"point 0 0 tag 1 tag", "tag needs a value behind it"},
        {"parc 0 0 100 0 400 1", "turns more than once round"},
        {"parc 0 0 100 90 90 1", "START and END give no arc"},
        {"polygon 0 0 1 0 1 1 2", "an X without its Y"},
        {"polygon 0 0 1 0 tag 4", "a polygon has three points at least"},
        {"rider 33554433 200", "there is no line with the identity 33554433"},
        {"hide walls", "TYPE: 'walls' is none of nodes, lines"},
        {"hide 0", "TYPE: '0' is out of range, 1 to 255"},
        {"clear lines", "clear is for texts, fields, graphics and riders"},
        {"settextheight nan", "H: 'nan' is not a finite number"},
        {"combine 253 7 50331649", "TYPE: '253' is no type for plates"},
    };
    for (const auto& row : rows) {
        const TvoRun run = RunScript(std::string(row.line) + "\n");
        EXPECT_EQ(run.status, 2) << row.line;
        EXPECT_TRUE(Has(run.err, row.message)) << row.line << ": " << run.err;
    }
}
