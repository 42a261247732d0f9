#include "host/plate_look.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <unordered_map>
#include <utility>

#include "host/host_data_base.h"
#include "host/net_walk.h"
#include "host/tvo_load.h"
#include "model/grid_index_service_object.h"
#include "plates/mian_goujian.h"

namespace {

constexpr PlateColor kColors[kPlateColorCount] = {
    {RGB(222, 235, 247), RGB(196, 216, 236), RGB(44, 82, 122), true},    // sky
    {RGB(229, 243, 222), RGB(204, 228, 193), RGB(58, 98, 46), false},    // leaf
    {RGB(253, 242, 214), RGB(242, 224, 176), RGB(122, 92, 24), true},    // straw
    {RGB(250, 228, 218), RGB(238, 203, 187), RGB(138, 70, 42), false},   // peach
    {RGB(234, 228, 245), RGB(214, 204, 233), RGB(86, 64, 132), true},    // lilac
    {RGB(219, 242, 239), RGB(188, 225, 220), RGB(28, 102, 96), false},   // sea
    {RGB(249, 225, 234), RGB(236, 200, 214), RGB(134, 54, 88), true},    // rose
    {RGB(239, 237, 226), RGB(220, 216, 197), RGB(94, 88, 58), false},    // sand
};

// ---- outlines -------------------------------------------------------------------------------------

/// Appends the points of an edge but the last. `c` is half the central angle, radians, positive clockwise.
void AppendEdge(std::vector<FlatPoint>& points, FlatPoint a, FlatPoint b, double c, double sag) {
    points.push_back(a);
    const double chord = std::hypot(b.x - a.x, b.y - a.y), half = std::fabs(c);
    if (!(half >= 1e-6 && half < std::numbers::pi && chord > 0)) return;  // straight, or no number
    const double r = chord / 2 / std::sin(half);
    const double step = 2 * std::acos(std::max(1 - sag / r, 0.5));  // sixty degrees at most
    const int count = static_cast<int>(std::min(std::ceil(2 * half / std::max(step, 1e-3)), 1000.0));
    const double sense = c < 0 ? 1 : -1;  // anticlockwise arcs have their centre on the left
    const double lift = sense * r * std::cos(half) / chord;
    const FlatPoint centre{(a.x + b.x) / 2 - (b.y - a.y) * lift, (a.y + b.y) / 2 + (b.x - a.x) * lift};
    const double start = std::atan2(a.y - centre.y, a.x - centre.x);
    for (int i = 1; i < count; ++i) {
        const double angle = start + sense * 2 * half * i / count;
        points.push_back({centre.x + r * std::cos(angle), centre.y + r * std::sin(angle)});
    }
}

/// By the crossings of a ray to the right.
bool Contains(const std::vector<FlatPoint>& outline, FlatPoint p) {
    bool inside = false;
    for (std::size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
        const FlatPoint &a = outline[i], &b = outline[j];
        if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
    }
    return inside;
}

// ---- colours --------------------------------------------------------------------------------------

std::vector<int> ColorsOf(CTvoHostDataBase& db, const std::vector<CMianGouJian*>& plates) {
    std::unordered_map<const CMianGouJian*, int> chosen;  // only looked up
    std::vector<int> colors;
    for (CMianGouJian* plate : plates) {
        bool taken[kPlateColorCount] = {};
        for (CGjNetLine* line : plate->m_arrBoundery) {
            CArray<CMianGouJian*> beside;
            db.GetBounderyPlate(line, beside);
            for (const CMianGouJian* other : beside)
                if (const auto found = chosen.find(other); found != chosen.end()) taken[found->second] = true;
        }
        // Steps of three go round all eight, so that rows of plates don't all begin with the same few.
        int color = static_cast<int>(plate->m_dwGouJianNO * 3 % kPlateColorCount);
        for (int i = 0; i < kPlateColorCount && taken[color]; ++i) color = (color + 1) % kPlateColorCount;
        chosen[plate] = color;
        colors.push_back(color);
    }
    return colors;
}

// ---- labels ---------------------------------------------------------------------------------------

constexpr double kDigitWidth = 0.62, kLineStep = 1.25, kPadding = 0.35;  // in ems

struct Box {
    double minX, minY, maxX, maxY;
};

/// Does the section pass through the box?
bool Meets(const Box& box, FlatPoint a, FlatPoint b) {
    double from = 0, to = 1;
    const auto clip = [&](double start, double run, double least, double most) {
        if (run == 0) return start >= least && start <= most;
        const double t1 = (least - start) / run, t2 = (most - start) / run;
        from = std::max(from, std::min(t1, t2));
        to = std::min(to, std::max(t1, t2));
        return from <= to;
    };
    return clip(a.x, b.x - a.x, box.minX, box.maxX) && clip(a.y, b.y - a.y, box.minY, box.maxY);
}

std::vector<FlatPoint> FlatLine(const CGjNetLine& line, double sag) {
    std::vector<FlatPoint> points;
    const FlatPoint end{line.m_fEndX, line.m_fEndY};
    AppendEdge(points, {line.m_fStartX, line.m_fStartY}, end, line.m_nArc ? line.GetFShoot(0).c : 0, sag);
    points.push_back(end);
    return points;
}

bool Meets(const Box& box, const CGjNetLine& line, double sag) {
    const auto points = FlatLine(line, sag);
    for (std::size_t i = 1; i < points.size(); ++i)
        if (Meets(box, points[i - 1], points[i])) return true;
    return false;
}

std::size_t Characters(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

PlateLabel LabelOf(CTvoHostDataBase& db, const PlateFace& face, double height, bool numberOnly) {
    const CMianGouJian& plate = *face.plate;
    PlateLabel label;
    label.color = face.color;
    label.lines.push_back({std::to_string(plate.m_dwGouJianNO), height, 0});
    if (numberOnly) return label;
    label.lines.push_back({AreaText(plate.m_fArea), height * 0.8, 0});
    if (const CTvoLoad* load = db.FindLoad(plate.m_dwGouJianID); load && load->IsVisable()) {
        char text[40];
        std::snprintf(text, sizeof text, "q = %.6g", load->m_dValue);
        label.lines.push_back({text, height * 0.8, 0});
    }
    return label;
}

/// Sets the lines about a place; the box that they take, with some room around.
Box SetAt(PlateLabel& label, FlatPoint at) {
    label.x = at.x;
    label.y = at.y;
    double width = 0, tall = 0;
    for (const LabelLine& line : label.lines) {
        width = std::max(width, line.height * kDigitWidth * static_cast<double>(Characters(line.text)));
        tall += line.height * kLineStep;
    }
    double top = at.y + tall / 2;
    for (LabelLine& line : label.lines) {
        line.baseline = top - line.height;
        top -= line.height * kLineStep;
    }
    const double pad = label.lines[0].height * kPadding;
    return {at.x - width / 2 - pad, at.y - tall / 2 - pad, at.x + width / 2 + pad, at.y + tall / 2 + pad};
}

/// Is the box no larger than the extent, wherever it stands?
bool IsWithin(const Box& box, const CFRect& extent) {
    return box.maxX - box.minX <= extent.m_fMaxX - extent.m_fMinX && box.maxY - box.minY <= extent.m_fMaxY - extent.m_fMinY;
}

/// The free space of one plate.
class Room {
public:
    Room(CTvoHostDataBase& db, const CMianGouJian& plate, double sag) : m_db(db), m_plate(plate), m_sag(sag) {}

    bool IsFree(const Box& box) {
        const FlatPoint centre{(box.minX + box.maxX) / 2, (box.minY + box.maxY) / 2};
        if (!Contains(Outline(), centre)) return false;
        const auto near = Near(box);
        return std::none_of(near.begin(), near.end(), [&](CGouJianEx* obj) {
            if (obj->QueryBasicType() == kBasicLine) return Meets(box, *static_cast<CGjNetLine*>(obj), m_sag);
            if (obj->get_Gjlx() != m_plate.get_Gjlx() || obj == &m_plate) return false;
            // Inside of a plate that is painted upon this one?
            const auto& other = *static_cast<CMianGouJian*>(obj);
            return other.m_fArea < m_plate.m_fArea && Contains(FlatOutline(other.m_region, m_sag), centre);
        });
    }

    /// Middles of stretches that no line crosses, on some levels of the plate; the widest first.
    std::vector<FlatPoint> WidePlaces() {
        std::vector<std::pair<double, FlatPoint>> found;  // with the stretch's width
        const CFRect& extent = m_plate.m_rect;
        for (const double level : {0.5, 0.35, 0.65, 0.2, 0.8}) {
            const double y = extent.m_fMinY + level * (extent.m_fMaxY - extent.m_fMinY);
            const std::vector<double> cuts = CutsAt(y);
            for (std::size_t i = 1; i < cuts.size(); ++i) {
                const FlatPoint middle{(cuts[i - 1] + cuts[i]) / 2, y};
                if (Contains(Outline(), middle)) found.emplace_back(cuts[i] - cuts[i - 1], middle);
            }
        }
        std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
        std::vector<FlatPoint> places;
        for (std::size_t i = 0; i < std::min<std::size_t>(found.size(), 6); ++i) places.push_back(found[i].second);
        return places;
    }

private:
    const std::vector<FlatPoint>& Outline() {
        if (m_outline.empty()) m_outline = FlatOutline(m_plate.m_region, m_sag);
        return m_outline;
    }

    std::vector<CGouJianEx*> Near(const Box& box) const {
        std::vector<CGouJianEx*> near;
        m_db.Index().OthersIn(CFRect(static_cast<float>(box.minX), static_cast<float>(box.minY),
                                     static_cast<float>(box.maxX), static_cast<float>(box.maxY)), near);
        return near;
    }

    /// Where lines cross a level within the plate's extent, in order.
    std::vector<double> CutsAt(double y) const {
        std::vector<double> cuts;
        for (CGouJianEx* obj : Near({m_plate.m_rect.m_fMinX, y, m_plate.m_rect.m_fMaxX, y})) {
            if (obj->QueryBasicType() != kBasicLine) continue;
            const auto points = FlatLine(*static_cast<CGjNetLine*>(obj), m_sag);
            for (std::size_t i = 1; i < points.size(); ++i) {
                const FlatPoint &a = points[i - 1], &b = points[i];
                if ((a.y > y) != (b.y > y)) cuts.push_back(a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y));
            }
        }
        std::sort(cuts.begin(), cuts.end());
        return cuts;
    }

    CTvoHostDataBase& m_db;
    const CMianGouJian& m_plate;
    double m_sag;
    std::vector<FlatPoint> m_outline;  // empty until it is needed
};

/// Everything in letters as large as fit, rather than at the centroid; the number alone when all else fails.
bool PutLabel(CTvoHostDataBase& db, const PlateFace& face, double largest, double smallest, PlateLabel& label) {
    Room room(db, *face.plate, smallest / 8);
    const FlatPoint centroid{face.plate->m_fCenterX, face.plate->m_fCenterY};
    std::vector<FlatPoint> elsewhere;
    bool looked = false;
    for (const bool numberOnly : {false, true}) {
        // Most plates of a big net are smaller than any letters: nothing is looked for there.
        std::vector<PlateLabel> sizes;
        for (double height = largest; height >= smallest * 0.999; height *= 0.8) {
            label = LabelOf(db, face, height, numberOnly);
            if (IsWithin(SetAt(label, centroid), face.plate->m_rect)) sizes.push_back(label);
        }
        if (sizes.empty()) continue;
        const auto fits = [&](FlatPoint at) {
            for (const PlateLabel& size : sizes) {
                label = size;
                if (room.IsFree(SetAt(label, at))) return true;
            }
            return false;
        };
        if (fits(centroid)) return true;
        if (!std::exchange(looked, true)) elsewhere = room.WidePlaces();
        if (std::any_of(elsewhere.begin(), elsewhere.end(), fits)) return true;
    }
    return false;
}

}  // namespace

