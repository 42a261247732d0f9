#include "plates/walk_net.h"

#include <algorithm>
#include <cmath>

#include "geometry/angles.h"
#include "geometry/tolerance.h"
#include "net/grid_data_base.h"

namespace {

constexpr float kPi = 3.1415927f, kQuarterTurn = 1.5707964f, kTurn = 6.2831855f;

// Get2PIAngle, at hand for angles of less than a turn.
float Folded(float a) {
    if (!(std::fabs(a) < tolerance::kFullTurnF)) return Get2PIAngle(a);
    if (std::fabs(static_cast<double>(a)) < tolerance::kZeroAngle) return 0;
    return a < 0 ? a + tolerance::kFullTurnF : a;
}

// The lines of the net by ascending identity, and maybe others of their types. None of them is looked at.
std::vector<CGjNetLine*> LinesOf(CGridDataBase& db) {
    std::vector<std::pair<unsigned long, CGjNetLine*>> entries;
    bool ascending = true;
    for (const unsigned char type : db.m_aNetLineTypes) {
        entries.reserve(entries.size() + static_cast<std::size_t>(db.m_mapFamily[type].GetCount()));
        db.m_mapFamily[type].ForEach([&](unsigned long id, CGouJianEx* obj) {
            ascending = ascending && (entries.empty() || entries.back().first < id);
            entries.emplace_back(id, static_cast<CGjNetLine*>(obj));
        });
    }
    if (!ascending) std::sort(entries.begin(), entries.end());
    std::vector<CGjNetLine*> lines;
    lines.reserve(entries.size());
    for (const auto& entry : entries) lines.push_back(entry.second);
    return lines;
}

}  // namespace

// --- entries ---------------------------------------------------------------------------------------------

bool CWalkNet::Counts(CGjNetLine* line) const {
    return m_db.CanJionWeiBan(line) &&
           (m_db.m_bWeiBanWholeNet || m_db.m_mapBanBianInsert.Contains(line->get_m_dwGouJianID()));
}

std::uint32_t CWalkNet::Append(CGjNetLine* line) {
    const auto entry = static_cast<std::uint32_t>(m_lines.size());
    m_lines.push_back({line,
                       {kNone, kNone},
                       {line->m_fStartTangent, line->m_fEndTangent},
                       line->m_nArc ? line->m_fChordLength : line->m_fLength,
                       Kind::Unknown,
                       line->m_nArc != 0,
                       line->m_pStartNode == line->m_pEndNode});
    m_sides.push_back(kNeither);
    return entry;
}

std::uint32_t CWalkNet::AppendNode(CGjNetNode* node) {
    m_nodes.push_back({.x = node->m_fX, .y = node->m_fY});
    m_gathered.push_back({.node = node, .made = m_stripped, .rawMade = m_stripped});
    return static_cast<std::uint32_t>(m_nodes.size()) - 1;
}

std::uint32_t CWalkNet::Enter(CGjNetLine* line) {
    std::uint32_t& entry = m_lineByIdentity[line->get_m_dwGouJianID()];
    if (entry == 0) entry = Append(line) + 1;
    return entry - 1;
}

std::uint32_t CWalkNet::Find(CGjNetLine* line) {
    if (m_stripped) {
        // Another walker may have overwritten the note that this one left at the line.
        const std::uint32_t noted = line->m_nWalk;
        if (noted < m_lines.size() && m_lines[noted].line == line) return noted;
        if (m_lineByIdentity.IsEmpty())
            for (std::uint32_t i = 0; i < m_lines.size(); ++i)
                m_lineByIdentity.SetAt(m_lines[i].line->get_m_dwGouJianID(), i + 1);
    }
    if (const std::uint32_t* entry = m_lineByIdentity.Find(line->get_m_dwGouJianID()))
        return m_lines[*entry - 1].line == line ? *entry - 1 : kNone;
    if (m_stripped) return kNone;
    CStar* star = nullptr;
    CGouJianEx** at = m_db.m_mapStar.Lookup(line->m_pStartNode, star)
                          ? star->m_mapLine.Find(line->get_m_dwGouJianID())
                          : nullptr;
    return at && *at == line && Counts(line) ? Enter(line) : kNone;
}

std::uint32_t CWalkNet::FindElement(CGjNetLine* line) {
    const std::uint32_t found = Find(line);
    if (found != kNone || m_db.FindGouJian(line->get_m_dwGouJianID()) != line) return found;
    const std::uint32_t entry = Enter(line);
    if (m_lines[entry].line != line) return kNone;
    m_lines[entry].kind = Kind::Core;
    return entry;
}

