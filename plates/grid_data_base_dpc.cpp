// CGridDataBase: plates follow a batch of edits.
#include <algorithm>
#include <cmath>
#include <compare>
#include <functional>
#include <optional>
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

/// A plate's border as it was traced. Taking over the figures of the plate before must not bring that one's
/// border along: its lines may be gone (a T on one of its sides is enough).
class TracedBorder {
public:
    explicit TracedBorder(CMianGouJian& plate) : m_plate(plate), m_shapes(plate.m_nXingZhuangBian) {
        Exchange();
    }
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
    /// The plate walks the line in this direction.
    bool Has(const CMianGouJian& plate, CGjNetLine* line, int dir) {
        Known& known = m_plates[&plate];
        if (++known.asked < kFew) {
            for (int i = 0; i < plate.m_arrBoundery.GetSize(); ++i)
                if (plate.m_arrBoundery[i] == line && plate.m_arrBounderyDir[i] == dir) return true;
            return false;
        }
        if (known.sides.empty())
            for (int i = 0; i < plate.m_arrBoundery.GetSize(); ++i)
                known.sides.insert(SideOf(plate.m_arrBoundery[i], plate.m_arrBounderyDir[i]));
        return known.sides.contains(SideOf(line, dir));
    }

private:
    static constexpr int kFew =
        8;  // questions about a plate that are answered by a look at all of its border
    static std::uintptr_t SideOf(CGjNetLine* line, int dir) {
        return reinterpret_cast<std::uintptr_t>(line) |
               static_cast<std::uintptr_t>(dir & 1);  // only ever compared
    }
    struct Known {
        int asked = 0;
        std::unordered_set<std::uintptr_t> sides;
    };
    std::unordered_map<const CMianGouJian*, Known> m_plates;
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
        m_places.push_back({CellOf(plate->GetCentroid().x), plate->GetCentroid().y, m_old.size()});
        m_old.push_back({plate, dependent, false});
    }
    void Sort() {
        // A centroid that is no number is nobody's neighbour.
        std::erase_if(m_places, [](const Place& p) { return std::isnan(p.column) || std::isnan(p.y); });
        std::sort(m_places.begin(), m_places.end());
    }
    /// Those whose centroid lies about a plate's, in order of entry.
    std::vector<std::size_t> Near(CMianGouJian& plate) const {
        const CFPoint at = plate.GetCentroid();
        const auto reach = [](float v) {
            return kSameCentroid + std::fabs(v) * 1e-6f;
        };  // far out, floats are rounded
        const double last = CellOf(at.x + reach(at.x));
        std::vector<std::size_t> near;
        double column = CellOf(at.x - reach(at.x));
        for (auto p = m_places.begin(); p != m_places.end() && column <= last;) {
            p = std::lower_bound(p, m_places.end(), Place{column, at.y - reach(at.y), 0});
            for (; p != m_places.end() && p->column == column && p->y <= at.y + reach(at.y); ++p)
                near.push_back(p->old);
            // The next column in which there is anything.
            p = std::lower_bound(p, m_places.end(), Place{std::nextafter(column, HUGE_VAL), -HUGE_VALF, 0});
            if (p != m_places.end()) column = p->column;
        }
        std::sort(near.begin(), near.end());
        return near;
    }
    std::vector<Old>& All() { return m_old; }

private:
    struct Place {
        double column;  // of cells twice as wide as the reach
        float y;
        std::size_t old;
        auto operator<=>(const Place&) const = default;
    };
    static double CellOf(float x) {
        return std::floor(static_cast<double>(x) / (2 * static_cast<double>(kSameCentroid)));
    }
    std::vector<Old> m_old;
    std::vector<Place> m_places;
};

bool AreSame(CGridDataBase& db, CMianGouJian& fresh, CMianGouJian& other) {
    const unsigned char main = db.QueryMainGouJianType();
    return fresh.get_Gjlx() == main && other.get_Gjlx() == main &&
           db.IsSamePlate(&fresh, &other, kSameCentroid, kSameArea);
}

