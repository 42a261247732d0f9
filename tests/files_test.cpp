// Files, texts, paths and small arrays.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <string>

#include "geometry/fpoint.h"
#include "geometry/fregion.h"
#include "model/binary_records.h"
#include "model/block_file.h"
#include "model/dates.h"
#include "model/exchange_sort.h"
#include "model/paths.h"
#include "model/table_text.h"
#include "model/text_check.h"
#include "model/text_stream.h"
#include "model/value_arrays.h"
#include "platform/acad_color.h"
#include "platform/archive.h"
#include "platform/errors.h"
#include "platform/helper_text.h"
#include "platform/number_text.h"

namespace {

using namespace std::string_literals;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// A temporary file with that content, the stream at its start.
class TempFile {
public:
    explicit TempFile(const std::string& content = "") : m_file(std::tmpfile()) {
        std::fwrite(content.data(), 1, content.size(), m_file);
        std::rewind(m_file);
    }
    ~TempFile() { std::fclose(m_file); }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    operator std::FILE*() const { return m_file; }
    long At() const { return std::ftell(m_file); }
    std::string Content() const {
        std::string all;
        std::fseek(m_file, 0, SEEK_SET);
        for (int c; (c = std::fgetc(m_file)) != EOF;) all += static_cast<char>(c);
        return all;
    }

private:
    std::FILE* m_file;
};

/// An empty folder that goes with all it holds.
class TempFolder {
public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "tvo_files_XXXXXX").string();
        path = mkdtemp(name.data());
        path += '/';
    }
    ~TempFolder() { std::filesystem::remove_all(path); }
    void Put(const std::string& name) const { std::ofstream(path + name) << "x"; }
    std::string path;
};

std::string Shown(const char* text) { return text ? "[" + std::string(text) + "]" : "null"; }

std::string Show(const CStringArray& a) {
    std::string out;
    for (const CString& s : a) out += "[" + s.Std() + "]";
    return out;
}

template <class T>
std::string Show(const CArrayOf<T>& a) {
    std::string out;
    for (const T v : a) out += std::to_string(v).substr(0, 12) + " ";
    return out;
}

CArray<float, float> Floats(std::initializer_list<float> values) {
    CArray<float, float> a;
    for (const float v : values) a.Add(v);
    return a;
}

}  // namespace

// --- text streams -----------------------------------------------------------------------------------------

TEST(TextStream, Words) {
    const struct {
        const char* name;
        std::string file;
        int max, keepNewline;
        const char* word;
        long at;
    } rows[] = {
        {"up to the separator, which is consumed", "ab,cd", 9, 0, "ab", 3},
        {"up to the newline", "ab\ncd", 9, 0, "ab", 3},
        {"the newline is kept", "ab\ncd", 9, 1, "ab", 2},
        {"a kept newline gives empty words for ever", "\ncd", 9, 1, "", 0},
        {"the separator is consumed, newline kept or not", ",\n", 9, 1, "", 1},
        {"as many bytes as told", "abcdef", 3, 0, "abc", 3},
        {"no bytes asked for", "abc", 0, 0, "", 0},
        {"the end", "ab", 9, 0, "ab", 2},
        {"the byte 0xFF ends it and goes", "a\xFF" "b", 9, 0, "a", 2},
        {"a return is a byte like any other", "ab\r\n", 9, 0, "ab\r", 4},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TempFile f(row.file);
        char out[10];
        EXPECT_STREQ(get_word(f, ',', out, row.max, row.keepNewline), row.word);
        EXPECT_EQ(f.At(), row.at);
    }
}

