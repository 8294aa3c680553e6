// The worked calls of tests/data/calls.tsv, through the vtables and by name.
#include <iostream>

#include "native_hosts.hpp"

namespace vqmath63::component::test {
namespace {

using namespace calls;

TEST(CallsTest, come_out_on_each_road_as_the_table_has_them) {
  VtableHost vtable;
  NameHost typed(false), untyped(true);
  ManyHost many;
  const std::pair<const char*, Host*> roads[] = {{"through the vtables", &vtable},
                                                 {"by name", &typed},
                                                 {"by name, untyped", &untyped},
                                                 {"many at once", &many}};
  const Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  for (const auto& [road, host] : roads) {
    SCOPED_TRACE(road);
    const LogFolder folder;
    const int made = calls::Run(interfaces, *host).all(VQ_TEST_DATA "/calls.tsv");
    std::cout << made << " calls " << road << "\n";
    EXPECT_GE(made, 200);
  }
}

}  // namespace
}  // namespace vqmath63::component::test
