// A 64-bit console program (built with the x86_64 compiler) that reads registry values as 64-bit
// Windows programs such as Explorer see them, and as 32-bit ones see them.
// regprobe64 OUT.ini KEY VALUE [KEY VALUE]...: writes, to section "values" of OUT.ini, "N" = the text of
// the Nth value in the 64-bit view and "N.32" = in the 32-bit view, or "<missing>".
#include <windows.h>

#include <string>

namespace {

HKEY Root(const std::string& name) {
  if (name == "HKEY_CLASSES_ROOT") return HKEY_CLASSES_ROOT;
  if (name == "HKEY_CURRENT_USER") return HKEY_CURRENT_USER;
  if (name == "HKEY_LOCAL_MACHINE") return HKEY_LOCAL_MACHINE;
  return nullptr;
}

std::string Read(const std::string& path, const char* value, REGSAM view) {
  const auto slash = path.find('\\');
  HKEY key = nullptr;
  if (slash == std::string::npos ||
      RegOpenKeyExA(Root(path.substr(0, slash)), path.substr(slash + 1).c_str(), 0, KEY_READ | view, &key) !=
          ERROR_SUCCESS)
    return "<missing>";
  char text[1024] = {};
  DWORD size = sizeof text - 1, type = 0;
  const LONG rc = RegQueryValueExA(key, value, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
  RegCloseKey(key);
  return rc == ERROR_SUCCESS ? std::string(text) : "<missing>";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  for (int i = 2, n = 0; i + 1 < argc; i += 2, ++n) {
    const std::string name = std::to_string(n);
    WritePrivateProfileStringA("values", name.c_str(), Read(argv[i], argv[i + 1], KEY_WOW64_64KEY).c_str(), argv[1]);
    WritePrivateProfileStringA("values", (name + ".32").c_str(), Read(argv[i], argv[i + 1], KEY_WOW64_32KEY).c_str(),
                               argv[1]);
  }
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, argv[1]);
  return 0;
}
