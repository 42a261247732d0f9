// What a query of the spatial index offers, against the grid of cells as it reads.
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>
#include <set>
#include <string>

#include "geometry/fregion.h"
#include "model/goujian.h"
#include "model/goujian_grid.h"
#include "model/grid_index_service_object.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/window.h"
#include "shell/frame_sink.h"
#include "shell/tvo_frame_base.h"

namespace {

using Ids = std::set<unsigned long>;

/// A component that is a box and nothing else.
class CBox : public CGouJianEx {
public:
    explicit CBox(const CFRect& box) : m_box(box) {}
    CFRect GetFrect() override { return m_box; }
    CFRect m_box;
};

CBox* Add(CTvoDataBase& db, const CFRect& box, int physical = 1) {
    auto* obj = new CBox(box);  // owned by the container from AddGouJian on
    obj->set_m_dwGouJianID(db.GetNextID(20));
    obj->m_bPhysical = physical;
    db.AddGouJian(obj);
    return obj;
}

Ids Ask(CTvoDataBase& db, CFRect rect) {
    CArray<CGouJianEx*> found;
    const int count = db.GetInterRect(rect, found);
    EXPECT_EQ(count, found.GetSize());
    Ids ids;
    unsigned long last = 0;
    for (CGouJianEx* obj : found) {
        EXPECT_LT(last, obj->get_m_dwGouJianID()) << "by ascending identity, each once";
        ids.insert(last = obj->get_m_dwGouJianID());
    }
    return ids;
}

/// The grid as it reads: every cell an object that is made with the area, and holds who was entered.
class LiteralGrid {
public:
    void Enter(unsigned long id, const CFRect& box) {
        m_boxes[id] = box;
        Resize(m_rc.UnionFRect(box));
        const float margin = 10.0f * static_cast<float>(g_cTvoProfile.m_nNetTolerance);
        // The box is widened before its cells are taken, so that a neighbour across a border is found.
        for (const int seq : CellsOf(CFRect(box.m_fMinX - margin, box.m_fMinY - margin, box.m_fMaxX + margin, box.m_fMaxY + margin))) {
            const CFRect& c = m_cells[seq].rect;
            const CFRegion wide(CFRect(c.m_fMinX - margin, c.m_fMinY - margin, c.m_fMaxX + margin, c.m_fMaxY + margin));
            if (wide.Intersect(CFRegion(box), 0)) m_cells[seq].ids.insert(id);
        }
    }
    void Remove(unsigned long id) {
        for (auto& [seq, cell] : m_cells) cell.ids.erase(id);
        m_boxes.erase(id);
    }
    Ids Offer(const CFRect& rect) {
        Ids ids;
        for (const int seq : CellsOf(rect)) ids.insert(m_cells[seq].ids.begin(), m_cells[seq].ids.end());
        return ids;
    }
    const std::map<unsigned long, CFRect>& Boxes() const { return m_boxes; }
    std::string Size() const { return std::to_string(m_cols) + " x " + std::to_string(m_rows); }

private:
    struct Cell {
        CFRect rect;
        Ids ids;
    };

    void Resize(const CFRect& wanted) {
        const auto q = [](float v) { return static_cast<int>(v / 8000.0f); };
        int c0 = q(m_rc.m_fMinX - 8000), c1 = q(m_rc.m_fMaxX + 8000), r0 = q(m_rc.m_fMinY - 8000), r1 = q(m_rc.m_fMaxY + 8000);
        bool changed = false;
        if (wanted.m_fMinX < m_rc.m_fMinX) c0 = q(wanted.m_fMinX - 16000), changed = true;
        if (wanted.m_fMaxX > m_rc.m_fMaxX) c1 = q(wanted.m_fMaxX + 16000), changed = true;
        if (wanted.m_fMinY < m_rc.m_fMinY) r0 = q(wanted.m_fMinY - 16000), changed = true;
        if (wanted.m_fMaxY > m_rc.m_fMaxY) r1 = q(wanted.m_fMaxY + 16000), changed = true;
        if (!changed) return;
        const auto f = [](int i) { return static_cast<float>(i) * 8000.0f; };
        m_rc = CFRect(f(c0), f(r0), f(c1), f(r1));
        m_cols = c1 - c0;
        m_rows = r1 - r0;
        std::map<int, Cell> old;
        for (auto& [seq, cell] : m_cells) {
            const float x = (cell.rect.m_fMinX + cell.rect.m_fMaxX) / 2, y = (cell.rect.m_fMinY + cell.rect.m_fMaxY) / 2;
            old[q(y - m_rc.m_fMinY) * m_cols + q(x - m_rc.m_fMinX)] = std::move(cell);
        }
        m_cells.clear();
        int seq = 0;
        for (int r = r0; r < r1; ++r)
            for (int c = c0; c < c1; ++c, ++seq) {
                if (const auto found = old.find(seq); found != old.end()) m_cells[seq] = std::move(found->second);
                m_cells[seq].rect = CFRect(f(c), f(r), f(c + 1), f(r + 1));
            }
    }
    std::vector<int> CellsOf(const CFRect& rect) const {
        const auto limit = [](float v, float low) {
            return std::max(0, static_cast<int>(static_cast<float>(static_cast<int>(v - low)) / 8000.0f));
        };
        const int c0 = limit(rect.m_fMinX, m_rc.m_fMinX), r0 = limit(rect.m_fMinY, m_rc.m_fMinY);
        int c1 = limit(rect.m_fMaxX, m_rc.m_fMinX), r1 = limit(rect.m_fMaxY, m_rc.m_fMinY);
        if (c1 > m_cols - 1) c1 = m_cols - 1;
        if (r1 > m_cols - 1) r1 = m_rows - 1;  // rows against columns: meant
        std::vector<int> cells;
        for (int r = r0; r <= r1; ++r)
            for (int c = c0; c <= c1; ++c)
                if (c < m_cols && r < m_rows) cells.push_back(r * m_cols + c);
        return cells;
    }

