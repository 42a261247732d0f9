// A field as a component: display lists, colours, bitmaps, with a view and without one; and the ranges kept
// on file.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

#include "fields/chang.h"
#include "fields/chang_range.h"
#include "fields/field_ruler.h"
#include "fields/gj_chang.h"
#include "file_fixtures.h"
#include "geometry/fcoor.h"
#include "model/draw_graph.h"
#include "model/paths.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/acad_color.h"
#include "platform/canvas/client_dc.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

/// A slope over `width` by `height` metres from `low` on the left to `high` on the right, of four triangles.
void Slope(CChang& field, double width, double height, double low, double high) {
    field.Clear();
    const double corners[5][3] = {{0, 0, low},
                                  {width, 0, high},
                                  {width, height, high},
                                  {0, height, low},
                                  {width / 2, height / 2, (low + high) / 2}};
    for (int i = 0; i < 5; ++i) {
        CChangNode node;
        node.m_nNumber = i + 1;
        node.m_fX = static_cast<float>(corners[i][0]);
        node.m_fY = static_cast<float>(corners[i][1]);
        node.m_aValue[0] = static_cast<float>(corners[i][2]);
        field.m_arrNode.Add(node);
    }
    for (int i = 0; i < 4; ++i) field.m_arrTri.Add({{i + 1, (i + 1) % 4 + 1, 5}});
}

/// Number of primitives of a kind, and the first and last text.
std::string Summary(CGjChang& field) {
    int lines = 0, texts = 0, others = 0;
    std::string first, last;
    for (CGraphEntity* entity : field.GetDrawGraph()->m_aEntity) {
        if (entity->GetGraphType() == kGraphLine) {
            ++lines;
        } else if (entity->GetGraphType() == kGraphText) {
            ++texts;
            last = static_cast<CGraph_Text*>(entity)->m_strText.Std();
            if (first.empty()) first = last;
        } else {
            ++others;
        }
    }
    std::ostringstream text;
    text << lines << " lines, " << texts << " texts " << first << " to " << last << ", " << others
         << " others, " << field.m_arrColor.GetSize() << " colours";
    return text.str();
}

class FieldComponent : public ::testing::Test {
protected:
    CGjChang* Draw(FIELD_DISPLAY display, float scale = 1) {
        return m_db.DrawChang(&m_chang, 1, 7, display, scale, 0, 0, 0);
    }
    ~FieldComponent() override { m_db.DestroyData(); }

    CChang m_chang;  // outlives the components
    CTvoDataBase m_db;
};

}  // namespace

