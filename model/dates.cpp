#include "model/dates.h"

#include <cstdint>
#include <ctime>

namespace {

std::tm LocalNow() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    return parts;
}

bool IsLeap(std::int64_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int DaysOfMonth(std::int64_t year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return kDays[month - 1] + (month == 2 && IsLeap(year) ? 1 : 0);
}

constexpr std::int64_t kDaysOf400Years = 146097;

}  // namespace

CString GetCurTime() {
    const std::tm now = LocalNow();
    CString text;
    text.Format("%d年%d月%d日", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday);
    return text;
}

CString GetCurTime2() {
    const std::tm now = LocalNow();
    CString text;
    text.Format("%d-%02d-%02d %02d:%02d:%02d", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday, now.tm_hour,
                now.tm_min, now.tm_sec);
    return text;
}

int get_ref_date(int date, int days) {
    std::int64_t year = date / 10000;
    int month = date / 100 % 100, day = date % 100;
    if (month < 1 || month > 12 || day < 1 || day > DaysOfMonth(year, month)) return -1;

    // Whole cycles of 400 years first; what is left is at most 400 years of walking from month to month.
    std::int64_t left = day + static_cast<std::int64_t>(days);  // the day counted from the month's start
    std::int64_t cycles = left / kDaysOf400Years;
    if (left % kDaysOf400Years < 1) --cycles;
    year += cycles * 400;
    left -= cycles * kDaysOf400Years;
    while (left > DaysOfMonth(year, month)) {
        left -= DaysOfMonth(year, month);
        if (++month > 12) {
            month = 1;
            ++year;
        }
    }
    const std::int64_t result = year * 10000 + month * 100 + left;
    return year < 0 || result > INT32_MAX ? -1 : static_cast<int>(result);
}
