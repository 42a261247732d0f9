// The display list as a picture: pixels of each primitive, colours, raster modes, and what must not hang.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "geometry/fcoor.h"
#include "geometry/fregion.h"
#include "model/draw_graph.h"
#include "model/goujian.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"
#include "platform/canvas/system_metrics.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr float kPiF = 3.1415927f;

/// A surface of 200 by 200 pixels with the model's (0, 0) in its middle.
struct Sheet {
    explicit Sheet(float scale = 1, int reverse = 1, std::uint32_t ground = 0)
        : surface(std::make_shared<CSurface>(200, 200)), dc(surface) {
        surface->Fill(ground);
        coor.SetScale(scale);
        coor.SetReverse(reverse);
        coor.SetOrigin(CFPoint(-100 / scale, reverse ? 100 / scale : -100 / scale, 0));
    }
    void Paint(CGraphEntity& entity) { entity.Draw(&dc, &coor); }
    int Lit() const {
        int n = 0;
        for (const std::uint32_t p : surface->Pixels()) n += p != 0;
        return n;
    }
    int LitInColumn(int x) const {
        int n = 0;
        for (int y = 0; y < 200; ++y) n += surface->At(x, y) != 0;
        return n;
    }
    std::set<std::uint32_t> Colours() const {
        return {surface->Pixels().begin(), surface->Pixels().end()};
    }
    std::shared_ptr<CSurface> surface;
    CDC dc;
    CFCoor coor;
};

CArray<CFPoint, CFPoint> Triangle(float size) {
    CArray<CFPoint, CFPoint> points;
    points.Add(CFPoint(-size, -size, 0));
    points.Add(CFPoint(size, -size, 0));
    points.Add(CFPoint(0, size, 0));
    return points;
}

/// One of each kind that paints, about the origin.
std::vector<std::unique_ptr<CGraphEntity>> OneOfEach(float size) {
    std::vector<std::unique_ptr<CGraphEntity>> all;
    all.push_back(std::make_unique<CGraph_Point>(size, -size));
    all.push_back(std::make_unique<CGraph_Line>(-size, -size, size, size / 2, -3.0f));
    all.push_back(std::make_unique<CGraph_Arc>(0.f, 0.f, size, 30.f, 250.f, -2.0f));
    all.push_back(std::make_unique<CGraph_Circle>(0.f, 0.f, size, 1.0f));
    all.push_back(std::make_unique<CGraph_PolyRgn>(Triangle(size)));
    all.push_back(std::make_unique<CGraph_CircleRgn>(0.f, 0.f, size));
    all.push_back(std::make_unique<CGraph_Text>(-size, 0.f, size / 2, 0.3f, "A-1轴"));
    return all;
}

TEST(DisplayPaint, PenWidths) {
    struct {
        const char* name;
        float width, scale;
        int pixels;
    } const rows[] = {
        {"-3: three pixels", -3, 1, 3},          {"-3 zoomed out", -3, 0.01f, 3}, {"-3 zoomed in", -3, 50, 3},
        {"-3.9 is cut", -3.9f, 1, 3},            {"3: of the model", 3, 1, 3},    {"3 zoomed in", 3, 10, 30},
        {"3 zoomed out: never under 1", 3, 0.01f, 1}, {"none: 1", 0, 10, 1},      {"-0.5: 1", -0.5f, 10, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Sheet line(row.scale), arc(row.scale), circle(row.scale);
        CGraph_Line l(-90 / row.scale, 0, 90 / row.scale, 0, row.width);
        line.Paint(l);
        EXPECT_EQ(line.LitInColumn(100), row.pixels);
        CGraph_Arc a(0, -50 / row.scale, 50 / row.scale, 10, 170, row.width);
        arc.Paint(a);
        EXPECT_NEAR(arc.LitInColumn(100), row.pixels, 1);
        CGraph_Circle c(0, 0, 50 / row.scale, row.width);
        circle.Paint(c);
        EXPECT_NEAR(circle.LitInColumn(100), 2 * row.pixels, 2);
    }
}

TEST(DisplayPaint, PointsAreSquaresOfFixedSize) {
    struct {
        float scale;
        int side;
    } const rows[] = {{0.04f, 3}, {0.05f, 5}, {1, 5}, {100, 5}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.scale);
        Sheet sheet(row.scale);
        CGraph_Point point(0, 0);
        sheet.Paint(point);
        EXPECT_EQ(sheet.Lit(), row.side * row.side);
        EXPECT_EQ(sheet.LitInColumn(100 - row.side / 2), row.side);
        EXPECT_EQ(sheet.LitInColumn(100 + row.side / 2), row.side);
    }
}

