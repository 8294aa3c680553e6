// Cell containment and point location, beside the same steps, plainly, beside plain loops and
// beside GEOS where it is.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

#include "geometry/cell.hpp"
#include "geometry/polygon.hpp"
#include "mathlib/math_lib.hpp"
#include "plain_cell.hpp"
#include "same_result.hpp"

#ifdef VQ_HAVE_GEOS
#include <geos/algorithm/PointLocation.h>
#include <geos/geom/Coordinate.h>
#include <geos/geom/CoordinateArraySequence.h>
#endif

namespace {

using vqmath63::Array1;
using vqmath63::Array2;
using vqmath63::Boolean;
using vqmath63::Point3D;
using vqmath63::ztMathLib;

using Corners = Array2<float>;

// A cell of a faulted, tilted grid: no face is level, none is upright.
struct Cell {
  Corners top{{1, 3}, {1, 4}}, bottom{{1, 3}, {1, 4}};
  explicit Cell(const Point3D& at) {
    const float tilt[] = {0.7F, -0.3F, 1.1F, 0.4F};
    const float xs[] = {0, 50, 50, 0}, ys[] = {0, 0, 40, 40};
    for (int k = 0; k < 4; ++k) {
      top(1, k + 1) = at.X + xs[k] + tilt[k];
      top(2, k + 1) = at.Y + ys[k] - tilt[k];
      top(3, k + 1) = at.Z + 8 + tilt[k];
      bottom(1, k + 1) = at.X + xs[k] - tilt[k];
      bottom(2, k + 1) = at.Y + ys[k] + tilt[k];
      bottom(3, k + 1) = at.Z - tilt[(k + 1) % 4];
    }
  }
};

constexpr Point3D kLocal{100, 200, 300};
constexpr double kHundredth = 0.0056;  // with what else of the cell is outside that box
constexpr Point3D kField{490000, 6700000, 2500};
constexpr std::int64_t kMostPoints = 1'000'000;

// Points around the box (2, 2, 1) to (48, 38, 7) of the cell, which has the share
// `box_share` of their volume; all of it is inside.
struct Points {
  std::vector<float> x, y, z;
  Points(std::int64_t count, const Point3D& at, double box_share) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> share(0.0F, 1.0F);
    const auto spread = static_cast<float>(std::cbrt(1.0 / box_share));
    const float start = box_share < 1.0 ? (1.0F - spread) / 2 : 0.0F;
    for (std::int64_t i = 0; i < count; ++i) {
      x.push_back(at.X + 2 + 46 * (start + spread * share(random)));
      y.push_back(at.Y + 2 + 36 * (start + spread * share(random)));
      z.push_back(at.Z + 1 + 6 * (start + spread * share(random)));
    }
  }
};

