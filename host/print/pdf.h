// The model on paper.
#pragma once
#include <optional>
#include <string>

#include "host/net_walk.h"

class CTvoHostDataBase;

/// What is wanted on the page.
struct PdfPage {
    std::string paper = "A4";  // A0 to A4
    bool landscape = true;
    double scale = 0;  // n of 1:n, the model in millimetres; 0: as large as fits, n to two digits
    double margin = 10;  // mm
    std::optional<Extent> window;  // the part to be seen, as of a view; none: the whole model
    std::string caption;           // such as name and date; the scale is put behind it
};

struct WrittenPdf {
    double width = 0, height = 0;  // mm
    double scale = 0;              // n of 1:n
    bool cut = false;              // at this scale not all of the window finds room
    std::size_t bytes = 0;
};

/// "A4" and the like in any case; nothing for other names.
bool IsPaper(const std::string& name);
/// The n of "1:n" or "n"; nothing for what is no scale between 1:0.001 and 1:10000000.
std::optional<double> ScaleFrom(const std::string& text);

/// Writes one page as PDF: the drawing in a frame, the window's middle in its middle, below it caption, scale and a scale bar.
/// The same model and page give the same bytes. Throws DataFailure with the path and the reason; the file before stands then.
WrittenPdf WritePdf(const std::string& path, CTvoHostDataBase& db, const PdfPage& page);
