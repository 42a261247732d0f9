#include "fields/dxf_import.h"

#include <chrono>
#include <cmath>
#include <memory>
#include <set>

#include "geometry/angles.h"
#include "geometry/net_arc.h"
#include "model/profile.h"
#include "net/grid_data_base.h"
#include "shell/tvo_frame_base.h"

namespace {

class Stopwatch {
public:
    double Lap() {
        const auto now = std::chrono::steady_clock::now();
        return std::chrono::duration<double>(now - std::exchange(m_from, now)).count();
    }

private:
    std::chrono::steady_clock::time_point m_from = std::chrono::steady_clock::now();
};

// Hands pieces to the net and counts what becomes of them.
class PieceTaker {
public:
    PieceTaker(CGridDataBase& db, const DxfImportOptions& options, DxfPieceCounts& counts)
        : m_db(db), m_scale(options.scale), m_flattest(options.flattest), m_counts(counts) {}

    bool IsFlat(float halfSweep) const { return std::fabs(static_cast<double>(halfSweep)) < m_flattest; }
    float Scaled(double v) const { return static_cast<float>(v * m_scale); }
    CFPoint Point(double x, double y) const { return CFPoint(Scaled(x), Scaled(y), 0); }

    void Line(const CFPoint& p, const CFPoint& q, int arc, float bulge) {
        if (Accepts(p, q)) Count(m_db.AddNetLine(p, q, arc, bulge));
    }

    void Arc(const CFPoint& centre, float r, float start, float end) {
        // Told beforehand with the very points that the net will work with.
        const net_arc::Ends arc = net_arc::FromDirections(centre, r, start, end);
        if (Accepts(arc.start, arc.end)) Count(m_db.AddArc(centre, r, start, end));
    }

private:
    // The flags that AddNetLine leaves speak of the last of its nested calls, so what it will refuse is told
    // beforehand, by the rules it goes by.
    bool Accepts(const CFPoint& p, const CFPoint& q) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(q.x) || !std::isfinite(q.y))
            return Refuse(m_counts.notFinite);
        if (get_dist(p.x, p.y, q.x, q.y) <= static_cast<float>(g_cTvoProfile.m_nNetTolerance)) {
            // The net is asked all the same: it keeps a node where a line was refused.
            m_db.AddNetLine(p, q, 0, 0);
            return Refuse(m_counts.tooShort);
        }
        CGjNetNode* a = m_db.IsDuplicateNetNode(p.x, p.y);
        if (a && a == m_db.IsDuplicateNetNode(q.x, q.y)) return Refuse(m_counts.degenerate);
        return true;
    }
    bool Refuse(std::uint64_t& reason) {
        ++m_counts.offered;
        ++reason;
        return false;
    }
    void Count(CGjNetLine* result) {
        ++m_counts.offered;
        ++m_counts.taken;
        if (result && m_db.m_bLineExisted) ++m_counts.existed;
    }

    CGridDataBase& m_db;
    double m_scale;
    double m_flattest;
    DxfPieceCounts& m_counts;
};

// One side of a polyline. Net arcs run anticlockwise, so a clockwise bulge turns the side round.
void TakeSide(PieceTaker& taker, const ACAD_VERTEX& from, const ACAD_VERTEX& to) {
    auto angle = static_cast<float>(-2 * std::atan(from.m_dBulge) / 3.1415927 * 180);  // half the sweep, degrees
    if (taker.IsFlat(angle)) angle = 0;
    const CFPoint p = taker.Point(from.m_x, from.m_y), q = taker.Point(to.m_x, to.m_y);
    if (angle > 0)
        taker.Line(q, p, 1, -angle);
    else
        taker.Line(p, q, angle != 0, angle);
}

bool IsTaken(ACAD_Entity_Type type) {
    return type == kAcadLine || type == kAcadCircle || type == kAcadArc || type == kAcadPolyline;
}

