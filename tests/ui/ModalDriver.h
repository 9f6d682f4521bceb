#pragma once
// Drives a real modal dialog from inside its own message loop. Each step runs on a tick of a thread
// timer, so the loop has handled whatever the previous step posted (keys go through the dialog
// manager as typed keys would) before the next step looks. A dialog still open after the last step
// is closed with Cancel and reported through leftOpen(), so a broken test cannot hang the run.
#include <windows.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace vxtest {

// The visible dialog of this thread with that title, or nullptr.
inline HWND FindThreadDialog(const std::string& title) {
  struct Search { const std::string* title; HWND found; } search{&title, nullptr};
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND h, LPARAM lp) -> BOOL {
        auto* s = reinterpret_cast<Search*>(lp);
        char cls[32] = {}, text[256] = {};
        GetClassNameA(h, cls, sizeof cls);
        GetWindowTextA(h, text, sizeof text);
        if (std::string(cls) == "#32770" && *s->title == text && IsWindowVisible(h)) {
          s->found = h;
          return FALSE;
        }
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

// A key typed into the window that has the focus.
inline void PostKey(UINT vk) {
  HWND target = GetFocus();
  PostMessageA(target, WM_KEYDOWN, vk, 1);
  PostMessageA(target, WM_KEYUP, vk, 0xC0000001);
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
  ModalSteps& operator=(const ModalSteps&) = delete;

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
    if (self->next_ < self->steps_.size()) {
      self->steps_[self->next_++](dialog);
    } else {
      self->leftOpen_ = true;
      EndDialog(dialog, IDCANCEL);
    }
    self->busy_ = false;
  }

  std::string title_;
  std::vector<Step> steps_;
  size_t next_ = 0;
  bool leftOpen_ = false;
  bool busy_ = false;
  UINT_PTR timer_ = 0;
};

}  // namespace vxtest
