// The drawing reader: entities, names, numbers, the summary of layers.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <string>

#include "dxf_tongue.h"
#include "platform/code_page.h"
#include "platform/dxf/base_sgt.h"
#include "platform/dxf/dxf_real.h"
#include "platform/dxf/layer_summary.h"

namespace {

// --- entities ---------------------------------------------------------------------------------------------

const struct {
    const char* name;
    const char* groups;
    const char* shown;
} kEntityRows[] = {
    {"a line", "0 LINE|8 A|10 1|20 2|30 9|11 3|21 4|31 9", "LINE[A] 1,2 - 3,4"},
    {"no layer is layer 0", "0 LINE|10 1|20 2|11 3|21 4", "LINE[0] 1,2 - 3,4"},
    {"what is missing is zero", "0 LINE|8 A|11 3", "LINE[A] 0,0 - 3,0"},
    {"a circle", "0 CIRCLE|8 A|10 1|20 2|40 5", "CIRCLE[A] 1,2 r 5"},
    {"a radius of any sign", "0 CIRCLE|10 1|20 2|40 -5|0 CIRCLE|10 1|20 2",
     "CIRCLE[0] 1,2 r -5; CIRCLE[0] 1,2 r 0"},
    {"an arc keeps its angles", "0 ARC|8 A|10 1|20 2|40 5|50 350|51 370", "ARC[A] 1,2 r 5 350..370"},
    {"paper space stands in the list too", "0 LINE|8 A|67 1|11 3|0 LINE|8 A|67 0|11 4",
     "LINE[A] on paper 0,0 - 3,0; LINE[A] 0,0 - 4,0"},
    {"light polyline", "0 LWPOLYLINE|8 A|90 2|70 1|43 0|10 1|20 2|42 0.5|10 3|20 4",
     "LWPOLYLINE[A] 1,2b0.5 3,4 closed"},
    {"each group 10 is a corner, whatever the count",
     "0 LWPOLYLINE|90 2000000000|10 1|20 2|10 3|20 4|10 5|20 6", "LWPOLYLINE[0] 1,2 3,4 5,6"},
    {"y and bulge before any corner are nobody's", "0 LWPOLYLINE|20 7|42 1|10 1|20 2", "LWPOLYLINE[0] 1,2"},
    {"a corner without y", "0 LWPOLYLINE|10 1|10 3|20 4", "LWPOLYLINE[0] 1,0 3,4"},
    {"old polyline: its own point is no corner",
     "0 POLYLINE|8 A|66 1|10 7|20 7|70 1|0 VERTEX|8 B|10 1|20 2|42 1|0 VERTEX|10 3|20 4|0 SEQEND|8 C|"
     "0 LINE|11 1",
     "POLYLINE[A] 1,2b1 3,4 closed; LINE[0] 0,0 - 1,0"},
    {"a missing SEQEND ends at the next entity", "0 POLYLINE|0 VERTEX|10 1|20 2|0 LINE|11 1",
     "POLYLINE[0] 1,2; LINE[0] 0,0 - 1,0"},
    {"no 66 needed, no vertex needed", "0 POLYLINE|8 A|0 SEQEND|0 POLYLINE|8 B", "POLYLINE[A]; POLYLINE[B]"},
    {"spline frames are left out",
     "0 POLYLINE|70 4|0 VERTEX|10 1|70 16|0 VERTEX|10 2|70 8|0 VERTEX|10 3|70 8|0 SEQEND",
     "POLYLINE[0] 2,0 3,0"},
    {"3d polyline", "0 POLYLINE|70 9|0 VERTEX|10 1|20 2|30 3|70 32|0 SEQEND", "POLYLINE[0] 1,2 closed 3d"},
    {"meshes are other entities",
     "0 POLYLINE|8 A|70 16|71 2|72 2|0 VERTEX|10 1|0 SEQEND|0 POLYLINE|70 64|0 VERTEX|0 SEQEND",
     "POLYLINE (mesh)[A]; POLYLINE (mesh)[0]"},
    {"vertices and attributes astray are none",
     "0 VERTEX|10 1|0 SEQEND|0 INSERT|2 DOOR|10 1|20 2|66 1|0 ATTRIB|1 x|0 SEQEND", "INSERT[0] DOOR at 1,2"},
    {"text, solid, face",
     "0 TEXT|8 T|10 1|20 2|40 350|1  KL 1 |0 SOLID|10 1|20 2|11 3|21 4|12 5|22 6|13 7|23 8|"
     "0 3DFACE|10 1|23 8",
     "TEXT[T] 1,2 h 350 ' KL 1 '; SOLID[0] 1,2 3,4 5,6 7,8; 3DFACE[0] 1,0 0,0 0,0 0,8"},
    {"dimension, hatch", "0 DIMENSION|13 1|23 2|14 3|24 4|0 HATCH|2 ANSI31|70 0|10 0|10 5|42 7",
     "DIMENSION[0] 1,2 - 3,4; HATCH[0] ANSI31"},
    {"kinds that nobody describes", "0 SPLINE|8 A|10 1|0 ELLIPSE|8 A|0 LINE_|8 B",
     "SPLINE[A]; ELLIPSE[A]; LINE_[B]"},
    {"foreign groups in braces don't count", "0 LINE|102 {X|8 NO|10 99|102 }|8 A|11 3", "LINE[A] 0,0 - 3,0"},
    {"foreign data doesn't count", "0 LINE|8 A|11 3|1001 X|1010 99|1040 1e300|1070 5", "LINE[A] 0,0 - 3,0"},
    {"an object within doesn't count", "0 LINE|8 A|11 3|101 Embedded Object|8 NO|11 99", "LINE[A] 0,0 - 3,0"},
    {"blocks are not expanded",
     "0 ENDSEC|0 SECTION|2 BLOCKS|0 BLOCK|8 A|0 LINE|11 1|0 ENDBLK|0 ENDSEC|0 SECTION|2 ENTITIES|"
     "0 INSERT|2 B|10 1|20 2",
     "INSERT[0] B at 1,2"},
    // seen from below
    {"from below: arc", "0 ARC|10 5|20 1|40 2|50 0|51 90|210 0|220 0|230 -1", "ARC[0] -5,1 r 2 90..180"},
    {"from below: circle", "0 CIRCLE|230 -1|10 5|20 1|40 2", "CIRCLE[0] -5,1 r 2"},
    {"from below: light polyline", "0 LWPOLYLINE|10 5|20 1|42 0.5|10 6|20 1|230 -1",
     "LWPOLYLINE[0] -5,1b-0.5 -6,1"},
    {"from below: old polyline", "0 POLYLINE|230 -1|0 VERTEX|10 5|20 1|42 1|0 SEQEND", "POLYLINE[0] -5,1b-1"},
    {"from below: text, solid and insert",
     "0 TEXT|10 5|20 1|40 2|1 x|230 -1|0 SOLID|10 1|20 2|230 -1|0 INSERT|2 B|10 5|230 -1",
     "TEXT[0] -5,1 h 2 'x'; SOLID[0] -1,2 0,0 0,0 0,0; INSERT[0] B at -5,0"},
    {"lines and 3d polylines know no below",
     "0 LINE|10 5|11 6|230 -1|0 POLYLINE|70 8|230 -1|0 VERTEX|10 5|0 SEQEND",
     "LINE[0] 5,0 - 6,0; POLYLINE[0] 5,0 3d"},
    {"other extrusions stay", "0 CIRCLE|10 5|20 1|40 2|210 0|220 0.6|230 -0.8|0 CIRCLE|10 5|40 1|230 1",
     "CIRCLE[0] 5,1 r 2; CIRCLE[0] 5,0 r 1"},
};

TEST(DxfEntities, AreAsTheFileHasThem) {
    for (const auto& row : kEntityRows) {
        SCOPED_TRACE(row.name);
        const std::string groups = Entities(row.groups);
        EXPECT_EQ(Read(Text(groups)), row.shown);
        EXPECT_EQ(Read(Binary(groups, false)), row.shown) << "binary";
        EXPECT_EQ(Read(Binary(groups, true)), row.shown) << "binary of R12";
    }
}

TEST(DxfEntities, LiveUntilTheDrawingCloses) {
    const std::unique_ptr<DXF> drawing(NewMemDxf(nullptr));
    const std::string file = Text(Entities("0 LINE|8 A|62 3|11 1"));
    ASSERT_EQ(drawing->Read_Bytes_To_Mem(file), 1);
    ASSERT_EQ(drawing->Read_Bytes_To_Mem(file), 1);  // what was there before is gone
    ASSERT_EQ(drawing->GetEntityCount(), 1);
    EXPECT_EQ(drawing->GetEntity(0)->m_nColor, 3);
    drawing->Close();
    EXPECT_EQ(drawing->GetEntityCount(), 0);
    EXPECT_TRUE(drawing->GetLayers().empty());
    CBase_SGT writer;
    EXPECT_EQ(NewMemDxf(&writer), &writer);
}

// --- names ------------------------------------------------------------------------------------------------

TEST(DxfNames, AreUtf8InMemory) {
    const struct {
        const char* name;
        const char* version;
        const char* page;
        const char* bytes;
        const char* utf8;
    } rows[] = {
        {"ASCII", "AC1009", "", "AXIS-1", "AXIS-1"},
        {"blanks around", "AC1009", "", "  AXIS ", "AXIS"},
        {"new versions are UTF-8, whatever the page", "AC1021", "ANSI_936", "\xE8\xBD\xB4\xE7\xBD\x91",
         "轴网"},
        {"UTF-8 wins in old ones", "AC1015", "ANSI_936", "\xE8\xBD\xB4\xE7\xBD\x91", "轴网"},
        {"GBK by the header", "AC1015", "ANSI_936", "\xD6\xE1\xCD\xF8", "轴网"},
        {"GBK by another name", "AC1015", "gb2312", "\xD6\xE1\xCD\xF8", "轴网"},
        {"GBK when nothing is said", "", "", "\xD6\xE1\xCD\xF8", "轴网"},
        {"GBK in a new version", "AC1027", "ANSI_936", "\xD6\xE1\xCD\xF8", "轴网"},
        {"one bad byte among UTF-8", "AC1027", "ANSI_1252", "\xE8\xBD\xB4\xFF", "轴\xEF\xBF\xBD"},
        {"a second byte that looks like a backslash", "AC1015", "ANSI_936", "\x81\x5CU+4E2D", "乗U+4E2D"},
        {"western", "AC1015", "ANSI_1252", "W\xE4nde", "Wände"},
        {"western, small letters", "AC1009", "ansi_1252", "W\xE4nde", "Wände"},
        {"cyrillic", "AC1015", "ANSI_1251", "\xEE\xF1\xFC", "ось"},
        {"central european", "AC1015", "ANSI_1250", "\xE8\xE1ra", "čára"},
        {"japanese", "AC1015", "ANSI_932", "\x92\xCA\x82\xE8", "通り"},
        {"korean", "AC1015", "ANSI_949", "\xC3\xE0\xBC\xB1", "축선"},
        {"traditional chinese", "AC1015", "ANSI_950", "\xB6\x62\xBD\x75", "軸線"},
        {"neither page nor GBK: Latin-1", "AC1015", "", "a\xFF", "aÿ"},
        {"an unknown page", "AC1015", "ANSI_99", "\xD6\xE1", "轴"},
        {"escapes", "AC1015", "ANSI_1252", "\\U+8F74\\U+7f51-1", "轴网-1"},
        {"escapes of two halves", "AC1015", "", "\\U+D83D\\U+DE00", "\xF0\x9F\x98\x80"},
        {"half an escape", "AC1015", "", "\\U+D83Dx\\U+12", "\xEF\xBF\xBDx\\U+12"},
        {"a zero in an escape", "AC1015", "", "a\\U+0000b",
         "a\xEF\xBF\xBD"
         "b"},
        {"escapes with a page", "AC1015", "", "\\M+5D6E1\\M+192CA\\M+2B662\\M+3C3E0", "轴通軸축"},
        {"no such page", "AC1015", "", "\\M+9D6E1", "\\M+9D6E1"},
        {"plain backslashes", "AC1015", "", "a\\b\\", "a\\b\\"},
        {"empty is 0", "AC1015", "", "", "0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::string header = "0 SECTION|2 HEADER";
        if (*row.version) header += std::string("|9 $ACADVER|1 ") + row.version;
        if (*row.page) header += std::string("|9 $DWGCODEPAGE|3 ") + row.page;
        DXF drawing;
        const std::string file = Text(header + "|0 ENDSEC") + "0\nSECTION\n2\nENTITIES\n0\nTEXT\n8\n" +
                                 row.bytes + "\n1\n" + row.bytes + "\n0\nENDSEC\n0\nEOF\n";
        ASSERT_EQ(drawing.Read_Bytes_To_Mem(file), 1);
        EXPECT_STREQ(drawing.GetEntity(0)->GetLayer(), row.utf8);
    }
}

TEST(DxfNames, WrittenInTwoWaysAreOneLayer) {
    DXF drawing;
    drawing.Read_Bytes_To_Mem(Text(Entities("0 LINE|8 \xD6\xE1|0 LINE|8 \\U+8F74|0 LINE|8 \xE8\xBD\xB4")));
    ASSERT_EQ(drawing.GetLayers().size(), 1u);
    EXPECT_EQ(drawing.GetEntity(0)->m_pLayer, drawing.GetEntity(2)->m_pLayer);
}

TEST(DxfNames, BracesLeftOpenEndWithTheirRecord) {
    DXF drawing;
    drawing.Read_Bytes_To_Mem(
        Text("0 SECTION|2 TABLES|0 TABLE|2 LAYER|0 LAYER|2 A|102 {X|62 3|0 LAYER|2 B|62 5|0 ENDTAB|0 ENDSEC|" +
             Entities("0 LINE|8 A")));
    ASSERT_EQ(drawing.GetLayers().size(), 2u);
    for (const DxfLayer& layer : drawing.GetLayers()) EXPECT_TRUE(layer.m_bInTable) << layer.m_strName;
    EXPECT_EQ(drawing.GetLayers()[0].m_nColor, 7);
    EXPECT_EQ(drawing.GetLayers()[1].m_nColor, 5);
}

TEST(CodePages, ThereAndBack) {
    const struct {
        const char* name;
        int page;
        const char* bytes;
        const char* utf8;
        bool decodes, encodes;
        const char* back;
    } rows[] = {
        {"ASCII in any page", 12345, "A-1", "A-1", true, true, "A-1"},
        {"GBK", 936, "\xD6\xE1", "轴", true, true, "\xD6\xE1"},
        {"a bad byte", 936, "\xD6\xE1\xFF", "轴\xEF\xBF\xBD", false, false, "\xD6\xE1?"},
        {"half a character", 932, "\x92", "\xEF\xBF\xBD", false, false, "?"},
        {"an unknown page", 12345, "\xE4", "ä", false, false, "?"},
        {"UTF-8", 65001, "\xE8\xBD\xB4", "轴", true, true, "轴"},
        {"UTF-8, too long a form", 65001, "\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD", false, true,
         "\xEF\xBF\xBD\xEF\xBF\xBD"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        bool ok = !row.decodes;
        EXPECT_EQ(DecodeText(row.bytes, row.page, &ok), row.utf8);
        EXPECT_EQ(ok, row.decodes);
        EXPECT_EQ(EncodeText(row.utf8, row.page, &ok), row.back);
        EXPECT_EQ(ok, row.encodes);
    }
}

// --- numbers ----------------------------------------------------------------------------------------------

bool SameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

TEST(DxfNumbers, AreCorrectlyRounded) {
    std::mt19937_64 rng(20240611);
    int quick = 0;
    for (int round = 0; round < 300000; ++round) {
        char text[64];
        const double v = std::ldexp(static_cast<double>(static_cast<std::int64_t>(rng())),
                                    static_cast<int>(rng() % 60) - 80);
        const char* const formats[] = {"%.3f", "%.6f", "%.12g", "%.16g", "%.17g", "%.9e", "%.0f", "%.22f"};
        std::snprintf(text, sizeof text, formats[rng() % 8], v);
        const double wanted = std::strtod(text, nullptr);
        bool isNumber = false;
        ASSERT_TRUE(SameBits(ReadReal(text, isNumber), wanted)) << text << ", round " << round;
        ASSERT_TRUE(isNumber) << text;
        double value = 0;
        if (const char* end = ReadShortReal(text, value); end && *end == '\0') {
            ASSERT_TRUE(SameBits(value, wanted)) << text << ", round " << round;
            ++quick;
        }
    }
    EXPECT_GT(quick, 100000);
}

TEST(DxfNumbers, ThatAreNone) {
    const struct {
        const char* text;
        bool isNumber;
        double value;
    } rows[] = {
        {"", false, NAN},
        {" ", false, NAN},
        {"x", false, NAN},
        {"1.5x", false, NAN},
        {"1,5", false, NAN},
        {"--1", false, NAN},
        {"+-1", false, NAN},
        {".", false, NAN},
        {"1e", false, NAN},
        {"nan", true, NAN},
        {"-inf", true, -INFINITY},
        {"1e999", true, INFINITY},
        {"-1e999", true, -INFINITY},
        {"1e-999", true, 0},
        {"1.#QNAN", true, NAN},
        {"-1.#IND00", true, NAN},
        {"+1.5", true, 1.5},
        {" -.5 \r", true, -0.5},
        {"5.", true, 5},
        {"1E3", true, 1000},
        {"0.0000000000000000000000001", true, 1e-25},
    };
    for (const auto& row : rows) {
        bool isNumber = !row.isNumber;
        const double value = ReadReal(row.text, isNumber);
        EXPECT_EQ(isNumber, row.isNumber) << row.text;
        if (std::isnan(row.value)) EXPECT_TRUE(std::isnan(value)) << row.text;
        else EXPECT_EQ(value, row.value) << row.text;
    }
    const std::string longNumber = std::string(400, '9');
    bool isNumber = false;
    EXPECT_EQ(ReadReal(longNumber, isNumber), INFINITY);
    EXPECT_EQ(ReadInteger("99999999999"), 2147483647);
    EXPECT_EQ(ReadInteger("-99999999999"), -2147483648);
    EXPECT_EQ(ReadInteger(" 70 "), 70);
    EXPECT_EQ(ReadInteger("x"), 0);
}

// --- entities that are not taken --------------------------------------------------------------------------

TEST(DxfDrops, AreCountedWithTheirReason) {
    const struct {
        const char* name;
        const char* groups;
        int notFinite, tooFar, notANumber;
    } rows[] = {
        {"fine", "0 LINE|10 1e12|20 -1e12", 0, 0, 0},
        {"not finite", "0 LINE|10 nan|0 LINE|20 inf|0 ARC|51 1e400|0 CIRCLE|40 -1.#IND", 4, 0, 0},
        {"too far", "0 LINE|10 1.0000001e12|0 LWPOLYLINE|10 1|20 -2e12", 0, 2, 0},
        {"a radius too great", "0 CIRCLE|40 2e12|0 ARC|40 -2e12", 0, 2, 0},
        {"angles may be great", "0 ARC|40 1|50 1e13", 0, 0, 0},
        {"no number", "0 LINE|10 abc|0 LINE|10 1,5", 0, 0, 2},
        {"one bad corner drops the polyline",
         "0 POLYLINE|0 VERTEX|10 1|0 VERTEX|10 nan|0 VERTEX|10 2|0 SEQEND", 1, 0, 0},
        {"kinds that nobody describes too", "0 SPLINE|10 1|11 nan|0 SPLINE|40 1e13", 1, 0, 0},
        {"foreign data doesn't matter", "0 LINE|1010 nan", 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        DXF drawing;
        EXPECT_EQ(drawing.Read_Bytes_To_Mem(Text(Entities(std::string(row.groups) + "|0 TEXT|1 last"))), 1);
        EXPECT_EQ(drawing.GetDropCount(DxfDropReason::NotFinite), static_cast<std::uint64_t>(row.notFinite));
        EXPECT_EQ(drawing.GetDropCount(DxfDropReason::TooFar), static_cast<std::uint64_t>(row.tooFar));
        EXPECT_EQ(drawing.GetDropCount(DxfDropReason::NotANumber),
                  static_cast<std::uint64_t>(row.notANumber));
        EXPECT_EQ(drawing.GetDrops().size(), drawing.GetDropCount());
        ASSERT_GT(drawing.GetEntityCount(), 0);
        EXPECT_EQ(Show(*drawing.GetEntity(drawing.GetEntityCount() - 1)), "TEXT[0] 0,0 h 0 'last'");
    }
    DXF drawing;
    drawing.Read_Bytes_To_Mem(Text(Entities("0 LINE|11 1|0 LINE|8 A|10 nan")));
    ASSERT_EQ(drawing.GetDrops().size(), 1u);
    EXPECT_EQ(drawing.GetDrops()[0].m_nLine, 9u);
    EXPECT_EQ(drawing.GetDrops()[0].m_pLayer->m_strName, "A");
    EXPECT_EQ(drawing.GetDrops()[0].m_pKind->m_strName, "LINE");

    std::string many = "0 LINE|8 B|10 1";
    for (int i = 0; i < 300; ++i) many += "|0 LINE|8 A|10 nan";
    drawing.Read_Bytes_To_Mem(Text(Entities(many)));
    EXPECT_EQ(drawing.GetDrops().size(), 100u);  // one by one
    EXPECT_EQ(drawing.GetDropCount(), 300u);
    const auto summary = SummarizeLayers(drawing);
    ASSERT_EQ(summary.size(), 2u);
    EXPECT_EQ(summary[1].m_strName, "A");
    EXPECT_EQ(summary[1].m_nDropped, 300u);
}

// --- the summary ------------------------------------------------------------------------------------------

TEST(DxfSummary, CountsByLayerInOrderOfAppearance) {
    DXF drawing;
    drawing.Read_Bytes_To_Mem(Text(
        "0 SECTION|2 TABLES|0 TABLE|2 LAYER|0 LAYER|2 EMPTY|70 1|0 LAYER|2 WALL|62 -7|0 ENDTAB|0 ENDSEC|" +
        Entities("0 SPLINE|8 axis|0 LINE|8 Wall|10 1|20 2|11 3|21 4|0 LINE|8 WALL|10 9|20 9|11 9|21 9|67 1|0 "
                 "LWPOLYLINE|8 AXIS|70 1|10 0|20 0|10 5|20 7|"
                 "0 CIRCLE|8 Axis|10 0|20 0|40 2|0 TEXT|8 Wall|0 SPLINE|8 AXIS|0 POLYLINE|8 AXIS|70 16|0 "
                 "SEQEND")));
    std::string text;
    for (const DxfLayerSummary& row : SummarizeLayers(drawing)) {
        text += row.m_strName + (row.m_bInTable ? " table" : "") + (row.m_bOff ? " off" : "") +
                (row.m_bFrozen ? " frozen" : "") + ": " + std::to_string(row.m_nLine) + " " +
                std::to_string(row.m_nPolyline) + "(" + std::to_string(row.m_nPolylineClosed) + ") " +
                std::to_string(row.m_nArc) + " " + std::to_string(row.m_nCircle) + " paper " +
                std::to_string(row.m_nPaperSpace);
        for (const auto& [kind, n] : row.m_arrOther)
            text.append(", ").append(kind).append(" ").append(std::to_string(n));
        if (!row.m_extent.m_bEmpty)
            text += " in " + Point(row.m_extent.m_dMinX, row.m_extent.m_dMinY) + " to " +
                    Point(row.m_extent.m_dMaxX, row.m_extent.m_dMaxY);
        text += "\n";
    }
    EXPECT_EQ(text,
              "axis: 0 1(1) 0 1 paper 0, SPLINE 2, POLYLINE (mesh) 1 in -2,-2 to 5,7\n"
              "Wall table off: 2 0(0) 0 0 paper 1, TEXT 1 in 1,2 to 9,9\n"
              "EMPTY table frozen: 0 0(0) 0 0 paper 0\n");
}

/// Points along an arc from p to q whose bulge is given, by halving: a way of its own, without the centre.
void Sample(DxfExtent& extent, double px, double py, double qx, double qy, double bulge, int depth) {
    extent.Add(px, py);
    extent.Add(qx, qy);
    if (depth == 0) return;
    const double mx = (px + qx) / 2 + bulge * (qy - py) / 2, my = (py + qy) / 2 - bulge * (qx - px) / 2;
    const double half = bulge / (1 + std::sqrt(1 + bulge * bulge));
    Sample(extent, px, py, mx, my, half, depth - 1);
    Sample(extent, mx, my, qx, qy, half, depth - 1);
}

TEST(DxfSummary, ExtentsOfArcsAgreeWithSampling) {
    std::mt19937 rng(20240613);
    const auto random = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(rng()) / 4294967295.0;
    };
    for (int round = 0; round < 500; ++round) {
        DxfExtent sampled;
        std::string groups;
        if (round % 2 == 0) {
            const double px = random(-9, 9), py = random(-9, 9), qx = random(-9, 9), qy = random(-9, 9),
                         b = random(-3, 3);
            groups = "0 LWPOLYLINE|10 " + Number(px) + "|20 " + Number(py) + "|42 " + Number(b) + "|10 " +
                     Number(qx) + "|20 " + Number(qy);
            Sample(sampled, px, py, qx, qy, b, 11);
        } else {
            const double start = std::floor(random(-500, 500)), r = random(1, 5);
            const double end = round % 10 == 1 ? start : std::floor(random(-500, 500));  // also full turns
            groups = "0 ARC|10 1|20 2|40 " + Number(r) + "|50 " + Number(start) + "|51 " + Number(end);
            double sweep = std::fmod(end - start, 360);
            if (sweep <= 0) sweep += 360;
            for (int i = 0; i <= 3600; ++i) {
                const double a = (start + sweep * i / 3600) * std::numbers::pi / 180;
                sampled.Add(1 + r * std::cos(a), 2 + r * std::sin(a));
            }
        }
        DXF drawing;
        ASSERT_EQ(drawing.Read_Bytes_To_Mem(Text(Entities(groups))), 1);
        const auto rows = SummarizeLayers(drawing);
        ASSERT_EQ(rows.size(), 1u);
        const DxfExtent& e = rows[0].m_extent;
        const double tolerance = 2e-4;
        ASSERT_NEAR(e.m_dMinX, sampled.m_dMinX, tolerance) << "round " << round << " " << groups;
        ASSERT_NEAR(e.m_dMinY, sampled.m_dMinY, tolerance) << "round " << round << " " << groups;
        ASSERT_NEAR(e.m_dMaxX, sampled.m_dMaxX, tolerance) << "round " << round << " " << groups;
        ASSERT_NEAR(e.m_dMaxY, sampled.m_dMaxY, tolerance) << "round " << round << " " << groups;
    }
}

}  // namespace
