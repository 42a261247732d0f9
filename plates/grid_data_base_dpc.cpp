// CGridDataBase: plates follow a batch of edits.
#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "geometry/region_measures.h"
#include "model/by_identity.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"
#include "plates/wei_ban.h"
#include "shell/tvo_frame_base.h"

namespace {

using ComponentMap = CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>;

constexpr float kSameCentroid = 2.0f;  // model units
constexpr float kSameArea = 0.01f;     // part of the smaller

std::vector<std::pair<unsigned long, CGouJianEx*>> ByKey(const ComponentMap& map) {
    std::vector<std::pair<unsigned long, CGouJianEx*>> entries;
    map.ForEach([&](unsigned long id, CGouJianEx* obj) { entries.emplace_back(id, obj); });
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    return entries;
}

CArray<CMianGouJian*> PlatesOf(const ComponentMap& map) {
    CArray<CMianGouJian*> plates;
    for (CGouJianEx* obj : ByIdentity(map)) plates.Add(static_cast<CMianGouJian*>(obj));
    return plates;
}

/// A plate's border as it was traced. Taking over the figures of the plate before must not bring that one's border
/// along: its lines may be gone (a T on one of its sides is enough).
class TracedBorder {
public:
    explicit TracedBorder(CMianGouJian& plate) : m_plate(plate), m_shapes(plate.m_nXingZhuangBian) { Exchange(); }
    TracedBorder(const TracedBorder&) = delete;
    TracedBorder& operator=(const TracedBorder&) = delete;
    ~TracedBorder() {
        for (CGjNetLine* line : m_plate.m_arrXingZhuangLine) delete line;
        m_plate.m_nXingZhuangBian = m_shapes;
        Exchange();
    }

private:
    void Exchange() {
        m_plate.m_arrXingZhuangBian.Swap(m_sides);
        m_plate.m_arrBoundery.Swap(m_lines);
        m_plate.m_arrBounderyDir.Swap(m_directions);
        m_plate.m_arrVertex.Swap(m_vertices);
        m_plate.m_arrXingZhuangLine.Swap(m_shapeLines);
        m_plate.m_arrXingZhuangDir.Swap(m_shapeDirections);
    }

    CMianGouJian& m_plate;
    int m_shapes;
    CArray<CGjXingZhuangBian> m_sides;
    CArray<CGjNetLine*> m_lines, m_shapeLines;
    CArray<int> m_directions, m_shapeDirections;
    CArray<CGjNetNode*> m_vertices;
};

/// Which sides of lines the standing plates have on their borders.
class StandingSides {
public:
    /// An anticlockwise plate has a side of the new one: a line walked in the same direction.
    bool Shares(const CMianGouJian& standing, const CMianGouJian& fresh) {
        const auto [at, first] = m_sides.try_emplace(&standing);
        if (first && IsNiShiZhen(standing.m_region))
            for (int i = 0; i < standing.m_arrBoundery.GetSize(); ++i) at->second.insert(SideOf(standing, i));
        for (int i = 0; i < fresh.m_arrBoundery.GetSize() && !at->second.empty(); ++i)
            if (at->second.contains(SideOf(fresh, i))) return true;
        return false;
    }

private:
    using Side = std::uintptr_t;  // only ever compared
    static Side SideOf(const CMianGouJian& plate, int i) {
        return reinterpret_cast<Side>(plate.m_arrBoundery[i]) | static_cast<Side>(plate.m_arrBounderyDir[i] & 1);
    }
    std::unordered_map<const CMianGouJian*, std::unordered_set<Side>> m_sides;
};

/// The plates that were taken away, by place.
class OldPlates {
public:
    struct Old {
        CMianGouJian* plate;
        CGouJianEx* dependent;
        bool passedOn;  // its dependent has gone over to a new plate
    };

