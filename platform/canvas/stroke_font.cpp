#include "platform/canvas/stroke_font.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace {

// The cell is 12 wide and 24 high, the baseline 6 above its bottom, capitals 14 high, small letters 10.
constexpr double kCellHeight = 24;

// Strokes are split by '|', points by ' '. A point is a column 0..C and a row, where 'f' is the baseline, 'p'
// the height of small letters, 't' that of capitals, 'a' five below the line. '~' makes a stroke a smooth
// curve that its points draw like the corners of a frame: it passes through the first and last, and touches
// the others' sides in their middles; where first and last are one point the curve is closed.
constexpr const char* kGlyphs[] = {
    /*   */ "",
    /* ! */ "6t 6k|6g 6f",
    /* " */ "4t 4p|8t 8p",
    /* # */ "3f 5t|7f 9t|2k Ak|2o Ao",
    /* $ */ "~Aq 9t 2t 2n Al Af 3f 2i|6v 6d",
    /* % */ "2f At|~1q 1t 5t 5n 1n 1q|~7i 7l Bl Bf 7f 7i",
    /* & */ "~Af 4n 3q 4t 8t 8p 5n 2l 2f 8f Al",
    /* ' */ "6t 6p",
    /* ( */ "~8v 4s 4d 8b",
    /* ) */ "~4v 8s 8d 4b",
    /* * */ "6r 6j|3p 9l|9p 3l",
    /* + */ "6q 6i|2m Am",
    /* , */ "6g 6f 5c",
    /* - */ "3m 9m",
    /* . */ "6g 6f",
    /* / */ "2d Av",
    /* 0 */ "~3m 3t 9t 9m 9f 3f 3m",
    /* 1 */ "3q 6t 6f|3f 9f",
    /* 2 */ "~2q 2t At Ao 6k 2f|2f Af",
    /* 3 */ "~2s 4t 9t 9m 5m|~5m Am Af 4f 2g",
    /* 4 */ "8f 8t 2j Aj",
    /* 5 */ "9t 3t 3m|~3m 4o Ao Af 3f 2g",
    /* 6 */ "~9t 2t 2k|~2k 2o Ao Ak Af 2f 2k",
    /* 7 */ "2t At 5f",
    /* 8 */ "~3q 3t 9t 9q 9n 3n 3q|~2j 2n An Aj Af 2f 2j",
    /* 9 */ "~3f Af Ao|~2o 2t At Ao Ak 2k 2o",
    /* : */ "6g 6f|6o 6n",
    /* ; */ "6o 6n|6g 6f 5c",
    /* < */ "9r 2m 9h",
    /* = */ "2o Ao|2k Ak",
    /* > */ "3r Am 3h",
    /* ? */ "~2q 2t At Am 6m 6j|6g 6f",
    /* @ */ "~8n 8p 4p 4m 4j 8j 8m|8p 8k|~8k 8i Bi Bm Bt 1t 1m 1f 9f",
    /* A */ "2f 6t Af|3j 9j",
    /* B */ "2f 2t|2t 6t|~6t 9t 9m 6m|2m 6m|~6m Am Af 6f|6f 2f",
    /* C */ "~Ap At 2t 2m 2f Af Aj",
    /* D */ "2f 2t|2t 5t|~5t At Am Af 5f|5f 2f",
    /* E */ "At 2t 2f Af|2m 8m",
    /* F */ "At 2t 2f|2m 8m",
    /* G */ "~Ap At 2t 2m 2f Af Al|Al 7l",
    /* H */ "2f 2t|Af At|2m Am",
    /* I */ "3t 9t|6t 6f|3f 9f",
    /* J */ "~9j 9f 2f 2j|9j 9t|6t 9t",
    /* K */ "2f 2t|At 2k|5n Af",
    /* L */ "2t 2f Af",
    /* M */ "2f 2t 6k At Af",
    /* N */ "2f 2t Af At",
    /* O */ "~2m 2t At Am Af 2f 2m",
    /* P */ "2f 2t|2t 6t|~6t At Al 6l|6l 2l",
    /* Q */ "~2m 2t At Am Af 2f 2m|7i Ae",
    /* R */ "2f 2t|2t 6t|~6t At Al 6l|6l 2l|6l Af",
    /* S */ "~Aq 9t 2t 2n Al Af 3f 2i",
    /* T */ "2t At|6t 6f",
    /* U */ "2t 2k|~2k 2f Af Ak|Ak At",
    /* V */ "2t 6f At",
    /* W */ "1t 4f 6p 8f Bt",
    /* X */ "2f At|2t Af",
    /* Y */ "2t 6m At|6m 6f",
    /* Z */ "2t At 2f Af",
    /* [ */ "8v 5v 5b 8b",
    /* \ */ "2v Ad",
    /* ] */ "4v 7v 7b 4b",
    /* ^ */ "3p 6t 9p",
    /* _ */ "0c Cc",
    /* ` */ "5t 7q",
    /* a */ "~3o 4p 9p 9m|9m 9f|~9l 2l 2i 2f 9f 9j",
    /* b */ "3t 3f|~3k 3p Ap Ak Af 3f 3k",
    /* c */ "~9n 9p 2p 2k 2f 9f 9h",
    /* d */ "9t 9f|~9k 9p 2p 2k 2f 9f 9k",
    /* e */ "2k 9k|~9k 9p 2p 2k 2f 8f 9h",
    /* f */ "~9t 5t 5p|5p 5f|2p 8p",
    /* g */ "9p 9e|~9e 9a 4a 3b|~9k 9p 2p 2k 2f 9f 9k",
    /* h */ "3t 3f|~3l 3p 9p 9l|9l 9f",
    /* i */ "4p 6p 6f|3f 9f|6t 6s",
    /* j */ "4p 7p 7e|~7e 7a 3a|7t 7s",
    /* k */ "3t 3f|9p 3j|5l 9f",
    /* l */ "4t 6t 6i|~6i 6f 9f",
    /* m */ "1p 1f|~1m 1p 6p 6m|6m 6f|~6m 6p Bp Bm|Bm Bf",
    /* n */ "3p 3f|~3l 3p 9p 9l|9l 9f",
    /* o */ "~2k 2p Ap Ak Af 2f 2k",
    /* p */ "3p 3a|~3k 3p Ap Ak Af 3f 3k",
    /* q */ "9p 9a|~9k 9p 2p 2k 2f 9f 9k",
    /* r */ "4p 4f|~4l 4p 9p 9n",
    /* s */ "~9n 9p 2p 2l 9j 9f 2f 2h",
    /* t */ "5t 5i|~5i 5f 9f|2p 9p",
    /* u */ "3p 3j|~3j 3f 9f 9j|9p 9f",
    /* v */ "2p 6f Ap",
    /* w */ "1p 4f 6m 8f Bp",
    /* x */ "2p 9f|2f 9p",
    /* y */ "2p 6f|Ap 4a 2a",
    /* z */ "2p 9p 2f 9f",
    /* { */ "~9v 6v 6s 6m 3m|~3m 6m 6g 6b 9b",
    /* | */ "6v 6b",
    /* } */ "~3v 6v 6s 6m 9m|~9m 6m 6g 6b 3b",
    /* ~ */ "~2l 2n 5o 7k Ak An",
};
constexpr const char* kDegree = "~4r 4t 8t 8r 8p 4p 4r";

