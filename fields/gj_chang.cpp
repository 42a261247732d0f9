// A field as a component: life, display list, colours. gj_chang_picture.cpp paints the bitmaps.
#include "fields/gj_chang.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "fields/chang.h"
#include "fields/field_mesh.h"
#include "model/draw_graph.h"
#include "model/profile.h"
#include "platform/acad_color.h"
#include "platform/number_text.h"
#include "platform/saturate.h"

namespace {

constexpr int kCopyPen = 13;     // R2_COPYPEN
constexpr char kPlainPart = 65;  // colour index of grid and node values
constexpr int kMaxLevels = 10000;
constexpr int kMaxPieces =
    10000000;  // of isolines: as many lines as a gigabyte holds, rather than all memory
constexpr double kMaxDigits = 1e6;

std::string ValueText(double value) { return FixedReal(value, 2); }

CFRect Scaled(const CFRect& r, float by) {
    return {r.m_fMinX * by, r.m_fMinY * by, r.m_fMaxX * by, r.m_fMaxY * by};
}

}  // namespace

CGjChang::CGjChang() { m_bDrawBoth = 1; }  // bitmap and display list are both painted

CGjChang::~CGjChang() {
    if (m_bOwnChang) delete m_pChang;
}

void CGjChang::OnCalcParameters() {
    if (!m_pChang) return;
    m_rect = Scaled(m_pChang->GetFRect(), m_fCoordScale);
    m_ptAnchor = m_rect.Nearest();
    m_bRulerDirty = 1;
}

int CGjChang::DrawGraph(CDrawGraph* graph) {
    if (!m_pChang) return 1;
    if (m_nDisplay == FIELD_DISPLAY_CLOUD) graph->Set_Locator(m_rect);
    else if (m_nDisplay == FIELD_DISPLAY_ISOLINE) GenerateIsolineGraph(graph);
    else GenerateDigitGraph(graph);
    if (m_bDrawGrid) DrawGrid(graph);
    if (m_bDrawValue) DrawValue(graph);
    return 1;
}

void CGjChang::LevelColor(float value) {
    m_arrColor.Add(static_cast<std::int32_t>(m_pChang->GetIndexColor(value)));
}

// --- isolines ---------------------------------------------------------------------------------------------

namespace {

/// A twentieth of the range; 1 for a range too small for that, or so far from zero that the step would be
/// lost in it.
double IsolineStep(double min, double max) {
    double step = (max - min) / 20.0;
    if (step < 0 || std::fabs(step) < 1e-7) step = 1.0;
    if (std::fabs(min / step) > 99999999.0) step = 1.0;
    return step;
}

/// The lines of one level, and its value at the first of them. Returns the number of segments.
int AppendLevel(CDrawGraph& graph, const CChang& field, float scale, const std::string& label, char part) {
    int pieces = 0;
    for (const CArray<CFPoint>& line : field.m_arrPolyline) {
        for (int i = 0; i + 1 < line.GetSize(); ++i) {
            const CFPoint &a = line[i], &b = line[i + 1];
            graph.Draw_Line(a.x * scale, a.y * scale, b.x * scale, b.y * scale, 1.0f, part, 0, kCopyPen);
            if (pieces++ == 0) graph.Draw_Text(a.x * scale, a.y * scale, 300.0f, 0, label.c_str(), part);
        }
    }
    return pieces;
}

}  // namespace

// Level and step are doubles: a float at 1e9 would never move by a step of 1. The index of a level's lines
// begins at 1, where that of the colours begins at 0, so that a level shows the colour of the next one, and
// GetDrawInfo cuts the last one's: drawings have always looked so.
void CGjChang::GenerateIsolineGraph(CDrawGraph* graph) {
    m_arrColor.RemoveAll();
    m_pChang->m_nColorScheme = m_nColorScheme;
    float least, most;
    if (!m_pChang->GetMinMaxZ(least, most)) return;
    const double min = static_cast<double>(least), max = static_cast<double>(most),
                 step = IsolineStep(min, max);
    float traced = std::numeric_limits<float>::quiet_NaN();
    int index = 0, pieces = 0;
    for (double z = min; max > z && index < kMaxLevels && pieces < kMaxPieces; z += step) {
        const float level = static_cast<float>(z);
        if (level != traced) m_pChang->TraceOne(level);  // else the lines are there already
        traced = level;
        LevelColor(level);
        ++index;
        pieces +=
            AppendLevel(*graph, *m_pChang, m_fCoordScale, ValueText(z * static_cast<double>(m_fValueScale)),
                        static_cast<char>(std::min(index, 127)));
        if (z + step == z) break;
    }
}

// --- digits -----------------------------------------------------------------------------------------------

namespace {

/// Positions along one side of the field.
struct Columns {
    double from, to, step;
    int count;

