#include "platform/canvas/font.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

void SetFace(LOGFONT& font, const char* face) {
    const std::string_view name = face ? face : "";
    const std::size_t length = Utf8CutLength(name, sizeof font.lfFaceName - 1);
    std::memcpy(font.lfFaceName, name.data(), length);
    font.lfFaceName[length] = 0;
}

}  // namespace

BOOL CFont::CreateFont(int height, int width, int escapement, int orientation, int weight, int italic,
                       int underline, int strikeOut, int charSet, int, int, int quality, int,
                       const char* face) {
    LOGFONT font;
    font.lfHeight = height;
    font.lfWidth = width;
    font.lfEscapement = escapement;
    font.lfOrientation = orientation;
    font.lfWeight = weight;
    font.lfItalic = italic;
    font.lfUnderline = underline;
    font.lfStrikeOut = strikeOut;
    font.lfCharSet = charSet;
    font.lfQuality = quality;
    SetFace(font, face);
    return CreateFontIndirect(&font);
}

BOOL CFont::CreateFontIndirect(const LOGFONT* font) {
    if (font == nullptr) return 0;
    m_log = *font;
    m_log.lfFaceName[sizeof m_log.lfFaceName - 1] = 0;
    m_bCreated = true;
    return 1;
}

BOOL CFont::CreatePointFont(int tenthsOfPoint, const char* face, CDC*) {
    LOGFONT font;
    const std::int64_t pixels = std::int64_t{tenthsOfPoint} * 96 / 720;
    font.lfHeight = static_cast<int>(-pixels);
    SetFace(font, face);
    return CreateFontIndirect(&font);
}

BOOL CFont::CreateStockObject(int index) {
    if (index < OEM_FIXED_FONT || index > DEFAULT_GUI_FONT || index == 15) return 0;
    const LOGFONT font;
    return CreateFontIndirect(&font);
}

int CFont::GetLogFont(LOGFONT* font) const {
    if (font == nullptr) return 0;
    *font = m_log;
    return 1;
}
