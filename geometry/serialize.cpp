// The stored forms of points and outlines.
#include <cstdint>

#include "geometry/fregion.h"
#include "platform/archive.h"

namespace {

template <class... T>
void Exchange(CArchive& ar, T&... values) {
    if (ar.IsStoring()) (ar << ... << values);
    else (ar >> ... >> values);
}

}  // namespace

void CFPoint::Serialize(CArchive& ar) { Exchange(ar, x, y, z); }

void CFShoot::Serialize(CArchive& ar) {
    CFPoint::Serialize(ar);
    Exchange(ar, c);
}

void CFShape::Serialize(CArchive& ar) {
    CFPoint::Serialize(ar);
    Exchange(ar, r, a, b);
}

void CFRegion::Serialize(CArchive& ar) {
    auto count = static_cast<std::uint32_t>(GetSize());
    Exchange(ar, count);
    if (ar.IsStoring()) {
        for (CFShoot& s : *this) s.Serialize(ar);
        return;
    }
    // The count is not trusted: vertices are taken as they come, up to the first that is cut off.
    RemoveAll();
    for (std::uint32_t i = 0; i < count; ++i) {
        CFShoot s;
        s.Serialize(ar);
        if (ar.IsShort()) return;
        Add(s);
    }
}
