// Null removal and masking of ztStatistics: the rows of parallel arrays stay or go together.
#include <array>
#include <initializer_list>
#include <span>
#include <utility>

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
