// tvo layers and tvo import: from a drawing to a net, as their users see it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tvo_process.h"

namespace {

using nlohmann::json;

/// A drawing from words: "LINE A 0 0 6000 0; ARC A 0 0 1000 0 90; ...", each entity with its layer.
class Drawing {
public:
    explicit Drawing(const std::string& header = "") {
        m_text = header.empty() ? "" : "0\nSECTION\n2\nHEADER\n" + header + "0\nENDSEC\n";
        m_text += "0\nSECTION\n2\nENTITIES\n";
    }
    Drawing& Tags(const std::vector<std::pair<int, std::string>>& tags) {
        for (const auto& [code, value] : tags) m_text += std::to_string(code) + "\n" + value + "\n";
        return *this;
    }
    Drawing& Line(const std::string& layer, const char* x1, const char* y1, const char* x2, const char* y2) {
        return Tags({{0, "LINE"}, {8, layer}, {10, x1}, {20, y1}, {11, x2}, {21, y2}});
    }
    Drawing& Circle(const std::string& layer, const char* x, const char* y, const char* r) {
        return Tags({{0, "CIRCLE"}, {8, layer}, {10, x}, {20, y}, {40, r}});
    }
    Drawing& Arc(const std::string& layer, const char* x, const char* y, const char* r, const char* start, const char* end) {
        return Tags({{0, "ARC"}, {8, layer}, {10, x}, {20, y}, {40, r}, {50, start}, {51, end}});
    }
    Drawing& Text(const std::string& layer) {
        return Tags({{0, "TEXT"}, {8, layer}, {10, "0"}, {20, "0"}, {40, "100"}, {1, "A"}});
    }
    /// A square of closed sides, the first vertex not repeated.
    Drawing& ClosedSquare(const std::string& layer, const char* side) {
        return Tags({{0, "LWPOLYLINE"}, {8, layer}, {90, "4"}, {70, "1"}, {10, "0"}, {20, "0"}, {10, side}, {20, "0"},
                     {10, side}, {20, side}, {10, "0"}, {20, side}});
    }
    std::string End() const { return m_text + "0\nENDSEC\n0\nEOF\n"; }
    std::string CutShort() const { return m_text; }

private:
    std::string m_text;
};

std::string Units(int units) { return "9\n$ACADVER\n1\nAC1015\n9\n$INSUNITS\n70\n" + std::to_string(units) + "\n"; }

/// What everybody would want to know about: a cross, an arc, faults of each kind, other things, another layer.
std::string MixedPlan() {
    return Drawing()
        .Line("Axis", "0", "0", "6000", "0")
        .Line("AXIS", "3000", "-1000", "3000", "1000")
        .Line("axis", "0", "0", "6000", "0")       // again
        .Line("AXIS", "0", "0", "20", "0")         // too short
        .Line("AXIS", "500", "500", "500", "500")  // no length
        .Line("AXIS", "-40", "0", "40", "0")       // both ends snap to the first node
        .Line("AXIS", "nan", "0", "5", "5")        // no number
        .Arc("AXIS", "6000", "1000", "1000", "270", "0")
        .ClosedSquare("AXIS", "9000")
        .Circle("AXIS", "20000", "0", "1000")
        .Text("AXIS")
        .Text("AXIS")
        .Tags({{0, "INSERT"}, {8, "AXIS"}, {2, "DOOR"}, {10, "0"}, {20, "0"}})
        .Line("墙", "0", "0", "100", "100")
        .End();
}

json ImportReport(const TvoRun& run) {
    const auto objects = run.Json();
    if (run.status == 0 && objects.size() == 1) return objects[0];
    ADD_FAILURE() << "status " << run.status << ": " << run.out << run.err;
    return json::object();
}

}  // namespace

TEST(TvoLayers, ListsLayersWithTheirCounts) {
    const ScratchFolder folder;
    const std::string plan = folder.Write("plan.dxf", MixedPlan());
    const TvoRun run = RunTvo({"layers", plan, "--json"});
    EXPECT_EQ(run.status, 0) << run.err;
    const auto layers = run.Json();
    ASSERT_EQ(layers.size(), 2u);
    EXPECT_EQ(layers[0].dump(),
              R"({"arcs":1,"circles":1,"extent":[-40.0,-1000.0,21000.0,9000.0],"lines":6,"name":"Axis","others":3,)"
              R"("polylines":1,"type":"layer"})");
    EXPECT_EQ(layers[1]["name"], "墙");

    const TvoRun table = RunTvo({"layers", plan});
    EXPECT_EQ(table.status, 0);
    EXPECT_NE(table.out.find("(-40, -1000) to (21000, 9000)"), std::string::npos) << table.out;
}

