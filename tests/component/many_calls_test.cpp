// VqCallMany: what a column may be, calls that fail among others, what is refused.
#include <cmath>
#include <limits>
#include <random>

#include "component_host.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::system::test;
using namespace automation::test;

constexpr DISPID kMax = 36, kCeil = 32, kRtd = 46, kArithmetic = 60, kBetaCf = 54;
constexpr double kHuge = std::numeric_limits<double>::max();

class ManyCallsTest : public ::testing::Test {
 protected:
  HRESULT many(DISPID id, int64_t calls, std::vector<VqColumn> columns, const VqColumn& results) {
    return VqCallMany(maths_.object, id, DISPATCH_METHOD, calls, columns.data(),
                      static_cast<UINT>(columns.size()), &results, &failures_);
  }

  Instance<IDispatch> maths_{u"vq140Analyse.ztMathLib", IID_IDispatch};
  VqFailures failures_{-5, -5};
  Lines lines_;
};

TEST_F(ManyCallsTest, columns_have_strides_of_their_own) {
  double a[] = {1, 9, 5, 9, 3, 9};
  double limit = 2;
  alignas(8) char unaligned[3 * 8 + 1] = {};
  ASSERT_EQ(many(kMax, 3, {{a + 4, -16}, {&limit, 0}}, {unaligned + 1, 8}), S_OK);
  double got[3];
  std::memcpy(got, unaligned + 1, sizeof got);
  EXPECT_EQ(std::vector<double>(got, got + 3), (std::vector<double>{3, 5, 2}));
  ASSERT_EQ(many(kMax, 6, {{a, 8}, {&limit, 0}}, {a, 8}), S_OK);  // over the argument
  EXPECT_EQ(std::vector<double>(a, a + 6), (std::vector<double>{2, 9, 5, 9, 3, 9}));
  EXPECT_EQ(many(kMax, 0, {{a, 8}, {a, 8}}, {a, 8}), S_OK);
  EXPECT_EQ(failures_.count, 0);
  EXPECT_EQ(failures_.first, -1);
}

// Two kinds of failure in five calls of a member that reports them itself. The others' value is
// 2 I / front for the incomplete beta function I = 67/256 and its front factor 81/256.
TEST_F(ManyCallsTest, each_line_is_told_once_when_all_calls_are_made) {
  double a[] = {2, 1e308, -1, 1e308, 2};
  double b[] = {3, 1e308, 1, 1e308, 3};
  double x[] = {0.25, 0.5, 0.5, 0.5, 0.25};
  double result[] = {7, 7, 7, 7, 7};
  ASSERT_EQ(many(kBetaCf, 5, {{a, 8}, {b, 8}, {x, 8}}, {result, 8}), S_OK);
  EXPECT_NEAR(result[0], 134.0 / 81.0, 1e-14);
  EXPECT_EQ(std::vector<double>(result + 1, result + 5), (std::vector<double>{0, 0, 0, result[0]}));
  EXPECT_EQ(failures_.count, 3);
  EXPECT_EQ(failures_.first, 1);
  const std::string where = "In [ztMathLib (Code) (Beta_CF)] ";
  EXPECT_EQ(lines_.text,
            (std::vector<std::string>{"Error:Overflow (No.6) " + where,
                                      "Error:Invalid procedure call or argument (No.5) " + where}));
}

// RTD has no trap of its own.
TEST_F(ManyCallsTest, the_first_failure_that_reaches_the_caller_is_the_result) {
  double x[] = {0, kHuge, kHuge, 1};
  double result[] = {7, 7, 7, 7};
  EXPECT_EQ(static_cast<ULONG>(many(kRtd, 4, {{x, 8}}, {result, 8})), 0x800A0006U);
  EXPECT_EQ(result[1], 0);
  EXPECT_EQ(result[2], 0);
  EXPECT_NEAR(result[3], 57.29577951308232, 1e-13);
  EXPECT_EQ(failures_.count, 2);
  EXPECT_EQ(failures_.first, 1);
  EXPECT_TRUE(lines_.text.empty());
  EXPECT_EQ(ascii(error_words()), "Overflow");
}

