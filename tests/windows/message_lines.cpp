// Where message lines go. One log of several processes: every line of each is there, whole and in
// its order. The system's debug output, of a program that has no console. The program has none
// itself, and starts itself again as each of the processes that write: with a letter to the log,
// with "0" nowhere.
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

// Another process of this program, without standard streams.
PROCESS_INFORMATION start(wchar_t word, DWORD flags) {
  wchar_t self[MAX_PATH] = L"";
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring command = L"\"" + std::wstring(self) + L"\" " + word;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  PROCESS_INFORMATION process{};
  checks.that(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, flags, nullptr,
                             nullptr, &startup, &process) != FALSE,
              "another process");
  CloseHandle(process.hThread);
  return process;
}

// A call that fails, in a program that has nobody told where lines go.
int fail_unheard() {
  Holder<_ztIntegrate> integrate;
  create(CLSID_ztIntegrate, integrate);
  HostArray x({0, 1}, 1), shorter({0}, 1);
  float area = NAN;
  return integrate->Integral(&x.array, &shorter.array, &area) == S_OK ? 0 : 1;
}

// What a debugger of such a program is shown.
void debug_output() {
  const PROCESS_INFORMATION process = start(L'0', DEBUG_ONLY_THIS_PROCESS);
  std::string shown;
  DEBUG_EVENT event{};
  while (event.dwDebugEventCode != EXIT_PROCESS_DEBUG_EVENT && WaitForDebugEvent(&event, 60'000)) {
    const OUTPUT_DEBUG_STRING_INFO& text = event.u.DebugString;
    if (event.dwDebugEventCode == OUTPUT_DEBUG_STRING_EVENT && text.fUnicode == 0) {
      std::vector<char> line(text.nDebugStringLength);
      ReadProcessMemory(process.hProcess, text.lpDebugStringData, line.data(), line.size(),
                        nullptr);
      shown += line.data();
    }
    // Its own exceptions are for it to catch; the first breakpoint is the debugger's.
    const bool own = event.dwDebugEventCode == EXCEPTION_DEBUG_EVENT &&
                     event.u.Exception.ExceptionRecord.ExceptionCode != EXCEPTION_BREAKPOINT;
    ContinueDebugEvent(event.dwProcessId, event.dwThreadId,
                       own ? DBG_EXCEPTION_NOT_HANDLED : DBG_CONTINUE);
  }
  CloseHandle(process.hProcess);
  checks.that(shown ==
                  "Error:Subscript out of range (No.9) In [ztAnalyse - Integration (Code) "
                  "(Trapezoidal)] \n",
              "debug output: " + shown);
}

void start_writers(int count) {
  std::vector<HANDLE> processes;
  for (int p = 0; p < count; ++p) {
    processes.push_back(start(static_cast<wchar_t>(L'a' + p), 0).hProcess);
  }
  for (const HANDLE process : processes) {
    checks.that(WaitForSingleObject(process, 120'000) == WAIT_OBJECT_0, "it ends");
    CloseHandle(process);
  }
}

}  // namespace

int main(int argc, char** argv) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (argc > 1) return argv[1][0] == '0' ? fail_unheard() : write(argv[1][0]);
  debug_output();
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
