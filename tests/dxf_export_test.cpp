// DXF out: what stands in the file, what our own reader and ezdxf make of it, and files that can't be written.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <bit>
#include <cmath>
#include <csignal>
#include <fstream>
#include <memory>
#include <random>
#include <regex>
#include <sstream>

#include "dxf_tongue.h"
#include "file_fixtures.h"
#include "geometry/fcoor.h"
#include "model/column_result.h"
#include "model/draw_graph.h"
#include "model/dxf_export.h"
#include "model/goujian.h"
#include "model/tvo_data_base.h"
#include "platform/acad_color.h"
#include "platform/code_page.h"
#include "platform/dxf/base_sgt.h"
#include "platform/dxf/dxf_3d.h"
#include "platform/file_dialog.h"
#include "platform/window.h"

namespace {

std::string Bytes(const std::string& path) {
    std::ostringstream all;
    all << std::ifstream(path, std::ios::binary).rdbuf();
    return all.str();
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

/// What our own reader finds.
std::vector<std::string> Reread(const std::string& path) {
    DXF drawing;
    EXPECT_EQ(drawing.Read_FileDxf_To_Mem(path.c_str()), 1) << drawing.GetResult().m_strReason;
    EXPECT_EQ(drawing.GetHeader().m_nBadLines, 0u);
    std::vector<std::string> lines;
    for (const ACAD_ENTITY* e : drawing.GetEntities()) {
        const std::string text = Show(*e) + " | " + std::to_string(e->m_nColor);
        lines.push_back(text.starts_with("LW") ? text.substr(2) : text);
    }
    return lines;
}

/// The Python that has ezdxf, or nothing.
std::string PythonWithEzdxf() {
    for (const std::string python : {"python3", "/usr/bin/python3"})
        if (std::system((python + " -c 'import ezdxf' 2>/dev/null").c_str()) == 0) return python;
    return "";
}

/// What ezdxf finds in the drawings of a folder, in their order.
std::vector<std::string> EzdxfLines(const std::string& python, const std::string& folder) {
    const std::string command = python + " '" TVO_TEST_DATA "/show_drawing.py' " + folder + "*.dxf 2>&1";
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string text;
    for (int c; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    EXPECT_EQ(pclose(pipe), 0) << text;
    return Lines(text);
}

enum Part : char { kDashDotted = 'D', kOtherDashes = 'E', kUnknownPart = 'U' };

/// A component whose list is generated: its colours come from GetDrawInfo at each paint.
class CSign : public CGouJianEx {
public:
    int DrawGraph(CDrawGraph* g) override {
        g->Draw_Line(0, 100, 50, 100, 1, kDashDotted, 0, 13);
        g->Draw_Line(0, 200, 50, 200, 1, kOtherDashes, 0, 13);
        g->Draw_Line(0, 300, 50, 300, 1, kUnknownPart, 0, 13)->SetColor(RGB(0, 255, 255));
        return 1;
    }
    void GetDrawInfo(unsigned char, char part, unsigned long& colour, int& lineType) override {
        if (part == kUnknownPart) return;
        colour = part == kDashDotted ? RGB(255, 0, 0) : RGB(0, 255, 0);
        lineType = part == kDashDotted ? 1 : 2;
    }
};

/// A component that writes itself.
class COwnWriter : public CGouJianEx {
public:
    int SelfOutPutDXF() override { return 1; }
    void OutPutDXF(CBase_SGT* dxf, CFCoor*) override { dxf->Draw_Circle(7, 8, 9, 1); }
    int DrawGraph(CDrawGraph* g) override {
        g->Draw_Line(1, 1, 2, 2, 1, 'A', 0, 13);  // not in the file
        return 1;
    }
};

CGouJianEx* Enter(CTvoDataBase& db, CGouJianEx* component, unsigned char type) {
    component->set_m_dwGouJianID(db.GetNextID(type));
    component->m_pDataBase = &db;
    db.AddGouJian(component);
    return component;
}

CGouJianEx* AddText(CTvoDataBase& db, float angle, const char* text) {
    auto* component = new CGouJianEx;
    component->GetDrawGraph()->m_bFixed = 1;
    component->GetDrawGraph()->Draw_Text(10, 20, 300, angle, text, 'A')->SetColor(RGB(0, 0, 0));
    return Enter(db, component, GJLX_TEXT);
}

constexpr unsigned long kYellow = RGB(255, 255, 0);

struct ExportRow {
    const char* name;
    void (*draw)(CTvoDataBase& db);
    std::vector<std::string> both;      // what both readers find
    std::vector<std::string> onlyEzdxf; // what ezdxf finds behind that
};

CGouJianEx* Line(CTvoDataBase& db, float width, unsigned long colour = kYellow) {
    return db.DrawLine(1, 2, 3.5f, 4, width, colour, 0, GJ_STATUS_NORMAL, 1);
}

const ExportRow kRows[] = {
    {"nothing", [](CTvoDataBase&) {}, {}, {}},
    {"point", [](CTvoDataBase& db) { db.DrawPoint(10, -0.0f, kYellow, 0, 0, 1); }, {"POINT[0] | 2"}, {" 10,0"}},
    {"thin lines", [](CTvoDataBase& db) { Line(db, 0); Line(db, 1); },
     {"LINE[0] 1,2 - 3.5,4 | 2", "LINE[0] 1,2 - 3.5,4 | 2"}, {"", ""}},
    {"wide lines, one in pixels", [](CTvoDataBase& db) { Line(db, 20.4f); Line(db, -1); },
     {"POLYLINE[0] 1,2 3.5,4 | 2", "POLYLINE[0] 1,2 3.5,4 | 2"}, {" wide 20 to 20", " wide 1 to 1"}},
    {"thin arcs, over zero and beyond a turn",
     [](CTvoDataBase& db) {
         db.DrawArc(1, 2, 100, 300, 60, 1, kYellow, 0, 0, 1);
         db.DrawArc(1, 2, 100, 300, 420, 1, kYellow, 0, 0, 1);
         db.DrawArc(1, 2, 100, 30, 30, 1, kYellow, 0, 0, 1);  // nothing
         db.DrawArc(1, 2, -100, 0, 90, 1, kYellow, 0, 0, 1);
     },
     {"ARC[0] 1,2 r 100 300..60 | 2", "ARC[0] 1,2 r 100 300..60 | 2", "ARC[0] 1,2 r 100 180..270 | 2"}, {"", "", ""}},
    {"wide arcs", [](CTvoDataBase& db) {
         db.DrawArc(0, 0, 100, 0, 180, 5, kYellow, 0, 0, 1);
         db.DrawArc(0, 0, 100, 270, 90, 5, kYellow, 0, 0, 1);
     },
     {"POLYLINE[0] 100,0b1 -100,0 | 2", "POLYLINE[0] 0,-100b1 0,100 | 2"}, {" wide 5 to 5", " wide 5 to 5"}},
    {"circles, the wide one open by a degree",
     [](CTvoDataBase& db) {
         db.DrawCircle(1, 2, 100, 1, kYellow, 0, 0, 1);
         db.DrawCircle(0, 0, 100, 5, kYellow, 0, 0, 1);
         db.DrawCircle(0, 0, 0, 1, kYellow, 0, 0, 1);  // nothing
     },
     {"CIRCLE[0] 1,2 r 100 | 2",
      "POLYLINE[0] 100,0b0.9956461685 -99.99619231,0.8726535498b0.9956461685 99.98476952,-1.745240644 | 2"},
     {"", " wide 5 to 5"}},
    {"disc and polygon: outlines",
     [](CTvoDataBase& db) {
         db.DrawCircleRgn(1, 2, 3, kYellow, 0, 0, 1);
         CArray<CFPoint, CFPoint> corners;
         for (const CFPoint& p : {CFPoint(0, 0, 0), CFPoint(4, 0, 0), CFPoint(4, 3, 0)}) corners.Add(p);
         db.DrawPolygonRgn(corners, kYellow, 0, 0, 1);
     },
     {"CIRCLE[0] 1,2 r 3 | 2", "LINE[0] 0,0 - 4,0 | 2", "LINE[0] 4,0 - 4,3 | 2", "LINE[0] 4,3 - 0,0 | 2"}, {"", "", "", ""}},
    {"texts, black is 7", [](CTvoDataBase& db) { AddText(db, 1.5707964f, "柱 C1"); AddText(db, 0, ""); },
     {"TEXT[0] 10,20 h 300 '柱 C1' | 7"}, {" 90 deg, HZ x 0.75"}},
    {"hidden things stay out, selected ones don't",
     [](CTvoDataBase& db) {
         Line(db, 1)->set_m_byteStatus(GJ_STATUS_HIDDEN);
         Line(db, 1)->set_m_byteStatus(GJ_STATUS_SELECTED);
         Enter(db, new COwnWriter, 20)->set_m_byteStatus(GJ_STATUS_HIDDEN);
     },
     {"LINE[0] 1,2 - 3.5,4 | 2"}, {""}},
    {"colours of now; only line type 1 is dashed, and only for its line",
     [](CTvoDataBase& db) { Enter(db, new CSign, 20); },
     {"LINE[0] 0,100 - 50,100 | 1", "LINE[0] 0,200 - 50,200 | 3", "LINE[0] 0,300 - 50,300 | 4"}, {" DASHDOT", "", ""}},
    {"a component that writes itself", [](CTvoDataBase& db) { Enter(db, new COwnWriter, 20); },
     {"CIRCLE[0] 7,8 r 9 | 256"}, {""}},
    {"numbers that are none", [](CTvoDataBase& db) { db.DrawLine(0, NAN, 1, 1, 1, 0, 0, 0, 1); db.DrawPoint(INFINITY, 0, 0, 0, 0, 1); Line(db, 1); },
     {"LINE[0] 1,2 - 3.5,4 | 2"}, {""}},
    {"by type, then by identity, whatever was undone; 255 not",
     [](CTvoDataBase& db) {
         AddText(db, 0, "a");
         CGouJianEx* first = Line(db, 1, RGB(255, 0, 0));
         Line(db, 1);
         db.DrawPoint(1, 1, kYellow, 0, 0, 1);
         Enter(db, new COwnWriter, 255);
         db.Start();
         db.DeleteGouJian(first);
         db.Undo(nullptr, nullptr);
     },
     {"TEXT[0] 10,20 h 300 'a' | 7", "POINT[0] | 2", "LINE[0] 1,2 - 3.5,4 | 1", "LINE[0] 1,2 - 3.5,4 | 2"},
     {" 0 deg, HZ x 0.75", " 1,1", "", ""}},
};

}  // namespace

TEST(DxfExport, WritesWhatTheViewShows) {
    const TempFolder folder;
    int number = 1000;
    std::vector<std::string> ezdxfExpected;
    for (const ExportRow& row : kRows) {
        for (const DxfVersion version : {DxfVersion::R12, DxfVersion::R2000}) {
            const bool old = version == DxfVersion::R12;
            SCOPED_TRACE(std::string(row.name) + (old ? ", R12" : ", 2000"));
            CTvoDataBase db;
            row.draw(db);
            CFCoor millimetres;
            const std::string path = folder.path + std::to_string(number++) + ".dxf";
            const DxfExportResult result = ExportDxf(db, path, version, millimetres);
            ASSERT_EQ(result.written, 1) << result.reason;
            EXPECT_EQ(result.entities, static_cast<int>(row.both.size()));
            EXPECT_EQ(Reread(path), row.both);
            ezdxfExpected.push_back(old ? "AC1009 gbk 0" : "AC1015 gbk 4");
            for (std::size_t i = 0; i < row.both.size(); ++i) ezdxfExpected.push_back(row.both[i] + row.onlyEzdxf[i]);
        }
    }
    const std::string python = PythonWithEzdxf();
    if (!python.empty())
        EXPECT_EQ(EzdxfLines(python, folder.path), ezdxfExpected);
    else
        GTEST_SKIP() << "no Python with ezdxf (package python3-ezdxf): only our own reader has looked";
}

TEST(DxfExport, WidthsFollowTheView) {
    const TempFolder folder;
    CTvoDataBase db;
    Line(db, 300);
    CFCoor coor(CFPoint(0, 0, 0), 0.1f, 1);
    ExportDxf(db, folder.path + "a.dxf", DxfVersion::R12, coor);
    EXPECT_NE(Bytes(folder.path + "a.dxf").find(" 40\r\n30.0\r\n"), std::string::npos);
}

TEST(DxfExport, NumbersComeBackAndAreWrittenPlainly) {
    const TempFolder folder;
    const std::string path = folder.path + "a.dxf";
    std::mt19937 rng(20260607);
    std::vector<float> numbers = {0.1f, 1.0f / 3, 16777216, 16777218, 1e-45f, 1.17549435e-38f, 9.9e11f, -0.5f, 123456.7f};
    while (numbers.size() < 40000) {
        const auto v = std::bit_cast<float>(static_cast<std::uint32_t>(rng()));
        if (std::fabs(v) < 1e12f) numbers.push_back(v);  // what is read may not be farther off
    }
    CBase_SGT drawing;
    drawing.New_MemDxf();
    drawing.Add_Default_LineType();
    for (std::size_t i = 0; i < numbers.size(); i += 4)
        drawing.Draw_Line(numbers[i], numbers[i + 1], numbers[i + 2], numbers[i + 3], 1);
    ASSERT_EQ(drawing.Write_MemDxf_To_File(path.c_str()), 1);

    DXF read;
    ASSERT_EQ(read.Read_FileDxf_To_Mem(path.c_str()), 1);
    ASSERT_EQ(read.GetEntityCount(), static_cast<int>(numbers.size() / 4));
    for (int i = 0; i < read.GetEntityCount(); ++i) {
        const auto& line = static_cast<const ACAD_LINE&>(*read.GetEntity(i));
        const double back[] = {line.m_x1, line.m_y1, line.m_x2, line.m_y2};
        for (int j = 0; j < 4; ++j)
            ASSERT_EQ(static_cast<float>(back[j]), numbers[static_cast<std::size_t>(i * 4 + j)]) << "line " << i;
    }
    const std::vector<std::string> lines = Lines(Bytes(path));
    const std::regex plain("-?[0-9]+\\.[0-9]+\r");
    for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
        ASSERT_TRUE(lines[i].ends_with("\r")) << "line " << i;
        const int code = std::atoi(lines[i].c_str());
        if (code >= 10 && code < 60) {
            ASSERT_TRUE(std::regex_match(lines[i + 1], plain)) << lines[i + 1];
        }
    }
    EXPECT_NE(Bytes(path).find(" 10\r\n0.1\r\n 20\r\n0.33333334\r\n"), std::string::npos);  // not the digits of a double
    EXPECT_NE(Bytes(path).find(" 40\r\n50.8\r\n 49\r\n31.75\r\n"), std::string::npos);    // the length of CENTER's pattern
}

TEST(DxfExport, TextsComeBack) {
    const TempFolder folder;
    const std::string path = folder.path + "a.dxf";
    std::vector<std::string> texts = {"中文", "x^2 ^J", "\\U+4E2D", "\\M+5D6D0", "a\\b", "\xF0\x9F\x98\x80 \xC3\xA9\xE2\x82\xAC", "100%%"};
    for (char32_t c = 0x4E00; c < 0xA000; ++c) {  // short texts of GBK may pass for UTF-8
        std::string text;
        AppendUtf8(text, c);
        texts.push_back(text);
        texts.push_back("a" + text + text);
    }
    CBase_SGT drawing;
    drawing.New_MemDxf();
    for (const std::string& text : texts) ASSERT_NE(drawing.Draw_Text(0, 0, 1, 0, text.c_str()), nullptr);
    drawing.Draw_Text(0, 0, 1, 0, "two\r\nlines");
    texts.push_back(std::string(200000, 'a'));  // more than the writer has room for at once
    drawing.Draw_Text(0, 0, 1, 0, texts.back().c_str());
    ASSERT_EQ(drawing.Write_MemDxf_To_File(path.c_str()), 1);
    EXPECT_NE(Bytes(path).find("\r\n\xD6\xD0\xCE\xC4\r\n"), std::string::npos);  // GBK
    texts.insert(texts.end() - 1, "two  lines");

    DXF read;
    ASSERT_EQ(read.Read_FileDxf_To_Mem(path.c_str()), 1);
    ASSERT_EQ(read.GetEntityCount(), static_cast<int>(texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_TRUE(static_cast<const ACAD_TEXT&>(*read.GetEntity(static_cast<int>(i))).m_strText == texts[i]) << "text " << i;
}

TEST(DxfExport, AFailureLeavesTheFileThatWasThere) {
    const TempFolder folder;
    const std::string path = folder.path + "a.dxf";
    CTvoDataBase db;
    for (int i = 0; i < 1000; ++i) Line(db, 1);
    CFCoor coor;
    const auto fails = [&](const std::string& to, const char* reason) {
        const DxfExportResult result = ExportDxf(db, to, DxfVersion::R12, coor);
        EXPECT_EQ(result.written, 0) << to;
        EXPECT_EQ(result.reason, reason) << to;
    };
    std::ofstream(path) << "the old one";
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{4096, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);  // as good as a full disk
    fails(path, "File too large");
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(Bytes(path), "the old one");
    fails(folder.path, "Is a directory");
    fails(folder.path + "no/a.dxf", "No such file or directory");
    fails("/dev/full", "No space left on device");
    fails("", "no path");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);  // nothing half written
    EXPECT_EQ(ExportDxf(db, path, DxfVersion::R12, coor).written, 1);
    EXPECT_EQ(Reread(path).size(), 1000u);
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    EXPECT_EQ(ExportDxf(db, path, DxfVersion::R12, coor).written, 1);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    std::filesystem::create_symlink("later.dxf", folder.path + "link.dxf");  // names a file that is not there yet
    EXPECT_EQ(ExportDxf(db, folder.path + "link.dxf", DxfVersion::R12, coor).written, 1);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path + "link.dxf"));
    EXPECT_EQ(Reread(folder.path + "later.dxf").size(), 1000u);
}