std::uint32_t CWalkNet::NodeFor(CGjNetNode* node) {
    if (m_stripped && node->m_nWalk < m_nodes.size() && m_gathered[node->m_nWalk].node == node)
        return node->m_nWalk;
    if (m_stripped && m_nodeByIdentity.IsEmpty())
        for (std::uint32_t i = 0; i < m_nodes.size(); ++i)
            m_nodeByIdentity.SetAt(m_gathered[i].node->get_m_dwGouJianID(), i + 1);
    std::uint32_t& entry = m_nodeByIdentity[node->get_m_dwGouJianID()];
    if (entry == 0) entry = AppendNode(node) + 1;
    return entry - 1;
}

std::uint32_t CWalkNet::NodeOf(std::uint32_t line, int end) {
    if (m_lines[line].nodes[end] == kNone) {
        CGjNetNode* node = end == 0 ? m_lines[line].line->m_pStartNode : m_lines[line].line->m_pEndNode;
        m_lines[line].nodes[end] = NodeFor(node);
    }
    return m_lines[line].nodes[end];
}

CWalkNet::Spoke CWalkNet::SpokeOf(std::uint32_t line, bool leavesStart) {
    return {line, NodeOf(line, leavesStart ? 1 : 0), 0, leavesStart, m_lines[line].loop, m_lines[line].arc};
}

CFShoot CWalkNet::ShootOf(std::uint32_t from, const Spoke& passed, bool along) const {
    if (passed.arc) return m_lines[passed.line].line->GetFShoot(!along);
    return CFShoot(m_nodes[from].x, m_nodes[from].y, 0);
}

std::uint32_t CWalkNet::OtherEnd(std::uint32_t line, std::uint32_t node) {
    const std::uint32_t start = NodeOf(line, 0);
    return start == node ? NodeOf(line, 1) : start;
}

CWalkNet::Span CWalkNet::Raw(std::uint32_t node) {
    if (!m_gathered[node].rawMade) GatherRaw(node);
    const std::uint32_t* first = m_raw.data() + m_gathered[node].rawFirst;
    return {first, first + m_gathered[node].rawCount};
}

void CWalkNet::GatherRaw(std::uint32_t node) {
    m_gathered[node].rawMade = true;
    const auto first = static_cast<std::uint32_t>(m_raw.size());
    m_gathered[node].rawFirst = first;
    CGjNetNode* centre = m_gathered[node].node;
    CStar* star = nullptr;
    if (!m_db.m_mapStar.Lookup(centre, star)) return;
    star->m_mapLine.ForEach([&](std::uint32_t, CGouJianEx* obj) {
        auto* line = static_cast<CGjNetLine*>(obj);
        if (!Counts(line)) return;
        const std::uint32_t entry = Enter(line);
        if (m_lines[entry].line != line) return;
        if (line->m_pStartNode == centre) m_lines[entry].nodes[0] = node;
        if (line->m_pEndNode == centre) m_lines[entry].nodes[1] = node;
        m_raw.push_back(entry);
    });
    std::sort(m_raw.begin() + first, m_raw.end(), [&](std::uint32_t a, std::uint32_t b) {
        return m_lines[a].line->get_m_dwGouJianID() < m_lines[b].line->get_m_dwGouJianID();
    });
    m_gathered[node].rawCount = static_cast<std::uint32_t>(m_raw.size()) - first;
}

// --- thorns ----------------------------------------------------------------------------------------------

bool CWalkNet::IsThorn(std::uint32_t line) {
    if (m_lines[line].kind == Kind::Unknown) {
        const bool thorn = SearchThorn(line);
        m_lines[line].kind = thorn ? Kind::Thorn : Kind::Core;
    }
    return m_lines[line].kind == Kind::Thorn;
}