// The new plate repeats one that was not touched. Or it lays over one: a side belongs to one plate, but a
// walk that closed early, at a node that holds two pieces of net together, has sides of another.
bool StandsAlready(CGridDataBase& db, CMianGouJian& fresh, StandingSides& sides) {
    CArray<CMianGouJian*> around;
    db.GetBanAround(&fresh, around);
    if (std::any_of(around.begin(), around.end(),
                    [&](CMianGouJian* plate) { return AreSame(db, fresh, *plate); }))
        return true;
    const unsigned char main = db.QueryMainGouJianType();
    if (!db.m_bWeiBanWholeNet || fresh.get_Gjlx() != main) return false;
    for (int i = 0; i < fresh.m_arrBoundery.GetSize(); ++i) {
        CArray<CMianGouJian*> bordered;
        db.GetBounderyPlate(fresh.m_arrBoundery[i], bordered);
        for (const CMianGouJian* plate : bordered)
            if (plate->get_Gjlx() == main &&
                sides.Has(*plate, fresh.m_arrBoundery[i], fresh.m_arrBounderyDir[i]) &&
                IsNiShiZhen(plate->m_region))
                return true;
    }
    return false;
}

// The new plate takes over the figures of the old ones that stood where it stands, and what hangs on them. An
// old plate on which nothing hangs may be taken over by several: meant.
void TakeOver(CGridDataBase& db, CMianGouJian& fresh, OldPlates& old) {
    std::optional<TracedBorder> traced;
    std::size_t next = 0;
    for (bool taken = true; taken;) {
        taken = false;
        for (const std::size_t i : old.Near(fresh)) {
            OldPlates::Old& before = old.All()[i];
            if (i < next || before.passedOn || !AreSame(db, fresh, *before.plate)) continue;
            if (!traced) traced.emplace(fresh);
            fresh.CopyData(before.plate);
            if (before.dependent) {
                db.CreateGouJianDependentOnMianGouJian(before.plate, before.dependent, &fresh);
                db.DeleteGouJianDependentOnMianGouJian(before.plate);
                before.passedOn = true;
            }
            // The next ones are compared with the figures that have come in.
            next = i + 1;
            taken = true;
            break;
        }
    }
}

}  // namespace

void CGridDataBase::PrepareDPC() {
    m_mapBanBianInsert.RemoveAll();
    m_mapBanBianRemove.RemoveAll();
}

void CGridDataBase::CompleteDPC() {
    const unsigned char main = QueryMainGouJianType();
    CWeiBan work;
    work.SetData(this, g_pFrame);
    ComponentMap touched;
    GatherTouchedPlates(work, touched);

    OldPlates old;
    for (CMianGouJian* plate : PlatesOf(touched)) {
        if (plate->get_Gjlx() != main) continue;
        // A line that has left may be freed by the deletion below.
        for (CGjNetLine* line : plate->m_arrBoundery)
            if (FindGouJian(line->get_m_dwGouJianID()) == line) work.AddElement(line);
        CGouJianEx* dependent = QueryGouJianDependentOnMianGouJian(plate);
        DeleteGouJian(plate);
        old.Add(plate, dependent);
    }
    old.Sort();

    // The walks start from touched lines alone, but pass over the whole net; so they also come round plates
    // beyond a touched line that stand as they were.
    work.DoWeiBan();
    StandingSides sides;
    CArray<CMianGouJian*> made;  // added at the end: one must not be taken for a repetition of another
    for (CMianGouJian* fresh : work.m_arrBan) {
        if (StandsAlready(*this, *fresh, sides)) {
            delete fresh;
            continue;
        }
        TakeOver(*this, *fresh, old);
        made.Add(fresh);
    }
    for (CMianGouJian* fresh : made) AddMianGouJian(fresh);
    for (CMianGouJian* outer : work.m_arrOuterBan) AddMianGouJian(outer);
    for (const OldPlates::Old& left : old.All())
        if (!left.passedOn) DeleteGouJianDependentOnMianGouJian(left.plate);
    m_mapBanBianInsert.RemoveAll();
    m_mapBanBianRemove.RemoveAll();
}

