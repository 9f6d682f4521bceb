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

// Missing keys and values, and a lower-case root (never opened, even where the key exists), give sentinels.
TEST_F(Registry, FailedReadsGiveTheirSentinelsAndABareRootIsTheRootKey) {
  SaveString(kBase, "present", "yes");
  for (const std::string& key :
       {kBase + "\\Missing", kBase, std::string("hkey_current_user\\Software\\VexillorTest")}) {
    const std::string value = key == kBase ? "absent" : "present";
    EXPECT_EQ(GetString(key, value), "Error") << key;
    EXPECT_EQ(GetDword(key, value), 10) << key;
    EXPECT_EQ(GetBinary(key, value), "Error") << key;
  }
  EXPECT_EQ(GetString(kBase, "present"), "yes");
  SaveString("HKEY_CURRENT_USER", "VexillorTestRootValue", "root");
  EXPECT_EQ(GetString("HKEY_CURRENT_USER", "VexillorTestRootValue"), "root");
  DeleteValue("HKEY_CURRENT_USER", "VexillorTestRootValue");
  EXPECT_EQ(GetString("HKEY_CURRENT_USER", "VexillorTestRootValue"), "Error");
}

TEST_F(Registry, StringsAreTrimmedCutAtNulAndLimitedTo254Bytes) {
  SaveString(kBase, "spaced", "  C:\\x.dll,3  ");
  EXPECT_EQ(GetString(kBase, "spaced"), "C:\\x.dll,3");

  WriteRaw(kBase, "nul", REG_SZ, std::string("abc\0def", 8));
  EXPECT_EQ(GetString(kBase, "nul"), "abc");

  // A number read as text: its bytes as characters, up to the first zero byte.
  WriteRaw(kBase, "dword", REG_DWORD, std::string("AB\0\0", 4));
  EXPECT_EQ(GetString(kBase, "dword"), "AB");

  std::string fits(253, 'x');
  WriteRaw(kBase, "fits", REG_SZ, fits + '\0');  // 254 bytes with its NUL
  EXPECT_EQ(GetString(kBase, "fits"), fits);
  WriteRaw(kBase, "full", REG_SZ, std::string(254, 'y') + '\0');  // 255 bytes with its NUL
  EXPECT_EQ(GetString(kBase, "full"), "Error");
  WriteRaw(kBase, "long", REG_SZ, std::string(300, 'z') + '\0');
  EXPECT_EQ(GetString(kBase, "long"), "Error");

  // The default (unnamed) value is addressed with an empty name.
  SaveString(kBase + "\\DefaultIcon", "", "shell32.dll,4");
  EXPECT_EQ(GetString(kBase + "\\DefaultIcon", ""), "shell32.dll,4");
}

TEST_F(Registry, SaveStringWritesExactBytesAndCreatesMissingKeys) {
  SaveString(kBase + "\\a\\b\\c", "v", "hello");
  DWORD type = 0;
  std::string bytes;
  ASSERT_TRUE(ReadRaw(kBase + "\\a\\b\\c", "v", type, bytes));
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(bytes.substr(0, 5), "hello");
  SaveString(kBase, "empty", "");
  ASSERT_TRUE(ReadRaw(kBase, "empty", type, bytes));
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(StripNull(bytes), "");
  EXPECT_EQ(GetString(kBase, "empty"), "");

  // An unknown root can be neither opened nor created: the write gives up instead of recursing.
  SaveString("HKEY_NOWHERE\\x", "v", "t");
  SaveDword("HKEY_NOWHERE\\x", "v", 1);
}

TEST_F(Registry, DwordsRoundTripAndTenIsAmbiguous) {
  SaveDword(kBase + "\\n", "one", 1);
  SaveDword(kBase + "\\n", "neg", -5);
  SaveDword(kBase + "\\n", "ten", 10);
  EXPECT_EQ(GetDword(kBase + "\\n", "one"), 1);
  EXPECT_EQ(GetDword(kBase + "\\n", "neg"), -5);
  EXPECT_EQ(GetDword(kBase + "\\n", "ten"), GetDword(kBase + "\\n", "missing"));
  DWORD type = 0;
  std::string bytes;
  ASSERT_TRUE(ReadRaw(kBase + "\\n", "one", type, bytes));
  EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
}

