// How fast plates are formed, beside a library that builds polygons from noded lines (bench/peers/peer_polygonize.cpp),
// and what one edit costs in a small and in a big net. Every row is measured in a process of its own.
//
//   plates_bench                       both tables
//   plates_bench SPEC whole|walk       one workload of ours, as a CSV row (see measure.h): plates made and stored, or the
//                                      walks alone, whose host refuses every plate
//   plates_bench SPEC lines FILE       the lines of the net, four doubles each, for the peer
//   plates_bench N edit                a chord in the middle cell of a grid of N x N cells, added and deleted
#include <unistd.h>

#include <cmath>
#include <filesystem>

#include "bench/peers/measure.h"
#include "bench/peers/workload.h"
#include "tvobase.h"

namespace {

/// A host that refuses outer contours, or all plates. Merging is agreed, and a node without lines may go.
class BenchDataBase : public CGridDataBase {
public:
    bool m_bRefuseAll = false;
    int CanMergeNetLineTogetherWithGouJian(CGjNetLine*, CArray<CGouJianEx*>& a, CGjNetLine*, CArray<CGouJianEx*>& b, int,
                                           CGjNetNode*) override {
        return a.IsEmpty() && b.IsEmpty();
    }
    int IsIndependentNetNode(CGjNetNode* node) override {
        CStar* star = nullptr;
        return !m_mapStar.Lookup(node, star) || star->m_mapLine.IsEmpty();
    }
    CMianGouJian* InstanceMianGouJian(int type) override {
        return type == 1 || m_bRefuseAll ? nullptr : CGridDataBase::InstanceMianGouJian(type);
    }
};

CFPoint Point(double x, double y) { return CFPoint(static_cast<float>(x), static_cast<float>(y), 0); }

void Build(CGridDataBase& db, const std::string& spec) {
    g_cTvoProfile.m_bShowLineDirection = 0;
    db.Start();
    for (const wl::Piece& p : wl::make(spec)) db.AddNetLine(Point(p.x0, p.y0), Point(p.x1, p.y1), 0, 0);
    db.UndoInit();
}

int RunWhole(const std::string& spec, bool walkAlone) {
    BenchDataBase db;
    Build(db, spec);
    db.m_bRefuseAll = walkAlone;
    const double base = bench::status_mb("VmRSS:");
    int plates = 0;
    const bench::Result r = bench::measure(
        [&] {  // the plates of the run before are no part of this one
            db.Clear_GouJian(GJLX_MIAN);
            db.UndoInit();
            db.Start();
        },
        [&] {
            db.DoWeiBan();
            plates = db.GetGouJianCount(GJLX_MIAN);
        });
    char note[120];
    std::snprintf(note, sizeof note, "E=%d faces=%d", db.GetGouJianCount(GJLX_NET_LINE), plates);
    bench::row("C", walkAlone ? "tvobase.walk" : "tvobase.plates", spec, static_cast<std::size_t>(db.GetGouJianCount(GJLX_NET_LINE)), r,
               base, note);
    return 0;
}

int WriteLines(const std::string& spec, const char* path) {
    BenchDataBase db;
    Build(db, spec);
    std::FILE* f = std::fopen(path, "wb");
    if (!f) return 1;
    CArray<CGouJianEx*> lines;
    db.GetGouJianArray(GJLX_NET_LINE, &lines);
    for (CGouJianEx* obj : lines) {
        const auto* l = static_cast<CGjNetLine*>(obj);
        const double ends[4] = {l->m_fStartX, l->m_fStartY, l->m_fEndX, l->m_fEndY};
        std::fwrite(ends, sizeof ends, 1, f);
    }
    return std::fclose(f) == 0 ? 0 : 1;
}

// The bracket as a host puts it round an edit: PrepareDPC, the edit, CompleteDPC, then away with the nodes left without
// lines, of which only those at the edit are asked.
template <class F>
double TimeEdit(BenchDataBase& db, CGjNetNode* (&touched)[2], F edit) {
    const double before = bench::cpu();
    db.Start();
    db.PrepareDPC();
    edit();
    db.CompleteDPC();
    for (CGjNetNode* node : touched)
        if (node) db.DeleteNetNode(node);
    return bench::cpu() - before;
}

int RunEdit(int cells) {
    BenchDataBase db;
    Build(db, "grid:" + std::to_string(cells + 1));
    db.Start();
    db.DoWeiBan();
    db.UndoInit();
    const double x = 3000.0 * (cells / 2), y = x + 1500;
    std::vector<double> add, remove;
    for (int i = 0; i < 400; ++i) {
        CGjNetNode* touched[2] = {nullptr, nullptr};
        add.push_back(TimeEdit(db, touched, [&] { db.AddNetLine(Point(x, y), Point(x + 3000, y), 0, 0); }));
        touched[0] = db.IsDuplicateNetNode(static_cast<float>(x), static_cast<float>(y));
        touched[1] = db.IsDuplicateNetNode(static_cast<float>(x + 3000), static_cast<float>(y));
        CArray<CGouJianEx*> chord;
        if (db.GetNetLineOnNetNode(touched[0], touched[1], chord) != 1 || db.GetGouJianCount(GJLX_MIAN) != cells * cells + 1) return 1;
        remove.push_back(TimeEdit(db, touched, [&] { db.DeleteNetLine(chord); }));
        if (db.GetGouJianCount(GJLX_MIAN) != cells * cells) return 1;
    }
    std::sort(add.begin(), add.end());
    std::sort(remove.begin(), remove.end());
    std::printf("edit %.9g %.9g\n", add[add.size() / 2], remove[remove.size() / 2]);
    return 0;
}

// --- tables -------------------------------------------------------------------------------------------------

struct Measured {
    double seconds = 0;
    int lines = 0, faces = 0;
};

// Runs a program and reads its CSV row.
Measured Run(const std::string& command) {
    Measured m;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return m;
    char line[1024];
    while (std::fgets(line, sizeof line, pipe)) {
        const char* at = line;
        for (int column = 0; column < 6 && at; ++column) at = std::strchr(at, ',') ? std::strchr(at, ',') + 1 : nullptr;
        if (at) m.seconds = std::atof(at);
        if (const char* e = std::strstr(line, "E=")) m.lines = std::atoi(e + 2);
        if (const char* n = std::strstr(line, "faces=")) m.faces = std::atoi(n + 6);
    }
    pclose(pipe);
    return m;
}

std::string Command(const std::filesystem::path& program, const std::string& arguments) {
    std::string command;
    for (const char* part : {"'", program.c_str(), "' ", arguments.c_str()}) command.append(part);
    return command;
}

int Table(const std::filesystem::path& self) {
    const std::filesystem::path peer = self.parent_path() / "peer_polygonize",
                                file = std::filesystem::temp_directory_path() / ("plates_bench." + std::to_string(getpid()));
    struct Goal {
        const char* spec;
        double whole, walk;
    };
    const Goal goals[] = {{"grid:300", 0.5, 0.1}, {"rshort:100000", 0.1, 0.1}, {"rlong:1000", 0.5, 0.1}};
    std::printf("| net | lines | plates | formed and stored s | / peer | goal | walk s | / peer | goal | peer s | its faces |\n");
    std::printf("|---|---|---|---|---|---|---|---|---|---|---|\n");
    for (const Goal& goal : goals) {
        const std::string spec = goal.spec;
        Measured other;
        if (std::filesystem::exists(peer) && std::system(Command(self, spec + " lines " + file.string()).c_str()) == 0)
            other = Run(Command(peer, file.string() + " " + spec));
        std::filesystem::remove(file);
        const Measured whole = Run(Command(self, spec + " whole")), walk = Run(Command(self, spec + " walk"));
        const double unit = other.seconds > 0 ? other.seconds : std::nan("");
        std::printf("| %s | %d | %d | %.4f | %.3f | %.1f | %.4f | %.3f | %.1f | %.4f | %d |\n", goal.spec, whole.lines, whole.faces,
                    whole.seconds, whole.seconds / unit, goal.whole, walk.seconds, walk.seconds / unit, goal.walk, other.seconds, other.faces);
        std::fflush(stdout);
    }
    std::printf("\n| one edit, bracket and all | 20 x 20 us | 300 x 300 us | ratio | goal |\n|---|---|---|---|---|\n");
    double us[2][2] = {};
    for (int i = 0; i < 2; ++i) {
        FILE* pipe = popen(Command(self, i == 0 ? "20 edit" : "300 edit").c_str(), "r");
        if (!pipe) continue;
        double add = 0, remove = 0;
        if (std::fscanf(pipe, "edit %lf %lf", &add, &remove) == 2) us[0][i] = add * 1e6, us[1][i] = remove * 1e6;
        pclose(pipe);
    }
    const char* const names[] = {"a chord added", "and deleted"};
    for (int i = 0; i < 2; ++i)
        std::printf("| %s | %.1f | %.1f | %.2f | 1.5, under 1000 us |\n", names[i], us[i][0], us[i][1], us[i][1] / us[i][0]);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 2 ? argv[2] : "";
    if (argc == 1) return Table(std::filesystem::read_symlink("/proc/self/exe"));
    if (mode == "edit") return RunEdit(std::atoi(argv[1]));
    if (mode == "lines" && argc > 3) return WriteLines(argv[1], argv[3]);
    if (mode == "whole" || mode == "walk") return RunWhole(argv[1], mode == "walk");
    std::fprintf(stderr, "plates_bench [SPEC whole|walk | SPEC lines FILE | N edit]\n");
    return 2;
}