    CFRect m_rc;
    int m_cols = 0, m_rows = 0;
    std::map<int, Cell> m_cells;
    std::map<unsigned long, CFRect> m_boxes;
};

struct Prompter : CTvoFrameBase, CFrameSink {
    Prompter() { m_pSink = this; }
    void OnPromptText(const CString& text) override { m_prompt += text.Std() + "|"; }
    void OnProgress(int percent) override {
        m_least = std::min(m_least, percent);
        m_most = std::max(m_most, percent);
        if (percent == 0) ++m_zeros;
        m_cursor = GetCursor();
    }
    std::string m_prompt;
    int m_least = 999, m_most = -1, m_zeros = 0;
    HCURSOR m_cursor = 0;  // at the last call
};

}  // namespace

TEST(Index, OffersWhatTheGridOffers) {
    struct { const char* name; float width, height, part; float left, low; } const models[] = {
        {"wide", 300000, 20000, 20000, 0, 0},
        {"tall", 20000, 300000, 20000, 0, 0},
        {"square about the origin", 100000, 100000, 9000, -50000, -50000},
        {"negative", 60000, 90000, 6000, -200000, -150000},
        {"within few cells, on borders", 24000, 24000, 4000, -8000, -8000},
        {"large parts", 200000, 100000, 150000, -20000, 5000},
    };
    for (const auto& m : models)
        for (unsigned round = 0; round < 8; ++round) {
            std::mt19937 rng(round);
            // Corners in steps of 500, the margin, so that cell borders, margins and touches meet exactly.
            const auto real = [&](float from, float size) {
                const float v = from + size * static_cast<float>(rng() >> 8) / 16777216.0f;
                return rng() % 2 ? 500 * std::floor(v / 500) : v;
            };
            CTvoDataBase db;
            LiteralGrid grid;
            std::vector<CBox*> live;
            const auto box = [&] {
                const float x = real(m.left, m.width), y = real(m.low, m.height);
                return CFRect(x, y, x + real(0, m.part), y + real(0, m.part));
            };
            for (int step = 0; step < 60; ++step) {
                if (rng() % 4 == 0 && !live.empty()) {
                    const std::size_t i = rng() % live.size();
                    grid.Remove(live[i]->get_m_dwGouJianID());
                    db.DeleteGouJian(live[i]);
                    live.erase(live.begin() + static_cast<std::ptrdiff_t>(i));
                } else {
                    live.push_back(Add(db, box()));
                    grid.Enter(live.back()->get_m_dwGouJianID(), live.back()->m_box);
                }
                ASSERT_EQ(std::to_string(db.m_pIndex->m_nCols) + " x " + std::to_string(db.m_pIndex->m_nRows), grid.Size());
                for (int q = 0; q < 4; ++q) {
                    CFRect query = box();
                    if (q == 3) query = CFRect(query.m_fMinX - m.width, query.m_fMinY - m.height, query.m_fMaxX - m.width / 2, query.m_fMaxY + m.height);
                    const Ids got = Ask(db, query);
                    ASSERT_EQ(got, grid.Offer(query)) << m.name << ", round " << round << ", step " << step << ", query " << query.m_fMinX
                                                      << "," << query.m_fMinY << " " << query.m_fMaxX << "," << query.m_fMaxY;
                    for (const auto& [id, b] : grid.Boxes())
                        if (b.m_fMinX <= query.m_fMaxX && query.m_fMinX <= b.m_fMaxX && b.m_fMinY <= query.m_fMaxY && query.m_fMinY <= b.m_fMaxY) {
                            ASSERT_TRUE(got.count(id)) << m.name << ": a box that meets the query isn't offered";
                        }
                }
            }
        }
}

