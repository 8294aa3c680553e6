// The worked calls of all classes on eight threads at once, with the component closed down at
// random in between: each thread gets what it gets alone. Built with ThreadSanitizer (preset
// "threads") it also shows that no thread touches what another one does.
#include <random>
#include <thread>

#include "component/native_hosts.hpp"

namespace vqmath63::component::test {
namespace {

// A host by the vtable or by name, with a random generator of its own.
template <class Base>
class RestlessHost final : public Base {
 public:
  template <class... Words>
  explicit RestlessHost(unsigned seed, Words... words) : Base(words...), random_(seed) {}
  ~RestlessHost() override { info_->Release(); }

  void create(const std::string& class_name, bool to_log) override {
    of_log_ = to_log;
    Base::create(class_name, false);  // one folder, many threads
  }
  HRESULT call(const std::string& kind, const std::string& name, const calls::Member& member,
               std::vector<calls::Variable>& sent, VARIANT& result) override {
    const std::vector<std::string> before = this->lines;
    switch (random_() % 16) {
      case 0:
        EXPECT_EQ(automation::test::call(info_, u"CloseDown", {}).hr, S_OK);
        ++close_downs;
        break;
      case 1:
        EXPECT_FALSE(described(u"vq140Analyse.ztAnalyseInfo").empty());
        EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
        break;
      default:
        break;
    }
    this->lines = before;
    return Base::call(kind, name, member, sent, result);
  }
  void failed(int line, const std::string& what) override {
    const bool about_log = what.find("lines:") != what.npos || what.find(" lines, ") != what.npos;
    if (!of_log_ || !about_log) Base::failed(line, what);
  }

  int close_downs = 0;

 private:
  std::mt19937 random_;
  IDispatch* info_ = this->made("ztAnalyseInfo");
  bool of_log_ = false;
};

TEST(CallsOnThreadsTest, give_each_thread_its_own) {
  constexpr unsigned kThreads = 8;
  constexpr int kRounds = 3;
  const calls::LogFolder folder;
  const calls::Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  std::array<int, kThreads> made{}, close_downs{};
  const auto work = [&](unsigned k, auto&& host) {
    for (int round = 0; round < kRounds; ++round) {
      made[k] += calls::Run(interfaces, host).all(VQ_TEST_DATA "/calls.tsv");
    }
    close_downs[k] = host.close_downs;
  };
  std::vector<std::thread> threads;
  for (unsigned k = 0; k < kThreads; ++k) {
    threads.emplace_back([&work, k] {
      if (k % 2 == 0) work(k, RestlessHost<calls::VtableHost>(k));
      if (k % 2 == 1) work(k, RestlessHost<calls::NameHost>(k, k % 4 == 1));
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (unsigned k = 0; k < kThreads; ++k) {
    EXPECT_GE(made[k], 200 * kRounds);
    EXPECT_GE(close_downs[k], 10);
  }
}

}  // namespace
}  // namespace vqmath63::component::test
