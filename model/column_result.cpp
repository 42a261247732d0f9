#include "model/column_result.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "geometry/fpoint.h"
#include "platform/dxf/dxf_3d.h"
#include "platform/number_text.h"

namespace {

constexpr int kYellow = 2, kRed = 1;  // of the column, of the diagram
constexpr float kSmallest = 0.001f;   // a diagram without values lies on the column

float ValueAt(const CArray<float, float>& values, int i) { return i < values.GetSize() ? values[i] : 0.0f; }

/// The value that is drawn at the greatest length; at least kSmallest.
float GreatestValue(const CArray<float, float>& a, const CArray<float, float>& b) {
    float max = 0, min = 0;
    for (int i = 0; i < a.GetSize(); ++i) {
        max = std::max({max, a[i], ValueAt(b, i)});
        min = std::min({min, a[i], ValueAt(b, i)});
    }
    const float greatest = std::max(max, std::fabs(min));
    return std::fabs(greatest) < kSmallest ? kSmallest : greatest;
}

void Join(CDXF_3D& dxf, const CFPoint& a, const CFPoint& b) {
    dxf.Draw_Line(a.x, a.y, a.z, b.x, b.y, b.z, 1.0f);
}

}  // namespace

void DrawColumnResult(CDXF_3D* dxf, float x, float y, float height, char axis,
                      const CArray<float, float>& position, const CArray<float, float>& valueA,
                      const CArray<float, float>& valueB) {
    const float k =
        height / 8.0f / GreatestValue(valueA, valueB);  // the greatest is an eighth of the height long
    const bool alongY = axis == 'Y' || axis == 'y';
    const CFPoint top(x, y, height), foot(x, y, 0);
    dxf->SetCurColor(kYellow);
    Join(*dxf, top, foot);
    dxf->SetCurColor(kRed);
    const auto valueAt = [&](int i) { return ValueAt(i == 0 ? valueB : valueA, i); };
    std::vector<CFPoint> points;
    for (int i = 0; i < position.GetSize(); ++i) {
        const float d = valueAt(i) * k;
        points.emplace_back(alongY ? x : x + d, alongY ? y + d : y, height + position[i] * (0 - height));
    }
    for (std::size_t i = 1; i < points.size(); ++i) Join(*dxf, points[i - 1], points[i]);
    if (!points.empty()) {
        Join(*dxf, top, points.front());
        Join(*dxf, foot, points.back());
    }
    for (int i = 0; i < position.GetSize(); ++i) {
        const CFPoint& at = points[static_cast<std::size_t>(i)];
        const std::string text = FixedReal(static_cast<double>(valueAt(i)), 2);
        dxf->Draw_Text(at.x, at.y, at.z, height / 20.0f, 0, text.c_str());
    }
}
