// Files: text streams, binary records, archives, blocks, paths.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>

#include "geometry/fpoint.h"
#include "geometry/fregion.h"
#include "model/binary_records.h"
#include "model/block_file.h"
#include "model/paths.h"
#include "model/text_stream.h"
#include "platform/archive.h"
#include "tests/file_fixtures.h"

using namespace std::string_literals;

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
        {"the byte 0xFF ends it and goes",
         "a\xFF"
         "b",
         9, 0, "a", 2},
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
        {"an empty line is no end", "\n\na", "[][][a]null", "[a][]null"},
        {"a long line comes in pieces", "abcdefg\nh", "[abcde][fg][h]null", "[h][cdefg][ab]null"},
        {"exactly as long as told", "abcde\nf", "[abcde][][f]null", "[f][abcde]null"},
        {"the byte 0xFF ends a line",
         "ab\xFF"
         "cd\n",
         "[ab][cd]null", "[][cd][ab]null"},
        {"0xFF in front is an end",
         "\xFF"
         "ab",
         "null", "[ab]null"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TempFile f(row.file);
        EXPECT_EQ(all(f, get_line), row.forth);
        std::fseek(f, 0, SEEK_END);
        EXPECT_EQ(all(f, get_line_back_ward), row.back);
        EXPECT_EQ(f.At(), 0);
    }
    char none[1];
    EXPECT_EQ(get_line(TempFile("ab"), none, 0), nullptr) << "nothing was read";
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
        {"too large",
         "1"
         "000000000000000000000"
         "00000000000000000000",
         HUGE_VALF, ""},
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
        {"in the first line", "irs", 1, 6, 0},     {"Chinese is sought as GBK", "轴线", 1, 15, 6},
        {"the first hit counts", "two", 1, 15, 6}, {"behind a lonely 0xFF", "last", 1, 25, 17},
        {"nowhere", "three", 0, 25, 25},           {"not across lines", "first\n", 0, 25, 25},
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
    const TempFile f(";one\r\n;as long\n12 13\r\n\n;" + std::string(50, 'c') + "\nabcdefghij\n;end");
    char buffer[9] = "before";  // ";as long" fills it
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
    const TempFile onlyReturns("\r\r");
    fgets_skip_comment(buffer, sizeof buffer, onlyReturns, ";");
    EXPECT_STREQ(buffer, "//a\n") << "the file ended";
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
    EXPECT_EQ(f.Content(),
              "\3\0\0\0\xD6\xE1"
              "a"
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
        {"half a count", "\1\0"s, 0, 0, ""},
        {"a negative count",
         "\xFF\xFF\xFF\xFF"
         "abcdefgh",
         0, 0, ""},
        {"a huge count", hugeCount + "\2\0\0\0ab"s, 1, 1, ""},
        {"an element cut", "\3\0\0\0\1\0\0\0a\2\0\0\0b"s, 1, 2, "\1"},
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
        *ar << -3 << std::uint32_t{0xFFFFFFFF} << 1.5f << -2.25 << static_cast<unsigned char>(200)
            << CString("轴");
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
    const std::string fiveBytes("\1\0\0\0\7", 5);
    CArchive torn{std::string_view(fiveBytes)};
    double d = 9;
    unsigned char b = 9;
    torn >> d >> b;
    EXPECT_EQ(b, 0) << "nothing is read behind the first short read";
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
    EXPECT_EQ(ConfirmFileExt("d/", "dxf"), "d/");  // a folder: no hidden file ".dxf" in it
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
        const int count = function(arguments..., out);
        EXPECT_EQ(count, out.GetSize());
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
    std::filesystem::create_directory_symlink(folder.path,
                                              folder.path + "x/back");  // followed, it has no end
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