TEST(TextStream, LinesForthAndBack) {
    const auto all = [](const TempFile& f, auto read) {
        char out[6];
        std::string shown;
        for (int i = 0; i < 9; ++i) shown += Shown(read(f, out, 5));
        return shown.substr(0, shown.find("null") == shown.npos ? shown.size() : shown.find("null") + 4);
    };
    const struct {
        const char* name;
        std::string file;
        const char *forth, *back;
    } rows[] = {
        {"nothing", "", "null", "null"},
        {"a line without newline", "ab", "[ab]null", "[ab]null"},
        {"lines", "ab\ncd\n", "[ab][cd]null", "[][cd][ab]null"},
        {"an empty line is no end", "\n\na", "[][][a]null", "[a][][]null"},
        {"a long line comes in pieces", "abcdefg\nh", "[abcde][fg][h]null", "[h][cdefg][ab]null"},
        {"exactly as long as told", "abcde\nf", "[abcde][][f]null", "[f][abcde]null"},
        {"the byte 0xFF ends a line", "ab\xFF" "cd\n", "[ab][cd]null", "[][cd][ab]null"},
        {"0xFF in front is an end", "\xFF" "ab", "null", "[ab]null"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TempFile f(row.file);
        EXPECT_EQ(all(f, get_line), row.forth);
        std::fseek(f, 0, SEEK_END);
        EXPECT_EQ(all(f, get_line_back_ward), row.back);
        EXPECT_EQ(f.At(), 0);
    }
    // Longer than the pieces in which the file is read.
    const std::string longLine(1000, 'x');
    const TempFile f("a\n" + longLine);
    std::fseek(f, 0, SEEK_END);
    std::string out(1001, 0);
    EXPECT_EQ(get_line_back_ward(f, out.data(), 1000), longLine);
    EXPECT_EQ(f.At(), 2);
    EXPECT_EQ(get_line_back_ward(f, out.data(), 1000), ""s);
    EXPECT_EQ(get_line_back_ward(f, out.data(), 1000), "a"s);
}

TEST(TextStream, Numbers) {
    const struct {
        const char* name;
        const char* text;
        float value;
        const char* rest;
    } rows[] = {
        {"a number and a separator", "12.5,7", 12.5f, "7"},
        {"white space all round", " \t-3 \r\n, 4", -3, "4"},
        {"one separator alone", "1,,2", 1, ",2"},
        {"an empty field is 0 and one byte on", ",2", 0, "2"},
        {"a plus", "+.5", 0.5f, ""},
        {"one sign alone", "--5", 0, "5"},
        {"the run goes as one", "1.2.3;4", 1.2f, "4"},
        {"no exponent", "1e5", 1, "e5"},
        {"a letter is passed over", "a,5", 0, "5"},
        {"a sign at the end", "-", 0, ""},
        {"white space alone", "  ", 0, ""},
        {"too large", "1" "000000000000000000000" "00000000000000000000", HUGE_VALF, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        float value = 99;
        EXPECT_STREQ(get_number(row.text, value, ",;"), row.rest);
        EXPECT_EQ(value, row.value);
    }
    float value = 99;
    EXPECT_EQ(get_number(nullptr, value, ","), nullptr);
    EXPECT_EQ(get_number("", value, ","), nullptr);
    EXPECT_EQ(value, 99);
    EXPECT_STREQ(get_number("1 ,2", value, nullptr), ",2");

    // Any line ends after at most its length of steps.
    std::mt19937 rng(5);
    for (int round = 0; round < 2000; ++round) {
        std::string line;
        for (auto n = rng() % 20; n > 0; --n) line += "-+.,1 \tx;"[rng() % 9];
        std::size_t steps = 0;
        for (const char* s = line.c_str(); (s = get_number(s, value, ",")) != nullptr; ++steps)
            ASSERT_LE(s, line.c_str() + line.size()) << "round " << round;
        ASSERT_LE(steps, line.size()) << "round " << round << ": " << line;
    }
}

TEST(TextStream, Finding) {
    const std::string file = "first\n\xD6\xE1\xCF\xDF two\n\xFF\nlast two"s;  // "轴线" as GBK
    const struct {
        const char* name;
        const char* text;
        int found;
        long behind, stay;
    } rows[] = {
        {"in the first line", "irs", 1, 6, 0},
        {"Chinese is sought as GBK", "轴线", 1, 15, 6},
        {"the first hit counts", "two", 1, 15, 6},
        {"behind a lonely 0xFF", "last", 1, 25, 17},
        {"nowhere", "three", 0, 25, 25},
        {"not across lines", "first\n", 0, 25, 25},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TempFile f(file);
        EXPECT_EQ(find_text(f, row.text, 0, 0), row.found);
        EXPECT_EQ(f.At(), row.behind);
        EXPECT_EQ(find_text(f, row.text, 1, 1), row.found);
        EXPECT_EQ(f.At(), row.stay);
        std::rewind(f);
        EXPECT_EQ(FindTextA(f, row.text, 1), row.found);
        EXPECT_EQ(f.At(), row.found ? row.behind : 0);
        std::rewind(f);
        EXPECT_EQ(FindTextA(f, row.text, 0), row.found);
        EXPECT_EQ(f.At(), row.found ? row.stay : 0);
    }
    const TempFile f("a" + std::string(600, 'x') + "b\n");
    EXPECT_EQ(find_text(f, "b", 1, 1), 1);
    EXPECT_EQ(f.At(), 500) << "a line is searched in pieces of 500 bytes";
}

TEST(TextStream, CommentsAreSkipped) {
    const TempFile f(";one\r\n;two\n12 13\r\n\n;" + std::string(50, 'c') + "\nabcdefghij\n;end");
    char buffer[9] = "before";
    const char* const wanted[] = {"12 13\n", "\n", "abcdefgh", "ij\n", "ij\n", "ij\n"};
    for (const char* line : wanted) {
        fgets_skip_comment(buffer, sizeof buffer, f, ";");
        EXPECT_STREQ(buffer, line);
    }
    const TempFile g("//a\n/b");
    fgets_skip_comment(buffer, sizeof buffer, g, "//");
    EXPECT_STREQ(buffer, "/b");
    std::rewind(g);
    fgets_skip_comment(buffer, sizeof buffer, g, "");
    EXPECT_STREQ(buffer, "//a\n");
}

// --- binary records ---------------------------------------------------------------------------------------

TEST(BinaryRecords, LayoutAndBack) {
    CStringArray strings;
    strings.Add("轴");
    strings.Add("");
    CArray<int, int> ints;
    ints.Add(-2);
    CArray<unsigned long, unsigned long> dwords;
    dwords.Add(0xFFFFFFFF80000001ul);
    CArray<CFPoint, CFPoint> points;
    points.Add(CFPoint(1, 2, 3));
    CFRegion region;
    region.Add(CFShoot(1, 2, -0.5f));

    const TempFile f;
    write_string(f, "轴a");
    EXPECT_EQ(write_string_array(f, strings), 1);
    write_int_array(f, ints);
    write_dword_array(f, dwords);
    write_float_array(f, Floats({1.0f}));
    write_float_point_array(f, points);
    write_region(f, region);
    EXPECT_EQ(f.Content(), "\3\0\0\0\xD6\xE1" "a"
                           "\2\0\0\0\2\0\0\0\xD6\xE1\0\0\0\0"
                           "\1\0\0\0\xFE\xFF\xFF\xFF"
                           "\1\0\0\0\1\0\0\x80"
                           "\1\0\0\0\0\0\x80\x3F"
                           "\1\0\0\0\0\0\x80\x3F\0\0\0\x40"
                           "\1\0\0\0\0\0\x80\x3F\0\0\0\x40\0\0\0\xBF"s);

    std::rewind(f);
    CArray<float, float> floats = Floats({9, 9, 9});
    EXPECT_EQ(read_string(f), "轴a");
    EXPECT_EQ(read_string_array(f, strings), 2);
    EXPECT_EQ(read_int_array(f, ints), 1);
    EXPECT_EQ(read_dword_array(f, dwords), 1);
    read_float_array(f, floats);
    read_float_point_array(f, points);
    read_region(f, region);
    EXPECT_EQ(Show(strings), "[轴][]");
    EXPECT_EQ(ints[0], -2);
    EXPECT_EQ(dwords[0], 0x80000001ul);
    EXPECT_EQ(Show(floats), "1.000000 ");
    ASSERT_EQ(points.GetSize(), 1);
    EXPECT_EQ(points[0].y, 2);
    EXPECT_EQ(points[0].z, 0) << "z is not stored";
    ASSERT_EQ(region.GetSize(), 1);
    EXPECT_EQ(region[0].c, -0.5f);
}

TEST(BinaryRecords, ShortFilesYieldWhatTheyHold) {
    const std::string hugeCount = "\0\x94\x35\x77"s;  // 2 000 000 000
    const struct {
        const char* name;
        std::string file;
        int strings, dwords;
        const char* string;
    } rows[] = {
        {"nothing", "", 0, 0, ""},
        {"half a count", "\1\0", 0, 0, ""},
        {"a negative count", "\xFF\xFF\xFF\xFF" "abcdefgh", 0, 0, ""},
        {"a huge count", hugeCount + "\2\0\0\0ab", 1, 1, ""},
        {"an element cut", "\3\0\0\0\1\0\0\0a\2\0\0\0b"s, 1, 2, ""},
        {"a string", "\2\0\0\0\1\0\0\0x\0\0\0\0"s, 2, 2, "\1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TempFile f(row.file);
        CStringArray strings;
        CDWordArray dwords;
        strings.Add("old");
        dwords.Add(7);
        EXPECT_EQ(read_string_array(f, strings), row.strings);
        EXPECT_EQ(strings.GetSize(), row.strings);
        std::rewind(f);
        EXPECT_EQ(read_dword_array(f, dwords), row.dwords);
        EXPECT_EQ(dwords.GetSize(), row.dwords);
        std::rewind(f);
        EXPECT_EQ(read_string(f).Left(1), row.string);
    }
}

TEST(Archive, MemoryAndFileAlike) {
    CArchive out;
    const TempFile f;
    CArchive toFile(f, CArchive::store);
    for (CArchive* ar : {&out, &toFile})
        *ar << -3 << std::uint32_t{0xFFFFFFFF} << 1.5f << -2.25 << static_cast<unsigned char>(200) << CString("轴");
    EXPECT_EQ(f.Content(), out.Stored());
    EXPECT_EQ(out.Stored().size(), 4 + 4 + 4 + 8 + 1 + 4 + 2u);
    EXPECT_TRUE(out.IsStoring() && !out.IsLoading() && !out.IsShort());

    // Cut anywhere, what is whole comes back and the rest is zero.
    for (std::size_t length = 0; length <= out.Stored().size(); ++length) {
        CArchive in(std::string_view(out.Stored()).substr(0, length));
        int i = 9;
        std::uint32_t u = 9;
        float x = 9;
        double d = 9;
        unsigned char b = 9;
        CString s = "old";
        in >> i >> u >> x >> d >> b >> s;
        EXPECT_TRUE(in.IsLoading());
        EXPECT_EQ(in.IsShort(), length < out.Stored().size());
        EXPECT_EQ(i, length >= 4 ? -3 : 0);
        EXPECT_EQ(u, length >= 8 ? 0xFFFFFFFF : 0);
        EXPECT_EQ(x, length >= 12 ? 1.5f : 0);
        EXPECT_EQ(d, length >= 20 ? -2.25 : 0);
        EXPECT_EQ(b, length >= 21 ? 200 : 0);
        EXPECT_EQ(s, length >= 27 ? "轴" : "");
    }
}

// --- blocks -----------------------------------------------------------------------------------------------

TEST(BlockFile, WriterAndReaderAgree) {
    const TempFile f("abc");
    std::fseek(f, 0, SEEK_END);
    EXPECT_EQ(Fill_To_Fixed_Pos(f, 2, 'x'), 0);
    EXPECT_EQ(Fill_To_Fixed_Pos(f, 3, 'x'), 1);
    EXPECT_EQ(Fill_To_Fixed_Pos(f, 5, 'x'), 1);
    Fill_To_Next_Block(f, 3, 1, 4);  // blocks of 12 bytes with headers of 4
    EXPECT_EQ(f.Content(), "abcxx"s + std::string(7, 0) + "\xFF\xFF\xFF\xFF");
    std::fseek(f, 12, SEEK_SET);
    Fill_To_Next_Block(f, 3, 1, 4);  // a position on a boundary moves on by a whole block
    EXPECT_EQ(f.At(), 28);
    std::rewind(f);
    EXPECT_EQ(Search_NextBlock_Header(f, 3, 1, 4), 0) << "its header has been filled with 0 by then";
    EXPECT_EQ(Search_NextBlock_Header(f, 3, 1, 4), 1);
    EXPECT_EQ(f.At(), 28);
    EXPECT_EQ(Search_NextBlock_Header(f, 3, 1, 4), 0) << "no more blocks";
    EXPECT_EQ(Search_NextBlock_Header(f, 0, 1, 4), 0);
    Fill_To_Next_Block(f, 3, 1, 0);
    EXPECT_EQ(f.Content().size(), 28u);

    const TempFile field;
    Fill_To_Next_Block(field, 16, 1, 256);
    EXPECT_EQ(field.At(), 4096 + 256);
    std::rewind(field);
    EXPECT_EQ(Search_NextBlock_Header(field, 16, 1, 256), 1);
}

// --- texts ------------------------------------------------------------------------------------------------

TEST(TextCheck, Splitting) {
    const struct {
        const char* text;
        const char* more;
        const char* fields;
    } rows[] = {
        {"a,,b", nullptr, "[a][][b]"}, {"a,", nullptr, "[a][]"},       {"", nullptr, "[]"},
        {nullptr, nullptr, ""},        {"a;b c,d", "; ", "[a][b][c][d]"}, {"轴,线", "", "[轴][线]"},
    };
    for (const auto& row : rows) {
        CStringArray out;
        out.Add("old");
        EXPECT_EQ(vs_comma_text(row.text, out, ',', row.more), out.GetSize());
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
        {"", 1, 1},     {" 12\t", 1, 1}, {"-12", 1, 1}, {"1-", 0, 0},    {"-", 1, 1},     {"+1", 0, 0},  {"1.2", 0, 1},
        {"1.2.3", 0, 0}, {"1.-2", 0, 0},  {"-1.5", 0, 1}, {"-1-1", 0, 0}, {"1e5", 0, 0}, {".", 0, 1}, {"1 2", 0, 0},
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
    } rows[] = {{2.50, 3, "2.5"},       {2.0, 3, "2.0"},   {1.0 / 3, 9, "0.33333"}, {20, 0, "20"},  {-0.125, 2, "-0.12"},
                {1234.5678, -3, "1235"}, {100.0, 1, "100.0"}, {HUGE_VAL, 3, "inf"},  {1e20, 2, "100000000000000000000.0"}};
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
        {"12.5abc", 12.5, 12},  {" \t-7e2x", -700, -7}, {"+3", 3, 3},     {"--3", 0, 0},
        {"+-3", 0, 0},          {"", 0, 0},             {"x", 0, 0},       {"1e999", HUGE_VAL, 1},
        {"-1e-999", 0, -1},     {"99999999999", 99999999999.0, 2147483647}, {"-99999999999", -99999999999.0, -2147483647 - 1},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(LeadingReal(row.text), row.real) << row.text;
        EXPECT_EQ(LeadingInt(row.text), row.integer) << row.text;
    }
    EXPECT_EQ(LeadingReal("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(LeadingReal(std::string(400, '9')), HUGE_VAL);
    std::mt19937_64 rng(77);
    for (int round = 0; round < 2000; ++round) {  // the process stays in the C locale here, so printf is an oracle
        const double v = (static_cast<double>(rng() % 2000001) - 1e6) * std::pow(10.0, static_cast<double>(rng() % 20) - 10);
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
        {20240228, 1, 20240229}, {20230228, 1, 20230301}, {19000228, 1, 19000301},  {20000228, 1, 20000229},
        {20240301, -1, 20240229}, {20231231, 1, 20240101}, {20240101, -1, 20231231}, {20240115, 0, 20240115},
        {20240101, 146097, 24240101}, {24240101, -146097, 20240101}, {20241301, 1, -1}, {20240001, 1, -1},
        {20240230, 0, -1}, {20240100, 0, -1}, {-20240101, 0, -1}, {0, 0, -1}, {20240101, 2147483647, -1},
        {20240101, -2147483647 - 1, -1}, {101, 1, 102}, {101, -1, -1},
    };
    for (const auto& row : rows) EXPECT_EQ(get_ref_date(row.date, row.days), row.result) << row.date << " + " << row.days;
    for (int date = 19991201, days = 0; days < 1000; ++days, date = get_ref_date(date, 1)) {
        ASSERT_EQ(get_ref_date(19991201, days), date);
        ASSERT_EQ(get_ref_date(date, -days), 19991201);
    }
    EXPECT_NE(GetCurTime().Find("年"), -1);
    int year = 0, rest = 0;
    EXPECT_EQ(std::sscanf(GetCurTime2(), "%d-%2d-%2d %2d:%2d:%2d", &year, &rest, &rest, &rest, &rest, &rest), 6);
    EXPECT_GT(year, 2000);
}

// --- paths ------------------------------------------------------------------------------------------------

TEST(Paths, PartsPutTogetherAreThePath) {
    const struct {
        const char *path, *drive, *dir, *title, *ext;
    } rows[] = {
        {"c:\\work\\plan.dxf", "c:", "\\work\\", "plan", ".dxf"},
        {"/work/a.b/plan", "", "/work/a.b/", "plan", ""},
        {"a\\b/c.d.e", "", "a\\b/", "c.d", ".e"},
        {"plan.dxf", "", "", "plan", ".dxf"},
        {"/", "", "/", "", ""},
        {"", "", "", "", ""},
        {".profile", "", "", "", ".profile"},
        {"轴网/图.dxf", "", "轴网/", "图", ".dxf"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        CString drive, dir, title, ext, folder, name;
        SplitPathName(row.path, drive, dir, title, ext);
        EXPECT_EQ(drive, row.drive);
        EXPECT_EQ(dir, row.dir);
        EXPECT_EQ(title, row.title);
        EXPECT_EQ(ext, row.ext);
        EXPECT_EQ(drive + dir + title + ext, row.path);
        split_path_name(row.path, folder, name);
        EXPECT_EQ(folder, drive + dir);
        EXPECT_EQ(name, title + ext);
        EXPECT_EQ(get_drive(row.path), drive);
        EXPECT_EQ(get_file_path(row.path), folder);
        EXPECT_EQ(ExtractWorkPath(row.path), folder);
        EXPECT_EQ(get_file_name(row.path), name);
        EXPECT_EQ(get_file_title(row.path), title);
        EXPECT_EQ(get_file_ext(row.path), ext);
        EXPECT_EQ(get_file_dir_and_name(row.path), folder + title);
    }
    EXPECT_EQ(IncludeTrailingSlash("a"), "a/");
    EXPECT_EQ(IncludeTrailingSlash("a\\"), "a\\");
    EXPECT_EQ(IncludeTrailingSlash(""), "");
    EXPECT_EQ(ConfirmFileExt("a.txt", "dxf"), "a.txt.dxf");
    EXPECT_EQ(ConfirmFileExt("a.DXF", "dxf"), "a.DXF");
    EXPECT_EQ(ConfirmFileExt("d.x/a", ".dxf"), "d.x/a.dxf");
    EXPECT_EQ(ConfirmFileExt("", "dxf"), "");
}

TEST(Paths, FilesOfAFolder) {
    const TempFolder folder;
    const CString root(folder.path);
    for (const char* name : {"b.dxf", "a.dxf", "c.txt", "no_ext", "轴.dxf"}) folder.Put(name);
    EXPECT_EQ(force_directory(root + "x\\y/z"), 1);
    EXPECT_EQ(force_directory(root + "x/y"), 1);
    EXPECT_EQ(force_directory(root + "a.dxf/y"), 0);
    const auto list = [](auto function, auto... arguments) {
        CStringArray out;
        EXPECT_EQ(function(arguments..., out), out.GetSize());
        return Show(out);
    };
    const auto under = [&](const char* name) { return "[" + folder.path + name + "]"; };
    EXPECT_EQ(list(get_files, root + "*.dxf"), under("a.dxf") + under("b.dxf") + under("轴.dxf"));
    EXPECT_EQ(list(get_files, root + "?.dxf"), under("a.dxf") + under("b.dxf") + under("轴.dxf"));
    EXPECT_EQ(list(get_files, root + "*_*x*"), under("no_ext"));
    EXPECT_EQ(list(get_files, root + "*.*").size(), list(get_files, root).size());
    EXPECT_EQ(list(GetFiles, root, CString("txt")), "[c.txt]");
    EXPECT_EQ(list(GetFiles, root, CString("*.txt")), "[c.txt]");
    EXPECT_EQ(list(GetFiles, root, CString()), "[a.dxf][b.dxf][c.txt][no_ext][轴.dxf]");
    EXPECT_EQ(list(GetFiles, root + "nowhere", CString()), "");
    EXPECT_EQ(list(get_sub_directory, root), "[x]");
    EXPECT_EQ(list(enum_sub_directory, root), under("x") + under("x/y") + under("x/y/z"));

    EXPECT_EQ(file_exists(root + "a.dxf"), 1);
    EXPECT_EQ(file_exists(root), 0) << "a folder is no file";
    EXPECT_EQ(directory_exists(root + "x\\y"), 1);
    EXPECT_EQ(directory_exists(root + "a.dxf"), 0);
    G_strWorkPath = folder.path.substr(0, folder.path.size() - 1);
    EXPECT_EQ(FileExists("a.dxf", 0), 1);
    EXPECT_EQ(FileExists("a.dxf", 1), 0);
    EXPECT_EQ(FileExists(root + "a.dxf", 1), 1);
    EXPECT_EQ(FolderExists("x", 0), 1);
    EXPECT_EQ(FolderExists("x", 1), 0);
    G_strWorkPath.Empty();

    EXPECT_GT(GetFileWriteTime(root + "a.dxf"), 1'600'000'000);
    EXPECT_EQ(GetFileWriteTime(root + "nothing"), 0);
    EXPECT_EQ(IsFileOpen(root + "a.dxf"), 0);
    std::FILE* f = std::fopen(root + "a.dxf", "r");
    EXPECT_EQ(IsFileOpen(root + "a.dxf"), 1);
    std::fclose(f);
    EXPECT_EQ(DeleteFiles(root + "?.dxf"), 3);
    EXPECT_EQ(DeleteFiles2(root, "txt"), 1);
    EXPECT_EQ(list(GetFiles, root, CString("*.*")), "[no_ext]");
    EXPECT_EQ(DeleteFiles(root + "*"), 1);
    EXPECT_EQ(directory_exists(root + "x/y/z"), 1);

    EXPECT_EQ(directory_exists(get_my_exe_directory()), 1);
    EXPECT_EQ(directory_exists(GetModulePath()), 1);
    EXPECT_TRUE(get_my_exe_directory().View().ends_with('/') && GetModulePath().View().ends_with('/'));
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
        EXPECT_EQ(ReadFloatArray(&read, in, ',', row.keepNewline), read.GetSize());
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
        {0, RGB(0, 0, 0)},       {1, RGB(255, 0, 0)},     {2, RGB(255, 255, 0)}, {3, RGB(0, 255, 0)},     {4, RGB(0, 255, 255)},
        {5, RGB(0, 0, 255)},     {6, RGB(255, 0, 255)},   {7, RGB(255, 255, 255)}, {8, RGB(128, 128, 128)}, {9, RGB(192, 192, 192)},
        {10, RGB(255, 0, 0)},    {11, RGB(255, 127, 127)}, {20, RGB(255, 63, 0)}, {21, RGB(255, 159, 127)}, {29, RGB(76, 47, 38)},
        {30, RGB(255, 127, 0)},  {50, RGB(255, 255, 0)},  {60, RGB(191, 255, 0)}, {92, RGB(0, 204, 0)},    {104, RGB(0, 153, 38)},
        {130, RGB(0, 255, 255)}, {142, RGB(0, 153, 204)}, {176, RGB(0, 0, 127)}, {188, RGB(19, 0, 76)},   {210, RGB(255, 0, 255)},
        {240, RGB(255, 0, 63)},  {249, RGB(76, 38, 47)},  {250, RGB(51, 51, 51)}, {255, RGB(255, 255, 255)},
        {-1, RGB(255, 255, 255)}, {256, RGB(255, 255, 255)},
    };
    for (const auto& row : rows) EXPECT_EQ(GetAcadRGBColor(row.index), row.color) << row.index;
    EXPECT_EQ(GetAcadRGBColor(1) & 0xFF, 255u) << "red in the low byte";
}

TEST(Errors, GoThroughTheHandlerAndReturn) {
    static std::string told;
    const ErrorHandler before = SetErrorHandler([](int code, const char* text) { told += std::to_string(code) + text; });
    tell_error(201, "错误");
    tell_error(7, nullptr);
    EXPECT_EQ(told, "201错误7");
    SetErrorHandler(before);
}
