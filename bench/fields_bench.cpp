// Fields of a million triangles: isolines, cloud, densifying, asking for values. Processor time, the least of
// several runs; peak memory of a process of its own.
#include <sys/resource.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "fields/chang.h"
#include "fields/gj_chang.h"
#include "fields/mesh_densify.h"
#include "geometry/fcoor.h"
#include "model/draw_graph.h"
#include "platform/canvas/dc.h"

namespace {

constexpr int kSide = 708;  // squares a side, two triangles each: 1 002 528

enum class Order { kRows, kShuffled };

float Deflection(double x, double y) {
    return static_cast<float>(std::sin(3.1415926 * x / 60) * std::sin(3.1415926 * y / 60) +
                              0.2 * std::sin(x) * std::cos(0.7 * y));
}

/// A field of 60 m by 60 m. Shuffled: triangles and node numbers in random order, and the mesh much finer at
/// one corner.
void Fill(CChang& field, Order order) {
    const int n = kSide + 1;
    std::vector<int> number(static_cast<std::size_t>(n) * static_cast<std::size_t>(n));
    for (std::size_t i = 0; i < number.size(); ++i) number[i] = static_cast<int>(i) + 1;
    std::mt19937 random(7);
    if (order == Order::kShuffled) std::shuffle(number.begin(), number.end(), random);
    field.m_arrNode.SetSize(static_cast<int>(number.size()));
    const auto place = [&](int i) {
        const double t = static_cast<double>(i) / kSide;
        return 60 * (order == Order::kShuffled ? t * t * t : t);
    };
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            const int at = number[static_cast<std::size_t>(j * n + i)];
            CChangNode& node = field.m_arrNode[at - 1];
            node.m_nNumber = at;
            node.m_fX = static_cast<float>(place(i));
            node.m_fY = static_cast<float>(place(j));
            node.m_aValue[0] = Deflection(place(i), place(j));
        }
    std::vector<CChangTri> triangles;
    for (int j = 0; j < kSide; ++j)
        for (int i = 0; i < kSide; ++i) {
            const auto at = [&](int di, int dj) {
                return number[static_cast<std::size_t>((j + dj) * n + i + di)];
            };
            triangles.push_back({{at(0, 0), at(1, 0), at(1, 1)}});
            triangles.push_back({{at(0, 0), at(1, 1), at(0, 1)}});
        }
    if (order == Order::kShuffled) std::shuffle(triangles.begin(), triangles.end(), random);
    field.m_arrTri.Reserve(static_cast<int>(triangles.size()));
    for (const CChangTri& tri : triangles) field.m_arrTri.Add(tri);
}

double ProcessorSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

double Least(int runs, const std::function<void()>& work) {
    double best = 1e9;
    for (int run = 0; run < runs; ++run) {
        const double start = ProcessorSeconds();
        work();
        best = std::min(best, ProcessorSeconds() - start);
    }
    return best;
}

double KernelSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_stime.tv_sec) + static_cast<double>(usage.ru_stime.tv_usec) * 1e-6;
}

long PeakKb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

/// What the process holds now: filling the field has peaked higher.
long ResidentKb() {
    long pages = 0, resident = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(file);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

void Row(const char* what, double value, const char* unit, const char* goal) {
    std::printf("| %-58s | %8.3f %-2s | %-6s |\n", what, value, unit, goal);
    std::fflush(stdout);
}

void Measure(Order order) {
    const std::string name = order == Order::kRows ? ", mesh by rows" : ", shuffled and graded";
    CChang field;
    Fill(field, order);
    CGjChang component;
    component.m_pChang = &field;
    component.OnCalcParameters();
    Row(("isolines of 20 levels" + name).c_str(),
        Least(3,
              [&] {
                  CDrawGraph graph;
                  component.GenerateIsolineGraph(&graph);
              }),
        "s", "0.5");
    CDC dc(std::make_shared<CSurface>(1920, 1080)), memory;
    CFCoor coor;
    coor.Init(CFPoint(0, 60000, 0), 1080.0f / 60000, 1);
    int width, height;
    Row(("cloud of 1080 x 1080" + name).c_str(),
        Least(3, [&] { field.DrawBaseMap(&dc, &memory, &coor, width, height, 1000); }), "s", "0.5");
    coor.SetScale(1);
    Row(("cloud of 2048 x 2048" + name).c_str(),
        Least(3, [&] { field.DrawBaseMap(&dc, &memory, &coor, width, height, 1000); }), "s", "0.5");
    Row(("index built" + name).c_str(), Least(3, [&] { field.CreateQuadTree(); }), "s", "");
    std::mt19937 random(3);
    std::uniform_real_distribution<float> anywhere(0, 60);
    constexpr int kPoints = 1000000;
    std::vector<CFPoint> points;
    for (int i = 0; i < kPoints; ++i) points.emplace_back(anywhere(random), anywhere(random), 0.0f);
    double sum = 0;
    Row(("value at a random point" + name).c_str(),
        Least(3,
              [&] {
                  for (const CFPoint& p : points) sum += static_cast<double>(field.Get_Value(p.x, p.y));
              }) *
            1e6 / kPoints,
        "us", "1");
    if (!std::isfinite(sum)) std::printf("values are not finite\n");
}

/// Takes more memory than densifying does, once, in a process of its own: a virtual machine's first sight of a page costs
/// many times what clearing it costs from then on. Large pages, as those that arrays of this size get.
void WarmMemory() {
    if (const pid_t child = fork(); child != 0) {
        waitpid(child, nullptr, 0);
        return;
    }
    constexpr std::size_t kBytes = std::size_t{1} << 30;
    void* const memory = std::aligned_alloc(std::size_t{2} << 20, kBytes);
    if (memory) {
        madvise(memory, kBytes, MADV_HUGEPAGE);
        std::fill_n(static_cast<volatile char*>(memory), kBytes, '\1');
    }
    _exit(0);
}

void MeasureDensify(Order order) {
    const std::string name = order == Order::kRows ? ", mesh by rows" : ", shuffled and graded";
    std::fflush(stdout);
    if (const pid_t child = fork(); child != 0) {
        waitpid(child, nullptr, 0);
        return;
    }
    CChang field;
    Fill(field, order);
    const long before = ResidentKb();
    CChang fine;
    const double kernelBefore = KernelSeconds();
    const double seconds = Least(1, [&] { wange_ge_jia_mi(&field, &fine); });
    const double kernel = KernelSeconds() - kernelBefore;
    const double megabytes = static_cast<double>(PeakKb() - before) / 1024;
    Row(("densify to four million" + name).c_str(), seconds, "s", "1");
    Row(("of that the kernel, clearing memory" + name).c_str(), kernel, "s", "");
    Row(("its memory" + name).c_str(), megabytes, "MB", "500");
    _exit(0);
}

}  // namespace

int main() {
    WarmMemory();
    MeasureDensify(Order::kRows);
    MeasureDensify(Order::kShuffled);
    Measure(Order::kRows);
    Measure(Order::kShuffled);
}
