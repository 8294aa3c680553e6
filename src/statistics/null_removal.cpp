// Null removal and masking of ztStatistics: the rows of parallel arrays stay or go together.
#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <span>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include "frame/array_tools.hpp"
#include "frame/steps_only.hpp"
#include "frame/trap.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

constexpr Location kRemoveNulls{"ztStatistics", "RemoveNulls"};
constexpr Location kRemoveNullsXY{"ztStatistics", "RemoveNullsXY"};
// The three-array method names itself as the two-array one.
constexpr Location kRemoveNullsXYZ{"ztStatistics", "RemoveNullsXY"};
constexpr Location kRemoveNullValues{"ztAnalysis", "RemoveNullValues"};
constexpr Location kRemoveNullValuesXYZ{"ztAnalysis", "RemoveNullsXYZ"};
constexpr Location kMaskValuesXY{"ztAnalysis", "MaskValuesXY"};
constexpr Location kMaskValuesXYZ{"ztAnalysis", "MaskValuesXYZ"};

using Samples = Array1<float>;
using ReadSamples = Array1<const float>;

// Column by column: the nulls of one leave it, then their rows leave the others. True on success;
// `rows` is the number left.
bool remove_null_rows(float& null, std::span<Samples* const> columns, std::int32_t& rows) {
  const auto tools = array_tools();
  for (Samples* const column : columns) {
    Array1<std::int32_t> list;
    std::int32_t removed = 0;
    bool ok = false;
    tools->RemoveNullEntries(null, *column, rows, list, removed, ok);
    if (!ok) return false;
    for (Samples* const other : columns) {
      if (other == column) continue;
      if (rows == 0) {
        other->redim(1, 1);
      } else if (removed > 0) {
        std::int32_t kept = 0;
        ok = false;
        tools->RemoveListedEntries(list, removed, *other, kept, ok);
        if (!ok) return false;
      }
    }
    if (rows == 0) return true;
  }
  return true;
}

template <std::size_t kColumns>
using Columns = std::array<const float*, kColumns>;

// Whether row i has no null; `null` is not a NaN, or else NaN is what counts.
template <std::size_t kColumns>
bool stays(const Columns<kColumns>& columns, std::size_t i, float null, bool null_is_nan) {
  bool kept = true;
  for (const float* column : columns) {
    kept &= null_is_nan ? !std::isnan(column[i]) : column[i] != null;
  }
  return kept;
}

// The rows without a null of columns that all have elements 1 to n, in one pass to count and one to
// write: what column after column comes to by the built-in array companion. False, and nothing
// done, where that is another one, or where a step could fail half way.
template <std::size_t kColumns>
bool remove_in_one_pass(float null, const std::array<const ReadSamples*, kColumns>& given,
                        const std::array<Samples*, kColumns>& results, std::int32_t& rows) {
  const auto& tools = common_globals().ArrayTools;
  if (kStepsOnly || !tools) return false;
  const auto& companion = *tools;
  if (typeid(companion) != typeid(BuiltInArrayTools)) return false;
  const std::int32_t n = rows;
  Columns<kColumns> from;
  for (std::size_t c = 0; c < kColumns; ++c) {
    if (n < 1 || !given[c]->covers(1, n) || results[c]->fixed()) return false;
    if (std::count(results.begin(), results.end(), results[c]) > 1) return false;
    from[c] = &(*given[c])(1);
  }
  const auto write = [&](auto null_is_nan) {
    std::int32_t kept = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
      kept += stays(from, i, null, null_is_nan) ? 1 : 0;
    }
    std::array<Samples, kColumns> fresh;
    std::array<float*, kColumns> to;
    for (std::size_t c = 0; c < kColumns; ++c) {
      // Elements below 1 stay too, unless nothing does.
      const std::int32_t lower = kept == 0 ? 1 : given[c]->lower();
      fresh[c].redim(lower, std::max(kept, 1));
      if (kept > 0) std::copy_n(given[c]->data(), 1 - lower, fresh[c].data());
      to[c] = &fresh[c](1);
    }
    std::size_t done = 0;
    for (std::size_t i = 0; done < static_cast<std::size_t>(kept); ++i) {
      for (std::size_t c = 0; c < kColumns; ++c) to[c][done] = from[c][i];
      done += stays(from, i, null, null_is_nan) ? std::size_t{1} : 0;
    }
    for (std::size_t c = 0; c < kColumns; ++c) *results[c] = std::move(fresh[c]);
    rows = kept;
  };
  if (std::isnan(null)) {
    write(std::true_type());
  } else {
    write(std::false_type());
  }
  return true;
}

}  // namespace

void ztStatistics::RemoveNulls(float& xNull, const ReadSamples& xA, Samples& xANew,
                               std::int32_t& nANew, bool& qOK) {
  trap(kRemoveNulls, [&] {
    qOK = false;
    xANew = Samples(xA);
    Array1<std::int32_t> list;
    std::int32_t removed = 0;
    bool ok = false;
    array_tools()->RemoveNullEntries(xNull, xANew, nANew, list, removed, ok);
    qOK = ok;
  });
}

