// Fields in tvo: files of all three forms, what is wrong with them, and their pictures.
#include <gtest/gtest.h>

#include "tvo_process.h"

namespace {

using nlohmann::json;

// One square of two triangles over 10 m by 10 m, values 0 to 30, in each form.
const char* const kText =
    "# a square\nnode 1 0 0 0 5\nnode 2 10 0 10 5  # the right end\n\n  node 3 10 10 30 5\r\nnode 4 0 10 20 "
    "5\ntri 1 2 3\ntri 1 3 4\n";
const char* const kMsh22 =
    "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$PhysicalNames\n1\n2 1 \"plate\"\n$EndPhysicalNames\n"
    "$Nodes\n4\n1 0 0 0\n2 10 0 0\n3 10 10 0\n4 0 10 0\n$EndNodes\n"
    "$Elements\n3\n1 1 2 0 1 1 2\n2 2 2 0 1 1 2 3\n3 2 2 0 1 1 3 4\n$EndElements\n"
    "$NodeData\n1\n\"w\"\n1\n0.0\n3\n0\n1\n4\n1 0\n2 10\n3 30\n4 20\n$EndNodeData\n"
    "$NodeData\n1\n\"m\"\n1\n0.0\n3\n0\n1\n4\n1 5\n2 5\n3 5\n4 5\n$EndNodeData\n";
const char* const kMsh41 =
    "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$Entities\n0 0 1 0\n1 0 0 0 1 1 0 0 0\n$EndEntities\n"
    "$Nodes\n2 4 1 4\n0 1 0 1\n1\n0 0 0\n2 1 0 3\n2\n3\n4\n10 0 0\n10 10 0\n0 10 0\n$EndNodes\n"
    "$Elements\n2 3 1 3\n1 1 1 1\n1 1 2\n2 1 2 2\n2 1 2 3\n3 1 3 4\n$EndElements\n"
    "$NodeData\n1\n\"w\"\n1\n0.0\n3\n0\n2\n4\n1 0 5\n2 10 5\n3 30 5\n4 20 5\n$EndNodeData\n";

std::size_t Count(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

}  // namespace

TEST(TvoFields, ReadsAllThreeForms) {
    const ScratchFolder folder;
    struct {
        const char *file, *content, *format;
    } const rows[] = {{"a.txt", kText, "text"}, {"b.msh", kMsh22, "msh 2.2"}, {"c.msh", kMsh41, "msh 4.1"}};
    std::string svg;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.format);
        folder.Write(row.file, row.content);
        const TvoRun run = RunTvo(
            {"run"}, std::string("field ") + row.file + " isoline 4 --scale 2\nsvg a.svg\ndensify\nundo\n",
            folder.Path());
        ASSERT_EQ(run.status, 0) << run.err;
        const auto said = run.Json();
        EXPECT_EQ(said[0]["format"], row.format);
        EXPECT_EQ(said[0]["nodes"], 4);
        EXPECT_EQ(said[0]["triangles"], 2);
        EXPECT_EQ(said[0]["passedOver"], 0);
        EXPECT_EQ(said[0]["values"], 2);
        EXPECT_EQ(said[0]["max"], 30.0);
        EXPECT_EQ(said[0]["levels"], 20);
        EXPECT_FALSE(said[0].contains("remarks"));
        EXPECT_EQ(said[1]["nodes"], 10);
        EXPECT_EQ(said[1]["triangles"], 8);
        EXPECT_EQ(said[1]["scheme"], 4);
        // The same picture whatever the form: 19 lines, the scaled values beside them and beside the ruler.
        const std::string drawn = ReadWholeFile(folder.File("a.svg"));
        if (svg.empty()) svg = drawn;
        EXPECT_EQ(drawn, svg);
    }
    EXPECT_EQ(Count(svg, "<path stroke=\"#"),
              18u);  // 19 lines; the last two have one colour, and so one path
    EXPECT_EQ(Count(svg, ">57.00<"), 1u);
    EXPECT_EQ(Count(svg, ">60.00<"), 1u);
}

