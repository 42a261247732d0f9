// Reading drawings: speed and memory. Usage: dxf_bench [FILE.dxf...]
// Without files it writes drawings of its own to the temporary folder: R12 with lines, arcs and polylines,
// R2010 with circles and texts too, 10 000 to 1 000 000 entities. Each is read in a process of its own, so
// that its memory, counted above what the program takes before, is its own.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "platform/dxf/dxf.h"

namespace {

struct Measure {
    double seconds = 0;
    long grownKb = 0;
    int entities = 0;
    bool ok = false;
};

long StatusKb(const char* key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(key)) return std::strtol(line.c_str() + std::strlen(key), nullptr, 10);
    return 0;
}

/// Processor time, so that other work on the machine doesn't count.
double Seconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

/// The best of several readings, and the peak of memory during the first.
Measure ReadRepeatedly(const char* path) {
    Measure m;
    m.seconds = 1e9;
    const double until = Seconds() + 2;
    for (int run = 0; run < 3 || (run < 200 && Seconds() < until); ++run) {
        const long before = StatusKb("VmRSS:");
        DXF drawing;
        const double start = Seconds();
        m.ok = drawing.Read_FileDxf_To_Mem(path) == 1;
        m.seconds = std::min(m.seconds, Seconds() - start);
        m.entities = drawing.GetEntityCount();
        if (run == 0) m.grownKb = StatusKb("VmHWM:") - before;
    }
    return m;
}

bool InChild(const char* path, Measure& m) {
    int ends[2];
    if (pipe(ends) != 0) return false;
    const pid_t child = fork();
    if (child == 0) {
        const Measure mine = ReadRepeatedly(path);
        const bool sent = write(ends[1], &mine, sizeof mine) == static_cast<ssize_t>(sizeof mine);
        _exit(sent ? 0 : 1);
    }
    close(ends[1]);
    const bool got = child > 0 && read(ends[0], &m, sizeof m) == static_cast<ssize_t>(sizeof m);
    close(ends[0]);
    int status = 0;
    if (child > 0) waitpid(child, &status, 0);
    return got;
}

/// Writes mixed entities in the manner of R12 (60 % lines, 20 % arcs, 20 % polylines of five corners) or of
/// R2010, with handles and class names (40 % lines, 15 % arcs, 20 % polylines, 10 % circles, 15 % texts).
class DrawingWriter {
public:
    DrawingWriter(const std::string& path, bool r12) : m_file(std::fopen(path.c_str(), "w")), m_r12(r12) {}
    ~DrawingWriter() {
        if (m_file) std::fclose(m_file);
    }
    DrawingWriter(const DrawingWriter&) = delete;
    DrawingWriter& operator=(const DrawingWriter&) = delete;

