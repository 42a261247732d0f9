// tvo run and tvo check: plates that follow the net, and what keeps cells open, as their users see them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "tvo_process.h"

namespace {

using nlohmann::json;

std::vector<json> OfType(const TvoRun& run, const std::string& type) {
    std::vector<json> found;
    for (const json& object : run.Json())
        if (object["type"] == type) found.push_back(object);
    return found;
}

/// "4/4/1" nodes, lines and plates by the last stat.
std::string Counts(const TvoRun& run) {
    const auto stats = OfType(run, "stat");
    if (stats.empty()) return "no stat: " + run.out + run.err;
    std::ostringstream text;
    text << stats.back()["nodes"] << "/" << stats.back()["lines"] << "/" << stats.back()["plates"];
    return text.str();
}

std::vector<double> Areas(const TvoRun& run) {
    std::vector<double> areas;
    for (const json& plate : OfType(run, "plate")) areas.push_back(plate["area"]);
    std::sort(areas.begin(), areas.end());
    return areas;
}

void ExpectAreas(const TvoRun& run, const std::vector<double>& expected) {
    const auto areas = Areas(run);
    ASSERT_EQ(areas.size(), expected.size()) << run.out;
    for (std::size_t i = 0; i < areas.size(); ++i) EXPECT_NEAR(areas[i], expected[i], 1e-6 * expected[i]) << i;
}

/// The identity of the line between two points after a script; "0" if there is none.
std::string LineBetween(const std::string& script, double x1, double y1, double x2, double y2) {
    const TvoRun run = RunScript(script + "dump\n");
    std::map<json, std::pair<double, double>> places;
    for (const json& node : OfType(run, "node")) places[node["id"]] = {node["x"], node["y"]};
    const auto is = [&](const json& id, double x, double y) {
        return std::hypot(places[id].first - x, places[id].second - y) < 0.01;
    };
    for (const json& line : OfType(run, "line")) {
        const json &a = line["start"], &b = line["end"];
        if ((is(a, x1, y1) && is(b, x2, y2)) || (is(b, x1, y1) && is(a, x2, y2))) return line["id"].dump();
    }
    return "0";
}

/// The identity of the plate with that centroid after a script.
std::string PlateAt(const std::string& script, double x, double y) {
    for (const json& plate : OfType(RunScript(script + "dump plates\n"), "plate"))
        if (std::hypot(plate["cx"].get<double>() - x, plate["cy"].get<double>() - y) < 0.01) return plate["id"].dump();
    return "0";
}

/// What the script's last dump printed.
std::string LastDump(const TvoRun& run) {
    std::string text;
    for (const json& object : run.Json()) {
        if (object["type"] == "stat") text.clear();
        if (object["type"] != "result" && object["type"] != "stat") text += object.dump() + "\n";
    }
    return text;
}

std::string Rectangle(double x1, double y1, double x2, double y2) {
    std::ostringstream script;
    script << "line " << x1 << " " << y1 << " " << x2 << " " << y1 << "\nline " << x2 << " " << y1 << " " << x2 << " " << y2
           << "\nline " << x2 << " " << y2 << " " << x1 << " " << y2 << "\nline " << x1 << " " << y2 << " " << x1 << " " << y1
           << "\n";
    return script.str();
}

/// Axes every 6 m: 30 m by 24 m.
std::string Grid() {
    std::ostringstream script;
    for (int x = 0; x <= 30000; x += 6000) script << "line " << x << " 0 " << x << " 24000\n";
    for (int y = 0; y <= 24000; y += 6000) script << "line 0 " << y << " 30000 " << y << "\n";
    return script.str();
}

const std::string kLook = "stat\ndump\n";

/// A plate as a set of lines, so that plates of two formings can be compared.
std::multiset<std::string> Borders(const std::vector<json>& plates) {
    std::multiset<std::string> borders;
    for (const json& plate : plates) {
        std::vector<std::string> lines;
        for (const json& shape : plate["sides"])
            for (const json& side : shape) lines.push_back(side.dump());
        std::rotate(lines.begin(), std::min_element(lines.begin(), lines.end()), lines.end());
        std::string text;
        for (const std::string& line : lines) text += line;
        borders.insert(text);
    }
    return borders;
}

}  // namespace

// ---- scenarios ------------------------------------------------------------------------------------