TEST(TvoFields, TellsWhatIsWrong) {
    const ScratchFolder folder;
    const std::string head = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n";
    const std::string rubbish = [] {
        std::string text;
        for (int i = 0; i < 2000000; ++i) text += "rubbish\n";
        return text;
    }();
    struct {
        const char* name;
        std::string content;
        const char* command;
        const char* message;
    } const rows[] = {
        {"no such word", "node 1 0 0 1\n\nnodes 2 0 0 1\n", "field f", "f: line 3: is neither node nor tri"},
        {"rubbish", rubbish, "field f", "f: line 1: is neither"},
        {"one endless line", std::string(200000, 'x'), "field f", "f: line 1: is longer than 65536 bytes"},
        {"bytes",
         std::string("\x7F"
                     "ELF\0\1\2",
                     7),
         "field f", "f: line 1: is neither"},
        {"no value", "node 1 0 0\n", "field f", "f: line 1: V is missing"},
        {"eleven values", "node 1 0 0 1 2 3 4 5 6 7 8 9 10 11\n", "field f",
         "f: line 1: a node has at most ten"},
        {"a number that is none", "node 1 0 0,5 1\n", "field f", "f: line 1: Y: '0,5' is no number"},
        {"a node number of 0", "node 0 0 0 1\n", "field f", "f: line 1: N: '0' is out of range"},
        {"a corner missing", "tri 1 2\n", "field f", "f: line 1: a corner is missing"},
        {"four corners", "tri 1 2 3 4\n", "field f", "f: line 1: there is more on the line"},
        {"another version", "$MeshFormat\n4.0 0 8\n", "field f", "f: line 2: only versions 2.2 and 4.1"},
        {"binary", "$MeshFormat\n4.1 1 8\n", "field f", "f: line 2: the file is binary"},
        {"nodes before the format", "$Nodes\n", "field f", "f: line 1: $MeshFormat should come first"},
        {"more nodes claimed than there are", head + "$Nodes\n999999999999\n1 0 0 0\n$EndNodes\n", "field f",
         "f: line 7: the node's number: '$EndNodes' is no whole"},
        {"cut off", head + "$Nodes\n2\n1 0 0 0\n", "field f",
         "f: line 6: the file ends where a node should follow"},
        {"a section without end", head + "$Comments\nabc\n", "field f",
         "the file ends where $EndComments should follow"},
        {"no file", "", "field nowhere.txt", "nowhere.txt: No such file"},
        {"a folder", "", "field .", "Is a directory"},
        {"no such scheme", kText, "field f 6", "SCHEME: '6' is out of range"},
        {"no such display", kText, "field f clouds", "not 'clouds'"},
        {"a value that the file lacks", kText, "field f --value 3", "--value: f has only 2 values"},
        {"a scale without its number", kText, "field f --scale", "--scale wants a number"},
        {"nothing to make finer", kText, "densify", "there is no field"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        folder.Write("f", row.content);
        const TvoRun run = RunTvo({"run"}, std::string(row.command) + "\n", folder.Path());
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.err.find(row.message), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
    }
}

TEST(TvoFields, ShowsWhatCanBeShown) {
    const ScratchFolder folder;
    const std::string nodes =
        "node 1 0 0 0\nnode 2 10 0 10\nnode 3 10 10 nan\nnode 4 0 10 20\nnode 5 1 1 1\nnode 5 2 2 2\n";
    struct {
        const char* name;
        std::string content;
        int passedOver;
        const char* remarks;
    } const rows[] = {
        {"all kinds of bad triangles", nodes + "tri 1 2 4\ntri 1 2 3\ntri 1 2 9\ntri 1 2 5\ntri 1 1 2\n", 4,
         "1 triangle with a corner that is no node; 1 triangle with a number that several nodes bear; "
         "1 triangle with one node at two corners; 1 triangle with a coordinate or value that is not finite"},
        {"none left", nodes + "tri 1 2 3\n", 1,
         "1 triangle with a coordinate or value that is not finite; none is left to show"},
        {"no triangles", nodes, 0, "there are no triangles"},
        {"nothing at all", "", 0, "there are no triangles"},
        {"far away",
         "node 1 1e38 0 0\nnode 2 -1e38 1e38 1e38\nnode 3 0 -1e38 5\nnode 4 1e300 0 0\ntri 1 2 3\ntri 1 2 "
         "4\n",
         1, "1 triangle with a coordinate or value that is not finite"},
        {"values without end", "node 1 0 0 inf\nnode 2 9 0 -inf\nnode 3 0 9 1e-400\ntri 1 2 3\n", 1,
         "1 triangle with a coordinate or value that is not finite; none is left to show"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        folder.Write("f", row.content);
        std::string script;
        for (const char* display : {"cloud", "isoline", "digit"})
            script += std::string("field f ") + display +
                      "\nsvg a.svg\npng a.png 320 240\ndensify\nsvg a.svg\nundo\nstart\n";
        const TvoRun run = RunTvo({"run"}, script, folder.Path());
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.Json()[0]["passedOver"], row.passedOver);
        EXPECT_EQ(run.Json()[0]["remarks"], row.remarks);
        EXPECT_EQ(Count(ReadWholeFile(folder.File("a.svg")), "nan") +
                      Count(ReadWholeFile(folder.File("a.svg")), "inf"),
                  0u);
    }
}

TEST(TvoFields, AreMadeFinerWhateverTheirNumbers) {
    const ScratchFolder folder;
    struct {
        const char *name, *content;
        int nodes;  // of the finer field, beside 8 triangles
    } const rows[] = {
        {"1 to n", "node 1 0 0 0\nnode 2 9 0 1.03\nnode 3 9 9 2.11\nnode 4 0 9 3.07\ntri 1 2 3\ntri 1 3 4\n",
         10},
        {"with gaps",
         "node 2 0 0 0\nnode 5 9 0 1.03\nnode 7 9 9 2.11\nnode 9 0 9 3.07\ntri 2 5 7\ntri 2 7 9\n", 10},
        {"behind nodes that are no corners",
         "node 5 20 0 1\nnode 6 20 9 1\nnode 1 0 0 0\nnode 2 9 0 1.03\nnode 3 9 9 2.11\nnode 4 0 9 3.07\n"
         "tri 1 2 3\ntri 1 3 4\n",
         12},
        {"up to the last number there is",
         "node 1 0 0 0\nnode 2 9 0 1.03\nnode 2147483647 9 9 2.11\nnode 4 0 9 3.07\n"
         "tri 1 2 2147483647\ntri 1 2147483647 4\n",
         10},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        folder.Write("f", row.content);
        const TvoRun run =
            RunTvo({"run"}, "field f digit\nsvg a.svg\ndensify\nsvg b.svg\ndensify\n", folder.Path());
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.Json()[1]["nodes"], row.nodes);
        EXPECT_EQ(run.Json()[1]["triangles"], 8);
        EXPECT_EQ(run.Json()[1]["passedOver"], 0);
        EXPECT_EQ(run.Json()[2]["passedOver"], 0);
        // A middle has the value that was there: the numbers stay.
        EXPECT_TRUE(ReadWholeFile(folder.File("a.svg")) == ReadWholeFile(folder.File("b.svg")));
    }
}

