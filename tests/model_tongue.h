// Models for the tests of model files: one with everything in it, its text, and files damaged on purpose.
#pragma once
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "host/models/crc32.h"
#include "host/models/model_format.h"
#include "host/models/model_host.h"
#include "host/models/model_sections.h"
#include "net_text.h"
#include "plates/mian_goujian.h"

constexpr unsigned char kNoteType = 30;

/// A component of the host: a remark on a plate.
class CNote : public CGouJianEx {
public:
    int IsPhysicalGouJian() override { return 0; }
    int WriteBinary(std::FILE* file) override {
        return std::fwrite(&m_dwPlate, 4, 1, file) == 1 && std::fwrite(m_strText.data(), 1, m_strText.size(), file) == m_strText.size();
    }
    int ReadBinary(std::FILE* file) override {
        if (std::fread(&m_dwPlate, 4, 1, file) != 1) return 0;
        for (int c; (c = std::fgetc(file)) != EOF;) m_strText += static_cast<char>(c);
        return 1;
    }
    std::uint32_t m_dwPlate = 0;
    std::string m_strText;
};

class NoteHost : public ModelHost {
public:
    std::unique_ptr<CGouJianEx> Make(unsigned char type) const override {
        return type == kNoteType ? std::make_unique<CNote>() : nullptr;
    }
    bool CanStand(const CGouJianEx& note, CGridDataBase& db) const override {
        return db.FindGouJian(static_cast<const CNote&>(note).m_dwPlate) != nullptr;
    }
    void WriteData(CGridDataBase&, std::FILE* out) const override { std::fputs(m_motto.c_str(), out); }
    bool ReadData(CGridDataBase&, std::FILE* in) const override {
        m_motto.clear();
        for (int c; (c = std::fgetc(in)) != EOF;) m_motto += static_cast<char>(c);
        return true;
    }
    mutable std::string m_motto = "plates on grids";
};

/// A plate of lines in walk order; one shape side for each.
inline CMianGouJian* AddPlate(CGridDataBase& net, const std::vector<std::pair<CGjNetLine*, int>>& border) {
    auto* plate = new CMianGouJian;  // the container's, from AddGouJian on
    plate->m_pDataBase = &net;
    plate->set_m_dwGouJianID(net.GetNextID(GJLX_MIAN));
    plate->set_m_dwGouJianNO(plate->get_m_dwGouJianID() & 0xFFFFFF);
    for (const auto& [line, direction] : border) {
        CJainTuBanBian side;
        side.m_nIndex = 1;
        side.m_nLineNO = static_cast<int>(line->get_m_dwGouJianNO());
        side.m_nLineID = static_cast<int>(line->get_m_dwGouJianID());
        side.m_nDirection = direction;
        side.m_pNetLine = line;
        CGjXingZhuangBian shape;
        shape.m_nIndex = ++plate->m_nXingZhuangBian;
        shape.m_nBian = 1;
        shape.m_arrBian.Add(side);
        plate->m_arrXingZhuangBian.Add(shape);
    }
    net.AddGouJian(plate);
    return plate;
}

/// Arcs, storeys, tags, a hidden line, numbers of analyses, deleted lines, a plate, a remark on it.
inline void BuildEverything(CTestNet& net) {
    Build(net, "0,0 - 6000,0; 6000,0 - 6000,4000; 0,4000 - 6000,4000; 0,0 - 0,4000; 3000,-1000 - 3000,5000;"
               "6000,0 ~ 9000,3000 -45; 20000,20000; delete 3000,4500; storey 2; 0,0 - 6000,0; arc 0,0 5000 350..10");
    net.SetCurCeng(-1);
    LineAt(net, 3000, -500)->set_m_byteStatus(GJ_STATUS_HIDDEN);
    LineAt(net, 6000, 2000)->m_dwTag = 77;
    LineAt(net, 4500, 0)->m_nFEM_ID = -12;
    NodesOf(net).front()->m_fZ = 1500;
    CMianGouJian* plate = AddPlate(net, {{LineAt(net, 1500, 0), 1}, {LineAt(net, 3000, 2000), 1}, {LineAt(net, 1500, 4000), 0}, {LineAt(net, 0, 2000), 0}});
    AddPlate(net, {{LineAt(net, 4500, 0), 1}, {LineAt(net, 6000, 2000), 1}, {LineAt(net, 4500, 4000), 0}, {LineAt(net, 3000, 2000), 0}});
    auto* note = new CNote;  // the container's, from AddGouJian on
    note->set_m_dwGouJianID(net.GetNextID(kNoteType));
    note->m_dwPlate = plate->get_m_dwGouJianID();
    note->m_strText = "wet room";
    net.AddGouJian(note);
}

