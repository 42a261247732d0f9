// SVG as PDF.
#pragma once
#include <string>

/// A drawing as a PDF of one page of that size in millimetres, which it fills. Returns the reason when it can't be done, else
/// an empty text. The same drawing gives the same bytes.
std::string PdfOfSvg(const std::string& svg, double width, double height, std::string& pdf);