TEST(TvoFields, AreDrawnHiddenAndUndoneAndNotStored) {
    const ScratchFolder folder;
    folder.Write("f", kText);
    const TvoRun run =
        RunTvo({"run"},
               "field f cloud\nsvg shown.svg\npng shown.png 640 480\nhide fields 1\nsvg hidden.svg\nshow "
               "fields\nstart\n"
               "densify\ndump fields\nundo\ndump fields\nsave m.tvo\nopen m.tvo\ndump fields\n",
               folder.Path());
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string shown = ReadWholeFile(folder.File("shown.svg")),
                      hidden = ReadWholeFile(folder.File("hidden.svg"));
    EXPECT_EQ(Count(shown, "<image x=\"0\" y=\"-10000\" width=\"10000\" height=\"10000\""), 1u);
    EXPECT_EQ(Count(shown, "href=\"data:image/png;base64,iVBORw0KGgo"), 1u);
    EXPECT_EQ(Count(shown, "<g id=\"ruler\""), 1u);
    EXPECT_EQ(Count(hidden, "<image") + Count(hidden, "ruler"), 0u);
    std::vector<json> dumped;
    for (const json& object : run.Json())
        if (object["type"] == "field" && !object.contains("file")) dumped.push_back(object);
    ASSERT_EQ(dumped.size(), 2u) << run.out;  // none behind open
    EXPECT_EQ(dumped[0]["triangles"], 8);
    EXPECT_EQ(dumped[1]["triangles"], 2);
    EXPECT_EQ(dumped[1]["display"], "cloud");
}