// Every lit pixel lies on the true curve and the curve is lit all along, with y either way: so the arc meets the
// point that painting starts from, else a stray line would lead there.
TEST(DisplayPaint, ArcsFollowTheModelWithYEitherWay) {
    struct {
        const char* name;
        float start, end;
    } const rows[] = {{"quarter", 0, 90},     {"over zero by 420", 300, 420}, {"low half", 180, 360},
                      {"clockwise", 80, -30}, {"from high to low: the plain difference", 300, 60}};
    for (const auto& row : rows)
        for (const int reverse : {0, 1}) {
            SCOPED_TRACE(std::string(row.name) + (reverse ? ", y down" : ", y up"));
            Sheet sheet(0.5f, reverse);
            CGraph_Arc arc(10, 20, 120, row.start, row.end, 1);
            sheet.Paint(arc);
            std::set<std::pair<int, int>> near;  // pixels that the curve may light
            for (int i = 0; i <= 1000; ++i) {
                const double a = (row.start + (row.end - row.start) * static_cast<double>(i) / 1000) * kPi / 180;
                const CPoint p = sheet.coor.FPtoDP(CFPoint(static_cast<float>(10 + 120 * std::cos(a)),
                                                           static_cast<float>(20 + 120 * std::sin(a)), 0));
                bool lit = false;
                for (int dx = -1; dx <= 1; ++dx)
                    for (int dy = -1; dy <= 1; ++dy) {
                        near.insert({p.x + dx, p.y + dy});
                        lit = lit || sheet.surface->At(p.x + dx, p.y + dy) != 0;
                    }
                EXPECT_TRUE(lit) << "gap at " << p.x << "," << p.y;
            }
            for (int y = 0; y < 200; ++y)
                for (int x = 0; x < 200; ++x)
                    EXPECT_TRUE(sheet.surface->At(x, y) == 0 || near.count({x, y})) << "stray " << x << "," << y;
        }
}

TEST(DisplayPaint, CirclesLieOnTheirArcs) {
    Sheet circle, arc;
    CGraph_Circle c(3, 4, 60, 1);
    CGraph_Arc a(3, 4, 60, 0, 360, 1);
    circle.Paint(c);
    arc.Paint(a);
    EXPECT_EQ(*circle.surface, *arc.surface);
    Sheet disc;
    CGraph_CircleRgn d(3, 4, 60);
    disc.Paint(d);
    EXPECT_EQ(disc.LitInColumn(103), 121);
    EXPECT_EQ(disc.LitInColumn(103 - 60), circle.LitInColumn(103 - 60));
}

TEST(DisplayPaint, PolygonsAreFilledByWindingOrHatched) {
    // A loop that runs around its middle twice: filled by winding, a hole by parity.
    CArray<CFPoint, CFPoint> twice;
    for (const float r : {80.0f, 40.0f})
        for (const auto& [x, y] : {std::pair{-r, -r}, {r, -r}, {r, r}, {-r, r}, {-r, -r}}) twice.Add(CFPoint(x, y, 0));
    Sheet solid, hatched(1, 1, 0x123456);
    CGraph_PolyRgn area(twice);
    area.SetColor(0x0000FF);
    solid.Paint(area);
    EXPECT_EQ(solid.surface->At(100, 100), 0xFF0000u) << "red is the low byte of a colour";
    EXPECT_EQ(solid.Lit(), 160 * 160);
    area.SetLineType(1);
    hatched.Paint(area);
    EXPECT_EQ(hatched.Colours(), (std::set<std::uint32_t>{0x123456, 0xFF0000})) << "the ground shows through";
}

