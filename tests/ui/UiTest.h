#pragma once
// Shared scaffolding for the UI tests: a host window, well-known paths, and a driver for real modal
// dialogs. Each driver step runs on a thread-timer tick, so the modal loop has handled whatever the
// previous step posted before the next one looks; a dialog still open after the last step is closed
// with Cancel and reported, so a broken test cannot hang the run.
#include <windows.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ui/win.h"

namespace vxtest {

class HostWindow : public ui::Window {
 public:
  explicit HostWindow(int width = 480, int height = 480) {
    Create("VxUiTestHost", 0, WS_OVERLAPPEDWINDOW | WS_VISIBLE, "UI test", 40, 40, width, height, nullptr, nullptr);
  }
};

inline std::string Shell32() {
  char dir[MAX_PATH];
  return std::string(dir, GetSystemDirectoryA(dir, MAX_PATH)) + "\\shell32.dll";
}

// A folder of this process's own under %TEMP% (test runs may overlap).
inline std::string TempFolder(const char* name) {
  char buf[MAX_PATH];
  GetTempPathA(MAX_PATH, buf);
  std::string path = std::string(buf) + name;
  path += std::to_string(GetCurrentProcessId());
  CreateDirectoryA(path.c_str(), nullptr);
  return path;
}

// The visible dialog of this thread with that title, or nullptr.
inline HWND FindThreadDialog(const std::string& title) {
  std::pair<const std::string*, HWND> search{&title, nullptr};
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND h, LPARAM lp) -> BOOL {
        auto* s = reinterpret_cast<std::pair<const std::string*, HWND>*>(lp);
        char cls[32] = {};
        GetClassNameA(h, cls, sizeof cls);
        if (std::string(cls) != "#32770" || ui::GetText(h) != *s->first || !IsWindowVisible(h)) return TRUE;
        s->second = h;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.second;
}

// A key typed into the window that has the focus.
inline void PostKey(UINT vk) {
  PostMessageA(GetFocus(), WM_KEYDOWN, vk, 1);
  PostMessageA(GetFocus(), WM_KEYUP, vk, 0xC0000001);
}

inline void Click(HWND button) { SendMessageA(button, BM_CLICK, 0, 0); }

class ModalSteps {
 public:
  using Step = std::function<void(HWND dialog)>;
  ModalSteps(std::string title, std::vector<Step> steps) : title_(std::move(title)), steps_(std::move(steps)) {
    current() = this;
    timer_ = SetTimer(nullptr, 0, 40, &Tick);
  }
  ~ModalSteps() {
    KillTimer(nullptr, timer_);
    current() = nullptr;
  }
  ModalSteps(const ModalSteps&) = delete;
  bool leftOpen() const { return leftOpen_; }
  size_t ran() const { return next_; }

 private:
  static ModalSteps*& current() {
    static ModalSteps* instance = nullptr;
    return instance;
  }
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    ModalSteps* self = current();
    if (!self || self->busy_) return;
    HWND dialog = FindThreadDialog(self->title_);
    if (!dialog) return;
    self->busy_ = true;
    if (self->next_ < self->steps_.size()) self->steps_[self->next_++](dialog);
    else self->leftOpen_ = true, EndDialog(dialog, IDCANCEL);
    self->busy_ = false;
  }

  std::string title_;
  std::vector<Step> steps_;
  size_t next_ = 0;
  bool leftOpen_ = false, busy_ = false;
  UINT_PTR timer_ = 0;
};

// Calls show(), which opens the dialog of that title, and runs every step inside it.
template <class Show>
auto RunModal(const std::string& title, std::vector<ModalSteps::Step> steps, Show show) {
  const size_t expected = steps.size();
  ModalSteps driver(title, std::move(steps));
  auto result = show();
  EXPECT_EQ(driver.ran(), expected) << "the dialog closed before every step ran";
  EXPECT_FALSE(driver.leftOpen()) << "the dialog had to be closed by the test";
  return result;
}

}  // namespace vxtest
