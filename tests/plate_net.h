// A host for tests of plates, and its plates as text that can be compared.
#pragma once
#include <array>
#include <sstream>

#include "net_text.h"
#include "plate_literal.h"
#include "plates/wei_ban.h"

constexpr unsigned char kLoadType = 21, kCombinedType = 30;

/// Hangs on a plate: a value that must not get lost while its plate stands.
class CTestLoad : public CGouJianEx {
public:
    CTestLoad(CMianGouJian* plate, int value) : m_dwPlateID(plate->get_m_dwGouJianID()), m_nValue(value) {}
    int IsPhysicalGouJian() override { return 0; }
    std::uint32_t m_dwPlateID;
    int m_nValue;
};

/// Refuses outer contours (or not), keeps loads on plates, and follows edits by the library or by the oracle.
class CPlateNet : public CTestNet {
public:
    int m_bRefuseOuter = 1;
    bool m_bLiteral = false;
    std::map<std::uint32_t, int> m_birth;  // lines in order of their first entry: the same in nets built alike
    std::string m_hooks;                   // what was moved from plate to plate

    // One at a time is the current one: plates make their synthetic lines through it.
    void BeCurrent() {
        g_pGridDataBase = this;
        g_pCurrentDataBase = this;
    }
    void Form() {
        BeCurrent();
        m_bLiteral ? literal::DoWeiBan(*this) : DoWeiBan();
    }
    void Complete() {
        BeCurrent();
        m_bLiteral ? literal::CompleteDPC(*this) : CompleteDPC();
    }
    /// One edit in a step of its own, with the bracket and what a host clears away behind it.
    void Edit(const std::string& text) {
        BeCurrent();
        Start();
        PrepareDPC();
        Build(*this, text);
        Complete();
        DeleteIndependentNetNode();
    }
    std::vector<CMianGouJian*> Plates(unsigned char type = GJLX_MIAN) {
        CArray<CGouJianEx*> all;
        GetGouJianArray(type, &all);
        std::vector<CMianGouJian*> plates;
        for (CGouJianEx* obj : all) plates.push_back(static_cast<CMianGouJian*>(obj));
        return plates;
    }
    CTestLoad* LoadOn(CMianGouJian* plate) {
        CArray<CGouJianEx*> all;
        GetGouJianArray(kLoadType, &all);
        for (CGouJianEx* obj : all)
            if (static_cast<CTestLoad*>(obj)->m_dwPlateID == plate->get_m_dwGouJianID()) return static_cast<CTestLoad*>(obj);
        return nullptr;
    }
    void AddLoad(CMianGouJian* plate, int value) {
        auto* load = new CTestLoad(plate, value);  // owned by the container from AddGouJian on
        load->set_m_dwGouJianID(GetNextID(kLoadType));
        AddGouJian(load);
    }
    int LogLength() {
        struct Opener : CObjectUndoContainEx {
            static int Count(CObjectUndoContainEx& c) { return (c.*(&Opener::m_listUndo)).GetCount(); }
        };
        return Opener::Count(m_cContain);
    }

    void OnAddGouJian(CGouJianEx* obj) override {
        if (obj->QueryBasicType() == kBasicLine) m_birth.emplace(obj->get_m_dwGouJianID(), static_cast<int>(m_birth.size()));
        CTestNet::OnAddGouJian(obj);
    }
    CMianGouJian* InstanceMianGouJian(int type) override {
        if (type == 1 && m_bRefuseOuter) return nullptr;
        CMianGouJian* plate = CTestNet::InstanceMianGouJian(type);
        if (m_bCombineMode) {
            plate->set_m_dwGouJianID(GetNextID(m_byteCombineType));
            plate->m_dwTag = m_dwCombineTag;
        }
        return plate;
    }
    CGouJianEx* QueryGouJianDependentOnMianGouJian(CMianGouJian* plate) override { return LoadOn(plate); }
    void DeleteGouJianDependentOnMianGouJian(CMianGouJian* plate) override {
        if (CTestLoad* load = LoadOn(plate)) DeleteGouJian(load);
    }
    void CreateGouJianDependentOnMianGouJian(CMianGouJian*, CGouJianEx* dependent, CMianGouJian* replacement) override {
        AddLoad(replacement, static_cast<CTestLoad*>(dependent)->m_nValue);
    }
};

// --- plates as text -----------------------------------------------------------------------------------------

using Border = std::vector<std::pair<int, int>>;  // number of the line, direction

