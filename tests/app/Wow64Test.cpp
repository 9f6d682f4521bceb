// The 32-bit program on 64-bit Windows: what it writes must land where 64-bit programs (Explorer) read,
// not in the 32-bit copies WOW64 would redirect it to. A 64-bit probe reads both views back.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <map>

#include "app/CommandLine.h"
#include "apply/Journal.h"
#include "registry/LaterApi.h"
#include "registry/modRegistry.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "system/Keys.h"
#include "ui/win.h"

namespace {

constexpr const char* kClassKey = "HKEY_CLASSES_ROOT\\CLSID\\{6C1E0F5B-0B0A-4C2E-9D55-7E2F1A3B9C01}";

// Each (key, value) as the 64-bit view ("N") and the 32-bit view ("N.32") hold it.
std::map<std::string, std::string> Probe(const std::vector<std::pair<std::string, std::string>>& values) {
  char temp[MAX_PATH] = {};
  const std::string out = std::string(temp, GetTempPathA(MAX_PATH, temp)) + "regprobe64.ini";
  const std::string self = ui::ModulePath(), probe = self.substr(0, self.rfind('\\') + 1) + "regprobe64.exe";
  std::string arguments = "\"" + out + "\"";
  for (const auto& [key, value] : values) arguments += " \"" + key + "\" \"" + value + "\"";
  DeleteFileA(out.c_str());
  vxtest::RealProgram(arguments, probe).Ended(30000);
  std::map<std::string, std::string> read;
  for (size_t n = 0; n < values.size(); ++n)
    for (const std::string& name : {std::to_string(n), std::to_string(n) + ".32"}) {
      char text[1024] = {};
      GetPrivateProfileStringA("values", name.c_str(), "<probe did not run>", text, sizeof text, out.c_str());
      read[name] = text;
    }
  DeleteFileA(out.c_str());
  return read;
}

std::string Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return s;
}

class Wow64 : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!later::IsWow64()) GTEST_SKIP() << "not a 32-bit process on 64-bit Windows";
  }
  ~Wow64() override {
    modRegistry::DeleteTree(kClassKey);
    for (const std::string& f : {theme, vx::DefaultLogPath(), vx::JournalPath()}) DeleteFileA(f.c_str());
  }
  vxtest::KeySnapshot saved{{vx::kShellIconsKey, std::string(vx::kSettingsKey)}};
  std::string theme = [] {
    char temp[MAX_PATH] = {};
    return std::string(temp, GetTempPathA(MAX_PATH, temp)) + "vx wow64.vxtheme";
  }();
};

TEST_F(Wow64, AThemeAppliedFromTheCommandLineLandsInThe64BitView) {
  modRegistry::SaveDword(vx::kSettingsKey, "Dialog Rebuild", 1);
  modRegistry::DeleteValue(vx::kShellIconsKey, "3");
  WritePrivateProfileStringA("Folder Icons", "Closed Folder", "%WinSysDir%shell32.dll,9", theme.c_str());
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, theme.c_str());
  DWORD exitCode = 999;
  ASSERT_TRUE(vxtest::RealProgram("/q /a \"" + theme + "\"").Ended(60000, &exitCode));
  EXPECT_EQ(exitCode, 0u);

  auto v = Probe({{vx::kShellIconsKey, "3"}});
  EXPECT_EQ(Lower(v["0"]), Lower(vx::DetectEnvironment().systemFolder + "\\shell32.dll,9"));
  EXPECT_NE(Lower(v["0"]).find("\\system32\\"), std::string::npos) << v["0"];  // not SysWOW64
  EXPECT_EQ(v["0.32"], "<missing>");
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), v["0"]);  // and the program reads it back
}

TEST_F(Wow64, ClassKeysAreCreatedWrittenAndDeletedInThe64BitView) {
  ASSERT_TRUE(modRegistry::SaveString(std::string(kClassKey) + "\\DefaultIcon", "", "C:\\flags.dll,4"));
  auto v = Probe({{std::string(kClassKey) + "\\DefaultIcon", ""}});
  EXPECT_EQ(v["0"], "C:\\flags.dll,4");
  EXPECT_EQ(v["0.32"], "<missing>");
  EXPECT_TRUE(modRegistry::DeleteTree(kClassKey));
  EXPECT_FALSE(modRegistry::KeyExists(kClassKey));
  v = Probe({{std::string(kClassKey) + "\\DefaultIcon", ""}});
  EXPECT_EQ(v["0"], "<missing>");
}

}  // namespace