    void Add(CMianGouJian* plate, CGouJianEx* dependent) {
        // A centroid that is no number is nobody's neighbour.
        if (!std::isnan(plate->m_fCenterX)) m_byX.push_back(m_old.size());
        m_old.push_back({plate, dependent, false});
    }
    void Sort() {
        std::sort(m_byX.begin(), m_byX.end(), [&](std::size_t a, std::size_t b) { return X(a) != X(b) ? X(a) < X(b) : a < b; });
    }
    /// Those whose centroid lies about a plate's, in order of entry.
    std::vector<std::size_t> Near(const CMianGouJian& plate) const {
        const float x = plate.m_fCenterX, y = plate.m_fCenterY, reach = kSameCentroid + std::fabs(x) * 1e-6f;
        std::vector<std::size_t> near;
        auto at = std::lower_bound(m_byX.begin(), m_byX.end(), x - reach, [&](std::size_t i, float v) { return X(i) < v; });
        for (; at != m_byX.end() && X(*at) <= x + reach; ++at)
            if (std::fabs(m_old[*at].plate->m_fCenterY - y) <= kSameCentroid + std::fabs(y) * 1e-6f) near.push_back(*at);
        std::sort(near.begin(), near.end());
        return near;
    }
    std::vector<Old>& All() { return m_old; }

private:
    float X(std::size_t i) const { return m_old[i].plate->m_fCenterX; }
    std::vector<Old> m_old;
    std::vector<std::size_t> m_byX;
};

}  // namespace

void CGridDataBase::PrepareDPC() {
    m_mapBanBianInsert.RemoveAll();
    m_mapBanBianRemove.RemoveAll();
}

void CGridDataBase::CompleteDPC() {
    const unsigned char main = QueryMainGouJianType();
    CWeiBan work, probe;
    work.SetData(this, g_pFrame);
    probe.SetData(this, g_pFrame);
    probe.PrepareData();

    // Which plates are touched. None is taken away meanwhile: the first deletion may drop an old part of the log, and
    // free lines that the two maps name.
    ComponentMap touched;
    std::unordered_set<CGjNetLine*> passed;
    for (const auto& [id, obj] : ByKey(m_mapBanBianInsert)) {
        if (FindGouJian(id) != obj || probe.IsCi(obj)) continue;
        auto* line = static_cast<CGjNetLine*>(obj);
        work.AddElement(line);
        GatherStridePlates(line, probe, passed, touched);
    }
    CArray<CMianGouJian*> bordered;
    for (const auto& [id, line] : ByKey(m_mapBanBianRemove)) GetBounderyPlate(static_cast<CGjNetLine*>(line), bordered);
    for (CMianGouJian* plate : bordered) touched.SetAt(plate->get_m_dwGouJianID(), plate);
    for (const auto& [id, plate] : ByKey(m_mapStalePlate))
        if (FindGouJian(id) == plate) touched.SetAt(id, plate);
    m_mapStalePlate.RemoveAll();

    OldPlates old;
    for (CMianGouJian* plate : PlatesOf(touched)) {
        if (plate->get_Gjlx() != main) continue;
        for (CGjNetLine* line : plate->m_arrBoundery) work.AddElement(line);
        CGouJianEx* dependent = QueryGouJianDependentOnMianGouJian(plate);
        DeleteGouJian(plate);
        old.Add(plate, dependent);
    }
    old.Sort();

    // The walks start from touched lines alone, but pass over the whole net; so they also come round plates beyond
    // a touched line that stand as they were.
    work.DoWeiBan();
    StandingSides sides;
    CArray<CMianGouJian*> made;  // added at the end: one must not be taken for a repetition of another
    for (CMianGouJian* fresh : work.m_arrBan) {
        CArray<CMianGouJian*> around;
        GetBanAround(fresh, around);
        const auto repeats = [&](CMianGouJian* plate) {
            return fresh->get_Gjlx() == main && plate->get_Gjlx() == main && IsSamePlate(fresh, plate, kSameCentroid, kSameArea);
        };
        // A side belongs to one plate. A walk that closed early, at a node that holds two pieces of net together, would
        // lay its plate over one that was not touched.
        const auto overlays = [&](CMianGouJian* plate) {
            return m_bWeiBanWholeNet && fresh->get_Gjlx() == main && plate->get_Gjlx() == main && sides.Shares(*plate, *fresh);
        };
        if (std::any_of(around.begin(), around.end(), repeats) || std::any_of(around.begin(), around.end(), overlays)) {
            delete fresh;
            continue;
        }
        {
            const TracedBorder border(*fresh);
            for (const std::size_t i : old.Near(*fresh)) {
                OldPlates::Old& before = old.All()[i];
                if (before.passedOn || !repeats(before.plate)) continue;
                fresh->CopyData(before.plate);
                if (!before.dependent) continue;  // its turn may come again: meant
                CreateGouJianDependentOnMianGouJian(before.plate, before.dependent, fresh);
                DeleteGouJianDependentOnMianGouJian(before.plate);
                before.passedOn = true;
            }
        }
        made.Add(fresh);
    }
    for (CMianGouJian* fresh : made) AddMianGouJian(fresh);
    for (CMianGouJian* outer : work.m_arrOuterBan) AddMianGouJian(outer);
    for (const OldPlates::Old& left : old.All())
        if (!left.passedOn) DeleteGouJianDependentOnMianGouJian(left.plate);
    m_mapBanBianInsert.RemoveAll();
    m_mapBanBianRemove.RemoveAll();
}

