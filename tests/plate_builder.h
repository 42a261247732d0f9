// Plates built by hand, with no walk: a text names the border, and a plate prints its sides as text.
#pragma once
#include <memory>

#include "net_text.h"
#include "plates/mian_goujian.h"

/// A net whose lines are numbered as they were made.
class CPlateNet : public CTestNet {
public:
    /// Lines as Build takes them, none broken: "0,0 - 6000,0; 6000,0 ~ 0,0 -90; arc 0,0 5000 0..90".
    explicit CPlateNet(const std::string& lines = "") {
        for (std::size_t from = 0; from < lines.size();) {
            const std::size_t to = std::min(lines.find(';', from), lines.size());
            const std::string text = WithoutDots(lines.substr(from, to - from));
            from = to + 1;
            float a, b, c, d, e;
            if (std::sscanf(text.c_str(), " arc %f,%f %f %f %f", &a, &b, &c, &d, &e) == 5)
                m_lines.push_back(GetArc(P(a, b), c, d, e));
            else if (std::sscanf(text.c_str(), " %f,%f ~ %f,%f %f", &a, &b, &c, &d, &e) == 5)
                m_lines.push_back(GetNetLine(P(a, b), P(c, d), 1, e));
            else if (std::sscanf(text.c_str(), " %f,%f - %f,%f", &a, &b, &c, &d) == 4)
                m_lines.push_back(GetNetLine(P(a, b), P(c, d), 0, 0));
        }
    }

    /// The border of a plate, line numbers with the direction of the walk, shape sides split by "|":
    /// "0+ 1+ | 2- | 3-".
    void SetBorder(CMianGouJian& plate, const std::string& border) {
        plate.m_arrXingZhuangBian.SetSize(1);
        for (const char* p = border.c_str(); *p;) {
            int number = 0, read = 0;
            char direction = 0;
            if (*p == '|') {
                plate.m_arrXingZhuangBian.SetSize(plate.m_arrXingZhuangBian.GetSize() + 1);
                ++p;
            } else if (std::sscanf(p, "%d%c%n", &number, &direction, &read) == 2) {
                CJainTuBanBian side;
                side.m_pNetLine = m_lines[static_cast<std::size_t>(number)];
                side.m_nLineID = static_cast<int>(side.m_pNetLine->get_m_dwGouJianID());
                side.m_nLineNO = static_cast<int>(side.m_pNetLine->get_m_dwGouJianNO());
                side.m_nDirection = direction == '+';
                CGjXingZhuangBian& shape = plate.m_arrXingZhuangBian[plate.m_arrXingZhuangBian.GetUpperBound()];
                side.m_nIndex = shape.m_arrBian.Add(side) + 1;
                shape.m_arrBian[side.m_nIndex - 1].m_nIndex = side.m_nIndex;
                shape.m_nBian = side.m_nIndex;
                p += read;
            } else {
                ++p;
            }
        }
        plate.m_nXingZhuangBian = plate.m_arrXingZhuangBian.GetSize();
        for (int i = 0; i < plate.m_nXingZhuangBian; ++i) plate.m_arrXingZhuangBian[i].m_nIndex = i + 1;
    }
    /// Calculated, not in the store.
    std::unique_ptr<CMianGouJian> Plate(const std::string& border) {
        std::unique_ptr<CMianGouJian> plate(InstanceMianGouJian(0));
        SetBorder(*plate, border);
        plate->CalcGeographicData();
        return plate;
    }

    std::vector<CGjNetLine*> m_lines;
};

/// The synthetic lines, each with the walk along it: "0,0 - 6000,0 +; ".
inline std::string Sides(const CMianGouJian& plate) {
    std::string out;
    for (int i = 0; i < plate.m_arrXingZhuangLine.GetSize(); ++i) {
        CGjNetLine* line = plate.m_arrXingZhuangLine[i];
        out += line->m_bFullCircle ? "circle " + Place(line->m_fCenterX, line->m_fCenterY) + " " + Number(line->m_fR) : Show(line);
        out += plate.m_arrXingZhuangDir[i] ? " +; " : " -; ";
    }
    return out;
}

/// Every figure, for comparing.
inline std::string Figures(const CMianGouJian& plate) {
    char text[256];
    std::snprintf(text, sizeof text, "%.9g at %.9g,%.9g round %.9g in %.9g,%.9g..%.9g,%.9g", static_cast<double>(plate.m_fArea),
                  static_cast<double>(plate.m_fCenterX), static_cast<double>(plate.m_fCenterY),
                  static_cast<double>(plate.m_fZhouChang), static_cast<double>(plate.m_rect.m_fMinX),
                  static_cast<double>(plate.m_rect.m_fMinY), static_cast<double>(plate.m_rect.m_fMaxX),
                  static_cast<double>(plate.m_rect.m_fMaxY));
    std::string out = text;
    for (const CFShoot& v : plate.m_region) {
        std::snprintf(text, sizeof text, "; %.9g,%.9g %.9g", static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.c));
        out += text;
    }
    return out;
}
inline const char* const kNoFigures = "0 at 0,0 round 0 in 0,0..0,0";
