#include "host/import_job.h"

#include <algorithm>
#include <charconv>

#include "host/drawing.h"
#include "host/failure.h"
#include "host/file_output.h"
#include "host/host_data_base.h"
#include "host/net_walk.h"
#include "host/progress.h"
#include "host/stopwatch.h"

namespace {

// Drawings are full of bulges that are nothing but rounding. The centre of such an arc is farther off than floats can
// tell its ends apart, and it would come out as a circle across the whole plan.
constexpr double kFlattestSide = 1e-4;  // degrees of half the sweep: 0.02 mm beside a chord of 40 m

void CountNet(CGridDataBase& db, ImportOutcome& outcome) {
    const auto lines = NetLines(db);
    outcome.nodes = NetNodes(db).size();
    outcome.lines = lines.size();
    outcome.arcs = static_cast<std::size_t>(
        std::count_if(lines.begin(), lines.end(), [](const CGjNetLine* line) { return line->m_nArc == 1; }));
}

/// The names, those that differ in ASCII case only once.
std::string Joined(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const CString name(names[i]);
        const auto same = [&](const std::string& other) { return name.CompareNoCase(other.c_str()) == 0; };
        if (std::any_of(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(i), same)) continue;
        if (!text.empty()) text += ", ";
        text += PlainText(names[i]);
    }
    return text.empty() ? "none" : text;
}

}  // namespace

ImportOutcome RunImportJob(const ImportJob& job, CGridDataBase& db) {
    RequireReadable(job.file);
    ImportOutcome outcome;
    outcome.job = job;
    DxfImportReport& report = outcome.report;
    DxfImportOptions options;
    options.file = CString(job.file);
    options.layer = CString(job.layer);
    options.scale = job.scale.value_or(1.0);
    options.flattest = kFlattestSide;
    CTerminalProgress progress("importing");
    const bool imported = ImportDxf(options, db, &progress, report);
    progress.Finish();
    CheckReading(job.file, report.read);
    if (!imported)
        throw DataFailure(job.file + ": there is no layer '" + job.layer + "'; its layers: " + Joined(report.layers));
    outcome.stages = {{"read", report.readSeconds}, {"net", report.netSeconds}, {"number", report.finishSeconds}};
    CountNet(db, outcome);
    return outcome;
}

void DeleteNodesWithoutLines(CGridDataBase& db, ImportOutcome& outcome) {
    Stopwatch watch;
    const std::size_t before = outcome.nodes;
    db.DeleteIndependentNetNode();
    db.SortBianHaoAll();
    CountNet(db, outcome);
    outcome.nodesDeleted = before - outcome.nodes;
    outcome.stages.push_back({"clean", watch.Lap()});
}

void NoteNet(CTvoHostDataBase& db, ImportOutcome& outcome) {
    CountNet(db, outcome);
    if (db.PlatesFollow()) outcome.plates = PlateFigures{NetPlates(db).size(), PlateArea(db), DanglingLines(db).size()};
}

void FormPlates(CTvoHostDataBase& db, ImportOutcome& outcome) {
    Stopwatch watch;
    db.FormPlates();
    db.SortBianHao(db.QueryMainGouJianType());
    outcome.plates = PlateFigures{NetPlates(db).size(), PlateArea(db), DanglingLines(db).size()};
    outcome.stages.push_back({"plates", watch.Lap()});
}

std::string CheckScale(const std::string& text) {
    double scale = 0;
    const auto [last, error] = std::from_chars(text.data(), text.data() + text.size(), scale);
    const bool good = error == std::errc() && last == text.data() + text.size() && scale >= 1e-9 && scale <= 1e9;
    return good ? "" : "'" + text + "' is no scale, a number from 1e-9 to 1e9";
}
