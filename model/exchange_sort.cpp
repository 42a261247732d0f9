#include "model/exchange_sort.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <utility>

namespace {

constexpr std::size_t kPlainSize = 32;  // up to here the plain loops are the fastest

using Places = std::vector<int>;

std::size_t At(int i) { return static_cast<std::size_t>(i); }

Places Numbers(std::size_t n) {
    Places out(n);
    std::iota(out.begin(), out.end(), 0);
    return out;
}

Places PlainOrder(const std::vector<float>& keys) {
    Places order = Numbers(keys.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        for (std::size_t j = i + 1; j < order.size(); ++j)
            if (keys[At(order[i])] > keys[At(order[j])]) std::swap(order[i], order[j]);
    return order;
}

// Counts over places 0 to n - 1, by sums over runs of places (a Fenwick tree).
class Counts {
public:
    Counts(int n, int each) : m_sums(At(n) + 1) {
        for (std::size_t i = 1; i < m_sums.size(); ++i) m_sums[i] = each * static_cast<int>(i & (~i + 1));
    }
    void Add(int place, int v) {
        for (std::size_t i = At(place) + 1; i < m_sums.size(); i += i & (~i + 1)) m_sums[i] += v;
    }
    int Before(int place) const {  // sum over the places in front
        int sum = 0;
        for (std::size_t i = At(place); i > 0; i &= i - 1) sum += m_sums[i];
        return sum;
    }
    int PlaceOfRank(int rank) const {  // of the element with `rank` others in front
        std::size_t i = 0;
        for (std::size_t step = std::bit_floor(m_sums.size() - 1); step > 0; step /= 2)
            if (i + step < m_sums.size() && m_sums[i + step] <= rank) {
                i += step;
                rank -= m_sums[i];
            }
        return static_cast<int>(i);
    }

private:
    std::vector<int> m_sums;
};

// A queue to which elements 0, 1, ... are appended, and which after each is rotated: its first element goes
// to the end, turns[i] times after element i. Gives the final place of each, going backwards from the full
// queue: the element appended last stands in front of the head, in a ring.
Places PlacesAfterTurns(const std::vector<int>& turns) {
    Places places(turns.size());
    const int n = static_cast<int>(turns.size());
    Counts left(n, 1);
    int head = 0;  // rank of the head among the places that are left
    for (int size = n; size > 0; --size) {
        const int turned = turns[At(size - 1)] % size;
        head = (head + size - turned) % size;
        const int last = (head + size - 1) % size;
        const int place = left.PlaceOfRank(last);
        places[At(size - 1)] = place;
        left.Add(place, -1);
        if (last < head) --head;
    }
    return places;
}

}  // namespace

// Pass i of the plain procedure carries element i along the rest, puts it down in place of each smaller one
// and carries that on; the least comes to place i. Look at the elements V of one key, and at the smaller ones
// S, in the order in which they stand:
//
//   S first     a pass takes the first S out; the carried S are put down where S stand, no V moves
//   V first     the first V is carried over the V behind it, and put down in place of the first S, which is
//               out in its stead: V1 V2 V3 S ... becomes V2 V3 V1 ...
//   no S left   the passes take the V out from the front
//
// Elements of greater keys change nothing of this. So the V that stand in front of the first S are a queue
// that each S turns once, until its own pass has taken it out, and which the V between two S then join. The
// order in which the V leave is that of the queue in the end. A NaN is never greater nor less: it stays in
// its place, and the rest goes by it.
std::vector<int> ExchangeSortOrder(const std::vector<float>& keys) {
    if (keys.size() <= kPlainSize) return PlainOrder(keys);

    Places order = Numbers(keys.size());
    Places numbers;  // indices whose keys are no NaN
    std::copy_if(order.begin(), order.end(), std::back_inserter(numbers),
                 [&](int i) { return keys[At(i)] == keys[At(i)]; });
    Places sorted = numbers;
    std::stable_sort(sorted.begin(), sorted.end(), [&](int a, int b) { return keys[At(a)] < keys[At(b)]; });

    Counts smaller(static_cast<int>(keys.size()), 0);  // elements of the keys done so far
    for (std::size_t first = 0, end; first < sorted.size(); first = end) {
        end = first + 1;
        while (end < sorted.size() && keys[At(sorted[end])] == keys[At(sorted[first])]) ++end;
        if (end - first > 1) {
            const Places same(sorted.begin() + static_cast<std::ptrdiff_t>(first),
                              sorted.begin() + static_cast<std::ptrdiff_t>(end));
            std::vector<int> turns;
            for (std::size_t k = 0; k < same.size(); ++k) {
                const int until = k + 1 < same.size() ? smaller.Before(same[k + 1]) : static_cast<int>(first);
                turns.push_back(until - smaller.Before(same[k]));
            }
            const Places places = PlacesAfterTurns(turns);
            for (std::size_t k = 0; k < same.size(); ++k) sorted[first + At(places[k])] = same[k];
        }
        for (std::size_t k = first; k < end; ++k) smaller.Add(sorted[k], 1);
    }
    for (std::size_t k = 0; k < numbers.size(); ++k) order[At(numbers[k])] = sorted[k];
    return order;
}