TEST(TvoPlates, CellsOfAGridFollowADiagonal) {
    const std::string grid = Grid() + "plates\n";
    const TvoRun formed = RunScript(grid + kLook);
    EXPECT_EQ(Counts(formed), "30/49/20");
    ExpectAreas(formed, std::vector<double>(20, 36e6));

    const std::string cut = grid + "start\nline 0 0 30000 24000\n";
    const TvoRun after = RunScript(cut + kLook);
    EXPECT_EQ(Counts(after), "37/64/28");
    const auto areas = Areas(after);
    EXPECT_NEAR(areas[0], 0.9e6, 1);
    EXPECT_NEAR(areas[1], 0.9e6, 1);
    EXPECT_NEAR(OfType(after, "stat")[0]["area"].get<double>(), 720e6, 720);

    const TvoRun undone = RunScript(cut + "undo\n" + kLook);
    EXPECT_EQ(Counts(undone), "30/49/20");
    EXPECT_EQ(LastDump(undone), LastDump(formed));
    EXPECT_EQ(LastDump(RunScript(cut + "undo\nredo\n" + kLook)), LastDump(after));
}

TEST(TvoPlates, DeletingAChordJoinsTheCells) {
    const std::string cells = Rectangle(0, 0, 8000, 6000) + "line 4000 0 4000 6000\nplates\n";
    const TvoRun formed = RunScript(cells + kLook);
    EXPECT_EQ(Counts(formed), "6/7/2");
    ExpectAreas(formed, {24e6, 24e6});
    const std::string erase = "start\ndelete " + LineBetween(cells, 4000, 0, 4000, 6000) + "\n";
    const TvoRun merged = RunScript(cells + erase + kLook);
    EXPECT_EQ(Counts(merged), "4/4/1");
    ExpectAreas(merged, {48e6});
    const TvoRun unmerged = RunScript(cells + "set merge 0\n" + erase + kLook);
    EXPECT_EQ(Counts(unmerged), "6/6/1");
    ExpectAreas(unmerged, {48e6});
    // One step took the line, the merges, the plates and the nodes.
    EXPECT_EQ(LastDump(RunScript(cells + erase + "undo\n" + kLook)), LastDump(formed));
}

TEST(TvoPlates, AStubFromOutsideSplitsASide) {
    const std::string cell = Rectangle(0, 0, 8000, 6000) + "plates\nline 4000 -3000 4000 0\n";
    const TvoRun run = RunScript(cell + kLook);
    EXPECT_EQ(Counts(run), "6/6/1");
    EXPECT_EQ(OfType(run, "stat")[0]["dangling"], 1);
    std::set<json> lines, border;
    for (const json& line : OfType(run, "line")) lines.insert(line["id"]);
    const json plate = OfType(run, "plate")[0];
    for (const json& shape : plate["sides"])
        for (const json& side : shape) border.insert(side[0]);
    EXPECT_EQ(border.size(), 5u);
    EXPECT_TRUE(std::includes(lines.begin(), lines.end(), border.begin(), border.end())) << run.out;
    const std::string wall = LineBetween(cell, 0, 0, 4000, 0);
    EXPECT_EQ(Counts(RunScript(cell + "delete " + wall + "\nstat\n")), "6/5/0");
    // And the cell comes back with its wall, though no plate stood meanwhile.
    EXPECT_EQ(Counts(RunScript(cell + "delete " + wall + "\nline 0 0 4000 0\nstat\n")), "6/6/1");
}

TEST(TvoPlates, HalfADisc) {
    const std::string script = Rectangle(0, 0, 6000, 4000) + "arc 3000 4000 3000 0 180\nplates\n";
    const TvoRun formed = RunScript(script + kLook);
    EXPECT_EQ(Counts(formed), "4/5/2");
    ExpectAreas(formed, {14137167, 24e6});
    const TvoRun cut = RunScript(script + "line 3000 -1000 3000 8000\n" + kLook);
    EXPECT_EQ(Counts(cut), "9/12/4");
    ExpectAreas(cut, {7068583.5, 7068583.5, 12e6, 12e6});
    bool found = false;
    for (const json& plate : OfType(cut, "plate")) {
        if (std::hypot(plate["cx"].get<double>() - 1726.76, plate["cy"].get<double>() - 5273.24) > 0.01) continue;
        EXPECT_NEAR(plate["perimeter"].get<double>(), 10712.39, 0.01);
        found = true;
    }
    EXPECT_TRUE(found) << cut.out;
}