TEST(Index, PoolIsEnteredAtOneGo) {
    // With a frame components wait; the area is settled for all of them before the first is entered.
    Prompter frame;
    CTvoDataBase db;
    db.m_pFrame = &frame;
    CBox* a = Add(db, CFRect(0, 0, 100, 100));
    CBox* b = Add(db, CFRect(90000, 0, 90100, 100));
    CBox* gone = Add(db, CFRect(50, 50, 60, 60));
    EXPECT_EQ(db.m_pIndex->GetPoolCount(), 3);
    db.DeleteGouJian(gone);
    EXPECT_EQ(db.m_pIndex->GetPoolCount(), 2) << "deleted while waiting";
    EXPECT_EQ(Ask(db, CFRect(0, 0, 10, 10)), Ids{a->get_m_dwGouJianID()});
    EXPECT_EQ(db.m_pIndex->GetPoolCount(), 0);
    EXPECT_EQ(Ask(db, CFRect(90000, 0, 90010, 10)), Ids{b->get_m_dwGouJianID()});
    EXPECT_EQ(db.m_pIndex->m_nCols, 14);  // -1 to 13: one cell of margin on the left, two on the right
    db.m_pFrame = nullptr;
}

TEST(Index, EmptyModelOffersNothing) {
    CTvoDataBase db;
    EXPECT_EQ(Ask(db, CFRect(-1e6f, -1e6f, 1e6f, 1e6f)), Ids{});
    EXPECT_EQ(db.m_pIndex->m_nCols, 0) << "the grid stays as it is";
}

TEST(Index, FoundThroughTheMargin) {
    CTvoDataBase db;
    CBox* near = Add(db, CFRect(100, 100, 7500, 7500));     // 500 from the border: found from the next cell
    CBox* far = Add(db, CFRect(100, 100, 7499, 7499));
    EXPECT_EQ(Ask(db, CFRect(9000, 9000, 9100, 9100)), Ids{near->get_m_dwGouJianID()});
    EXPECT_EQ(Ask(db, CFRect(4000, 4000, 4100, 4100)), (Ids{near->get_m_dwGouJianID(), far->get_m_dwGouJianID()}));
}

TEST(Index, OnlyPhysicalComponents) {
    CTvoDataBase db;
    Add(db, CFRect(0, 0, 10, 10), 0);
    CBox* turned = Add(db, CFRect(0, 0, 10, 10));
    EXPECT_EQ(Ask(db, CFRect(0, 0, 10, 10)).size(), 1u);
    turned->m_bPhysical = 0;  // asked at each query
    EXPECT_EQ(Ask(db, CFRect(0, 0, 10, 10)).size(), 0u);
    turned->m_bPhysical = 1;
}

TEST(Index, AllContainersAppend) {
    CTvoDataBase db;
    CBox *a = Add(db, CFRect(0, 0, 10, 10)), *b = Add(db, CFRect(5, 5, 10, 10));
    CFRect rect(0, 0, 20, 20);
    CFRegion region(rect);
    CArray<CGouJianEx*> array;
    CList<CGouJianEx*> list;
    CMap<unsigned long, CGouJianEx*> map;
    array.Add(nullptr);
    list.AddTail(nullptr);
    EXPECT_EQ(db.GetInterRect(rect, array), 3);
    EXPECT_EQ(db.GetInterRect(rect, list), 3);
    EXPECT_EQ(db.GetInterRect(rect, map), 2);
    EXPECT_EQ(db.GetInterPoly(region, array), 5);
    EXPECT_EQ(db.GetInterPoly(region, list), 5);
    EXPECT_EQ(db.GetInterPoly(region, map), 2);
    EXPECT_EQ(array[1], a);
    EXPECT_EQ(list.GetTail(), b);
}

TEST(Index, StrayPointsCostNothing) {
    CTvoDataBase db;  // cells as objects would be 1.9e9
    CBox* a = Add(db, CFRect(0, 0, 10, 10));
    CBox* stray = Add(db, CFRect(4e8f, 3e8f, 4e8f, 3e8f));
    CBox* wide = Add(db, CFRect(-4e8f, 100, 4e8f, 200));
    EXPECT_EQ(Ask(db, CFRect(0, 0, 10, 10)), (Ids{a->get_m_dwGouJianID(), wide->get_m_dwGouJianID()}));
    EXPECT_EQ(Ask(db, CFRect(4e8f, 3e8f, 4e8f, 3e8f)), Ids{stray->get_m_dwGouJianID()});
    EXPECT_EQ(Ask(db, CFRect(-4e8f, -4e8f, 4e8f, 4e8f)).size(), 3u);
}

