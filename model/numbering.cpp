#include "model/numbering.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

// A coordinate, the least that another must stay above to be less than this one, and whose it is. Widths
// are those of the comparison "a > b + tolerance" in float.
struct Item {
    float value;
    float bound;  // value + tolerance
    std::int32_t index;
};

bool Greater(const Item& a, const Item& b) { return a.value > b.bound; }

// Sorts items[first..last] through `spare`. With a tolerance the comparison is not transitive, so that the
// result depends on the way of merging: halves first..middle and middle+1..last, each sorted before, the
// right element taken only when the left one is greater.
void MergeSort(std::vector<Item>& items, std::vector<Item>& spare, std::size_t first, std::size_t last) {
    if (first >= last) return;
    const std::size_t middle = (first + last) / 2;
    MergeSort(items, spare, first, middle);
    MergeSort(items, spare, middle + 1, last);
    // Halves whose ends meet in order are merged too: with a tolerance that says nothing about the rest.
    std::copy(items.begin() + static_cast<std::ptrdiff_t>(first),
              items.begin() + static_cast<std::ptrdiff_t>(middle) + 1, spare.begin());
    const Item* left = spare.data();
    const Item* const leftEnd = left + (middle - first + 1);
    std::size_t right = middle + 1, to = first;
    while (left != leftEnd && right <= last)
        items[to++] = Greater(*left, items[right]) ? items[right++] : *left++;
    while (left != leftEnd) items[to++] = *left++;
}

// The least bound over runs of places, so that the first place behind some other whose bound lies below a
// value is found by one way up and one down.
class MinTree {
public:
    explicit MinTree(const std::vector<float>& bounds)
        : m_leaves(std::bit_ceil(std::max<std::size_t>(bounds.size(), 1))), m_least(2 * m_leaves, kNever) {
        std::copy(bounds.begin(), bounds.end(), m_least.begin() + static_cast<std::ptrdiff_t>(m_leaves));
        for (std::size_t i = m_leaves - 1; i > 0; --i)
            m_least[i] = std::min(m_least[2 * i], m_least[2 * i + 1]);
    }
    void Remove(std::size_t place) {
        std::size_t i = place + m_leaves;
        m_least[i] = kNever;
        while (i > 1) {
            i /= 2;
            const float least = std::min(m_least[2 * i], m_least[2 * i + 1]);
            if (m_least[i] == least) break;
            m_least[i] = least;
        }
    }
    /// The first place behind `place` with bound < value, or the number of leaves.
    std::size_t FirstBehind(std::size_t place, float value) const {
        std::size_t i = place + m_leaves;
        do {  // up to a right neighbour that holds such a place
            while (i & 1) i /= 2;
            if (i == 0) return m_leaves;
            ++i;
        } while (!(m_least[i] < value));
        while (i < m_leaves) {
            i *= 2;
            if (!(m_least[i] < value)) ++i;
        }
        return i - m_leaves;
    }
    std::size_t None() const { return m_leaves; }

    static constexpr float kNever = std::numeric_limits<float>::infinity();  // no value lies above it

private:
    std::size_t m_leaves;
    std::vector<float> m_least;  // node i over nodes 2i and 2i + 1
};

}  // namespace

std::vector<std::int32_t> NumberingOrder(const std::vector<SortPoint>& points, bool byRows, float tolerance) {
    const std::size_t n = points.size();
    const float toleranceX = 0, toleranceY = tolerance;
    std::vector<Item> items(n), spare(n / 2 + 1);
    for (std::size_t i = 0; i < n; ++i) {
        const SortPoint& p = points[i];
        items[i] = byRows ? Item{p.x, p.x + toleranceX, static_cast<std::int32_t>(i)}
                          : Item{p.y, p.y + toleranceY, static_cast<std::int32_t>(i)};
    }
    if (n > 1) MergeSort(items, spare, 0, n - 1);

    // What remains is to give out numbers one by one: each time the first element is the candidate, goes
    // through the rest, and gives way to whatever it is greater than. Plainly that is quadratic. The
    // candidates of one pass make a stack: below the one that won, all are still there, and nothing in front
    // of the winner has beaten any of them. So the next pass takes up at the winner's place with the
    // candidate before it.
    std::vector<float> values(n), bounds(n);
    for (std::size_t i = 0; i < n; ++i) {
        const SortPoint& p = points[static_cast<std::size_t>(items[i].index)];
        values[i] = byRows ? p.y : p.x;
        const float bound = byRows ? p.y + toleranceY : p.x + toleranceX;
        bounds[i] = bound < MinTree::kNever ? bound : MinTree::kNever;  // a NaN beats nothing
    }
    MinTree tree(bounds);
    std::vector<std::int32_t> order;
    order.reserve(n);
    std::vector<std::size_t> candidates;
    std::vector<bool> numbered(n);
    std::size_t first = 0;
    while (order.size() < n) {
        if (candidates.empty()) {
            while (numbered[first]) ++first;
            candidates.push_back(first);
        }
        const std::size_t top = candidates.back();
        const std::size_t next = tree.FirstBehind(top, values[top]);
        if (next != tree.None()) {
            candidates.push_back(next);
        } else {
            order.push_back(items[top].index);
            numbered[top] = true;
            tree.Remove(top);
            candidates.pop_back();
        }
    }
    return order;
}