    bool Write(int entities) {
        if (!m_file) return false;
        std::fprintf(m_file, "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\n%s\n  0\nENDSEC\n",
                     m_r12 ? "AC1009" : "AC1024");
        std::fprintf(m_file, "  0\nSECTION\n  2\nENTITIES\n");
        for (int i = 0; i < entities; ++i) {
            const auto dice = m_random() % 100;
            if (m_r12) dice < 60 ? Line() : dice < 80 ? Arc() : Polyline();
            else
                dice < 40   ? Line()
                : dice < 55 ? Arc()
                : dice < 75 ? Polyline()
                : dice < 85 ? Circle()
                            : Text(i);
        }
        return std::fprintf(m_file, "  0\nENDSEC\n  0\nEOF\n") > 0;
    }

private:
    double Within(double low, double high) {
        return low + (high - low) * static_cast<double>(m_random()) / 4294967295.0;
    }
    void Real(int code, double v) { std::fprintf(m_file, m_r12 ? "%3d\n%.6f\n" : "%3d\n%.12g\n", code, v); }
    void Point(int code, double x, double y) {
        Real(code, x);
        Real(code + 10, y);
        std::fprintf(m_file, "%3d\n0.0\n", code + 20);
    }
    void Head(const char* kind) {
        static const char* const kLayers[] = {"AXIS", "WALL", "COLUMN", "BEAM", "TEXT", "DIM", "0", "HATCH"};
        m_layer = kLayers[m_random() % 8];
        m_x = Within(0, 500000);
        m_y = Within(0, 500000);
        if (m_r12) std::fprintf(m_file, "  0\n%s\n  8\n%s\n", kind, m_layer);
        else
            std::fprintf(m_file, "  0\n%s\n  5\n%X\n330\n1F\n100\nAcDbEntity\n  8\n%s\n100\nAcDb%s\n", kind,
                         ++m_handle, m_layer, kind);
    }
    void Line() {
        Head("LINE");
        Point(10, m_x, m_y);
        Point(11, m_x + Within(-4000, 4000), m_y + Within(-4000, 4000));
    }
    void Circle() {
        Head("CIRCLE");
        Point(10, m_x, m_y);
        Real(40, Within(100, 3000));
    }
    void Arc() {
        Head("ARC");
        Point(10, m_x, m_y);
        Real(40, Within(500, 5000));
        Real(50, Within(0, 360));
        Real(51, Within(0, 360));
    }
    void Text(int i) {
        Head("TEXT");
        Point(10, m_x, m_y);
        std::fprintf(m_file, " 40\n350.0\n  1\nKL-%d(3) 300x%d\n 50\n0.0\n", i, 500 + i % 300);
    }
    void Polyline() {
        Head(m_r12 ? "POLYLINE" : "LWPOLYLINE");
        std::fprintf(m_file,
                     m_r12 ? " 66\n1\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 70\n1\n" : " 90\n5\n 70\n1\n 43\n0.0\n");
        for (int corner = 0; corner < 5; ++corner) {
            if (m_r12) std::fprintf(m_file, "  0\nVERTEX\n  8\n%s\n", m_layer);
            Real(10, m_x + Within(0, 9000));
            Real(20, m_y + Within(0, 9000));
            if (m_r12) std::fprintf(m_file, " 30\n0.0\n");
            if (m_r12 || corner == 2) Real(42, corner == 2 ? Within(-1, 1) : 0.0);
        }
        if (m_r12) std::fprintf(m_file, "  0\nSEQEND\n  8\n%s\n", m_layer);
    }

    std::FILE* m_file;
    bool m_r12;
    std::mt19937 m_random{777};
    const char* m_layer = "";
    double m_x = 0, m_y = 0;
    unsigned m_handle = 0x100;
};

bool Measured(const std::string& path) {
    struct stat info {};
    Measure m;
    if (stat(path.c_str(), &info) != 0 || !InChild(path.c_str(), m)) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    const double mb = static_cast<double>(info.st_size) / 1e6;
    const double grown = static_cast<double>(m.grownKb) * 1024 / 1e6;
    std::printf("| %s%s | %.1f | %d | %.2f | %.0f | %.1f | %.2f |\n",
                std::filesystem::path(path).filename().c_str(), m.ok ? "" : " (not whole)", mb, m.entities,
                m.seconds * 1e3, mb / m.seconds, grown, grown / mb);
    std::fflush(stdout);
    return true;
}

bool MeasuredOwn(bool r12, int entities) {
    const std::string name = (r12 ? "r12_" : "r2010_") + std::to_string(entities) + ".dxf";
    const std::string path = (std::filesystem::temp_directory_path() / ("tvo_bench_" + name)).string();
    const bool written = DrawingWriter(path, r12).Write(entities);
    const bool done = written && Measured(path);
    std::filesystem::remove(path);
    return done;
}

}  // namespace

int main(int argc, char** argv) {
    std::printf(
        "| file | MB | entities | CPU ms | MB/s | memory MB | memory / file "
        "|\n|---|---|---|---|---|---|---|\n");
    std::fflush(stdout);  // before the first child inherits what is not written
    bool done = true;
    for (int i = 1; i < argc; ++i) done = Measured(argv[i]) && done;
    if (argc < 2)
        for (const bool r12 : {true, false})
            for (const int entities : {10000, 100000, 1000000}) done = MeasuredOwn(r12, entities) && done;
    return done ? 0 : 1;
}