TEST(DisplayPaint, DashedLinesHaveGaps) {
    for (auto& entity : OneOfEach(80)) {
        const unsigned long type = entity->GetGraphType();
        if (type != kGraphLine && type != kGraphArc && type != kGraphCircle) continue;
        SCOPED_TRACE(type);
        Sheet solid, dashed;
        solid.Paint(*entity);
        entity->SetLineType(1);
        dashed.Paint(*entity);
        EXPECT_GT(dashed.Lit(), solid.Lit() / 8);
        EXPECT_LT(dashed.Lit(), solid.Lit() * 7 / 8);
    }
}

TEST(DisplayPaint, TextStandsInItsBox) {
    for (const int reverse : {0, 1})
        for (const float angle : {0.0f, 0.7f, kPiF / 2, -2.5f}) {
            SCOPED_TRACE("angle " + std::to_string(angle) + (reverse ? ", y down" : ", y up"));
            Sheet sheet(0.1f, reverse);
            CGraph_Text text(100, 50, 200, angle, "HMH");
            EXPECT_EQ(text.m_pFont, nullptr);
            sheet.Paint(text);
            EXPECT_GT(sheet.Lit(), 40);
            for (int y = 0; y < 200; ++y)
                for (int x = 0; x < 200; ++x) {
                    if (sheet.surface->At(x, y) == 0) continue;
                    const CFPoint p = sheet.coor.DPtoFP(CPoint(x, y));
                    const double dx = p.x - 100, dy = p.y - 50;
                    const double u = dx * std::cos(angle) + dy * std::sin(angle);
                    const double v = -dx * std::sin(angle) + dy * std::cos(angle);
                    EXPECT_TRUE(u > -20 && u < 320 && v > -20 && v < 220) << "pixel " << x << "," << y;
                }
            const CFont* font = text.m_pFont.get();
            ASSERT_NE(font, nullptr);
            EXPECT_EQ(text.CreateFontA(&sheet.coor), font);
            EXPECT_EQ(font->Log().lfHeight, 20);
            sheet.coor.SetScale(0.2f);
            EXPECT_EQ(text.CreateFontA(&sheet.coor)->Log().lfHeight, 40) << "made anew at another scale";
        }
}

TEST(DisplayPaint, TwiceInXorRestoresAndTheContextIsAsBefore) {
    for (const int rop : {R2_XORPEN, R2_NOT, R2_COPYPEN})
        for (const int lineType : {0, 1}) {
            int kind = 0;
            for (auto& entity : OneOfEach(70)) {
                SCOPED_TRACE("mode " + std::to_string(rop) + ", line type " + std::to_string(lineType) + ", kind " +
                             std::to_string(kind++));
                Sheet sheet(1, 1, 0x204060);
                sheet.dc.MoveTo(7, 7);
                CPen pen(PS_SOLID, 5, COLORREF{1});
                CBrush brush(COLORREF{2});
                CFont font;
                sheet.dc.SelectObject(&pen);
                sheet.dc.SelectObject(&brush);
                sheet.dc.SelectObject(&font);
                sheet.dc.SetROP2(R2_MERGEPEN);
                sheet.dc.SetBkColor(0x010203);
                sheet.dc.SetTextColor(0x040506);
                const CSurface before = *sheet.surface;
                entity->SetColor(0x55AA77);
                entity->SetRop2(rop);
                entity->SetLineType(lineType);
                sheet.Paint(*entity);
                EXPECT_FALSE(*sheet.surface == before) << "painted nothing";
                sheet.Paint(*entity);
                EXPECT_EQ(*sheet.surface == before, rop != R2_COPYPEN);
                EXPECT_EQ(sheet.dc.GetCurrentPen(), &pen);
                EXPECT_EQ(sheet.dc.GetCurrentBrush(), &brush);
                EXPECT_EQ(sheet.dc.GetCurrentFont(), &font);
                EXPECT_EQ(sheet.dc.GetROP2(), R2_MERGEPEN);
                EXPECT_EQ(sheet.dc.GetBkColor(), 0x010203u);
                EXPECT_EQ(sheet.dc.GetTextColor(), 0x040506u);
                EXPECT_EQ(sheet.dc.GetBkMode(), OPAQUE);
                EXPECT_EQ(sheet.dc.GetTextAlign(), UINT{TA_LEFT | TA_TOP});
            }
        }
}