TEST(Index, BoundlessExtentsAreAlwaysOffered) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    CTvoDataBase db;
    CBox* a = Add(db, CFRect(0, 0, 10, 10));
    const int cols = db.m_pIndex->m_nCols;
    Ids odd;
    for (const CFRect& box : {CFRect(nan, 0, 10, 10), CFRect(0, nan, 0, 0), CFRect(-inf, 0, 10, 10), CFRect(0, 0, inf, inf)})
        odd.insert(Add(db, box)->get_m_dwGouJianID());
    EXPECT_EQ(db.m_pIndex->m_nCols, cols) << "never united with the area";
    for (const CFRect& query : {CFRect(5e6f, 5e6f, 6e6f, 6e6f), CFRect(nan, 0, 1, 1), CFRect(0, 0, inf, 1), CFRect(-1e30f, 0, -1e29f, 1)}) {
        Ids got = Ask(db, query);
        got.erase(a->get_m_dwGouJianID());
        EXPECT_EQ(got, odd) << query.m_fMinX;
    }
    for (const unsigned long id : odd) db.DeleteGouJian(db.FindGouJian(id));
    EXPECT_EQ(Ask(db, CFRect(0, 0, 1, 1)), Ids{a->get_m_dwGouJianID()});
}

TEST(Index, LargePoolShowsThatItWorks) {
    for (const int count : {1000, 1001}) {
        SCOPED_TRACE(count);
        const bool tells = count > 1000;
        Prompter frame;
        CTvoDataBase db;
        db.m_pFrame = &frame;
        for (int i = 0; i < count; ++i) Add(db, CFRect(static_cast<float>(i), 0, static_cast<float>(i), 1));
        SetCursor(7);
        EXPECT_EQ(Ask(db, CFRect(0, 0, 2000, 1)).size(), static_cast<std::size_t>(count));
        EXPECT_EQ(GetCursor(), 7) << "put back";
        EXPECT_EQ(frame.m_prompt, tells ? "正在计算,请稍等...|" : "");
        EXPECT_EQ(frame.m_zeros > 0, tells);
        if (tells) {
            EXPECT_EQ(frame.m_cursor, IDC_WAIT);
            EXPECT_EQ(frame.m_least, 0);
            EXPECT_EQ(frame.m_most, 100);
        }
        frame.m_prompt.clear();
        Ask(db, CFRect(0, 0, 1, 1));
        EXPECT_EQ(frame.m_prompt, "") << "worked off: nothing more to tell";
        db.DisplayDebugInfo();
        EXPECT_EQ(frame.m_prompt, "INDEX POOL COUNT = 0|");
        db.m_pFrame = nullptr;
    }
    SetCursor(0);
}

TEST(Index, WaitCursorOfOthersStays) {
    CTvoDataBase db;
    Add(db, CFRect(0, 0, 10, 10));
    SetCursor(IDC_WAIT);  // a host that is busy itself
    Ask(db, CFRect(0, 0, 10, 10));
    EXPECT_EQ(GetCursor(), IDC_WAIT);
    SetCursor(0);
}

TEST(Index, CellsAsObjects) {
    CTvoDataBase db;
    CBox* a = Add(db, CFRect(100, 100, 200, 200));
    CBox* b = Add(db, CFRect(8100, 100, 8200, 200));
    CGridIndexServiceObject& index = *db.m_pIndex;
    const int seq = index.GetSeq(CFPoint(4000, 4000, 0));
    ASSERT_GE(seq, 0);
    CGouJianGrid* cell = index.GetGrid(seq);
    ASSERT_TRUE(cell);
    EXPECT_EQ(cell->m_nSeq, seq);
    EXPECT_EQ(cell->GetCenter().x, 4000);
    CArray<CGouJianEx*> held;
    cell->RetrieveAll(&held);
    EXPECT_EQ(held.GetSize(), 2) << "the neighbour through its margin";
    CGouJianGrid copy(*cell);
    db.DeleteGouJian(b);
    held.RemoveAll();
    index.GetGrid(seq)->RetrieveAll(&held);
    ASSERT_EQ(held.GetSize(), 1);
    EXPECT_EQ(held[0], a);
    EXPECT_EQ(copy.m_mapGouJian.GetCount(), 2);
    EXPECT_EQ(index.GetSeq(CFPoint(1e7f, 0, 0)), -1);
    EXPECT_EQ(index.GetGrid(-1), nullptr);
    EXPECT_EQ(index.GetGrid(1000000), nullptr);
}