bool CWalkNet::SearchThorn(std::uint32_t line) {
    const std::uint32_t ends[2] = {NodeOf(line, 0), NodeOf(line, 1)};
    if (ends[0] == ends[1]) {
        // A line from a node to itself is one line there: it stays while another one does.
        Raw(ends[0]);
        const std::uint32_t first = m_gathered[ends[0]].rawFirst, last = first + m_gathered[ends[0]].rawCount;
        for (std::uint32_t i = first; i < last; ++i)
            if (m_raw[i] != line && (m_lines[m_raw[i]].loop || !IsThorn(m_raw[i]))) return false;
        return true;
    }
    m_search += 2;
    std::uint32_t head[2] = {0, 0};
    bool alive[2] = {false, false};
    // Steps at which a search came upon something that closes. If the line is no thorn, neither is the way to
    // them.
    std::vector<std::uint32_t> contacts[2];
    for (std::uint32_t side = 0; side < 2; ++side) {
        m_queue[side].assign(1, {ends[side], line, kNone});
        m_gathered[ends[side]].mark = m_search + side;
        m_gathered[ends[side]].step = 0;
    }
    bool met = false;  // the line lies on something closed
    for (std::uint32_t side = 0; !met; side = alive[1 - side] ? side : 1 - side) {
        if (alive[side]) break;  // then both are
        if (head[side] == m_queue[side].size()) {
            for (const Step& step : m_queue[side])
                m_lines[step.via].kind = Kind::Thorn;  // all that hangs on this end
            return true;
        }
        const std::uint32_t index = head[side]++;
        const Step at = m_queue[side][index];
        // A node that a host took away under its lines holds them as they are.
        alive[side] = !m_gathered[at.node].node->m_pStar;
        for (const std::uint32_t next : Raw(at.node)) {
            if (next == at.via || m_lines[next].kind == Kind::Thorn) continue;
            const std::uint32_t node = OtherEnd(next, at.node), mark = m_gathered[node].mark;
            const bool same = mark == m_search + side;
            met = mark == m_search + 1 - side;
            alive[side] = same || m_lines[next].loop || m_lines[next].kind == Kind::Core;
            if (met || alive[side]) {
                if (met || same) {
                    m_lines[next].kind = m_lines[next].loop ? m_lines[next].kind : Kind::Core;
                    contacts[met ? 1 - side : side].push_back(m_gathered[node].step);
                }
                break;
            }
            m_gathered[node].mark = m_search + side;
            m_gathered[node].step = static_cast<std::uint32_t>(m_queue[side].size());
            m_queue[side].push_back({node, next, index});
        }
        if (met || alive[side]) contacts[side].push_back(index);
    }
    for (int side = 0; side < 2; ++side)
        for (std::uint32_t index : contacts[side])
            for (; index != kNone; index = m_queue[side][index].from)
                m_lines[m_queue[side][index].via].kind = Kind::Core;
    return false;
}

// The lines are read in the order in which they lie in memory, and once. Each leaves a note of its entry, and
// so does each node; a note is believed if the entry says the same. `left` counts the lines at a node,
// `through` is their exclusive or, which of a node with a single line left is that line.
void CWalkNet::GatherAll(std::vector<std::uint32_t>& left, std::vector<std::uint32_t>& through) {
    const std::vector<CGjNetLine*> lines = LinesOf(m_db);
    m_lines.reserve(lines.size());
    m_sides.reserve(lines.size());
    m_nodes.reserve(lines.size());
    m_gathered.reserve(lines.size());
    left.reserve(lines.size());
    through.reserve(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i + 8 < lines.size()) {  // fetched while the ones before are entered
            __builtin_prefetch(&lines[i + 8]->m_pStartNode);
            __builtin_prefetch(&lines[i + 8]->m_fStartTangent);
        }
        if (i + 4 < lines.size() && lines[i + 4]->QueryBasicType() == kBasicLine) {
            __builtin_prefetch(lines[i + 4]->m_pStartNode);
            __builtin_prefetch(lines[i + 4]->m_pEndNode);
        }
        CGjNetLine* line = lines[i];
        if (line->QueryBasicType() != kBasicLine || !Counts(line)) continue;
        const std::uint32_t entry = line->m_nWalk = Append(line);
        CGjNetNode* const ends[2] = {line->m_pStartNode, line->m_pEndNode};
        for (int end = 0; end < 2; ++end) {
            CGjNetNode* node = ends[end];
            if (!(node->m_nWalk < m_nodes.size() && m_gathered[node->m_nWalk].node == node)) {
                node->m_nWalk = AppendNode(node);
                left.push_back(0);
                through.push_back(0);
            }
            m_lines[entry].nodes[end] = node->m_nWalk;
            // A node that a host took away under its lines has no star. A loop is one line at its node.
            if (!node->m_pStar || (end == 1 && m_lines[entry].loop)) continue;
            ++left[node->m_nWalk];
            through[node->m_nWalk] ^= entry;
        }
    }
    for (std::uint32_t node = 0; node < m_nodes.size(); ++node) {
        m_gathered[node].rawCount = left[node];
    }
}

void CWalkNet::CutOffThorns(std::vector<std::uint32_t>& left, std::vector<std::uint32_t>& through) {
    std::vector<std::uint32_t> single;
    for (std::uint32_t node = 0; node < m_nodes.size(); ++node)
        if (left[node] == 1) single.push_back(node);
    while (!single.empty()) {
        const std::uint32_t node = single.back();
        single.pop_back();
        if (left[node] != 1) continue;  // the other end of its line was cut off first
        const std::uint32_t line = through[node];
        m_lines[line].kind = Kind::Thorn;
        left[node] = 0;
        const std::uint32_t other = OtherEnd(line, node);
        if (other == node || left[other] == 0) continue;
        through[other] ^= line;
        if (--left[other] == 1) single.push_back(other);
    }
    for (Line& line : m_lines)
        if (line.kind == Kind::Unknown) line.kind = Kind::Core;
}

