// Objects and threads that come and go leave nothing behind.
#include <fstream>
#include <thread>

#include "component/class_list.hpp"
#include "worked_calls.hpp"

namespace vqmath63::automation::test {
namespace {

// Resident memory of the process, in pages.
long resident_pages() {
  long all = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident;
}

// After `work` a few times, so that what is kept for good is there, it leaves everything level.
template <class Work>
void stays_level(int times, const Work& work) {
  for (int i = 0; i < 50; ++i) work(i);
  const std::int64_t blocks = blocks_of_all_threads();
  const long pages = resident_pages();
  for (int i = 0; i < times; ++i) work(i);
  EXPECT_EQ(blocks_of_all_threads(), blocks);
  if (VQ_HAS_OWN_MALLOC) {  // the sanitizer keeps freed memory for a while
    EXPECT_LE(resident_pages(), pages + 500);
  }
}

TEST(MemoryLevelTest, a_million_objects) {
  const auto classes = component::classes();
  ASSERT_EQ(classes.size(), 9U);
  stays_level(1'000'000, [&](int i) {
    const ClassInfo& info = *classes[static_cast<std::size_t>(i) % classes.size()];
    void* made = nullptr;
    const bool done =
        info.create(info.iid, &made) == S_OK && static_cast<IDispatch*>(made)->Release() == 0;
    if (!done) ADD_FAILURE() << info.name;
  });
}

TEST(MemoryLevelTest, two_thousand_threads) {
  const calls::LogFolder folder;
  const calls::Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  const auto classes = component::classes();
  int calls_made = 0;
  stays_level(2000, [&](int i) {
    std::thread([&] {
      const std::string name = classes[static_cast<std::size_t>(i) % classes.size()]->name;
      if (name == "ztAnalyseInfo") return;  // it writes a log
      calls::NameHost host(i % 2 == 0);
      calls_made += calls::Run(interfaces, host, name).all(VQ_TEST_DATA "/calls.tsv");
    }).join();
  });
  EXPECT_GE(calls_made, 20000);
}

}  // namespace
}  // namespace vqmath63::automation::test
