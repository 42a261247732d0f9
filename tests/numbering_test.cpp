// The numbers of components: rows, columns, and the plain procedure as oracle.
#include "model/numbering.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace {

// The procedure as it reads: a stable top-down merge sort, then one pass over what remains for each number.
struct Plain {
    const std::vector<SortPoint>& points;
    float tolerance;

    bool GreaterX(int a, int b) const { return At(a).x > At(b).x; }
    bool GreaterY(int a, int b) const { return At(a).y > At(b).y + tolerance; }
    const SortPoint& At(int i) const { return points[static_cast<std::size_t>(i)]; }

    std::vector<int> Sorted(const std::vector<int>& in, bool byX) const {
        if (in.size() < 2) return in;
        const auto middle = in.begin() + static_cast<std::ptrdiff_t>((in.size() + 1) / 2);
        const auto left = Sorted({in.begin(), middle}, byX), right = Sorted({middle, in.end()}, byX);
        std::vector<int> out;
        std::size_t l = 0, r = 0;
        while (l < left.size() || r < right.size()) {
            const bool takeRight =
                l == left.size() ||
                (r < right.size() && (byX ? GreaterX(left[l], right[r]) : GreaterY(left[l], right[r])));
            out.push_back(takeRight ? right[r++] : left[l++]);
        }
        return out;
    }
    std::vector<std::int32_t> Order(bool byRows) const {
        std::vector<int> left(points.size());
        for (std::size_t i = 0; i < left.size(); ++i) left[i] = static_cast<int>(i);
        left = Sorted(left, byRows);
        std::vector<std::int32_t> order;
        while (!left.empty()) {
            std::size_t candidate = 0;
            for (std::size_t i = 1; i < left.size(); ++i)
                if (byRows ? GreaterY(left[candidate], left[i]) : GreaterX(left[candidate], left[i]))
                    candidate = i;
            order.push_back(left[candidate]);
            left.erase(left.begin() + static_cast<std::ptrdiff_t>(candidate));
        }
        return order;
    }
};

std::string Show(const std::vector<std::int32_t>& order) {
    std::string out;
    for (const int i : order) out += std::to_string(i) + " ";
    return out;
}

}  // namespace

TEST(Numbering, RowsAndColumns) {
    const struct {
        const char* name;
        std::vector<SortPoint> points;
        bool byRows;
        const char* order;
    } rows[] = {
        {"nothing", {}, true, ""},
        {"one", {{1, 2}}, true, "0 "},
        {"a grid by rows", {{0, 6000}, {6000, 6000}, {6000, 0}, {0, 0}}, true, "3 2 0 1 "},
        {"a grid by columns", {{0, 6000}, {6000, 6000}, {6000, 0}, {0, 0}}, false, "3 0 2 1 "},
        {"one row: y differ by the tolerance", {{0, 50}, {100, 0}}, true, "0 1 "},
        {"two rows: y differ by more", {{0, 51}, {100, 0}}, true, "1 0 "},
        {"columns have no tolerance", {{0.5f, 0}, {0, 500}}, false, "1 0 "},
        {"one column: y within the tolerance keeps the order given", {{0, 50}, {0, 0}}, false, "0 1 "},
        {"the same place twice keeps the order given", {{7, 7}, {7, 7}, {7, 7}}, true, "0 1 2 "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Show(NumberingOrder(row.points, row.byRows, 50)), row.order);
    }
}

TEST(Numbering, AgreesWithThePlainScan) {
    std::mt19937 rng(20250311);
    const auto pick = [&rng](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    for (int round = 0; round < 3000; ++round) {
        // A step of half the tolerance makes ties, rows that shade into one another, and differences of
        // exactly the tolerance; some rounds have coordinates that are no numbers.
        const float step = round % 3 == 0 ? 50.0f : 25.0f;
        const int side = 1 + pick(9);
        std::vector<SortPoint> points(static_cast<std::size_t>(pick(60)));
        for (auto& p : points)
            p = {step * static_cast<float>(pick(side)), step * static_cast<float>(pick(side))};
        if (round % 5 == 0)
            for (auto& p : points) {
                constexpr float kOdd[] = {std::numeric_limits<float>::quiet_NaN(), HUGE_VALF, -HUGE_VALF,
                                          3e38f};
                if (pick(8) == 0) p.x = kOdd[pick(4)];
                if (pick(8) == 0) p.y = kOdd[pick(4)];
            }
        for (const bool byRows : {true, false})
            ASSERT_EQ(Show(NumberingOrder(points, byRows, 50)), Show(Plain{points, 50}.Order(byRows)))
                << "round " << round << (byRows ? ", rows" : ", columns");
    }
}
