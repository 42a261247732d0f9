// A plate: what it derives from its border, what it says about lines and other plates, and its shape.
#include <gtest/gtest.h>

#include <random>

#include "geometry/angles.h"
#include "outline_oracle.h"
#include "plate_builder.h"
#include "plates/plate_queries.h"

namespace {

constexpr double kPi = std::numbers::pi;
const char* const kRectangle = "0,0 - 8000,0; 8000,0 - 8000,6000; 0,6000 - 8000,6000; 0,0 - 0,6000";
const char* const kAnticlockwise = "0+ | 1+ | 2- | 3-";
const char* const kClockwise = "3+ | 2+ | 1- | 0-";

}  // namespace

// --- figures ------------------------------------------------------------------------------------------------

TEST(Plate, FiguresAndSides) {
    struct { const char* name; const char* lines; const char* border; double area, cx, cy, round; const char* sides; } const rows[] = {
        {"a rectangle", kRectangle, kAnticlockwise, 48e6, 4000, 3000, 28000,
         "0,0 - 8000,0 +; 8000,0 - 8000,6000 +; 0,6000 - 8000,6000 -; 0,0 - 0,6000 -; "},
        {"walked clockwise: the sides run as they did", kRectangle, kClockwise, 48e6, 4000, 3000, 28000,
         "0,0 - 0,6000 +; 0,6000 - 8000,6000 +; 8000,0 - 8000,6000 -; 0,0 - 8000,0 -; "},
        {"several lines in a side are one side", "0,0 - 3000,0; 3000,0 - 8000,0; 8000,0 - 8000,6000; 0,6000 - 5000,6000; "
         "5000,6000 - 8000,6000; 0,0 - 0,6000", "0+ 1+ | 2+ | 4- 3- | 5-", 48e6, 4000, 3000, 28000,
         "0,0 - 8000,0 +; 8000,0 - 8000,6000 +; 0,6000 - 8000,6000 -; 0,0 - 0,6000 -; "},
        {"nearly vertical sides run upwards", "0,0 - 6000,0; 6000,0 - 5999.94,6000; -0.06,6000 - 5999.94,6000; 0,0 - -0.06,6000",
         kAnticlockwise, 36e6, 2999.97, 3000, 24000, "0,0 - 6000,0 +; 6000,0 - 5999.9,6000 +; -0.1,6000 - 5999.9,6000 -; 0,0 - -0.1,6000 -; "},
        {"a half disc", "0,4000 - 6000,4000; arc 3000,4000 3000 0..180", "0+ | 1+", 14137167, 3000, 4000 + 4000 / kPi, 6000 + 3000 * kPi,
         "0,4000 - 6000,4000 +; 6000,4000 ~ 0,4000 -90 +; "},
        {"a half disc clockwise", "0,4000 - 6000,4000; arc 3000,4000 3000 0..180", "1- | 0-", 14137167, 3000, 4000 + 4000 / kPi,
         6000 + 3000 * kPi, "6000,4000 ~ 0,4000 -90 -; 0,4000 - 6000,4000 -; "},
        {"a quarter disc", "0,4000 - 3000,4000; 3000,4000 - 3000,7000; arc 3000,4000 3000 90..180", "0+ | 1+ | 2+", 7068583.5, 1726.76,
         5273.24, 10712.39, "0,4000 - 3000,4000 +; 3000,4000 - 3000,7000 +; 3000,7000 ~ 0,4000 -45 +; "},
        {"an arc that bends inwards", "0,0 - 8000,0; 8000,0 - 8000,6000; 8000,6000 - 6000,6000; arc 4000,6000 2000 180..360; "
         "0,6000 - 2000,6000; 0,0 - 0,6000", "0+ | 1+ | 2- | 3- | 4- | 5-", 48e6 - 2e6 * kPi, 4000, 2676.00, 24000 + 2000 * kPi,
         "0,0 - 8000,0 +; 8000,0 - 8000,6000 +; 6000,6000 - 8000,6000 -; 2000,6000 ~ 6000,6000 -90 -; 0,6000 - 2000,6000 -; 0,0 - 0,6000 -; "},
        {"an arc in pieces that meet where directions begin", "0,-3000 - 2598.0762,1500; arc 0,0 3000 270..360; arc 0,0 3000 0..30",
         "1+ 2+ | 0-", 4.5e6 * (2 * kPi / 3 - std::sqrt(3) / 2), 1831.70, -1057.53, 2000 * kPi + 3000 * std::sqrt(3),
         "0,-3000 ~ 2598.1,1500 -60 +; 0,-3000 - 2598.1,1500 -; "},
        {"the same walked backwards", "0,-3000 - 2598.0762,1500; arc 0,0 3000 270..360; arc 0,0 3000 0..30", "2- 1- | 0+",
         4.5e6 * (2 * kPi / 3 - std::sqrt(3) / 2), 1831.70, -1057.53, 2000 * kPi + 3000 * std::sqrt(3),
         "0,-3000 ~ 2598.1,1500 -60 -; 0,-3000 - 2598.1,1500 +; "},
        {"a circle", "arc 100,200 3000 0..180; arc 100,200 3000 180..360", "0+ 1+", 9e6 * kPi, 100, 200, 6000 * kPi, "circle 100,200 3000 +; "},
        {"a circle from its left", "arc 100,200 3000 0..180; arc 100,200 3000 180..360", "1+ 0+", 9e6 * kPi, 100, 200, 6000 * kPi,
         "circle 100,200 3000 +; "},
        {"a circle clockwise", "arc 100,200 3000 0..180; arc 100,200 3000 180..360", "1- 0-", 9e6 * kPi, 100, 200, 6000 * kPi,
         "circle 100,200 3000 -; "},
        {"a circle of three from within a quarter", "arc 0,0 3000 50..100; arc 0,0 3000 100..300; arc 0,0 3000 300..410", "0+ 1+ 2+",
         9e6 * kPi, 0, 0, 6000 * kPi, "circle 0,0 3000 +; "},
        {"two halves that were not joined are two sides", "arc 0,0 3000 0..180; arc 0,0 3000 180..360", "0+ | 1+", 9e6 * kPi, 0, 0, 6000 * kPi,
         "3000,0 ~ -3000,0 -90 +; -3000,0 ~ 3000,0 -90 +; "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        CPlateNet net(row.lines);
        const auto plate = net.Plate(row.border);
        ASSERT_TRUE(plate->HasWholeBorder());
        EXPECT_NEAR(plate->GetArea() / row.area, 1, 2e-6);
        EXPECT_NEAR(plate->m_fCenterX, row.cx, 0.02);
        EXPECT_NEAR(plate->m_fCenterY, row.cy, 0.02);
        EXPECT_NEAR(plate->GetZhouChang(), row.round, 0.02);
        EXPECT_EQ(Sides(*plate), row.sides);
        EXPECT_EQ(plate->m_arrBoundery.GetSize(), plate->m_nDomainEdge);
        EXPECT_EQ(plate->m_arrBounderyDir.GetSize(), plate->m_nDomainEdge);
        EXPECT_EQ(plate->m_arrVertex.GetSize(), plate->m_nDomainEdge);
        for (int i = 0; i < plate->m_arrVertex.GetSize(); ++i) {
            EXPECT_EQ(plate->m_arrVertex[i]->m_fX, plate->m_region[i].x);
            EXPECT_EQ(plate->m_arrVertex[i]->m_fY, plate->m_region[i].y);
        }
    }
}

// Outlines of straight edges and arcs to either side, against fine polylines.
TEST(Plate, FiguresAgreeWithFinePolylines) {
    std::mt19937 rng(41);
    int tried = 0;
    const auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng); };
    for (int round = 0; round < 500; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        const int n = pick(3, 12);
        CFRegion wanted;
        for (int i = 0; i < n; ++i) {
            const double direction = 2 * kPi * i / n, distance = 1000.0 * pick(6, 12);
            const auto at = [](double v) { return static_cast<float>(std::round(v / 100) * 100 + 7000); };
            const float c = pick(0, 1) ? 0.0f : static_cast<float>(0.1 * pick(-12, 12));
            wanted.Add(CFShoot(at(distance * std::cos(direction)), at(distance * std::sin(direction)), c));
        }
        CPlateNet net;
        std::string border, backwards;
        for (int i = 0; i < n; ++i) {
            const CFShoot &from = wanted[i], &to = wanted[(i + 1) % n];
            const auto degrees = static_cast<float>(-std::fabs(from.c) * 180 / kPi);
            CGjNetLine* line = from.c > 0 ? net.GetNetLine(to, from, 1, degrees) : net.GetNetLine(from, to, from.c != 0, degrees);
            ASSERT_NE(line, nullptr);
            net.m_lines.push_back(line);
            const bool along = line->m_fStartX == from.x && line->m_fStartY == from.y;
            border += (i ? " | " : "") + std::to_string(i) + (along ? "+" : "-");
            backwards = std::to_string(i) + (along ? "-" : "+") + (i ? " | " : "") + backwards;
        }
        const oracle::Polyline outline = oracle::PointsOf(wanted, 8);
        const oracle::Area area = oracle::AreaOf(outline);
        const oracle::Extent extent = oracle::ExtentOf(outline);
        const double box = (extent.maxX - extent.minX) * (extent.maxY - extent.minY);
        if (std::fabs(area.signedArea) < box / 4) continue;  // it crosses itself
        ++tried;
        double length = 0;
        for (std::size_t i = 0; i + 1 < outline.size(); ++i)
            length += std::hypot(outline[i + 1].x - outline[i].x, outline[i + 1].y - outline[i].y);
        for (const std::string& walk : {border, backwards}) {
            const auto plate = net.Plate(walk);
            ASSERT_NEAR(plate->GetArea() / std::fabs(area.signedArea), 1, 1e-4);
            ASSERT_NEAR(plate->m_fCenterX, area.x, 1);
            ASSERT_NEAR(plate->m_fCenterY, area.y, 1);
            ASSERT_NEAR(plate->GetZhouChang() / length, 1, 1e-4);
            ASSERT_NEAR(plate->m_rect.m_fMinX, extent.minX, 2);
            ASSERT_NEAR(plate->m_rect.m_fMinY, extent.minY, 2);
            ASSERT_NEAR(plate->m_rect.m_fMaxX, extent.maxX, 2);
            ASSERT_NEAR(plate->m_rect.m_fMaxY, extent.maxY, 2);
            for (int i = 0; walk == border && i < n; ++i) ASSERT_NEAR(plate->m_region[i].c, wanted[i].c, 1e-3);
        }
    }
    EXPECT_GT(tried, 300);
}