const PlateColor& PlateColorAt(int index) { return kColors[index]; }

std::vector<PlateFace> PlateFaces(CTvoHostDataBase& db) {
    const auto plates = NetPlates(db);
    const auto colors = ColorsOf(db, plates);
    std::vector<PlateFace> faces;
    for (std::size_t i = 0; i < plates.size(); ++i) {
        const bool whole = plates[i]->m_region.GetSize() >= 2 && std::isfinite(plates[i]->m_fArea);
        if (whole && db.IsVisible(plates[i])) faces.push_back({plates[i], colors[i]});
    }
    std::stable_sort(faces.begin(), faces.end(),
                     [](const PlateFace& a, const PlateFace& b) { return a.plate->m_fArea > b.plate->m_fArea; });
    return faces;
}

std::vector<FlatPoint> FlatOutline(const CFRegion& region, double sag) {
    std::vector<FlatPoint> points;
    const int n = region.GetSize();
    for (int i = 0; i < n; ++i) {
        const CFShoot &a = region[i], &b = region[(i + 1) % n];
        AppendEdge(points, {a.x, a.y}, {b.x, b.y}, a.c, sag);
    }
    return points;
}

std::vector<PlateLabel> PlateLabels(CTvoHostDataBase& db, const std::vector<PlateFace>& faces, double largest, double smallest) {
    std::vector<PlateLabel> labels;
    for (const PlateFace& face : faces) {
        PlateLabel label;
        if (PutLabel(db, face, largest, smallest, label)) labels.push_back(std::move(label));
    }
    return labels;
}

std::string AreaText(double squareMillimetres) {
    char text[40];
    const double m2 = squareMillimetres / 1e6;
    if (m2 >= 1e6)
        std::snprintf(text, sizeof text, "%.4g km²", m2 / 1e6);
    else if (m2 >= 100)
        std::snprintf(text, sizeof text, "%.0f m²", m2);
    else if (m2 >= 0.1)
        std::snprintf(text, sizeof text, m2 >= 10 ? "%.1f m²" : "%.2f m²", m2);
    else
        std::snprintf(text, sizeof text, "%.4g mm²", squareMillimetres);
    return text;
}