void ztStatistics::RemoveNullsXY(float& xNull, const ReadSamples& xA, const ReadSamples& xB,
                                 Samples& xANew, Samples& xBNew, std::int32_t& NewLength,
                                 bool& qOK) {
  trap(kRemoveNullsXY, [&] {
    qOK = false;
    NewLength = xA.upper();
    if (NewLength != xB.upper()) return;
    qOK = remove_in_one_pass<2>(xNull, {&xA, &xB}, {&xANew, &xBNew}, NewLength);
    if (qOK) return;
    Samples a(xA), b(xB);  // both read before the first is written: either may be one of the new
    xANew = std::move(a);
    xBNew = std::move(b);
    qOK = remove_null_rows(xNull, std::array{&xANew, &xBNew}, NewLength);
  });
}

void ztStatistics::RemoveNullsXYZ(float& xNull, const ReadSamples& xA, const ReadSamples& xB,
                                  const ReadSamples& xC, Samples& xANew, Samples& xBNew,
                                  Samples& xCNew, std::int32_t& NewLength, bool& qOK) {
  trap(kRemoveNullsXYZ, [&] {
    qOK = false;
    NewLength = xA.upper();
    if (NewLength != xB.upper() || NewLength != xC.upper()) return;
    qOK = remove_in_one_pass<3>(xNull, {&xA, &xB, &xC}, {&xANew, &xBNew, &xCNew}, NewLength);
    if (qOK) return;
    Samples a(xA), b(xB), c(xC);  // all read before the first is written: any may be one of the new
    xANew = std::move(a);
    xBNew = std::move(b);
    xCNew = std::move(c);
    qOK = remove_null_rows(xNull, std::array{&xANew, &xBNew, &xCNew}, NewLength);
  });
}

void ztStatistics::RemoveNullValues(float& dNull, const std::int32_t& iNull, Samples& dX,
                                    Samples& dY, std::int32_t& nRows, bool& qOK) {
  trap(kRemoveNullValues, [&] {
    qOK = false;
    const std::int32_t rows = dX.upper();
    if (rows != dY.upper()) return;
    if (iNull == 0) {
      nRows = rows;
      qOK = true;
      return;
    }
    Samples x, y;
    bool ok = false;
    RemoveNullsXY(dNull, dX, dY, x, y, nRows, ok);
    if (!ok) return;
    dX = std::move(x);
    dY = std::move(y);
    qOK = true;
  });
}

void ztStatistics::RemoveNullValuesXYZ(float& dNull, const std::int32_t& iNull, Samples& dX,
                                       Samples& dY, Samples& dZ, std::int32_t& nRows, bool& qOK) {
  trap(kRemoveNullValuesXYZ, [&] {
    qOK = false;
    const std::int32_t rows = dX.upper();
    if (rows != dY.upper() || rows != dZ.upper()) return;
    if (iNull == 0) {
      nRows = rows;
      qOK = true;
      return;
    }
    Samples x, y, z;
    bool ok = false;
    RemoveNullsXYZ(dNull, dX, dY, dZ, x, y, z, nRows, ok);
    if (!ok) return;
    dX = std::move(x);
    dY = std::move(y);
    dZ = std::move(z);
    qOK = true;
  });
}

void ztStatistics::mask_rows(Array1<Boolean>& mask, Samples& first,
                             std::initializer_list<Samples*> others, std::int32_t& rows) {
  if (!array_tools_) array_tools_ = create_array_tools();
  const auto tools = array_tools_;  // stays alive through its own calls
  const std::int32_t before = first.upper();
  // The flags are not looked at: what fails in here raises.
  bool ok = false;
  bool keep = true;
  tools->ApplyMask(mask, first, rows, ok, keep);
  if (rows == 0 || rows == before) return;
  for (Samples* const other : others) {
    std::int32_t kept = 0;
    keep = true;
    tools->ApplyMask(mask, *other, kept, ok, keep);
  }
}

void ztStatistics::MaskValuesXY(Array1<Boolean>& qMask, Samples& dX, Samples& dY,
                                std::int32_t& nRows, bool& qOK, const bool& /*qFlag*/) {
  trap(kMaskValuesXY, [&] {
    qOK = false;
    if (dX.upper() != dY.upper()) return;
    mask_rows(qMask, dX, {&dY}, nRows);
    qOK = true;
  });
}

void ztStatistics::MaskValuesXYZ(Array1<Boolean>& qMask, Samples& dX, Samples& dY, Samples& dZ,
                                 std::int32_t& nRows, bool& qOK, const bool& /*qFlag*/) {
  trap(kMaskValuesXYZ, [&] {
    qOK = false;
    if (dX.upper() != dY.upper() || dX.upper() != dZ.upper()) return;
    mask_rows(qMask, dX, {&dY, &dZ}, nRows);
    qOK = true;
  });
}

}  // namespace vqmath63