TEST(Plate, AFullCircleTellsItselfAsOne) {
    CPlateNet net("arc 100,200 3000 0..180; arc 100,200 3000 180..360");
    for (const char* border : {"0+ 1+", "1+ 0+"}) {
        const auto plate = net.Plate(border);
        const CGjNetLine& circle = *plate->m_arrXingZhuangLine[0];
        EXPECT_EQ(Place(circle.m_fMidX, circle.m_fMidY), "-2900,200");
        EXPECT_EQ(circle.m_fStartDir, 0);
        EXPECT_EQ(circle.m_fEndDir, 360) << "degrees";
        EXPECT_EQ(circle.m_fStartTangent, 360);
        EXPECT_EQ(circle.m_fEndTangent, 0);
        EXPECT_NEAR(circle.m_fLength, 6000 * kPi, 0.01);
        EXPECT_EQ(circle.m_fChordLength, circle.m_fLength);
        EXPECT_EQ(Place(circle.m_fStartX, circle.m_fStartY) + " " + Place(circle.m_fEndX, circle.m_fEndY), "3100,200 3100,200");
        EXPECT_TRUE(circle.GetShape().IsCircle());
        const CGjNetLine copied(circle);
        EXPECT_EQ(copied.m_bFullCircle, 1);
        const std::unique_ptr<CGjNetLine> clone(plate->m_arrXingZhuangLine[0]->Clone());
        EXPECT_EQ(clone->m_bFullCircle, 1);
        EXPECT_EQ(net.m_lines[0]->m_bFullCircle, 0);
    }
}

