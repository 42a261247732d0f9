#include "platform/canvas/glyph_source.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "platform/canvas/stroke_font.h"

namespace {

using Key = std::tuple<char32_t, double, double, bool, bool>;

struct Entry {
    double advance = -1;
    std::optional<CGlyphMask> mask;
};

/// What the chain of sources has answered. Emptied when it outgrows its bound or the source changes.
struct Cache {
    static constexpr std::size_t kMaxEntries = 1 << 14;
    static constexpr std::size_t kMaxBytes = std::size_t{32} << 20;

    std::shared_ptr<CGlyphSource> source;  // null: the built-in one
    std::map<Key, Entry> entries;
    std::size_t bytes = 0;

    void Clear() {
        entries.clear();
        bytes = 0;
    }
    Entry& Find(const CGlyphRequest& r) {
        if (entries.size() >= kMaxEntries || bytes > kMaxBytes) Clear();
        return entries[Key(r.code, r.height, r.angle, r.bold, r.italic)];
    }
};

Cache& TheCache() {
    static Cache cache;
    return cache;
}

/// For the built-in source, a request to the set one: the same em square.
CGlyphRequest ForBuiltIn(CGlyphRequest r) {
    r.height *= BuiltInGlyphSource().CellPerEm() / GetGlyphSource().CellPerEm();
    return r;
}

bool IsControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

/// The stand-in for a character that nobody knows: an empty box of the capitals' height.
double BoxAdvance(const CGlyphRequest& r) {
    if (IsControl(r.code)) return 0;
    const bool wide = r.code >= 0x1100;
    return r.height * (wide ? 1.0 : 0.5);
}
CGlyphMask Box(const CGlyphRequest& r) {
    CGlyphMask mask;
    if (IsControl(r.code)) return mask;
    const double w = BoxAdvance(r), x0 = 0.12 * w, x1 = 0.88 * w, y1 = 0.6 * r.height;
    const CStrokePoint p[] = {{x0, 0}, {x1, 0}, {x1, y1}, {x0, y1}, {x0, 0}};
    RenderStrokes({{std::begin(p), std::end(p)}}, std::max(1.0, r.height * 0.05), r.angle, mask);
    return mask;
}

}  // namespace

CGlyphSource& BuiltInGlyphSource() {
    static CStrokeFont font;
    return font;
}

CGlyphSource& GetGlyphSource() {
    const auto& source = TheCache().source;
    return source ? *source : BuiltInGlyphSource();
}

void SetGlyphSource(std::shared_ptr<CGlyphSource> source) {
    TheCache().Clear();
    TheCache().source = std::move(source);
}

double FindAdvance(const CGlyphRequest& request) {
    Entry& entry = TheCache().Find(request);
    if (entry.advance < 0) entry.advance = GetGlyphSource().Advance(request);
    if (!(entry.advance >= 0)) entry.advance = BuiltInGlyphSource().Advance(ForBuiltIn(request));
    if (!(entry.advance >= 0)) entry.advance = BoxAdvance(request);
    return entry.advance;
}

const CGlyphMask& FindGlyph(const CGlyphRequest& request) {
    Entry& entry = TheCache().Find(request);
    if (!entry.mask) {
        CGlyphMask mask;
        if (!GetGlyphSource().Render(request, mask)) {
            mask = CGlyphMask{};
            if (!BuiltInGlyphSource().Render(ForBuiltIn(request), mask)) mask = Box(request);
        }
        mask.coverage.resize(static_cast<std::size_t>(mask.width) * static_cast<std::size_t>(mask.height));
        TheCache().bytes += mask.coverage.size();
        entry.mask = std::move(mask);
    }
    return *entry.mask;
}
