// A tongue for tests of the net: a text builds a net, and a net prints itself as text in canonical order.
#pragma once
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "model/goujian.h"
#include "model/profile.h"
#include "net/grid_data_base.h"

constexpr unsigned char kRiderType = 20;

/// A component that rides on a line: it has a name and follows the line through breaks and merges.
class CRider : public CGouJianEx {
public:
    explicit CRider(std::string name, CGjNetLine* line) : m_strName(std::move(name)), m_pLine(line) {}
    int IsPhysicalGouJian() override { return 0; }
    std::string m_strName;
    CGjNetLine* m_pLine;  // borrowed
};

/// A host as tests need it: riders on lines, merging by a switch, nodes without lines are independent. It keeps
/// a plain record of what the stars of pairs must hold, and sees to it that no identity comes twice.
class CTestNet : public CGridDataBase {
public:
    enum Merging { kNever, kWithoutRiders, kAlways };

    Merging m_eMerging = kWithoutRiders;
    std::map<std::pair<unsigned, unsigned>, std::vector<CGouJianEx*>> m_pairs;  // by identities of both nodes
    std::set<unsigned long> m_handedOut;
    std::string m_fault;                                                        // first broken promise
    std::string m_calls;                                                        // of the hooks about riders

    unsigned long GetNextID(unsigned char type) override {
        const unsigned long id = CGridDataBase::GetNextID(type);
        if (!m_handedOut.insert(id).second && m_fault.empty()) m_fault = "identity handed out twice";
        return id;
    }
    void OnAddGouJian(CGouJianEx* obj) override {
        if (obj->QueryBasicType() == kBasicLine) {
            auto& held = m_pairs[PairOf(obj)];
            if (std::find(held.begin(), held.end(), obj) == held.end()) held.push_back(obj);
        }
        CGridDataBase::OnAddGouJian(obj);
    }
    void OnDelGouJian(CGouJianEx* obj) override {
        if (obj->QueryBasicType() == kBasicLine) m_pairs.erase(PairOf(obj));  // whoever else stood there is forgotten
        CGridDataBase::OnDelGouJian(obj);
    }
    int QueryGouJianOnNetLine(CGjNetLine* line, CArray<CGouJianEx*>& riders) override {
        CArray<CGouJianEx*> all;
        GetGouJianArray(kRiderType, &all);
        for (CGouJianEx* obj : all)
            if (static_cast<CRider*>(obj)->m_pLine == line) riders.Add(obj);
        return !riders.IsEmpty();
    }
    void CreateGouJianAfterBreak(CGjNetLine* old, CGjNetLine* part, CArray<CGouJianEx*>& riders) override {
        if (FindGouJian(old->get_m_dwGouJianID())) m_fault = "a rider is handed on while its old line stands";
        for (CGouJianEx* obj : riders) {
            if (FindGouJian(obj->get_m_dwGouJianID())) m_fault = "a rider is handed on before it is deleted";
            AddRider(static_cast<CRider*>(obj)->m_strName, part);
        }
    }
    void CreateGouJianAfterMerge(CGjNetLine* merged, CGjNetLine*, CGjNetLine*, CArray<CGouJianEx*>& a, CArray<CGouJianEx*>& b,
                                 int mode) override {
        m_calls += "merge" + std::to_string(mode) + " ";
        for (CGouJianEx* obj : a) AddRider(static_cast<CRider*>(obj)->m_strName, merged);
        for (CGouJianEx* obj : b) AddRider(static_cast<CRider*>(obj)->m_strName, merged);
    }
    int CanMergeNetLineTogetherWithGouJian(CGjNetLine*, CArray<CGouJianEx*>& a, CGjNetLine*, CArray<CGouJianEx*>& b, int,
                                           CGjNetNode*) override {
        return m_eMerging == kAlways || (m_eMerging == kWithoutRiders && a.IsEmpty() && b.IsEmpty());
    }
    int IsIndependentNetNode(CGjNetNode* node) override {
        CArray<CGouJianEx*> lines;
        return GetConnectedNetLine(node, lines) == 0;
    }

