// Where the thumb of a scroll bar stands. Internal.
#pragma once
#include <algorithm>
#include <cstdint>

/// A stretch of `total` of which `page` shows, from `first` on; the bar is `length` pixels long.
struct ScrollTrack {
    std::int64_t total = 0, page = 0;
    int length = 0;  // pixels

    static constexpr int kLeastThumb = 16;  // pixels that can still be grasped

    bool IsNeeded() const { return total > page; }
    std::int64_t Most() const { return std::max<std::int64_t>(total - page, 0); }
    std::int64_t Within(std::int64_t first) const { return std::clamp<std::int64_t>(first, 0, Most()); }
    int Thumb() const {
        if (!IsNeeded()) return length;
        return static_cast<int>(std::clamp<std::int64_t>(length * page / total, std::min(kLeastThumb, length), length));
    }
    int ThumbAt(std::int64_t first) const {
        return Most() == 0 ? 0 : static_cast<int>((length - Thumb()) * Within(first) / Most());
    }
    /// What stands first when the thumb is drawn to a place.
    std::int64_t FirstFor(int thumbAt) const {
        const int room = length - Thumb();
        return room <= 0 ? 0 : Within((std::int64_t{thumbAt} * Most() + room / 2) / room);
    }
};
