// A host that loads and unloads the component thousands of times, and uses all of it each time:
// what it keeps per thread, and what it holds of the system, goes with it.
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "check.hpp"

namespace {

// Runs jobs one after another on a thread of its own, which lives on between them.
class Worker {
 public:
  Worker() : thread_([this] { work(); }) {}
  ~Worker() {
    run({});
    thread_.join();
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  void run(std::function<void()> job) {
    std::unique_lock<std::mutex> lock(mutex_);
    job_ = std::move(job);
    ready_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !ready_; });
  }

 private:
  void work() {
    CoInitialize(nullptr);
    std::unique_lock<std::mutex> lock(mutex_);
    for (bool more = true; more;) {
      changed_.wait(lock, [this] { return ready_; });
      more = static_cast<bool>(job_);
      if (more) job_();
      ready_ = false;
      changed_.notify_all();
    }
    CoUninitialize();
  }
  std::mutex mutex_;
  std::condition_variable changed_;
  std::function<void()> job_;
  bool ready_ = false;
  std::thread thread_;
};

int lines_said = 0;
void STDMETHODCALLTYPE count_line(const OLECHAR*, LONG, void*) {
  ++lines_said;
}

// Has the loaded component keep whatever it keeps for a thread: the callback for its lines, the
// exceptions caught inside, the text of a failure, its companions.
bool leave_traces(HMODULE component, bool everything) {
  using Get = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
  using SetCallback =
      HRESULT(STDMETHODCALLTYPE*)(void(STDMETHODCALLTYPE*)(const OLECHAR*, LONG, void*), void*);
  const auto exported = [component](const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(component, name));
  };
  const auto set_callback = reinterpret_cast<SetCallback>(exported("VqSetMessageCallback"));
  set_callback(count_line, nullptr);
  const auto make = [&exported](REFCLSID clsid, REFIID iid, void** out) {
    Holder<IClassFactory> factory;
    return FAILED(reinterpret_cast<Get>(exported("DllGetClassObject"))(clsid, IID_IClassFactory,
                                                                       factory.untyped()))
               ? E_FAIL
               : factory->CreateInstance(nullptr, iid, out);
  };
  Holder<_ztMathLib> maths;
  Holder<_ztIntegrate> integrate;
  if (FAILED(make(CLSID_ztMathLib, IID__ztMathLib, maths.untyped())) ||
      FAILED(make(CLSID_ztIntegrate, IID__ztIntegrate, integrate.untyped()))) {
    return false;
  }
  const int lines_before = lines_said;
  HostArray flat({1, 2, 3}, 1);
  HostArray square({1, 2, 3, 4}, 1, 2);
  float number = 0;
  const HRESULT mismatch = integrate->Integral(&square.array, &flat.array, &number);
  HostArray shorter({1, 2}, 1);
  const HRESULT fault = integrate->Integral(&flat.array, &shorter.array, &number);
  bool done = mismatch != S_OK && fault == S_OK && lines_said > lines_before;
  if (everything) {
    Holder<ITypeInfo> info;
    maths->GetTypeInfo(0, 0, info.place());
    Holder<_ztAnalyseInfo> log;
    make(CLSID_ztAnalyseInfo, IID__ztAnalyseInfo, log.untyped());
    Text file("reloads.log");
    Text message("");
    Text version;
    VARIANT_BOOL to_log = VARIANT_TRUE;
    log->get_DLLVersion(&file.text, &message.text, &to_log, &version.text);
    set_callback(nullptr, nullptr);  // so that the line goes to the log
    DeleteFileA("reloads.log");
    integrate->Integral(&flat.array, &shorter.array, &number);
    done = done && info.get() != nullptr &&
           GetFileAttributesA("reloads.log") != INVALID_FILE_ATTRIBUTES;
  }
  return done;
}

