#include "host/editor/axis_grid.h"

#include <algorithm>
#include <cmath>

#include "host/host_data_base.h"
#include "host/point_command.h"
#include "platform/saturate.h"

namespace {

constexpr double kRadians = 3.14159265358979323846 / 180;
constexpr double kFullTurn = 360;
constexpr double kTurnRounding = 1e-6;  // degrees: sums that differ by less are one

/// 0 and the running sums.
std::vector<double> Positions(const Spacings& spacings, double from = 0) {
    std::vector<double> positions{from};
    for (const double spacing : spacings.All()) positions.push_back(positions.back() + spacing);
    return positions;
}

AxisPoint Polar(double radius, double degrees) {
    return {radius * std::cos(degrees * kRadians), radius * std::sin(degrees * kRadians)};
}

bool IsClosed(const AxisGrid& grid) { return grid.arc && grid.across.Total() > kFullTurn - kTurnRounding; }

/// Radii of the arcs; the innermost is left out where the axes meet.
std::vector<double> Radii(const AxisGrid& grid) { return Positions(grid.deep, grid.inner); }

/// Directions of the axes that run outwards; of a closed grid the last one is the first.
std::vector<double> Directions(const AxisGrid& grid) {
    std::vector<double> directions = Positions(grid.across);
    if (IsClosed(grid)) directions.pop_back();
    return directions;
}

void AppendStraight(const AxisGrid& grid, std::vector<AxisPiece>& pieces) {
    const std::vector<double> xs = Positions(grid.across), ys = Positions(grid.deep);
    for (const double x : xs)
        for (std::size_t j = 0; j + 1 < ys.size(); ++j) pieces.push_back({{x, ys[j]}, {x, ys[j + 1]}, 0, {}});
    for (const double y : ys)
        for (std::size_t i = 0; i + 1 < xs.size(); ++i) pieces.push_back({{xs[i], y}, {xs[i + 1], y}, 0, {}});
}

void AppendRound(const AxisGrid& grid, std::vector<AxisPiece>& pieces) {
    const std::vector<double> radii = Radii(grid), directions = Directions(grid), bays = grid.across.All();
    for (const double direction : directions)
        for (std::size_t j = 0; j + 1 < radii.size(); ++j)
            pieces.push_back({Polar(radii[j], direction), Polar(radii[j + 1], direction), 0, {}});
    for (const double radius : radii)
        for (std::size_t i = 0; radius > 0 && i < bays.size(); ++i)
            pieces.push_back({Polar(radius, directions[i]),
                              Polar(radius, directions[(i + 1) % directions.size()]),
                              bays[i],
                              {}});
}

/// What the tolerance of the net would spoil at the innermost arc; empty for nothing.
std::string CheckInnermost(const AxisGrid& grid, double tolerance) {
    double narrowest = kFullTurn;
    for (const SpacingUnit& unit : grid.across.units)
        narrowest = std::min({narrowest, unit.spacing, kFullTurn - unit.spacing});
    const double gap = kFullTurn - grid.across.Total();
    if (!IsClosed(grid)) narrowest = std::min(narrowest, gap);
    const double radius = grid.inner > 0 ? grid.inner : Radii(grid)[1];
    const double chord = 2 * radius * std::sin(std::min(narrowest, 180.0) / 2 * kRadians);
    if (chord > tolerance) return {};
    return "内半径: 最内圈上相邻轴线只相距 " + NumberText(std::round(chord * 10) / 10) + " mm, 应大于 " +
           NumberText(tolerance) + " mm";
}

}  // namespace

std::vector<AxisPoint> AxisPiece::Path() const {
    std::vector<AxisPoint> path{from};
    constexpr double kSide = 3;  // degrees
    const int sides = std::max(1, static_cast<int>(std::ceil(std::min(sweep, kFullTurn) / kSide)));
    const double x = from.x - centre.x, y = from.y - centre.y;
    for (int i = 1; i < sides; ++i) {
        const double a = sweep * i / sides * kRadians;
        path.push_back(
            {centre.x + x * std::cos(a) - y * std::sin(a), centre.y + x * std::sin(a) + y * std::cos(a)});
    }
    path.push_back(to);
    return path;
}

AxisPoint AxisGrid::InsertionPoint() const {
    const double width = across.Total(), height = deep.Total();
    if (arc) {
        const double outer = inner + height;
        switch (insert) {
            case 1:
                return Polar(inner, 0);
            case 2:
                return Polar(inner, width);
            case 3:
                return Polar(outer, 0);
            case 4:
                return Polar(outer, width);
            default:
                return {};
        }
    }
    switch (insert) {
        case 1:
            return {width, 0};
        case 2:
            return {0, height};
        case 3:
            return {width, height};
        case 4:
            return {width / 2, height / 2};
        default:
            return {};
    }
}

