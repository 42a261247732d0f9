// How fast models are saved and opened. Nothing else does just that; the goals stand in the last column.
//
//   model_bench                 the table, each figure from a process of its own
//   model_bench save N PLATES   N lines and their nodes; PLATES 1: and their plates
//   model_bench open N PLATES   the model that was saved
//
// Seconds are processor time. What of it the kernel takes to clear fresh memory stands apart: in a virtual machine
// that is as slow as the machine around it.
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/peers/measure.h"
#include "host/models/model_build.h"
#include "host/models/model_host.h"
#include "host/models/model_writer.h"
#include "tvobase.h"

namespace {

namespace fs = std::filesystem;

CFPoint Point(int x, int y) { return CFPoint(static_cast<float>(x), static_cast<float>(y), 0); }

/// A plan of `lines` lines about square: axes 3 m apart, every tenth line across a field an arc.
void BuildPlan(CGridDataBase& db, int lines, bool plates) {
    int side = 1;
    while (2 * side * (side + 1) < lines) ++side;
    db.m_bAutoBreak = 0;
    int left = lines;
    for (int y = 0; y <= side && left > 0; ++y)
        for (int x = 0; x <= side && left > 0; ++x) {
            if (x < side && left-- > 0)
                db.AddNetLine(Point(3000 * x, 3000 * y), Point(3000 * (x + 1), 3000 * y), x % 10 == 9, x % 10 == 9 ? -20.0f : 0.0f);
            if (y < side && left-- > 0) db.AddNetLine(Point(3000 * x, 3000 * y), Point(3000 * x, 3000 * (y + 1)), 0, 0);
        }
    db.m_bAutoBreak = 1;
    if (plates) db.DoWeiBan();
    db.UndoInit();
}

std::string Model(int lines) {
    std::string name = "model_bench_";
    name.append(std::to_string(lines)).append(".tvo");
    return (fs::temp_directory_path() / name).string();
}

struct Figures {
    double seconds = 0, kernel = 0, megabytes = 0;
    int nodes = 0, lines = 0, plates = 0;
};

int RunSave(int lines, bool plates) {
    CGridDataBase db;
    BuildPlan(db, lines, plates);
    SavedModel saved;
    const bench::Result r = bench::measure([] {}, [&] { saved = SaveModel(Model(lines), db, ModelHost(), /*sync=*/false); });
    std::printf("%.6f 0 %.3f %zu %zu %zu\n", r.cpu_med, static_cast<double>(saved.bytes) / 1e6, saved.nodes, saved.lines, saved.plates);
    return 0;
}

double KernelSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_stime.tv_sec) + 1e-6 * static_cast<double>(usage.ru_stime.tv_usec);
}

// Once a process: a second time it would find memory that the system has cleared for it already.
int RunOpen(int lines) {
    CGridDataBase db;
    const double before = bench::cpu(), kernelBefore = KernelSeconds();
    const BuiltModel built = OpenModel(Model(lines), db, ModelHost());
    const double seconds = bench::cpu() - before, kernel = KernelSeconds() - kernelBefore;
    std::printf("%.6f %.6f %.3f %zu %zu %zu\n", seconds, kernel, static_cast<double>(fs::file_size(Model(lines))) / 1e6, built.nodes, built.lines, built.plates);
    std::fflush(stdout);
    std::_Exit(0);  // nobody wants to wait for the freeing
}

Figures Run(const fs::path& self, const char* what, int lines, bool plates) {
    Figures f;
    const std::string number = std::to_string(lines);
    std::string command;
    for (const char* part : {"'", self.c_str(), "' ", what, " ", number.c_str(), plates ? " 1" : " 0"}) command.append(part);
    if (FILE* pipe = popen(command.c_str(), "r")) {
        if (std::fscanf(pipe, "%lf %lf %lf %d %d %d", &f.seconds, &f.kernel, &f.megabytes, &f.nodes, &f.lines, &f.plates) != 6) f = {};
        pclose(pipe);
    }
    return f;
}

/// The median of five processes.
Figures RunFive(const fs::path& self, const char* what, int lines, bool plates) {
    std::vector<Figures> runs;
    for (int i = 0; i < 5; ++i) runs.push_back(Run(self, what, lines, plates));
    std::sort(runs.begin(), runs.end(), [](const Figures& a, const Figures& b) { return a.seconds < b.seconds; });
    return runs[2];
}

int Table(const fs::path& self) {
    std::printf("| lines | nodes | plates | MB | save s | MB/s (goal 200) | open s (goal 4) | kernel s | us a line without it | to 100000 (goal 1.3) |\n|---|---|---|---|---|---|---|---|---|---|\n");
    for (const bool plates : {false, true}) {
        double perLine[2] = {};
        int row = 0;
        for (const int lines : {100000, 1000000}) {
            const Figures save = Run(self, "save", lines, plates), open = RunFive(self, "open", lines, plates);
            perLine[row] = (open.seconds - open.kernel) * 1e6 / lines;
            std::printf("| %d | %d | %d | %.1f | %.3f | %.0f | %.3f | %.3f | %.2f | %.2f |\n", save.lines, save.nodes, save.plates, save.megabytes,
                        save.seconds, save.megabytes / save.seconds, open.seconds, open.kernel, perLine[row], perLine[row] / perLine[0]);
            std::fflush(stdout);
            ++row;
            fs::remove(Model(lines));
            fs::remove(Model(lines) + "~");
        }
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    g_cTvoProfile.m_bShowLineDirection = 0;
    if (argc == 4) {
        const int lines = std::atoi(argv[2]);
        return std::string(argv[1]) == "save" ? RunSave(lines, *argv[3] == '1') : RunOpen(lines);
    }
    return Table(fs::read_symlink("/proc/self/exe"));
}
