#include "host/print/pdf.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <utility>

#include "host/failure.h"
#include "host/file_output.h"
#include "host/host_data_base.h"
#include "host/picture_content.h"
#include "host/print/svg_pdf.h"
#include "host/svg_writer.h"

namespace {

struct Paper {
    const char* name;
    double shortSide, longSide;  // mm
};
constexpr Paper kPapers[] = {{"A4", 210, 297}, {"A3", 297, 420}, {"A2", 420, 594}, {"A1", 594, 841}, {"A0", 841, 1189}};
constexpr double kLeastScale = 1e-3, kMostScale = 1e7;

const Paper* FindPaper(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const auto found = std::find_if(std::begin(kPapers), std::end(kPapers), [&](const Paper& p) { return name == p.name; });
    return found == std::end(kPapers) ? nullptr : found;
}

/// Up to two digits: 1:87, 1:240.
double RoundedUp(double scale) {
    const double step = std::pow(10, std::floor(std::log10(scale)) - 1);
    return std::ceil(scale / step - 1e-9) * step;
}

std::string ScaleText(double scale) {
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, scale, std::chars_format::general, 6).ptr;
    return "1:" + std::string(text, end);
}

bool IsUsable(const Extent& e) {
    return std::isfinite(e.minX) && std::isfinite(e.minY) && std::isfinite(e.maxX) && std::isfinite(e.maxY) && !e.IsEmpty() &&
           e.minY <= e.maxY;
}

/// The part that the page shows; some surrounding for a model of a single node, or of nothing.
Extent WindowOf(CTvoHostDataBase& db, const PdfPage& page) {
    Extent window = page.window && IsUsable(*page.window) ? *page.window : ContentOfPicture(db).extent;
    if (!IsUsable(window)) window = {0, 0, 1000, 1000};
    if (std::max(window.Width(), window.Height()) < 1) window.Grow(500);
    return window;
}

}  // namespace

bool IsPaper(const std::string& name) { return FindPaper(name) != nullptr; }

std::optional<double> ScaleFrom(const std::string& text) {
    const std::size_t start = text.starts_with("1:") ? 2 : 0;
    double scale = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data() + start, end, scale);
    if (result.ec != std::errc() || result.ptr != end || !(scale >= kLeastScale && scale <= kMostScale)) return {};
    return scale;
}

WrittenPdf WritePdf(const std::string& path, CTvoHostDataBase& db, const PdfPage& page) {
    const Paper* const paper = FindPaper(page.paper);
    if (!paper) throw DataFailure("cannot write " + path + ": there is no paper '" + page.paper + "'");
    SvgSheet sheet;
    sheet.width = page.landscape ? paper->longSide : paper->shortSide;
    sheet.height = page.landscape ? paper->shortSide : paper->longSide;
    sheet.margin = std::isfinite(page.margin) ? std::clamp(page.margin, 0.0, paper->shortSide / 4) : 10;
    const Extent window = WindowOf(db, page), room = DrawingOnSheet(db, sheet);
    // The thickest lines at the rim of the model find room too.
    const double fitting = std::max(window.Width() / (room.Width() - 2), window.Height() / (room.Height() - 2));
    const double scale = page.scale > 0 ? page.scale : RoundedUp(std::clamp(fitting, kLeastScale, kMostScale));
    sheet.unitsPerMillimetre = scale;
    sheet.x = (window.minX + window.maxX) / 2;
    sheet.y = (window.minY + window.maxY) / 2;
    const std::string caption = page.caption + (page.caption.empty() ? "" : "   ") + ScaleText(scale);
    std::string pdf;
    const std::string reason = PdfOfSvg(SvgOfSheet(db, sheet, caption), sheet.width, sheet.height, pdf);
    if (!reason.empty()) throw DataFailure("cannot write " + path + ": " + reason);
    ReplaceFile(path, pdf);
    const bool cut = window.Width() > room.Width() * scale || window.Height() > room.Height() * scale;
    return {sheet.width, sheet.height, scale, cut, pdf.size()};
}