TEST_F(Registry, BinaryValuesKeepEveryByte) {
  vxtest::WriteRaw(kBase, "", REG_SZ, "");  // make the key
  const std::string bytes("\1\0\0\0", 4);
  SaveBinary(kBase, "bin", bytes);
  EXPECT_EQ(GetBinary(kBase, "bin"), bytes);

  // Longer than the 100-byte probe.
  std::string big;
  for (int i = 0; i < 300; ++i) big.push_back(static_cast<char>(i & 0xFF));
  SaveBinary(kBase, "big", big);
  EXPECT_EQ(GetBinary(kBase, "big"), big);

  // A string value read as binary keeps its terminator, untrimmed.
  WriteRaw(kBase, "one", REG_SZ, std::string("1\0", 2));
  EXPECT_EQ(GetBinary(kBase, "one"), std::string("1\0", 2));
  WriteRaw(kBase, "spaces", REG_BINARY, "  x  ");
  EXPECT_EQ(GetBinary(kBase, "spaces"), "  x  ");
}

TEST_F(Registry, SaveBinaryNeverCreatesAndReportsError) {
  std::vector<std::string> reported;
  SetErrorReporter([&](const std::string& m) { reported.push_back(m); });
  SaveBinary(kBase + "\\NotThere", "bin", "abc");
  EXPECT_EQ(reported, std::vector<std::string>{"Error"});
  EXPECT_FALSE(vxtest::KeyExists(kBase + "\\NotThere"));

  SaveString(kBase, "x", "y");
  EXPECT_THROW(SaveBinary(kBase, "empty", ""), std::out_of_range);
  EXPECT_FALSE(vxtest::ValueExists(kBase, "empty"));
  EXPECT_EQ(reported.size(), 1u);
  SetErrorReporter([](const std::string&) {});
}

TEST_F(Registry, DeletesAreSilentAndExact) {
  SaveString(kBase + "\\k\\child", "v", "1");
  SaveString(kBase + "\\k", "keep", "1");
  SaveString(kBase + "\\k", "drop", "1");
  DeleteValue(kBase + "\\k", "drop");
  DeleteValue(kBase + "\\k", "never-there");
  DeleteValue(kBase + "\\nokey", "x");
  EXPECT_EQ(GetString(kBase + "\\k", "drop"), "Error");
  EXPECT_EQ(GetString(kBase + "\\k", "keep"), "1");

  DeleteKey(kBase + "\\k", "child");
  EXPECT_FALSE(vxtest::KeyExists(kBase + "\\k\\child"));
  DeleteKey(kBase + "\\nokey", "child");
  CreateKey(kBase + "\\made\\deep");
  EXPECT_TRUE(vxtest::KeyExists(kBase + "\\made\\deep"));
}

TEST(CommonText, StripNullAndTrim) {
  EXPECT_EQ(StripNull(std::string("ab\0cd", 5)), "ab");
  EXPECT_EQ(TrimSpaces("  a b  "), "a b");
  EXPECT_EQ(TrimSpaces("   "), "");
  EXPECT_EQ(LowerAscii("%SystemRoot%"), "%systemroot%");
}

// Numbers from files and the registry: one checked conversion, and the icon index's 16-bit wrap.
TEST(Numbers, CheckedConversionAndIconIndexWrap) {
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
  SaveString(kBase, "present", "yes");
  std::vector<Previous> p = ReadPrevious(kBase + "\\A\\B", {"v"});
  EXPECT_EQ(p[0].state, Previous::NoKey);
  EXPECT_EQ(p[0].createdKeys, (std::vector<std::string>{kBase + "\\A\\B", kBase + "\\A"}));
  {
    Writer w;  // one key held open for a run of writes to it, a missing one created
    EXPECT_TRUE(w.Set(kBase + "\\A\\B", "v", REG_SZ, "one"));
    EXPECT_TRUE(w.Set(kBase + "\\A\\B", "w", REG_DWORD, std::string("\5\0\0\0", 4)));
    EXPECT_FALSE(w.Set("HKEY_NOWHERE\\x", "v", REG_SZ, "x"));
  }
  p = ReadPrevious(kBase + "\\A\\B", {"v", "absent"});
  EXPECT_EQ(p[0].state, Previous::Value);
  EXPECT_EQ(p[0].type, static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(StripNull(p[0].bytes), "one");
  EXPECT_EQ(p[1].state, Previous::KeyOnly);

  KeyTree tree;
  ASSERT_TRUE(ReadTree(kBase + "\\A", tree));
  ASSERT_TRUE(DeleteTree(kBase + "\\A"));
  EXPECT_FALSE(vxtest::KeyExists(kBase + "\\A"));
  ASSERT_TRUE(WriteTree(kBase + "\\A", tree));
  KeyTree back;
  ASSERT_TRUE(ReadTree(kBase + "\\A", back));
  EXPECT_EQ(back, tree);
  EXPECT_EQ(GetDword(kBase + "\\A\\B", "w"), 5);
}

}  // namespace
