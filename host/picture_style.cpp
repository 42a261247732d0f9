#include "host/picture_style.h"

#include <cmath>
#include <cstdio>

double ScaleBarLength(double width) {
    if (!(width > 0) || !std::isfinite(width)) return 0;
    const double most = width / 3;
    const double decade = std::pow(10, std::floor(std::log10(most)));
    for (const double step : {5.0, 2.0})
        if (step * decade <= most) return step * decade;
    return decade;
}

std::string LengthText(double millimetres) {
    char text[40];
    if (millimetres >= 1e6)
        std::snprintf(text, sizeof text, "%.9g km", millimetres / 1e6);
    else if (millimetres >= 1e3)
        std::snprintf(text, sizeof text, "%.9g m", millimetres / 1e3);
    else
        std::snprintf(text, sizeof text, "%.9g mm", millimetres);
    return text;
}