TEST_F(FieldComponent, ListsOfEachDisplay) {
    struct {
        const char* name;
        double width, height, low, high;
        FIELD_DISPLAY display;
        const char* summary;
    } const rows[] = {
        // The first of 20 levels is the least value, which has no line; a level crosses three triangles.
        {"isolines", 20, 10, 0, 20, FIELD_DISPLAY_ISOLINE,
         "57 lines, 19 texts 1.00 to 19.00, 0 others, 20 colours"},
        {"cloud", 20, 10, 0, 20, FIELD_DISPLAY_CLOUD, "0 lines, 0 texts  to , 1 others, 0 colours"},
        {"digits every 2 m", 20, 10, 0, 20, FIELD_DISPLAY_DIGIT,
         "0 lines, 66 texts 0.00 to 20.00, 0 others, 127 colours"},
        {"narrow: six by six", 5, 2, 0, 20, FIELD_DISPLAY_DIGIT,
         "0 lines, 36 texts 0.00 to 20.00, 0 others, 127 colours"},
        {"narrower than rounding", 0.00001, 2, 0, 20, FIELD_DISPLAY_DIGIT,
         "0 lines, 36 texts 0.00 to 20.00, 0 others, 127 colours"},
        {"any other display is digits", 5, 2, 0, 20, static_cast<FIELD_DISPLAY>(9),
         "0 lines, 36 texts 0.00 to 20.00, 0 others, 127 colours"},
        {"ends 5 mm early: the last column on the border", 9.995, 2, 0, 1, FIELD_DISPLAY_DIGIT,
         "0 lines, 36 texts 0.00 to 1.00, 0 others, 127 colours"},
        {"not a multiple of 2 m", 11, 2, 0, 11, FIELD_DISPLAY_DIGIT,
         "0 lines, 36 texts 0.00 to 10.00, 0 others, 127 colours"},
        {"constant: no level", 20, 10, 3, 3, FIELD_DISPLAY_ISOLINE,
         "0 lines, 0 texts  to , 0 others, 0 colours"},
        {"a range below 2e-6: one level, at the least", 20, 10, 0, 1e-7, FIELD_DISPLAY_ISOLINE,
         "0 lines, 0 texts  to , 0 others, 1 colours"},
        // Floats at 1e9 are 64 apart, and the step falls back to 1: levels that are one float have the same
        // lines.
        {"a small range far from zero", 20, 10, 1e9, 1e9 + 64, FIELD_DISPLAY_ISOLINE,
         "93 lines, 31 texts 1000000033.00 to 1000000063.00, 0 others, 64 colours"},
        {"no more levels than reason", 20, 10, 1e12, 1e12 + 131072, FIELD_DISPLAY_ISOLINE,
         "0 lines, 0 texts  to , 0 others, 10000 colours"},
        {"places beyond floats", 1e37, 1e37, 0, 1, FIELD_DISPLAY_DIGIT,
         "0 lines, 1 texts 0.00 to 0.00, 0 others, 127 colours"},
    };
    for (const auto& row : rows) {
        Slope(m_chang, row.width, row.height, row.low, row.high);
        EXPECT_EQ(Summary(*Draw(row.display)), row.summary) << row.name;
    }
    Slope(m_chang, 20, 10, 0, 20);
    m_chang.m_arrNode.Add({6, 10000, 10000, {}});
    EXPECT_EQ(Summary(*Draw(FIELD_DISPLAY_DIGIT)), "0 lines, 2 texts 0.00 to 10.00, 0 others, 127 colours")
        << "25 million positions: every 10.002 m";
    // 832.40753f * 1000 / 1000 is a float's step beyond the border, more than a millionth of an edge of 1 m.
    Slope(m_chang, 1, 1, 0, 1);
    for (CChangNode& node : m_chang.m_arrNode) node.m_fX = node.m_fX == 0 ? 831.5f : 832.40753f;
    m_chang.m_arrTri.RemoveAll();
    m_chang.m_arrTri.Add({{1, 2, 3}});
    m_chang.m_arrTri.Add({{1, 3, 4}});
    EXPECT_EQ(Summary(*Draw(FIELD_DISPLAY_DIGIT)), "0 lines, 36 texts 0.00 to 1.00, 0 others, 127 colours")
        << "digits on a border that rounding moves";
    m_chang.Clear();
    EXPECT_EQ(Summary(*Draw(FIELD_DISPLAY_ISOLINE)), "0 lines, 0 texts  to , 0 others, 0 colours")
        << "an empty field";
    EXPECT_EQ(Summary(*Draw(FIELD_DISPLAY_DIGIT)), "0 lines, 0 texts  to , 0 others, 127 colours")
        << "an empty field";
    EXPECT_EQ(m_db.DrawChang(nullptr, 1, 1, FIELD_DISPLAY_CLOUD, 1, 0, 0, 0), nullptr);
}

TEST_F(FieldComponent, PrimitivesAreInModelUnitsAndParts) {
    Slope(m_chang, 20, 10, 0, 20);
    CGjChang* field = Draw(FIELD_DISPLAY_ISOLINE, -1000);
    auto* line = static_cast<CGraph_Line*>(field->GetDrawGraph()->m_aEntity[0]);
    EXPECT_NEAR(static_cast<double>(line->m_fX1), 1000, 0.01);  // value 1 at 1 m
    EXPECT_EQ(line->m_fWidth, 1);
    EXPECT_EQ(line->GetPart(), 2);  // levels count from 1, and the first has no line
    EXPECT_EQ(line->CanSnap(), 0);
    auto* label = static_cast<CGraph_Text*>(field->GetDrawGraph()->m_aEntity[1]);
    EXPECT_EQ(label->m_strText, "-1000.00");
    EXPECT_EQ(label->m_fHeight, 300);
    EXPECT_EQ(label->m_fX, line->m_fX1);
    EXPECT_EQ(field->GetFrect().m_fMaxX, 20000);

    field->m_bDrawGrid = field->m_bDrawValue = field->m_bShowCoord = 1;
    field->DisplayChang(nullptr, FIELD_DISPLAY_CLOUD);
    const auto& all = field->GetDrawGraph()->m_aEntity;
    ASSERT_EQ(all.GetSize(), 1 + 12 + 10);  // locator, three sides of four triangles, two texts at five nodes
    EXPECT_EQ(all[1]->GetPart(), 65);
    auto* place = static_cast<CGraph_Text*>(all[22]);
    EXPECT_EQ(place->m_strText, "(10.00,5.00)");
    EXPECT_EQ(place->m_fY, 5100);
}

