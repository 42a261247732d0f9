#include "plate_literal.h"

#include <algorithm>
#include <cmath>

#include "geometry/angles.h"
#include "geometry/region_measures.h"

namespace literal {

namespace {

using LineMap = std::map<std::uint32_t, CGjNetLine*>;

LineMap LinesOf(const CStar& star) {
    LineMap lines;
    star.m_mapLine.ForEach([&](std::uint32_t id, CGouJianEx* line) { lines[id] = static_cast<CGjNetLine*>(line); });
    return lines;
}

std::map<unsigned long, CGouJianEx*> Sorted(const CMap<unsigned long, CGouJianEx*>& map) {
    std::map<unsigned long, CGouJianEx*> sorted;
    map.ForEach([&](unsigned long id, CGouJianEx* obj) { sorted[id] = obj; });
    return sorted;
}

CPlateWay* WayOf(CGridDataBase& db, CGjNetLine* line) {
    CPlateWay* way = nullptr;
    db.m_mapPlateWay.Lookup(line, way);
    return way;
}

Plates PlatesOfLine(CGridDataBase& db, CGjNetLine* line) {
    Plates plates;
    if (CPlateWay* way = WayOf(db, line)) plates.assign(way->m_arrPlate.begin(), way->m_arrPlate.end());
    return plates;
}

Plates PlatesOfType(CGridDataBase& db, unsigned char type) {
    CArray<CGouJianEx*> all;
    db.GetGouJianArray(type, &all);
    Plates plates;
    for (CGouJianEx* obj : all) plates.push_back(static_cast<CMianGouJian*>(obj));
    return plates;
}

// Direction of the line away from the node, as the walk sees it: that of an arc is taken to its point at the
// distance r.
float LeavingAngle(CGjNetLine* line, CGjNetNode* node, float r) {
    if (!line->m_nArc) return line->GetTangentAngle(node) * 3.1415927f / 180;
    float start, end;
    line->GetDirectionAngle(start, end);
    const float a = std::asin(std::clamp(r / 2 / line->GetR(), -1.0f, 1.0f));
    return node == line->m_pStartNode ? start + 1.5707964f + a : end - 1.5707964f - a;
}

void RotateToSideStart(CGridDataBase& db, std::vector<CGjNetLine*>& lines, std::vector<int>& flags) {
    CGjNetLine* ref = lines[0];
    long k = 0;
    for (std::size_t i = lines.size() - 1; i >= 1 && db.IsSimilarNetLine(ref, lines[i], 0.5f); --i, ++k) ref = lines[i];
    std::rotate(lines.begin(), lines.end() - k, lines.end());
    std::rotate(flags.begin(), flags.end() - k, flags.end());
}

CMianGouJian* MakePlate(CGridDataBase& db, int type, std::vector<CGjNetLine*> lines, std::vector<int> flags, int number) {
    RotateToSideStart(db, lines, flags);
    CMianGouJian* plate = db.InstanceMianGouJian(type);
    if (!plate) return nullptr;
    int shape = 1;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        CGjXingZhuangBian side;
        side.m_nIndex = shape++;
        const auto add = [&] {
            CJainTuBanBian bian;
            bian.m_nIndex = side.m_arrBian.GetSize() + 1;
            bian.m_nLineNO = static_cast<int>(lines[i]->get_m_dwGouJianNO());
            bian.m_nLineID = static_cast<int>(lines[i]->get_m_dwGouJianID());
            bian.m_nDirection = flags[i];
            bian.m_pNetLine = lines[i];
            side.m_arrBian.Add(bian);
        };
        add();
        while (i + 1 < lines.size() && db.IsSimilarNetLine(lines[i], lines[i + 1], 0.5f)) {
            ++i;
            add();
        }
        side.m_nBian = side.m_arrBian.GetSize();
        plate->m_arrXingZhuangBian.Add(side);
    }
    plate->m_nXingZhuangBian = plate->m_arrXingZhuangBian.GetSize();
    plate->set_m_dwGouJianNO(static_cast<unsigned>(number));
    plate->CalcGeographicData();
    return plate;
}

// The two have a side of a line in common, which belongs to one plate alone.
bool ShareASide(CMianGouJian* a, CMianGouJian* b) {
    for (int i = 0; i < a->m_arrBoundery.GetSize(); ++i)
        for (int k = 0; k < b->m_arrBoundery.GetSize(); ++k)
            if (a->m_arrBoundery[i] == b->m_arrBoundery[k] && a->m_arrBounderyDir[i] == b->m_arrBounderyDir[k]) return true;
    return false;
}

// A plate's own border, out of the way while it takes over figures of old plates.
struct Border {
    int count = 0;
    CArray<CGjXingZhuangBian> sides;
    CArray<CGjNetLine*> lines, synthetic;
    CArray<int> dirs, syntheticDirs;
    CArray<CGjNetNode*> vertices;

