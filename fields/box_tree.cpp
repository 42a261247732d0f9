#include "fields/box_tree.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "platform/saturate.h"

void PlaneBox::Unite(const PlaneBox& other) {
    if (other.IsEmpty()) return;
    if (IsEmpty()) {
        *this = other;
        return;
    }
    minX = std::min(minX, other.minX);
    minY = std::min(minY, other.minY);
    maxX = std::max(maxX, other.maxX);
    maxY = std::max(maxY, other.maxY);
}

PlaneBox PlaneBox::About(double minX, double minY, double maxX, double maxY) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const auto nearest = [](double v) {
        constexpr double kLargest = std::numeric_limits<float>::max();
        return static_cast<float>(std::clamp(v, -kLargest, kLargest));
    };
    const auto atMost = [&](double v) {
        const float f = nearest(v);
        return static_cast<double>(f) > v ? std::nextafter(f, -kInfinity) : f;
    };
    const auto atLeast = [&](double v) {
        const float f = nearest(v);
        return static_cast<double>(f) < v ? std::nextafter(f, kInfinity) : f;
    };
    return {atMost(minX), atMost(minY), atLeast(maxX), atLeast(maxY)};
}

namespace {

/// The bits of a 16-bit number, a gap of one between each two.
std::uint32_t Spread(std::uint32_t v) {
    v = (v | v << 8) & 0x00FF00FF;
    v = (v | v << 4) & 0x0F0F0F0F;
    v = (v | v << 2) & 0x33333333;
    return (v | v << 1) & 0x55555555;
}

std::uint32_t Cell(float low, float high, float allLow, float allHigh) {
    const double middle = (static_cast<double>(low) + static_cast<double>(high)) / 2;
    const double span = static_cast<double>(allHigh) - static_cast<double>(allLow);
    const double share = span > 0 ? (middle - static_cast<double>(allLow)) / span : 0;
    return static_cast<std::uint32_t>(SaturatedInt(share * 65536, 0, 65535));
}

std::uint64_t CurveKey(const PlaneBox& box, const PlaneBox& all) {
    return Spread(Cell(box.minX, box.maxX, all.minX, all.maxX)) |
           Spread(Cell(box.minY, box.maxY, all.minY, all.maxY)) << 1;
}

// By the upper 32 bits, three passes of eleven; entries of one key stay in the order of the items.
void SortByKey(PooledVector<std::uint64_t>& order) {
    constexpr unsigned kBits = 11;
    constexpr std::uint64_t kMask = (1u << kBits) - 1;
    PooledVector<std::uint64_t> other(order.size());
    for (unsigned shift = 32; shift < 64; shift += kBits) {
        std::array<std::size_t, kMask + 1> start{};
        for (const std::uint64_t entry : order) ++start[entry >> shift & kMask];
        std::size_t sum = 0;
        for (std::size_t& s : start) {
            const std::size_t count = s;
            s = sum;
            sum += count;
        }
        for (const std::uint64_t entry : order) other[start[entry >> shift & kMask]++] = entry;
        order.swap(other);
    }
}

/// The items along the curve.
PooledVector<int> CurveOrder(const PooledVector<PlaneBox>& boxes) {
    PlaneBox all;
    for (const PlaneBox& box : boxes) all.Unite(box);
    PooledVector<std::uint64_t> order;  // key and item
    order.reserve(boxes.size());
    for (std::size_t i = 0; i < boxes.size(); ++i)
        if (!boxes[i].IsEmpty()) order.push_back(CurveKey(boxes[i], all) << 32 | i);
    SortByKey(order);
    PooledVector<int> items;
    items.reserve(order.size());
    for (const std::uint64_t entry : order) items.push_back(static_cast<int>(entry & 0xFFFFFFFF));
    return items;
}

}  // namespace

CBoxTree::Eight::Eight() {
    for (std::size_t k = 0; k < kFan; ++k) Set(k, {}, kNone);
}

void CBoxTree::Eight::Set(std::size_t k, const PlaneBox& box, int item) {
    minX[k] = box.minX;
    minY[k] = box.minY;
    maxX[k] = box.maxX;
    maxY[k] = box.maxY;
    lowest[k] = item;
}

PlaneBox CBoxTree::Eight::All() const {
    PlaneBox all;
    for (std::size_t k = 0; k < kFan; ++k) all.Unite({minX[k], minY[k], maxX[k], maxY[k]});
    return all;
}

int CBoxTree::Eight::Lowest() const { return *std::min_element(lowest, lowest + kFan); }

PooledVector<int> CBoxTree::Build(PooledVector<PlaneBox> boxes) {
    PooledVector<int> items = CurveOrder(boxes);
    m_aLevel.clear();
    if (items.empty()) return items;
    m_aLevel.emplace_back((items.size() + kFan - 1) / kFan);
    for (std::size_t i = 0; i < items.size(); ++i)
        m_aLevel[0][i / kFan].Set(i % kFan, boxes[static_cast<std::size_t>(items[i])], items[i]);
    while (m_aLevel.back().size() > 1) {
        const PooledVector<Eight>& below = m_aLevel.back();
        PooledVector<Eight> level((below.size() + kFan - 1) / kFan);
        for (std::size_t i = 0; i < below.size(); ++i)
            level[i / kFan].Set(i % kFan, below[i].All(), below[i].Lowest());
        m_aLevel.push_back(std::move(level));
    }
    return items;
}
