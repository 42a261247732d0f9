// Writing drawings: speed and memory, beside ezdxf. Usage: dxf_write_bench [LINES]
// A model of so many lines (1 000 000) is written in both versions; then ezdxf, if this machine's Python has
// it, makes and writes a drawing of the same lines in a process of its own. Processor time, the system's part
// included: the median of three exports, one run of ezdxf without its start. Memory is the peak of the first
// export beyond the model.
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "geometry/fcoor.h"
#include "model/dxf_export.h"
#include "model/tvo_data_base.h"

namespace {

constexpr int kRuns = 3;

double Seconds(const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
}

/// Processor time of this process, or of its children that have ended; both with the system's part.
double Cpu(int who) {
    rusage usage{};
    getrusage(who, &usage);
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

double StatusMb(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(key)) return std::strtod(line.c_str() + key.size(), nullptr) * 1024 / 1e6;
    return 0;
}

double Median(std::array<double, kRuns> times) {
    std::sort(times.begin(), times.end());
    return times[kRuns / 2];
}

struct Measure {
    double seconds = 0, memoryMb = 0, fileMb = 0;
};

Measure Export(CTvoDataBase& db, const std::string& path, DxfVersion version) {
    Measure m;
    std::array<double, kRuns> times;
    for (int run = 0; run < kRuns; ++run) {
        std::ofstream("/proc/self/clear_refs") << "5";  // the peak of memory starts anew
        const double before = StatusMb("VmRSS:"), start = Cpu(RUSAGE_SELF);
        CFCoor coor;
        if (!ExportDxf(db, path, version, coor).written) std::exit(1);
        times[static_cast<std::size_t>(run)] = Cpu(RUSAGE_SELF) - start;
        if (run == 0) m.memoryMb = StatusMb("VmHWM:") - before;
    }
    m.seconds = Median(times);
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) m.fileMb = static_cast<double>(status.st_size) / 1e6;
    return m;
}

/// The same lines by ezdxf; negative seconds when there is none. A starting Python is not counted.
Measure Peer(const std::string& python, const std::string& lines, const std::string& path,
             const char* version) {
    const auto run = [&](const std::string& code) {
        const double start = Cpu(RUSAGE_CHILDREN);
        const int status = std::system((python + " -c '" + code + "' 2>/dev/null").c_str());
        return status == 0 ? Cpu(RUSAGE_CHILDREN) - start : -1;
    };
    const std::string read =
        "import ezdxf,array; a=array.array(\"f\"); a.frombytes(open(\"" + lines + "\",\"rb\").read()); ";
    const std::string write =
        "d=ezdxf.new(\"" + std::string(version) +
        "\"); m=d.modelspace(); "
        "[m.add_line((a[i],a[i+1]),(a[i+2],a[i+3]),{\"color\":2}) for i in range(0,len(a),4)]; d.saveas(\"" +
        path + "\")";
    Measure m;
    const double start = run(read);
    m.seconds = start < 0 ? -1 : run(read + write) - start;
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) m.fileMb = static_cast<double>(status.st_size) / 1e6;
    return m;
}

std::string PythonWithEzdxf() {
    for (const std::string python : {"python3", "/usr/bin/python3"})
        if (std::system((python + " -c 'import ezdxf' 2>/dev/null").c_str()) == 0) return python;
    return "";
}

}  // namespace

int main(int argc, char** argv) {
    const int lines = argc > 1 ? std::atoi(argv[1]) : 1000000;
    const std::string folder = std::filesystem::temp_directory_path() / "tvo_dxf_write_bench";
    std::filesystem::create_directories(folder);
    const std::string path = folder + "/out.dxf", numbers = folder + "/lines.bin";
    std::mt19937 rng(20240607);
    std::uniform_real_distribution<float> place(0, 500000), length(-4000, 4000);
    CTvoDataBase db;
    {
        std::ofstream out(numbers, std::ios::binary);
        for (int i = 0; i < lines; ++i) {
            const float x = place(rng), y = place(rng), ends[] = {x, y, x + length(rng), y + length(rng)};
            out.write(reinterpret_cast<const char*>(ends), sizeof ends);
            db.DrawLine(ends[0], ends[1], ends[2], ends[3], 1, RGB(255, 255, 0), 0, 0, 1);
        }
    }
    db.FinishIndex();
    const std::string python = PythonWithEzdxf();
    std::printf(
        "| version | lines | s | MB beyond the model | file MB | ezdxf s | its file MB | ezdxf / tvo "
        "|\n|---|---|---|---|---|---|---|---|\n");
    for (const auto& [name, version] :
         {std::pair("R12", DxfVersion::R12), std::pair("R2000", DxfVersion::R2000)}) {
        std::filesystem::remove(path);
        const Measure ours = Export(db, path, version);
        std::filesystem::remove(path);
        const Measure peer = python.empty() ? Measure{-1, 0, 0} : Peer(python, numbers, path, name);
        std::printf("| %s | %d | %.3f | %.0f | %.0f | %.1f | %.0f | %.1f |\n", name, lines, ours.seconds,
                    ours.memoryMb, ours.fileMb, peer.seconds, peer.fileMb, peer.seconds / ours.seconds);
        std::fflush(stdout);
    }
    std::filesystem::remove_all(folder);
    return 0;
}