    void Exchange(CMianGouJian& p) {
        std::swap(count, p.m_nXingZhuangBian);
        sides.Swap(p.m_arrXingZhuangBian);
        lines.Swap(p.m_arrBoundery);
        synthetic.Swap(p.m_arrXingZhuangLine);
        dirs.Swap(p.m_arrBounderyDir);
        syntheticDirs.Swap(p.m_arrXingZhuangDir);
        vertices.Swap(p.m_arrVertex);
    }
};

bool AllVerticesInside(CMianGouJian* inner, CMianGouJian* outer) {
    for (int i = 0; i < inner->m_region.GetSize(); ++i)
        if (!Point_Inside_Region(outer->m_region, inner->m_region[i].x, inner->m_region[i].y, 0.01f)) return false;
    return true;
}

}  // namespace

// --- one run ------------------------------------------------------------------------------------------------

void Walker::AddElement(CGjNetLine* line) {
    const std::uint32_t id = line->get_m_dwGouJianID();
    if (m_elements.count(id) || !m_db.CanJionWeiBan(line)) return;
    m_elements[id] = line;
    m_side[line] = 0;
}

void Walker::PrepareData() {
    CopyStars();
    while (StripOneBranch()) {
    }
}

void Walker::CopyStars() {
    for (POSITION p = m_db.m_mapStar.GetStartPosition(); p;) {
        CGjNetNode* node;
        CStar* star;
        m_db.m_mapStar.GetNextAssoc(p, node, star);
        auto copy = std::make_unique<CStar>(*star);
        for (const auto& [id, line] : LinesOf(*star))
            if (!Counts(line)) copy->RemoveMapElement(line);
        m_stars[node] = std::move(copy);
    }
}

bool Walker::Counts(CGjNetLine* line) const {
    return m_db.CanJionWeiBan(line) && (m_db.m_bWeiBanWholeNet || m_db.m_mapBanBianInsert.Contains(line->get_m_dwGouJianID()));
}

CStar* Walker::StarAt(CGjNetNode* node) {
    const auto it = m_stars.find(node);
    return it == m_stars.end() ? nullptr : it->second.get();
}

// Eats the first dangling branch that a pass finds, from its tip inward. False when the pass finds none.
bool Walker::StripOneBranch() {
    for (auto& entry : m_stars) {
        CGjNetNode* node = entry.first;
        CStar* star = entry.second.get();
        if (star->m_mapLine.GetCount() != 1) continue;
        while (star->m_mapLine.GetCount() == 1) {
            const auto [id, line] = *LinesOf(*star).begin();
            m_stars.erase(node);
            m_side.erase(line);
            m_elements.erase(id);
            m_thorns[id] = line;
            node = line->m_pStartNode == node ? line->m_pEndNode : line->m_pStartNode;
            star = StarAt(node);
            if (!star) break;  // a line from the node to itself
            if (star->m_mapLine.GetCount() == 1) {
                m_stars.erase(node);
                break;
            }
            star->RemoveMapElement(line);
        }
        return true;
    }
    return false;
}

int Walker::BranchingEnds(CGjNetLine* line) {
    int ends = 0;
    for (CGjNetNode* node : {line->m_pStartNode, line->m_pEndNode}) {
        const CStar* star = StarAt(node);
        if (star && star->m_mapLine.GetCount() > 2) ++ends;
    }
    return ends;
}

