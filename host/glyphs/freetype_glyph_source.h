// FreeTypeGlyphSource: glyphs of the font files on this machine.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "platform/canvas/glyph_source.h"

/// Renders outlines of a chain of font files: the first that has a character supplies it. All faces are
/// scaled to the same em square, so that characters of different scripts stand together. A file that cannot
/// be read is left out.
class FreeTypeGlyphSource : public CGlyphSource {
public:
    explicit FreeTypeGlyphSource(const std::vector<std::string>& files);
    ~FreeTypeGlyphSource() override;

    bool Render(const CGlyphRequest& request, CGlyphMask& mask) override;
    double Advance(const CGlyphRequest& request) override;
    double AscentShare() const override { return 0.79; }
    double CellPerEm() const override { return 1.2; }

    /// The files in use, in order of asking.
    const std::vector<std::string>& Files() const { return m_files; }

private:
    struct Library;
    std::unique_ptr<Library> m_library;  // FreeType and the open faces
    std::vector<std::string> m_files;    // one for each face
};

/// Font files to ask in order: a Latin face first, then one for Chinese, as far as they are installed in
/// `folder` or below. Well-known families are preferred; otherwise any file that has the character "中".
std::vector<std::string> FindFontFiles(const std::string& folder = "/usr/share/fonts");

/// Makes the machine's fonts the process's glyph source; the built-in one stays if there are none. False
/// then.
bool UseSystemFonts();