    void AddRider(const std::string& name, CGjNetLine* line) {
        auto* rider = new CRider(name, line);  // owned by the container from AddGouJian on
        rider->set_m_dwGouJianID(GetNextID(kRiderType));
        AddGouJian(rider);
    }
    static std::pair<unsigned, unsigned> PairOf(CGouJianEx* obj) {
        auto* line = static_cast<CGjNetLine*>(obj);
        return {line->m_pStartNode->get_m_dwGouJianID(), line->m_pEndNode->get_m_dwGouJianID()};
    }
    /// Raises the limit of the log, which only derived containers may.
    void SetSteps(int steps) {
        struct Opener : CObjectUndoContainEx {
            static void Set(CObjectUndoContainEx& c, int n) { (c.*(&Opener::SetTotalSteps))(n); }
        };
        Opener::Set(m_cContain, steps);
    }
    void Undo() { CGridDataBase::Undo(nullptr, nullptr); }
    void Redo() { CGridDataBase::Redo(nullptr, nullptr); }
};

/// Sets the net tolerance for a scope.
class CToleranceScope {
public:
    explicit CToleranceScope(int tolerance) : m_before(g_cTvoProfile.m_nNetTolerance) { g_cTvoProfile.m_nNetTolerance = tolerance; }
    CToleranceScope(const CToleranceScope&) = delete;
    CToleranceScope& operator=(const CToleranceScope&) = delete;
    ~CToleranceScope() { g_cTvoProfile.m_nNetTolerance = m_before; }

private:
    int m_before;
};

inline CFPoint P(float x, float y) { return CFPoint(x, y, 0); }

/// Angles are written 0..90; sscanf would take the first dot for a fraction.
inline std::string WithoutDots(std::string text) {
    for (std::size_t at; (at = text.find("..")) != std::string::npos;) text[at] = text[at + 1] = ' ';
    return text;
}

/// A line off the net for the length of a test: "x,y - x,y", "x,y ~ x,y BULGE" or "arc x,y R A..B".
class OffNet {
public:
    explicit OffNet(const char* s) {
        float a, b, c, d, e;
        if (std::sscanf(WithoutDots(s).c_str(), "arc %f,%f %f %f %f", &a, &b, &c, &d, &e) == 5)
            m_line = ConstructNetLineObject(CFPArc(a, b, c, d, e));
        else if (std::sscanf(s, "%f,%f - %f,%f", &a, &b, &c, &d) == 4)
            m_line = ConstructNetLineObject(CFPLine(P(a, b), P(c, d)));
        else if (std::sscanf(s, "%f,%f ~ %f,%f %f", &a, &b, &c, &d, &e) == 5)
            m_line = ConstructNetLineObject(P(a, b), P(c, d), 1, e);
    }
    OffNet(const OffNet&) = delete;
    OffNet& operator=(const OffNet&) = delete;
    ~OffNet() { DeleteNetLineObject(m_line); }
    operator CGjNetLine*() { return m_line; }
    CGjNetLine* operator->() { return m_line; }

private:
    CGjNetLine* m_line = nullptr;
};

// --- walking ------------------------------------------------------------------------------------------------

inline std::vector<CGjNetNode*> NodesOf(CGridDataBase& net) {
    CArray<CGouJianEx*> all;
    net.GetGouJianArray(GJLX_NET_NODE, &all);
    std::vector<CGjNetNode*> nodes;
    for (CGouJianEx* obj : all) nodes.push_back(static_cast<CGjNetNode*>(obj));
    return nodes;
}

/// By place: start, end, bulge, storey, then identity. So the order is the same whatever was undone before.
inline std::vector<CGjNetLine*> LinesOf(CGridDataBase& net) {
    CArray<CGouJianEx*> all;
    net.GetGouJianArray(GJLX_NET_LINE, &all);
    std::vector<CGjNetLine*> lines;
    for (CGouJianEx* obj : all) lines.push_back(static_cast<CGjNetLine*>(obj));
    const auto key = [](const CGjNetLine* l) {
        const auto near = [](float v) { return std::lround(v * 10.0f); };  // as it is printed, so that a last bit decides nothing
        return std::make_tuple(near(l->m_fStartX), near(l->m_fStartY), near(l->m_fEndX), near(l->m_fEndY), l->m_fStartX, l->m_fStartY, l->m_fEndX, l->m_fEndY, l->m_nArc, l->m_fBulge, l->m_nCeng,
                               l->get_m_dwGouJianID());
    };
    std::sort(lines.begin(), lines.end(), [&](CGjNetLine* a, CGjNetLine* b) { return key(a) < key(b); });
    return lines;
}

