#include "plates/wei_ban.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "geometry/region_measures.h"
#include "model/by_identity.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"
#include "plates/walk_net.h"
#include "platform/gbk.h"
#include "shell/tvo_frame_base.h"

namespace {

/// One walk: the lines passed, with flags (1 along the line, 0 against it), and their outline.
struct Walk {
    std::vector<std::uint32_t> lines;
    CArray<int> flags;
    CFRegion region;
    bool closed = false;
};

// The whole net is looked at once a walk is to begin at every eighth node or so.
constexpr int kMuch = 8;

// A line of which one side was walked is walked on the other; a fresh one from its start, or from the node
// that was reached. Sides stay walked also when the walk does not close.
void TakeWalk(CWalkNet& net, std::uint32_t element, Walk& walk) {
    walk.lines.clear();
    walk.flags.RemoveAll();
    walk.region.RemoveAll();
    walk.closed = false;
    if (net.SideOf(element) == CWalkNet::kBoth) return;
    const bool fromEnd = net.SideOf(element) == CWalkNet::kForward;
    CWalkNet::Spoke spoke = net.SpokeOf(element, !fromEnd);
    const std::uint32_t begin = net.NodeOf(element, fromEnd);
    for (std::uint32_t at = begin; spoke.line != CWalkNet::kNone; spoke = net.Next(at, spoke.line)) {
        const CWalkNet::Side walked = net.SideOf(spoke.line);
        const bool along = walked == CWalkNet::kNeither ? spoke.leavesStart : walked == CWalkNet::kBackward;
        // The side that is left leads to the node that the walk stands on, where it has been before: at a
        // node that holds two pieces of the net together. The side belongs to another walk.
        if (along != spoke.leavesStart && !spoke.loop) return;
        const CWalkNet::Side once = along ? CWalkNet::kForward : CWalkNet::kBackward;
        net.SetSide(spoke.line, walked == CWalkNet::kNeither ? once : CWalkNet::kBoth);
        walk.lines.push_back(spoke.line);
        walk.flags.Add(along);
        walk.region.Add(net.ShootOf(at, spoke, along));
        at = spoke.far;
        if (at == begin) {
            walk.closed = true;
            return;
        }
    }
}

}  // namespace

CWeiBan::CWeiBan() = default;
CWeiBan::~CWeiBan() = default;

void CWeiBan::SetData(CGridDataBase* db, CTvoFrameBase* frame) {
    m_pDataBase = db;
    m_pFrame = frame;
}

void CWeiBan::AddElement(CGjNetLine* line) {
    const unsigned long id = line->get_m_dwGouJianID();
    if (m_pDataBase->CanJionWeiBan(line)) m_mapElement.Insert(id, line);
}

void CWeiBan::AddElement(CArray<CGouJianEx*, CGouJianEx*>* lines) {
    for (CGouJianEx* line : *lines) AddElement(static_cast<CGjNetLine*>(line));
}

void CWeiBan::AddElement(CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>* lines) {
    for (CGouJianEx* line : ByIdentity(*lines)) AddElement(static_cast<CGjNetLine*>(line));
}

void CWeiBan::PrepareData() {
    m_net = std::make_unique<CWalkNet>(*m_pDataBase);
    if (m_mapElement.GetCount() * kMuch > m_pDataBase->m_mapStar.GetCount()) m_net->StripAll();
    m_aElement.clear();
    // After StripAll the entries stand in the order of identities, as the elements mostly do: then a line need not be
    // looked at to find its entry.
    std::vector<std::pair<unsigned long, CGouJianEx*>> elements, kept;
    elements.reserve(static_cast<std::size_t>(m_mapElement.GetCount()));
    m_mapElement.ForEach([&](unsigned long id, CGouJianEx* obj) { elements.emplace_back(id, obj); });
    if (!std::is_sorted(elements.begin(), elements.end())) std::sort(elements.begin(), elements.end());
    kept.reserve(elements.size());
    std::uint32_t next = 0;
    for (const auto& element : elements) {
        auto* obj = static_cast<CGjNetLine*>(element.second);
        const std::uint32_t line = next < m_net->GetCount() && m_net->LineAt(next) == obj ? next : m_net->FindElement(obj);
        next = line == CWalkNet::kNone ? next : line + 1;
        if (line != CWalkNet::kNone && m_net->IsThorn(line)) continue;
        kept.push_back(element);
        if (line != CWalkNet::kNone) m_aElement.push_back(line);
    }
    if (kept.size() == elements.size()) return;
    m_mapElement.RemoveAll();
    for (const auto& [id, obj] : kept) m_mapElement.SetAt(id, obj);
}