void points_in_cell(benchmark::State& state, const Point3D& at, double inside) {
  Points points(state.range(0), at, inside);
  Cell cell(at);
  const ztMathLib lib;
  Array1<float> x{std::span<float>(points.x)}, y{std::span<float>(points.y)},
      z{std::span<float>(points.z)};
  std::int32_t count = 0;
  for (auto _ : state) {
    Array1<Boolean> flags;
    Array1<std::int32_t> indices;
    bool ok = false;
    lib.Points_In_CubeIndex(x, y, z, cell.top, cell.bottom, count, indices, flags, ok);
    benchmark::DoNotOptimize(ok);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["inside"] = count;
}

void PointsOfWhichHundredthInside(benchmark::State& state) {
  points_in_cell(state, kLocal, kHundredth);
}
void PointsAllInside(benchmark::State& state) {
  points_in_cell(state, kLocal, 1.0);
}
void FieldPointsOfWhichHundredthInside(benchmark::State& state) {
  points_in_cell(state, kField, kHundredth);
}
void FieldPointsAllInside(benchmark::State& state) {
  points_in_cell(state, kField, 1.0);
}

void plain_points_in_cell(benchmark::State& state, const Point3D& at) {
  const Points points(state.range(0), at, 1.0);
  const Cell cell(at);
  for (auto _ : state) {
    const bench::PlainCell plain(cell.top, cell.bottom);
    benchmark::DoNotOptimize(bench::PlainContainment(points.x, points.y, points.z, plain).count);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
void PlainPointsAllInside(benchmark::State& state) {
  plain_points_in_cell(state, kLocal);
}
void PlainFieldPointsAllInside(benchmark::State& state) {
  plain_points_in_cell(state, kField);
}

// Point by point, also where most are outside; fewer points are the first of many.
void hold_plain_to_ours() {
  for (const Point3D& at : {kLocal, kField}) {
    for (const double share : {1.0, kHundredth}) {
      const Points points(kMostPoints, at, share);
      const Cell cell(at);
      std::int32_t count = 0;
      Array1<Boolean> flags;
      Array1<std::int32_t> indices;
      bool ok = false;
      ztMathLib().Points_In_CubeIndex(points.x, points.y, points.z, cell.top, cell.bottom, count,
                                      indices, flags, ok);
      const bench::PlainContainment plain(points.x, points.y, points.z,
                                          bench::PlainCell(cell.top, cell.bottom));
      bench::must_agree(
          ok && static_cast<std::size_t>(count) == plain.count &&
              std::ranges::equal(flags.elements(), plain.inside, {}, &Boolean::stored) &&
              std::ranges::equal(indices.elements(), plain.indices),
          "points in a cell");
    }
  }
}

// The routine of one point that PointsInCube repeats, step by step.
void StepByStepPointIn3DPolygon(benchmark::State& state) {
  const Points points(1'000, kLocal, 1.0);
  const Cell cell(kLocal);
  Array1<vqmath63::Plane3D> planes;
  bool ok = false;
  CubePlanes(cell.top, cell.bottom, planes, ok);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        PointIn3DPolygon({points.x[i], points.y[i], points.z[i]}, planes, true));
    i = (i + 1) % points.x.size();
  }
  state.SetItemsProcessed(state.iterations());
}

// Six tetrahedra in double precision behind a bounding box, as grid libraries do it.
void PlainTetrahedra(benchmark::State& state, double inside) {
  const Points points(state.range(0), kLocal, inside);
  const Cell cell(kLocal);
  double c[8][3], low[3]{}, high[3]{};
  for (int k = 0; k < 8; ++k) {
    for (int d = 0; d < 3; ++d) {
      c[k][d] = static_cast<double>(k < 4 ? cell.bottom(d + 1, k + 1) : cell.top(d + 1, k - 3));
      low[d] = k == 0 ? c[k][d] : std::min(low[d], c[k][d]);
      high[d] = k == 0 ? c[k][d] : std::max(high[d], c[k][d]);
    }
  }
  const auto volume = [](const double* p, const double* q, const double* r, const double* s) {
    const double u[] = {q[0] - p[0], q[1] - p[1], q[2] - p[2]};
    const double v[] = {r[0] - p[0], r[1] - p[1], r[2] - p[2]};
    const double w[] = {s[0] - p[0], s[1] - p[1], s[2] - p[2]};
    return u[0] * (v[1] * w[2] - v[2] * w[1]) - u[1] * (v[0] * w[2] - v[2] * w[0]) +
           u[2] * (v[0] * w[1] - v[1] * w[0]);
  };
  constexpr int kTetrahedra[6][4] = {{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6},
                                     {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}};
  for (auto _ : state) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < points.x.size(); ++i) {
      const double p[] = {static_cast<double>(points.x[i]), static_cast<double>(points.y[i]),
                          static_cast<double>(points.z[i])};
      bool out = false;
      for (int d = 0; d < 3; ++d) out = out || p[d] < low[d] || p[d] > high[d];
      if (out) continue;
      for (const auto& t : kTetrahedra) {
        const double *a = c[t[0]], *b = c[t[1]], *e = c[t[2]], *f = c[t[3]];
        if (volume(p, b, e, f) >= 0 && volume(a, p, e, f) >= 0 && volume(a, b, p, f) >= 0 &&
            volume(a, b, e, p) >= 0) {
          ++count;
          break;
        }
      }
    }
    benchmark::DoNotOptimize(count);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
void TetrahedraHundredthInside(benchmark::State& state) {
  PlainTetrahedra(state, kHundredth);
}
void TetrahedraAllInside(benchmark::State& state) {
  PlainTetrahedra(state, 1.0);
}

// A closed ring of vertices: a circle, or one whose radius jumps about.
struct Ring {
  std::vector<float> x, y;
  Ring(std::int64_t vertices, float roughness) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> share(-1.0F, 1.0F);
    for (std::int64_t i = 0; i + 1 < vertices; ++i) {
      const double angle =
          6.283185307179586 * static_cast<double>(i) / static_cast<double>(vertices - 1);
      const auto r = static_cast<double>(1000 + roughness * share(random));
      x.push_back(static_cast<float>(3000 + r * std::cos(angle)));
      y.push_back(static_cast<float>(4000 + r * std::sin(angle)));
    }
    x.push_back(x.front());
    y.push_back(y.front());
  }
};
constexpr float kRough = 900.0F;

void point_in_polygon(benchmark::State& state, float roughness) {
  Ring ring(state.range(0), roughness);
  Array1<float> x{std::span<float>(ring.x)}, y{std::span<float>(ring.y)};
  const ztMathLib lib;
  float px = 3050.5F, py = 3990.25F;
  for (auto _ : state) {
    benchmark::DoNotOptimize(lib.Point_In_Polygon(px, py, x, y));
    py = py < 4090 ? py + 1 : 3990.25F;
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
void PointInCircle(benchmark::State& state) {
  point_in_polygon(state, 0.0F);
}
void PointInRoughRing(benchmark::State& state) {
  point_in_polygon(state, kRough);
}

void StepByStepPointInPolygon(benchmark::State& state) {
  const Ring ring(state.range(0), kRough);
  Array1<Point3D> polygon(1, static_cast<std::int32_t>(state.range(0)));
  for (std::int32_t i = 1; i <= state.range(0); ++i) {
    const auto k = static_cast<std::size_t>(i) - 1;
    polygon(i) = {ring.x[k], ring.y[k], 0.0F};
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(vqmath63::PointInPolygon({3050.5F, 3990.25F, 0.0F}, polygon));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

#ifdef VQ_HAVE_GEOS
// A question of its own, as Point_In_Polygon answers it: the ring is there, no index is made.
void geos_location(benchmark::State& state, float roughness) {
  const Ring ring(state.range(0), roughness);
  geos::geom::CoordinateArraySequence vertices;
  for (std::size_t i = 0; i < ring.x.size(); ++i) {
    vertices.add(
        geos::geom::Coordinate(static_cast<double>(ring.x[i]), static_cast<double>(ring.y[i])));
  }
  double py = 3990.25;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        geos::algorithm::PointLocation::locateInRing(geos::geom::Coordinate(3050.5, py), vertices));
    py = py < 4090 ? py + 1 : 3990.25;
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
void GeosPointInCircle(benchmark::State& state) {
  geos_location(state, 0.0F);
}
void GeosPointInRoughRing(benchmark::State& state) {
  geos_location(state, kRough);
}
#endif

void points(benchmark::internal::Benchmark* bench) {
  for (std::int64_t n = 1'000; n <= kMostPoints; n *= 10) bench->Arg(n);
}
void vertices(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t n : {100, 1'000, 10'000, 100'000}) bench->Arg(n);
}

BENCHMARK(PointsOfWhichHundredthInside)->Apply(points);
BENCHMARK(PointsAllInside)->Apply(points);
BENCHMARK(FieldPointsOfWhichHundredthInside)->Apply(points);
BENCHMARK(FieldPointsAllInside)->Apply(points);
BENCHMARK(PlainPointsAllInside)->Apply(points);
BENCHMARK(PlainFieldPointsAllInside)->Apply(points);
BENCHMARK(StepByStepPointIn3DPolygon);
BENCHMARK(TetrahedraHundredthInside)->Apply(points);
BENCHMARK(TetrahedraAllInside)->Apply(points);
BENCHMARK(PointInCircle)->Apply(vertices);
BENCHMARK(PointInRoughRing)->Apply(vertices);
BENCHMARK(StepByStepPointInPolygon)->Apply(vertices);
#ifdef VQ_HAVE_GEOS
BENCHMARK(GeosPointInCircle)->Apply(vertices);
BENCHMARK(GeosPointInRoughRing)->Apply(vertices);
#endif

}  // namespace

int main(int argc, char** argv) {
  hold_plain_to_ours();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