/// The line of the current storey whose middle is nearest to a place, or null.
inline CGjNetLine* LineAt(CGridDataBase& net, float x, float y) {
    CGjNetLine* best = nullptr;
    const auto distance = [&](const CGjNetLine* l) { return std::hypot(l->m_fMidX - x, l->m_fMidY - y); };
    for (CGjNetLine* l : LinesOf(net))
        if (l->m_nCeng == net.GetCurCeng() && (!best || distance(l) < distance(best))) best = l;
    return best;
}

inline std::string Count(CGridDataBase& net) {  // nodes/lines
    return std::to_string(net.GetGouJianCount(GJLX_NET_NODE)) + "/" + std::to_string(net.GetGouJianCount(GJLX_NET_LINE));
}

// --- building -----------------------------------------------------------------------------------------------

/// Commands split by ";":
///   0,0 - 6000,0           a straight line          0,0 ~ 6000,0 -45    an arc with its bulge
///   arc 0,0 5000 0..90     centre, radius, angles   5,5                 a node
///   get 0,0 - 6000,0       without breaking         getarc 0,0 5000 0..90
///   a @ 3000,0             a rider on the line whose middle is nearest there
///   delete 3,0 & 5,0       lines by their middles, together
///   cut 3,0                BreakNetLine of a line, by its middle
///   clean                  independent nodes go     start, undo, redo, storey N, break N, merge N
inline void Build(CTestNet& net, const std::string& text) {
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t to = std::min(text.find(';', from), text.size());
        std::string item = text.substr(from, to - from);
        from = to + 1;
        item.erase(0, item.find_first_not_of(" \n"));
        item.erase(item.find_last_not_of(" \n") + 1);
        item = WithoutDots(item);
        const char* s = item.c_str();
        float a = 0, b = 0, c = 0, d = 0, e = 0;
        char name[16];
        int n = 0;
        const auto is = [&](const char* word) { return item.rfind(word, 0) == 0; };
        if (item.empty())
            continue;
        else if (item == "start")
            net.Start();
        else if (item == "undo")
            net.Undo();
        else if (item == "redo")
            net.Redo();
        else if (item == "clean")
            net.DeleteIndependentNetNode();
        else if (std::sscanf(s, "storey %d", &n) == 1)
            net.SetCurCeng(n);
        else if (std::sscanf(s, "break %d", &n) == 1)
            net.m_bAutoBreak = n;
        else if (std::sscanf(s, "merge %d", &n) == 1)
            net.m_bAutoMerge = n;
        else if (is("delete")) {
            CArray<CGouJianEx*> doomed;
            for (const char* p = s + 6; p && std::sscanf(p, " %f,%f", &a, &b) == 2; p = std::strchr(p, '&'), p = p ? p + 1 : p)
                doomed.Add(LineAt(net, a, b));
            net.DeleteNetLine(doomed);
        } else if (std::sscanf(s, "cut %f,%f", &a, &b) == 2)
            net.BreakNetLine(LineAt(net, a, b));
        else if (std::sscanf(s, "arc %f,%f %f %f %f", &a, &b, &c, &d, &e) == 5)
            net.AddArc(CFPoint(a, b, 0), c, d, e);
        else if (std::sscanf(s, "getarc %f,%f %f %f %f", &a, &b, &c, &d, &e) == 5)
            net.GetArc(CFPoint(a, b, 0), c, d, e);
        else if (std::sscanf(s, "get %f,%f - %f,%f", &a, &b, &c, &d) == 4)
            net.GetNetLine(CFPoint(a, b, 0), CFPoint(c, d, 0), 0, 0);
        else if (std::sscanf(s, "%f,%f - %f,%f", &a, &b, &c, &d) == 4)
            net.AddNetLine(CFPoint(a, b, 0), CFPoint(c, d, 0), 0, 0);
        else if (std::sscanf(s, "%f,%f ~ %f,%f %f", &a, &b, &c, &d, &e) == 5)
            net.AddNetLine(CFPoint(a, b, 0), CFPoint(c, d, 0), 1, e);
        else if (std::sscanf(s, "%15[a-z] @ %f,%f", name, &a, &b) == 3)
            net.AddRider(name, LineAt(net, a, b));
        else if (std::sscanf(s, "%f,%f", &a, &b) == 2)
            net.AddNetNode(a, b);
        else
            net.m_fault = "not understood: " + item;
    }
}