const char* StrokesOf(char32_t code) {
    if (code >= 0x20 && code < 0x7F) return kGlyphs[code - 0x20];
    if (code == 0xA0) return "";
    return code == 0xB0 ? kDegree : nullptr;
}

CStrokePoint Middle(const CStrokePoint& a, const CStrokePoint& b) {
    return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

/// A quadratic B-spline over the frame, as a chain.
std::vector<CStrokePoint> Smooth(const std::vector<CStrokePoint>& frame) {
    constexpr int kPieces = 10;
    if (frame.size() < 3) return frame;
    std::vector<CStrokePoint> chain{frame.front()};
    for (std::size_t i = 1; i + 1 < frame.size(); ++i) {
        const CStrokePoint from = chain.back(), control = frame[i];
        const CStrokePoint to = i + 2 == frame.size() ? frame.back() : Middle(frame[i], frame[i + 1]);
        for (int k = 1; k <= kPieces; ++k) {
            const double t = static_cast<double>(k) / kPieces, s = 1 - t;
            chain.push_back({s * s * from.x + 2 * s * t * control.x + t * t * to.x,
                             s * s * from.y + 2 * s * t * control.y + t * t * to.y});
        }
    }
    return chain;
}

std::vector<std::vector<CStrokePoint>> Decode(const char* text) {
    std::vector<std::vector<CStrokePoint>> strokes;
    for (const char* c = text; *c != 0;) {
        std::vector<CStrokePoint> stroke;
        const bool smooth = *c == '~';
        if (smooth) ++c;
        for (; *c != 0 && *c != '|'; ++c) {
            if (*c == ' ') continue;
            const int column = *c >= 'A' ? *c - 'A' + 10 : *c - '0';
            ++c;
            stroke.push_back({static_cast<double>(column), static_cast<double>(*c - 'f')});
        }
        if (*c == '|') ++c;
        strokes.push_back(smooth ? Smooth(stroke) : std::move(stroke));
    }
    return strokes;
}

double DistanceToSide(const CStrokePoint& a, const CStrokePoint& b, double x, double y) {
    const double dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
    const double t = square > 0 ? std::clamp(((x - a.x) * dx + (y - a.y) * dy) / square, 0.0, 1.0) : 0.0;
    return std::hypot(a.x + t * dx - x, a.y + t * dy - y);
}

}  // namespace

