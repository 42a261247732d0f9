#include "host/glyphs/freetype_glyph_source.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace {

constexpr char32_t kChineseSample = U'\x4E2D';
constexpr double kFixed16 = 65536;  // FreeType's 16.16 numbers
constexpr double kFixed6 = 64;      // FreeType's 26.6 numbers

// Names of files without folder and ending, best first.
constexpr const char* kLatin[] = {"DejaVuSans", "LiberationSans-Regular", "NotoSans-Regular", "FreeSans"};
constexpr const char* kChinese[] = {"wqy-microhei",
                                    "wqy-zenhei",
                                    "NotoSansCJK-Regular",
                                    "NotoSansCJKsc-Regular",
                                    "DroidSansFallbackFull",
                                    "DroidSansFallback",
                                    "uming",
                                    "ukai",
                                    "gbsn00lp"};

FT_Fixed Fixed16(double v) { return static_cast<FT_Fixed>(std::lround(v * kFixed16)); }

/// Opens the face and asks for one character.
bool HasCharacter(FT_Library library, const std::string& file, char32_t code) {
    FT_Face face = nullptr;
    if (FT_New_Face(library, file.c_str(), 0, &face) != 0) return false;
    const bool has = FT_IS_SCALABLE(face) && FT_Get_Char_Index(face, code) != 0;
    FT_Done_Face(face);
    return has;
}

std::vector<std::filesystem::path> FontFilesBelow(const std::string& folder) {
    namespace fs = std::filesystem;
    std::vector<fs::path> files;
    std::error_code error;
    constexpr auto options =
        fs::directory_options::skip_permission_denied | fs::directory_options::follow_directory_symlink;
    fs::recursive_directory_iterator it(folder, options, error), end;
    while (!error && it != end) {
        if (it.depth() > 8) it.disable_recursion_pending();  // links may run in a circle
        std::string ending = it->path().extension().string();
        std::transform(ending.begin(), ending.end(), ending.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        if (ending == ".ttf" || ending == ".ttc" || ending == ".otf") files.push_back(it->path());
        it.increment(error);
    }
    std::sort(files.begin(), files.end());  // the same choice on every run
    return files;
}

template <std::size_t N>
const std::filesystem::path* FirstNamed(const std::vector<std::filesystem::path>& files,
                                        const char* const (&names)[N]) {
    for (const char* name : names) {
        for (const auto& file : files) {
            if (file.stem() == name) return &file;
        }
    }
    return nullptr;
}

}  // namespace

struct FreeTypeGlyphSource::Library {
    FT_Library handle = nullptr;
    std::vector<FT_Face> faces;

    ~Library() {
        for (FT_Face face : faces) FT_Done_Face(face);
        if (handle) FT_Done_FreeType(handle);
    }

    /// The glyph of the first face that has the character, loaded at the size asked for and turned; null if
    /// none has.
    FT_GlyphSlot Load(const CGlyphRequest& request, double em) {
        for (FT_Face face : faces) {
            const FT_UInt index = FT_Get_Char_Index(face, request.code);
            if (index == 0) continue;
            const auto size = static_cast<FT_F26Dot6>(std::lround(std::clamp(em, 1.0, 4000.0) * kFixed6));
            if (FT_Set_Char_Size(face, size, size, 72, 72) != 0) continue;
            if (FT_Load_Glyph(face, index, FT_LOAD_NO_BITMAP | FT_LOAD_NO_HINTING) != 0) continue;
            return face->glyph;
        }
        return nullptr;
    }
};

FreeTypeGlyphSource::FreeTypeGlyphSource(const std::vector<std::string>& files) : m_library(new Library) {
    if (FT_Init_FreeType(&m_library->handle) != 0) {
        m_library->handle = nullptr;
        return;
    }
    for (const auto& file : files) {
        FT_Face face = nullptr;
        if (FT_New_Face(m_library->handle, file.c_str(), 0, &face) != 0) continue;
        m_library->faces.push_back(face);
        m_files.push_back(file);
    }
}

FreeTypeGlyphSource::~FreeTypeGlyphSource() = default;

bool FreeTypeGlyphSource::Render(const CGlyphRequest& request, CGlyphMask& mask) {
    const double em = request.height / CellPerEm();
    FT_GlyphSlot glyph = m_library->Load(request, em);
    if (glyph == nullptr || glyph->format != FT_GLYPH_FORMAT_OUTLINE) return false;
    FT_Outline& outline = glyph->outline;
    if (request.bold) FT_Outline_Embolden(&outline, static_cast<FT_Pos>(std::lround(em * kFixed6 / 24)));
    const double cosine = std::cos(request.angle), sine = std::sin(request.angle),
                 lean = request.italic ? 0.2 : 0;
    FT_Matrix turn{Fixed16(cosine), Fixed16(cosine * lean - sine), Fixed16(sine),
                   Fixed16(sine * lean + cosine)};
    FT_Outline_Transform(&outline, &turn);
    if (FT_Render_Glyph(glyph, FT_RENDER_MODE_NORMAL) != 0) return false;
    const FT_Bitmap& bitmap = glyph->bitmap;
    mask.left = glyph->bitmap_left;
    mask.top = -glyph->bitmap_top;
    mask.width = static_cast<int>(bitmap.width);
    mask.height = static_cast<int>(bitmap.rows);
    mask.coverage.clear();
    for (unsigned y = 0; y < bitmap.rows; ++y) {
        const unsigned char* row = bitmap.buffer + static_cast<std::ptrdiff_t>(y) * bitmap.pitch;
        mask.coverage.insert(mask.coverage.end(), row, row + bitmap.width);
    }
    return true;
}

double FreeTypeGlyphSource::Advance(const CGlyphRequest& request) {
    FT_GlyphSlot glyph = m_library->Load(request, request.height / CellPerEm());
    return glyph == nullptr ? -1 : static_cast<double>(glyph->linearHoriAdvance) / kFixed16;
}

std::vector<std::string> FindFontFiles(const std::string& folder) {
    const auto files = FontFilesBelow(folder);
    std::vector<std::string> chosen;
    if (const auto* latin = FirstNamed(files, kLatin)) chosen.push_back(latin->string());
    if (const auto* chinese = FirstNamed(files, kChinese)) {
        chosen.push_back(chinese->string());
        return chosen;
    }
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) return chosen;
    const auto found = std::find_if(files.begin(), files.end(), [&](const auto& file) {
        return HasCharacter(library, file.string(), kChineseSample);
    });
    if (found != files.end()) chosen.push_back(found->string());
    FT_Done_FreeType(library);
    return chosen;
}

bool UseSystemFonts() {
    auto source = std::make_shared<FreeTypeGlyphSource>(FindFontFiles());
    if (source->Files().empty()) return false;
    SetGlyphSource(std::move(source));
    return true;
}