TEST(Plate, CalculatingAddsNoNodesAndTakesAnIdentityPerSide) {
    CPlateNet net(kRectangle);
    net.SetCurCeng(3);  // the net stands on another storey: no node is found there by its place
    const auto before = net.m_handedOut.size();
    const auto plate = net.Plate(kAnticlockwise);
    EXPECT_EQ(net.m_handedOut.size(), before + 5) << "the plate's own and four";
    EXPECT_EQ(Count(net), "4/4");
    for (CGjNetLine* line : plate->m_arrXingZhuangLine) {
        EXPECT_EQ(line->m_pDataBase, &net);
        EXPECT_EQ(net.FindGouJian(line->get_m_dwGouJianID()), nullptr);
    }
    plate->CalcGeographicData();
    EXPECT_EQ(net.m_handedOut.size(), before + 5) << "once";
    plate->m_bParamCalculated = 0;
    const std::string was = Figures(*plate) + Sides(*plate);
    plate->ReGen(nullptr);
    EXPECT_EQ(Figures(*plate) + Sides(*plate), was) << "again, when told";
}

TEST(Plate, SideLinesBelongToThePlatesOwnDataBase) {
    CPlateNet mine(kRectangle);
    {
        CPlateNet other(kRectangle);  // the one of the process from here on
        const auto plate = mine.Plate(kAnticlockwise);
        EXPECT_EQ(plate->m_arrXingZhuangLine[0]->m_pDataBase, &mine);
        CMianGouJian stray;
        mine.SetBorder(stray, kAnticlockwise);
        stray.CalcGeographicData();
        EXPECT_EQ(stray.m_arrXingZhuangLine[0]->m_pDataBase, &other) << "it has no data base yet";
    }
    ASSERT_EQ(g_pGridDataBase, nullptr);
    CMianGouJian stray, copy;
    mine.SetBorder(stray, kAnticlockwise);
    stray.CalcGeographicData();
    EXPECT_EQ(Sides(stray), Sides(*mine.Plate(kAnticlockwise)));
    copy.CopyData(&stray);
    EXPECT_EQ(Sides(copy), Sides(stray));
}

