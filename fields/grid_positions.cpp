#include "fields/grid_positions.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "fields/backgrnd.h"

GridPositions::GridPositions(const char* fromText, float from) : text(fromText), origin(from), last(from) {
    CArray<float, float> spacings;
    CBackgrnd().Get_Kua_Data(fromText, spacings);
    ascending.reserve(static_cast<std::size_t>(spacings.GetSize()) + 1);
    const auto add = [this] { (std::isfinite(last) ? ascending : wild).push_back(last); };
    add();
    for (const float spacing : spacings) {
        last += spacing;
        add();
    }
    std::sort(ascending.begin(), ascending.end());
}

bool GridPositions::MadeFrom(const char* fromText, float fromOrigin) const {
    return std::memcmp(&origin, &fromOrigin, sizeof origin) == 0 && text == fromText;  // a NaN is itself
}

std::vector<float> GridPositions::WildKinds() const {
    std::vector<float> kinds;
    for (const float p : wild) {
        const auto same = [p](float kind) { return kind == p || (std::isnan(kind) && std::isnan(p)); };
        if (std::none_of(kinds.begin(), kinds.end(), same)) kinds.push_back(p);
    }
    return kinds;
}