// --- which plates a line touches ----------------------------------------------------------------------------

int CGridDataBase::GetBanAround(CMianGouJian* plate, CArray<CMianGouJian*>& out) {
    ComponentMap found;
    for (const CGjXingZhuangBian& shape : plate->m_arrXingZhuangBian)
        for (const CJainTuBanBian& side : shape.m_arrBian) {
            if (!GouJianExists(side.m_pNetLine)) continue;
            CArray<CMianGouJian*> bordered;
            GetBounderyPlate(side.m_pNetLine, bordered);
            for (CMianGouJian* other : bordered)
                if (other != plate) found.SetAt(other->get_m_dwGouJianID(), other);
        }
    for (CMianGouJian* other : PlatesOf(found)) out.Add(other);
    return out.GetSize();
}

int CGridDataBase::GetStridePlate(CGjNetLine* line, ComponentMap& out) {
    CWeiBan probe;
    probe.SetData(this, nullptr);
    probe.PrepareData();
    std::unordered_set<CGjNetLine*> passed;
    GatherStridePlates(line, probe, passed, out);
    return out.GetCount();
}

// A chord between two stubs cuts the plate that they stand in, and touches no line that borders it: so the search goes
// on through lines that border nothing and have become part of something closed.
void CGridDataBase::GatherStridePlates(CGjNetLine* line, CWeiBan& probe, std::unordered_set<CGjNetLine*>& passed, ComponentMap& out) {
    if (m_mapPlateWay.IsEmpty()) return;  // no plate can be found
    std::vector<CGjNetLine*> due;
    const auto pass = [&](CGjNetLine* l) {
        if (passed.insert(l).second) due.push_back(l);
    };
    pass(line);
    while (!due.empty()) {
        CGjNetLine* at = due.back();
        due.pop_back();
        CArray<CGouJianEx*> meeting;
        GetConnectedNetLine(at->m_pStartNode, meeting);
        GetConnectedNetLine(at->m_pEndNode, meeting);
        CArray<CMianGouJian*> bordered;
        for (CGouJianEx* obj : meeting) {
            auto* met = static_cast<CGjNetLine*>(obj);
            if (m_mapPlateWay.Contains(met))
                GetBounderyPlate(met, bordered);
            else if (!probe.IsCi(met))
                pass(met);
        }
        ComponentMap near;
        for (CMianGouJian* plate : bordered) near.SetAt(plate->get_m_dwGouJianID(), plate);
        for (CMianGouJian* plate : PlatesOf(near))
            if (IsStridden(plate, at)) out.SetAt(plate->get_m_dwGouJianID(), plate);
    }
}

bool CGridDataBase::IsStridden(CMianGouJian* plate, CGjNetLine* line) {
    if (plate->HasThisBorder(line)) return false;
    if (plate->StrideNetNode(line)) return true;
    return m_bWeiBanWholeNet == 1 && plate->m_region.Intersect(line->GetShape(), nullptr) != -1;
}