TEST(Plate, ABorderThatIsntWholeGivesNoFigures) {
    for (const char* border : {"", "0+", "0+ | 1+ | 2-", "0+ | 1+ | 2+ | 3-", "0+ | 1+ | 2- | 3+", "0+ || 1+ | 2- | 3-", "0+ | 1+ | 2- | 3- |"}) {
        SCOPED_TRACE(border);
        CPlateNet net(kRectangle);
        const auto plate = net.Plate(border);
        EXPECT_FALSE(plate->HasWholeBorder());
        EXPECT_EQ(Figures(*plate), kNoFigures);
        EXPECT_EQ(Sides(*plate), "");
        float w, h, a;
        EXPECT_EQ(IsRectanglePlate(&net, plate.get(), w, h, a, 1, nullptr), 0);
        EXPECT_EQ(plate->HasThisBorder(net.m_lines[0]), 0);
    }
    CMianGouJian bare;
    bare.CalcGeographicData();
    EXPECT_EQ(Figures(bare), kNoFigures);
    EXPECT_EQ(bare.get_Gjlx(), 0);
}

// --- copying and letting go -----------------------------------------------------------------------------------

TEST(Plate, CopyDataTakesOverTheGeometryAlone) {
    CPlateNet net(std::string(kRectangle) + "; arc 20000,0 3000 0..180; arc 20000,0 3000 180..360");
    for (const char* border : {kAnticlockwise, kClockwise, "4+ 5+"}) {
        const auto source = net.Plate(border), target = net.Plate("4+ | 5+");
        const auto id = target->get_m_dwGouJianID();
        target->m_dwTag = 7;
        target->CopyData(source.get());
        EXPECT_EQ(Figures(*target), Figures(*source));
        EXPECT_EQ(Sides(*target), Sides(*source));
        EXPECT_EQ(target->m_nXingZhuangBian, source->m_nXingZhuangBian);
        EXPECT_TRUE(target->HasWholeBorder());
        for (int i = 0; i < source->m_arrBoundery.GetSize(); ++i) {
            EXPECT_EQ(target->m_arrBoundery[i], source->m_arrBoundery[i]);
            EXPECT_EQ(target->m_arrBounderyDir[i], source->m_arrBounderyDir[i]);
            EXPECT_EQ(target->m_arrVertex[i], source->m_arrVertex[i]);
        }
        EXPECT_EQ(target->get_m_dwGouJianID(), id);
        EXPECT_EQ(target->m_dwTag, 7u);
        EXPECT_NE(target->m_arrXingZhuangLine[0], source->m_arrXingZhuangLine[0]);
        EXPECT_TRUE(target->HasCommonBorder(source.get()));
        const std::string was = Sides(*target);
        target->CopyData(target.get());
        target->CopyData(nullptr);
        EXPECT_EQ(Sides(*target), was) << "itself and null change nothing";
    }
}

