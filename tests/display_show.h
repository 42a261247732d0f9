// Snap points and boxes as text, for the tests of display lists.
#pragma once
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "geometry/fpoint.h"
#include "geometry/frect.h"
#include "platform/containers.h"

inline std::string Number(double v) {
    char text[32];
    std::snprintf(text, sizeof text, "%.5g", std::fabs(v) < 1e-3 ? 0.0 : v);
    return text;
}

inline std::string ShowSnap(CArray<CFPoint>& points, CArray<int>& kinds) {
    std::string out;
    EXPECT_EQ(points.GetSize(), kinds.GetSize());
    for (int i = 0; i < points.GetSize(); ++i)
        out += std::to_string(kinds[i]) + "@" + Number(points[i].x) + "," + Number(points[i].y) + " ";
    return out;
}

inline std::string Show(const CFRect& r) {
    return Number(r.m_fMinX) + "," + Number(r.m_fMinY) + " " + Number(r.m_fMaxX) + "," + Number(r.m_fMaxY);
}
