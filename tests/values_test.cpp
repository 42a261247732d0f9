// Small helpers: checking and laying out of texts, numbers as text, dates, arrays of values, colours, errors.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "geometry/fpoint.h"
#include "model/dates.h"
#include "model/exchange_sort.h"
#include "model/table_text.h"
#include "model/text_check.h"
#include "model/value_arrays.h"
#include "platform/acad_color.h"
#include "platform/errors.h"
#include "platform/helper_text.h"
#include "platform/number_text.h"
#include "tests/file_fixtures.h"

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

}  // namespace

// --- texts ------------------------------------------------------------------------------------------------

TEST(TextCheck, Splitting) {
    const struct {
        const char* text;
        const char* more;
        const char* fields;
    } rows[] = {
        {"a,,b", nullptr, "[a][][b]"}, {"a,", nullptr, "[a][]"},          {"", nullptr, "[]"},
        {nullptr, nullptr, ""},        {"a;b c,d", "; ", "[a][b][c][d]"}, {"轴,线", "", "[轴][线]"},
    };
    for (const auto& row : rows) {
        CStringArray out;
        out.Add("old");
        const int count = vs_comma_text(row.text, out, ',', row.more);
        EXPECT_EQ(count, out.GetSize());
        EXPECT_EQ(Show(out), row.fields);
    }
    CStringArray out;
    vs_comma_text((std::string(600, 'x') + ",a" + std::string(498, 'y') + "轴").c_str(), out, ',', nullptr);
    EXPECT_EQ(out[0].GetLength(), 600);
    EXPECT_EQ(out[1].GetLength(), 499) << "500 bytes, but no half of a character";
}

