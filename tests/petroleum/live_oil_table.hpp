// Live-oil tables as the tests of the volume factors write them down.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/arrays.hpp"
#include "petroleum/petroleum.hpp"

namespace vqmath63 {

constexpr float kOld = -77;  // what dB held before

struct Result {
  float factor = kOld;
  bool ok = false;
};

// A live-oil table; counts as the arrays say unless set otherwise.
struct Table {
  std::vector<float> primary;
  std::vector<std::int32_t> map;
  std::vector<float> secondary, value;
  std::int32_t curves = static_cast<std::int32_t>(primary.size());
  std::int32_t entries = static_cast<std::int32_t>(value.size());
};

inline Result live(const Table& table, float primary, float secondary) {
  Array1<float> p = array_of(table.primary), s = array_of(table.secondary),
                v = array_of(table.value);
  Array1<std::int32_t> map = array_of(table.map);
  std::int32_t curves = table.curves, entries = table.entries;
  float null = kNaN;
  Result result{kOld, true};
  ztPetroleum().GetVolumeCorrectionLive(p, map, curves, s, v, entries, primary, secondary, null,
                                        result.factor, result.ok);
  return result;
}

// Three curves of four entries: saturation at 100, 200, 400; each entry's factor is such that
// every segment has a slope of its own.
inline const Table kOil{
    {10, 20, 40},
    {1, 5, 9},
    {100, 150, 250, 450, 200, 260, 360, 560, 400, 480, 580, 800},
    {1.2F, 1.1F, 1.06F, 1.02F, 1.4F, 1.28F, 1.24F, 1.2F, 1.8F, 1.72F, 1.62F, 1.4F}};

}  // namespace vqmath63
