// The program's resources as the shell sees them, in this test program (same resources) and vexillor.exe.
#include "UiTest.h"
#include <shellapi.h>

#include <set>

#include "resource.h"

namespace {

std::vector<std::string> Executables() {
  const std::string p = ui::ModulePath();  // build/tests/test_ui.exe -> build/vexillor.exe
  return {p, p.substr(0, p.rfind('\\', p.rfind('\\') - 1)) + "\\vexillor.exe"};
}

std::string VersionText(const std::string& exe, const char* name) {
  DWORD ignored = 0, size = GetFileVersionInfoSizeA(exe.c_str(), &ignored);
  std::vector<char> block(size);
  void* value = nullptr;
  UINT len = 0;
  if (!size || !GetFileVersionInfoA(exe.c_str(), 0, size, block.data()) ||
      !VerQueryValueA(block.data(), (std::string("\\StringFileInfo\\040904b0\\") + name).c_str(), &value, &len))
    return "(missing)";
  return static_cast<const char*>(value);
}

// Index 0 is the program icon and index n pointer n, each a different picture.
TEST(Resources, EighteenDistinctIconsTheVersionBlockAndTheManifest) {
  for (const std::string& exe : Executables()) {
    SCOPED_TRACE(exe);
    HINSTANCE self = GetModuleHandleA(nullptr);
    ASSERT_EQ(reinterpret_cast<UINT_PTR>(ExtractIconA(self, exe.c_str(), UINT(-1))), 18u);
    std::set<std::vector<COLORREF>> seen;
    for (int index = 0; index < 18; ++index) {
      ui::IconHandle extracted(ExtractIconA(self, exe.c_str(), static_cast<UINT>(index)));
      ui::IconHandle byId(static_cast<HICON>(
          LoadImageA(self, MAKEINTRESOURCEA(IDI_PROGRAM + index), IMAGE_ICON, 32, 32, LR_DEFAULTCOLOR)));
      ASSERT_TRUE(extracted && byId) << index;
      std::vector<COLORREF> pixels = vxtest::Render(extracted.get());
      EXPECT_EQ(pixels, vxtest::Render(byId.get())) << index;
      EXPECT_TRUE(seen.insert(pixels).second) << "index " << index << " repeats an earlier image";
    }
    EXPECT_EQ(VersionText(exe, "ProductName"), "Vexillor");
    EXPECT_EQ(VersionText(exe, "ProductVersion"), "2.06");
    HMODULE mod = LoadLibraryExA(exe.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    HRSRC res = mod ? FindResourceA(mod, MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(24)) : nullptr;  // RT_MANIFEST
    ASSERT_TRUE(res);
    std::string manifest(static_cast<const char*>(LockResource(LoadResource(mod, res))), SizeofResource(mod, res));
    EXPECT_NE(manifest.find("name=\"Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\""), std::string::npos);
    FreeLibrary(mod);
  }
}

}  // namespace