/// How many places for per-thread data the process has left.
std::size_t free_places() {
  std::vector<DWORD> places;
  for (DWORD place = TlsAlloc(); place != TLS_OUT_OF_INDEXES; place = TlsAlloc()) {
    places.push_back(place);
  }
  for (const DWORD place : places) TlsFree(place);
  return places.size();
}

/// Bytes in use on all heaps of the process.
std::size_t bytes_in_use() {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(64, heaps);
  std::size_t bytes = 0;
  for (DWORD i = 0; i < count && i < 64; ++i) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heaps[i]);
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return bytes;
}

struct Level {
  std::size_t places = free_places();
  std::size_t bytes = bytes_in_use();
  DWORD handles = 0;
  Level() { GetProcessHandleCount(GetCurrentProcess(), &handles); }
};

void level_stays(const Level& before, const Level& after, int times, const std::string& what) {
  checks.that(after.places == before.places,
              what + ": places for per-thread data: " + std::to_string(before.places) + ", then " +
                  std::to_string(after.places));
  // A load that wrote to a log leaves 760 bytes, likely the thread library's records of its
  // threads.
  const auto grown = static_cast<double>(after.bytes) - static_cast<double>(before.bytes);
  checks.that(grown / times < 100.0,
              what + ": bytes kept each time: " + std::to_string(grown / times));
  checks.that(after.handles <= before.handles + 8,
              what + ": handles: " + std::to_string(before.handles) + ", then " +
                  std::to_string(after.handles));
}

/// Who holds the type library in `path` beside this function: the system hands out one object.
ULONG holders_of_type_library(const char* path) {
  const std::string ascii = path;
  Holder<ITypeLib> library;
  const std::wstring wide(ascii.begin(), ascii.end());
  if (FAILED(LoadTypeLibEx(wide.c_str(), REGKIND_NONE, library.place()))) return ~0UL;
  return library.reset();
}

// Each time from two threads that live on after the unloading.
bool load_and_unload(const char* path, Worker& other, int times) {
  for (int i = 0; i < times; ++i) {
    const HMODULE component = LoadLibraryA(path);
    bool other_did = false;
    const bool everything = i % 10 == 0;  // Wine takes longer to read types than for all the rest
    const bool did = component != nullptr && leave_traces(component, everything);
    other.run([&] { other_did = component != nullptr && leave_traces(component, everything); });
    using CanUnload = HRESULT(STDMETHODCALLTYPE*)();
    const auto can_unload = reinterpret_cast<CanUnload>(
        reinterpret_cast<void*>(GetProcAddress(component, "DllCanUnloadNow")));
    const bool free = can_unload() == S_OK;
    FreeLibrary(component);
    if (!did || !other_did || !free || GetModuleHandleA("vqmath63.dll") != nullptr) {
      std::printf("%s %s: load %d\n", did ? "" : "a failed call", free ? "" : "held", i);
      return false;
    }
  }
  return true;
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) return 2;
  CoInitialize(nullptr);
  {
    constexpr int kLoads = 3000;
    Worker other;
    checks.that(load_and_unload(words[1], other, 50), "the first loads");
    const Level before;
    checks.that(load_and_unload(words[1], other, kLoads), "loaded and unloaded");
    level_stays(before, Level(), kLoads, "loads");
    checks.that(holders_of_type_library(words[1]) == 0, "the type library is let go");
  }
  {
    constexpr int kThreads = 1000;
    const HMODULE component = LoadLibraryA(words[1]);
    int did = 0;
    const auto threads = [&](int times) {
      for (int i = 0; i < times; ++i) {
        std::thread([&] { did += leave_traces(component, false) ? 1 : 0; }).join();
      }
    };
    threads(50);
    const Level before;
    threads(kThreads);
    level_stays(before, Level(), kThreads, "threads");
    checks.that(did == 50 + kThreads, "each thread was served");
    FreeLibrary(component);
  }
  CoUninitialize();
  return checks.close();
}
