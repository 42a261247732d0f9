#include "host/net_check.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "host/host_data_base.h"
#include "host/net_walk.h"
#include "model/grid_index_service_object.h"

namespace {

constexpr double kReach = 5;         // tolerances that a gap may have
constexpr double kSameBulge = 0.1;   // degrees; as the net takes arcs for equal

struct Place {
    double x = 0, y = 0;
};

double Distance(Place a, Place b) { return std::hypot(a.x - b.x, a.y - b.y); }
Place PlaceOf(const CGjNetNode& node) { return {node.m_fX, node.m_fY}; }

/// The place on the line that is nearest to p, unless that is one of its ends.
bool FootOn(const CGjNetLine& line, Place p, Place& foot) {
    if (line.m_nArc) {
        const Place centre{line.m_fCenterX, line.m_fCenterY};
        const double out = Distance(p, centre), full = 2 * std::numbers::pi, start = line.m_fStartDir;
        if (!(out > 0)) return false;
        double turn = std::fmod(std::atan2(p.y - centre.y, p.x - centre.x) - start, full);
        if (turn < 0) turn += full;
        if (!(turn > 0 && turn < line.m_fEndDir - start)) return false;
        foot = {centre.x + (p.x - centre.x) / out * line.m_fR, centre.y + (p.y - centre.y) / out * line.m_fR};
        return true;
    }
    const Place a{line.m_fStartX, line.m_fStartY};
    const double dx = line.m_fEndX - a.x, dy = line.m_fEndY - a.y, square = dx * dx + dy * dy;
    const double t = ((p.x - a.x) * dx + (p.y - a.y) * dy) / square;
    if (!(t > 0 && t < 1)) return false;
    foot = {a.x + t * dx, a.y + t * dy};
    return true;
}

class Checker {
public:
    Checker(CTvoHostDataBase& db, double tolerance)
        : m_db(db), m_tolerance(tolerance), m_nodes(NetNodes(db)), m_lines(NetLines(db)) {
        for (const CGjNetLine* line : m_lines)
            for (const CGjNetNode* end : {line->m_pStartNode, line->m_pEndNode}) ++m_degree[end];
        for (const CGjNetLine* line : DanglingLines(db)) m_openEnds.insert({line->m_pStartNode, line->m_pEndNode});
    }

    std::vector<NetFault> Run() {
        for (CGjNetNode* node : m_nodes) {
            if (!m_degree.contains(node)) continue;  // no end of a line
            CheckDangling(*node);
            CheckGaps(*node);
            CheckNear(*node);
        }
        for (const CGjNetLine* line : m_lines) CheckShort(*line);
        CheckDuplicates();
        std::stable_sort(m_faults.begin(), m_faults.end(), [](const NetFault& a, const NetFault& b) {
            return std::tie(a.kind, a.first, a.second) < std::tie(b.kind, b.first, b.second);
        });
        return std::move(m_faults);
    }

private:
    void Add(FaultKind kind, const CGouJianEx* first, const CGouJianEx* second, Place a, Place b, double distance) {
        m_faults.push_back({kind, first->get_m_dwGouJianID(), second ? second->get_m_dwGouJianID() : 0, a.x, a.y, b.x, b.y,
                            distance});
    }
    bool IsOpenEnd(const CGjNetNode& node) const { return m_openEnds.contains(&node); }

    void CheckDangling(CGjNetNode& node) {
        if (m_degree.at(&node) != 1) return;
        CArray<CGouJianEx*> lines;
        if (m_db.GetConnectedNetLine(&node, lines) == 1)
            Add(kFaultDangling, &node, lines[0], PlaceOf(node), PlaceOf(node), 0);
    }

    // Where both ends have closed ways on all their lines nothing is left open between them.
    void CheckGaps(CGjNetNode& node) {
        const auto reach = static_cast<float>(kReach * m_tolerance);
        m_db.Index().ForEachNodeNear(node.m_fX, node.m_fY, reach, [&](CGouJianEx* obj) {
            if (obj->m_nCeng != node.m_nCeng || obj->get_m_dwGouJianID() <= node.get_m_dwGouJianID()) return;
            auto* other = static_cast<CGjNetNode*>(obj);
            const double distance = Distance(PlaceOf(node), PlaceOf(*other));
            if (distance < m_tolerance) {
                Add(kFaultDuplicate, &node, other, PlaceOf(node), PlaceOf(*other), distance);
                return;
            }
            if (distance > kReach * m_tolerance || !m_degree.contains(other)) return;
            if (!IsOpenEnd(node) && !IsOpenEnd(*other)) return;
            CArray<CGouJianEx*> between;
            if (m_db.GetNetLineOnNetNode(&node, other, between) == 0)
                Add(kFaultGap, &node, other, PlaceOf(node), PlaceOf(*other), distance);
        });
    }

