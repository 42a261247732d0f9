// peer_polygonize FILE SPEC
// GEOS Polygonizer over lines that are noded already: FILE holds the lines of our net, four doubles each. SPEC is the
// name under which the row is printed. Only the polygonizing is timed.
#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/Geometry.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LineString.h>
#include <geos/geom/MultiLineString.h>
#include <geos/geom/Polygon.h>
#include <geos/operation/polygonize/Polygonizer.h>

#include <memory>

#include "bench/peers/measure.h"

using namespace geos::geom;

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  std::FILE* f = std::fopen(argv[1], "rb");
  if (!f) return 1;
  auto gf = GeometryFactory::create();
  std::vector<std::unique_ptr<LineString>> lines;
  for (double e[4]; std::fread(e, sizeof e, 1, f) == 1;) {
    auto cs = std::make_unique<CoordinateArraySequence>(std::vector<Coordinate>{{e[0], e[1]}, {e[2], e[3]}});
    lines.push_back(gf->createLineString(std::move(cs)));
  }
  std::fclose(f);
  const std::size_t count = lines.size();
  const auto noded = gf->createMultiLineString(std::move(lines));
  const double base = bench::status_mb("VmRSS:");
  std::size_t faces = 0, dangles = 0;
  auto r = bench::measure([] {},
                          [&] {
                            geos::operation::polygonize::Polygonizer pz;
                            pz.add(noded.get());
                            faces = pz.getPolygons().size();
                            dangles = pz.getDangles().size();
                          });
  char note[120];
  std::snprintf(note, sizeof note, "E=%zu faces=%zu dangles=%zu", count, faces, dangles);
  bench::row("C", "geos.polygonizer", argv[2], count, r, base, note);
}