TEST_F(FieldComponent, ColoursByStatus) {
    Slope(m_chang, 20, 10, 0, 20);
    CGjChang* field = Draw(FIELD_DISPLAY_ISOLINE);
    struct {
        const char* name;
        FIELD_DISPLAY display;
        unsigned char status;
        char part;
        unsigned long color;
        int lineType;
    } const rows[] = {
        {"a cloud has none", FIELD_DISPLAY_CLOUD, 0, 3, 0x123456, 5},
        {"the colour of the next level", FIELD_DISPLAY_ISOLINE, 0, 1, m_chang.GetIndexColor(1), 0},
        {"beyond the last", FIELD_DISPLAY_ISOLINE, 0, 65, m_chang.GetIndexColor(19), 0},
        {"below the first", FIELD_DISPLAY_ISOLINE, 0, -3, m_chang.GetIndexColor(0), 0},
        {"selected", FIELD_DISPLAY_DIGIT, 1, 3, GetAcadRGBColor(4), 1},
        {"hidden: as it was", FIELD_DISPLAY_DIGIT, 2, 3, 0x123456, 5},
        {"muted", FIELD_DISPLAY_DIGIT, 3, 3, GetAcadRGBColor(250), 0},
    };
    for (const auto& row : rows) {
        unsigned long color = 0x123456;
        int lineType = 5;
        field->SetDisplayType(row.display);
        field->GetDrawInfo(row.status, row.part, color, lineType);
        EXPECT_EQ(color, row.color) << row.name;
        EXPECT_EQ(lineType, row.lineType) << row.name;
    }
    // A range too small: all digits have the first colour.
    Slope(m_chang, 20, 10, 0, 9e-8);
    field->DisplayChang(nullptr, FIELD_DISPLAY_DIGIT);
    for (CGraphEntity* digit : field->GetDrawGraph()->m_aEntity) EXPECT_EQ(digit->GetPart(), 0);
}

TEST_F(FieldComponent, WithoutAViewTheListIsReadyAndTheBitmapsWait) {
    Slope(m_chang, 20, 10, 0, 20);
    CGjChang* field = Draw(FIELD_DISPLAY_CLOUD);
    EXPECT_EQ(field->get_m_dwGouJianID() >> 24, 5u);
    EXPECT_EQ(m_db.GetChang(7), field);
    EXPECT_EQ(m_db.GetChang(8), nullptr);
    EXPECT_EQ(field->m_bRulerDirty, 1);
    EXPECT_EQ(field->m_bBitmapMade, 0);
    field->DisplayChang(nullptr, FIELD_DISPLAY_ISOLINE);
    EXPECT_EQ(field->m_bRulerDirty, 1);
    EXPECT_EQ(field->GetDrawGraph()->m_aEntity.GetSize(), 76);

    // Painted without a view all the same; undo and redo bring the same picture.
    field->DisplayChang(nullptr, FIELD_DISPLAY_CLOUD);
    const auto paint = [&] {
        const auto surface = std::make_shared<CSurface>(400, 600);
        CDC dc(surface);
        CFCoor coor;
        coor.Init(CFPoint(-15000, 20000, 0), 0.01f, 1);
        m_db.DrawOne(&dc, &coor, field);
        return *surface;
    };
    const CSurface shown = paint();
    EXPECT_EQ(field->m_bRulerDirty, 0);
    EXPECT_EQ(field->m_nBitmapWidth, 200);
    EXPECT_EQ(shown.At(349, 150), 0xFF0000u);  // the right end of the slope
    EXPECT_EQ(shown.At(352, 150), 0u);
    EXPECT_NE(shown.At(20, 30), 0u) << "the ruler in the top left corner";
    EXPECT_NE(shown.At(20, 470), 0u);
    EXPECT_EQ(shown.At(20, 510), 0u);
    m_db.Start();
    m_db.DeleteGouJian(field);
    EXPECT_EQ(m_db.GetChang(7), nullptr);
    m_db.Undo(nullptr, nullptr);
    EXPECT_TRUE(paint() == shown);
    m_db.HideChang(7);
    EXPECT_TRUE(paint() == CSurface(400, 600)) << "hidden";
}

TEST_F(FieldComponent, WithAViewItIsShownAtOnce) {
    CTvoFrameBase frame;
    CTvoViewMgr view;
    frame.m_pView = &view;
    m_db.m_pFrame = &frame;
    view.m_pDataBase = &m_db;
    view.m_cCoor.Init(CFPoint(0, 10000, 0), 0.02f, 1);
    Slope(m_chang, 20, 10, 0, 20);
    CGjChang* field = Draw(FIELD_DISPLAY_CLOUD, 2);
    EXPECT_EQ(field->m_bBitmapMade, 1);
    EXPECT_EQ(field->m_nBitmapWidth, 400);
    EXPECT_EQ(field->m_fBitmapScale, 0.02f);
    EXPECT_EQ(m_chang.m_fValueScale, 2);
    view.m_bBaseMapDirty = 0;
    field->DisplayChang(&view, FIELD_DISPLAY_ISOLINE);
    EXPECT_EQ(view.m_bBaseMapDirty, 1);
    EXPECT_EQ(field->GetDrawGraph()->m_aEntity.GetSize(), 76);
    // A zoom stretches the cloud that there is.
    view.m_cCoor.SetScale(0.04f);
    CClientDC dc(&view);
    field->SetDisplayType(FIELD_DISPLAY_CLOUD);
    field->Draw(&dc, &view.m_cCoor);
    EXPECT_EQ(field->m_nBitmapWidth, 400);
    m_db.m_pFrame = nullptr;
    frame.m_pView = nullptr;
    m_db.DestroyData();
    m_db.Initialize();
}