TEST(DxfExport, AsksForTheFile) {
    const TempFolder folder;
    CTvoDataBase db;
    Line(db, 1);
    CWnd window;
    EXPECT_EQ(db.Write_DXF(&window), 0);  // nobody can show a dialog
    std::string answer;                   // empty: cancel
    const SaveFileDialog before = SetSaveFileDialog([&](OPENFILENAME& request) {
        EXPECT_EQ(request.hwndOwner, &window);
        EXPECT_EQ(std::string(request.lpstrFilter), "AutoCAD交换文件(*.DXF)");
        EXPECT_EQ(std::string(request.lpstrFilter + std::strlen(request.lpstrFilter) + 1, 7), std::string("*.DXF\0", 7));
        EXPECT_EQ(request.nMaxFile, 256u);
        EXPECT_EQ(request.Flags, OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT);
        answer.copy(request.lpstrFile, answer.size());
        return answer.empty() ? FALSE : TRUE;
    });
    EXPECT_EQ(db.Write_DXF(&window), 0);
    answer = folder.path + "plan";
    EXPECT_EQ(db.Write_DXF(&window), 1);
    EXPECT_EQ(Reread(folder.path + "plan.dxf").size(), 1u);
    answer = folder.path + "no/plan.DXF";
    EXPECT_EQ(db.Write_DXF(&window), 1);  // the user did not cancel
    SetSaveFileDialog(before);
}