inline Border BorderOf(CPlateNet& net, CMianGouJian* plate) {
    Border border;
    for (int i = 0; i < plate->m_arrBoundery.GetSize(); ++i) {
        const auto it = plate->m_arrBoundery[i] ? net.m_birth.find(plate->m_arrBoundery[i]->get_m_dwGouJianID()) : net.m_birth.end();
        border.emplace_back(it == net.m_birth.end() ? -1 : it->second, plate->m_arrBounderyDir[i]);
    }
    return border;
}

/// The same cycle, wherever it began, begins with its least entry.
inline Border Cyclic(Border border) {
    Border least = border;
    for (std::size_t i = 0; i < border.size(); ++i) {
        std::rotate(border.begin(), border.begin() + 1, border.end());
        least = std::min(least, border);
    }
    return least;
}

inline std::string Show(const Border& border) {
    std::ostringstream out;
    for (const auto& [line, dir] : border) out << ' ' << (dir ? "" : "-") << line;
    return out.str();
}

/// Figures to the last bit, the load and the border in its cyclic form.
inline std::string Show(CPlateNet& net, CMianGouJian* plate) {
    char text[160];
    std::snprintf(text, sizeof text, "type %d area %.9g at %.9g,%.9g around %.9g tag %u sides %d", plate->get_Gjlx(),
                  static_cast<double>(plate->GetArea()), static_cast<double>(plate->m_fCenterX), static_cast<double>(plate->m_fCenterY),
                  static_cast<double>(plate->GetZhouChang()), plate->m_dwTag, plate->m_nXingZhuangBian);
    const CTestLoad* load = net.LoadOn(plate);
    return text + (load ? " load " + std::to_string(load->m_nValue) : std::string()) + " lines" + Show(Cyclic(BorderOf(net, plate)));
}

inline std::string ShowPlates(CPlateNet& net) {
    std::multiset<std::string> texts;
    for (unsigned char type : {static_cast<unsigned char>(GJLX_MIAN), kCombinedType})
        for (CMianGouJian* plate : net.Plates(type)) texts.insert(Show(net, plate));
    std::string out;
    for (const std::string& t : texts) out += t + "\n";
    return out;
}

/// Each line with the plates that it borders.
inline std::string ShowWays(CPlateNet& net) {
    std::multiset<std::string> texts;
    net.m_mapPlateWay.ForEach([&](CGjNetLine* line, CPlateWay* way) {
        std::multiset<std::string> plates;
        for (CMianGouJian* plate : way->m_arrPlate) plates.insert(Show(net, plate));
        std::string text = std::to_string(net.m_birth[line->get_m_dwGouJianID()]) + ":";
        for (const std::string& p : plates) text += " [" + p + "]";
        texts.insert(text);
    });
    std::string out;
    for (const std::string& t : texts) out += t + "\n";
    return out;
}

/// What must hold of the ways after any finished edit: every border line of every standing plate is in the store
/// and knows the plate, and no way names a plate that doesn't stand or doesn't border the line.
inline std::string WaysHold(CPlateNet& net) {
    std::size_t entries = 0, named = 0;
    for (CMianGouJian* plate : net.Plates()) {
        std::set<CGjNetLine*> lines;
        for (CGjNetLine* line : plate->m_arrBoundery) {
            if (!line || net.FindGouJian(line->get_m_dwGouJianID()) != line) return "a border line that isn't in the store: " + Show(net, plate);
            CPlateWay* way = nullptr;
            if (!net.m_mapPlateWay.Lookup(line, way)) return "no way for a border line: " + Show(net, plate);
            if (std::count(way->m_arrPlate.begin(), way->m_arrPlate.end(), plate) != 1) return "not once in a way: " + Show(net, plate);
            lines.insert(line);
        }
        named += lines.size();
        int sides = 0;
        for (const CGjXingZhuangBian& side : plate->m_arrXingZhuangBian)
            for (const CJainTuBanBian& bian : side.m_arrBian)
                if (bian.m_pNetLine != plate->m_arrBoundery[sides++]) return "sides and border differ: " + Show(net, plate);
        if (sides != plate->m_arrBoundery.GetSize()) return "sides and border differ in length";
        if (plate->m_arrXingZhuangLine.GetSize() != plate->m_nXingZhuangBian) return "synthetic lines missing: " + Show(net, plate);
    }
    net.m_mapPlateWay.ForEach([&](CGjNetLine*, CPlateWay* way) {
        for (CMianGouJian* plate : way->m_arrPlate)
            if (plate->get_Gjlx() == GJLX_MIAN) ++entries;
    });
    return entries == named ? "" : "a way names a plate that isn't there";
}
