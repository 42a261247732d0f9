#include "model/grid_index_service_object.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

#include "model/draw_graph.h"
#include "model/goujian.h"
#include "model/goujian_grid.h"
#include "model/profile.h"
#include "platform/saturate.h"

namespace {

constexpr float kCell = CGridIndexServiceObject::kCellSize;

CSpatialHash::Box BoxOf(const CFRect& r) {
    return {r.m_fMinX, r.m_fMinY, r.m_fMaxX, r.m_fMaxY};
}

// Truncation towards zero, as all quotients of the grid are formed.
int Quotient(float v) { return SaturatedInt(v / kCell); }

int Shifted(int base, long long by) {
    return static_cast<int>(std::clamp<long long>(base + by, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// A limit of a rectangle's cells: truncated to an integer first, then divided; negative ones become 0.
int CellLimit(float v, float low) {
    return std::max(0, SaturatedInt(static_cast<float>(SaturatedInt(v - low)) / kCell));
}

/// Components lie far apart in memory, which is asked for so many of them in advance.
constexpr std::size_t kAhead = 16;

/// A component with the key that it is sorted by beside it.
struct Keyed {
    std::uint32_t id;
    CGouJianEx* component;
};

/// By the four bytes of the identity, the lowest first; each round keeps the order of the one before.
void SortByBytes(std::vector<Keyed>& v) {
    std::vector<Keyed> sorted(v.size());
    for (int shift = 0; shift < 32; shift += 8) {
        std::array<std::size_t, 257> from{};
        const auto byte = [shift](const Keyed& k) { return k.id >> shift & 0xFF; };
        for (const Keyed& k : v) ++from[byte(k) + 1];
        std::partial_sum(from.begin(), from.end(), from.begin());
        for (const Keyed& k : v) sorted[from[byte(k)]++] = k;
        v.swap(sorted);
    }
}

void SortByIdentity(std::vector<CGouJianEx*>& v, std::size_t first = 0) {
    constexpr std::size_t kMany = 2000;
    if (v.size() - first > kMany) {
        std::vector<Keyed> keyed;
        keyed.reserve(v.size() - first);
        for (std::size_t i = first; i < v.size(); ++i) keyed.push_back({v[i]->get_m_dwGouJianID(), v[i]});
        SortByBytes(keyed);
        for (const Keyed& k : keyed) v[first++] = k.component;
        return;
    }
    std::sort(v.begin() + static_cast<std::ptrdiff_t>(first), v.end(), [](const CGouJianEx* a, const CGouJianEx* b) {
        return a->get_m_dwGouJianID() < b->get_m_dwGouJianID();
    });
}

}  // namespace

CGridIndexServiceObject::CGridIndexServiceObject() { Resize(CFRect()); }
CGridIndexServiceObject::~CGridIndexServiceObject() {
    for (CSpatialHash* hash : {&m_cNodes, &m_cOthers})
        hash->ForEach([](std::uint32_t, const CSpatialHash::Record& r) { r.component->m_cMarks.m_nIndexSlot = CGouJianMarks::kNone; });
    ForgetGrids();
}

CSpatialHash& CGridIndexServiceObject::HashOf(CGouJianEx* component) {
    return component->QueryBasicType() == kBasicNode ? m_cNodes : m_cOthers;
}

void CGridIndexServiceObject::AddToPool(CGouJianEx* component) {
    m_mapPool.SetAt(component->get_m_dwGouJianID(), component);
}

bool CGridIndexServiceObject::IsPending(CGouJianEx* component) const {
    CGouJianEx* const* waiting = m_mapPool.Find(component->get_m_dwGouJianID());
    return waiting && *waiting == component;
}

void CGridIndexServiceObject::Remove(CGouJianEx* component) {
    if (!m_mapPool.IsEmpty() && IsPending(component)) m_mapPool.RemoveKey(component->get_m_dwGouJianID());
    std::uint32_t& slot = component->m_cMarks.m_nIndexSlot;
    if (slot == CGouJianMarks::kNone) return;
    ForgetGrids();
    HashOf(component).Remove(slot);
    slot = CGouJianMarks::kNone;
}

// A component that draws itself gets its display list here too: it serves hit tests. That of a node, whose
// extent doesn't need it, is filled when somebody asks for it.
CFRect CGridIndexServiceObject::ExtentForEntry(CGouJianEx* component) {
    if (!component->m_bGraphBuilt) {
        if (component->QueryBasicType() == kBasicNode && !component->m_pDrawGraph)
            component->m_cMarks.m_bGraphDue = 1;
        else
            component->DrawGraph(component->GetDrawGraph());
        component->m_bGraphBuilt = 1;
    }
    return component->GetFrect();
}

void CGridIndexServiceObject::AddNow(CGouJianEx* component) {
    ForgetGrids();
    const CFRect box = ExtentForEntry(component);
    if (BoxOf(box).IsFinite()) Resize(m_rcGrid.UnionFRect(box));
    Enter(component, box);
}

void CGridIndexServiceObject::WorkOffPool(void (*progress)(void*, int), void* context) {
    if (m_mapPool.IsEmpty()) return;
    ForgetGrids();
    const int n = m_mapPool.GetCount();
    std::vector<std::pair<CGouJianEx*, CFRect>> waiting;
    waiting.reserve(static_cast<std::size_t>(n));
    CFRect area = m_rcGrid;
    const auto tell = [&](int i) {
        if (progress) progress(context, static_cast<int>(static_cast<long long>(i) * 100 / n));
    };
    tell(0);
    m_mapPool.ForEach([&](unsigned long, CGouJianEx* component) {
        const CFRect box = ExtentForEntry(component);
        if (BoxOf(box).IsFinite()) area = area.UnionFRect(box);
        waiting.emplace_back(component, box);
        tell(static_cast<int>(waiting.size()));
    });
    Resize(area);
    tell(0);
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        Enter(waiting[i].first, waiting[i].second);
        tell(static_cast<int>(i) + 1);
    }
    m_mapPool.RemoveAll();
}

// Grows the grid over the wanted rectangle: a side that has to give way gets a margin of 2 cells, the others
// one more; a grid that covers it already stays as it is.
void CGridIndexServiceObject::Resize(const CFRect& wanted) {
    const CSpatialHash::Box now = BoxOf(m_rcGrid), want = BoxOf(wanted);
    if (want.x0 >= now.x0 && want.x1 <= now.x1 && want.y0 >= now.y0 && want.y1 <= now.y1) return;
    int c0 = Quotient(now.x0 - kCell), c1 = Quotient(now.x1 + kCell);
    int r0 = Quotient(now.y0 - kCell), r1 = Quotient(now.y1 + kCell);
    bool changed = false;
    const auto give = [&](bool beyond, int& limit, float value) {
        if (!beyond) return;
        limit = Quotient(value);
        changed = true;
    };
    give(want.x0 < now.x0, c0, want.x0 - 2 * kCell);
    give(want.x1 > now.x1, c1, want.x1 + 2 * kCell);
    give(want.y0 < now.y0, r0, want.y0 - 2 * kCell);
    give(want.y1 > now.y1, r1, want.y1 + 2 * kCell);
    if (!changed) return;
    m_rcGrid = CFRect(static_cast<float>(c0) * kCell, static_cast<float>(r0) * kCell, static_cast<float>(c1) * kCell,
                      static_cast<float>(r1) * kCell);
    m_nCols = Shifted(c1, -static_cast<long long>(c0));
    m_nRows = Shifted(r1, -static_cast<long long>(r0));
    m_nFirstCol = c0;
    m_nFirstRow = r0;
}

// Cells of a rectangle, relative to the grid, before cells that don't exist fall away. Two quirks are meant:
// a negative limit becomes 0, so that what lies left of or below the grid is looked up in its first column or
// row; and the largest row is compared with the number of columns, so that in a grid taller than wide a high
// rectangle reaches up to the last row. Both only ever offer more.
CSpatialHash::CellRange CGridIndexServiceObject::CellsOf(const CFRect& rect) const {
    const CSpatialHash::Box b = BoxOf(rect), grid = BoxOf(m_rcGrid);
    CSpatialHash::CellRange cells{CellLimit(b.x0, grid.x0), CellLimit(b.y0, grid.y0), CellLimit(b.x1, grid.x0),
                                  CellLimit(b.y1, grid.y0)};
    if (cells.c1 > m_nCols - 1) cells.c1 = m_nCols - 1;
    if (cells.r1 > m_nCols - 1) cells.r1 = m_nRows - 1;
    return cells;
}

void CGridIndexServiceObject::Enter(CGouJianEx* component, const CFRect& rect) {
    const CSpatialHash::Box box = BoxOf(rect);
    CSpatialHash::CellRange in{0, 0, -1, -1};  // absolute; empty
    if (box.IsFinite()) {
        // The box is widened first: a line that ends just short of a cell border must be found from the other
        // side, where its crossing partner lies.
        const float margin = 10.0f * static_cast<float>(g_cTvoProfile.m_nNetTolerance);
        m_fWidestMargin = std::max(m_fWidestMargin, margin);
        in = CellsOf(CFRect(box.x0 - margin, box.y0 - margin, box.x1 + margin, box.y1 + margin));
        // Rows that only the quirk adds would all fall away below.
        in.r1 = std::min({in.r1, m_nRows - 1, CellLimit(box.y1 + margin, BoxOf(m_rcGrid).y0) + 1});
        // Then a cell counts if it, widened by the margin, touches the box. The answer for a cell is that for
        // its column and for its row, and is monotonous in both: only the border ones can fall away.
        const auto keeps = [&](int absolute, float low, float high) {
            const float cell0 = static_cast<float>(absolute) * kCell - margin, cell1 = (static_cast<float>(absolute) + 1) * kCell + margin;
            return cell0 <= high && low <= cell1;
        };
        while (in.c0 <= in.c1 && !keeps(Shifted(m_nFirstCol, in.c0), box.x0, box.x1)) ++in.c0;
        while (in.c0 <= in.c1 && !keeps(Shifted(m_nFirstCol, in.c1), box.x0, box.x1)) --in.c1;
        while (in.r0 <= in.r1 && !keeps(Shifted(m_nFirstRow, in.r0), box.y0, box.y1)) ++in.r0;
        while (in.r0 <= in.r1 && !keeps(Shifted(m_nFirstRow, in.r1), box.y0, box.y1)) --in.r1;
        in = {Shifted(m_nFirstCol, in.c0), Shifted(m_nFirstRow, in.r0), Shifted(m_nFirstCol, in.c1), Shifted(m_nFirstRow, in.r1)};
    }
    std::uint32_t& slot = component->m_cMarks.m_nIndexSlot;
    if (slot != CGouJianMarks::kNone) HashOf(component).Remove(slot);
    slot = HashOf(component).Insert(component, box, in);
}

std::vector<CGouJianEx*> CGridIndexServiceObject::Query(const CFRect& rect) const {
    std::vector<CGouJianEx*> found;
    // What lies in the rectangle itself is offered in any case: cell numbers saturate and float borders of cells
    // are rounded, so that far out, or in a grid that a stray point has stretched, a cell may be missed. An
    // infinite limit means everything on that side.
    constexpr float kMost = std::numeric_limits<float>::max();
    CSpatialHash::Box asked = BoxOf(rect);
    for (float* limit : {&asked.x0, &asked.y0, &asked.x1, &asked.y1}) *limit = std::clamp(*limit, -kMost, kMost);
    CSpatialHash::CellRange want = CellsOf(rect);
    want.r1 = std::min(want.r1, m_nRows - 1);
    if (!asked.IsFinite() || want.c0 > want.c1 || want.r0 > want.r1) want = {0, 0, -1, -1};
    const CSpatialHash::CellRange cells{Shifted(m_nFirstCol, want.c0), Shifted(m_nFirstRow, want.r0),
                                        Shifted(m_nFirstCol, want.c1), Shifted(m_nFirstRow, want.r1)};
    // Whatever was entered in one of these cells has its box within the margin of them.
    const float reach = m_fWidestMargin + 1.0f;
    const auto edge = [](int absolute, float by) { return static_cast<float>(absolute) * kCell + by; };
    const bool none = want.c0 > want.c1;
    const float slack = 1e-6f;  // relative: float cell borders far out are rounded
    CSpatialHash::Box place{edge(cells.c0, -reach), edge(cells.r0, -reach), edge(cells.c1, kCell + reach), edge(cells.r1, kCell + reach)};
    place.x0 -= std::fabs(place.x0) * slack;
    place.y0 -= std::fabs(place.y0) * slack;
    place.x1 += std::fabs(place.x1) * slack;
    place.y1 += std::fabs(place.y1) * slack;
    if (none)
        place = asked;  // with a NaN it meets nothing but what is always offered
    else
        place = {std::min(place.x0, asked.x0), std::min(place.y0, asked.y0), std::max(place.x1, asked.x1), std::max(place.y1, asked.y1)};
    for (const CSpatialHash* hash : {&m_cNodes, &m_cOthers})
        hash->ForEachIn(place, [&](std::uint32_t slot, const CSpatialHash::Record& r) {
            if (!r.box.IsFinite() || hash->CellsOf(slot).Meets(cells) || r.box.Meets(asked)) found.push_back(r.component);
        });
    std::size_t kept = 0;
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (i + kAhead < found.size()) __builtin_prefetch(found[i + kAhead]);
        if (found[i]->IsPhysicalGouJian()) found[kept++] = found[i];
    }
    found.resize(kept);
    SortByIdentity(found);
    return found;
}

void CGridIndexServiceObject::OthersIn(const CFRect& rect, std::vector<CGouJianEx*>& out) const {
    const std::size_t first = out.size();
    m_cOthers.ForEachIn(BoxOf(rect), [&](std::uint32_t, const CSpatialHash::Record& r) { out.push_back(r.component); });
    SortByIdentity(out, first);
}

void CGridIndexServiceObject::OthersAlong(float ax, float ay, float bx, float by, float margin, std::vector<CGouJianEx*>& out) const {
    const std::size_t first = out.size();
    m_cOthers.ForEachAlong(ax, ay, bx, by, margin, [&](std::uint32_t, const CSpatialHash::Record& r) {
        __builtin_prefetch(r.component);  // in use at once, and far apart
        out.push_back(r.component);
    });
    SortByIdentity(out, first);
}

int CGridIndexServiceObject::GetSeq(const CFPoint& point) const {
    if (m_nCols <= 0 || m_nRows <= 0 || !m_rcGrid.FpInFRect(point, 0)) return -1;
    const CFPoint low = m_rcGrid.Nearest();
    const long long col = Quotient(point.GetX() - low.GetX()), row = Quotient(point.GetY() - low.GetY());
    return Shifted(0, row * m_nCols + col);
}

CGouJianGrid* CGridIndexServiceObject::GetGrid(int seq) {
    if (seq < 0 || m_nCols <= 0 || seq / m_nCols >= m_nRows) return nullptr;
    if (CGouJianGrid** made = m_mapGrid.Find(seq)) return *made;
    const int col = Shifted(m_nFirstCol, seq % m_nCols), row = Shifted(m_nFirstRow, seq / m_nCols);
    auto* grid = new CGouJianGrid;  // owned by m_mapGrid
    m_mapGrid.SetAt(seq, grid);
    grid->m_nSeq = seq;
    const float x = static_cast<float>(col) * kCell, y = static_cast<float>(row) * kCell;
    grid->m_rcCell = CFRect(x, y, x + kCell, y + kCell);
    for (CGouJianEx* component : Query(CFRect(x + 1, y + 1, x + kCell - 1, y + kCell - 1))) {
        const CSpatialHash::CellRange& cells = HashOf(component).CellsOf(component->m_cMarks.m_nIndexSlot);
        if (cells.Meets({col, row, col, row})) grid->m_mapGouJian.SetAt(component->get_m_dwGouJianID(), component);
    }
    return grid;
}

void CGridIndexServiceObject::ForgetGrids() {
    if (m_mapGrid.IsEmpty()) return;
    m_mapGrid.ForEach([](int, CGouJianGrid* grid) { delete grid; });
    m_mapGrid.RemoveAll();
}