TEST(TvoImport, ReportsWhatBecameOfEverything) {
    const ScratchFolder folder;
    const std::string plan = folder.Write("plan.dxf", MixedPlan());
    const json report = ImportReport(RunTvo({"import", plan, "--layer", "aXiS", "--json"}));
    EXPECT_EQ(report["taken"], (json{{"ARC", 1}, {"CIRCLE", 1}, {"LINE", 6}, {"LWPOLYLINE", 1}}));
    EXPECT_EQ(report["refused"], (json{{"tooShort", 2}, {"degenerate", 1}, {"notFinite", 1}}));
    EXPECT_EQ(report["skipped"], (json{{"TEXT", 2}, {"INSERT", 1}}));
    EXPECT_EQ(report["closedNotMade"], 1);
    EXPECT_EQ(report["nodesDeleted"], 1);  // where the line without length stood

    const TvoRun text = RunTvo({"import", plan, "--layer", "AXIS"});
    EXPECT_EQ(text.status, 0) << text.err;
    for (const char* part : {"too short", "degenerate", "not finite", "TEXT", "INSERT", "closing side"})
        EXPECT_NE(text.out.find(part), std::string::npos) << text.out;
}

TEST(TvoImport, FollowsItsOptions) {
    const ScratchFolder folder;
    const std::string cross = folder.Write(
        "cross.dxf", Drawing(Units(6)).Line("A", "0", "0", "6", "0").Line("A", "3", "-1", "3", "1").End());
    const auto counts = [](const json& report) {
        return report["nodes"].dump().append("/").append(report["lines"].dump());
    };
    struct {
        const char* name;
        std::vector<std::string> options;
        const char* nodesAndLines;
    } const rows[] = {
        {"metres taken for millimetres: nothing is long enough", {}, "0/0"},
        {"and the nodes that are left behind stay on demand", {"--keep-nodes"}, "1/0"},
        {"scaled", {"--scale", "1000"}, "5/4"},
        {"scaled, the short line within the tolerance", {"--scale", "1000", "--tolerance", "3000"}, "2/1"},
        {"tolerance of one", {"--tolerance", "1"}, "5/4"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::vector<std::string> arguments = {"import", cross, "--layer", "a", "--json"};
        arguments.insert(arguments.end(), row.options.begin(), row.options.end());
        EXPECT_EQ(counts(ImportReport(RunTvo(arguments))), row.nodesAndLines);
    }
    const std::string note = "--scale 1000";
    EXPECT_NE(RunTvo({"import", cross, "--layer", "A"}).out.find(note), std::string::npos);
    EXPECT_EQ(RunTvo({"import", cross, "--layer", "A", "--scale", "1"}).out.find(note), std::string::npos);
}

// Rounding leaves bulges next to nothing. As an arc such a side would be a circle through half the plan, cutting what
// lies on the way.
TEST(TvoImport, TakesSidesThatHardlyBendAsStraight) {
    const ScratchFolder folder;
    for (const auto& [bulge, arcs] : std::vector<std::pair<const char*, int>>{{"1e-16", 0}, {"-3e-9", 0}, {"1e-7", 0}, {"1e-3", 1}, {"-0.2", 1}}) {
        SCOPED_TRACE(bulge);
        const std::string plan = folder.Write("flat.dxf", Drawing()
                                                              .Tags({{0, "LWPOLYLINE"}, {8, "A"}, {90, "2"}, {70, "0"}, {10, "0"},
                                                                     {20, "0"}, {42, bulge}, {10, "3000"}, {20, "2000"}})
                                                              .Line("A", "6000", "2000", "6000", "6000")
                                                              .Line("A", "-6000", "-2000", "-6000", "-6000")
                                                              .End());
        const json report = ImportReport(RunTvo({"import", plan, "--layer", "A", "--json"}));
        EXPECT_EQ(report["arcs"], arcs);
        EXPECT_EQ(report["lines"], 3);
        EXPECT_EQ(report["nodes"], 6);
    }
}

TEST(TvoImport, DrawsTheSamplePlan) {
    const ScratchFolder folder;
    const std::string plan = std::string(TVO_SOURCE_DIR) + "/examples/office_plan.dxf";
    const json report = ImportReport(RunTvo({"import", plan, "--layer", "轴线", "--svg", folder.File("a.svg"), "--png",
                                             folder.File("a.png"), "--size", "800x500", "--json"}));
    EXPECT_GT(report["lines"], 200);
    EXPECT_EQ(report["refused"]["tooShort"], 2);
    EXPECT_EQ(ReadWholeFile(folder.File("a.png")).substr(16, 8), std::string("\0\0\x03\x20\0\0\x01\xF4", 8));
    const std::string svg = ReadWholeFile(folder.File("a.svg"));
    EXPECT_NE(svg.find("轴线"), std::string::npos);
    EXPECT_NE(svg.find("A5400 5400 0 "), std::string::npos);
    // The same drawing gives the same picture.
    RunTvo({"import", plan, "--layer", "轴线", "--svg", folder.File("b.svg")});
    EXPECT_EQ(ReadWholeFile(folder.File("b.svg")), svg);
}

TEST(TvoImport, FormsPlatesUnlessToldNotTo) {
    const ScratchFolder folder;
    // Two cells and a stub; the corner at (0, 3) misses by a little.
    const std::string plan = folder.Write("cells.dxf", Drawing(Units(4))
                                                           .Line("A", "0", "0", "8000", "0")
                                                           .Line("A", "8000", "0", "8000", "3000")
                                                           .Line("A", "8000", "3000", "20", "3000")
                                                           .Line("A", "0", "3010", "0", "0")
                                                           .Line("A", "5000", "0", "5000", "3000")
                                                           .Line("A", "6000", "0", "6000", "1000")
                                                           .End());
    const std::string svg = folder.File("a.svg");
    const json report = ImportReport(RunTvo({"import", plan, "--layer", "A", "--svg", svg, "--json"}));
    EXPECT_EQ(report["plates"]["count"], 2);
    EXPECT_EQ(report["plates"]["dangling"], 1);
    EXPECT_NEAR(report["plates"]["area"].get<double>(), 24e6, 1e5);
    EXPECT_TRUE(report["seconds"].contains("plates"));
    const std::string picture = ReadWholeFile(svg);
    EXPECT_LT(picture.find("<g id=\"plates\""), picture.find("<g id=\"lines\""));
    EXPECT_NE(picture.find("15.0 m²"), std::string::npos) << picture;
    EXPECT_NE(RunTvo({"import", plan, "--layer", "A"}).out.find("plates    2, 24.0 m² in all; 1 line dangles\n"), std::string::npos);

    // The saved model holds them, and opens.
    const json saved = ImportReport(RunTvo({"import", plan, "--layer", "A", "--out", folder.File("cells.tvo"), "--json"}));
    EXPECT_EQ(saved["model"]["bytes"], ReadWholeFile(folder.File("cells.tvo")).size());
    EXPECT_EQ(RunTvo({"run"}, "open cells.tvo\nstat\n", folder.Path()).Json().back()["plates"], 2);
    const json without = ImportReport(RunTvo({"import", plan, "--layer", "A", "--no-plates", "--svg", svg, "--json"}));
    EXPECT_TRUE(without["plates"].is_null());
    EXPECT_FALSE(without["seconds"].contains("plates"));
    EXPECT_EQ(ReadWholeFile(svg).find("plates"), std::string::npos);
}

TEST(TvoImport, SaysWhyItCannot) {
    const ScratchFolder folder;
    const std::string plan = folder.Write("plan.dxf", MixedPlan());
    const std::string cut = folder.Write("cut.dxf", Drawing().Line("A", "0", "0", "6000", "0").CutShort());
    const std::string letter = folder.Write("letter.dxf", "Dear Sir,\nplease find enclosed\n");
    const std::string note = folder.Write("note.txt", "Dear Sir,\n");
    const std::string empty = folder.Write("empty.dxf", "");
    struct {
        const char* name;
        std::vector<std::string> arguments;
        int status;
        const char* message;
    } const rows[] = {
        {"no such file", {"import", "nowhere.dxf", "--layer", "A"}, 1, "nowhere.dxf: No such file or directory"},
        {"a folder", {"layers", "/tmp"}, 1, "/tmp: Is a directory"},
        {"no drawing", {"layers", letter}, 1, "letter.dxf: line 1"},
        {"an empty file", {"import", empty, "--layer", "A"}, 1, "empty.dxf"},
        {"a layer that isn't there", {"import", plan, "--layer", "B"}, 1, "Axis, 墙"},
        {"a drawing cut short still gives its lines", {"import", cut, "--layer", "A"}, 0, "warning: "},
        {"a picture that can't be written", {"import", plan, "--layer", "axis", "--svg", "/nowhere/a.svg"}, 1,
         "cannot write /nowhere/a.svg: No such file or directory"},
        {"and neither a PNG", {"import", plan, "--layer", "axis", "--png", "/nowhere/a.png"}, 1,
         "cannot write /nowhere/a.png: No such file or directory"},
        {"no layer given", {"import", plan}, 2, "--layer"},
        {"half a tolerance", {"import", plan, "--layer", "A", "--tolerance", "0.5"}, 2, "--tolerance"},
        {"no tolerance", {"import", plan, "--layer", "A", "--tolerance", "0"}, 2, "--tolerance"},
        {"scale 0", {"import", plan, "--layer", "A", "--scale", "0"}, 2, "--scale"},
        {"scale without end", {"import", plan, "--layer", "A", "--scale", "inf"}, 2, "--scale"},
        {"scale that is none", {"import", plan, "--layer", "A", "--scale", "nan"}, 2, "--scale"},
        {"size of one number", {"import", plan, "--layer", "A", "--png", "a.png", "--size", "800"}, 2, "--size"},
        {"size of nothing", {"import", plan, "--layer", "A", "--png", "a.png", "--size", "0x10"}, 2, "--size"},
        {"a model that can't be written", {"import", plan, "--layer", "axis", "--out", "/nowhere/a.tvo"}, 1,
         "cannot write /nowhere/a.tvo: No such file or directory"},
        {"a check of a drawing without a layer", {"check", plan}, 2, "--layer"},
        {"a check of what is no model", {"check", note}, 1, "note.txt"},
        {"size without a picture", {"import", plan, "--layer", "A", "--size", "80x80"}, 2, "--png"},
        {"unknown option", {"import", plan, "--layer", "A", "--fast"}, 2, "--fast"},
        {"unknown command", {"explode"}, 2, "explode"},
        {"no command", {}, 2, "subcommand is required"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TvoRun run = RunTvo(row.arguments);
        EXPECT_EQ(run.status, row.status);
        EXPECT_NE(run.err.find(row.message), std::string::npos) << run.err;
        if (row.status) { EXPECT_EQ(run.out, ""); }
    }
}

TEST(Tvo, HelpTellsAllOptions) {
    struct {
        std::vector<std::string> arguments;
        std::vector<const char*> parts;
    } const rows[] = {
        {{"--help"}, {"layers", "import", "check", "export", "run", "Status:"}},
        {{"layers", "--help"}, {"PLAN.dxf", "--json", "extent"}},
        {{"import", "--help"},
         {"PLAN.dxf", "--layer", "--tolerance", "--scale", "--keep-nodes", "--no-plates", "--out", "--dxf", "--svg", "--png", "--size",
          "--json"}},
        {{"check", "--help"}, {"FILE", "--layer", "--tolerance", "--scale", "--json", "dangling", "duplicate", "Status:"}},
        {{"run", "--help"},
         {"SCRIPT", "--keep-going", "start", "node X Y", "line X1 Y1 X2 Y2", "getline", "bulge", "arc CX CY R START END",
          "arc3", "delete ID...", "cleannodes", "undo", "redo", "autobreak", "automerge", "tolerance", "storey", "rect",
          "number", "import FILE LAYER", "dump [KIND]", "stat", "plates", "texts, fields, points",
          "text X Y HEIGHT ANGLE_DEG STRING [colour C] [tag N]", "point X Y", "pline X1 Y1 X2 Y2 WIDTH", "parc X Y R START END WIDTH",
          "circle X Y R WIDTH", "disc X Y R", "polygon X1 Y1 X2 Y2 X3 Y3", "rider LINEID WIDTH", "hide TYPE [TAG]", "show TYPE [TAG]",
          "clear TYPE [TAG]", "settextheight H", "field FILE [cloud|isoline|digit] [SCHEME]", "densify",
          "begin", "end", "combine TYPE TAG ID...", "embrace ID", "inside ID", "around ID", "stride LINEID",
          "isrect ID TOL_DEG", "load PLATEID VALUE", "outer", "wholenet", "grid X Y [X0 Y0] | off",
          "svg FILE", "png FILE W H", "export FILE.dxf"}},
    };
    for (const auto& row : rows) {
        const TvoRun run = RunTvo(row.arguments);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, "");
        for (const char* part : row.parts) EXPECT_NE(run.out.find(part), std::string::npos) << part << "\n" << run.out;
    }
}