TEST(TextCheck, ValidNumbers) {
    const struct {
        const char* text;
        int integer, real;
    } rows[] = {
        {"", 1, 1},     {" 12\t", 1, 1}, {"-12", 1, 1},   {"1-", 0, 0},   {"-", 1, 1},
        {"+1", 0, 0},   {"1.2", 0, 1},   {"1.2.3", 0, 0}, {"1.-2", 0, 0}, {"-1.5", 0, 1},
        {"-1-1", 0, 0}, {"1e5", 0, 0},   {".", 0, 1},     {"1 2", 0, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(IsValidInteger(row.text), row.integer) << row.text;
        EXPECT_EQ(IsValidReal(row.text), row.real) << row.text;
        EXPECT_EQ(IsValidNumber(row.text), row.integer | row.real) << row.text;
    }
}

TEST(TextCheck, NumbersForDisplay) {
    const struct {
        double v;
        int digits;
        const char* text;
    } rows[] = {{2.50, 3, "2.5"},    {2.0, 3, "2.0"},      {1.0 / 3, 9, "0.33333"},
                {20, 0, "20"},       {-0.125, 2, "-0.12"}, {1234.5678, -3, "1235"},
                {100.0, 1, "100.0"}, {HUGE_VAL, 3, "inf"}, {1e20, 2, "100000000000000000000.0"}};
    for (const auto& row : rows) EXPECT_EQ(GetDisplayCoef(row.v, row.digits), row.text);
    EXPECT_EQ(remove_invalid_filechar("a\\b/c:d*e?f<g>h|轴\"."), "abcdefgh轴\".");
    EXPECT_EQ(remove_continous_duplicate_char("  a   bb ", ' '), " a bb ");
    EXPECT_EQ(remove_continous_duplicate_char(nullptr, ' '), "");
}

TEST(NumberText, LeadingPartInTheCLocale) {
    const struct {
        const char* text;
        double real;
        int integer;
    } rows[] = {
        {"12.5abc", 12.5, 12},
        {" \t-7e2x", -700, -7},
        {"+3", 3, 3},
        {"--3", 0, 0},
        {"+-3", 0, 0},
        {"", 0, 0},
        {"x", 0, 0},
        {"1e999", HUGE_VAL, 1},
        {"-1e-999", 0, -1},
        {"99999999999", 99999999999.0, 2147483647},
        {"-99999999999", -99999999999.0, -2147483647 - 1},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(LeadingReal(row.text), row.real) << row.text;
        EXPECT_EQ(LeadingInt(row.text), row.integer) << row.text;
    }
    EXPECT_EQ(LeadingReal("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(LeadingReal(std::string(400, '9')), HUGE_VAL);
    std::mt19937_64 rng(77);
    for (int round = 0; round < 2000;
         ++round) {  // the process stays in the C locale here, so printf is an oracle
        const double v = (static_cast<double>(rng() % 2000001) - 1e6) *
                         std::pow(10.0, static_cast<double>(rng() % 20) - 10);
        char text[400];
        std::snprintf(text, sizeof text, "%.5f", v);
        ASSERT_EQ(FixedReal(v, 5), text) << "round " << round;
        ASSERT_EQ(LeadingReal(text), std::strtod(text, nullptr)) << "round " << round;
    }
}

TEST(HelperText, Units) {
    const auto all = [](const char* text) {
        std::string out;
        char unit[kUnitBytes + 1];
        int position = 0;
        while (read_one_unit_from_string(unit, text, &position)) out += Shown(unit);
        EXPECT_STREQ(unit, "");
        return out;
    };
    EXPECT_EQ(all("3600*5; 6600*5 ;9000*2"), "[3600*5][6600*5][9000*2]");
    EXPECT_EQ(all(""), "");
    EXPECT_EQ(all(nullptr), "");
    EXPECT_EQ(all(" ;; 6 ;"), "[6]");
    EXPECT_EQ(all(("x;" + std::string(62, 'y') + "轴;z").c_str()), "[x][" + std::string(62, 'y') + "][z]");
}

TEST(TableText, ColumnsOfAPage) {
    EXPECT_EQ(GetTextColumns("轴a"), 3);
    EXPECT_EQ(GetCenteredWord("ab", 5), " ab  ");
    EXPECT_EQ(GetCenteredWord("轴线", 6), " 轴线 ");
    EXPECT_EQ(GetCenteredWord("轴线", 3), "轴 ");
    EXPECT_EQ(GetCenteredWord("ab", -1), "");
    EXPECT_EQ(GetCenteredTextLine("ab", 7), "  ab");
    EXPECT_EQ(GetCenteredTextLine("abcd", 2), "abcd");
    EXPECT_EQ(GetTabbedText("a\t轴线\tlonger\tz", 5), "a    轴线 longer z");
    EXPECT_TRUE(TestTabbedText() && test_get_word() && Test_WriteFloatArray() && Test_ReadFloatArray());
}

TEST(Dates, DaysMoveAcrossMonthsAndLeapYears) {
    const struct {
        int date, days, result;
    } rows[] = {
        {20240228, 1, 20240229},
        {20230228, 1, 20230301},
        {19000228, 1, 19000301},
        {20000228, 1, 20000229},
        {20240301, -1, 20240229},
        {20231231, 1, 20240101},
        {20240101, -1, 20231231},
        {20240115, 0, 20240115},
        {20240101, 146097, 24240101},
        {24240101, -146097, 20240101},
        {20241301, 1, -1},
        {20240001, 1, -1},
        {20240230, 0, -1},
        {20240100, 0, -1},
        {-20240101, 0, -1},
        {0, 0, -1},
        {20240101, 2147483647, -1},
        {20240101, -2147483647 - 1, -1},
        {101, 1, 102},
        {101, -1, -1},
    };
    for (const auto& row : rows)
        EXPECT_EQ(get_ref_date(row.date, row.days), row.result) << row.date << " + " << row.days;
    for (int date = 19991201, days = 0; days < 1000; ++days, date = get_ref_date(date, 1)) {
        ASSERT_EQ(get_ref_date(19991201, days), date);
        ASSERT_EQ(get_ref_date(date, -days), 19991201);
    }
    EXPECT_NE(GetCurTime().Find("年"), -1);
    int year = 0, rest = 0;
    EXPECT_EQ(std::sscanf(GetCurTime2(), "%d-%2d-%2d %2d:%2d:%2d", &year, &rest, &rest, &rest, &rest, &rest),
              6);
    EXPECT_GT(year, 2000);
}

// --- arrays -----------------------------------------------------------------------------------------------

TEST(ValueArrays, KeyValuesAndDuplicates) {
    float min = 7, max = 7, mean = 7;
    EXPECT_EQ(get_array_key_value(Floats({}), min, max, mean), 0);
    EXPECT_EQ(min, 7);
    EXPECT_EQ(get_array_key_value(Floats({3, -1, 4}), min, max, mean), 1);
    EXPECT_EQ(min, -1);
    EXPECT_EQ(max, 4);
    EXPECT_EQ(mean, 2);
    CArray<float, float> a = Floats({3, 1, kNaN, 3, 1.0000001f, 1});
    DeleteDuplicateValue(a);
    ASSERT_EQ(a.GetSize(), 4);
    EXPECT_TRUE(a[0] == 1 && a[1] == 1.0000001f && a[2] == 3 && std::isnan(a[3]));
    CArray<int, int> ints;
    for (const int v : {5, -2147483647 - 1, 5, 2147483647, 0}) ints.Add(v);
    DeleteDuplicateValue(ints);
    EXPECT_EQ(Show(ints), "-2147483648 0 5 2147483647 ");
    ResetFloatArray(&a, 2, 8);
    EXPECT_EQ(Show(a), "8.000000 8.000000 ");
    CArray<float, float> to = Floats({1});
    CopyFloatArray(a, to);
    CopyFloatArray(to, to);
    EXPECT_EQ(Show(to), Show(a));
}

TEST(ValueArrays, TextForm) {
    const auto a = Floats({1.5f, -2, 0.1f});
    const TempFile f;
    WriteFloatArray(&a, f, 1, ';', 1);
    EXPECT_EQ(f.Content(), "3,1.50000;-2.00000;0.10000;\n") << "the comma behind the size stays";
    const struct {
        const char* name;
        std::string file;
        int keepNewline;
        const char* values;
        long at;
    } rows[] = {
        {"what was written", "3,1.5,-2,0.1\nx", 0, "1.500000 -2.000000 0.100000 ", 13},
        {"with the newline kept", "3,1.5,-2,0.1\nx", 1, "1.500000 -2.000000 0.100000 ", 12},
        {"an empty last field", "2,1.5,\nx", 1, "1.500000 0.000000 ", 6},
        {"a count beyond a kept line", "2000000000,1\n2", 1, "1.000000 ", 12},
        {"a count beyond the file", "2000000000,1\n2", 0, "1.000000 2.000000 ", 14},
        {"a negative count", "-3,1,2", 0, "", 3},
        {"nothing", "", 0, "", 0},
        {"none", "0,\n", 1, "", 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TempFile in(row.file);
        CArray<float, float> read = Floats({9});
        const int count = ReadFloatArray(&read, in, ',', row.keepNewline);
        EXPECT_EQ(count, read.GetSize());
        EXPECT_EQ(Show(read), row.values);
        EXPECT_EQ(in.At(), row.at);
    }
}

TEST(ValueArrays, SortedAsByExchanges) {
    const auto plain = [](const std::vector<float>& keys) {
        std::vector<int> order(keys.size());
        for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
        const auto key = [&](std::size_t i) { return keys[static_cast<std::size_t>(order[i])]; };
        for (std::size_t i = 0; i < order.size(); ++i)
            for (std::size_t j = i + 1; j < order.size(); ++j)
                if (key(i) > key(j)) std::swap(order[i], order[j]);
        return order;
    };
    std::mt19937 rng(424242);
    for (int round = 0; round < 1500; ++round) {
        std::vector<float> keys(rng() % 150);
        const auto values = 1 + rng() % (round % 4 == 0 ? 200 : 8);
        for (float& key : keys) key = static_cast<float>(rng() % values) - 3;
        if (round % 7 == 0)
            for (float& key : keys) {
                if (rng() % 10 == 0) key = kNaN;
                if (rng() % 10 == 0) key = rng() % 2 != 0 ? 0.0f : -0.0f;
            }
        ASSERT_EQ(ExchangeSortOrder(keys), plain(keys)) << "round " << round;
    }
    CArray<CFPoint, CFPoint> points;
    for (const CFPoint& p : {CFPoint(2, 1, 0), CFPoint(2, 2, 0), CFPoint(1, 3, 0)}) points.Add(p);
    const auto ys = [&] { return Show(Floats({points[0].y, points[1].y, points[2].y})); };
    SortFloatPointArray(points, 'X');
    EXPECT_EQ(ys(), "3.000000 2.000000 1.000000 ") << "not stable";
    SortFloatPointArray(points, 'y');
    EXPECT_EQ(ys(), "1.000000 2.000000 3.000000 ");
}

// --- colours, errors --------------------------------------------------------------------------------------

TEST(AcadColor, Table) {
    const struct {
        int index;
        COLORREF color;
    } rows[] = {
        {0, RGB(0, 0, 0)},         {1, RGB(255, 0, 0)},       {2, RGB(255, 255, 0)},
        {3, RGB(0, 255, 0)},       {4, RGB(0, 255, 255)},     {5, RGB(0, 0, 255)},
        {6, RGB(255, 0, 255)},     {7, RGB(255, 255, 255)},   {8, RGB(128, 128, 128)},
        {9, RGB(192, 192, 192)},   {10, RGB(255, 0, 0)},      {11, RGB(255, 127, 127)},
        {20, RGB(255, 63, 0)},     {21, RGB(255, 159, 127)},  {29, RGB(76, 47, 38)},
        {30, RGB(255, 127, 0)},    {50, RGB(255, 255, 0)},    {60, RGB(191, 255, 0)},
        {92, RGB(0, 204, 0)},      {104, RGB(0, 153, 38)},    {130, RGB(0, 255, 255)},
        {142, RGB(0, 153, 204)},   {176, RGB(0, 0, 127)},     {188, RGB(19, 0, 76)},
        {210, RGB(255, 0, 255)},   {240, RGB(255, 0, 63)},    {249, RGB(76, 38, 47)},
        {250, RGB(51, 51, 51)},    {255, RGB(255, 255, 255)}, {-1, RGB(255, 255, 255)},
        {256, RGB(255, 255, 255)},
    };
    for (const auto& row : rows) EXPECT_EQ(GetAcadRGBColor(row.index), row.color) << row.index;
    EXPECT_EQ(GetAcadRGBColor(1) & 0xFF, 255u) << "red in the low byte";
}

TEST(Errors, GoThroughTheHandlerAndReturn) {
    static std::string told;
    const ErrorHandler before =
        SetErrorHandler([](int code, const char* text) { told += std::to_string(code) + text; });
    tell_error(201, "错误");
    tell_error(7, nullptr);
    EXPECT_EQ(told, "201错误7");
    SetErrorHandler(before);
}
