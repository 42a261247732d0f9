// peer_cdt SPEC float|exact
// CGAL Constrained_triangulation_plus_2, one insert_constraint() per segment, crossings split as they
// come: float = Epick + Exact_predicates_tag (crossing points rounded to double, the nearest CGAL kin of
// a float net), exact = Epeck + Exact_intersections_tag.
#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Constrained_triangulation_2.h>
#include <CGAL/Constrained_triangulation_plus_2.h>
#include <CGAL/Exact_predicates_exact_constructions_kernel.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <memory>
#include "bench/peers/measure.h"
#include "bench/peers/workload.h"

template <class K, class Tag>
void go(const std::string& name, const std::string& spec, const std::vector<wl::Piece>& v) {
  using Tds = CGAL::Triangulation_data_structure_2<CGAL::Triangulation_vertex_base_2<K>,
                                                   CGAL::Constrained_triangulation_face_base_2<K>>;
  using Ct = CGAL::Constrained_triangulation_plus_2<CGAL::Constrained_Delaunay_triangulation_2<K, Tds, Tag>>;
  const double base = bench::status_mb("VmRSS:"), cap = bench::env("BENCH_CAP", 60);
  std::unique_ptr<Ct> t;
  std::size_t done = 0;
  auto r = bench::measure([&] { t = std::make_unique<Ct>(); },
                          [&] {
                            const double t0 = bench::cpu();
                            done = 0;
                            for (auto& p : v) {
                              t->insert_constraint(typename K::Point_2(p.x0, p.y0), typename K::Point_2(p.x1, p.y1));
                              ++done;
                              if ((done & 63) == 0 && bench::cpu() - t0 > cap) break;
                            }
                          });
  std::size_t e = 0;
  for (auto i = t->subconstraints_begin(); i != t->subconstraints_end(); ++i) ++e;
  bench::row("A", name, spec, v.size(), r, base,
             "inserted=" + std::to_string(done) + " V=" + std::to_string(t->number_of_vertices()) + " E=" + std::to_string(e));
}

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const std::string spec = argv[1], mode = argv[2];
  const auto v = wl::make(spec);
  if (mode == "float") go<CGAL::Exact_predicates_inexact_constructions_kernel, CGAL::Exact_predicates_tag>("cgal.cdt+.float", spec, v);
  if (mode == "exact") go<CGAL::Exact_predicates_exact_constructions_kernel, CGAL::Exact_intersections_tag>("cgal.cdt+.exact", spec, v);
}
