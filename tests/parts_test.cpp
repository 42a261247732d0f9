// Texts, riders and graphics: their defaults and outlines, riders under random edits, and all of them in
// model files.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include "geometry/angles.h"
#include "geometry/fregion.h"
#include "host/failure.h"
#include "host/host_data_base.h"
#include "host/models/model_build.h"
#include "host/models/model_plan.h"
#include "host/models/model_writer.h"
#include "host/tvo_model_host.h"
#include "host/tvo_rider.h"
#include "model/draw_graph.h"
#include "model/gj_text.h"
#include "model_tongue.h"
#include "platform/acad_color.h"

namespace {

/// A family by ascending identity.
template <class Component>
std::vector<Component*> FamilyOf(CTvoHostDataBase& db, unsigned char type) {
    CArray<CGouJianEx*> all;
    db.GetGouJianArray(type, &all);
    std::vector<Component*> family;
    for (CGouJianEx* obj : all) family.push_back(static_cast<Component*>(obj));
    std::sort(family.begin(), family.end(),
              [](auto* a, auto* b) { return a->m_dwGouJianID < b->m_dwGouJianID; });
    return family;
}

std::vector<CTvoRider*> RidersOf(CTvoHostDataBase& db) { return FamilyOf<CTvoRider>(db, kTvoRiderType); }
std::vector<CGjNetLine*> LinesOf(CTvoHostDataBase& db) { return FamilyOf<CGjNetLine>(db, GJLX_NET_LINE); }

class PartsFile : public testing::Test {
protected:
    PartsFile() {
        std::string name = (std::filesystem::temp_directory_path() / "tvo_parts_XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~PartsFile() override {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    std::string File(const char* name) const { return (m_folder / name).string(); }
    std::string Saved(CTvoHostDataBase& db) const {
        SaveModel(File("saved"), db, TvoModelHost(), false);
        std::ostringstream bytes;
        bytes << std::ifstream(File("saved"), std::ios::binary).rdbuf();
        return bytes.str();
    }
    std::string Write(const std::string& bytes) const {
        std::ofstream(File("written"), std::ios::binary) << bytes;
        return File("written");
    }

    std::filesystem::path m_folder;
};

/// One of each kind, some hidden, tagged, on another storey; a net with two riders.
void DrawEverything(CTvoHostDataBase& db) {
    const unsigned long blue = 0xFF0000;
    db.AddNetLine(CFPoint(0, 0, 0), CFPoint(8000, 0, 0), 0, 0);
    db.AddNetLine(CFPoint(8000, 0, 0), CFPoint(8000, 6000, 0), 1, -50);
    db.AddRider(LinesOf(db)[0], 240, 7, GJ_STATUS_NORMAL);
    db.AddRider(LinesOf(db)[1], 300, 0, GJ_STATUS_HIDDEN);
    db.DrawTextA(100, 200, "Hall 大厅", 3, GJ_STATUS_HIDDEN, 250, 0.5f, &blue, 0);
    db.DrawTextA(0, 0, "", 0, GJ_STATUS_NORMAL, 300, 0, nullptr, 0);
    db.SetCurCeng(4);
    db.DrawPoint(1, 2, 0xFF, 9, GJ_STATUS_NORMAL, 0);
    db.DrawLine(1, 2, 3, 4, -2, 0xFFFFFF, 9, GJ_STATUS_HIDDEN, 1);
    db.DrawArc(10, 20, 300, 15, 275, 2.5f, blue, 1, GJ_STATUS_NORMAL, 1);
    db.DrawCircle(10, 20, 300, 30, 0x00FF00, 1, GJ_STATUS_NORMAL, 1);
    db.DrawCircleRgn(10, 20, 30, 0x123456, 1, GJ_STATUS_NORMAL, 0);
    CArray<CFPoint, CFPoint> corners;
    for (const CFPoint p : {CFPoint(0, 0, 0), CFPoint(9, 0, 0), CFPoint(9, 5, 0)}) corners.Add(p);
    db.DrawPolygonRgn(corners, 0x654321, 2, GJ_STATUS_NORMAL, 1);
    db.SetCurCeng(-1);
    db.GetBackgrnd().m_strKuaX = "3;4.5*2";
    db.GetBackgrnd().m_fY0 = -250;
    db.m_bGridShown = true;
}

}  // namespace

TEST(Texts, HaveTheirDefaultsAndStates) {
    CGjText text;
    EXPECT_EQ(text.m_fHeight, 300.0f);
    EXPECT_EQ(text.m_fAngle, 0.0f);
    EXPECT_EQ(text.m_crColor, GetAcadRGBColor(3));
    EXPECT_EQ(text.QueryBasicType(), 4);
    EXPECT_EQ(text.SaveData(nullptr) + text.LoadData(nullptr) + text.WriteBinary(nullptr) +
                  text.ReadBinary(nullptr),
              4);

    text.m_crColor = 0x00C8640B;  // 11, 100 and 200, of which 42 % are 4.62, 42.0 and 84.0
    struct {
        unsigned char status;
        unsigned long color;
        int lineType;
    } const rows[] = {
        {0, 0x00C8640B, 0}, {1, 0x00542A04, 1}, {2, 1234, 56}, {3, GetAcadRGBColor(250), 0}, {9, 1234, 56}};
    for (const auto& row : rows) {
        unsigned long color = 1234;
        int lineType = 56;
        text.GetDrawInfo(row.status, 'A', color, lineType);
        EXPECT_EQ(color, row.color) << int{row.status};
        EXPECT_EQ(lineType, row.lineType) << int{row.status};
    }
}

TEST(Texts, EnterTheModelWithWhatTheyAreGiven) {
    CTvoHostDataBase db;
    CGjText* text = db.DrawTextA(1000, 2000, "ab大", 5, GJ_STATUS_NORMAL, 200, 0, nullptr, 99);
    EXPECT_EQ(text->get_m_dwGouJianID(), 4u << 24 | 1);
    EXPECT_EQ(text->get_m_dwGouJianNO(), 1u);
    EXPECT_EQ(text->m_dwTag, 5u);
    const CFRect box = text->GetFrect();  // two half widths and a whole one
    EXPECT_EQ(box.m_fMinX, 1000);
    EXPECT_EQ(box.m_fMaxX, 1400);
    EXPECT_EQ(box.m_fMaxY, 2200);
    EXPECT_EQ(text->GetDrawGraph()->m_aEntity[0]->m_dwColor, GetAcadRGBColor(3));
    EXPECT_EQ(text->GetSortPoint().GetY(), 2000);
}

// Each corner from the line's definition: beside the ends, at right angles to the line there.
TEST(Riders, CoverAStripAboutTheirLine) {
    struct {
        const char* name;
        CFPoint from, to;
        float bulge, width;
    } const rows[] = {
        {"level", {0, 0, 0}, {1000, 0, 0}, 0, 200},
        {"upwards", {500, 100, 0}, {500, 4100, 0}, 0, 300},
        {"down to the left", {0, 0, 0}, {-3000, -4000, 0}, 0, 500},
        {"a quarter", {5000, 0, 0}, {0, 5000, 0}, -45, 400},
        {"nearly round", {5000, 0, 0}, {0, -5000, 0}, -135, 400},
        {"of no width", {5000, 0, 0}, {0, 5000, 0}, -45, 0},
        {"a bulge the other way, which makes an arc of nothing", {0, 0, 0}, {2000, 0, 0}, 30, 100},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        CGjNetLine* line = ConstructNetLineObject(row.from, row.to, row.bulge != 0, row.bulge);
        line->OnCalcParameters();
        CTvoRider rider;
        rider.m_pNetLine = line;
        CFRegion outline;
        outline.Add(CFShoot(1, 2, 3));
        rider.GetDiTuRegion(row.width, outline);
        ASSERT_EQ(outline.GetSize(), 4);
        const CFPoint a = line->GetStartPoint(), b = line->GetEndPoint();
        const double half = static_cast<double>(row.width) / 2;
        if (row.bulge == 0) {
            const double l = std::hypot(b.x - a.x, b.y - a.y), nx = -(b.y - a.y) / l * half,
                         ny = (b.x - a.x) / l * half;
            const double corners[4][2] = {
                {a.x - nx, a.y - ny}, {b.x - nx, b.y - ny}, {b.x + nx, b.y + ny}, {a.x + nx, a.y + ny}};
            for (int i = 0; i < 4; ++i) {
                EXPECT_NEAR(outline[i].x, corners[i][0], 0.01);
                EXPECT_NEAR(outline[i].y, corners[i][1], 0.01);
                EXPECT_EQ(outline[i].c, 0);
            }
        } else {
            const double c = row.bulge * 3.14159265 / 180, want[] = {0, c, 0, -c};
            const double radii[] = {line->m_fR - half, line->m_fR + half, line->m_fR + half,
                                    line->m_fR - half};
            const float angles[] = {line->m_fStartDir, line->m_fStartDir, line->m_fEndDir, line->m_fEndDir};
            const double near =
                std::max(0.01, line->m_fR * 1e-6);  // of a bulge that is none the centre lies far away
            for (int i = 0; i < 4; ++i) {
                EXPECT_NEAR(outline[i].x,
                            line->m_fCenterX + radii[i] * std::cos(static_cast<double>(angles[i])), near);
                EXPECT_NEAR(outline[i].y,
                            line->m_fCenterY + radii[i] * std::sin(static_cast<double>(angles[i])), near);
                EXPECT_NEAR(outline[i].c, want[i], 1e-6);
            }
        }
        DeleteNetLineObject(line);
    }
    CTvoRider lone;
    CFRegion nothing;
    nothing.Add(CFShoot(1, 2, 3));
    lone.GetDiTuRegion(100, nothing);
    EXPECT_TRUE(nothing.IsEmpty());
    EXPECT_EQ(lone.GetCentroid().GetX(), 0);
    EXPECT_EQ(lone.GetSortPoint().GetY(), 0);
}

namespace {

using Pieces = std::set<std::array<int, 3>>;  // level or upright, x, y

/// How much of the lattice's unit pieces riders of each kind cover: the axis-parallel lines of these rounds
/// lie on it.
std::map<std::pair<float, std::uint32_t>, Pieces> Covered(CTvoHostDataBase& db) {
    std::map<std::pair<float, std::uint32_t>, Pieces> covered;
    for (const CTvoRider* rider : RidersOf(db)) {
        const CGjNetLine& l = *rider->m_pNetLine;
        if (l.m_nArc) continue;
        const int x1 = static_cast<int>(std::lround(l.m_fStartX / 1000)),
                  x2 = static_cast<int>(std::lround(l.m_fEndX / 1000));
        const int y1 = static_cast<int>(std::lround(l.m_fStartY / 1000)),
                  y2 = static_cast<int>(std::lround(l.m_fEndY / 1000));
        auto& pieces = covered[{rider->m_fWidth, rider->m_dwTag}];
        for (int x = std::min(x1, x2); x < std::max(x1, x2); ++x) pieces.insert({0, x, y1});
        for (int y = std::min(y1, y2); y < std::max(y1, y2); ++y) pieces.insert({1, x1, y});
    }
    std::erase_if(covered, [](const auto& kind) { return kind.second.empty(); });
    return covered;
}

double ArcLength(CTvoHostDataBase& db) {
    double length = 0;
    for (const CTvoRider* rider : RidersOf(db))
        if (rider->m_pNetLine->m_nArc) length += rider->m_pNetLine->m_fLength;
    return length;
}

/// Every rider stands on a line of the store, and no line has two of a kind.
std::string RidersFault(CTvoHostDataBase& db) {
    std::set<std::pair<CGjNetLine*, std::pair<float, std::uint32_t>>> seen;
    for (CTvoRider* rider : RidersOf(db)) {
        CGjNetLine* line = rider->GetNetLine();
        if (db.FindGouJian(rider->m_dwLineID) != line || !line) return "a rider without its line";
        if (!seen.insert({line, {rider->m_fWidth, rider->m_dwTag}}).second)
            return "two riders of a kind on a line";
        CArray<CGouJianEx*> here;
        db.QueryGouJianOnNetLine(line, here);
        if (std::find(here.begin(), here.end(), rider) == here.end())
            return "a rider that its line does not know";
    }
    return "";
}

std::string TextOf(CTvoHostDataBase& db) {
    std::ostringstream text;
    for (const CTvoRider* r : RidersOf(db))
        text << r->m_dwGouJianID << " on " << r->m_dwLineID << " wide " << r->m_fWidth << '\n';
    for (const CGjNetLine* l : LinesOf(db)) text << l->m_dwGouJianID << '\n';
    for (const CGouJianEx* node : FamilyOf<CGouJianEx>(db, GJLX_NET_NODE)) text << node->m_dwGouJianID << ' ';
    return text.str();
}

}  // namespace

TEST(Riders, SurviveWhateverTheNetGoesThrough) {
    std::mt19937 rng(253);
    int merges = 0, breaks = 0;
    for (int round = 0; round < 400; ++round) {
        CTvoHostDataBase db;
        std::vector<std::string> states{TextOf(db)};
        for (int step = 0; step < 25; ++step) {
            SCOPED_TRACE("round " + std::to_string(round) + ", step " + std::to_string(step));
            db.Start();
            const auto before = Covered(db);
            const unsigned long linesMade = db.GetContain().HighestXuHao(GJLX_NET_LINE);
            const auto lines = LinesOf(db);
            const auto number = [&](unsigned n) { return static_cast<int>(rng() % n); };
            const double arcs = ArcLength(db);
            constexpr double kSnapped = 120;  // what ends may be moved by
            switch (lines.empty() ? 0 : number(6)) {
                case 0: {
                    const float start = static_cast<float>(30 * number(12)),
                                sweep = static_cast<float>(30 + 30 * number(6));
                    db.AddArc(CFPoint(4000, 4000, 0), 2500, start, start + sweep);
                    ASSERT_EQ(Covered(db), before);
                    ASSERT_NEAR(ArcLength(db), arcs, kSnapped);
                    break;
                }
                case 1:
                case 2: {  // a line crosses, touches or overlaps others
                    const int x = number(8), y = number(8), length = 1 + number(6);
                    const bool level = number(2) != 0;
                    const CFPoint from(static_cast<float>(x * 1000), static_cast<float>(y * 1000), 0);
                    const CFPoint to = from + CFPoint(static_cast<float>(level ? length * 1000 : 0),
                                                      static_cast<float>(level ? 0 : length * 1000), 0);
                    db.AddNetLine(from, to, 0, 0);
                    ASSERT_EQ(Covered(db), before);
                    ASSERT_NEAR(ArcLength(db), arcs, kSnapped);
                    breaks += LinesOf(db).size() > lines.size() + 1;
                    break;
                }
                case 3: {
                    CGjNetLine* line = lines[rng() % lines.size()];
                    CTvoRider* rider = db.AddRider(line, number(2) ? 200.0f : 300.0f,
                                                   static_cast<std::uint32_t>(number(2)), 0);
                    ASSERT_EQ(rider->GetNetLine(), line);
                    break;
                }
                default: {  // what it had of riders is gone, and lines beside it may merge
                    CGjNetLine* line = lines[rng() % lines.size()];
                    CArray<CGouJianEx*> here;
                    db.QueryGouJianOnNetLine(line, here);
                    if (number(2)) {
                        db.DeleteNetLine(line);
                        merges += LinesOf(db).size() + 1 < lines.size();
                    } else {
                        db.DeleteGouJian(line);  // by the way that nobody looks after
                    }
                    const double gone = static_cast<double>(line->m_fLength) * here.GetSize();
                    ASSERT_NEAR(ArcLength(db), arcs - (line->m_nArc ? gone : 0), kSnapped);
                    double lost = 0;
                    const auto now = Covered(db);
                    for (const auto& [kind, pieces] : before) lost += static_cast<double>(pieces.size());
                    for (const auto& [kind, pieces] : now) {
                        lost -= static_cast<double>(pieces.size());
                        ASSERT_TRUE(std::includes(before.at(kind).begin(), before.at(kind).end(),
                                                  pieces.begin(), pieces.end()));
                    }
                    ASSERT_LT(lost, line->m_nArc || here.IsEmpty() ? 1 : gone / 1000 + here.GetSize());
                    ASSERT_GT(lost, line->m_nArc || here.IsEmpty() ? -1 : gone / 1000 - here.GetSize());
                }
            }
            ASSERT_EQ(RidersFault(db), "");
            // A new line may go at once on one that stands: that leaves a record, though nothing has changed.
            const bool drawn = db.GetContain().HighestXuHao(GJLX_NET_LINE) != linesMade;
            if (const std::string text = TextOf(db); drawn || text != states.back()) states.push_back(text);
        }
        for (std::size_t i = states.size() - 1; i-- > 0;) {
            db.Undo(nullptr, nullptr);
            ASSERT_EQ(TextOf(db), states[i]) << "round " << round << ", back to step " << i;
            ASSERT_EQ(RidersFault(db), "") << "round " << round;
        }
        while (db.CanRedo()) db.Redo(nullptr, nullptr);
        ASSERT_EQ(TextOf(db), states.back()) << "round " << round;
        ASSERT_EQ(RidersFault(db), "") << "round " << round;
    }
    EXPECT_GT(merges, 20);
    EXPECT_GT(breaks, 100);
}

TEST(Riders, MergeWhateverIsHidden) {
    CTvoHostDataBase db;
    db.AddNetLine(CFPoint(0, 0, 0), CFPoint(6000, 0, 0), 0, 0);
    db.AddRider(LinesOf(db)[0], 200, 5, GJ_STATUS_NORMAL);
    db.AddNetLine(CFPoint(3000, 0, 0), CFPoint(3000, 4000, 0), 0, 0);
    ASSERT_EQ(RidersOf(db).size(), 2u);
    RidersOf(db)[0]->set_m_byteStatus(GJ_STATUS_HIDDEN);
    for (CGjNetLine* line : LinesOf(db))
        if (line->GetEndPoint().y > 1) db.DeleteNetLine(line);
    ASSERT_EQ(LinesOf(db).size(), 1u);
    ASSERT_EQ(RidersOf(db).size(), 1u);
    CTvoRider* const rider = RidersOf(db)[0];
    EXPECT_TRUE(rider->IsVisable());
    rider->set_m_byteStatus(GJ_STATUS_HIDDEN);
    EXPECT_EQ(db.AddRider(LinesOf(db)[0], 200, 5, GJ_STATUS_NORMAL), rider);
    EXPECT_TRUE(rider->IsVisable());
}

TEST_F(PartsFile, ComeBackToTheSameBytes) {
    CTvoHostDataBase db, opened;
    DrawEverything(db);
    const std::string bytes = Saved(db);
    const BuiltModel built = OpenModel(Write(bytes), opened, TvoModelHost());
    EXPECT_EQ(built.others, 10u);
    EXPECT_EQ(built.Remarks(), "");
    EXPECT_EQ(Saved(opened), bytes);
    EXPECT_TRUE(opened.m_bGridShown);
    for (int type = 1; type < kTypeCount; ++type) {
        const auto before = FamilyOf<CGouJianEx>(db, static_cast<unsigned char>(type));
        const auto after = FamilyOf<CGouJianEx>(opened, static_cast<unsigned char>(type));
        ASSERT_EQ(before.size(), after.size()) << type;
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(before[i]->GetDrawGraph()->m_bFixed, after[i]->GetDrawGraph()->m_bFixed) << type;
            EXPECT_EQ(before[i]->GetDrawGraph()->m_aEntity.GetSize(),
                      after[i]->GetDrawGraph()->m_aEntity.GetSize())
                << type;
            EXPECT_EQ(before[i]->get_m_byteStatus(), after[i]->get_m_byteStatus()) << type;
            EXPECT_EQ(before[i]->GetFrect().m_fMaxX, after[i]->GetFrect().m_fMaxX) << type;
        }
    }
    // What a file doesn't have does not stay from the model before.
    OpenModel(std::string(TVO_TEST_DATA) + "/model_before_parts.tvo", opened, TvoModelHost());
    EXPECT_STREQ(opened.GetBackgrnd().m_strKuaX, "6*40");
    EXPECT_FALSE(opened.m_bGridShown);
    EXPECT_EQ(opened.GetGouJianCount(GJLX_TEXT), 0);
}

TEST_F(PartsFile, FilesFromBeforeOpenAndKeepTheirBytes) {
    const std::string path = std::string(TVO_TEST_DATA) + "/model_before_parts.tvo";
    CTvoHostDataBase db;
    const BuiltModel built = OpenModel(path, db, TvoModelHost());
    EXPECT_EQ(built.lines, 9u);
    EXPECT_EQ(built.others, 1u);
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    EXPECT_EQ(Saved(db), bytes.str());
}

TEST_F(PartsFile, DamageCostsNoMoreThanItsSection) {
    CTvoHostDataBase db;
    DrawEverything(db);
    const std::string whole = Saved(db);
    const auto offset = [&](std::uint32_t type) {
        for (const ModelSection& section : TakeApart(whole).sections)
            if (section.head.kind == SectionKind::kHost && section.head.type == type)
                return static_cast<std::size_t>(section.offset);
        return std::size_t{0};
    };
    struct {
        const char* name;
        std::uint32_t type;
        std::size_t at;  // behind the record's head
        std::uint32_t word;
        const char* told;
    } const rows[] = {
        {"a text at no place", GJLX_TEXT, 0, 0x7FC00000, "texts section"},
        {"letters without end", GJLX_TEXT, 20, 0xFFFFFFFF, "texts section"},
        {"letters that are none", GJLX_TEXT, 24, 0xFFFEFDFC, "texts section"},
        {"a primitive of no kind", GJLX_ARC, 8, 99, "arcs section"},
        {"a raster mode that is none", GJLX_LINE, 28, 17, "plain lines section"},
        {"more primitives than bytes", GJLX_CIRCLE, 4, 5, "circles section"},
        {"more corners than bytes", GJLX_POLYGON_RGN, 32, 0x7FFFFFFF, "polygons section"},
        {"a rider of no width", kTvoRiderType, 12, 0, "host components section"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::string bytes = whole;
        SetWord(bytes, offset(row.type) + kSectionHeadSize + kHostRecordSize + row.at, row.word);
        ModelFile damaged = TakeApart(bytes);
        ASSERT_EQ(damaged.faults.size(), 1u);
        EXPECT_EQ(damaged.faults[0].where, row.told);
        Reseal(bytes);  // and with true checksums
        damaged = TakeApart(bytes);
        ModelPlan plan = PlanModel(damaged, TvoModelHost());
        ASSERT_EQ(plan.faults.size(), 1u);
        EXPECT_EQ(plan.faults[0].where, row.told);
        CTvoHostDataBase rest;
        EXPECT_EQ(BuildModel(plan, damaged.header, rest, TvoModelHost()).others, 9u);
    }
    // A rider whose line is missing is named and left out; the rest stands.
    std::string bytes = whole;
    SetWord(bytes, offset(kTvoRiderType) + kSectionHeadSize + kHostRecordSize + 8, 33554999);
    Reseal(bytes);
    const BuiltModel built = OpenModel(Write(bytes), db, TvoModelHost());
    EXPECT_EQ(built.others, 9u);
    EXPECT_NE(built.Remarks().find("rider 4244635649 on line 33554999"), std::string::npos)
        << built.Remarks();
    // Cut and scratched anywhere: refused or opened, and never worse.
    std::mt19937 rng(4);
    for (int round = 0; round < 400; ++round) {
        std::string text = whole.substr(0, rng() % 2 ? whole.size() : rng() % whole.size());
        for (auto i = rng() % 3; i > 0 && !text.empty(); --i)
            text[kModelHeaderSize % text.size() + rng() % (text.size() - kModelHeaderSize % text.size())] =
                static_cast<char>(rng());
        if (rng() % 2 && text.size() == whole.size()) Reseal(text);
        const ModelFile file = TakeApart(text);
        ModelPlan plan = PlanModel(file, TvoModelHost());
        CTvoHostDataBase rest;
        BuildModel(plan, file.header, rest, TvoModelHost());
        ASSERT_EQ(RidersFault(rest), "") << "round " << round;
    }
}