TEST(Plate, IsTakenOutWhereItWasEntered) {
    CPlateNet net(std::string(kRectangle) + "; arc 20000,0 3000 0..180; arc 20000,0 3000 180..360");
    CMianGouJian* plate = net.Plate(kAnticlockwise).release();  // owned by the store from the next line on
    net.AddMianGouJian(plate);
    plate->CopyData(net.Plate("4+ | 5+").get());
    CArray<CMianGouJian*> bordered;
    for (int i = 0; i < 4; ++i) EXPECT_EQ(net.GetBounderyPlate(net.m_lines[static_cast<std::size_t>(i)], bordered), 0) << i;
    EXPECT_EQ(net.GetBounderyPlate(net.m_lines[5], bordered), 1) << "its border has changed";
    net.DeleteGouJian(plate);
    net.UndoInit();  // frees it
    bordered.RemoveAll();
    for (CGjNetLine* line : net.m_lines) EXPECT_EQ(net.GetBounderyPlate(line, bordered), 0);
}

TEST(Plate, LetsGoOfALineThatIsFreed) {
    CPlateNet net(kRectangle);
    CMianGouJian* plate = net.Plate(kAnticlockwise).release();  // owned by the store from the next line on
    net.AddMianGouJian(plate);
    const std::string figures = Figures(*plate);
    CArray<CGouJianEx*> gone;
    gone.Add(net.m_lines[1]);
    net.DeleteNetLine(gone);
    EXPECT_TRUE(plate->HasWholeBorder()) << "the log keeps the line";
    net.UndoInit();
    EXPECT_FALSE(plate->HasWholeBorder());
    EXPECT_EQ(Figures(*plate), figures);
    EXPECT_EQ(Sides(*plate), "");
    CArray<CGjNetLine*> lines;
    CArray<CGjNetNode*> nodes;
    EXPECT_EQ(plate->GetBoundery(lines), 0);
    EXPECT_EQ(plate->GetVertex(nodes), 0);
    EXPECT_EQ(plate->GetBounderyByXingZhuangBian(lines), 0);
    EXPECT_EQ(plate->BorderedBy(net.m_lines[0]), 0);
    plate->ReGen(nullptr);
    plate->m_bParamCalculated = 0;
    plate->ReGen(nullptr);
    EXPECT_EQ(Figures(*plate), figures) << "there is nothing to derive them from";
    CMianGouJian copy;
    copy.CopyData(plate);
    EXPECT_EQ(Figures(copy), figures);
    EXPECT_EQ(Sides(copy), "");
}

// --- questions ----------------------------------------------------------------------------------------------

