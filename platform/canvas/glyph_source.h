// CGlyphSource: where the shapes of characters come from.
#pragma once
#include <cstdint>
#include <memory>
#include <vector>

/// What a glyph is asked for. `height` is that of the text cell (ascent and descent) in pixels; `angle` the
/// direction of the line of text in radians, anticlockwise.
struct CGlyphRequest {
    char32_t code = 0;   // Unicode code point
    double height = 16;  // pixels
    double angle = 0;    // radians, anticlockwise
    bool bold = false;
    bool italic = false;
};

/// The shape of a glyph, turned already: coverage 0..255 row by row. Its left upper pixel lies (left, top)
/// pixels from the pen position on the baseline, y down.
struct CGlyphMask {
    int left = 0, top = 0;
    int width = 0, height = 0;
    std::vector<std::uint8_t> coverage;  // width * height
};

/// A supplier of glyphs. Sources are asked from one thread.
class CGlyphSource {
public:
    virtual ~CGlyphSource() = default;

    /// False if the source has no shape for the code point; then the next source is asked, in the end a box
    /// drawn.
    virtual bool Render(const CGlyphRequest& request, CGlyphMask& mask) = 0;

    /// Step to the next character along the line, pixels; below 0 if the source does not have the character.
    virtual double Advance(const CGlyphRequest& request) = 0;

    /// Part of the text cell above the baseline, 0..1, and the cell's height by that of the em square.
    virtual double AscentShare() const { return 0.78; }
    virtual double CellPerEm() const { return 1.2; }
};

/// The process-wide source; the built-in one (printable ASCII, strokes, any height and angle, needs no file)
/// unless another has been set. It is asked first, then the built-in one, then a box of the cell is drawn.
CGlyphSource& GetGlyphSource();
void SetGlyphSource(std::shared_ptr<CGlyphSource> source);  // null: back to the built-in one
CGlyphSource& BuiltInGlyphSource();

/// The glyph and its step through that chain, from a cache of bounded size. The reference holds until the
/// next call.
const CGlyphMask& FindGlyph(const CGlyphRequest& request);
double FindAdvance(const CGlyphRequest& request);
