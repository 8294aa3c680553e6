// What the tests of the volume factors share: live-oil tables and their factors.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "frame/arrays.hpp"
#include "frame/test_table.hpp"
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

inline Table live_table(const std::string& name) {
  for (const TableRow& row : table_rows("petroleum.tsv", "live oil tables")) {
    if (row.fields[0] == name)
      return {row["primary"], row["map"], row["secondary"], row["factors"]};
  }
  throw std::invalid_argument("no table " + name);
}

inline const Table kOil = live_table("oil");

}  // namespace vqmath63
