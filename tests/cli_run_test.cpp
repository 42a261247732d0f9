// tvo run: the net by commands, as its users see it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>

#include "tvo_process.h"

namespace {

using nlohmann::json;

/// "4 nodes, 3 lines" by the last stat.
std::string Counts(const TvoRun& run) {
    const auto objects = run.Json();
    if (objects.empty() || objects.back()["type"] != "stat") return "no stat: " + run.out + run.err;
    std::ostringstream text;
    text << objects.back()["nodes"] << " nodes, " << objects.back()["lines"] << " lines";
    return text.str();
}

std::vector<json> OfType(const TvoRun& run, const std::string& type) {
    std::vector<json> found;
    for (const json& object : run.Json())
        if (object["type"] == type) found.push_back(object);
    return found;
}

std::vector<double> Bulges(const TvoRun& run) {
    std::vector<double> bulges;
    for (const json& line : OfType(run, "line")) bulges.push_back(line["bulge"]);
    std::sort(bulges.begin(), bulges.end());
    return bulges;
}

bool HasNodeAt(const TvoRun& run, double x, double y) {
    for (const json& node : OfType(run, "node"))
        if (std::hypot(node["x"].get<double>() - x, node["y"].get<double>() - y) < 0.01) return true;
    return false;
}

/// Axes every 6 m: 30 m by 24 m.
std::string Grid() {
    std::ostringstream script;
    for (int x = 0; x <= 30000; x += 6000) script << "line " << x << " 0 " << x << " 24000\n";
    for (int y = 0; y <= 24000; y += 6000) script << "line 0 " << y << " 30000 " << y << "\n";
    return script.str();
}

}  // namespace