/// Knows part 'A' in states 0 and 1, and leaves everything else as it stands, as most components do.
class Coloured : public CGouJianEx {
public:
    void GetDrawInfo(unsigned char status, char part, unsigned long& colour, int& lineType) override {
        ++asked;
        if (part != 'A' || status > 1) return;
        colour = status == 1 ? 0x00FF00 : 0x0000FF;
        lineType = status;
    }
    int GetJiaDian(CArray<CFPoint>& grips) override {
        grips.Add(CFPoint(0, 0, 0));
        return 1;
    }
    int asked = 0;
};

TEST(ComponentPaint, OwnersColourGeneratedPicturesOnly) {
    Coloured owner;
    CDrawGraph* const graph = owner.GetDrawGraph();
    CGraph_Line* const known = graph->Draw_Line(-50, -50, 50, -50, 1, 'A', 1, R2_COPYPEN);
    CGraph_Line* const other = graph->Draw_Line(-50, 50, 50, 50, 1, 'B', 1, R2_COPYPEN);
    other->SetColor(0x123456);
    other->SetLineType(2);

    graph->m_bFixed = 1;
    Sheet fixed;
    owner.Draw(&fixed.dc, &fixed.coor);
    EXPECT_EQ(owner.asked, 0);
    EXPECT_EQ(known->m_dwColor, 0xFFFFFFu);

    graph->m_bFixed = 0;
    Sheet generated;
    EXPECT_EQ(owner.Draw(&generated.dc, &generated.coor), 1);
    EXPECT_EQ(owner.asked, 2);
    EXPECT_EQ(known->m_dwColor, 0x0000FFu);
    EXPECT_EQ(generated.surface->At(100, 150), 0xFF0000u);
    EXPECT_EQ(other->m_dwColor, 0x123456u) << "a part that the owner doesn't know";
    EXPECT_EQ(other->m_nLineType, 2);

    owner.set_m_byteStatus(3);
    owner.Draw(&generated.dc, &generated.coor);
    EXPECT_EQ(known->m_dwColor, 0x0000FFu) << "a state that the owner doesn't know";
    EXPECT_EQ(generated.surface->At(100, 100), 0u) << "no grip unless selected";

    owner.set_m_byteStatus(GJ_STATUS_SELECTED);
    owner.Draw(&generated.dc, &generated.coor);
    EXPECT_EQ(known->m_dwColor, 0x00FF00u);
    EXPECT_EQ(known->m_nLineType, 1);
    EXPECT_EQ(generated.surface->At(100, 100), 0x0000FFu) << "a blue grip";
}

