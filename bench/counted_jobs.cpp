// The hottest jobs, one a run, for a machine that counts instructions: tools/instruction_counts.py
// runs them under callgrind, which looks at nothing but the job itself.
//
//   counted_jobs         the names
//   counted_jobs NAME    does it, once before it is counted and once counted
#include <valgrind/callgrind.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>
#include <span>
#include <string_view>
#include <vector>

#include "accumulate/accumulate.hpp"
#include "automation/types.hpp"
#include "calculus/differentiate.hpp"
#include "calculus/integrate.hpp"
#include "component/class_list.hpp"
#include "mathlib/math_lib.hpp"
#include "petroleum/petroleum.hpp"
#include "regression/matrix.hpp"
#include "statistics/statistics.hpp"

namespace {

using vqmath63::Array1;
using vqmath63::Array2;
using vqmath63::Boolean;

volatile double sink = 0.0;

// Once unseen, so that companions and memory are there, and once counted.
void counted(const std::function<void()>& job) {
  job();
  CALLGRIND_START_INSTRUMENTATION;
  job();
  CALLGRIND_STOP_INSTRUMENTATION;
}

std::vector<float> sample(std::size_t n) {
  std::mt19937 random(1);
  std::vector<float> values(n);
  for (float& value : values) value = static_cast<float>(random() % 100'000U) * 0.001F;
  return values;
}

template <class Number>
std::vector<Number> rising(std::size_t n) {
  std::vector<Number> values(n);
  for (std::size_t i = 0; i < n; ++i) {
    values[i] =
        static_cast<Number>(static_cast<double>(i) * 0.25 + static_cast<double>(i % 7) * 0.01);
  }
  return values;
}

// --- functions, a thousand arguments each ------------------------------------------------------

template <class Function>
void function(double from, double to, Function of) {
  vqmath63::ztMathLib maths;
  counted([&] {
    for (int i = 0; i < 1000; ++i) sink = of(maths, from + (to - from) * i / 1000.0);
  });
}

void erf() {
  function(-6, 6, [](auto& maths, double x) { return maths.Erf(x); });
}
void incomplete_gamma() {
  function(0.1, 20, [](auto& maths, double x) { return maths.Gamma_P(3.5, x); });
}
void incomplete_beta() {
  function(0, 1, [](auto& maths, double x) { return maths.BetaI(2.5, 4.5, x); });
}
void bessel_j() {
  function(0, 40, [](auto& maths, double x) { return maths.Jbn(3, x); });
}
void power() {
  function(0.1, 30, [](auto& maths, double x) { return maths.x_to_Power_y(x, 1.7); });
}

// --- arrays ------------------------------------------------------------------------------------

void integral() {
  auto x = rising<float>(100'000), y = sample(x.size());
  vqmath63::ztIntegrate integrate;
  counted([&] { sink = integrate.Integral(x, y); });
}

void first_derivative() {
  auto x = rising<double>(100'000), y = rising<double>(x.size()), d = x;
  Array1<double> xs(x), ys(y), result(d);
  vqmath63::ztDifferentiate differentiate;
  bool ok = false;
  counted([&] { differentiate.FirstDerivative(xs, ys, result, ok); });
}

void statistics() {
  auto values = sample(100'000);
  Array1<float> x{std::span<float>(values)};
  vqmath63::ztStatistics of;
  bool ok = false;
  counted([&] { of.Statistics(x, ok); });
}

void summary() {
  auto values = sample(100'000);
  Array1<float> x{std::span<float>(values)};
  vqmath63::ztStatistics of;
  bool ok = false;
  counted([&] { of.BasicStatistics(x, ok); });
}

void accumulation() {
  constexpr std::int32_t kRows = 10'000, kColumns = 10;
  Array2<float> table({1, kRows}, {1, kColumns});
  Array1<Boolean> rates(1, kColumns);
  for (std::int32_t c = 1; c <= kColumns; ++c) {
    rates(c) = c % 2 == 0;
    for (std::int32_t r = 1; r <= kRows; ++r) {
      table(r, c) =
          c == 1 ? static_cast<float>(r - 1) : static_cast<float>((r * 31 + c * 17) % 4096);
    }
  }
  vqmath63::ztAccumulate accumulate;
  accumulate.put_StartDate({36526.0});  // 2000-01-01
  accumulate.put_StartData({36526.0});
  accumulate.put_RateArray(rates);
  bool ok = false;
  counted([&] {
    Array2<float> result;
    accumulate.Accumulate(table, result, ok);
  });
}

// --- grids, fluids, systems --------------------------------------------------------------------

void points_in_cell() {
  Array2<float> top({1, 3}, {1, 4}), bottom({1, 3}, {1, 4});
  const std::array<float, 4> xs{0, 50, 50, 0}, ys{0, 0, 40, 40}, tilt{0.7F, -0.3F, 1.1F, 0.4F};
  for (std::int32_t k = 1; k <= 4; ++k) {  // no face is level, none is upright
    const auto corner = static_cast<std::size_t>(k - 1);
    top(1, k) = xs[corner] + tilt[corner];
    top(2, k) = ys[corner] - tilt[corner];
    top(3, k) = 8.0F + tilt[corner];
    bottom(1, k) = xs[corner] - tilt[corner];
    bottom(2, k) = ys[corner] + tilt[corner];
    bottom(3, k) = -tilt[(corner + 1) % 4];
  }
  auto x = sample(10'000), y = x, z = x;  // half of them inside
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = x[i] * 0.5F;
    y[i] = y[(i * 7919) % y.size()] * 0.6F;
    z[i] = z[(i * 104729) % z.size()] * 0.08F;
  }
  const vqmath63::ztMathLib maths;
  std::int32_t count = 0;
  Array1<std::int32_t> index;
  Array1<Boolean> inside;
  bool ok = false;
  counted([&] { maths.Points_In_CubeIndex(x, y, z, top, bottom, count, index, inside, ok); });
}

void point_in_polygon() {
  constexpr std::int32_t kVertices = 10'000;
  std::vector<float> xs(kVertices), ys(kVertices);
  std::mt19937 random(1);
  for (std::size_t k = 0; k < xs.size(); ++k) {  // a ring of steps about the origin
    const float radius = 90.0F + static_cast<float>(random() % 1000U) * 0.01F;
    const double turn = 6.283185307179586 * static_cast<double>(k) / kVertices;
    xs[k] = radius * static_cast<float>(std::cos(turn));
    ys[k] = radius * static_cast<float>(std::sin(turn));
  }
  vqmath63::ztMathLib maths;
  counted([&] { sink = maths.Point_In_Polygon(12.0F, -7.0F, xs, ys) ? 1.0 : 0.0; });
}

void live_oil() {
  constexpr std::int32_t kCurves = 10, kEntries = 100;
  Array1<float> primary{1, kCurves}, pressure{1, kEntries}, factor{1, kEntries};
  Array1<std::int32_t> map{1, kCurves};
  for (std::int32_t p = 1; p <= kCurves; ++p) {
    primary(p) = 20.0F * static_cast<float>(p);
    map(p) = (p - 1) * 10 + 1;
    for (std::int32_t k = 0; k < 10; ++k) {
      pressure(map(p) + k) = 50.0F * static_cast<float>(p) + 25.0F * static_cast<float>(k);
      factor(map(p) + k) = 1.0F + 0.04F * static_cast<float>(p) - 0.004F * static_cast<float>(k);
    }
  }
  vqmath63::ztPetroleum petroleum;
  std::int32_t curves = kCurves, entries = kEntries;
  counted([&] {
    std::mt19937 random(1);
    for (int i = 0; i < 1000; ++i) {
      float at = 20.0F + static_cast<float>(random() % 1800U) * 0.1F;
      float of = 2.5F * at + static_cast<float>(random() % 200U), null = 0.0F, answer = 0.0F;
      bool ok = false;
      petroleum.GetVolumeCorrectionLive(primary, map, curves, pressure, factor, entries, at, of,
                                        null, answer, ok);
      sink = static_cast<double>(answer);
    }
  });
}

void linear_system() {
  constexpr std::int32_t kOrder = 32;
  Array2<float> a({1, kOrder}, {1, kOrder});
  Array1<float> b(1, kOrder), x(1, kOrder);
  for (std::int32_t i = 1; i <= kOrder; ++i) {
    b(i) = static_cast<float>(i);
    for (std::int32_t j = 1; j <= kOrder; ++j) {
      a(i, j) = static_cast<float>((i * 7919 + j * 104729 + i * j * 31) % 1009) / 1009.0F - 0.5F;
    }
  }
  bool singular = false, ok = false;
  counted([&] { vqmath63::MatrixEquation(a, b, x, singular, ok); });
}

// --- the boundary ------------------------------------------------------------------------------

IDispatch* create(const char* programmatic_id) {
  const auto* info = vqmath63::component::find_class(programmatic_id);
  void* object = nullptr;
  if (info == nullptr || FAILED(info->create(info->iid, &object))) std::abort();
  return static_cast<IDispatch*>(object);
}

void property_by_name() {
  IDispatch* object = create("vq140Analyse.ztAccumulate");
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.lVal = 3;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{&value, &put, 1, 1};
  constexpr DISPID kFrequency = 3;
  counted([&] {
    for (int i = 0; i < 1000; ++i) {
      object->Invoke(kFrequency, GUID{}, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr,
                     nullptr);
    }
  });
  object->Release();
}

// A script's arrays: variants of Doubles, converted one by one.
void integral_of_variants() {
  IDispatch* object = create("vq140Analyse.ztIntegrate");
  constexpr ULONG kSamples = 10'000;
  std::array<VARIANT, 2> held, arguments;
  for (std::size_t i = 0; i < held.size(); ++i) {
    SAFEARRAYBOUND bound{kSamples, 1};
    SAFEARRAY* variants = SafeArrayCreate(VT_VARIANT, 1, &bound);
    auto* values = static_cast<VARIANT*>(variants->pvData);
    for (ULONG k = 0; k < kSamples; ++k) {
      values[k].vt = VT_R8;
      values[k].dblVal = static_cast<double>(k);
    }
    VariantInit(&held[i]);
    held[i].vt = VT_ARRAY | VT_VARIANT;
    held[i].parray = variants;
    VariantInit(&arguments[i]);
    arguments[i].vt = VT_BYREF | VT_VARIANT;
    arguments[i].pvarVal = &held[i];
  }
  DISPPARAMS params{arguments.data(), nullptr, 2, 0};
  VARIANT result;
  constexpr DISPID kIntegral = 3;
  counted([&] {
    object->Invoke(kIntegral, GUID{}, 0, DISPATCH_METHOD, &params, &result, nullptr, nullptr);
  });
  for (VARIANT& variable : held) VariantClear(&variable);
  object->Release();
}

struct Job {
  std::string_view name;
  void (*run)();
};

constexpr Job kJobs[] = {
    {"erf", erf},
    {"incomplete_gamma", incomplete_gamma},
    {"incomplete_beta", incomplete_beta},
    {"bessel_j", bessel_j},
    {"power", power},
    {"integral", integral},
    {"first_derivative", first_derivative},
    {"statistics", statistics},
    {"summary", summary},
    {"accumulation", accumulation},
    {"points_in_cell", points_in_cell},
    {"point_in_polygon", point_in_polygon},
    {"live_oil", live_oil},
    {"linear_system", linear_system},
    {"property_by_name", property_by_name},
    {"integral_of_variants", integral_of_variants},
};

}  // namespace

int main(int argc, char** argv) {
  for (const Job& job : kJobs) {
    if (argc < 2) {
      std::cout << job.name << "\n";
    } else if (job.name == argv[1]) {
      job.run();
      return 0;
    }
  }
  return argc < 2 ? 0 : 2;
}
