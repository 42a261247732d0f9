#include "host/fields/field_file.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

#include "fields/chang.h"
#include "host/fields/field_lines.h"

namespace {

constexpr int kLargestNumber = std::numeric_limits<int>::max();

int ReadNode(FieldLines& lines, CChang& field) {
    CChangNode node;
    node.m_nNumber = static_cast<int>(lines.Integer("N", 1, kLargestNumber));
    node.m_fX = lines.Real("X");
    node.m_fY = lines.Real("Y");
    int values = 0;
    do {
        if (values == CChang::kValues) lines.Refuse("a node has at most ten values");
        node.m_aValue[values++] = lines.Real("V");
    } while (!lines.Line().empty() && lines.Line()[0] != '#');
    std::fill(node.m_aValue + values, node.m_aValue + CChang::kValues,
              std::numeric_limits<float>::quiet_NaN());
    field.m_arrNode.Add(node);
    return values;
}

void ReadTriangle(FieldLines& lines, CChang& field) {
    CChangTri tri;
    for (int& corner : tri.m_aNode) corner = static_cast<int>(lines.Integer("a corner", 1, kLargestNumber));
    if (!lines.Line().empty() && lines.Line()[0] != '#') lines.NoMore();
    field.m_arrTri.Add(tri);
}

FieldFileTally ReadTextFile(FieldLines& lines, CChang& field) {
    FieldFileTally tally{"text", 0, 0};
    bool any = !lines.Line().empty();
    for (; any; any = lines.Next()) {
        if (lines.Line()[0] == '#') continue;
        const std::string_view word = lines.Word();
        if (word == "node") tally.values = std::max(tally.values, ReadNode(lines, field));
        else if (word == "tri") ReadTriangle(lines, field);
        else lines.Refuse("is neither node nor tri, nor a comment");
    }
    return tally;
}

}  // namespace

FieldFileTally ReadFieldFile(const std::string& path, CChang& field) {
    field.Clear();
    FieldLines lines(path);
    const bool msh = lines.Next() && lines.Line()[0] == '$';
    return msh ? ReadMshFile(lines, field) : ReadTextFile(lines, field);
}

FieldTally TallyField(const CChang& field) {
    std::unordered_map<int, int> bearers;  // nodes by number, only looked up; -1: several
    bearers.reserve(static_cast<std::size_t>(field.m_arrNode.GetSize()));
    for (int i = 0; i < field.m_arrNode.GetSize(); ++i)
        if (const auto [at, fresh] = bearers.emplace(field.m_arrNode[i].m_nNumber, i); !fresh)
            at->second = -1;
    const int value = field.m_nValue;
    FieldTally tally;
    for (const CChangTri& tri : field.m_arrTri) {
        bool missing = false, repeated = false, notFinite = false;
        for (const int number : tri.m_aNode) {
            const auto at = bearers.find(number);
            missing |= at == bearers.end();
            repeated |= at != bearers.end() && at->second < 0;
            if (at == bearers.end() || at->second < 0) continue;
            const CChangNode& node = field.m_arrNode[at->second];
            notFinite |= !std::isfinite(node.m_fX) || !std::isfinite(node.m_fY) ||
                         !std::isfinite(node.m_aValue[value]);
        }
        const auto [a, b, c] = tri.m_aNode;
        const bool twice = a == b || b == c || c == a;
        tally.passedOver += missing || repeated || twice || notFinite;
        (missing    ? tally.missing
         : repeated ? tally.repeatedNumber
         : twice    ? tally.repeatedCorner
                    : tally.notFinite) += missing || repeated || twice || notFinite;
    }
    return tally;
}

std::string FieldTally::Remarks(const CChang& field) const {
    std::string text;
    const auto add = [&](std::uint64_t count, const char* what) {
        if (count == 0) return;
        if (!text.empty()) text += "; ";
        text += std::to_string(count) + (count == 1 ? " triangle " : " triangles ") + what;
    };
    add(missing, "with a corner that is no node");
    add(repeatedNumber, "with a number that several nodes bear");
    add(repeatedCorner, "with one node at two corners");
    add(notFinite, "with a coordinate or value that is not finite");
    if (field.m_arrTri.GetSize() == 0) text = "there are no triangles";
    else if (passedOver == static_cast<std::uint64_t>(field.m_arrTri.GetSize()))
        text += "; none is left to show";
    return text;
}
