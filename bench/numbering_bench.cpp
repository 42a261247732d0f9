// Numbers for 100 000 components: a grid as it is drawn, shuffled, and scattered points.
#include <chrono>
#include <cstdio>
#include <random>
#include <vector>

#include "model/numbering.h"

namespace {

void Measure(const char* name, const std::vector<SortPoint>& points) {
    for (const bool byRows : {true, false}) {
        double best = 1e9;
        for (int run = 0; run < 5; ++run) {
            const auto start = std::chrono::steady_clock::now();
            const auto order = NumberingOrder(points, byRows, 50);
            const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
            if (order.size() == points.size() && took.count() < best) best = took.count();
        }
        std::printf("%-10s %-8s %zu components %7.1f ms\n", name, byRows ? "rows" : "columns", points.size(),
                    best * 1e3);
    }
}

}  // namespace

int main() {
    std::vector<SortPoint> grid, scattered;
    for (int x = 0; x < 316; ++x)
        for (int y = 0; y < 317; ++y)
            grid.push_back({6000.0f * static_cast<float>(x), 6000.0f * static_cast<float>(y)});
    std::mt19937 rng(1);
    const auto coordinate = [&rng] { return static_cast<float>(rng() % 2000000); };
    for (int i = 0; i < 100000; ++i) scattered.push_back({coordinate(), coordinate()});
    Measure("grid", grid);
    for (std::size_t i = grid.size(); i > 1; --i) std::swap(grid[i - 1], grid[rng() % i]);
    Measure("shuffled", grid);
    Measure("scattered", scattered);
}