TEST(TvoPlates, BridgesToAnIsland) {
    const std::string plates = Rectangle(0, 0, 20000, 12000) + Rectangle(5000, 4000, 9000, 8000) + "plates\n";
    const std::string bridge = plates + "line 5000 4000 0 0\n", second = bridge + "line 9000 8000 20000 12000\n";
    struct {
        const char* name;
        std::string script;
        const char* counts;
        std::vector<double> areas;
    } const rows[] = {
        {"an island", plates, "8/8/2", {16e6, 240e6}},
        {"one bridge: its plate goes round the island", bridge, "8/9/2", {16e6, 224e6}},
        {"two bridges: two plates beside it", second, "8/10/3", {16e6, 88e6, 136e6}},
        {"the same, walked afresh", second + "plates\n", "8/10/3", {16e6, 88e6, 136e6}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TvoRun run = RunScript(row.script + kLook);
        EXPECT_EQ(Counts(run), row.counts);
        ExpectAreas(run, row.areas);
    }
}

// ---- the bracket ----------------------------------------------------------------------------------

TEST(TvoPlates, EditsLeaveNoBareNodesBehind) {
    const std::string cell = Rectangle(0, 0, 8000, 6000);
    const std::string stub = "line 4000 -3000 4000 -500\n";
    struct {
        const char* name;
        std::string before, between, after;  // the stub is deleted between the latter two
        const char* counts;
    } const rows[] = {
        {"no plates, no bracket", cell + stub, "", "", "6/4/0"},
        {"plates", cell + stub + "plates\n", "", "", "4/4/1"},
        {"plates before the stub", cell + "plates\n" + stub, "", "", "4/4/1"},
        {"one end placed by hand", cell + "node 4000 -3000\n" + stub + "plates\n", "", "", "5/4/1"},
        {"a node placed elsewhere", cell + stub + "node 2000 2000\nplates\n", "", "", "5/4/1"},
        {"a line too short, and its node with it", cell + stub + "plates\n", "line 2000 2000 2020 2000\n", "", "4/4/1"},
        {"a batch is a bracket at any time", cell + stub, "begin\n", "end\n", "4/4/0"},
        {"taken back with the line", cell + stub + "plates\n", "start\n", "undo\n", "6/5/1"},
        {"plates taken back: as if they had never stood", cell + "start\nplates\nundo\n" + stub, "", "", "6/4/0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string erase = "delete " + LineBetween(row.before, 4000, -3000, 4000, -500) + "\n";
        EXPECT_EQ(Counts(RunScript(row.before + row.between + erase + row.after + "stat\n")), row.counts);
    }
}

TEST(TvoPlates, ABatchIsFollowedAtItsEnd) {
    const std::string cell = Rectangle(0, 0, 8000, 6000) + "plates\n";
    const TvoRun run = RunScript(cell + "begin\nline 2000 0 2000 6000\nline 0 3000 8000 3000\nstat\nend\nstat\n");
    const auto stats = OfType(run, "stat");
    EXPECT_EQ(stats[0]["plates"], 1);
    EXPECT_EQ(stats[1]["plates"], 4);
    EXPECT_EQ(RunScript("begin\nbegin\n").err, "error: line 2: a batch is open; end closes it\n");
}

TEST(TvoPlates, StepsInABatchTakeThePlatesAlong) {
    const std::string cell = Rectangle(0, 0, 8000, 6000) + "plates\nstart\nbegin\nline 4000 0 4000 6000\n";
    EXPECT_EQ(Counts(RunScript(cell + "end\nstat\n")), "6/7/2");
    EXPECT_EQ(Counts(RunScript(cell + "undo\nend\nstat\n")), "4/4/1");
    EXPECT_EQ(Counts(RunScript(cell + "undo\nredo\nend\nstat\n")), "6/7/2");
    EXPECT_EQ(Counts(RunScript(cell + "undo\nredo\nend\nundo\nstat\n")), "4/4/1");
}

TEST(TvoPlates, FollowedPlatesAreThoseOfAFreshWalk) {
    for (unsigned round = 0; round < 8; ++round) {
        std::mt19937 rng(20241107 + round);
        const auto pick = [&](int count) { return static_cast<int>(rng() % static_cast<unsigned>(count)); };
        std::ostringstream script;
        script << Grid() << "plates\n";
        for (int edit = 0; edit < 25; ++edit) {
            if (pick(4) == 0) {  // identities of lines run from 33554433 without gaps; one that is gone is an error
                script << "delete " << 33554433 + pick(90) << "\n";
            } else if (pick(5) == 0) {
                script << "arc " << pick(11) * 3000 << " " << pick(9) * 3000 << " 3000 0 180\n";
            } else {
                script << "line " << pick(11) * 3000 << " " << pick(9) * 3000 << " " << pick(11) * 3000 << " " << pick(9) * 3000
                       << "\n";
            }
        }
        const TvoRun followed = RunTvo({"run", "--keep-going"}, script.str() + "dump plates\n");
        const TvoRun fresh = RunTvo({"run", "--keep-going"}, script.str() + "plates\ndump plates\n");
        ASSERT_EQ(Borders(OfType(followed, "plate")), Borders(OfType(fresh, "plate"))) << "round " << round << "\n" << script.str();
    }
}

// ---- loads ----------------------------------------------------------------------------------------

TEST(TvoPlates, AnImportIsFollowedBeforeItIsReported) {
    const std::string import = "import " TVO_SOURCE_DIR "/examples/office_plan.dxf 轴线\n";
    const TvoRun followed = RunScript(Rectangle(-9000, -9000, -3000, -5000) + "plates\n" + import + "stat\n");
    const json report = OfType(followed, "import")[0], stat = OfType(followed, "stat")[0];
    EXPECT_EQ(report["nodes"], stat["nodes"]);
    EXPECT_EQ(report["plates"]["count"], stat["plates"]);
    EXPECT_GT(stat["plates"], 60);
    EXPECT_TRUE(OfType(RunScript(import), "import")[0]["plates"].is_null()) << "there were none to follow";
}

TEST(TvoPlates, LoadsStayWithTheirPlate) {
    const std::string cells = Rectangle(0, 0, 8000, 6000) + "line 4000 0 4000 6000\nplates\n";
    const std::string loaded = cells + "load " + PlateAt(cells, 2000, 3000) + " 3.5\n";
    const std::string divided = "begin\nline 0 3000 4000 3000\n";
    const std::string wall = LineBetween(loaded + divided, 0, 3000, 4000, 3000);
    struct {
        const char* name;
        std::string edits;
        double value;  // 0: gone
        double area;
    } const rows[] = {
        {"as put", "", 3.5, 24e6},
        {"put again: the new one counts", "load " + PlateAt(cells, 2000, 3000) + " 5\n", 5, 24e6},
        {"a stub beside it: the plate is another, of the same place", "line 2000 -3000 2000 0\n", 3.5, 24e6},
        {"the whole net walked afresh", "plates\n", 3.5, 24e6},
        {"the other cell divided", "line 4000 3000 8000 3000\n", 3.5, 24e6},
        {"its own divided", "line 0 3000 4000 3000\n", 0, 0},
        {"divided and taken back", "start\nline 0 3000 4000 3000\nundo\n", 3.5, 24e6},
        {"divided, taken back and done again", "start\nline 0 3000 4000 3000\nundo\nredo\n", 0, 0},
        {"divided and put together in one batch",
         divided + "delete " + wall + "\nend\n", 3.5, 24e6},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TvoRun run = RunScript(loaded + row.edits + "dump\n");
        const auto loads = OfType(run, "load");
        ASSERT_EQ(loads.size(), row.value == 0 ? 0u : 1u) << run.out << run.err;
        if (loads.empty()) continue;
        EXPECT_EQ(loads[0]["value"], row.value);
        const auto plates = OfType(run, "plate");
        const auto plate = std::find_if(plates.begin(), plates.end(), [&](const json& p) { return p["id"] == loads[0]["plate"]; });
        ASSERT_NE(plate, plates.end()) << run.out;
        EXPECT_NEAR((*plate)["cx"].get<double>(), 2000, 0.01);
        EXPECT_NEAR((*plate)["area"].get<double>(), row.area, 24);
    }
}

TEST(TvoPlates, ModelsKeepWhatHangsOnThem) {
    const ScratchFolder folder;
    const std::string cell = Rectangle(0, 0, 8000, 6000) + "node 4000 -3000\nline 4000 -3000 4000 -500\nplates\nload 50331649 2.5\n";
    const std::string goOn = "start\nline 4000 -500 4000 0\ndump\nsave b.tvo\n";
    const TvoRun through = RunTvo({"run"}, cell + goOn, folder.Path());
    const std::string bytes = ReadWholeFile(folder.File("b.tvo"));
    ASSERT_EQ(RunTvo({"run"}, cell + "save a.tvo\n", folder.Path()).status, 0);
    const TvoRun later = RunTvo({"run"}, "open a.tvo\n" + goOn, folder.Path());
    EXPECT_EQ(OfType(later, "load").size(), 1u) << later.out << later.err;
    for (const char* type : {"node", "line", "plate", "load"}) EXPECT_EQ(OfType(later, type), OfType(through, type)) << type;
    EXPECT_EQ(ReadWholeFile(folder.File("b.tvo")), bytes);
    // The node that was placed by hand stays, also after opening.
    const std::string stub = LineBetween(cell, 4000, -3000, 4000, -500);
    EXPECT_EQ(Counts(RunTvo({"run"}, "open a.tvo\ndelete " + stub + "\nstat\n", folder.Path())), "5/4/1");
    // Plates follow where none stands for the moment.
    const std::string wall = LineBetween(cell, 0, 0, 8000, 0);
    ASSERT_EQ(RunTvo({"run"}, "open a.tvo\ndelete " + wall + "\nsave c.tvo\n", folder.Path()).status, 0);
    EXPECT_EQ(Counts(RunTvo({"run"}, "open c.tvo\nline 0 0 8000 0\nstat\n", folder.Path())), "6/5/1");
    EXPECT_EQ(RunTvo({"check", "a.tvo"}, "", folder.Path()).status, 1);
}

// ---- questions ------------------------------------------------------------------------------------

TEST(TvoPlates, AnswersQuestions) {
    const std::string plates = Rectangle(0, 0, 20000, 12000) + "line 12000 0 12000 12000\n" + Rectangle(5000, 4000, 9000, 8000) +
                               "line 14000 6000 20000 6000\nplates\n";
    const std::string big = PlateAt(plates, 6000, 6000), island = PlateAt(plates, 7000, 6000), right = PlateAt(plates, 16000, 6000);
    // The big plate and its island share no centroid, so that three are found.
    ASSERT_EQ(std::set<std::string>({big, island, right, "0"}).size(), 4u);
    const auto ids = [](std::initializer_list<std::string> list) {
        json array = json::array();
        for (const std::string& id : list) array.push_back(json::parse(id));
        return array;
    };
    const auto expect = [&](const std::string& question, const char* key, const json& value) {
        const json got = RunScript(plates + question + "\n").Json().back();
        EXPECT_EQ(got[key], value) << question << ": " << got;
    };
    expect("embrace " + island, "by", json::parse(big));
    expect("embrace " + big, "by", nullptr);
    expect("inside " + big, "plates", ids({island}));
    expect("inside " + right, "plates", ids({}));
    expect("around " + big, "plates", ids({right}));
    expect("around " + island, "plates", ids({}));
    expect("stride " + LineBetween(plates, 12000, 0, 12000, 12000), "plates", ids({}));
    // In an open batch: chords that break walls cut the big plate, also where one touches the wall of the next; and so
    // does one between two stubs.
    const std::string stubs = "line 3000 0 3000 1000\nline 4000 0 4000 1000\n", stubbed = PlateAt(plates + stubs, 6000, 6000);
    const auto ask = [&](const std::string& chords, double x1, double y1, double x2, double y2) {
        const std::string batch = stubs + "begin\n" + chords;
        return batch + "stride " + LineBetween(plates + batch, x1, y1, x2, y2);
    };
    expect(ask("line 2000 0 2000 12000\n", 2000, 0, 2000, 12000), "plates", ids({stubbed}));
    expect(ask("line 9500 7000 12000 7000\nline 9500 7000 9500 12000\n", 9500, 7000, 12000, 7000), "plates",
           ids({stubbed, PlateAt(plates + stubs, 16000, 6000)}));
    expect(ask("line 3000 500 4000 500\n", 3000, 500, 4000, 500), "plates", ids({stubbed}));
    expect("isrect " + right + " 1", "rect", true);
    const json corners = RunScript(plates + "isrect " + right + " 1\n").Json().back();
    EXPECT_NEAR(corners["width"].get<double>() * corners["height"].get<double>(), 96e6, 96);
    EXPECT_EQ(corners["corners"].size(), 4u);

    const std::string combined = plates + "combine 11 7 " + big + " " + right + "\n";
    const TvoRun run = RunScript(combined + "stat\ndump plates\n");
    EXPECT_EQ(OfType(run, "stat")[0]["plates"], 3);  // those of the net alone
    int tagged = 0;
    for (const json& plate : OfType(run, "plate")) tagged += plate["tag"] == 7 && plate["id"].get<unsigned>() >> 24 == 11;
    EXPECT_EQ(tagged, 2) << run.out;
    EXPECT_EQ(OfType(run, "combine")[0]["plates"].size(), 2u);
}

TEST(TvoPlates, FollowsItsSwitches) {
    const std::string cell = Rectangle(0, 0, 8000, 6000);
    EXPECT_EQ(Counts(RunScript(cell + "plates\nstat\n")), "4/4/1");
    EXPECT_EQ(Counts(RunScript(cell + "set outer 1\nplates\nstat\n")), "4/4/2");
    // Walks see only what has been added since: the first two cells are not formed again.
    const std::string more = "plates\nset wholenet 0\nbegin\n" + Rectangle(20000, 0, 28000, 6000) + "end\nstat\n";
    EXPECT_EQ(Counts(RunScript(cell + more)), "8/8/2");
}

TEST(TvoPlates, PicturesShowThem) {
    const ScratchFolder folder;
    const std::string script = Rectangle(0, 0, 8000, 6000) + "plates\nload 50331649 2.5\nsvg a.svg\npng a.png 400 300\n";
    const TvoRun run = RunTvo({"run"}, script, folder.Path());
    EXPECT_EQ(run.status, 0) << run.err;
    const std::string svg = ReadWholeFile(folder.File("a.svg"));
    EXPECT_NE(svg.find("<path d=\"M0 0L8000 0L8000 -6000L0 -6000L0 0Z\""), std::string::npos) << svg;
    for (const char* text : {">1<", ">48.0 m²<", ">q = 2.5<", "<pattern "}) EXPECT_NE(svg.find(text), std::string::npos) << text;
    EXPECT_GT(ReadWholeFile(folder.File("a.png")).size(), 1000u);
}

// ---- tvo check ------------------------------------------------------------------------------------

TEST(TvoCheck, ListsWhatKeepsCellsOpen) {
    const std::string plan = std::string(TVO_TEST_DATA) + "/open_cells.dxf";
    const TvoRun run = RunTvo({"check", plan, "--layer", "AXIS", "--json"});
    EXPECT_EQ(run.status, 1);
    std::multiset<std::string> found;
    const auto at = [](const json& fault, const char* x, const char* y) {
        std::ostringstream text;
        text << std::lround(fault[x].get<double>()) << "," << std::lround(fault[y].get<double>());
        return text.str();
    };
    for (const json& fault : run.Json()) {
        if (fault["type"] == "check") continue;
        std::string text = fault["type"].get<std::string>() + " ";
        text += fault["type"] == "gap" ? std::min(at(fault, "x", "y"), at(fault, "x2", "y2")) : at(fault, "x", "y");
        if (fault["type"] == "gap")  // which of both comes first is by identity
            text += " to " + std::max(at(fault, "x", "y"), at(fault, "x2", "y2"));
        else if (fault.contains("x2"))
            text += " to " + at(fault, "x2", "y2");
        found.insert(text);
    }
    // A corner that gapes, a wall that stops short of another, one that passes by within the tolerance, a lone stub.
    EXPECT_EQ(found, (std::multiset<std::string>{
                         "dangling 0,6000", "dangling 120,6000", "gap 0,6000 to 120,6000",
                         "dangling 20000,5800", "near 20000,5800 to 20000,6000",
                         "dangling 14000,5980", "near 14000,5980 to 14000,6000",
                         "dangling 30000,0", "dangling 33000,0"}))
        << run.out;
    const json sum = run.Json().back();
    EXPECT_EQ(sum["dangling"], 6);
    EXPECT_EQ(sum["gap"], 1);
    EXPECT_EQ(sum["near"], 2);
    EXPECT_EQ(sum["tolerance"], 50);

    const TvoRun text = RunTvo({"check", plan, "--layer", "AXIS"});
    EXPECT_EQ(text.status, 1);
    EXPECT_NE(text.out.find("1 gap between two ends"), std::string::npos) << text.out;

    const TvoRun clean = RunTvo({"check", plan, "--layer", "CLEAN"});
    EXPECT_EQ(clean.status, 0) << clean.out;
    EXPECT_EQ(clean.out, "nothing keeps a cell open\n");
    EXPECT_EQ(RunTvo({"check", plan, "--layer", "AXIS", "--tolerance", "250", "--json"}).Json().back()["gap"], 0);
}
