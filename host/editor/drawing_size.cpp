#include "host/editor/drawing_size.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "platform/dxf/dxf.h"
#include "platform/number_text.h"
#include "platform/string.h"

namespace {

constexpr double kSmallest = 1000, kLargest = 5e6;  // millimetres of a building's site
constexpr double kCoarse = 8;                       // millimetres between two coordinates
constexpr std::size_t kManyOf = 5;                  // one piece of so many

void AddLengths(std::vector<double>& lengths, const ACAD_ENTITY& entity) {
    switch (entity.GetType()) {
        case kAcadLine: {
            const auto& line = static_cast<const ACAD_LINE&>(entity);
            lengths.push_back(std::hypot(line.m_x2 - line.m_x1, line.m_y2 - line.m_y1));
            break;
        }
        case kAcadCircle:
            lengths.insert(lengths.end(), 2,
                           2 * std::fabs(static_cast<const ACAD_CIRCLE&>(entity).m_dRadius));
            break;
        case kAcadArc: {
            const auto& arc = static_cast<const ACAD_ARC&>(entity);
            const double half = std::fmod(std::fmod(arc.m_dEnd, 360) - std::fmod(arc.m_dStart, 360), 360) / 2 * 3.14159265358979323846 / 180;
            lengths.push_back(std::fabs(2 * arc.m_dRadius * std::sin(half)));
            break;
        }
        case kAcadPolyline: {
            const auto corners = static_cast<const ACAD_POLYLINE&>(entity).Vertices();
            for (std::size_t i = 0; i + 1 < corners.size(); ++i)
                lengths.push_back(
                    std::hypot(corners[i + 1].m_x - corners[i].m_x, corners[i + 1].m_y - corners[i].m_y));
            break;
        }
        default:
            break;
    }
}

std::string Metres(double millimetres) {
    const double metres = millimetres / 1000;
    return FixedReal(metres, metres >= 1000 ? 0 : metres >= 10 ? 1 : metres >= 0.1 ? 2 : 4);
}

}  // namespace

const std::vector<DrawingUnit>& DrawingUnits() {
    static const std::vector<DrawingUnit> units = {{4, "毫米", 1},  {5, "厘米", 10},   {14, "分米", 100},
                                                   {6, "米", 1000}, {1, "英寸", 25.4}, {2, "英尺", 304.8},
                                                   {7, "公里", 1e6}};
    return units;
}

std::size_t UnitOfHeader(int insUnits) {
    const auto& units = DrawingUnits();
    return static_cast<std::size_t>(
        std::find_if(units.begin(), units.end(),
                     [&](const DrawingUnit& u) { return u.insUnits == insUnits; }) -
        units.begin());
}

std::size_t UnitOfScale(double millimetres) {
    const auto& units = DrawingUnits();
    return static_cast<std::size_t>(
        std::find_if(units.begin(), units.end(),
                     [&](const DrawingUnit& u) { return u.millimetres == millimetres; }) -
        units.begin());
}

DrawingSizes::DrawingSizes(const DXF& drawing, const std::vector<DxfLayerSummary>& layers)
    : m_layers(layers.size()) {
    // Names that differ in ASCII case only are one row of the summary.
    const auto small = [](const std::string& name) {
        CString folded(name);
        folded.MakeLower();
        return std::string(folded.GetString());
    };
    std::map<std::string, std::size_t> rows;
    for (std::size_t i = 0; i < layers.size(); ++i) {
        rows.emplace(small(layers[i].m_strName), i);
        m_layers[i].extent = layers[i].m_extent;
    }
    std::map<const DxfLayer*, std::size_t> rowOf;  // only looked up
    for (const DxfLayer& layer : drawing.GetLayers())
        if (const auto found = rows.find(small(layer.m_strName)); found != rows.end())
            rowOf[&layer] = found->second;
    for (const ACAD_ENTITY* const entity : drawing.GetEntities())
        if (const auto row = rowOf.find(entity->m_pLayer); row != rowOf.end())
            AddLengths(m_layers[row->second].lengths, *entity);
    const auto endless = [](double length) { return !std::isfinite(length); };
    for (Layer& layer : m_layers) std::erase_if(layer.lengths, endless);
    for (Layer& layer : m_layers) std::sort(layer.lengths.begin(), layer.lengths.end());
}

DrawingSizes::Size DrawingSizes::Of(const std::string& ticks, double scale, double tolerance) const {
    Size size;
    DxfExtent all;
    for (std::size_t i = 0; i < m_layers.size() && i < ticks.size(); ++i) {
        if (ticks[i] != '1') continue;
        const Layer& layer = m_layers[i];
        size.pieces += layer.lengths.size();
        size.tooShort += static_cast<std::size_t>(
            std::upper_bound(layer.lengths.begin(), layer.lengths.end(), tolerance / scale) -
            layer.lengths.begin());
        if (layer.extent.m_bEmpty) continue;
        all.Add(layer.extent.m_dMinX, layer.extent.m_dMinY);
        all.Add(layer.extent.m_dMaxX, layer.extent.m_dMaxY);
    }
    if (all.m_bEmpty) return size;
    size.empty = false;
    size.width = (all.m_dMaxX - all.m_dMinX) * scale;
    size.height = (all.m_dMaxY - all.m_dMinY) * scale;
    for (const double v : {all.m_dMinX, all.m_dMaxX, all.m_dMinY, all.m_dMaxY})
        size.farthest = std::max(size.farthest, std::fabs(v) * scale);
    return size;
}

std::string SizeText(const DrawingSizes::Size& size) {
    return size.empty ? "" : Metres(size.width) + " × " + Metres(size.height) + " 米";
}

std::string SizeWarning(const DrawingSizes::Size& size, double tolerance) {
    if (size.empty) return {};
    std::string text;
    const auto add = [&](const std::string& what) { text += (text.empty() ? "" : "; ") + what; };
    const double whole = std::max(size.width, size.height);
    if (whole < kSmallest) add("整个图形不到 1 米");
    if (whole > kLargest) add("整个图形超过 5 公里");
    if (size.tooShort * kManyOf >= size.pieces && size.tooShort > 0)
        add(std::to_string(size.pieces) + " 段线中有 " + std::to_string(size.tooShort) + " 段不长于容差 " +
            FixedReal(tolerance, 0) + " 毫米, 不会输入");
    const float far = static_cast<float>(std::min(size.farthest, 1e30));
    const double step = static_cast<double>(std::nextafter(far, 2 * far) - far);
    if (step >= kCoarse)
        add("图形离原点 " + FixedReal(size.farthest / 1e6, 0) + " 公里, 坐标只精确到 " + FixedReal(step, 0) + " 毫米");
    return text.empty() ? text : "注意: " + text + "。请检查图纸单位和勾选的图层。";
}