void TakeEntity(PieceTaker& taker, const ACAD_ENTITY& entity, DxfImportReport& report) {
    switch (entity.GetType()) {
        case kAcadLine: {
            const auto& line = static_cast<const ACAD_LINE&>(entity);
            taker.Line(taker.Point(line.m_x1, line.m_y1), taker.Point(line.m_x2, line.m_y2), 0, 0);
            break;
        }
        case kAcadCircle: {  // two halves: a net line can't be a closed loop
            const auto& circle = static_cast<const ACAD_CIRCLE&>(entity);
            const CFPoint centre = taker.Point(circle.m_x, circle.m_y);
            const float r = taker.Scaled(circle.m_dRadius);
            taker.Arc(centre, r, 0, 180);
            taker.Arc(centre, r, 180, 360);
            break;
        }
        case kAcadArc: {
            const auto& arc = static_cast<const ACAD_ARC&>(entity);
            taker.Arc(taker.Point(arc.m_x, arc.m_y), taker.Scaled(arc.m_dRadius), static_cast<float>(arc.m_dStart),
                      static_cast<float>(arc.m_dEnd));
            break;
        }
        case kAcadPolyline: {
            const auto& line = static_cast<const ACAD_POLYLINE&>(entity);
            const auto corners = line.Vertices();
            for (std::size_t i = 0; i + 1 < corners.size(); ++i) TakeSide(taker, corners[i], corners[i + 1]);
            if (line.m_bClosed && corners.size() > 1 &&
                (corners.front().m_x != corners.back().m_x || corners.front().m_y != corners.back().m_y))
                ++report.closedNotMade;
            break;
        }
        default: break;
    }
}

}  // namespace

bool ImportDxf(const DxfImportOptions& options, CGridDataBase& db, CTvoFrameBase* frame, DxfImportReport& report, bool importAnyway) {
    Stopwatch watch;
    const std::unique_ptr<DXF> drawing(NewMemDxf(nullptr));
    drawing->Read_FileDxf_To_Mem(options.file);
    report.read = drawing->GetResult();
    report.header = drawing->GetHeader();
    report.readSeconds = watch.Lap();
    std::set<const DxfLayer*> wanted;
    for (const DxfLayer& layer : drawing->GetLayers()) {
        report.layers.push_back(layer.m_strName);
        if (options.layer.CompareNoCase(layer.m_strName.c_str()) == 0) wanted.insert(&layer);
    }
    report.layerFound = !wanted.empty();
    const bool readable = report.read.m_eOutcome == DxfOutcome::Ok || report.read.m_eOutcome == DxfOutcome::Truncated;
    if (!importAnyway && (!readable || !report.layerFound)) return false;

    if (options.bNew) {
        db.DestroyData();
        db.Initialize();
    } else {
        db.Start();
    }
    ImportDxfLayers(*drawing, wanted, options, db, frame, report);
    return true;
}

void ImportDxfLayers(const DXF& drawing, const std::set<const DxfLayer*>& layers, const DxfImportOptions& options, CGridDataBase& db,
                     CTvoFrameBase* frame, DxfImportReport& report) {
    Stopwatch watch;
    // Plates that exist are kept up to date; with none there is no plate work, now or at the end.
    const unsigned char plateType = db.QueryMainGouJianType();
    if (db.GetGouJianCount(plateType) > 0) db.PrepareDPC();

    PieceTaker taker(db, options, report.pieces);
    const auto& entities = drawing.GetEntities();
    const long long n = entities.GetSize();
    report.entities = static_cast<std::uint64_t>(n);
    const DxfLayer* lastLayer = nullptr;  // neighbours mostly share a layer
    bool lastWanted = false;
    for (int i = 0; i < n; ++i) {
        if (frame) frame->ShowProgress(static_cast<int>((i + 1LL) * 100 / n));
        const ACAD_ENTITY& entity = *entities[i];
        if (entity.m_pLayer != lastLayer) {
            lastLayer = entity.m_pLayer;
            lastWanted = layers.contains(lastLayer);
        }
        if (!lastWanted) continue;
        ++report.onLayer[entity.GetKind()];
        ++(IsTaken(entity.GetType()) ? report.taken : report.skipped)[entity.GetKind()];
        TakeEntity(taker, entity, report);
    }
    for (const DxfLayer* layer : layers) report.dropped += layer->m_nDropped;
    report.netSeconds = watch.Lap();

    if (db.GetGouJianCount(plateType) > 0) db.CompleteDPC();
    db.FinishIndex();
    db.SortBianHaoAll();
    report.finishSeconds = watch.Lap();
}

void _Import_DXF_To_Axe_Data(int bNew, CString file, CString layer, CGridDataBase* db, float, CTvoFrameBase* frame) {
    if (!db) return;
    DxfImportOptions options;
    options.bNew = bNew != 0;
    options.file = file;
    options.layer = layer;
    DxfImportReport report;
    ImportDxf(options, *db, frame, report, /*importAnyway=*/true);
}
