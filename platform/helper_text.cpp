#include "platform/helper_text.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/string.h"

int read_one_unit_from_string(char* unit, const char* text, int* position) {
    constexpr std::string_view kWhite = " \t\n\r\f\v";
    unit[0] = 0;
    if (!text) return 0;
    int at = std::max(*position, 0);
    while (text[at] != 0) {
        const std::size_t length = std::strcspn(text + at, ";");
        std::string_view found(text + at, length);
        at += static_cast<int>(length) + (text[at + static_cast<int>(length)] == ';' ? 1 : 0);
        found.remove_prefix(std::min(found.find_first_not_of(kWhite), found.size()));
        found = found.substr(0, found.find_last_not_of(kWhite) + 1);
        if (found.empty()) continue;
        found = found.substr(0, Utf8CutLength(found, kUnitBytes));
        std::memcpy(unit, found.data(), found.size());
        unit[found.size()] = 0;
        break;
    }
    *position = at;
    return unit[0] != 0;
}