// None is taken away meanwhile: the first deletion may drop an old part of the log, and free lines that the
// maps name.
void CGridDataBase::GatherTouchedPlates(CWeiBan& work, ComponentMap& touched) {
    CWeiBan probe;
    probe.SetData(this, nullptr);
    probe.PrepareData();
    std::unordered_set<CGjNetLine*> passed;
    for (const auto& [id, obj] : ByKey(m_mapBanBianInsert)) {
        if (FindGouJian(id) != obj || probe.IsCi(obj)) continue;
        auto* line = static_cast<CGjNetLine*>(obj);
        work.AddElement(line);
        // Far along its chain there is nothing to try it on: a wall that it breaks stands in the other map.
        VisitPlatesAlong(line, probe, passed, [&](CGjNetLine* at, CMianGouJian* plate) { EnterStridden(plate, at, touched); });
    }
    CArray<CMianGouJian*> bordered;
    for (const auto& [id, line] : ByKey(m_mapBanBianRemove))
        GetBounderyPlate(static_cast<CGjNetLine*>(line), bordered);
    for (CMianGouJian* plate : bordered) touched.SetAt(plate->get_m_dwGouJianID(), plate);
    for (const auto& [id, plate] : ByKey(m_mapStalePlate))
        if (FindGouJian(id) == plate) touched.SetAt(id, plate);
    m_mapStalePlate.RemoveAll();
}

// --- which plates a line touches -------------------------------------------------------------------------

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

// The line is tried on all plates that its chain finds: where its ends have broken walls, the pieces of these border
// nothing yet, and stand between it and the plate that it cuts. If it touches none, it hangs between stubs, and these
// count for it.
int CGridDataBase::GetStridePlate(CGjNetLine* line, ComponentMap& out) {
    CWeiBan probe;
    probe.SetData(this, nullptr);
    probe.PrepareData();
    std::unordered_set<CGjNetLine*> passed;
    ComponentMap along, byChain, byLine;
    VisitPlatesAlong(line, probe, passed, [&](CGjNetLine* at, CMianGouJian* plate) {
        along.SetAt(plate->get_m_dwGouJianID(), plate);
        EnterStridden(plate, at, byChain);
    });
    for (CMianGouJian* plate : PlatesOf(along)) EnterStridden(plate, line, byLine);
    for (CMianGouJian* plate : PlatesOf(byLine.IsEmpty() ? byChain : byLine))
        out.SetAt(plate->get_m_dwGouJianID(), plate);
    return out.GetCount();
}

// A chord between two stubs cuts the plate that they stand in, and touches no line that borders it: so the
// search goes on through lines that border nothing and have become part of something closed.
void CGridDataBase::VisitPlatesAlong(CGjNetLine* line, CWeiBan& probe, std::unordered_set<CGjNetLine*>& passed,
                                     const std::function<void(CGjNetLine*, CMianGouJian*)>& visit) {
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
            if (m_mapPlateWay.Contains(met)) GetBounderyPlate(met, bordered);
            else if (probe.CanBorder(met)) pass(met);
        }
        ComponentMap near;
        for (CMianGouJian* plate : bordered) near.SetAt(plate->get_m_dwGouJianID(), plate);
        for (CMianGouJian* plate : PlatesOf(near)) visit(at, plate);
    }
}

void CGridDataBase::EnterStridden(CMianGouJian* plate, CGjNetLine* line, ComponentMap& out) {
    CGouJianEx** entered = out.Find(plate->get_m_dwGouJianID());
    if (!(entered && *entered == plate) && IsStridden(plate, line)) out.SetAt(plate->get_m_dwGouJianID(), plate);
}

bool CGridDataBase::IsStridden(CMianGouJian* plate, CGjNetLine* line) {
    if (plate->HasThisBorder(line)) return false;
    if (plate->StrideNetNode(line)) return true;
    return m_bWeiBanWholeNet == 1 && plate->m_region.Intersect(line->GetShape(), nullptr) != -1;
}