TEST(DxfExport, ColumnDiagram) {
    const auto diagram = [](char axis, std::initializer_list<float> a, std::initializer_list<float> b) {
        CDXF_3D dxf;
        dxf.New_MemDxf();
        DrawColumnResult(&dxf, 100, 200, 4000, axis, Floats({0, 0.5f, 1}), Floats(a), Floats(b));
        std::string text;
        for (const ACAD_ENTITY* e : dxf.GetEntities()) {
            if (e->GetType() == kAcadLine) {
                const auto& l = static_cast<const ACAD_LINE&>(*e);
                text += std::to_string(e->m_nColor) + ": " + Point(l.m_x1, l.m_y1) + "," + Number(l.m_z1) + " - " +
                        Point(l.m_x2, l.m_y2) + "," + Number(l.m_z2) + "\n";
            } else {
                const auto& t = static_cast<const ACAD_TEXT&>(*e);
                text += std::string(t.m_strText) + " at " + Point(t.m_x, t.m_y) + "," + Number(t.m_z) + " h " + Number(t.m_dHeight) + "\n";
            }
        }
        return text;
    };
    const std::string alongY =
        "2: 100,200,4000 - 100,200,0\n"
        "1: 100,450,4000 - 100,-300,2000\n"
        "1: 100,-300,2000 - 100,300,0\n"
        "1: 100,200,4000 - 100,450,4000\n"
        "1: 100,200,0 - 100,300,0\n"
        "5.00 at 100,450,4000 h 200\n-10.00 at 100,-300,2000 h 200\n2.00 at 100,300,0 h 200\n";
    EXPECT_EQ(diagram('y', {7, -10, 2}, {5, 0, 0}), alongY);
    EXPECT_EQ(diagram('Y', {7, -10, 2}, {5, 0, 0}), alongY);
    EXPECT_NE(diagram('?', {7, -10, 2}, {5, 0, 0}).find("1: 350,200,4000 - -400,200,2000\n"), std::string::npos);
    EXPECT_NE(diagram('x', {0, 0, 0}, {0, 0, 0}).find("1: 100,200,4000 - 100,200,2000\n"), std::string::npos);
}

TEST(DxfExport, NearestColourAgreesWithThePlainLoop) {
    const auto plain = [](int r, int g, int b) {
        if (r == 0 && g == 0 && b == 0) return 7;
        int best = 0, least = 1 << 30;
        for (int i = 1; i < 256; ++i) {
            const COLORREF c = GetAcadRGBColor(i);
            const int dr = GetRValue(c) - r, dg = GetGValue(c) - g, db = GetBValue(c) - b;
            const int distance = dr * dr + dg * dg + db * db;
            if (distance < least) {
                least = distance;
                best = i;
            }
        }
        return best;
    };
    for (int r = 0; r < 256; r += 15)
        for (int g = 0; g < 256; g += 15)
            for (int b = 0; b < 256; b += 15)
                for (int again = 0; again < 2; ++again) ASSERT_EQ(RGB2AcadIndex(r, g, b), plain(r, g, b)) << r << " " << g << " " << b;
    EXPECT_EQ(RGB2AcadIndex(0, 0, 0), 7);  // the others have pushed its answer out
    EXPECT_EQ(RGB2AcadIndex(0, 0, 1), plain(0, 0, 1));
    EXPECT_EQ(RGB2AcadIndex(-5, 400, 0), 3);
}
