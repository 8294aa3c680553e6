// The rules of the component that the host repeats, held to the component over random cases.
//
// What the component does not tell is found from its answers: a factor is a weighted sum of a
// table's factors, so that a table of one factor 1 and else 0 shows the weight of that one.
#include <gtest/gtest.h>

#include <cmath>
#include <list>
#include <random>

#include "host/client/description.hpp"
#include "host/client/dispatch_client.hpp"
#include "host/commands/accumulation.hpp"
#include "host/commands/cell.hpp"
#include "host/commands/line_check.hpp"
#include "host/commands/volume_place.hpp"

namespace vqmath63::host {
namespace {

using Floats = std::vector<float>;

// Lists that are lent to a call.
struct Call {
  std::list<ArrayOwner> lists{};
  std::vector<Argument> arguments{};

  template <class T>
  Call& list(VARTYPE type, const std::vector<T>& values, std::size_t columns = 0) {
    ArrayOwner& array = lists.emplace_back(
        new_array(type, columns == 0 ? values.size() : values.size() / columns, columns));
    std::copy(values.begin(), values.end(), static_cast<T*>(array.get()->pvData));
    arguments.push_back({Value::array_reference(type, array.place())});
    return *this;
  }
  Call& singles(const Floats& values, std::size_t columns = 0) {
    return list(VT_R4, values, columns);
  }
  Call& number(double value) {
    arguments.push_back({Value::number(value)});
    return *this;
  }
  // What a member of ztPetroleum puts into its last argument.
  float factor(const char* member) {
    Value result;
    arguments.push_back({Value::reference(result)});
    EXPECT_TRUE(DispatchObject::create("ztPetroleum").succeeds(member, std::move(arguments)));
    return result.get().fltVal;
  }
};

class Draw {
 public:
  double from(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine_);
  }
  std::size_t count(std::size_t low, std::size_t high) {
    return std::uniform_int_distribution<std::size_t>(low, high)(engine_);
  }
  // Ascending, with steps of 1 to 10.
  void climb(Floats& values, std::size_t count) {
    double at = from(-20.0, 20.0);
    for (; count > 0; --count) values.push_back(static_cast<float>(at += from(1.0, 10.0)));
  }