// Some members go through blocks, four calls side by side: as one by one, to the last bit, whatever
// stands beside. Columns that overlap otherwise than one over the other are read call by call.
TEST_F(ManyCallsTest, blocks_answer_as_single_calls_do) {
  constexpr double kOften[] = {0, 1e-310, 1e-16, 0.46875, 0.5,     0.6796875, 1,     1.5,   2,
                               4, 5.9,    12,    100,     171.624, 1e60,      1e306, kHuge, NAN};
  constexpr struct {
    DISPID id;
    std::size_t arguments;
  } kMembers[] = {{51, 1}, {52, 1}, {59, 1}, {53, 2}, {56, 2}, {55, 3}, {kMax, 2}};
  std::mt19937_64 random(63);
  const auto draw = [&](double most) {
    const double even = static_cast<double>(random() >> 11U) * 0x1p-53 * most;
    return random() % 8 != 0 ? even
                             : std::copysign(kOften[random() % std::size(kOften)], even - 0.1);
  };
  for (const auto& [id, arguments] : kMembers) {
    for (const int64_t calls : {2, 3, 5, 256, 1003, 20000}) {
      const auto count = static_cast<std::size_t>(calls);
      std::vector<double> x[3];
      std::vector<VqColumn> columns, ones;
      for (std::size_t k = 0; k < arguments; ++k) {
        for (std::size_t i = 0; i < count; ++i)
          x[k].push_back(draw(k == 2 ? 1 : calls < 9 ? 2 : 30));
        columns.push_back({x[k].data(), 8});
      }
      std::vector<double> one(count), all(count);
      int64_t failed = 0;
      for (std::size_t i = 0; i < count; ++i) {
        ones.clear();
        for (std::size_t k = 0; k < arguments; ++k) ones.push_back({&x[k][i], 8});
        ASSERT_EQ(many(id, 1, ones, {&one[i], 8}), S_OK);
        failed += failures_.count;
      }
      ASSERT_EQ(many(id, calls, columns, {all.data(), 8}), S_OK);
      EXPECT_EQ(failures_.count, failed) << id;
      for (std::size_t i = 0; i < count; ++i) {
        ASSERT_TRUE(std::memcmp(&one[i], &all[i], 8) == 0 ||
                    (std::isnan(one[i]) && std::isnan(all[i])))
            << "member " << id << " of " << x[0][i] << ": " << all[i] << ", not " << one[i];
      }
    }
  }
  double chain[6] = {0.25};
  ASSERT_EQ(many(59, 5, {{chain, 8}}, {chain + 1, 8}), S_OK);
  for (int i = 0; i < 5; ++i) {
    double next = 0;
    ASSERT_EQ(many(59, 1, {{chain + i, 8}}, {&next, 8}), S_OK);
    EXPECT_EQ(chain[i + 1], next);
  }
}

TEST_F(ManyCallsTest, what_cannot_be_called_is_refused_before_the_first_call) {
  double x[] = {1, 2};
  BSTR texts[2] = {};
  struct Stranger {
    const void* vtable;
  } stranger{x};
  const VqColumn one{x, 8}, none{nullptr, 8}, words{texts, sizeof(BSTR)};
  const struct {
    const char* what;
    void* object;
    DISPID id;
    int64_t calls;
    std::vector<VqColumn> columns;
    HRESULT code;
  } rows[] = {
      {"no object", nullptr, kMax, 2, {one, one}, E_POINTER},
      {"another's object", &stranger, kMax, 2, {one, one}, E_NOINTERFACE},
      {"unknown member", maths_.object, 999, 2, {one}, DISP_E_MEMBERNOTFOUND},
      {"too few columns", maths_.object, kMax, 2, {one}, DISP_E_BADPARAMCOUNT},
      {"too many columns", maths_.object, kCeil, 2, {one, one}, DISP_E_BADPARAMCOUNT},
      {"negative number", maths_.object, kCeil, -1, {one}, E_INVALIDARG},
      {"column without memory", maths_.object, kMax, 2, {one, none}, E_POINTER},
      {"a text for each call", maths_.object, kArithmetic, 2, {one, one, words, one}, E_INVALIDARG},
      {"no place for results", maths_.object, kCeil, 2, {one}, E_POINTER},
  };
  for (const auto& row : rows) {
    const VqColumn& results = &row == std::end(rows) - 1 ? none : one;
    EXPECT_EQ(VqCallMany(row.object, row.id, DISPATCH_METHOD, row.calls, row.columns.data(),
                         static_cast<UINT>(row.columns.size()), &results, &failures_),
              row.code)
        << row.what;
    EXPECT_TRUE(failures_.count == 0 && failures_.first == -1) << row.what;
    failures_ = {-5, -5};
    EXPECT_TRUE(x[0] == 1 && x[1] == 2) << row.what;
  }
}

}  // namespace
}  // namespace vqmath63::component::test