    Columns(float low, float high, double by)
        : from(static_cast<double>(low)), to(static_cast<double>(high)), step(by), count(1) {
        const double width = to - from;
        if (!(width > 0) || !std::isfinite(width)) return;
        if (width / step < 5) step = width / 5;
        Count();
    }
    void Widen(double by) {
        step *= by;
        if (count > 1) Count();
    }
    /// One that lies beyond the border by rounding stands on it, and is the last.
    double At(int i) const { return std::min(from + i * step, to); }

private:
    // A step that ends within 0.01 behind the border still counts, but a narrow field has no second column
    // there.
    void Count() {
        const double width = to - from;
        const double steps = std::min(std::floor((width + 0.01) / step), std::ceil(width / step - 1e-9));
        count = SaturatedInt(steps, 0, std::numeric_limits<int>::max() - 1) + 1;
    }
};

/// A model coordinate in the field's. The borders come back exactly: of a hundred products, divided again,
/// two lie beside what they came from, and a fine mesh far from the origin would have no digits along that
/// side.
float InField(float model, float scale, float low, float high) {
    if (model == high * scale) return high;
    return model == low * scale ? low : model / scale;
}

}  // namespace

void CGjChang::GenerateDigitGraph(CDrawGraph* graph) {
    m_arrColor.RemoveAll();
    m_pChang->m_nColorScheme = m_nColorScheme;
    float least, most;
    m_pChang->GetMinMaxZ(least, most);
    const double min = static_cast<double>(least), max = static_cast<double>(most);
    for (int i = 0; i < 127; ++i) LevelColor(static_cast<float>(min + (max - min) / 127.0 * i));

    const CFRect field = m_pChang->GetFRect();
    Columns columns(m_rect.m_fMinX, m_rect.m_fMaxX, 2000.0), rows(m_rect.m_fMinY, m_rect.m_fMaxY, 2000.0);
    while (static_cast<double>(columns.count) * rows.count > kMaxDigits) {
        const double by =
            std::max(1.01, std::sqrt(static_cast<double>(columns.count) * rows.count / kMaxDigits));
        columns.Widen(by);
        rows.Widen(by);
    }
    for (int i = 0; i < columns.count; ++i) {
        for (int j = 0; j < rows.count; ++j) {
            const float x = static_cast<float>(columns.At(i)), y = static_cast<float>(rows.At(j));
            const float fieldX = InField(x, m_fCoordScale, field.m_fMinX, field.m_fMaxX),
                        fieldY = InField(y, m_fCoordScale, field.m_fMinY, field.m_fMaxY);
            if (!m_pChang->PointInChang(fieldX, fieldY)) continue;
            const double v = static_cast<double>(m_pChang->Get_Value(fieldX, fieldY));
            const int part = max - min < 1e-7 ? 0 : SaturatedInt((v - min) / (max - min) * 126, 0, 126);
            graph->Draw_Text(x, y, 500.0f, 0, ValueText(v * static_cast<double>(m_fValueScale)).c_str(),
                             static_cast<char>(part));
        }
    }
}

// --- triangles and node values ----------------------------------------------------------------------------

void CGjChang::DrawGrid(CDrawGraph* graph) {
    CFieldMesh mesh(*m_pChang);
    mesh.Refresh();
    CFieldMesh::Corners at;
    for (const CChangTri& tri : m_pChang->m_arrTri) {
        if (!mesh.FindUsable(tri, at)) continue;
        for (std::size_t k = 0; k < 3; ++k) {
            const CChangNode &a = mesh.Node(at[k]), &b = mesh.Node(at[(k + 1) % 3]);
            graph->Draw_Line(a.m_fX * m_fCoordScale, a.m_fY * m_fCoordScale, b.m_fX * m_fCoordScale,
                             b.m_fY * m_fCoordScale, 1.0f, kPlainPart, 0, kCopyPen);
        }
    }
}

void CGjChang::DrawValue(CDrawGraph* graph) {
    for (const CChangNode& node : m_pChang->m_arrNode) {
        const float x = node.m_fX * m_fCoordScale, y = node.m_fY * m_fCoordScale;
        if (!std::isfinite(x) || !std::isfinite(y)) continue;
        const double v = static_cast<double>(m_pChang->Get_Value(node.m_fX, node.m_fY)) *
                         static_cast<double>(m_fValueScale);
        graph->Draw_Text(x, y, 100.0f, 0, ValueText(v).c_str(), kPlainPart);
        if (!m_bShowCoord) continue;
        std::string place = "(";
        place.append(ValueText(static_cast<double>(node.m_fX))).append(",");
        place.append(ValueText(static_cast<double>(node.m_fY))).append(")");
        graph->Draw_Text(x, y + 100.0f, 100.0f, 0, place.c_str(), kPlainPart);
    }
}

// --- colours ----------------------------------------------------------------------------------------------

void CGjChang::GetDrawInfo(unsigned char status, char part, unsigned long& colour, int& lineType) {
    constexpr unsigned char kMuted = 3;  // a mode of drawing, never a component's status
    if (m_nDisplay == FIELD_DISPLAY_CLOUD) return;
    if (status == GJ_STATUS_NORMAL && !m_arrColor.IsEmpty()) {
        const int at = std::clamp(static_cast<int>(part), 0, m_arrColor.GetUpperBound());
        colour = static_cast<std::uint32_t>(m_arrColor[at]);
        lineType = 0;
    } else if (status == GJ_STATUS_SELECTED) {
        colour = GetAcadRGBColor(g_cTvoProfile.m_nSelNodeColor);
        lineType = 1;
    } else if (status == kMuted) {
        colour = GetAcadRGBColor(g_cTvoProfile.m_nMutedColor);
        lineType = 0;
    }
}