std::vector<AxisPiece> AxisGrid::Axes() const {
    std::vector<AxisPiece> axes;
    const double width = across.Total(), height = deep.Total();
    if (!arc) {
        for (const double x : Positions(across)) axes.push_back({{x, 0}, {x, height}, 0, {}});
        for (const double y : Positions(deep)) axes.push_back({{0, y}, {width, y}, 0, {}});
        return axes;
    }
    for (const double direction : Directions(*this))
        axes.push_back({Polar(inner, direction), Polar(inner + height, direction), 0, {}});
    for (const double radius : Radii(*this))
        if (radius > 0)
            axes.push_back({Polar(radius, 0), Polar(radius, IsClosed(*this) ? 0 : width), width, {}});
    return axes;
}

std::vector<AxisPiece> AxisGrid::Pieces() const {
    std::vector<AxisPiece> pieces;
    if (arc) AppendRound(*this, pieces);
    else AppendStraight(*this, pieces);
    return pieces;
}

AxisPlacing::AxisPlacing(const AxisGrid& grid, AxisPoint at)
    : m_pivot(grid.InsertionPoint()),
      m_at(at),
      m_cos(std::cos(grid.turn * kRadians)),
      m_sin(std::sin(grid.turn * kRadians)) {
    // Quarter turns are exact: axes along the plan's stay so to the bit.
    if (std::fmod(grid.turn, 90) == 0) {
        m_cos = std::round(m_cos);
        m_sin = std::round(m_sin);
    }
}

AxisPoint AxisPlacing::operator()(AxisPoint p) const {
    const double x = p.x - m_pivot.x, y = p.y - m_pivot.y;
    return {m_at.x + x * m_cos - y * m_sin, m_at.y + x * m_sin + y * m_cos};
}

const std::vector<std::string>& InsertionNames(bool arc) {
    static const std::vector<std::string> straight{"左下角", "右下角", "左上角", "右上角", "中心"};
    static const std::vector<std::string> round{"圆心", "内圈起点", "内圈终点", "外圈起点", "外圈终点"};
    return arc ? round : straight;
}

AxisGrid ReadAxisGrid(bool arc, const AxisGridTexts& texts, double tolerance, std::string& wrong) {
    AxisGrid grid;
    grid.arc = arc;
    // Longer than the tolerance: the least number that a person would type for it.
    const SpacingRule bays = arc ? SpacingRule{"圆弧开间角", 0.01, 359.99, kMostAxes}
                                 : SpacingRule{"开间", tolerance + 1, kLongestSpacing, kMostAxes};
    grid.across = ReadSpacings(texts.across, bays);
    grid.deep = ReadSpacings(texts.deep, {"进深", tolerance + 1, kLongestSpacing, kMostAxes});
    const int insertions = static_cast<int>(InsertionNames(arc).size());
    grid.insert = SaturatedInt(TypedNumber(texts.insert).value_or(0));
    grid.inner = TypedNumber(texts.inner).value_or(0);
    grid.turn = TypedNumber(texts.turn).value_or(0);

    wrong = grid.across.wrong;
    const auto check = [&](const std::string& next) {
        if (wrong.empty()) wrong = next;
    };
    check(grid.deep.wrong);
    if (grid.insert < 0 || grid.insert >= insertions) {
        check("插入点: 没有第 " + std::to_string(grid.insert) + " 个");
        grid.insert = 0;
    }
    if (arc) check(CheckNumber(texts.inner, "内半径", 0, kLongestSpacing));
    check(CheckNumber(texts.turn, "转角", -kFullTurn, kFullTurn));
    if (!wrong.empty()) return grid;
    if (arc && grid.across.Total() > kFullTurn + kTurnRounding)
        check("圆弧开间角: 合计 " + NumberText(grid.across.Total()) + " 度, 最多 360 度");
    if (arc) check(CheckInnermost(grid, tolerance));
    const auto crossings = (grid.across.All().size() + 1) * (grid.deep.All().size() + 1);
    if (crossings > kMostCrossings)
        check("轴线交点 " + std::to_string(crossings) + " 个, 最多 " + std::to_string(kMostCrossings) +
              " 个");
    return grid;
}

std::optional<int> PlaceAxisGrid(CTvoHostDataBase& db, const AxisGrid& grid, AxisPoint at) {
    if (!WithinReach(CFPoint(static_cast<float>(at.x), static_cast<float>(at.y), 0))) return {};
    const AxisPlacing place(grid, at);
    const auto point = [&](AxisPoint p) {
        const AxisPoint placed = place(p);
        return CFPoint(static_cast<float>(placed.x), static_cast<float>(placed.y), 0);
    };
    const std::vector<AxisPiece> pieces = grid.Pieces();
    int made = 0;
    db.Start();
    db.DoEdit([&] {
        for (const AxisPiece& piece : pieces) {
            // Half the sweep, negative for what runs anticlockwise.
            const auto bulge = static_cast<float>(-piece.sweep / 2);
            db.AddNetLine(point(piece.from), point(piece.to), piece.sweep > 0, bulge);
            if (!db.m_bLineExisted && !db.m_bLineDegenerate) ++made;
        }
    });
    return made;
}