 private:
  std::mt19937 engine_{20240229};
};

TEST(ComponentRules, LiveOilIsReadFromTheCurvesThatTheHostNames) {
  Draw draw;
  constexpr std::size_t kRead = 3;  // entries that are read of a curve
  std::size_t saturated = 0;
  std::size_t beyond[2] = {};
  for (int round = 0; round < 2000; ++round) {
    const std::size_t curves = draw.count(1, 4);
    Floats primary;
    Floats pressure;
    std::vector<std::int32_t> starts;
    draw.climb(primary, curves);
    for (std::size_t c = 0; c < curves; ++c) {
      starts.push_back(static_cast<std::int32_t>(pressure.size() + 1));
      draw.climb(pressure, kRead);
    }
    pressure.push_back(pressure.back() + 1.0F);  // the last row of a table is not read
    const LiveCurves table{primary, starts, pressure};
    const Point point{static_cast<float>(draw.from(primary.front() - 5.0, primary.back() + 5.0)),
                      static_cast<float>(draw.from(-30.0, 60.0))};
    const LivePlace at = live_place(table, point);
    const double tolerance = 1e-5 * (1.0 + std::fabs(at.share));
    const auto factor = [&](const Floats& factors, const Point& where) {
      Call call;
      call.singles(primary).list(VT_I4, starts).number(static_cast<double>(curves));
      call.singles(pressure).singles(factors).number(static_cast<double>(pressure.size()));
      call.number(where.primary).number(where.pressure).number(0.0);
      return call.factor("GetVolumeCorrectionLive");
    };
    // The pressures as factors, far below saturation, are the saturation pressure.
    EXPECT_NEAR(factor(pressure, {point.primary, -1e9F}), at.saturation, 100.0 * tolerance);
    for (std::size_t c = 0; c < curves; ++c) {
      Floats one(pressure.size(), 0.0F);
      std::fill_n(&one[table.first(c)], kRead, 1.0F);
      EXPECT_EQ(table.last(c), table.first(c) + kRead - 1);
      const double share =
          (c == at.lower ? 1.0 - at.share : 0.0) + (c == at.upper ? at.share : 0.0);
      EXPECT_NEAR(factor(one, point), share, tolerance) << c << " of " << curves;
    }
    if (std::fabs(at.above) < 1e-3) continue;
    Floats start(pressure.size(), 0.0F);
    for (std::size_t c = 0; c < curves; ++c) start[table.first(c)] = 1.0F;
    EXPECT_EQ(std::fabs(factor(start, point) - 1.0F) < 1e-6F, at.saturated);
    saturated += at.saturated ? 1U : 0U;
    // Beyond a curve its chord serves, in which its middle entry has no weight. The upper curve's
    // middle has none either where the segment of the lower one's pressure is another.
    for (const bool upper : {false, true}) {
      const std::size_t c = upper ? at.upper : at.lower;
      const double past = pressure[table.first(c)] + at.above - pressure[table.last(c)];
      if (at.saturated || std::fabs(past) < 1e-3) continue;
      Floats middle(pressure.size(), 0.0F);
      middle[table.first(c) + 1] = 1.0F;
      const bool by_chord = factor(middle, point) == 0.0F;
      if (upper ? at.beyond_upper : at.beyond_lower) {
        EXPECT_TRUE(by_chord);
        ++beyond[upper];
      } else if (!upper) {
        EXPECT_FALSE(by_chord);
      }
    }
  }
  EXPECT_GT(saturated, 300U);
  EXPECT_GT(beyond[0], 300U);
  EXPECT_GT(beyond[1], 300U);
}

TEST(ComponentRules, DeadOilIsReadFromTheRowsThatTheHostNames) {
  Draw draw;
  for (int round = 0; round < 500; ++round) {
    Floats pressures;
    draw.climb(pressures, draw.count(2, 6));
    const auto at = static_cast<float>(draw.from(pressures.front() - 5.0, pressures.back() + 5.0));
    const std::size_t row = dead_row(pressures, at);
    for (std::size_t r = 0; r < pressures.size(); ++r) {
      Floats one(pressures.size(), 0.0F);
      one[r] = 1.0F;
      Call call;
      call.singles(pressures).singles(one).number(static_cast<double>(pressures.size())).number(at);
      EXPECT_EQ(call.factor("GetVolumeCorrectionDead") != 0.0F, r == row || r == row + 1)
          << at << " row " << r;
    }
  }
}

double determinant(const Spot& a, const Spot& b, const Spot& c) {
  return a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0]) +
         a[2] * (b[0] * c[1] - b[1] * c[0]);
}