void CWalkNet::PlaceSpokes(const std::vector<std::uint32_t>& left) {
    std::uint32_t total = 0;
    for (std::uint32_t node = 0; node < m_nodes.size(); ++node) {
        m_nodes[node].first = total;
        total += left[node];
    }
    m_spokes.resize(total);
    std::vector<bool> hasArc(m_nodes.size());
    for (std::uint32_t entry = 0; entry < m_lines.size(); ++entry) {
        const Line& line = m_lines[entry];
        if (line.kind == Kind::Thorn) continue;
        for (int end = 0; end < (line.loop ? 1 : 2); ++end) {
            Node& node = m_nodes[line.nodes[end]];
            if (left[line.nodes[end]] == 0) continue;
            Spoke& spoke = m_spokes[node.first + node.count++];
            spoke = {entry, line.nodes[1 - end], 0, end == 0, line.loop, line.arc};
            if (line.arc) hasArc[line.nodes[end]] = true;
            else spoke.angle = LeavingAngle(line, end == 0, 0);
        }
    }
    for (std::uint32_t node = 0; node < m_nodes.size(); ++node)
        if (hasArc[node]) SetAngles(node);
}

void CWalkNet::StripAll() {
    m_stripped = true;
    std::vector<std::uint32_t> left, through;
    GatherAll(left, through);
    CutOffThorns(left, through);
    PlaceSpokes(left);
}

// --- walking ---------------------------------------------------------------------------------------------

void CWalkNet::Make(std::uint32_t node) {
    if (m_gathered[node].made) return;
    m_gathered[node].made = true;
    Raw(node);
    // The searches below may gather other nodes, but not move this one's lines.
    const std::uint32_t rawFirst = m_gathered[node].rawFirst, rawLast = rawFirst + m_gathered[node].rawCount;
    for (std::uint32_t i = rawFirst; i < rawLast; ++i) IsThorn(m_raw[i]);
    m_nodes[node].first = static_cast<std::uint32_t>(m_spokes.size());
    for (std::uint32_t i = rawFirst; i < rawLast; ++i)
        if (m_lines[m_raw[i]].kind != Kind::Thorn)
            m_spokes.push_back(SpokeOf(m_raw[i], m_lines[m_raw[i]].nodes[0] == node));
    m_nodes[node].count = static_cast<std::uint32_t>(m_spokes.size()) - m_nodes[node].first;
    SetAngles(node);
}

void CWalkNet::SetAngles(std::uint32_t node) {
    float shortest = 100000.0f;
    Spoke* const first = m_spokes.data() + m_nodes[node].first;
    Spoke* const last = first + m_nodes[node].count;
    for (const Spoke* spoke = first; spoke != last; ++spoke)
        shortest = std::min(shortest, m_lines[spoke->line].reach);
    const float r = shortest * 2 / 3;
    for (Spoke* spoke = first; spoke != last; ++spoke)
        spoke->angle = LeavingAngle(m_lines[spoke->line], spoke->leavesStart, r);
}

// An arc is not compared by its tangent but by the chord to a point `r` along it. So a straight line and an
// arc, or two arcs, that leave the node in the same direction are told apart, and on the right side.
float CWalkNet::LeavingAngle(const Line& line, bool leavesStart, float r) {
    if (!line.arc) return line.tangents[leavesStart ? 0 : 1] * kPi / 180.0f;
    float start = 0, end = 0;
    line.line->GetDirectionAngle(start, end);
    const float bend = std::asin(std::clamp(r / 2 / line.line->GetR(), -1.0f, 1.0f));
    return leavesStart ? start + kQuarterTurn + bend : end - kQuarterTurn - bend;
}

int CWalkNet::BranchingEnds(std::uint32_t line) {
    int branching = 0;
    for (int end = 0; end < 2; ++end) {
        const std::uint32_t node = NodeOf(line, end);
        if (!m_stripped) Make(node);
        branching += m_nodes[node].count > 2;
    }
    return branching;
}

CWalkNet::Spoke CWalkNet::Next(std::uint32_t node, std::uint32_t from) {
    if (!m_stripped) Make(node);
    const Spoke* const first = m_spokes.data() + m_nodes[node].first;
    const Spoke* const last = first + m_nodes[node].count;
    float base = 0;
    for (const Spoke* spoke = first; spoke != last; ++spoke)
        if (spoke->line == from) base = Folded(spoke->angle);
    const Spoke* best = nullptr;
    float bestTurn = kTurn;
    for (const Spoke* spoke = first; spoke != last; ++spoke) {
        if (spoke->line == from || m_sides[spoke->line] == kBoth) continue;
        const float turn = Folded(base - spoke->angle);
        if (turn < bestTurn) {
            bestTurn = turn;
            best = spoke;
        }
    }
    return best ? *best : Spoke();
}