/// A line for each component, by ascending identity; behind them what the model as a whole has.
inline std::vector<std::string> LinesOfModel(CGridDataBase& net) {
    std::vector<std::string> lines;
    for (int type = 1; type < kTypeCount; ++type) {
        CArray<CGouJianEx*> family;
        net.GetGouJianArray(static_cast<unsigned char>(type), &family);
        for (CGouJianEx* obj : family) {
            std::ostringstream text;
            text.precision(9);
            text << obj->m_dwGouJianID << " no " << obj->m_dwGouJianNO << " storey " << obj->m_nCeng << " tag " << obj->m_dwTag
                 << " fem " << obj->m_nFEM_ID << " status " << int{obj->m_byteStatus};
            if (obj->QueryBasicType() == kBasicNode) {
                auto* node = static_cast<CGjNetNode*>(obj);
                text << " at " << node->m_fX << ',' << node->m_fY << ',' << node->m_fZ << " star";
                CArray<CGouJianEx*> star;
                net.GetConnectedNetLine(node, star);
                for (const CGouJianEx* line : star) text << ' ' << line->m_dwGouJianID;
            } else if (obj->QueryBasicType() == kBasicLine) {
                auto* line = static_cast<CGjNetLine*>(obj);
                text << " from " << line->m_pStartNode->m_dwGouJianID << " to " << line->m_pEndNode->m_dwGouJianID << " arc "
                     << line->m_nArc << ' ' << line->m_fBulge << " length " << line->m_fLength << " middle " << line->m_fMidX
                     << ',' << line->m_fMidY << " in the index";
                CFRect box(line->m_fMidX - 1, line->m_fMidY - 1, line->m_fMidX + 1, line->m_fMidY + 1);
                CArray<CGouJianEx*> found;
                net.GetInterRect(box, found);
                text << ' ' << (std::find(found.begin(), found.end(), obj) != found.end()) << " drawn " << line->m_bGraphBuilt;
            } else if (obj->QueryBasicType() == kBasicPlate) {
                auto* plate = static_cast<CMianGouJian*>(obj);
                text << " area " << plate->m_fArea << " centre " << plate->m_fCenterX << ',' << plate->m_fCenterY << " border";
                for (const CGjNetLine* line : plate->m_arrBoundery) text << ' ' << line->m_dwGouJianID;
            } else {
                text << " on " << static_cast<CNote*>(obj)->m_dwPlate << " '" << static_cast<CNote*>(obj)->m_strText << "'";
            }
            lines.push_back(text.str());
        }
    }
    return lines;
}

inline std::string TextOfModel(CGridDataBase& net) {
    std::ostringstream text;
    for (const std::string& line : LinesOfModel(net)) text << line << '\n';
    for (int type = 1; type < kTypeCount; ++type)
        if (const auto highest = net.GetContain().HighestXuHao(static_cast<unsigned char>(type)))
            text << "type " << type << " up to " << highest << '\n';
    text << "storey " << net.GetCurCeng() << " tolerance " << g_cTvoProfile.m_nNetTolerance << '\n';
    return text.str();
}

/// Puts a word at a place of a file.
inline void SetWord(std::string& bytes, std::size_t at, std::uint32_t value) {
    std::string word;
    PutWord(word, value);
    bytes.replace(at, 4, word);
}

/// Makes all checksums true again, so that what stands between them is looked at. Sections are found by their marks.
inline void Reseal(std::string& bytes) {
    SetWord(bytes, kModelHeaderSize - 4, Crc32(std::string_view(bytes).substr(0, kModelHeaderSize - 4)));
    for (std::size_t at = kModelHeaderSize; at + kSectionHeadSize <= bytes.size();) {
        const std::size_t length = WordAt(bytes, at + 16);
        SetWord(bytes, at + 24, Crc32(std::string_view(bytes).substr(at + kSectionHeadSize, length)));
        SetWord(bytes, at + 28, Crc32(std::string_view(bytes).substr(at, kSectionHeadSize - 4)));
        at += kSectionHeadSize + length;
    }
}

/// Where the first section of a kind begins.
inline std::size_t SectionAt(const std::string& bytes, SectionKind kind) {
    for (const ModelSection& section : TakeApart(bytes).sections)
        if (section.head.kind == kind) return static_cast<std::size_t>(section.offset);
    return bytes.size();
}
