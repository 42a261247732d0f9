// The drawing reader: the forms that files have, and files that are not as they should be.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <string>

#include "dxf_tongue.h"
#include "platform/dxf/layer_summary.h"

namespace {

// --- the file around them ---------------------------------------------------------------------------------

TEST(DxfFiles, ManyFormsAreOneDrawing) {
    const std::string line = "0 LINE|8 A|10 1|20 2|11 3|21 4";
    const std::string plain = Text(Entities(line)), shown = "LINE[A] 1,2 - 3,4";
    std::string padded =
        "  0\nSECTION  \n  2 \n ENTITIES\n\t0\nLINE\n  8\n A \n 10\n  1.0 \n 20\n2.\n 11\n +3\n 21\n0.4E+1\n "
        " 0\nENDSEC\n  0\nEOF\n";
    const struct {
        const char* name;
        std::string bytes;
    } rows[] = {
        {"plain", plain},
        {"returns before line ends", Text(Entities(line), "\r\n")},
        {"a mark of UTF-8 in front", "\xEF\xBB\xBF" + plain},
        {"padded", padded},
        {"comments anywhere", Text("999 by hand|0 SECTION|999 x|2 ENTITIES|999 y|0 LINE|999 10|8 A|10 1|20 "
                                   "2|999 z|11 3|21 4|0 ENDSEC|999 e|0 EOF")},
        {"an empty comment",
         Text("0 SECTION|2 ENTITIES|0 LINE|8 A|10 1|20 2|11 3") + "999\n\n" + Text("21 4|0 ENDSEC|0 EOF")},
        {"text after the end", plain + "whatever\n10\n"},
        {"the old end of files", plain + "\x1A"},
        {"the old end of files instead of EOF", Text(kOpen + line + "|0 ENDSEC") + "\x1A junk"},
        {"no EOF", Text(kOpen + line + "|0 ENDSEC")},
        {"no EOF, no last line end", Text(kOpen + line) + "0\nENDSEC"},
        {"EOF without a line end", Text(kOpen + line) + "0\nENDSEC\n0\nEOF"},
        {"EOF and the old end", Text(kOpen + line) + "0\nENDSEC\n0\nEOF\x1A"},
        {"no ENDSEC", Text(kOpen + line + "|0 EOF")},
        {"the next section without ENDSEC",
         Text(kOpen + line + "|0 SECTION|2 OBJECTS|0 LINE|0 ENDSEC|0 EOF")},
        {"two sections of entities", Text("0 SECTION|2 ENTITIES|0 ENDSEC|" + Entities(line))},
        {"lines between groups that are none",
         Text(kOpen + "0 LINE|8 A|10 1|20 2") + "rest of a broken text\n" + Text("11 3|21 4" + kShut)},
        {"header, tables, classes, blocks",
         Text("0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $EXTMIN|10 nan|0 ENDSEC|"
              "0 SECTION|2 CLASSES|0 CLASS|1 X|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LAYER|70 1|0 LAYER|2 "
              "A|70 0|0 ENDTAB|0 ENDSEC|" +
              Entities(line))},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        DXF drawing;
        EXPECT_EQ(drawing.Read_Bytes_To_Mem(row.bytes), 1) << drawing.GetResult().m_strReason;
        EXPECT_EQ(Show(drawing), shown);
    }
}

TEST(DxfFiles, ThatAreNoDrawing) {
    const struct {
        const char* name;
        std::string bytes;
    } rows[] = {
        {"empty", ""},
        {"one byte", "0"},
        {"text", "Dear all,\n0\nSECTION\n"},
        {"another code first", "8\nA\n0\nSECTION\n"},
        {"another word first", "0\nLINE\n"},
        {"zeros", std::string(100000, '\0')},
        {"one line without end", std::string(1 << 20, '7')},
        {"blanks", std::string(1 << 20, ' ')},
        {"only the binary mark", std::string("AutoCAD Binary DXF\r\n\x1A\0", 22)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        DXF drawing;
        EXPECT_EQ(drawing.Read_Bytes_To_Mem(row.bytes), 0);
        EXPECT_EQ(drawing.GetResult().m_eOutcome, DxfOutcome::NotDxf);
        EXPECT_EQ(drawing.GetEntityCount(), 0);
    }
}

TEST(DxfFiles, ThatCannotBeOpened) {
    const std::string pipe =
        (std::filesystem::temp_directory_path() / ("tvo_pipe_" + std::to_string(getpid()))).string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path :
         {std::string("/nowhere/plan.dxf"), std::string("/tmp"), std::string("/dev/zero"), pipe}) {
        DXF drawing;
        EXPECT_EQ(drawing.Read_FileDxf_To_Mem(path.c_str()), 0) << path;
        EXPECT_EQ(drawing.GetResult().m_eOutcome, DxfOutcome::CannotOpen) << path;
        EXPECT_FALSE(drawing.GetResult().m_strReason.empty()) << path;
    }
    DXF drawing;
    EXPECT_EQ(drawing.Read_FileDxf_To_Mem(nullptr), 0);
    std::filesystem::remove(pipe);
}

TEST(DxfFiles, HeaderAndLayerTable) {
    DXF drawing;
    drawing.Read_Bytes_To_Mem(
        Text("0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ANSI_936|9 $INSUNITS|70 4|0 ENDSEC|"
             "0 SECTION|2 TABLES|0 TABLE|2 LTYPE|0 LTYPE|2 NO|0 ENDTAB|0 TABLE|2 LAYER|70 3|0 LAYER|2 A|70 "
             "5|62 3|0 LAYER|2 B|70 0|62 -2|0 LAYER|70 0|0 ENDTAB|"
             "0 ENDSEC|" +
             Entities("0 LINE|8 C|11 1|0 LINE|8 A|11 1")));
    EXPECT_EQ(drawing.GetHeader().m_strVersion, "AC1015");
    EXPECT_EQ(drawing.GetHeader().m_nCodePage, 936);
    EXPECT_EQ(drawing.GetHeader().m_nInsUnits, 4);
    std::string layers;
    for (const DxfLayer& l : drawing.GetLayers())
        layers += l.m_strName + (l.m_bInTable ? " table" : "") + (l.m_bOff ? " off" : "") +
                  (l.m_bFrozen ? " frozen" : "") + (l.m_bLocked ? " locked" : "") + " " +
                  std::to_string(l.m_nColor) + "; ";
    EXPECT_EQ(layers, "A table frozen locked 3; B table off 2; C 7; ");
}

// Tags that lie across the edge of the reader's window, at every place, and values longer than it.
TEST(DxfFiles, OfAnyLength) {
    const std::string shown = "LINE[LAYER] 12.25,2 - 3,4";
    const std::string line = "0 LINE|8 LAYER|10 12.25|20 2|11 3|21 4";
    for (std::size_t shift = 0; shift < 80; ++shift) {
        const std::string filling = std::string("999\n").append(256 * 1024 - 90 + shift, 'x') + "\n";
        ASSERT_EQ(Read(Text("0 SECTION|2 ENTITIES") + filling + Text(line + kShut)), shown) << shift;
        const std::string groups =
            "0 SECTION|2 ENTITIES|999 " + std::string(256 * 1024 - 110 + shift, 'x') + "|" + line + kShut;
        ASSERT_EQ(Read(Binary(groups, false)), shown) << shift;
    }
    const std::string longText = std::string("1 ").append(700000, 'x');
    for (const std::string& bytes : {Text(Entities("0 MTEXT|8 A|" + longText + "|0 LINE|11 1")),
                                     Binary(Entities("0 MTEXT|8 A|" + longText + "|0 LINE|11 1"), false)})
        EXPECT_EQ(Read(bytes), "MTEXT[A]; LINE[0] 0,0 - 1,0");
}

// --- files that were cut or damaged -----------------------------------------------------------------------

const std::string kSample =
    "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LAYER|70 2|0 LAYER|2 A|70 "
    "0|0 ENDTAB|0 ENDSEC|" +
    Entities(
        "0 LINE|8 A|62 256|10 11.5|20 22|11 33|21 44|0 LWPOLYLINE|8 A|90 3|70 1|10 1|20 2|42 0.5|10 3|20 "
        "4|10 5|20 6|"
        "0 POLYLINE|8 B|66 1|70 0|0 VERTEX|8 B|10 1|20 2|0 VERTEX|8 B|10 3|20 4|0 SEQEND|8 B|0 ARC|8 A|10 "
        "1|20 2|40 30|50 10|51 170|"
        "230 -1|1001 X|1040 3|0 TEXT|8 T|10 1|20 2|40 350|1 text|0 SPLINE|8 A|70 8|0 CIRCLE|8 A|10 1|20 2|40 "
        "5");

TEST(DxfDamage, ACutFileYieldsItsCompletePart) {
    for (const std::string& whole :
         {Text(kSample), Text(kSample, "\r\n"), Binary(kSample, true), Binary(kSample, false)}) {
        DXF all;
        ASSERT_EQ(all.Read_Bytes_To_Mem(whole), 1);
        const std::string shown = Show(all);
        ASSERT_EQ(all.GetEntityCount(), 7);
        int most = 0;
        for (std::size_t length = 0; length < whole.size(); ++length) {
            DXF drawing;
            const bool ok = drawing.Read_Bytes_To_Mem(std::string_view(whole).substr(0, length)) == 1;
            const std::string part = Show(drawing);
            ASSERT_TRUE(shown.starts_with(part)) << "cut at " << length << ": " << part;
            const char after = part.size() < shown.size() ? shown[part.size()] : ';';
            ASSERT_TRUE(part.empty() || after == ';') << "cut at " << length << ": " << part;
            // Once entities came, a later cut has them too: nothing complete is lost.
            ASSERT_GE(drawing.GetEntityCount(), most) << "cut at " << length;
            most = drawing.GetEntityCount();
            // Only what stands behind the entities may lack unnoticed.
            ASSERT_TRUE(!ok || drawing.GetEntityCount() == 7) << "cut at " << length;
            const DxfReadResult& result = drawing.GetResult();
            ASSERT_TRUE(ok || !result.m_strReason.empty()) << "cut at " << length;
            ASSERT_LE(result.m_nByte, length);
            if (!ok && !part.empty()) {
                ASSERT_EQ(result.m_eOutcome, DxfOutcome::Truncated);
            }
        }
        ASSERT_EQ(most, 7);
    }
}

TEST(DxfDamage, SaysWhereAFileEnds) {
    DXF drawing;
    EXPECT_EQ(drawing.Read_Bytes_To_Mem(Text(kOpen + "0 LINE|8 A|11 1|0 LINE|8 B|10 1") + "20\n"), 0);
    EXPECT_EQ(Show(drawing), "LINE[A] 0,0 - 1,0");
    EXPECT_EQ(drawing.GetResult().m_eOutcome, DxfOutcome::Truncated);
    EXPECT_EQ(drawing.GetResult().m_nLine, 17u);
    EXPECT_EQ(drawing.Read_Bytes_To_Mem(Text(kOpen + "0 LINE|8 A|11 1")), 0);
    EXPECT_EQ(drawing.GetResult().m_strReason, "the file ends in the section ENTITIES");
    EXPECT_EQ(drawing.Read_Bytes_To_Mem(Text("0 SECTION|2 HEADER|0 ENDSEC")), 0);
    EXPECT_EQ(drawing.GetResult().m_strReason, "the file ends before its entities");
}

TEST(DxfDamage, RandomBytesDoNoHarm) {
    std::mt19937 rng(20240612);
    const std::string wholes[] = {Text(kSample), Binary(kSample, true), Binary(kSample, false)};
    for (int round = 0; round < 6000; ++round) {
        SCOPED_TRACE(round);
        std::string bytes = wholes[round % 3];
        for (auto n = 1 + rng() % 8; n > 0; --n) {
            const std::size_t at = rng() % bytes.size();
            switch (rng() % 4) {
                case 0:
                    bytes[at] = static_cast<char>(rng());
                    break;
                case 1:
                    bytes[at] = "0123456789\n-.e"[rng() % 14];
                    break;
                case 2:
                    bytes.erase(at, 1 + rng() % 20);
                    break;
                default:
                    bytes.insert(at, bytes.substr(rng() % bytes.size(), rng() % 40));
                    break;
            }
            if (bytes.empty()) bytes.push_back('0');
        }
        DXF drawing;
        drawing.Read_Bytes_To_Mem(bytes);
        ASSERT_NE(drawing.GetResult().m_eOutcome, DxfOutcome::None);
        for (const ACAD_ENTITY* e : drawing.GetEntities()) ASSERT_FALSE(Show(*e).empty());
        SummarizeLayers(drawing);
    }
}

}  // namespace