TEST(FieldRuler, LabelsTellTheirSteps) {
    const struct {
        float least, most, scale;
        const char* labels;  // the first three and the last
    } rows[] = {
        {0, 100, 1, "100.00 90.00 80.00 0.00"},
        {0, 1, 1, "1.00 0.90 0.80 0.00"},
        {0, 0.016f, 1, "0.0160 0.0144 0.0128 0.0000"},
        {0, 0.016f, -1000, "-16.00 -14.40 -12.80 0.00"},
        {-0.5f, 0.5f, 1, "0.50 0.40 0.30 -0.50"},
        {0, 2e-9f, 1, "2.000e-09 1.800e-09 1.600e-09 0.000e+00"},
        {7, 7, 1, "7.00   "},
        {0, 1, 3e38f, "3.000e+38 2.700e+38 2.400e+38 0.000e+00"},
    };
    for (const auto& row : rows) {
        CChang field;
        field.m_arrNode.Add({1, 0, 0, {row.least}});
        field.m_arrNode.Add({2, 1, 0, {row.most}});
        field.m_arrNode.Add({3, 0, 1, {row.most}});
        field.m_arrTri.Add({{1, 2, 3}});
        field.m_fValueScale = row.scale;
        const auto bands = RulerBands(field);
        std::string labels = bands.back().label;
        for (const int i : {4, 2, 0}) labels.insert(0, bands[static_cast<std::size_t>(i)].label + " ");
        EXPECT_EQ(labels, row.labels);
    }
}

TEST(ChangRange, ComesBackFromItsFile) {
    const TempFolder folder;
    G_strWorkPath = folder.path.substr(0, folder.path.size() - 1).c_str();
    CChangRange written, read;
    written.m_nFlag = 3;
    written.m_aRange[0] = {1.5, -2.5};
    written.m_aRange[3] = {1e300, -7};
    EXPECT_EQ(read.Read_Binary("ranges.dat", 9, 0, 0), 0) << "no file";
    written.Write_Binary("ranges.dat", 2, 3, 4);
    const std::string path = folder.path + "ranges.dat";
    const std::string bytes = [&] {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }();
    // Four blocks of 16 records of 256 bytes, each with a record of 0xFF and two doubles, behind the first
    // block.
    EXPECT_EQ(bytes.size(), 4u * 4096 + 256 + 16);
    EXPECT_EQ(static_cast<unsigned char>(bytes[4096]), 0xFF);
    struct {
        const char* name;
        int a, b, c;
        std::string bytes;
        int result, flag;
        double max;
    } const rows[] = {
        {"the same version", 2, 3, 4, bytes, 1, 3, 1e300},
        {"a later program", 2, 4, 0, bytes, 1, 3, 1e300},
        {"an earlier program", 2, 3, 3, bytes, 0, 0, 99999},
        {"cut in the last range", 2, 3, 4, bytes.substr(0, bytes.size() - 1), 0, 9, 99999},
        {"cut in the version", 2, 3, 4, bytes.substr(0, 5), 0, 9, 99999},
        {"a block without its header", 2, 3, 4, std::string(bytes).replace(8200, 1, "x"), 0, 9, 99999},
    };
    for (const auto& row : rows) {
        std::ofstream(path, std::ios::binary) << row.bytes;
        read.Set_Default_Value();
        read.m_nFlag = 9;
        EXPECT_EQ(read.Read_Binary("ranges.dat", row.a, row.b, row.c), row.result) << row.name;
        EXPECT_EQ(read.m_nFlag, row.flag) << row.name;
        EXPECT_EQ(read.m_aRange[3].m_dMax, row.max) << row.name;
    }
    // No file stays open.
    EXPECT_EQ(IsFileOpen(path.c_str()), 0);
    CChangRange copy;
    copy.CopyData(written);
    EXPECT_EQ(copy.m_aRange[0].m_dMin, -2.5);
    G_strWorkPath = "/nowhere/at/all";
    written.Write_Binary("ranges.dat", 1, 0, 0);
    G_strWorkPath = "";
}
