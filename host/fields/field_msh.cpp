// Gmsh MSH files, versions 2.2 and 4.1, ASCII.
#include <algorithm>
#include <array>
#include <limits>
#include <unordered_map>
#include <vector>

#include "fields/chang.h"
#include "host/fields/field_file.h"
#include "host/fields/field_lines.h"

namespace {

constexpr std::int64_t kLargestNumber = std::numeric_limits<int>::max();
constexpr std::int64_t kLargestCount = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kTriangle = 2, kCurvedTriangle = 9;  // types of elements

class MshReader {
public:
    MshReader(FieldLines& lines, CChang& field) : m_lines(lines), m_field(field) {}

    FieldFileTally Read() {
        do {
            const std::string section(m_lines.Line());
            if (section[0] != '$') m_lines.Refuse("a section should begin here");
            if (section == "$MeshFormat") ReadFormat();
            else if (m_version == 0) m_lines.Refuse("$MeshFormat should come first");
            else if (section == "$Nodes") m_version == 2 ? ReadNodes2() : ReadNodes4();
            else if (section == "$Elements") m_version == 2 ? ReadElements2() : ReadElements4();
            else if (section == "$NodeData") ReadNodeData();
            else SkipTo("$End" + section.substr(1));
        } while (m_lines.Next());
        return m_tally;
    }

private:
    void End(const char* section) {
        m_lines.MustHave(section);
        if (m_lines.Line() != section) m_lines.Refuse(std::string(section) + " should follow");
    }
    void SkipTo(const std::string& end) {
        while (m_lines.Line() != end) m_lines.MustHave(end.c_str());
    }
    std::int64_t Count(const char* what) { return m_lines.Integer(what, 0, kLargestCount); }

    void ReadFormat() {
        m_lines.MustHave("the version");
        const std::string version(m_lines.Word());
        m_version = version == "2.2" || version == "2.1" || version == "2" || version == "2.0" ? 2
                    : version == "4.1"                                                         ? 4
                                                                                               : 0;
        if (m_version == 0) m_lines.Refuse("only versions 2.2 and 4.1 are read");
        if (m_lines.Integer("the kind of file", 0, 1) == 1)
            m_lines.Refuse("the file is binary; only ASCII files are read");
        m_tally.format = "msh " + version;
        End("$EndMeshFormat");
    }

    // ---- nodes ------------------------------------------------------------------------------------

    void AddNode(int number) {
        CChangNode node;
        node.m_nNumber = number;
        node.m_fX = m_lines.Real("x");
        node.m_fY = m_lines.Real("y");
        m_lines.Real("z");
        std::fill(std::begin(node.m_aValue), std::end(node.m_aValue),
                  std::numeric_limits<float>::quiet_NaN());
        m_place.emplace(number, m_field.m_arrNode.Add(node));
    }
    int Number(const char* what) { return static_cast<int>(m_lines.Integer(what, 1, kLargestNumber)); }

    void ReadNodes2() {
        m_lines.MustHave("the number of nodes");
        for (std::int64_t left = Count("the number of nodes"); left > 0; --left) {
            m_lines.MustHave("a node");
            AddNode(Number("the node's number"));
        }
        End("$EndNodes");
    }
    void ReadNodes4() {
        m_lines.MustHave("the number of blocks");
        for (std::int64_t blocks = Count("the number of blocks"); blocks > 0; --blocks) {
            m_lines.MustHave("a block of nodes");
            for (const char* what : {"the dimension", "the entity"})
                m_lines.Integer(what, -kLargestCount, kLargestCount);
            m_lines.Integer("parametric", 0, 1);
            const std::int64_t count = Count("the number of nodes");
            std::vector<int> numbers;  // grows with the file, whatever it claims
            for (std::int64_t i = 0; i < count; ++i) {
                m_lines.MustHave("a node's number");
                numbers.push_back(Number("the node's number"));
            }
            for (const int number : numbers) {
                m_lines.MustHave("a node's place");
                AddNode(number);
            }
        }
        End("$EndNodes");
    }