TEST(ComponentPaint, HiddenOnesPaintNothing) {
    Coloured owner;
    for (auto& entity : OneOfEach(60)) owner.GetDrawGraph()->Append(entity.release());
    owner.set_m_byteStatus(GJ_STATUS_HIDDEN);
    Sheet sheet;
    EXPECT_EQ(owner.Draw(&sheet.dc, &sheet.coor), 0);
    owner.GetDrawGraph()->Draw(&sheet.dc, &sheet.coor, &owner);
    EXPECT_EQ(sheet.Lit(), 0);
    EXPECT_EQ(owner.asked, 0);
    owner.GetDrawGraph()->m_bFixed = 1;
    owner.GetDrawGraph()->Draw(&sheet.dc, &sheet.coor, &owner);
    EXPECT_EQ(sheet.Lit(), 0);
}

TEST(ComponentPaint, GripsStayOnTheScreen) {
    SetSystemMetrics(SM_CXFULLSCREEN, 150);
    SetSystemMetrics(SM_CYFULLSCREEN, 120);
    struct {
        CPoint at;
        int lit;
    } const rows[] = {{{50, 50}, 49}, {{150, 120}, 49}, {{151, 50}, 0}, {{50, 121}, 0}, {{-1, 50}, 0}, {{50, -1}, 0},
                      {{0, 0}, 16}};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.at.x) + "," + std::to_string(row.at.y));
        Sheet sheet;
        sheet.dc.SetROP2(R2_XORPEN);
        DrawGripSquare(&sheet.dc, row.at);
        EXPECT_EQ(sheet.Lit(), row.lit);
        EXPECT_EQ(sheet.dc.GetROP2(), R2_XORPEN);
        if (row.lit == 49) {
            EXPECT_EQ(sheet.surface->At(row.at.x, row.at.y), 0x0000FFu);
            EXPECT_EQ(sheet.surface->At(row.at.x - 3, row.at.y + 3), 0x808080u);
        }
    }
    SetSystemMetrics(SM_CXFULLSCREEN, 1920);
    SetSystemMetrics(SM_CYFULLSCREEN, 1080);
}

TEST(DisplayPaint, NoNumberHangsOrOverflows) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    const float nasty[] = {0.0f, 1.0f, -1e3f, 1e9f, -3e38f, 3e38f, inf, -inf, nan};
    const CFRegion query(CFRect(-10, -10, 10, 10));
    CArray<CFPoint> points;
    CArray<int> kinds;
    for (const float scale : {1.0f, 1e-9f, 1e9f, 0.0f, nan})
        for (const float a : nasty)
            for (const float b : nasty) {
                std::vector<std::unique_ptr<CGraphEntity>> all;
                all.push_back(std::make_unique<CGraph_Point>(a, b));
                for (const float c : {1.0f, a, b}) {
                    all.push_back(std::make_unique<CGraph_Line>(a, b, c, 5.f, b));
                    all.push_back(std::make_unique<CGraph_Arc>(a, c, b, c, a, 1.f));
                    all.push_back(std::make_unique<CGraph_Arc>(1.f, c, a, 10.f, b, c));
                    all.push_back(std::make_unique<CGraph_Circle>(a, c, b, a));
                    all.push_back(std::make_unique<CGraph_CircleRgn>(a, c, b));
                    all.push_back(std::make_unique<CGraph_Text>(a, b, c, b, "A\xFF\xE8轴"));
                    all.push_back(std::make_unique<CGraph_Locator>(CFRect(a, b, c, a)));
                }
                CArray<CFPoint, CFPoint> corners = Triangle(50);
                corners.Add(CFPoint(a, b, 0));
                all.push_back(std::make_unique<CGraph_PolyRgn>(corners));
                Sheet sheet;
                sheet.coor.SetScale(scale);
                for (auto& entity : all) {
                    sheet.Paint(*entity);
                    entity->SetLineType(1);
                    sheet.Paint(*entity);
                    entity->HitTest(query, 0);
                    entity->HitTest(CFRect(a, -10, b, 10), 1);
                    entity->GetFrect();
                    entity->QueryAbsSnapPoint(63, points, kinds);
                }
                points.RemoveAll();
                kinds.RemoveAll();
            }
}

}  // namespace
