// What the worked calls do not reach: arrays of other types, and how lines are marked.
#include "component_host.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::system::test;
using namespace automation::test;

TEST(ClassesTest, arrays_of_doubles_and_odd_bounds) {
  const Instance<IDispatch> object(u"vq140Analyse.ztStatistics", IID_IDispatch);
  const struct {
    Value x;
    bool ok;
  } rows[] = {{array(VT_R8, 1, {1, 3}), true},
              {array(VT_R4, 0, {7}), false},
              {array(VT_R4, 1, {}), false},
              {array(VT_R4, 2, {1, 3}), false}};
  for (const auto& row : rows) {
    const Sent x(row.x, kByRef);
    const Sent ok(boolean(!row.ok), kVariant);
    EXPECT_EQ(call(object.object, u"Statistics", {x.variant, ok.variant}).hr, S_OK);
    EXPECT_EQ(shown(ok.variable.v), shown(boolean(row.ok).v)) << listed(row.x.v);
    EXPECT_EQ(shown(get(object.object, u"xMedian").result.v), shown(r4(2).v)) << listed(row.x.v);
  }
}

// Untyped variables: what a member erases is erased, and what it leaves is the host's own.
TEST(ClassesTest, erased_and_untouched_arrays_of_other_types) {
  Lines lines;
  const Instance<IDispatch> object(u"vq140Analyse.ztStatistics", IID_IDispatch);
  const Sent null(r4(2), kByRef), unset(bare(VT_ARRAY | VT_R4), kByRef), count(i4(5), kByRef);
  const Sent result(array(VT_R8, 1, {1, 2}), kVariant), ok(boolean(true), kByRef);
  EXPECT_EQ(call(object.object, u"RemoveNulls",
                 {null.variant, unset.variant, result.variant, count.variant, ok.variant})
                .hr,
            S_OK);
  EXPECT_EQ(listed(result.variable.v), "none");
  const Sent mask(array(VT_BOOL, 1, {-1, -1}), kByRef);
  const Sent x(array(VT_R8, 1, {0.1, 0.2}), kByRef), y(array(VT_R8, 1, {0.3, 0.4}), kVariant);
  EXPECT_EQ(call(object.object, u"MaskValuesXY",
                 {mask.variant, x.variant, y.variant, count.variant, ok.variant})
                .hr,
            S_OK);
  EXPECT_EQ(static_cast<double*>(x.variable.v.parray->pvData)[0], 0.1);
  EXPECT_EQ(static_cast<double*>(y.variable.v.parray->pvData)[1], 0.4);
}

TEST(ClassesTest, the_close_down_line_is_marked) {
  Lines lines;
  const Instance<IDispatch> info(u"vq140Analyse.ztAnalyseInfo", IID_IDispatch);
  const Sent file(empty(), kVariant);
  const Value message = text({u"The\0client", 10});  // which must not end the line
  const Answer version = get(info.object, u"dllversion", {file.variant, message.v});
  EXPECT_EQ(shown(file.variable.v), shown(text(u"vqmath63.txt").v));
  EXPECT_EQ(call(info.object, u"CloseDown", {}).hr, S_OK);
  const std::string words = ascii(characters(version.result.v.bstrVal));
  EXPECT_EQ(lines.text,
            (std::vector<std::string>{words + " The client: OK", "vqmath63 v6.3.2436 Close Down"}));
  EXPECT_EQ(lines.close_down, (std::vector<bool>{false, true}));
}

}  // namespace
}  // namespace vqmath63::component::test
