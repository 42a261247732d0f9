#include "host/json_text.h"

#include <charconv>
#include <cmath>

Json JsonNumber(double value) {
    if (!std::isfinite(value)) return nullptr;
    if (value == 0) return 0.0;
    // A double nearest to a text of 9 digits prints as that very text, so that rounding here is enough.
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 9).ptr;
    double rounded = value;
    std::from_chars(text, end, rounded);
    return rounded;
}

void PrintJsonLine(std::ostream& out, const Json& object) {
    out << object.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}
