// A tongue for tests of drawings: groups as "0 LINE|8 A|10 1.5", entities as one line of text each.
#pragma once
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/dxf/dxf.h"

struct Group {
    int code;
    std::string value;
};

inline std::vector<Group> Groups(const std::string& text) {
    std::vector<Group> groups;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('|', at), text.size());
        const std::string group = text.substr(at, end - at);
        const std::size_t blank = std::min(group.find(' '), group.size() - 1);
        groups.push_back({std::atoi(group.c_str()), group.substr(blank + 1)});
        at = end + 1;
    }
    return groups;
}

inline std::string Text(const std::string& groups, const std::string& lineEnd = "\n") {
    std::string file;
    for (const Group& g : Groups(groups)) file += std::to_string(g.code) + lineEnd + g.value + lineEnd;
    return file;
}

template <class T>
void Put(std::string& bytes, T value) {
    char raw[sizeof(T)];
    std::memcpy(raw, &value, sizeof raw);
    bytes.append(raw, sizeof raw);
}

/// The same groups as a binary file, of R12 (codes of one byte) or later.
inline std::string Binary(const std::string& groups, bool shortCodes) {
    std::string file("AutoCAD Binary DXF\r\n\x1A\0", 22);
    for (const Group& g : Groups(groups)) {
        if (!shortCodes) {
            Put(file, static_cast<std::int16_t>(g.code));
        } else if (g.code < 255) {
            Put(file, static_cast<std::uint8_t>(g.code));
        } else {
            file.push_back('\xFF');
            Put(file, static_cast<std::int16_t>(g.code));
        }
        const int c = g.code;
        if ((c >= 10 && c < 60) || (c >= 140 && c < 150) || (c >= 210 && c < 240) || (c >= 1010 && c < 1060))
            Put(file, std::strtod(g.value.c_str(), nullptr));
        else if ((c >= 60 && c < 80) || c == 1070)
            Put(file, static_cast<std::int16_t>(std::atoi(g.value.c_str())));
        else if (c >= 90 && c < 100) Put(file, static_cast<std::int32_t>(std::atoll(g.value.c_str())));
        else file.append(g.value).push_back('\0');
    }
    return file;
}

inline const std::string kOpen = "0 SECTION|2 ENTITIES|";
inline const std::string kShut = "|0 ENDSEC|0 EOF";

inline std::string Entities(const std::string& groups) { return kOpen + groups + kShut; }

inline std::string Number(double v) {
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", v + 0.0);  // no minus zero
    return text;
}

inline std::string Point(double x, double y) { return Number(x) + "," + Number(y); }

inline std::string Show(const ACAD_ENTITY& e) {
    std::string text = e.GetKind() + "[" + e.GetLayer() + "]";
    if (e.m_bPaperSpace) text += " on paper";
    switch (e.GetType()) {
        case kAcadLine: {
            const auto& l = static_cast<const ACAD_LINE&>(e);
            return text + " " + Point(l.m_x1, l.m_y1) + " - " + Point(l.m_x2, l.m_y2);
        }
        case kAcadText: {
            const auto& t = static_cast<const ACAD_TEXT&>(e);
            return text + " " + Point(t.m_x, t.m_y) + " h " + Number(t.m_dHeight) + " '" +
                   std::string(t.m_strText) + "'";
        }
        case kAcadCircle: {
            const auto& c = static_cast<const ACAD_CIRCLE&>(e);
            return text + " " + Point(c.m_x, c.m_y) + " r " + Number(c.m_dRadius);
        }
        case kAcadArc: {
            const auto& a = static_cast<const ACAD_ARC&>(e);
            return text + " " + Point(a.m_x, a.m_y) + " r " + Number(a.m_dRadius) + " " + Number(a.m_dStart) +
                   ".." + Number(a.m_dEnd);
        }
        case kAcadPolyline: {
            const auto& p = static_cast<const ACAD_POLYLINE&>(e);
            for (const ACAD_VERTEX& v : p.Vertices()) {
                text.append(" ").append(Point(v.m_x, v.m_y));
                if (v.m_dBulge != 0) text.append("b").append(Number(v.m_dBulge));
            }
            return text + (p.m_bClosed ? " closed" : "") + (p.m_b3D ? " 3d" : "");
        }
        case kAcadSolid: {
            const auto& s = static_cast<const ACAD_SOLID&>(e);
            for (int i = 0; i < 4; ++i) text.append(" ").append(Point(s.m_x[i], s.m_y[i]));
            return text;
        }
        case kAcad3dFace: {
            const auto& s = static_cast<const ACAD_3DFACE&>(e);
            for (int i = 0; i < 4; ++i) text.append(" ").append(Point(s.m_x[i], s.m_y[i]));
            return text;
        }
        case kAcadInsert: {
            const auto& i = static_cast<const ACAD_INSERT&>(e);
            return text + " " + std::string(i.m_strBlock) + " at " + Point(i.m_x, i.m_y);
        }
        case kAcadDimension: {
            const auto& d = static_cast<const ACAD_DIMENSION&>(e);
            return text + " " + Point(d.m_x1, d.m_y1) + " - " + Point(d.m_x2, d.m_y2);
        }
        case kAcadHatch:
            return text + " " + std::string(static_cast<const ACAD_HATCH&>(e).m_strPattern);
        default:
            return text;
    }
}

inline std::string Show(const DXF& drawing) {
    std::string text;
    for (const ACAD_ENTITY* e : drawing.GetEntities()) text.append(text.empty() ? "" : "; ").append(Show(*e));
    return text;
}

inline std::string Read(const std::string& bytes) {
    DXF drawing;
    drawing.Read_Bytes_To_Mem(bytes);
    return Show(drawing);
}
