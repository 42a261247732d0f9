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
void SortByKey(std::vector<std::uint64_t>& order) {
    constexpr unsigned kBits = 11;
    constexpr std::uint64_t kMask = (1u << kBits) - 1;
    std::vector<std::uint64_t> other(order.size());
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
std::vector<int> CurveOrder(const std::vector<PlaneBox>& boxes) {
    PlaneBox all;
    for (const PlaneBox& box : boxes) all.Unite(box);
    std::vector<std::uint64_t> order;  // key and item
    order.reserve(boxes.size());
    for (std::size_t i = 0; i < boxes.size(); ++i)
        if (!boxes[i].IsEmpty()) order.push_back(CurveKey(boxes[i], all) << 32 | i);
    SortByKey(order);
    std::vector<int> items;
    items.reserve(order.size());
    for (const std::uint64_t entry : order) items.push_back(static_cast<int>(entry & 0xFFFFFFFF));
    return items;
}

}  // namespace

void CBoxTree::Build(std::vector<PlaneBox> boxes) {
    m_aItem = CurveOrder(boxes);
    m_aLevel.assign(1, {});
    m_aLevel[0].reserve(m_aItem.size() / kFan + 1);
    for (std::size_t i = 0; i < m_aItem.size(); ++i) {
        if (i % kFan == 0) m_aLevel[0].push_back({{}, m_aItem[i]});
        m_aLevel[0].back().Add(boxes[static_cast<std::size_t>(m_aItem[i])], m_aItem[i]);
    }
    while (m_aLevel.back().size() > 1) {
        const std::vector<Group>& below = m_aLevel.back();
        std::vector<Group> level;
        level.reserve(below.size() / kFan + 1);
        for (std::size_t i = 0; i < below.size(); ++i) {
            if (i % kFan == 0) level.push_back({{}, below[i].lowest});
            level.back().Add(below[i].box, below[i].lowest);
        }
        m_aLevel.push_back(std::move(level));
    }
}