TEST(Plate, HasThisBorder) {
    const char* const box = "0,0 - 6000,0; 6000,0 - 6000,4000; arc 3000,4000 3000 0..180; 0,0 - 0,4000";
    struct { const char* name; const char* line; int answer; } const rows[] = {
        {"a border line itself", "0,0 - 6000,0", 1},
        {"a part of one", "1000,0 - 2000,0", 1},
        {"either way round", "2000,0 - 1000,0", 1},
        {"a part, aside by less than a tenth of the tolerance", "1000,4.9 - 2000,0", 1},
        {"by as much", "1000,5 - 2000,0", 0},
        {"longer than the border line", "0,0 - 7000,0", 0},
        {"longer, but less than that", "0,0 - 6004,0", 1},
        {"across", "3000,0 - 3000,4000", 0},
        {"the chord of the arc", "0,4000 - 6000,4000", 0},
        {"the arc itself", "arc 3000,4000 3000 0..180", 1},
        {"an arc that the border lies within", "arc 3000,4000 3000 -20..200", 0},  // directions 340 to 560: no common turn
        {"an arc that the border arc lies within, in the same turn", "arc 3000,4000 3000 0..250", 1},
        {"an arc within the border arc", "arc 3000,4000 3000 45..90", 0},
        {"half a degree short at both ends is slack", "arc 3000,4000 3000 0.4..179.6", 1},
        {"more is not", "arc 3000,4000 3000 0.6..179.6", 0},
        {"another radius", "arc 3000,4000 3006 0..180", 0},
        {"nearly the radius", "arc 3000,4000 3004 0..180", 1},
        {"another centre", "arc 3000,4006 3000 0..180", 0},
    };
    CPlateNet net(box);
    const auto plate = net.Plate("0+ | 1+ | 2+ | 3-");
    for (const auto& row : rows) {
        OffNet line(row.line);
        EXPECT_EQ(plate->HasThisBorder(line), row.answer) << row.name;
    }
    {
        const CToleranceScope coarse(59);  // a tenth in whole units: 5 as before
        EXPECT_EQ(plate->HasThisBorder(OffNet("1000,5 - 2000,0")), 0);
    }
    const CToleranceScope fine(9);
    EXPECT_EQ(plate->HasThisBorder(net.m_lines[0]), 0) << "a tenth of 9 is 0, and nothing is under it";
    EXPECT_EQ(plate->HasThisBorder(nullptr), 0);

    net.m_lines[2]->m_bFullCircle = 1;
    const CToleranceScope usual(50);
    EXPECT_EQ(plate->HasThisBorder(OffNet("arc 3000,4000 3000 45..90")), 1) << "of a full circle every arc is part";
    EXPECT_EQ(plate->HasThisBorder(OffNet("arc 3000,4000 3006 45..90")), 0);
}

