// How fast the net is built, beside the nearest peer: a constrained triangulation that takes one segment at a
// time and breaks crossings (bench/peers/peer_cdt.cpp). Both run in turn, in processes of their own.
//
//   net_bench              the table
//   net_bench SPEC         one workload of ours, as a CSV row (see measure.h)
#include <cmath>
#include <filesystem>
#include <memory>

#include "bench/peers/measure.h"
#include "bench/peers/workload.h"
#include "tvobase.h"

namespace {

/// The net as a host has it: merging agreed where nothing rides on lines, no direction arrows, undo on.
class BenchDataBase : public CGridDataBase {
public:
    int CanMergeNetLineTogetherWithGouJian(CGjNetLine*, CArray<CGouJianEx*>& a, CGjNetLine*, CArray<CGouJianEx*>& b, int,
                                           CGjNetNode*) override {
        return a.IsEmpty() && b.IsEmpty();
    }
};

CFPoint Point(double x, double y) { return CFPoint(static_cast<float>(x), static_cast<float>(y), 0); }

void Build(CGridDataBase& db, const std::vector<wl::Piece>& pieces) {
    db.Start();
    for (const wl::Piece& p : pieces) {
        if (p.arc)
            db.AddArc(Point(p.x0, p.y0), Point(p.x1, p.y1), Point(p.xm, p.ym));
        else
            db.AddNetLine(Point(p.x0, p.y0), Point(p.x1, p.y1), 0, 0);
    }
}

int RunOne(const std::string& spec) {
    g_cTvoProfile.m_bShowLineDirection = 0;
    const auto pieces = wl::make(spec);
    const double base = bench::status_mb("VmRSS:");
    std::unique_ptr<BenchDataBase> db;
    double firstPeak = 0;
    const bench::Result r = bench::measure([&] { db.reset(); db = std::make_unique<BenchDataBase>(); },
                                           [&] {
                                               Build(*db, pieces);
                                               if (firstPeak == 0) firstPeak = bench::status_mb("VmHWM:");
                                           });
    char note[160];
    std::snprintf(note, sizeof note, "V=%d E=%d bytes/E=%.0f", db->GetGouJianCount(GJLX_NET_NODE),
                  db->GetGouJianCount(GJLX_NET_LINE),
                  (firstPeak - base) * 1048576 / std::max(1, db->GetGouJianCount(GJLX_NET_LINE)));
    bench::row("A", "tvobase", spec, pieces.size(), r, base, note);
    return 0;
}

struct Measured {
    double seconds = 0, bytesPerLine = 0;
    int lines = 0;
};

// Runs a program and reads its CSV row.
Measured Run(const std::string& command) {
    Measured m;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return m;
    char line[1024];
    while (std::fgets(line, sizeof line, pipe)) {
        std::string field;
        int column = 0;
        for (const char* c = line; *c; ++c) {
            if (*c != ',' && *c != '\n') {
                field += *c;
                continue;
            }
            if (column == 6) m.seconds = std::atof(field.c_str());
            ++column;
            field.clear();
        }
        if (const char* e = std::strstr(line, " E=")) m.lines = std::atoi(e + 3);
        if (const char* b = std::strstr(line, "bytes/E=")) m.bytesPerLine = std::atof(b + 8);
    }
    pclose(pipe);
    return m;
}

std::string Command(const std::filesystem::path& program, const char* spec, const char* mode = "") {
    std::string command;
    for (const char* part : {"'", program.c_str(), "' ", spec, " ", mode}) command.append(part);
    return command;
}

double Exponent(const Measured& small, const Measured& large) {
    return std::log(large.seconds / small.seconds) / std::log(static_cast<double>(large.lines) / small.lines);
}

int Table(const std::filesystem::path& self) {
    const std::filesystem::path peer = self.parent_path() / "peer_cdt";
    const bool withPeer = std::filesystem::exists(peer);
    struct Goal { const char* spec; double ratio; };
    const Goal goals[] = {{"grid:100", 2.5},      {"grid:300", 2.5},      {"rshort:10000", 1.0},
                          {"rshort:100000", 0.3}, {"mshort:100000", 1.0}, {"rlong:1000", 1.0}};
    std::printf("| workload | finished lines | net s | us a line | bytes a line | peer s | net / peer | goal |\n");
    std::printf("|---|---|---|---|---|---|---|---|\n");
    for (const Goal& goal : goals) {
        const Measured net = Run(Command(self, goal.spec));
        const Measured other = withPeer ? Run(Command(peer, goal.spec, "float")) : Measured();
        std::printf("| %s | %d | %.3f | %.2f | %.0f | ", goal.spec, net.lines, net.seconds, net.seconds * 1e6 / net.lines, net.bytesPerLine);
        if (withPeer && other.seconds > 0)
            std::printf("%.3f | %.2f | %.1f |\n", other.seconds, net.seconds / other.seconds, goal.ratio);
        else
            std::printf("- | - | %.1f |\n", goal.ratio);
        std::fflush(stdout);
    }
    std::printf("\nTime grows as lines^x:\n\n| workload | from lines | to lines | x |\n|---|---|---|---|\n");
    const char* const series[][2] = {{"grid:100", "grid:388"}, {"mshort:10000", "mshort:100000"}};
    for (const auto& s : series) {
        const Measured small = Run(Command(self, s[0])), large = Run(Command(self, s[1]));
        std::printf("| %s | %d | %d | %.2f |\n", s[1], small.lines, large.lines, Exponent(small, large));
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1) return RunOne(argv[1]);
    return Table(std::filesystem::read_symlink("/proc/self/exe"));
}
