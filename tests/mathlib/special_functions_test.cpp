// The functions of ztMathLib against the committed values, and the tables they are made of.
#include <bit>
#include <cstdint>
#include <span>

#include "frame/companion_fixture.hpp"
#include "mathlib/cody_tables.hpp"
#include "mathlib/exp_of_squares.hpp"
#include "mathlib/special_cases.hpp"

namespace vqmath63 {
namespace {

class SpecialFunctionsTest : public CompanionTest {};

double unit_in_last_place(double x) {
  return std::nextafter(std::abs(x), std::numeric_limits<double>::infinity()) - std::abs(x);
}

TEST_F(SpecialFunctionsTest, errors_stay_within_the_documented_bounds) {
  const std::vector<SpecialCase> cases = special_cases("special");
  int seen = 0;
  each_row("mathlib.tsv", "bounds", 37, [&](const TableRow& row) {
    const double bound = row["bound"];
    const double least = row["least"];
    const int rows = row["rows"];
    int found = 0;
    for (const SpecialCase& one : cases) {
      if (one.function != row["function"].text || one.interval != row["interval"].text) continue;
      const double got = evaluate(one);
      const double scale = std::max(least, std::abs(one.value));
      // The value is the rounded one and its rest.
      EXPECT_LE(std::abs((got - one.value) - one.rest_or_size), bound * scale)
          << one.name() << " is " << one.value << ", not " << got;
      ++found;
    }
    EXPECT_EQ(found, rows);
    seen += found;
  });
  EXPECT_EQ(cases.size(), 181U);
  EXPECT_EQ(seen, 181);
  EXPECT_TRUE(lines.empty());
}

TEST_F(SpecialFunctionsTest, elementary_functions_follow_their_formulas_and_constants) {
  int count = 0;
  for (const SpecialCase& row : special_cases("formula")) {
    const double got = evaluate(row);
    EXPECT_LE(std::abs(got - row.value), 2 * row.rest_or_size * unit_in_last_place(row.value))
        << row.name() << " is " << row.value << ", not " << got;
    ++count;
  }
  EXPECT_EQ(count, 80);
  EXPECT_TRUE(lines.empty());
}

// Fowler-Noll-Vo 1a, 64 bits, over the bytes of the numbers, lowest first.
std::uint64_t fingerprint(std::span<const double> numbers) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const double number : numbers) {
    const auto bits = std::bit_cast<std::uint64_t>(number);
    for (unsigned shift = 0; shift < 64; shift += 8) {
      hash = (hash ^ ((bits >> shift) & 0xFFU)) * 0x100000001B3U;
    }
  }
  return hash;
}

TEST_F(SpecialFunctionsTest, coefficients_are_the_published_ones_to_15_digits) {
  using namespace cody;
  // Fingerprints of the published arrays, worked out apart from this code.
  struct {
    const char* name;
    std::span<const double> numbers;
    std::uint64_t want;
  } const rows[] = {
      {"kGammaP", kGammaP, 0x8B56B76ACC51BEE4U},
      {"kGammaQ", kGammaQ, 0xBBC6BD792917BB6BU},
      {"kStirling", kStirling, 0x7EC0EC559D8F35E9U},
      {"kLogGammaD1", {&kLogGammaD1, 1}, 0x392F74F8033082B9U},
      {"kLogGammaP1", kLogGammaP1, 0x637A26434C76E333U},
      {"kLogGammaQ1", kLogGammaQ1, 0x1A4919FDEE224575U},
      {"kLogGammaD2", {&kLogGammaD2, 1}, 0xBFF4776B9CBB0347U},
      {"kLogGammaP2", kLogGammaP2, 0x954B6F56118C85C1U},
      {"kLogGammaQ2", kLogGammaQ2, 0x39F0183AE8002356U},
      {"kLogGammaD4", {&kLogGammaD4, 1}, 0x180C55F35C602933U},
      {"kLogGammaP4", kLogGammaP4, 0x9A5120BB4FFB16CFU},
      {"kLogGammaQ4", kLogGammaQ4, 0xCE88931FF74C2B0DU},
      {"kErfA", kErfA, 0x5FFBF1CE020E3668U},
      {"kErfB", kErfB, 0x4928130E227CAB3BU},
      {"kErfC", kErfC, 0x6A73B94DB7015610U},
      {"kErfD", kErfD, 0xA3CCA36C8139B66EU},
      {"kErfP", kErfP, 0xBDEEC8C0D3A49E8AU},
      {"kErfQ", kErfQ, 0x3AFC915E25D595FDU},
  };
  std::size_t total = 0;
  for (const auto& row : rows) {
    EXPECT_EQ(fingerprint(row.numbers), row.want) << row.name;
    total += row.numbers.size();
  }
  EXPECT_EQ(total, 111U);
  EXPECT_EQ(kGammaP[0], -1.7161851388655);
}

TEST_F(SpecialFunctionsTest, the_exponentials_of_squares_are_those) {
  ASSERT_EQ(std::size(kExpOfMinusSquare), 97U);
  for (std::size_t k = 0; k < 97; ++k) {
    const double h = static_cast<double>(k) / 16;
    const double want = std::exp(-h * h);  // the square is exact
    EXPECT_NEAR(kExpOfMinusSquare[k], want, unit_in_last_place(want)) << k;
  }
}

}  // namespace
}  // namespace vqmath63
