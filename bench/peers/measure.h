// Small timing kit shared by the net benchmark and its peers. No dependencies.
#pragma once
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

namespace bench {

inline double wall() {
  using namespace std::chrono;
  return duration<double>(steady_clock::now().time_since_epoch()).count();
}
inline double cpu() {  // this thread's own CPU time: insensitive to neighbours on a shared box
  timespec t;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return double(t.tv_sec) + 1e-9 * double(t.tv_nsec);
}
inline double status_mb(const char* key) {  // "VmHWM:" peak, "VmRSS:" present
  std::ifstream f("/proc/self/status");
  std::string line;
  while (std::getline(f, line))
    if (line.rfind(key, 0) == 0) return std::atof(line.c_str() + std::strlen(key)) / 1024.0;
  return 0;
}
inline double env(const char* name, double dflt) {
  const char* s = std::getenv(name);
  return s ? std::atof(s) : dflt;
}

struct Result {
  double cpu_med = 0, cpu_min = 0, wall_med = 0;
  int runs = 0;
};

// Runs f at least BENCH_MINRUNS times (3), until BENCH_SPEND seconds (2) are used; once only if a
// single run takes longer than BENCH_LONG seconds (8). prep runs untimed before each.
template <class Prep, class F>
Result measure(Prep prep, F f) {
  const int min_runs = int(env("BENCH_MINRUNS", 3));
  const double spend = env("BENCH_SPEND", 2), too_long = env("BENCH_LONG", 8);
  std::vector<double> c, w;
  double used = 0;
  for (;;) {
    prep();
    const double w0 = wall(), c0 = cpu();
    f();
    c.push_back(cpu() - c0);
    w.push_back(wall() - w0);
    used += w.back();
    if (w.back() > too_long) break;
    if (int(c.size()) >= min_runs && used >= spend) break;
    if (c.size() >= 50) break;
  }
  std::sort(c.begin(), c.end());
  std::sort(w.begin(), w.end());
  return {c[c.size() / 2], c[0], w[w.size() / 2], int(c.size())};
}

#ifndef BENCH_OPT
#define BENCH_OPT "?"
#endif

// One CSV row: group,peer,workload,n_in,opt,runs,cpu_med_s,cpu_min_s,wall_med_s,base_mb,peak_mb,note
inline void row(const char* group, const std::string& peer, const std::string& workload,
                std::size_t n, const Result& r, double base_mb, const std::string& note) {
  std::printf("%s,%s,%s,%zu,%s,%d,%.6g,%.6g,%.6g,%.1f,%.1f,%s\n", group, peer.c_str(),
              workload.c_str(), n, BENCH_OPT, r.runs, r.cpu_med, r.cpu_min, r.wall_med, base_mb,
              status_mb("VmHWM:"), note.c_str());
  std::fflush(stdout);
}

}  // namespace bench