Spot minus(const Spot& a, const Spot& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

TEST(ComponentRules, SegmentsCrossTheTrianglesThatTheHostNames) {
  Draw draw;
  DispatchObject functions = DispatchObject::create("ztMathLib");
  std::size_t crossings = 0;
  for (int round = 0; round < 3000; ++round) {
    std::array<Spot, 8> corners{};
    Floats faces[2];
    for (std::size_t k = 0; k < 8; ++k) {
      const std::size_t around = k % 4;
      const Spot box{around == 1 || around == 2 ? 100.0 : 0.0, around >= 2 ? 100.0 : 0.0,
                     k < 4 ? 80.0 : 0.0};
      for (std::size_t c = 0; c < 3; ++c) {
        const auto single = static_cast<float>(box[c] + draw.from(-25.0, 25.0));
        faces[k / 4].push_back(single);
        corners[k][c] = single;
      }
    }
    std::array<Spot, 2> ends{};
    Call call;
    for (std::size_t c = 0; c < 3; ++c) {
      const Floats both{static_cast<float>(draw.from(-60.0, 160.0)),
                        static_cast<float>(draw.from(-60.0, 160.0))};
      for (std::size_t e = 0; e < 2; ++e) ends[e][c] = both[e];
      call.singles(both);
    }
    // Where the segment meets each triangle; one near an edge or an end is passed over.
    std::vector<Spot> wanted;
    bool clear = true;
    for (const Triangle& t : cell_triangles()) {
      const Spot along = minus(ends[0], ends[1]);
      const Spot u = minus(corners[t[1]], corners[t[0]]);
      const Spot v = minus(corners[t[2]], corners[t[0]]);
      const Spot w = minus(ends[0], corners[t[0]]);
      const double all = determinant(u, v, along);
      const double a = determinant(w, v, along) / all;
      const double b = determinant(u, w, along) / all;
      const double s = determinant(u, v, w) / all;
      const double inside = std::min({a, b, 1.0 - a - b, s, 1.0 - s});
      clear = clear && std::fabs(inside) > 1e-3;
      if (inside > 0.0) {
        wanted.push_back(
            {ends[0][0] - s * along[0], ends[0][1] - s * along[1], ends[0][2] - s * along[2]});
      }
    }
    if (!clear) continue;
    ArrayOwner points;
    VARIANT_BOOL meets = VARIANT_FALSE;
    for (const Floats& face : faces) call.singles(face, 4);
    call.arguments.push_back({Value::boolean_reference(&meets)});
    call.arguments.push_back({Value::array_reference(VT_R4, points.place())});
    ASSERT_TRUE(functions.succeeds("Line_Through_Cube", std::move(call.arguments)));
    const std::size_t found = meets == VARIANT_FALSE ? 0 : points.get()->rgsabound[0].cElements;
    ASSERT_EQ(found, wanted.size()) << round;
    crossings += found;
    for (std::size_t k = 0; k < found; ++k) {
      const float* at = static_cast<const float*>(points.get()->pvData) + 3 * k;
      for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(at[c], wanted[k][c], 1e-2) << round;
    }
  }
  EXPECT_GT(crossings, 1000U);
}

TEST(ComponentRules, LinesHaveTheSlopeThatTheHostChecks) {
  Draw draw;
  DispatchObject regression = DispatchObject::create("ztRegression");
  for (const std::string word : {"Linear", "Exponential", "Polynomial"}) {
    const bool logs[2] = {word == "Polynomial", word != "Linear"};  // of x, of y
    regression.put("RegressionType", Value::text(word));
    for (int round = 0; round < 300; ++round) {
      Floats lists[2];
      std::vector<double> taken[2];
      for (std::size_t left = draw.count(3, 40); left > 0; --left) {
        for (const std::size_t c : {0U, 1U}) {
          lists[c].push_back(static_cast<float>(draw.from(0.5, 8.0)));
          const double value = lists[c].back();
          taken[c].push_back(logs[c] ? std::log(value) : value);
        }
      }
      Call call;
      call.singles(lists[0]).singles(lists[1]).singles(Floats(lists[0].size(), 1.0F));
      ASSERT_TRUE(regression.succeeds("Regression", std::move(call.arguments)));
      const LineCheck check = check_line(taken[0], taken[1]);
      EXPECT_NEAR(regression.get("B").get().fltVal, check.slope, 1e-4 * check.unit) << word;
    }
  }
}

TEST(ComponentRules, WordsAndTolerancesAreTheComponents) {
  std::string help;
  for (const MemberDescription& member : describe_members("ztAccumulate")) {
    if (member.name == "Period" && member.kind == MemberKind::kLet) help = member.help;
  }
  EXPECT_NE(help.find(": " + period_words_text() + "."), std::string::npos) << help;
  int tolerances = 0;
  for (const MemberDescription& member : describe_members("ztMathLib")) {
    for (const ArgumentDescription& argument : member.arguments) {
      if (argument.name != "Epslon" || !argument.fallback) continue;
      EXPECT_EQ(std::stod(*argument.fallback), kCoordinateTolerance) << member.name;
      ++tolerances;
    }
  }
  EXPECT_GT(tolerances, 0);
}

}  // namespace
}  // namespace vqmath63::host