    // ---- elements ---------------------------------------------------------------------------------

    /// What stands behind type and tags. A triangle with nodes on its sides is four.
    void AddElement(std::int64_t type) {
        if (type == kTriangle) {
            std::array<int, 3> at{};
            for (int& corner : at) corner = Number("a corner");
            m_field.m_arrTri.Add({{at[0], at[1], at[2]}});
        } else if (type == kCurvedTriangle) {
            std::array<int, 6> at{};
            for (int& corner : at) corner = Number("a corner");
            for (const std::array<std::size_t, 3>& part :
                 {std::array<std::size_t, 3>{0, 3, 5}, {3, 4, 5}, {3, 1, 4}, {4, 2, 5}})
                m_field.m_arrTri.Add({{at[part[0]], at[part[1]], at[part[2]]}});
        } else {
            ++m_tally.leftOut;
        }
    }
    void ReadElements2() {
        m_lines.MustHave("the number of elements");
        for (std::int64_t left = Count("the number of elements"); left > 0; --left) {
            m_lines.MustHave("an element");
            m_lines.Integer("the element's number", 0, kLargestCount);
            const std::int64_t type = m_lines.Integer("the type", 1, 1000);
            for (std::int64_t tags = m_lines.Integer("the number of tags", 0, 1000); tags > 0; --tags)
                m_lines.Integer("a tag", -kLargestCount, kLargestCount);
            AddElement(type);
        }
        End("$EndElements");
    }
    void ReadElements4() {
        m_lines.MustHave("the number of blocks");
        for (std::int64_t blocks = Count("the number of blocks"); blocks > 0; --blocks) {
            m_lines.MustHave("a block of elements");
            for (const char* what : {"the dimension", "the entity"})
                m_lines.Integer(what, -kLargestCount, kLargestCount);
            const std::int64_t type = m_lines.Integer("the type", 1, 1000);
            for (std::int64_t left = Count("the number of elements"); left > 0; --left) {
                m_lines.MustHave("an element");
                m_lines.Integer("the element's number", 0, kLargestCount);
                AddElement(type);
            }
        }
        End("$EndElements");
    }

    // ---- values -----------------------------------------------------------------------------------

    /// Each component of each section is a value of its own; those behind the tenth are left out.
    void ReadNodeData() {
        const auto list = [&](const char* what, auto each) {
            m_lines.MustHave(what);
            const std::int64_t count = Count(what);
            for (std::int64_t i = 0; i < count; ++i) {
                m_lines.MustHave(what);
                each(i);
            }
        };
        std::int64_t components = 1, nodes = 0;
        list("a text tag", [](std::int64_t) {});
        list("a real tag", [&](std::int64_t) { m_lines.Real("a real tag"); });
        list("an integer tag", [&](std::int64_t i) {
            const std::int64_t tag = m_lines.Integer("an integer tag", -kLargestCount, kLargestCount);
            if (i == 1) components = tag;
            if (i == 2) nodes = tag;
        });
        if (components < 1 || components > 100) m_lines.Refuse("the number of components makes no sense");
        for (; nodes > 0; --nodes) {
            m_lines.MustHave("a node's values");
            const auto place = m_place.find(Number("the node's number"));
            for (int i = 0; i < components; ++i) {
                const float value = m_lines.Real("a value");
                const int at = m_tally.values + i;
                if (place != m_place.end() && at < CChang::kValues)
                    m_field.m_arrNode[place->second].m_aValue[at] = value;
            }
        }
        m_tally.values = std::min(CChang::kValues, m_tally.values + static_cast<int>(components));
        End("$EndNodeData");
    }

    FieldLines& m_lines;
    CChang& m_field;
    FieldFileTally m_tally;
    int m_version = 0;                     // 2 or 4; 0 before $MeshFormat
    std::unordered_map<int, int> m_place;  // first node of a number, only looked up
};

}  // namespace

FieldFileTally ReadMshFile(FieldLines& lines, CChang& field) { return MshReader(lines, field).Read(); }
