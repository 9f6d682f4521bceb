// The fallbacks for functions that only later Windows have. The subclass chain of our own is what the
// program uses where comctl32 has no SetWindowSubclass (Windows 95 to 2000), so it is tested on its own.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "registry/LaterApi.h"

namespace {

std::vector<std::string>& Calls() {
  static std::vector<std::string> calls;
  return calls;
}

LRESULT CALLBACK Base(HWND h, UINT msg, WPARAM wp, LPARAM lp) {
  if (msg == WM_USER) {
    Calls().push_back("window");
    return 1;
  }
  return DefWindowProcA(h, msg, wp, lp);
}

// Each link adds its data to the result of the ones below it; WM_USER + 1 sends WM_USER again from inside.
LRESULT CALLBACK Link(HWND h, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id, DWORD_PTR data) {
  if (msg == WM_USER + 1) return SendMessageA(h, WM_USER, 0, 0) + 1000;
  if (msg != WM_USER) return later::own::DefSubclassProc(h, msg, wp, lp);
  Calls().push_back("link" + std::to_string(id));
  return later::own::DefSubclassProc(h, msg, wp, lp) + static_cast<LRESULT>(data);
}

// Removes itself while it handles a message: the rest of the chain still runs.
LRESULT CALLBACK SelfRemoving(HWND h, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id, DWORD_PTR) {
  if (msg == WM_USER) {
    later::own::RemoveWindowSubclass(h, SelfRemoving, id);
    Calls().push_back("once");
  }
  return later::own::DefSubclassProc(h, msg, wp, lp);
}

class OwnSubclass : public ::testing::Test {
 protected:
  OwnSubclass() {
    WNDCLASSA wc{};
    wc.lpfnWndProc = Base;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.lpszClassName = "VxSubclassTest";
    RegisterClassA(&wc);
    hwnd = CreateWindowExA(0, "VxSubclassTest", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, wc.hInstance, nullptr);
    Calls().clear();
  }
  ~OwnSubclass() override {
    if (IsWindow(hwnd)) DestroyWindow(hwnd);
  }
  LRESULT Send(UINT msg = WM_USER) {
    Calls().clear();
    return SendMessageA(hwnd, msg, 0, 0);
  }
  WNDPROC Proc() const { return reinterpret_cast<WNDPROC>(GetWindowLongPtrA(hwnd, GWLP_WNDPROC)); }
  HWND hwnd = nullptr;
};

TEST_F(OwnSubclass, ChainRunsNewestFirstAndGivesTheWindowBackWhenEmpty) {
  ASSERT_TRUE(hwnd);
  using Calls_ = std::vector<std::string>;
  ASSERT_TRUE(later::own::SetWindowSubclass(hwnd, Link, 1, 10));
  ASSERT_TRUE(later::own::SetWindowSubclass(hwnd, Link, 2, 100));
  EXPECT_EQ(Send(), 111);
  EXPECT_EQ(Calls(), (Calls_{"link2", "link1", "window"}));
  // Setting an installed link again changes its data, not the chain.
  ASSERT_TRUE(later::own::SetWindowSubclass(hwnd, Link, 1, 20));
  EXPECT_EQ(Send(), 121);
  EXPECT_EQ(Calls(), (Calls_{"link2", "link1", "window"}));
  // A message sent from inside a link starts at the top of the chain again.
  EXPECT_EQ(Send(WM_USER + 1), 1121);
  EXPECT_EQ(Calls(), (Calls_{"link2", "link1", "window"}));
  // A link that removes itself runs once; the others go on.
  ASSERT_TRUE(later::own::SetWindowSubclass(hwnd, SelfRemoving, 7, 0));
  EXPECT_EQ(Send(), 121);
  EXPECT_EQ(Calls(), (Calls_{"once", "link2", "link1", "window"}));
  EXPECT_EQ(Send(), 121);
  EXPECT_EQ(Calls(), (Calls_{"link2", "link1", "window"}));
  EXPECT_FALSE(later::own::RemoveWindowSubclass(hwnd, Link, 3));  // never installed
  EXPECT_TRUE(later::own::RemoveWindowSubclass(hwnd, Link, 2));
  EXPECT_EQ(Send(), 21);
  EXPECT_TRUE(later::own::RemoveWindowSubclass(hwnd, Link, 1));
  EXPECT_EQ(Send(), 1);
  EXPECT_EQ(Proc(), &Base);
  EXPECT_EQ(GetPropA(hwnd, "Vexillor.SubclassChain"), nullptr);
}

TEST_F(OwnSubclass, AWindowDestroyedWhileSubclassedEndsItsChain) {
  ASSERT_TRUE(later::own::SetWindowSubclass(hwnd, Link, 1, 10));
  EXPECT_FALSE(later::own::SetWindowSubclass(nullptr, Link, 1, 10));
  DestroyWindow(hwnd);
  EXPECT_FALSE(later::own::RemoveWindowSubclass(hwnd, Link, 1));
}

TEST(LaterApi, FallbacksGiveWhatTheSystemHas) {
  const std::string appData = later::AppDataFolder(true);
  ASSERT_FALSE(appData.empty());
  EXPECT_NE(appData.back(), '\\');
  EXPECT_NE(GetFileAttributesA(appData.c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0u) << appData;

  char temp[MAX_PATH] = {};
  const std::string file = std::string(temp, GetTempPathA(MAX_PATH, temp)) + "vx size.bin";
  for (const DWORD bytes : {0u, 1u, 70000u}) {
    HANDLE f = CreateFileA(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(f, INVALID_HANDLE_VALUE);
    std::string data(bytes, 'x');
    DWORD wrote = 0;
    WriteFile(f, data.data(), bytes, &wrote, nullptr);
    uint64_t size = 99;
    EXPECT_TRUE(later::FileSize(f, size));
    EXPECT_EQ(size, bytes);
    CloseHandle(f);
  }
  DeleteFileA(file.c_str());
  uint64_t size = 0;
  EXPECT_FALSE(later::FileSize(INVALID_HANDLE_VALUE, size));
}

TEST(LaterApi, UnderWow64APathInSysWow64IsWrittenAsSystem32) {
  char buffer[MAX_PATH] = {};
  const std::string system(buffer, GetSystemDirectoryA(buffer, MAX_PATH));
  if (!later::IsWow64()) {
    EXPECT_EQ(later::SystemFolderPath(system + "\\shell32.dll"), system + "\\shell32.dll");
    GTEST_SKIP() << "no 32-bit system folder outside WOW64";
  }
  const std::string wow64 = system.substr(0, system.rfind('\\')) + "\\SysWOW64";
  const struct { std::string in, out; } cases[] = {
      {wow64 + "\\shell32.dll", system + "\\shell32.dll"},
      {"c:\\WINDOWS\\syswow64\\Icons\\a.ico", system + "\\Icons\\a.ico"},  // any case
      {wow64 + "x\\shell32.dll", wow64 + "x\\shell32.dll"},                    // another folder
      {wow64, wow64},                                                          // the folder alone
      {system + "\\shell32.dll", system + "\\shell32.dll"},
      {"D:\\Icons\\flags.dll", "D:\\Icons\\flags.dll"},
  };
  for (const auto& c : cases) EXPECT_EQ(later::SystemFolderPath(c.in), c.out) << c.in;
}

}  // namespace