int CWeiBan::IsCi(CGouJianEx* line) {
    if (!m_net || !line || line->QueryBasicType() != kBasicLine) return 0;
    const std::uint32_t entry = m_net->Find(static_cast<CGjNetLine*>(line));
    if (entry == CWalkNet::kNone || !m_net->IsThorn(entry)) return 0;
    m_mapCi.SetAt(line->get_m_dwGouJianID(), line);
    return 1;
}

bool CWeiBan::CanBorder(CGjNetLine* line) {
    const std::uint32_t entry = m_net ? m_net->Find(line) : CWalkNet::kNone;
    return entry != CWalkNet::kNone && !m_net->IsThorn(entry);
}

void CWeiBan::DoWeiBan() {
    PrepareData();
    // From the lines between nodes where nothing branches off to those between two where something does. A
    // walk that begins on a line that holds two pieces of net together fails, and leaves its sides walked:
    // this way the pieces come first.
    struct Element {
        int branching;
        std::uint32_t line;
    };
    std::vector<Element> elements;
    elements.reserve(m_aElement.size());
    for (const std::uint32_t line : m_aElement) elements.push_back({m_net->BranchingEnds(line), line});
    std::stable_sort(elements.begin(), elements.end(),
                     [](const Element& a, const Element& b) { return a.branching < b.branching; });

    const bool tell = m_pFrame && m_bShowProgress;
    const auto total = static_cast<float>(m_mapElement.GetCount());
    int plates = 1, outers = 1;  // the counters go on when the data base refuses the plate
    Walk walk;
    CArray<CGjNetLine*> lines;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (tell) m_pFrame->ShowProgress(static_cast<int>(static_cast<float>(i + 1) * 100.0f / total));
        for (int side = 0; side < 2; ++side) {
            TakeWalk(*m_net, elements[i].line, walk);
            // A walk that begins on a line between two pieces of net comes back over it, and is none.
            if (!walk.closed || walk.lines.size() < 2 || walk.lines.front() == walk.lines.back()) continue;
            lines.RemoveAll();
            for (const std::uint32_t line : walk.lines) {
                lines.Add(m_net->LineAt(line));
                __builtin_prefetch(&m_net->LineAt(line)->m_nArc);  // what the plate reads of its lines, all at once
                __builtin_prefetch(&m_net->LineAt(line)->m_fLength);
            }
            const bool outer = !IsNiShiZhen(walk.region);
            int& number = outer ? outers : plates;
            CMianGouJian* plate =
                m_pDataBase->CreateJianTuBanObject(outer, lines, !outer, walk.flags, number++);
            if (plate) (outer ? m_arrOuterBan : m_arrBan).Add(plate);
        }
    }
    if (tell) m_pFrame->ShutDownProgress();
}

void CWeiBan::PrintWeiBanData(const char* file) {
    std::FILE* f = std::fopen(file, "w");
    if (!f) return;
    std::fprintf(f, "%s", Utf8ToGbk("计算网线\n").c_str());
    const auto number = [](const CGouJianEx* obj) { return static_cast<int>(obj->get_m_dwGouJianNO()); };
    for (const CGouJianEx* line : ByIdentity(m_mapElement)) std::fprintf(f, "NetLine:%d\n", number(line));
    std::fprintf(f, "STAR\n");
    std::vector<CGjNetNode*> nodes;
    for (POSITION p = m_net ? m_pDataBase->m_mapStar.GetStartPosition() : nullptr; p;)
        nodes.push_back(m_pDataBase->m_mapStar.GetNext(p)->m_pNode);
    std::sort(nodes.begin(), nodes.end(), [](const CGjNetNode* a, const CGjNetNode* b) {
        return a->get_m_dwGouJianID() < b->get_m_dwGouJianID();
    });
    for (CGjNetNode* node : nodes) {
        const std::uint32_t entry = m_net->NodeFor(node);
        int lines = 0;
        m_net->ForEachAt(entry, [&](const CGjNetLine*) { ++lines; });
        if (lines == 0 && m_net->HasLines(entry)) continue;  // the star fell with its thorns
        std::fprintf(f, "Node%-3d:\t", number(node));
        m_net->ForEachAt(entry, [&](const CGjNetLine* line) { std::fprintf(f, "L%-3d ", number(line)); });
        std::fprintf(f, "\n");
    }
    std::fclose(f);
}
