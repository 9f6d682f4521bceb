// Registry access against the real registry of the test prefix.
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <tuple>

#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"

using namespace modRegistry;
using vxtest::ReadRaw;
using vxtest::WriteRaw;

namespace {

const std::string kBase = "HKEY_CURRENT_USER\\Software\\VexillorTest";

std::string Dw(int32_t n) { return std::string(reinterpret_cast<const char*>(&n), 4); }

class Registry : public ::testing::Test {
 protected:
  vxtest::RegistryScope scope{{kBase}};
};

TEST(RegistryRoots, ExactRootNamesOnly) {
  for (auto [name, root] : {std::pair{"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
                            {"HKEY_CURRENT_USER", HKEY_CURRENT_USER}, {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
                            {"HKEY_USERS", HKEY_USERS}, {"HKEY_PERFORMANCE_DATA", HKEY_PERFORMANCE_DATA},
                            {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG}, {"HKEY_DYN_DATA", HKEY_DYN_DATA},
                            {"hkey_current_user", HKEY(nullptr)}, {"HKCU", HKEY(nullptr)}})
    EXPECT_EQ(GetRootKey(name), root) << name;
  for (auto [path, root, rest] : {std::tuple{"HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft", HKEY_LOCAL_MACHINE,
                                             "SOFTWARE\\Microsoft"}, {"HKEY_CURRENT_USER", HKEY_CURRENT_USER, ""}}) {
    std::string p = path;
    EXPECT_EQ(SplitKeyPath(p), root);
    EXPECT_EQ(p, rest);
  }
}

// Each value stored byte for byte, and what each getter makes of it (nullopt: not asked).
TEST_F(Registry, GettersReadTheStoredBytesAndFailedReadsGiveSentinels) {
  std::string big;  // longer than the 100-byte probe
  for (int i = 0; i < 300; ++i) big.push_back(static_cast<char>(i & 0xFF));
  auto sz = [](const std::string& s) { return s + '\0'; };
  using Text = std::optional<std::string>;
  const struct { const char* name; DWORD type; std::string bytes; Text text; std::optional<int> number; Text binary; }
      cases[] = {
          {"spaced", REG_SZ, sz("  C:\\x.dll,3  "), "C:\\x.dll,3", {}, sz("  C:\\x.dll,3  ")},  // binary: untrimmed
          {"nul", REG_SZ, std::string("abc\0def", 8), "abc", {}, {}},
          {"dword", REG_DWORD, std::string("AB\0\0", 4), "AB", 0x4241, {}},  // as text: its bytes up to a zero
          {"fits", REG_SZ, sz(std::string(253, 'x')), std::string(253, 'x'), {}, {}},  // 254 bytes with its NUL
          {"full", REG_SZ, sz(std::string(254, 'y')), "Error", {}, {}},
          {"long", REG_SZ, sz(std::string(300, 'z')), "Error", {}, {}},
          {"ten", REG_DWORD, Dw(10), {}, 10, {}},  // reads as a failed read does
          {"big", REG_BINARY, big, {}, {}, big},
          {"spaces", REG_BINARY, "  x  ", {}, {}, "  x  "},
          {"", REG_SZ, sz("shell32.dll,4"), "shell32.dll,4", {}, {}},  // the default value: an empty name
      };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    WriteRaw(kBase, c.name, c.type, c.bytes);
    if (c.text) { EXPECT_EQ(GetString(kBase, c.name), *c.text); }
    if (c.number) { EXPECT_EQ(GetDword(kBase, c.name), *c.number); }
    if (c.binary) { EXPECT_EQ(GetBinary(kBase, c.name), *c.binary); }
  }
  // A missing key or value, and a lower-case root (never opened, though the key exists).
  for (const std::string& key : {kBase + "\\Missing", kBase, std::string("hkey_current_user\\Software\\VexillorTest")}) {
    const std::string value = key == kBase ? "absent" : "spaced";
    EXPECT_EQ(GetString(key, value) + GetBinary(key, value), "ErrorError") << key;
    EXPECT_EQ(GetDword(key, value), 10) << key;
  }
  SaveString("HKEY_CURRENT_USER", "VexillorTestRootValue", "root");  // a bare root is the root key
  EXPECT_EQ(GetString("HKEY_CURRENT_USER", "VexillorTestRootValue"), "root");
  DeleteValue("HKEY_CURRENT_USER", "VexillorTestRootValue");
  EXPECT_EQ(GetString("HKEY_CURRENT_USER", "VexillorTestRootValue"), "Error");
}

// SaveString and SaveDword create missing keys; SaveBinary never does and reports "Error" instead.
TEST_F(Registry, SavesWriteTheirTypeAndBytes) {
  std::vector<std::string> reported;
  SetErrorReporter([&](const std::string& m) { reported.push_back(m); });
  SaveString(kBase + "\\a\\b\\c", "v", "hello");
  SaveString(kBase, "empty", "");
  SaveDword(kBase + "\\n", "neg", -5);
  SaveBinary(kBase, "bin", std::string("\1\0\2", 3));
  SaveBinary(kBase + "\\NotThere", "bin", "abc");
  const struct { std::string key; const char* name; DWORD type; std::string bytes; } written[] = {
      {kBase + "\\a\\b\\c", "v", REG_SZ, "hello"}, {kBase, "empty", REG_SZ, ""},
      {kBase + "\\n", "neg", REG_DWORD, Dw(-5)}, {kBase, "bin", REG_BINARY, std::string("\1\0\2", 3)}};
  for (const auto& w : written) {
    DWORD type = 0;
    std::string bytes;
    ASSERT_TRUE(ReadRaw(w.key, w.name, type, bytes)) << w.name;
    EXPECT_EQ(type, w.type) << w.name;
    EXPECT_EQ(w.type == REG_SZ ? StripNull(bytes) : bytes, w.bytes) << w.name;
  }
  EXPECT_EQ(GetString(kBase, "empty"), "");
  EXPECT_EQ(GetDword(kBase + "\\n", "neg"), -5);
  EXPECT_EQ(reported, std::vector<std::string>{"Error"});
  EXPECT_FALSE(vxtest::KeyExists(kBase + "\\NotThere"));
  EXPECT_THROW(SaveBinary(kBase, "none", ""), std::out_of_range);
  EXPECT_FALSE(vxtest::ValueExists(kBase, "none"));
  EXPECT_EQ(reported.size(), 1u);
  SetErrorReporter([](const std::string&) {});
  // An unknown root can be neither opened nor created: the write gives up instead of recursing.
  SaveString("HKEY_NOWHERE\\x", "v", "t");
  SaveDword("HKEY_NOWHERE\\x", "v", 1);
}

TEST_F(Registry, DeletesAreSilentAndExact) {
  SaveString(kBase + "\\k\\child", "v", "1");
  SaveString(kBase + "\\k", "keep", "1");
  SaveString(kBase + "\\k", "drop", "1");
  DeleteValue(kBase + "\\k", "drop");
  DeleteValue(kBase + "\\k", "never-there");
  DeleteValue(kBase + "\\nokey", "x");
  EXPECT_EQ(GetString(kBase + "\\k", "drop") + GetString(kBase + "\\k", "keep"), "Error1");
  DeleteKey(kBase + "\\k", "child");
  EXPECT_FALSE(vxtest::KeyExists(kBase + "\\k\\child"));
  DeleteKey(kBase + "\\nokey", "child");
  CreateKey(kBase + "\\made\\deep");
  EXPECT_TRUE(vxtest::KeyExists(kBase + "\\made\\deep"));
}

// Numbers from files and the registry: one checked conversion, and the icon index's 16-bit wrap.
TEST(Numbers, TextHelpersCheckedConversionAndIconIndexWrap) {
  EXPECT_EQ(StripNull(std::string("ab\0cd", 5)), "ab");
  EXPECT_EQ(TrimSpaces("  a b  ") + "|" + TrimSpaces("   "), "a b|");
  EXPECT_EQ(LowerAscii("%SystemRoot%"), "%systemroot%");
  const struct { const char* text; std::optional<int32_t> value; int16_t index; } cases[] = {
      {"48", 48, 48},          {"  48 px", 48, 48},       {"-3", -3, -3},
      {"+7", 7, 7},            {"", std::nullopt, 0},       {"abc", std::nullopt, 0},
      {"65535", 65535, -1},    {"65536", 65536, 0},         {"2147483647", 2147483647, -1},
      {"2147483648", std::nullopt, 0}, {"-2147483648", INT32_MIN, 0},
      {"99999999999999999999", std::nullopt, -1},  // 10^20 - 1: no overflow, and -1 in 16 bits
      {"-", std::nullopt, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ParseInt32(c.text), c.value) << c.text;
    EXPECT_EQ(ParseIconIndex(c.text), c.index) << c.text;
  }
}

TEST_F(Registry, WhatValuesHoldBeforeAWriteAndKeyTreesComeBackWhole) {
  CreateKey(kBase);  // keys are created down from here
  std::vector<Previous> p = ReadPrevious(kBase + "\\A\\B", {"v"});
  EXPECT_EQ(p[0].state, Previous::NoKey);
  EXPECT_EQ(p[0].createdKeys, (std::vector<std::string>{kBase + "\\A\\B", kBase + "\\A"}));
  {
    Writer w;  // one key held open for a run of writes to it, a missing one created
    EXPECT_TRUE(w.Set(kBase + "\\A\\B", "v", REG_SZ, "one"));
    EXPECT_TRUE(w.Set(kBase + "\\A\\B", "w", REG_DWORD, Dw(5)));
    EXPECT_FALSE(w.Set("HKEY_NOWHERE\\x", "v", REG_SZ, "x"));
  }
  p = ReadPrevious(kBase + "\\A\\B", {"v", "absent"});
  EXPECT_EQ(std::tie(p[0].state, p[0].type), std::tuple(Previous::Value, DWORD{REG_SZ}));
  EXPECT_EQ(StripNull(p[0].bytes), "one");
  EXPECT_EQ(p[1].state, Previous::KeyOnly);

  KeyTree tree, back;
  ASSERT_TRUE(ReadTree(kBase + "\\A", tree));
  ASSERT_TRUE(DeleteTree(kBase + "\\A"));
  EXPECT_FALSE(vxtest::KeyExists(kBase + "\\A"));
  ASSERT_TRUE(WriteTree(kBase + "\\A", tree));
  ASSERT_TRUE(ReadTree(kBase + "\\A", back));
  EXPECT_EQ(back, tree);
  EXPECT_EQ(GetDword(kBase + "\\A\\B", "w"), 5);
}

}  // namespace