TEST(Plate, LinesAndOtherPlates) {
    CPlateNet net("0,0 - 4000,0; 4000,0 - 4000,3000; 0,3000 - 4000,3000; 0,0 - 0,3000;"  // 0..3
                  "4000,0 - 8000,0; 8000,0 - 8000,3000; 4000,3000 - 8000,3000;"          // 4..6
                  "8000,3000 - 9000,3000; 8000,3000 - 9000,9000; 9000,3000 - 9000,9000;" // 7..9
                  "0,0 - 4000,3000; 4000,3000 - 4000,9000");
    const auto left = net.Plate(kAnticlockwise), right = net.Plate("4+ | 5+ | 6- | 1-");
    const auto corner = net.Plate("7+ | 9+ | 8-");
    struct { CMianGouJian *a, *b; int border, contain; } const pairs[] = {
        {left.get(), right.get(), 1, 1}, {left.get(), left.get(), 1, 1}, {right.get(), corner.get(), 0, 1}, {left.get(), corner.get(), 0, 0}, {left.get(), nullptr, 0, 0},
    };
    for (const auto& pair : pairs) {
        EXPECT_EQ(pair.a->HasCommonBorder(pair.b), pair.border);
        EXPECT_EQ(pair.a->Contain(pair.b), pair.contain);
    }
    EXPECT_EQ(left->BorderedBy(net.m_lines[1]), 1);
    EXPECT_EQ(left->BorderedBy(net.m_lines[4]), 0);

    struct { const char* name; int line, strides; } const rows[] = {
        {"a diagonal", 10, 1}, {"a side", 0, 1}, {"one end", 11, 0}, {"no end", 8, 0},
    };
    for (const auto& row : rows) EXPECT_EQ(left->StrideNetNode(net.m_lines[static_cast<std::size_t>(row.line)]), row.strides) << row.name;
    EXPECT_EQ(left->StrideNetNode(nullptr), 0);
    // The border of two cells that touch in a point passes it twice: one end there is enough.
    const auto both = net.Plate("4+ | 5+ | 7+ | 9+ | 8- | 6- | 1-");
    EXPECT_EQ(both->StrideNetNode(net.m_lines[8]), 1);
    CGjNetNode elsewhere;
    CGjNetLine touching;
    touching.m_pStartNode = net.m_lines[8]->m_pStartNode;
    touching.m_pEndNode = &elsewhere;
    EXPECT_EQ(both->StrideNetNode(&touching), 1);
    EXPECT_EQ(left->StrideNetNode(&touching), 0);
}

// --- shapes -------------------------------------------------------------------------------------------------

TEST(Shape, AnglesOfATriangle) {
    struct { float x1, y1, x2, y2, x3, y3, a1, a2, a3; } const rows[] = {
        {0, 0, 4, 0, 0, 4, 90, 45, 45},       {0, 0, 0, 4, 4, 0, 90, 45, 45},       {0, 0, 5, 0, 10, 0, 0, 180, 0},
        {0, 0, 5, 3, 5, 3, 0, 0, 0},          {7, 7, 7, 7, 7, 7, 0, 0, 0},          {0, 0, 10, 0, 5, 0, 0, 0, 180},
        {0, 0, 1, 0, 0.5f, 0.8660254f, 60, 60, 60}, {1e6f, 1e6f, 1e6f + 4, 1e6f, 1e6f, 1e6f + 4, 90, 45, 45},
    };
    for (const auto& row : rows) {
        float a1, a2, a3;
        get_triangle_inter_angle(row.x1, row.y1, row.x2, row.y2, row.x3, row.y3, a1, a2, a3);
        EXPECT_NEAR(a1, row.a1, 1e-4);
        EXPECT_NEAR(a2, row.a2, 1e-4);
        EXPECT_NEAR(a3, row.a3, 1e-4);
    }
}

