// A thread of a test's own that objects live on.
#pragma once

#include <functional>
#include <thread>

#include "check.hpp"

/// A thread with an apartment, in which its objects live and run.
class Apartment {
 public:
  Apartment() {
    HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    thread_ = std::thread([this, ready] {
      CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
      MSG message;
      PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);  // there is a queue from here on
      id_ = GetCurrentThreadId();
      SetEvent(ready);
      while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_APP && message.hwnd == nullptr) {
          (*reinterpret_cast<std::function<void()>*>(message.lParam))();
          SetEvent(reinterpret_cast<HANDLE>(message.wParam));
        } else {
          DispatchMessageW(&message);
        }
      }
      CoUninitialize();
    });
    WaitForSingleObject(ready, INFINITE);
    CloseHandle(ready);
  }
  ~Apartment() {
    PostThreadMessageW(id_, WM_QUIT, 0, 0);
    thread_.join();
  }
  void run(std::function<void()> work) const {
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    PostThreadMessageW(id_, WM_APP, reinterpret_cast<WPARAM>(done),
                       reinterpret_cast<LPARAM>(&work));
    WaitForSingleObject(done, INFINITE);
    CloseHandle(done);
  }

 private:
  std::thread thread_;
  DWORD id_ = 0;
};
