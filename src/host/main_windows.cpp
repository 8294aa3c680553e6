// Where vqhost.exe starts: makes of Windows' command line, console and streams what the program
// works with.
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <string>
#include <vector>

#include "automation/text.hpp"
#include "host/program.hpp"

namespace {

// The console shows UTF-8 while the program runs.
class Utf8Console {
 public:
  Utf8Console() : before_(GetConsoleOutputCP()) { SetConsoleOutputCP(CP_UTF8); }
  ~Utf8Console() {
    if (before_ != 0) SetConsoleOutputCP(before_);
  }
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  UINT before_;
};

// The component's objects live in an apartment of their own thread.
class Apartment {
 public:
  Apartment() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~Apartment() {
    if (entered_) CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  bool entered_;
};

}  // namespace

int wmain(int argc, wchar_t** argv) {
  // The same bytes as on other systems: lines end with a line feed.
  for (std::FILE* stream : {stdin, stdout, stderr}) {
    if (_fileno(stream) >= 0) _setmode(_fileno(stream), _O_BINARY);
  }
  const Utf8Console console;
  const Apartment apartment;
  std::vector<std::string> texts;
  for (int i = 0; i < argc; ++i) texts.push_back(vqmath63::automation::utf8(argv[i]));
  std::vector<char*> words;
  for (std::string& text : texts) words.push_back(text.data());
  words.push_back(nullptr);
  return vqmath63::host::run_program(argc, words.data());
}
