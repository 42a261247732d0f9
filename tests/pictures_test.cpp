// Pictures in files and the machine's fonts.
#include <gtest/gtest.h>
#include <png.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "host/glyphs/freetype_glyph_source.h"
#include "host/png/png_writer.h"

namespace fs = std::filesystem;

TEST(Pictures, ReadBackAsTheyWereWritten) {
    CSurface surface(37, 21);
    for (int y = 0; y < 21; ++y) {
        for (int x = 0; x < 37; ++x)
            surface.Row(y)[x] = static_cast<std::uint32_t>(x * 7 << 16 | y * 11 << 8 | (x ^ y));
    }
    const std::string file = (fs::temp_directory_path() / "tvo_pictures_test.png").string();
    std::string error;
    ASSERT_TRUE(WritePng(surface, file, error)) << error;
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    ASSERT_TRUE(png_image_begin_read_from_file(&image, file.c_str()));
    image.format = PNG_FORMAT_RGB;
    std::vector<png_byte> bytes(PNG_IMAGE_SIZE(image));
    ASSERT_TRUE(png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr));
    ASSERT_EQ(image.width, 37u);
    ASSERT_EQ(image.height, 21u);
    for (std::size_t i = 0; i < surface.Pixels().size(); ++i) {
        const auto read =
            static_cast<std::uint32_t>(bytes[3 * i] << 16 | bytes[3 * i + 1] << 8 | bytes[3 * i + 2]);
        ASSERT_EQ(read, surface.Pixels()[i]) << "pixel " << i;
    }
    fs::remove(file);
}

TEST(Pictures, ThatCannotBeWrittenSayWhichAndWhy) {
    struct {
        const char* name;
        int side;
        const char* file;
        const char* reason;
    } const rows[] = {
        {"no such folder", 4, "/nonexistent/a.png", "/nonexistent/a.png: No such file or directory"},
        {"no pixels", 0, "/nonexistent/b.png",
         "/nonexistent/b.png: a picture without pixels cannot be written"},
        {"a full disk", 300, "/dev/full", "/dev/full: No space left on device"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        if (std::string(row.file) == "/dev/full" && !fs::is_character_file(row.file)) continue;
        std::string error;
        EXPECT_FALSE(WritePng(CSurface(row.side, row.side), row.file, error));
        EXPECT_EQ(error, row.reason);
    }
    EXPECT_TRUE(!fs::exists("/dev/full") || fs::is_character_file("/dev/full"));
}

TEST(Fonts, AreLookedUpAndFallBack) {
    const fs::path folder = fs::temp_directory_path() / "tvo_fonts_test";
    fs::create_directories(folder / "deep");
    std::ofstream(folder / "deep" / "broken.TTF") << "no font";
    EXPECT_TRUE(FindFontFiles(folder.string()).empty());
    EXPECT_TRUE(FindFontFiles((folder / "nowhere").string()).empty());
    FreeTypeGlyphSource broken({(folder / "deep" / "broken.TTF").string(), "/nonexistent.ttf"});
    EXPECT_TRUE(broken.Files().empty());
    CGlyphRequest request;
    request.code = 'A';
    CGlyphMask mask;
    EXPECT_FALSE(broken.Render(request, mask));
    EXPECT_LT(broken.Advance(request), 0);
    fs::remove_all(folder);

    FreeTypeGlyphSource fonts(FindFontFiles());
    if (fonts.Files().empty()) GTEST_SKIP() << "no fonts on this machine";
    request.height = 36;  // an em of 30
    for (const char32_t code : {U'A', U'g', U'\x8F74'}) {
        request.code = code;
        if (fonts.Advance(request) < 0) continue;  // no font with Chinese
        ASSERT_TRUE(fonts.Render(request, mask));
        EXPECT_GT(mask.width, 8);
        EXPECT_LE(mask.width, 36);
        EXPECT_GE(mask.top, -30) << "within the cell";
        EXPECT_LE(mask.top + mask.height, 9);
        if (code >= 0x1100) {
            EXPECT_NEAR(fonts.Advance(request), 30, 1) << "a Chinese character steps by its em";
        }
    }
}
