// CWalkNet: the net as the walks see it, without thorns. Internal to the library.
#pragma once
#include <cstdint>
#include <vector>

#include "geometry/fshoot.h"
#include "platform/containers.h"

class CGjNetLine;
class CGjNetNode;
class CGridDataBase;

/// Which side of each line was walked, and how the walks turn at a node. It is made of the data base's stars as
/// the walks come by: only what they touch is ever looked at. StripAll looks at everything at once, which is faster
/// for a run over most of the net.
///
/// A thorn is a line that falls when ends with a single line are cut off again and again. A line is none when both
/// of its ends lead to something that closes, or when it lies on something closed itself; that is decided by a
/// search from both ends in turns, which in a net of cells ends after a few lines.
class CWalkNet {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    /// Which sides of a line were walked.
    enum Side : std::int8_t { kBackward = -1, kNeither = 0, kForward = 1, kBoth = 2 };

    explicit CWalkNet(CGridDataBase& db) : m_db(db) {}
    /// To be called before anything else, or not at all.
    void StripAll();

    /// The entry of a line of the net that counts, else kNone.
    std::uint32_t Find(CGjNetLine* line);
    /// The same for a line to walk from, which need not count: one of the store that is no thorn, and that no walk turns to.
    std::uint32_t FindElement(CGjNetLine* line);
    bool IsThorn(std::uint32_t line);
    std::uint32_t GetCount() const { return static_cast<std::uint32_t>(m_lines.size()); }
    CGjNetLine* LineAt(std::uint32_t line) const { return m_lines[line].line; }
    Side SideOf(std::uint32_t line) const { return m_sides[line]; }
    void SetSide(std::uint32_t line, Side side) { m_sides[line] = side; }
    /// Entry of the line's start node (end 0) or end node (end 1).
    std::uint32_t NodeOf(std::uint32_t line, int end);
    /// How many of its ends have more than two lines.
    int BranchingEnds(std::uint32_t line);

    /// A line as it leaves a node.
    struct Spoke {
        std::uint32_t line = kNone;
        std::uint32_t far = kNone;  // entry of the node at the other end
        float angle = 0;            // in which the walk sees it leave, radians
        bool leavesStart = false, loop = false, arc = false;
    };
    /// The line to go on by from the node that was reached by `from`: the next one clockwise of which a side is still to
    /// be walked, or one without a line. Of two in the same direction the one with the lower identity.
    Spoke Next(std::uint32_t node, std::uint32_t from);
    /// The line as it leaves its start or its end.
    Spoke SpokeOf(std::uint32_t line, bool leavesStart);
    /// A line that was passed along (or against) its sense, as an element of an outline: as CGjNetLine::GetFShoot gives it.
    CFShoot ShootOf(std::uint32_t from, const Spoke& passed, bool along) const;

    /// Calls f(line) for each line at the node that is no thorn, by ascending identity.
    template <class F>
    void ForEachAt(std::uint32_t node, F f) {
        Make(node);
        for (std::uint32_t i = 0; i < m_nodes[node].count; ++i) f(m_lines[m_spokes[m_nodes[node].first + i].line].line);
    }
    std::uint32_t NodeFor(CGjNetNode* node);
    bool HasLines(std::uint32_t node) {
        Raw(node);
        return m_gathered[node].rawCount > 0;
    }

private:
    enum class Kind : std::uint8_t { Unknown, Thorn, Core };
    /// What the walks read of a line lies together here: the lines themselves lie far apart.
    struct Line {
        CGjNetLine* line;
        std::uint32_t nodes[2];  // entries of start and end, kNone until asked for
        float tangents[2];       // leaving start and end, degrees
        float reach;             // length of a straight line, chord of an arc
        Kind kind;
        bool arc, loop;
    };
    struct Node {
        float x, y;
        std::uint32_t first = 0, count = 0;  // its spokes, made on the first visit
    };
    struct Gathered {
        CGjNetNode* node;
        std::uint32_t rawFirst = 0, rawCount = 0;  // all its lines that count; after StripAll their number alone
        std::uint32_t mark = 0;                    // search and side that came by last
        std::uint32_t step = 0;                    // and the step of it
        bool made = false, rawMade = false;
    };
    struct Span {
        const std::uint32_t *first, *last;
        const std::uint32_t* begin() const { return first; }
        const std::uint32_t* end() const { return last; }
        bool empty() const { return first == last; }
    };

    bool Counts(CGjNetLine* line) const;
    std::uint32_t Append(CGjNetLine* line);
    std::uint32_t Enter(CGjNetLine* line);
    std::uint32_t AppendNode(CGjNetNode* node);
    Span Raw(std::uint32_t node);
    void GatherRaw(std::uint32_t node);
    void Make(std::uint32_t node);
    std::uint32_t OtherEnd(std::uint32_t line, std::uint32_t node);
    bool SearchThorn(std::uint32_t line);
    void SetAngles(std::uint32_t node);
    static float LeavingAngle(const Line& line, bool leavesStart, float r);
    void GatherAll(std::vector<std::uint32_t>& left, std::vector<std::uint32_t>& through);
    void CutOffThorns(std::vector<std::uint32_t>& left, std::vector<std::uint32_t>& through);
    void PlaceSpokes(const std::vector<std::uint32_t>& left);

    CGridDataBase& m_db;
    bool m_stripped = false;  // everything is there
    std::vector<Line> m_lines;
    std::vector<Side> m_sides;  // of the lines; apart, since the walks look at those of all lines that they pass by
    std::vector<Node> m_nodes;          // what the walks read of a node
    std::vector<Gathered> m_gathered;  // the rest
    std::vector<Spoke> m_spokes;
    std::vector<std::uint32_t> m_raw;
    // One more than the place of an entry. After StripAll not made until the note at a line or node is somebody else's.
    CMap<std::uint32_t, std::uint32_t> m_lineByIdentity, m_nodeByIdentity;

    struct Step {
        std::uint32_t node, via;
        std::uint32_t from;  // the step before, kNone for the first
    };
    std::vector<Step> m_queue[2];  // of the search at hand, one per end
    std::uint32_t m_search = 0;
};
