// One log of several processes: every line of each is there, whole and in its order.
// The program starts itself again, with a letter, as each of the processes that write.
#include "check.hpp"

namespace {

constexpr int kLines = 150;
const wchar_t kLog[] = L"gr\u00F6\u00DFe.log";

// Has a line written to the log: the version text, the message and " OK".
void say(const std::string& message) {
  Holder<_ztAnalyseInfo> info;
  create(CLSID_ztAnalyseInfo, info);
  Text log, startup(message), version;
  log.text = SysAllocString(kLog);
  VARIANT_BOOL on = VARIANT_TRUE;
  info->get_DLLVersion(&log.text, &startup.text, &on, &version.text);
}

int write(char letter) {
  for (int i = 0; i < kLines; ++i) {
    say(letter + std::to_string(i) + std::string(i % 50 == 0 ? 9000 : 5, '.'));
  }
  return 0;
}

void start_writers(int count) {
  wchar_t self[MAX_PATH] = L"";
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::vector<HANDLE> processes;
  for (int p = 0; p < count; ++p) {
    std::wstring command = L"\"" + std::wstring(self) + L"\" " + static_cast<wchar_t>(L'a' + p);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const BOOL begun = CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                      nullptr, &startup, &process);
    if (!checks.that(begun != FALSE, "another process")) continue;
    CloseHandle(process.hThread);
    processes.push_back(process.hProcess);
  }
  for (const HANDLE process : processes) {
    checks.that(WaitForSingleObject(process, 120'000) == WAIT_OBJECT_0, "it ends");
    CloseHandle(process);
  }
}

}  // namespace

int main(int argc, char** argv) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (argc > 1) return write(argv[1][0]);
  constexpr int kWriters = 3;
  DeleteFileW(kLog);
  start_writers(kWriters);
  // What a full disk has left of a line ends there.
  std::FILE* log = _wfopen(kLog, L"ab");
  if (!checks.that(log != nullptr, "a log to append to")) return checks.close();
  std::fputs("half a li", log);
  std::fclose(log);
  say("the next");

  log = _wfopen(kLog, L"rb");
  int next[kWriters] = {};
  std::vector<std::string> others;
  std::vector<char> line(16'000);
  while (log != nullptr && std::fgets(line.data(), static_cast<int>(line.size()), log) != nullptr) {
    const std::string text = line.data();
    const auto dots = text.find("..");
    const auto word = dots == text.npos ? dots : text.rfind(' ', dots);
    if (word == text.npos || text[word + 1] < 'a' || text[word + 1] >= 'a' + kWriters) {
      others.push_back(text);
      continue;
    }
    int& i = next[text[word + 1] - 'a'];
    std::string wanted = std::to_string(i) + std::string(i % 50 == 0 ? 9000 : 5, '.') + ": OK\r\n";
    checks.that(text.substr(word + 2) == wanted, "line " + text.substr(0, 60));
    ++i;
  }
  for (const int count : next) checks.number(count, kLines, "lines of a process");
  // The version text begins the session of each process.
  checks.number(static_cast<double>(others.size()), kWriters + 3, "other lines");
  checks.that(others.size() > 2 && others.end()[-3] == "half a li\r\n", "the half line");
  checks.that(others.back().find(" the next: OK\r\n") != std::string::npos, "the next line");
  if (log != nullptr) std::fclose(log);
  CoUninitialize();
  return checks.close();
}
