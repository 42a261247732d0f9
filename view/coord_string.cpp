// Points that are typed.
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "platform/number_text.h"
#include "view/tvo_view_kernel.h"

namespace {

std::vector<std::string_view> Split(std::string_view text, char at) {
    std::vector<std::string_view> parts;
    for (std::size_t from = 0;;) {
        const std::size_t to = text.find(at, from);
        parts.push_back(text.substr(from, to - from));
        if (to == std::string_view::npos) return parts;
        from = to + 1;
    }
}

/// Decimal numbers alone; "inf", "nan" and the like are no numbers.
float Decimal(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t+-");
    if (first == std::string_view::npos || !(text[first] == '.' || (text[first] >= '0' && text[first] <= '9'))) return 0;
    return static_cast<float>(LeadingReal(text));
}

}  // namespace

// The parts are not checked: what is no number counts as 0.
int ParseCoordString(CString text, float* values, int* pPolar, int* pRelative) {
    text.TrimLeft();
    text.TrimRight();
    std::string_view rest(text.GetString(), static_cast<std::size_t>(text.GetLength()));
    if (rest.size() < 2) return 0;
    *pRelative = rest[0] == '@';
    if (*pRelative) rest.remove_prefix(1);
    for (const char separator : {',', '<'}) {
        const auto parts = Split(rest, separator);
        if (parts.size() != 2) continue;
        for (int i = 0; i < 2; ++i) values[i] = Decimal(parts[static_cast<std::size_t>(i)]);
        *pPolar = separator == '<';
        return std::isfinite(values[0]) && std::isfinite(values[1]);
    }
    return 0;
}

int CTvoViewKernel::ProcessInputCoor(const char* text, CFPoint& out) {
    if (m_nInputPoint >= kMostInputPoints) {
        SetPromptText("*已经超过最大输入点数!*");
        return 0;
    }
    float values[2] = {};
    int polar = 0, relative = 0;
    if (!ParseCoordString(text, values, &polar, &relative)) return 0;
    float x = values[0], y = values[1];
    if (polar) {
        const float angle = values[1] * 3.1415927f / 180;
        x = values[0] * std::cos(angle);
        y = values[0] * std::sin(angle);
    }
    CFPoint base;
    if (relative) {
        if (m_nInputPoint <= 0) {
            SetPromptText("第一点不能是相对坐标");
            return 0;
        }
        base = m_aInputPoint[m_nInputPoint - 1];
    } else {
        m_cCursorOffset.y = 0;  // of the absolute forms alone
    }
    const CFPoint sum(base.x + x, base.y + y, base.z);
    if (!std::isfinite(sum.x) || !std::isfinite(sum.y)) return 0;
    out = sum;
    return 1;
}