void RenderStrokes(const std::vector<std::vector<CStrokePoint>>& strokes, double width, double angle,
                   CGlyphMask& mask) {
    const double cosine = std::cos(angle), sine = std::sin(angle);
    std::vector<std::vector<CStrokePoint>> turned = strokes;  // y down from here on
    double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;
    for (auto& stroke : turned) {
        for (CStrokePoint& p : stroke) {
            p = {p.x * cosine - p.y * sine, -(p.x * sine + p.y * cosine)};
            left = std::min(left, p.x), right = std::max(right, p.x);
            top = std::min(top, p.y), bottom = std::max(bottom, p.y);
        }
    }
    mask = CGlyphMask{};
    if (left > right) return;
    const double reach = width / 2 + 0.5;  // coverage ends here
    mask.left = static_cast<int>(std::floor(left - reach));
    mask.top = static_cast<int>(std::floor(top - reach));
    mask.width = static_cast<int>(std::ceil(right + reach)) - mask.left + 1;
    mask.height = static_cast<int>(std::ceil(bottom + reach)) - mask.top + 1;
    mask.coverage.assign(static_cast<std::size_t>(mask.width) * static_cast<std::size_t>(mask.height), 0);
    for (const auto& stroke : turned) {
        for (std::size_t i = 0; i + 1 < stroke.size(); ++i) {
            const CStrokePoint &a = stroke[i], &b = stroke[i + 1];
            const int x0 = static_cast<int>(std::floor(std::min(a.x, b.x) - reach)) - mask.left;
            const int x1 = static_cast<int>(std::ceil(std::max(a.x, b.x) + reach)) - mask.left;
            const int y0 = static_cast<int>(std::floor(std::min(a.y, b.y) - reach)) - mask.top;
            const int y1 = static_cast<int>(std::ceil(std::max(a.y, b.y) + reach)) - mask.top;
            for (int y = y0; y <= y1; ++y) {
                for (int x = x0; x <= x1; ++x) {
                    const double d = DistanceToSide(a, b, x + mask.left, y + mask.top);
                    const double cover = std::clamp(reach - d, 0.0, 1.0);
                    auto& c =
                        mask.coverage[static_cast<std::size_t>(y) * static_cast<std::size_t>(mask.width) +
                                      static_cast<std::size_t>(x)];
                    c = std::max(c, static_cast<std::uint8_t>(std::lround(cover * 255)));
                }
            }
        }
    }
}

bool CStrokeFont::Render(const CGlyphRequest& request, CGlyphMask& mask) {
    const char* text = StrokesOf(request.code);
    if (text == nullptr) return false;
    auto strokes = Decode(text);
    const double unit = request.height / kCellHeight;
    for (auto& stroke : strokes) {
        for (CStrokePoint& p : stroke) {
            p = {(p.x + (request.italic ? p.y * 0.2 : 0)) * unit, p.y * unit};
        }
    }
    const double width = std::max(1.0, unit * (request.bold ? 2.6 : 1.5));
    RenderStrokes(strokes, width, request.angle, mask);
    return true;
}

double CStrokeFont::Advance(const CGlyphRequest& request) {
    return StrokesOf(request.code) == nullptr ? -1 : request.height / 2;
}
