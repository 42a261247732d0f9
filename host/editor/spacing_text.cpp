#include "host/editor/spacing_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

constexpr std::size_t kMostQuoted = 24;  // bytes of a unit that a message repeats

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

std::string Quoted(std::string_view unit) {
    std::size_t end = std::min(unit.size(), kMostQuoted);
    while (end > 0 && end < unit.size() && (static_cast<unsigned char>(unit[end]) & 0xC0) == 0x80) --end;
    return std::string(1, '"').append(unit.substr(0, end)).append(end < unit.size() ? "...\"" : "\"");
}

template <class Number>
bool ReadWhole(std::string_view text, Number& value) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return !text.empty() && error == std::errc() && end == text.data() + text.size();
}

std::string Between(double least, double most) {
    return "应在 " + NumberText(least) + " 到 " + NumberText(most) + " 之间";
}

/// What is wrong with one unit; empty: it has been read.
std::string ReadUnit(std::string_view text, const SpacingRule& rule, SpacingUnit& unit) {
    const std::size_t star = text.find('*');
    const std::string_view spacing = Trimmed(text.substr(0, star));
    if (spacing.empty()) return "* 前缺少间距";
    const std::optional<double> number = TypedNumber(spacing);
    if (!number) return "间距不是数";
    unit = {*number, 1};
    if (star != text.npos) {
        const std::string_view count = Trimmed(text.substr(star + 1));
        if (count.empty()) return "* 后缺少跨数";
        if (count.find('*') != count.npos) return "多于一个 *";
        if (!ReadWhole(count, unit.count) || unit.count < rule.leastCount || unit.count > rule.mostCount)
            return "跨数应为 " + std::to_string(rule.leastCount) + " 到 " + std::to_string(rule.mostCount) +
                   " 的整数";
    }
    if (unit.count > 0 && !(unit.spacing >= rule.least && unit.spacing <= rule.most))
        return "间距" + Between(rule.least, rule.most);
    return {};
}

}  // namespace

std::string HalfWidth(std::string_view text) {
    std::string plain;
    const auto byte = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    for (std::size_t i = 0; i < text.size();) {
        if (byte(i) == 0xC3 && byte(i + 1) == 0x97) {  // the sign of multiplication
            plain += '*';
            i += 2;
        } else if (byte(i) == 0xE3 && byte(i + 1) == 0x80 &&
                   byte(i + 2) == 0x80) {  // the blank of full width
            plain += ' ';
            i += 3;
        } else if (byte(i) == 0xEF && (byte(i + 1) & 0xC0) == 0x80 && (byte(i + 2) & 0xC0) == 0x80) {
            const unsigned code = (byte(i) & 0xF) << 12 | (byte(i + 1) & 0x3F) << 6 | (byte(i + 2) & 0x3F);
            if (code >= 0xFF01 && code <= 0xFF5E) plain += static_cast<char>(code - 0xFF01 + 0x21);
            else plain += text.substr(i, 3);
            i += 3;
        } else {
            plain += text[i++];
        }
    }
    return plain;
}

std::optional<double> TypedNumber(std::string_view text) {
    const std::string plain = HalfWidth(text);
    double value = 0;
    if (!ReadWhole(Trimmed(plain), value) || !std::isfinite(value)) return {};
    return value;
}

std::string CheckNumber(std::string_view text, const char* label, double least, double most) {
    const std::optional<double> number = TypedNumber(text);
    if (!number) return std::string(label) + ": " + Quoted(text) + " 不是数";
    if (*number < least || *number > most) return std::string(label) + ": " + Between(least, most);
    return {};
}

namespace {

template <class Number>
std::string PlainNumber(Number value) {
    char text[64];
    // No powers of ten where people would not write them.
    const double size = std::fabs(static_cast<double>(value));
    const bool plain = size == 0 || (size >= 1e-4 && size < 1e12);
    const auto [end, error] = std::to_chars(text, text + sizeof text, value == 0 ? Number{} : value,
                                            plain ? std::chars_format::fixed : std::chars_format::general);
    return error == std::errc() ? std::string(text, end) : std::string();
}

}  // namespace

std::string NumberText(double value) { return PlainNumber(value); }
std::string NumberText(float value) { return PlainNumber(value); }

Spacings ReadSpacings(std::string_view text, const SpacingRule& rule) {
    const std::string plain = HalfWidth(text);
    Spacings spacings;
    const auto refuse = [&](const std::string& reason) {
        spacings.units.clear();
        spacings.wrong = reason;
        return spacings;
    };
    std::int64_t count = 0;
    int number = 0;
    for (std::size_t at = 0; at < plain.size();) {
        const std::size_t end = std::min(plain.find(';', at), plain.size());
        const std::string_view unit = Trimmed(std::string_view(plain).substr(at, end - at));
        at = end + 1;
        if (unit.empty()) continue;  // as behind the last one
        ++number;
        SpacingUnit read;
        if (const std::string wrong = ReadUnit(unit, rule, read); !wrong.empty())
            return refuse(std::string(rule.label) + " 第" + std::to_string(number) + "段 " + Quoted(unit) +
                          ": " + wrong);
        count += read.count;
        if (count > rule.mostCount)
            return refuse(std::string(rule.label) + " 第" + std::to_string(number) + "段 " + Quoted(unit) +
                          ": 共 " + std::to_string(count) + " 跨, 最多 " + std::to_string(rule.mostCount) +
                          " 跨");
        spacings.units.push_back(read);
        // Units without a spacing don't count, and would go on for ever.
        if (number > rule.mostCount) return refuse(std::string(rule.label) + ": 段数过多");
    }
    if (number == 0 && rule.leastCount > 0) return refuse(std::string(rule.label) + ": 没有数据");
    return spacings;
}

std::vector<double> Spacings::All() const {
    std::vector<double> all;
    for (const SpacingUnit& unit : units)
        all.insert(all.end(), static_cast<std::size_t>(unit.count), unit.spacing);
    return all;
}

double Spacings::Total() const {
    double total = 0;
    for (const SpacingUnit& unit : units) total += unit.spacing * unit.count;
    return total;
}

std::string Spacings::Text() const {
    std::string text;
    for (const SpacingUnit& unit : units) {
        if (!text.empty()) text += ";";
        text += NumberText(unit.spacing);
        if (unit.count != 1) text.append("*").append(std::to_string(unit.count));
    }
    return text;
}