CGjNetLine* Walker::NextLine(CGjNetNode* node, CGjNetLine* from) {
    const CStar* star = StarAt(node);
    if (!star) return nullptr;
    const LineMap lines = LinesOf(*star);
    float r = 100000.0f;
    for (const auto& [id, line] : lines) r = std::min(r, line->m_nArc ? line->GetChordLength() : line->GetLength());
    r = r * 2 / 3;
    const float base = lines.count(from->get_m_dwGouJianID()) ? Get2PIAngle(LeavingAngle(from, node, r)) : 0;
    CGjNetLine* best = nullptr;
    float bestTurn = 6.2831855f;
    for (const auto& [id, line] : lines) {
        if (line == from || m_side[line] == 2) continue;
        const float turn = Get2PIAngle(base - LeavingAngle(line, node, r));
        if (turn < bestTurn) {
            bestTurn = turn;
            best = line;
        }
    }
    return best;
}

struct Walker::Walk {
    std::vector<CGjNetLine*> lines;
    std::vector<int> flags;
    CFRegion region;
    bool closed = false;
};

// One attempt from an element; what closes becomes a plate or an outer contour.
void Walker::WalkFrom(CGjNetLine* element, int& plateNumber, int& outerNumber) {
    Walk walk;
    CGjNetNode *start = nullptr, *far = nullptr;
    for (CGjNetLine* cur = element; cur; cur = NextLine(far, cur)) {
        auto* line = static_cast<CGjNetLine*>(m_db.FindGouJian(cur->get_m_dwGouJianID()));
        if (!line || m_side[line] == 2) break;
        const bool first = walk.lines.empty();
        int& side = m_side[line];
        // Walked already in this very direction: it would be walked against the direction of arrival.
        if (!first && ((side == 1 && line->m_pEndNode != far) || (side == -1 && line->m_pStartNode != far))) break;
        const bool forward = side == -1 || (side == 0 && (first || line->m_pStartNode == far));
        side = side != 0 ? 2 : forward ? 1 : -1;
        CGjNetNode* entered = forward ? line->m_pStartNode : line->m_pEndNode;
        far = forward ? line->m_pEndNode : line->m_pStartNode;
        if (first) start = entered;
        walk.lines.push_back(line);
        walk.flags.push_back(forward ? 1 : 0);
        walk.region.Add(line->GetFShoot(forward ? 0 : 1));
        if (far == start) {
            walk.closed = true;
            break;
        }
    }
    if (!walk.closed || walk.lines.size() < 2 || walk.lines.front() == walk.lines.back()) return;
    const bool plate = IsNiShiZhen(walk.region) != 0;
    CMianGouJian* made = MakePlate(m_db, plate ? 0 : 1, walk.lines, walk.flags, plate ? plateNumber++ : outerNumber++);
    if (made) (plate ? m_plates : m_outer).push_back(made);
}

void Walker::DoWeiBan() {
    PrepareData();
    // Walks from lines with few branching ends come first: one that begins where a walk passes twice closes too early.
    std::vector<CGjNetLine*> order;
    for (const auto& [id, line] : m_elements) order.push_back(line);
    std::map<CGjNetLine*, int> ends;
    for (CGjNetLine* line : order) ends[line] = m_db.FindGouJian(line->get_m_dwGouJianID()) == line ? BranchingEnds(line) : 0;
    std::stable_sort(order.begin(), order.end(), [&](CGjNetLine* a, CGjNetLine* b) { return ends[a] < ends[b]; });
    int plateNumber = 1, outerNumber = 1;
    for (CGjNetLine* line : order)
        for (int side = 0; side < 2; ++side) WalkFrom(line, plateNumber, outerNumber);
}

// --- questions ----------------------------------------------------------------------------------------------

bool IsSamePlate(CMianGouJian* a, CMianGouJian* b) {
    const CFPoint p = a->GetCentroid(), q = b->GetCentroid();
    return get_dist(p.x, p.y, q.x, q.y) < 2.0f &&
           std::fabs(a->GetArea() - b->GetArea()) / std::min(a->GetArea(), b->GetArea()) < 0.01f;
}