TEST(Shape, IsRectangle) {
    const auto turned = [](float degrees, std::vector<CFPoint> points) {
        for (CFPoint& p : points) p.Rotate(CFPoint(), degrees * kPi / 180);
        return points;
    };
    const std::vector<CFPoint> box = {P(0, 0), P(8000, 0), P(8000, 6000), P(0, 6000)};
    // A vertex in the middle of a side of 8000 that turns it by 1 degree.
    const float dent = 4000 * std::tan(0.5f * static_cast<float>(kPi) / 180);
    const std::vector<CFPoint> bent = {P(0, 0), P(4000, -dent), P(8000, 0), P(8000, 6000), P(0, 6000)};
    struct { const char* name; std::vector<CFPoint> points; float tolerance; int answer; double width, height, angle; } const rows[] = {
        {"a rectangle", box, 0.1f, 1, 8000, 6000, 0},
        {"the width is the first side, not the longer", {box[1], box[2], box[3], box[0]}, 0.1f, 1, 6000, 8000, 90},
        {"clockwise", {box[0], box[3], box[2], box[1]}, 0.1f, 1, 6000, 8000, 90},
        {"turned", turned(30, box), 0.1f, 1, 8000, 6000, 30},
        {"turned far", turned(200, box), 0.1f, 1, 8000, 6000, 200},
        {"begins in the middle of a side", {P(8000, 1000), P(8000, 6000), P(0, 6000), P(0, 0), P(8000, 0)}, 0.1f, 1, 8000, 6000, 180},
        {"a vertex at 179 degrees", bent, 0.95f, 0, 0, 0, 0},
        {"a vertex at 179 degrees, a degree allowed", bent, 1.05f, 1, 8000, 6000, 0},
        {"a parallelogram", {P(0, 0), P(8000, 0), P(9000, 6000), P(1000, 6000)}, 5, 0, 0, 0, 0},
        {"the same, forgiven", {P(0, 0), P(8000, 0), P(9000, 6000), P(1000, 6000)}, 10, 1, 8000, 6082.76, 0},
        {"an L", {P(0, 0), P(8000, 0), P(8000, 3000), P(4000, 3000), P(4000, 6000), P(0, 6000)}, 1, 0, 0, 0, 0},
        {"a triangle", {P(0, 0), P(4000, 0), P(0, 4000)}, 1, 0, 0, 0, 0},
        {"a vertex twice", {box[0], box[0], box[1], box[2], box[3]}, 1, 0, 0, 0, 0},
        {"a point", {box[0]}, 1, 0, 0, 0, 0},
        {"nothing", {}, 1, 0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        CFRegion region(row.points.data(), static_cast<int>(row.points.size()));
        float width = -1, height = -1, angle = -1;
        CFPoint corners[4];
        ASSERT_EQ(IsRectangleRegion(region, width, height, angle, row.tolerance, corners), row.answer);
        ASSERT_EQ(IsRectangleRegion(region, width, height, angle, row.tolerance, nullptr), row.answer);
        if (!row.answer) {
            EXPECT_EQ(width, -1) << "untouched";
            continue;
        }
        EXPECT_NEAR(width, row.width, 0.01);
        EXPECT_NEAR(height, row.height, 0.01);
        EXPECT_NEAR(angle, row.angle, 0.001);
        EXPECT_NEAR(get_dist(corners[0].x, corners[0].y, corners[1].x, corners[1].y), width, 0.01);
        EXPECT_NEAR(get_dist(corners[2].x, corners[2].y, corners[1].x, corners[1].y), height, 0.01);
        region[region.GetUpperBound()].c = 1e-6f;
        EXPECT_EQ(IsRectangleRegion(region, width, height, angle, row.tolerance, nullptr), 0) << "with an arc it is none";
    }
}

TEST(Shape, IsRectanglePlate) {
    CPlateNet net("0,0 - 3000,0; 3000,0 - 8000,0; 8000,0 - 8000,6000; 0,6000 - 8000,6000; 0,0 - 0,6000; arc 4000,6000 4000 0..180");
    float width, height, angle;
    CFPoint corners[4];
    struct { const char* name; const char* border; int answer; double width, height, angle; const char* first; } const rows[] = {
        {"anticlockwise", "0+ 1+ | 2+ | 3- | 4-", 1, 8000, 6000, 0, "0,0"},
        {"clockwise", "3+ | 2- | 1- 0- | 4+", 1, 8000, 6000, 0, "0,6000"},
        {"a side in two", "0+ | 1+ | 2+ | 3- | 4-", 1, 8000, 6000, 0, "0,0"},
        {"a gate", "0+ 1+ | 2+ | 5+ | 4-", 0, 0, 0, 0, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto plate = net.Plate(row.border);
        ASSERT_EQ(IsRectanglePlate(nullptr, plate.get(), width, height, angle, 0.1f, corners), row.answer);
        if (!row.answer) continue;
        EXPECT_NEAR(width, row.width, 0.01);
        EXPECT_NEAR(height, row.height, 0.01);
        EXPECT_NEAR(angle, row.angle, 0.001);
        EXPECT_EQ(Place(corners[0].x, corners[0].y), row.first);
    }
    EXPECT_EQ(IsRectanglePlate(&net, nullptr, width, height, angle, 1, corners), 0);
}