    void CheckNear(CGjNetNode& node) {
        const Place place = PlaceOf(node);
        const double reach = (IsOpenEnd(node) ? kReach : 1) * m_tolerance;
        const auto r = static_cast<float>(reach);
        m_near.clear();
        m_db.Index().OthersIn(CFRect(node.m_fX - r, node.m_fY - r, node.m_fX + r, node.m_fY + r), m_near);
        for (CGouJianEx* obj : m_near) {
            if (obj->QueryBasicType() != kBasicLine || obj->m_nCeng != node.m_nCeng) continue;
            const auto& line = *static_cast<CGjNetLine*>(obj);
            Place foot;
            if (line.m_pStartNode == &node || line.m_pEndNode == &node || !FootOn(line, place, foot)) continue;
            const double distance = Distance(place, foot);
            const bool beside = distance < m_tolerance;
            if (beside || (distance <= reach && !MeetsAtAnEnd(node, line)))
                Add(kFaultNear, &node, &line, place, foot, distance);
        }
    }

    /// Does the node come so near to an end of the line that the two make a gap, or does one of its lines meet it there?
    bool MeetsAtAnEnd(CGjNetNode& node, const CGjNetLine& line) {
        CArray<CGouJianEx*> lines;
        m_db.GetConnectedNetLine(&node, lines);
        for (const CGjNetNode* end : {line.m_pStartNode, line.m_pEndNode}) {
            if (Distance(PlaceOf(node), PlaceOf(*end)) <= kReach * m_tolerance) return true;
            for (const CGouJianEx* obj : lines) {
                const auto& own = *static_cast<const CGjNetLine*>(obj);
                if (own.m_pStartNode == end || own.m_pEndNode == end) return true;
            }
        }
        return false;
    }

    void CheckShort(const CGjNetLine& line) {
        if (!(line.m_fLength < m_tolerance)) return;
        Add(kFaultShort, &line, nullptr, {line.m_fStartX, line.m_fStartY}, {line.m_fEndX, line.m_fEndY}, line.m_fLength);
    }

    // Lines between the same two nodes stand side by side once sorted. An arc has a sense, a straight line hasn't.
    void CheckDuplicates() {
        const auto key = [](const CGjNetLine* line) {
            auto a = line->m_pStartNode->get_m_dwGouJianID(), b = line->m_pEndNode->get_m_dwGouJianID();
            if (!line->m_nArc && a > b) std::swap(a, b);
            return std::tuple(line->m_nArc, a, b);
        };
        const auto bulge = [](const CGjNetLine* line) { return std::isfinite(line->m_fBulge) ? line->m_fBulge : 0.0f; };
        std::vector<const CGjNetLine*> sorted(m_lines.begin(), m_lines.end());
        std::stable_sort(sorted.begin(), sorted.end(), [&](const auto* a, const auto* b) {
            return std::tuple_cat(key(a), std::tuple(bulge(a))) < std::tuple_cat(key(b), std::tuple(bulge(b)));
        });
        for (std::size_t i = 1; i < sorted.size(); ++i) {
            const CGjNetLine *a = sorted[i - 1], *b = sorted[i];
            if (key(a) != key(b) || (a->m_nArc && !(std::fabs(a->m_fBulge - b->m_fBulge) < kSameBulge))) continue;
            if (a->get_m_dwGouJianID() > b->get_m_dwGouJianID()) std::swap(a, b);
            Add(kFaultDuplicate, a, b, {a->m_fStartX, a->m_fStartY}, {a->m_fEndX, a->m_fEndY}, a->m_fLength);
        }
    }

    CTvoHostDataBase& m_db;
    const double m_tolerance;
    const std::vector<CGjNetNode*> m_nodes;
    const std::vector<CGjNetLine*> m_lines;
    std::unordered_map<const CGjNetNode*, int> m_degree;       // lines that end there; only looked up
    std::unordered_set<const CGjNetNode*> m_openEnds;          // ends of lines that no closed walk can use; only looked up
    std::vector<CGouJianEx*> m_near;
    std::vector<NetFault> m_faults;
};

}  // namespace

std::vector<NetFault> CheckNet(CTvoHostDataBase& db, double tolerance) { return Checker(db, tolerance).Run(); }