// The lines that have joined the border of something with the new line, though they stood before, count like it:
// those that meet it, or one another, and border nothing yet.
PlateMap StridePlates(CGridDataBase& db, CGjNetLine* line, const Walker& thorns) {
    PlateMap out;
    std::vector<CGjNetLine*> cutting{line};
    for (std::size_t i = 0; i < cutting.size(); ++i) {
        CGjNetLine* cut = cutting[i];
        CArray<CGouJianEx*> met;
        db.GetConnectedNetLine(cut->m_pStartNode, met);
        db.GetConnectedNetLine(cut->m_pEndNode, met);
        PlateMap plates;
        for (CGouJianEx* obj : met) {
            auto* other = static_cast<CGjNetLine*>(obj);
            for (CMianGouJian* plate : PlatesOfLine(db, other)) plates[plate->get_m_dwGouJianID()] = plate;
            if (!WayOf(db, other) && thorns.CanBorder(other) && std::find(cutting.begin(), cutting.end(), other) == cutting.end())
                cutting.push_back(other);
        }
        for (const auto& [id, plate] : plates) {
            const int on = plate->HasThisBorder(cut), strides = plate->StrideNetNode(cut);
            if (on) continue;
            if (strides)
                out[id] = plate;
            else if (db.m_bWeiBanWholeNet == 1) {
                CFPoint points[10];
                if (plate->m_region.Intersect(cut->GetShape(), points) != -1) out[id] = plate;
            }
        }
    }
    return out;
}

PlateMap BanAround(CGridDataBase& db, CMianGouJian* plate) {
    PlateMap around;
    for (const CGjXingZhuangBian& side : plate->m_arrXingZhuangBian)
        for (const CJainTuBanBian& bian : side.m_arrBian) {
            if (!db.GouJianExists(bian.m_pNetLine)) continue;
            for (CMianGouJian* other : PlatesOfLine(db, bian.m_pNetLine))
                if (other != plate) around[other->get_m_dwGouJianID()] = other;
        }
    return around;
}

CMianGouJian* EmbracingPlate(CGridDataBase& db, CMianGouJian* plate) {
    Plates found;
    for (CMianGouJian* other : PlatesOfType(db, plate->get_Gjlx()))
        if (AllVerticesInside(plate, other)) found.push_back(other);
    // The area of the first is not taken anew after an exchange; meant.
    for (std::size_t i = 0; i + 1 < found.size(); ++i) {
        const double area = static_cast<double>(GetMianJi(found[i]->m_region)) / 1e6;
        for (std::size_t j = i + 1; j < found.size(); ++j)
            if (area > static_cast<double>(GetMianJi(found[j]->m_region)) / 1e6) std::swap(found[i], found[j]);
    }
    return found.empty() ? nullptr : found[0];
}

Plates PlatesInPlate(CGridDataBase& db, CMianGouJian* plate) {
    Plates inside;
    for (CMianGouJian* other : PlatesOfType(db, plate->get_Gjlx()))
        if (other != plate && AllVerticesInside(other, plate)) inside.push_back(other);
    return inside;
}

// --- the data base's part -----------------------------------------------------------------------------------

void DoWeiBan(CGridDataBase& db) {
    const unsigned char type = db.QueryMainGouJianType();
    db.SortBianHao(type);
    for (CMianGouJian* plate : PlatesOfType(db, type)) {
        db.DeleteGouJianDependentOnMianGouJian(plate);
        db.DeleteGouJian(plate);
    }
    Walker walker(db);
    CArray<unsigned char> types;
    db.QueryWeiBanType(types);
    for (unsigned char lineType : types) {
        CArray<CGouJianEx*> lines;
        db.GetGouJianArray(lineType, &lines);
        for (CGouJianEx* line : lines) walker.AddElement(static_cast<CGjNetLine*>(line));
    }
    walker.DoWeiBan();
    for (CMianGouJian* plate : walker.m_plates) db.AddMianGouJian(plate);
    for (CMianGouJian* plate : walker.m_outer) db.AddMianGouJian(plate);
}

