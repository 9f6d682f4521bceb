// The main window in-process, with the program's preferences put back and every prompt scripted.
#pragma once
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <memory>

#include "app/Main.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "ui/win.h"

namespace vxtest {

class MainWindowTest : public ::testing::Test {
 protected:
  MainWindowTest() {
    INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES | ICC_BAR_CLASSES | ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&icc);
  }
  static std::unique_ptr<vx::Main> Open(const std::string& commandLine = "",
                                        const vx::Environment& env = vx::DetectEnvironment()) {
    auto m = std::make_unique<vx::Main>();
    EXPECT_TRUE(m->Create(env, commandLine, false));
    ui::DoEvents();
    return m;
  }
  // Closes as the close box does; true when the window went away.
  static bool Close(vx::Main& m) {
    SendMessageA(m.hwnd(), WM_CLOSE, 0, 0);
    ui::DoEvents();
    return m.hwnd() == nullptr;
  }

  RegistryScope prefs{{kProgramKey}};
  ScriptedSeam seam;
  SeamScope seamScope{seam};
};

}  // namespace vxtest