// --- printing -----------------------------------------------------------------------------------------------

inline std::string Number(float v, int digits = 1) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, static_cast<double>(v));
    std::string s = text;
    if (s.find('.') != std::string::npos) s.erase(s.find_last_not_of('0') + 1);
    if (!s.empty() && s.back() == '.') s.pop_back();
    return s == "-0" ? "0" : s;
}

inline std::string Place(float x, float y) { return Number(x) + "," + Number(y); }

inline std::string Show(CGjNetLine* l) {
    if (!l) return "null";
    std::string s = Place(l->m_pStartNode->m_fX, l->m_pStartNode->m_fY) + (l->m_nArc ? " ~ " : " - ") +
                    Place(l->m_pEndNode->m_fX, l->m_pEndNode->m_fY);
    if (l->m_nArc) s += " " + Number(l->m_fBulge, 3);
    if (l->m_nCeng != -1) s += " on " + std::to_string(l->m_nCeng);
    return s;
}

/// Lines with their riders in canonical order, then nodes without lines.
inline std::string Show(CTestNet& net) {
    std::vector<std::string> parts;
    std::set<CGjNetNode*> used;
    for (CGjNetLine* l : LinesOf(net)) {
        std::string s = Show(l);
        CArray<CGouJianEx*> riders;
        net.QueryGouJianOnNetLine(l, riders);
        std::vector<std::string> names;
        for (CGouJianEx* r : riders) names.push_back(static_cast<CRider*>(r)->m_strName);
        std::sort(names.begin(), names.end());
        for (const std::string& name : names) s += " {" + name + "}";
        parts.push_back(s);
        used.insert({l->m_pStartNode, l->m_pEndNode});
    }
    std::vector<CGjNetNode*> lone;
    for (CGjNetNode* n : NodesOf(net))
        if (!used.count(n)) lone.push_back(n);
    std::sort(lone.begin(), lone.end(), [](auto* a, auto* b) {
        return std::make_tuple(a->m_fX, a->m_fY, a->m_nCeng) < std::make_tuple(b->m_fX, b->m_fY, b->m_nCeng);
    });
    for (CGjNetNode* n : lone) parts.push_back(Place(n->m_fX, n->m_fY) + (n->m_nCeng != -1 ? " on " + std::to_string(n->m_nCeng) : ""));
    std::string out;
    for (const std::string& p : parts) out += (out.empty() ? "" : "; ") + p;
    return out;
}

/// Every bit of the net, with identities or without: two nets that print the same are the same.
inline std::string Dump(CTestNet& net, bool identities) {
    std::vector<std::string> parts;
    char text[256];
    for (CGjNetNode* n : NodesOf(net)) {
        std::snprintf(text, sizeof text, "node %.9g,%.9g on %d", static_cast<double>(n->m_fX), static_cast<double>(n->m_fY), n->m_nCeng);
        parts.push_back(text + (identities ? " #" + std::to_string(n->get_m_dwGouJianID()) : ""));
    }
    for (CGjNetLine* l : LinesOf(net)) {
        std::snprintf(text, sizeof text, "line %.9g,%.9g %.9g,%.9g arc %d %.9g on %d", static_cast<double>(l->m_pStartNode->m_fX),
                      static_cast<double>(l->m_pStartNode->m_fY), static_cast<double>(l->m_pEndNode->m_fX),
                      static_cast<double>(l->m_pEndNode->m_fY), l->m_nArc, static_cast<double>(l->m_fBulge), l->m_nCeng);
        parts.push_back(text + (identities ? " #" + std::to_string(l->get_m_dwGouJianID()) : ""));
    }
    std::sort(parts.begin(), parts.end());
    std::string out;
    for (const std::string& p : parts) out += p + "\n";
    return out;
}

/// Builds and prints.
inline std::string Net(const std::string& text) {
    CTestNet net;
    Build(net, text);
    return net.m_fault.empty() ? Show(net) : net.m_fault;
}

inline std::string NetCount(const std::string& text) {
    CTestNet net;
    Build(net, text);
    return net.m_fault.empty() ? Count(net) : net.m_fault;
}