void CompleteDPC(CGridDataBase& db) {
    const unsigned char type = db.QueryMainGouJianType();
    Walker work(db), probe(db);
    probe.PrepareData();
    PlateMap old;
    std::map<CMianGouJian*, CGouJianEx*> dependents;
    const auto retire = [&](CMianGouJian* plate) {
        if (plate->get_Gjlx() != type) return;
        for (CGjNetLine* line : plate->m_arrBoundery) work.AddElement(line);
        dependents[plate] = db.QueryGouJianDependentOnMianGouJian(plate);
        db.DeleteGouJian(plate);
        old[plate->get_m_dwGouJianID()] = plate;
    };

    // All are found before any goes: a line that has just lost its last plate isn't one that bordered nothing.
    PlateMap touched;
    for (const auto& [id, obj] : Sorted(db.m_mapBanBianInsert)) {
        if (db.FindGouJian(id) != obj) continue;
        auto* line = static_cast<CGjNetLine*>(obj);
        if (probe.IsCi(line)) continue;
        work.AddElement(line);
        touched.merge(StridePlates(db, line, probe));
    }
    for (const auto& [id, obj] : Sorted(db.m_mapBanBianRemove))
        for (CMianGouJian* plate : PlatesOfLine(db, static_cast<CGjNetLine*>(obj))) touched[plate->get_m_dwGouJianID()] = plate;
    for (const auto& [id, plate] : touched) retire(plate);

    work.DoWeiBan();

    for (std::size_t i = 0; i < work.m_plates.size();) {
        CMianGouJian* plate = work.m_plates[i];
        bool repeated = false;
        for (const auto& [id, standing] : BanAround(db, plate)) {
            if (plate->get_Gjlx() != type || standing->get_Gjlx() != type) continue;
            repeated = repeated || IsSamePlate(plate, standing) ||
                       (db.m_bWeiBanWholeNet && IsNiShiZhen(standing->m_region) && ShareASide(plate, standing));
        }
        if (repeated) {
            delete plate;
            work.m_plates.erase(work.m_plates.begin() + static_cast<std::ptrdiff_t>(i));
            i = 0;
            continue;
        }
        Border own;
        own.Exchange(*plate);
        for (auto it = old.begin(); it != old.end();) {
            CMianGouJian* before = it->second;
            CGouJianEx* dependent = nullptr;
            if (plate->get_Gjlx() == type && before->get_Gjlx() == type && IsSamePlate(plate, before)) {
                plate->CopyData(before);
                dependent = dependents[before];
            }
            if (!dependent) {
                ++it;
                continue;
            }
            db.CreateGouJianDependentOnMianGouJian(before, dependent, plate);
            db.DeleteGouJianDependentOnMianGouJian(before);
            it = old.erase(it);
        }
        own.Exchange(*plate);
        for (CGjNetLine* line : own.synthetic) delete line;
        ++i;
    }

    for (CMianGouJian* plate : work.m_plates) db.AddMianGouJian(plate);
    for (CMianGouJian* plate : work.m_outer) db.AddMianGouJian(plate);
    for (const auto& [id, plate] : old) db.DeleteGouJianDependentOnMianGouJian(plate);
    db.m_mapBanBianInsert.RemoveAll();
    db.m_mapBanBianRemove.RemoveAll();
}

int CombineMianGouJian(CGridDataBase& db, const Plates& in, Plates& out, unsigned char type, unsigned long tag) {
    db.m_bCombineMode = db.m_bCombineFilter = 1;
    db.m_byteCombineType = type;
    db.m_dwCombineTag = static_cast<std::uint32_t>(tag);
    db.m_mapCombineLine.RemoveAll();
    for (CMianGouJian* plate : in)
        for (CGjNetLine* line : plate->m_arrBoundery) db.m_mapCombineLine.SetAt(line->get_m_dwGouJianID(), line);
    const int whole = db.m_bWeiBanWholeNet;
    db.m_bWeiBanWholeNet = 1;
    DoWeiBan(db);
    db.m_bWeiBanWholeNet = whole;
    out.clear();
    for (CMianGouJian* plate : PlatesOfType(db, type))
        if (plate->m_dwTag == tag) out.push_back(plate);
    db.m_bCombineMode = db.m_bCombineFilter = 0;
    return static_cast<int>(out.size());
}

}  // namespace literal
