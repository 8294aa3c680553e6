// A host that loads and unloads the component thousands of times, and uses all of it each time:
// what it keeps per thread, and what it holds of the system, goes with it.
#include "apartment.hpp"

namespace {

int lines_said = 0;
void STDMETHODCALLTYPE count_line(const OLECHAR*, LONG, void*) {
  ++lines_said;
}

template <class I>
void make(REFCLSID clsid, REFIID iid, Holder<I>& out) {
  using Get = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
  Holder<IClassFactory> factory;
  exported<Get>("DllGetClassObject")(clsid, IID_IClassFactory, factory.untyped());
  if (factory.get() != nullptr) factory->CreateInstance(nullptr, iid, out.untyped());
}

// Has the loaded component keep whatever it keeps for a thread: the callback for its lines, the
// exceptions caught inside, the text of a failure, its companions.
bool leave_traces(bool everything) {
  const auto set_callback =
      exported<HRESULT(STDMETHODCALLTYPE*)(decltype(&count_line), void*)>("VqSetMessageCallback");
  set_callback(count_line, nullptr);
  Holder<_ztMathLib> maths;
  Holder<_ztIntegrate> integrate;
  make(CLSID_ztMathLib, IID__ztMathLib, maths);
  make(CLSID_ztIntegrate, IID__ztIntegrate, integrate);
  if (maths.get() == nullptr || integrate.get() == nullptr) return false;
  const int lines_before = lines_said;
  HostArray flat({1, 2, 3}, 1), shorter({1, 2}, 1), square({1, 2, 3, 4}, 1, 2);
  float number = 0;
  const HRESULT mismatch = integrate->Integral(&square.array, &flat.array, &number);
  const HRESULT fault = integrate->Integral(&flat.array, &shorter.array, &number);
  const bool done = mismatch != S_OK && fault == S_OK && lines_said > lines_before;
  if (!everything) return done;
  Holder<ITypeInfo> info;
  maths->GetTypeInfo(0, 0, info.place());
  Holder<_ztAnalyseInfo> log;
  make(CLSID_ztAnalyseInfo, IID__ztAnalyseInfo, log);
  Text file("reloads.log"), message(""), version;
  VARIANT_BOOL to_log = VARIANT_TRUE;
  log->get_DLLVersion(&file.text, &message.text, &to_log, &version.text);
  set_callback(nullptr, nullptr);  // so that the line goes to the log
  DeleteFileA("reloads.log");
  integrate->Integral(&flat.array, &shorter.array, &number);
  return done && info.get() != nullptr &&
         GetFileAttributesA("reloads.log") != INVALID_FILE_ATTRIBUTES;
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

void level_stays(const Level& before, int times, const std::string& what) {
  const Level after;
  checks.number(static_cast<double>(after.places), static_cast<double>(before.places),
                what + ": places for per-thread data");
  // A load that wrote to a log leaves 760 bytes, any load of 32 bits 352: likely the thread
  // library's records of its threads.
  constexpr double kMostBytes = sizeof(void*) == 8 ? 100 : 400;
  const auto grown = static_cast<double>(after.bytes) - static_cast<double>(before.bytes);
  checks.that(grown / times < kMostBytes,
              what + ": bytes kept each time: " + std::to_string(grown / times));
  checks.that(after.handles <= before.handles + 8,
              what + ": handles: " + std::to_string(after.handles));
}

/// Who holds the type library in `path` beside this function: the system hands out one object.
ULONG holders_of_type_library(const std::string& path) {
  Holder<ITypeLib> library;
  const std::wstring wide(path.begin(), path.end());
  if (FAILED(LoadTypeLibEx(wide.c_str(), REGKIND_NONE, library.place()))) return ~0UL;
  return library.reset();
}

// Each time from two threads that live on after the unloading.
bool load_and_unload(const char* path, const Apartment& other, int times) {
  for (int i = 0; i < times; ++i) {
    const HMODULE component = LoadLibraryA(path);
    if (component == nullptr) return false;
    const bool everything = i % 10 == 0;  // Wine takes longer to read types than for all the rest
    const bool did = leave_traces(everything);
    bool other_did = false;
    other.run([&] { other_did = leave_traces(everything); });
    const bool free = exported<HRESULT(STDMETHODCALLTYPE*)()>("DllCanUnloadNow")() == S_OK;
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
    const Apartment other;
    checks.that(load_and_unload(words[1], other, 50), "the first loads");
    const Level before;
    checks.that(load_and_unload(words[1], other, kLoads), "loaded and unloaded");
    level_stays(before, kLoads, "loads");
    checks.that(holders_of_type_library(words[1]) == 0, "the type library is let go");
  }
  {
    constexpr int kThreads = 1000;
    const HMODULE component = LoadLibraryA(words[1]);
    int did = 0;
    const auto threads = [&](int times) {
      for (int i = 0; i < times; ++i) {
        std::thread([&] { did += leave_traces(false) ? 1 : 0; }).join();
      }
    };
    threads(50);
    const Level before;
    threads(kThreads);
    level_stays(before, kThreads, "threads");
    checks.that(did == 50 + kThreads, "each thread was served");
    FreeLibrary(component);
  }
  CoUninitialize();
  return checks.close();
}
