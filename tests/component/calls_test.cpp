// The worked calls of tests/data/calls.tsv, through the vtables and by name.
#include <iostream>

#include "native_hosts.hpp"

namespace vqmath63::component::test {
namespace {

using namespace calls;

void run(Host& host, const char* how) {
  const LogFolder folder;
  const Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  const int calls = Run(interfaces, host).all(VQ_TEST_DATA "/calls.tsv");
  std::cout << calls << " calls " << how << "\n";
  EXPECT_GE(calls, 200);
}

TEST(CallsTest, through_the_vtables) {
  VtableHost host;
  run(host, "through the vtables");
}

TEST(CallsTest, by_name_with_variables_of_the_exact_types) {
  NameHost host(false);
  run(host, "by name");
}

TEST(CallsTest, by_name_with_untyped_variables) {
  NameHost host(true);
  run(host, "by name, untyped");
}

TEST(CallsTest, many_at_once) {
  ManyHost host;
  run(host, "many at once");
}

// Of two members that look alike to the compiler, each swapped entry of the vtable is seen. Silent
// and ProductionProfile of ztAccumulate are only stored.
TEST(CallsTest, tell_members_of_one_signature_apart) {
  struct Seen {};
  struct Listener final : VtableHost {
    void failed(int, const std::string& what) override {
      if (!what.starts_with("lines:")) throw Seen{};  // scripts do not see the lines
    }
  } host;
  const LogFolder folder;
  Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  auto& members = interfaces.members();
  const auto class_of = [](const auto& entry) {
    return entry.first.substr(0, entry.first.find(' '));
  };
  std::string unseen;
  int pairs = 0;
  for (auto a = members.begin(); a != members.end(); ++a) {
    for (auto b = std::next(a); b != members.end(); ++b) {
      if (class_of(*a) != class_of(*b) || !a->second.same_signature(b->second)) continue;
      std::swap(a->second.slot, b->second.slot);
      try {
        calls::Run(interfaces, host, class_of(*a)).all(VQ_TEST_DATA "/calls.tsv");
        unseen += a->first + " and " + b->first + "\n";
      } catch (const Seen&) {
      }
      host.lines.clear();
      std::swap(a->second.slot, b->second.slot);
      ++pairs;
    }
  }
  EXPECT_EQ(unseen, "ztAccumulate let ProductionProfile and ztAccumulate let Silent\n");
  EXPECT_GE(pairs, 1000);
}

}  // namespace
}  // namespace vqmath63::component::test