TEST(TvoRun, EndsSnapAndCrossingsBreak) {
    const std::string base = "line 0 0 10000 0\n";
    const std::string twoInLine = "line 0 0 6000 0\nline 4000 0 10000 0\n";
    struct {
        const char* name;
        std::string script;
        const char* counts;
    } const rows[] = {
        {"nothing at all", "", "0 nodes, 0 lines"},
        {"an L corner", base + "line 10000 0 10000 5000\n", "3 nodes, 2 lines"},
        {"a T that starts 4 above", base + "line 5000 4 5000 4000\n", "4 nodes, 3 lines"},
        {"a T that starts 6 above", base + "line 5000 6 5000 4000\n", "4 nodes, 2 lines"},
        {"a T that starts 30 below", base + "line 5000 -30 5000 4000\n", "4 nodes, 3 lines"},
        {"a T that starts 60 below", base + "line 5000 -60 5000 4000\n", "5 nodes, 4 lines"},
        {"two that overlap in one direction", twoInLine, "4 nodes, 1 lines"},
        {"and two verticals through them", twoInLine + "line 2000 -3000 2000 3000\nline 8000 -3000 8000 3000\n",
         "10 nodes, 7 lines"},
        {"a grid", Grid(), "30 nodes, 49 lines"},
        {"a grid and its diagonal", Grid() + "start\nline 0 0 30000 24000\n", "37 nodes, 64 lines"},
        {"the diagonal taken back", Grid() + "start\nline 0 0 30000 24000\nundo\n", "30 nodes, 49 lines"},
        {"and drawn again", Grid() + "start\nline 0 0 30000 24000\nundo\nredo\n", "37 nodes, 64 lines"},
        {"the same line twice, once reversed", base + base + "line 10000 0 0 0\n", "2 nodes, 1 lines"},
        {"no breaking when it is off", base + "set autobreak 0\nline 5000 -1000 5000 1000\n", "4 nodes, 2 lines"},
        {"getline does not break", base + "getline 5000 -1000 5000 1000\n", "4 nodes, 2 lines"},
        {"a wider tolerance", "set tolerance 500\nline 0 0 10000 0\nline 10400 0 10400 9000\n", "3 nodes, 2 lines"},
        {"storeys do not meet", base + "set storey 2\nline 5000 -1000 5000 1000\n", "4 nodes, 2 lines"},
        {"a node within the tolerance is the same", "node 0 0\nnode 30 30\nnode 50 0\n", "2 nodes, 0 lines"},
        {"nodes without lines go on demand", base + "node 3000 3000\ncleannodes\n", "2 nodes, 1 lines"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TvoRun run = RunScript(row.script + "stat\n");
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(Counts(run), row.counts);
    }
}

TEST(TvoRun, JointsLieWhereTheyShould) {
    EXPECT_TRUE(HasNodeAt(RunScript("line 0 0 10000 0\nline 5000 -30 5000 4000\ndump\n"), 5000, -30));
    EXPECT_TRUE(HasNodeAt(RunScript("line 0 0 10000 0\nline 5000 -60 5000 4000\ndump\n"), 5000, 0));
}

TEST(TvoRun, ArcsOfOneCircleJoin) {
    struct {
        const char* name;
        const char* script;
        std::vector<double> bulges;
    } const rows[] = {
        {"old before new", "arc 0 0 5000 0 90\narc 0 0 5000 45 135\n", {-67.5}},
        {"new before old", "arc 0 0 5000 45 135\narc 0 0 5000 0 90\n", {-45, -22.5}},
        {"by bulge", "bulge 5000 0 0 5000 -45\n", {-45}},
        {"by three points", "arc3 5000 0 0 5000 3535.534 3535.534\n", {-45}},
        {"by three points, the other way round", "arc3 0 5000 5000 0 3535.534 3535.534\n", {-45}},
        {"across the direction 0", "arc 0 0 5000 350 10\n", {-10}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto bulges = Bulges(RunScript(std::string(row.script) + "dump lines\n"));
        ASSERT_EQ(bulges.size(), row.bulges.size());
        for (std::size_t i = 0; i < bulges.size(); ++i) EXPECT_NEAR(bulges[i], row.bulges[i], 0.0001);
    }
}

TEST(TvoRun, DeletingHealsTheLineUnderneath) {
    const std::string cross = "getline 0 0 3000 0\ngetline 3000 0 6000 0\ngetline 3000 -1000 3000 0\ngetline 3000 0 3000 1000\n";
    const TvoRun drawn = RunScript(cross + "dump lines\n");
    std::string ids;
    for (const json& line : OfType(drawn, "line"))
        if (line["length"] == 1000.0) ids.append(" ").append(line["id"].dump());
    EXPECT_EQ(Counts(RunScript(cross + "delete" + ids + "\nstat\n")), "5 nodes, 1 lines");
    EXPECT_EQ(Counts(RunScript(cross + "set merge 0\ndelete" + ids + "\nstat\n")), "5 nodes, 2 lines");
    EXPECT_EQ(Counts(RunScript(cross + "set automerge 0\ndelete" + ids + "\nstat\n")), "5 nodes, 2 lines");
    EXPECT_EQ(Counts(RunScript(cross + "start\ndelete" + ids + "\ncleannodes\nundo\nstat\n")), "5 nodes, 4 lines");
}

TEST(TvoRun, PrintsTheFormsThatItPromises) {
    const TvoRun run = RunScript(
        "getline 6000 0 0 0\ngetline 0 0 6000 0\nline 0 0 30 0\nline 0 0 0.1 9000\n"
        "number\ndump\nstat\n");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out,
              R"({"type":"result","line":33554433,"existed":false,"swapped":true,"degenerate":false}
{"type":"result","line":33554433,"existed":true,"swapped":false,"degenerate":false}
{"type":"result","line":null,"existed":false,"swapped":false,"degenerate":true}
{"type":"result","line":null,"existed":false,"swapped":false,"degenerate":false}
{"type":"node","id":16777217,"no":2,"x":6000.0,"y":0.0,"storey":-1}
{"type":"node","id":16777218,"no":1,"x":0.0,"y":0.0,"storey":-1}
{"type":"node","id":16777219,"no":3,"x":0.100000001,"y":9000.0,"storey":-1}
{"type":"line","id":33554433,"no":1,"start":16777218,"end":16777217,"arc":0,"bulge":0.0,"length":6000.0,"storey":-1}
{"type":"line","id":33554434,"no":2,"start":16777218,"end":16777219,"arc":0,"bulge":0.0,"length":9000.0,"storey":-1}
{"type":"stat","nodes":3,"lines":2,"plates":0,"dangling":2,"area":0.0,"canUndo":true,"canRedo":false}
)");
}

TEST(TvoRun, FindsWhatTouchesABox) {
    const TvoRun run = RunScript("getline 0 0 6000 0\ngetline 0 0 0 9000\nnode 5900 500\nrect 100 100 -100 -100\n");
    const json found = run.Json().back();
    EXPECT_EQ(found["kept"], (json{16777217, 33554433, 33554434}));
    for (const json& id : found["kept"])  // what the index offers holds at least those
        EXPECT_NE(std::find(found["offered"].begin(), found["offered"].end(), id), found["offered"].end()) << id;
}

TEST(TvoRun, TellsWhatIsWrongWithALine) {
    struct {
        const char* name;
        const char* line;
        const char* message;
    } const rows[] = {
        {"unknown command", "lien 0 0 1 1", "there is no command 'lien'"},
        {"names are as they are written", "LINE 0 0 1 1", "there is no command 'LINE'"},
        {"too few words", "line 0 0 1", "line takes X1 Y1 X2 Y2, got 3 words"},
        {"too many words", "undo 1", "undo takes no arguments, got 1 word"},
        {"no number", "node 0 abc", "Y: 'abc' is not a number"},
        {"a number and more", "node 12mm 0", "X: '12mm' is not a number"},
        {"hexadecimal", "node 0x10 0", "X: '0x10' is not a number"},
        {"NaN", "node nan 0", "X: 'nan' is not a finite number"},
        {"infinity", "line 0 0 inf 0", "X2: 'inf' is not a finite number"},
        {"too large for a double", "node 1e999 0", "X: '1e999' is out of range"},
        {"too large for a plan", "node 1e13 0", "X: '1e13' is out of range"},
        {"a radius of nothing", "arc 0 0 0 0 90", "R: '0' must be greater than 0"},
        {"a radius below", "arc 0 0 -5 0 90", "R: '-5' is out of range"},
        {"more than once round", "arc 0 0 1000 0 450", "turns more than once round"},
        {"a clockwise bulge", "bulge 0 0 1000 0 45", "DEGREES: '45' is out of range"},
        {"a full circle", "bulge 0 0 1000 0 -180", "DEGREES: '-180' gives no arc"},
        {"three points on a line", "arc3 0 0 1000 0 500 0", "the three points give no arc"},
        {"no such line", "delete 33554433", "there is no line with the identity 33554433"},
        {"an identity that is none", "delete -1", "ID: '-1' is out of range"},
        {"unknown setting", "set speed 1", "there is no setting 'speed'"},
        {"a setting out of range", "set merge 2", "merge: '2' is out of range, 0 to 1"},
        {"half a tolerance", "set tolerance 0.5", "tolerance: '0.5' is not a whole number"},
        {"no tolerance", "set tolerance 0", "tolerance: '0' is out of range"},
        {"a dump of what is not there", "dump walls", "not 'walls'"},
        {"no such plate", "around 50331649", "ID: there is no plate with the identity 50331649"},
        {"a line that is none", "stride 16777217", "LINEID: there is no line with the identity 16777217"},
        {"a load in the air", "load 50331649 3.5", "PLATEID: there is no plate"},
        {"a type that plates can't have", "combine 2 7 50331649", "TYPE: '2' is no type for plates"},
        {"the type of loads", "combine 254 7 50331649", "TYPE: '254' is no type for plates"},
        {"a tag that is none", "combine 11 -1 50331649", "TAG: '-1' is out of range"},
        {"an end without a begin", "end", "no batch is open"},
        {"outer of what", "set outer 2", "outer: '2' is out of range, 0 to 1"},
        {"a quote left open", "svg \"a b.svg", "a quote is not closed"},
        {"a grid without a count", "grid 6*40 \"3;6*\"", "Y, unit 2 '6*': there is no count behind the star"},
        {"a grid without a spacing", "grid *4 6", "X, unit 1 '*4': there is no spacing before the star"},
        {"a spacing that is none", "grid 6*4;1e400 6", "X, unit 2 '1e400', spacing: '1e400' is out of range"},
        {"half a span", "grid 6*1.5 6", "X, unit 1 '6*1.5', count: '1.5' is not a whole number"},
        {"too long a grid", "grid 6*99999;1 6", "X: the spacings make 100001 positions; 100000 are the most"},
        {"a grid of one axis", "grid 6*4", "grid takes X Y, X Y X0 Y0, or off"},
        {"missing drawing", "import nowhere.dxf 0", "nowhere.dxf: No such file or directory"},
        {"a picture that can't be written", "svg /nowhere/a.svg", "cannot write /nowhere/a.svg: No such file or directory"},
        {"a picture without size", "png a.png 0 100", "W: '0' is out of range"},
        {"a folder in the place of a picture", "svg /tmp", "cannot write /tmp: Is a directory"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string script = std::string("# first\nstat\n\n") + row.line + "  # with a remark\nstat\n";
        const TvoRun stopped = RunScript(script);
        EXPECT_EQ(stopped.status, 2);
        EXPECT_EQ(stopped.err.rfind("error: line 4: ", 0), 0u) << stopped.err;
        EXPECT_NE(stopped.err.find(row.message), std::string::npos) << stopped.err;
        EXPECT_EQ(stopped.Json().size(), 1u);

        const TvoRun wentOn = RunTvo({"run", "--keep-going"}, script);
        EXPECT_EQ(wentOn.status, 1);
        EXPECT_EQ(wentOn.err, stopped.err);
        EXPECT_EQ(Counts(wentOn), "0 nodes, 0 lines");
    }
}

TEST(TvoRun, ReadsScriptsAsPeopleWriteThem) {
    const ScratchFolder folder;
    const std::string script = "\xEF\xBB\xBF# a remark\r\n\r\n\tline 0 0 +6000 0#tail\r\n  LINE\r\nstat";
    const std::string file = folder.Write("my script.tvo", script);
    const TvoRun run = RunTvo({"run", "my script.tvo", "--keep-going"}, "", folder.Path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "error: line 4: there is no command 'LINE'\n");
    EXPECT_EQ(Counts(run), "2 nodes, 1 lines");

    const TvoRun missing = RunTvo({"run", "nowhere.tvo"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "error: cannot read nowhere.tvo: No such file or directory\n");
}

TEST(TvoRun, DrawsPictures) {
    const ScratchFolder folder;
    const TvoRun run = RunTvo({"run"}, Grid() + "arc 15000 24000 6000 0 180\nsvg \"a b.svg\"\npng a.png 640 480\n", folder.Path());
    EXPECT_EQ(run.status, 0) << run.err;

    const std::string svg = ReadWholeFile(folder.File("a b.svg"));
    const auto count = [&](const std::string& text) {
        std::size_t n = 0;
        for (std::size_t at = svg.find(text); at != std::string::npos; at = svg.find(text, at + 1)) ++n;
        return n;
    };
    EXPECT_EQ(count("<line "), 51u);  // the half circle starts and ends in the middle of two pieces
    EXPECT_NE(svg.find("<path d=\"M21000 -24000A6000 6000 0 0 0 9000 -24000\"/>"), std::string::npos) << svg;
    EXPECT_EQ(count("<g id=\"lines\""), 1u);
    EXPECT_EQ(count("<circle "), 32u);

    const std::string png = ReadWholeFile(folder.File("a.png"));
    ASSERT_GT(png.size(), 24u);
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(png.substr(16, 8), std::string("\0\0\x02\x80\0\0\x01\xE0", 8));
    // Nothing is left beside the files.
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) names.insert(entry.path().filename());
    EXPECT_EQ(names, (std::set<std::string>{"a b.svg", "a.png"}));
}

TEST(TvoRun, AGridLiesBehindPicturesUntilItIsOff) {
    const ScratchFolder folder;
    const TvoRun run = RunTvo({"run"},
                              "svg a.svg\ngrid 3*2 \"1;1.5*2\" -1000 500\nsvg b.svg\npng b.png 200 150\n"
                              "line 0 0 6000 0\nundo\nline 0 0 600 400\nsvg c.svg\n"
                              "grid 0.001*99999 0.001*99999 -50000 -50000\nsvg d.svg\ngrid off\nsvg e.svg\npng e.png 200 150\n",
                              folder.Path());
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(OfType(run, "grid")[0], json::parse(R"({"type":"grid","x":3,"y":4})"));
    const auto rows = [&](const char* name) {
        const std::string svg = ReadWholeFile(folder.File(name));
        EXPECT_LT(svg.size(), 100000u) << name;
        std::string found;
        for (std::size_t at = svg.find("<use"); at != std::string::npos; at = svg.find("<use", at + 1))
            found += svg.substr(at, svg.find('>', at) - at + 1);
        return found;
    };
    EXPECT_EQ(rows("a.svg"), "");
    EXPECT_EQ(rows("b.svg"), "<use href=\"#gridrow\" y=\"-500\"/><use href=\"#gridrow\" y=\"-1500\"/>"
                             "<use href=\"#gridrow\" y=\"-3000\"/><use href=\"#gridrow\" y=\"-4500\"/>")
        << "an empty model shows the whole grid";
    EXPECT_EQ(rows("c.svg"), "") << "none of it within the model";
    EXPECT_NE(rows("d.svg"), "");
    EXPECT_EQ(rows("e.svg"), "");
    EXPECT_NE(ReadWholeFile(folder.File("b.png")), ReadWholeFile(folder.File("e.png")));
}
