#include "system/LaterWindows.h"

#include <shellapi.h>

namespace later {

bool IsAdministrator() {
  HMODULE shell = GetModuleHandleA("shell32.dll");
  if (!shell) shell = LoadLibraryA("shell32.dll");
  if (!shell) return true;
  using Fn = BOOL(WINAPI*)();
  const auto fn = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(shell, "IsUserAnAdmin")));
  return !fn || fn() != FALSE;
}

unsigned NtVersion(unsigned reported) {
  HMODULE ntdll = GetModuleHandleA("ntdll.dll");
  if (!ntdll) return reported;
  using Fn = LONG(WINAPI*)(OSVERSIONINFOW*);
  const auto fn = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlGetVersion")));
  OSVERSIONINFOW vi{};
  vi.dwOSVersionInfoSize = sizeof vi;
  if (!fn || fn(&vi) != 0) return reported;
  return vi.dwMajorVersion * 256 + vi.dwMinorVersion;
}

std::string IndirectString(const std::string& text) {
  HMODULE shlwapi = LoadLibraryA("shlwapi.dll");
  if (!shlwapi || text.empty()) return {};
  using Fn = HRESULT(WINAPI*)(LPCWSTR, LPWSTR, UINT, void**);
  const auto fn = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(shlwapi, "SHLoadIndirectString")));
  if (!fn) return {};
  wchar_t in[1024], out[1024];
  if (MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, in, 1024) == 0) return {};
  if (FAILED(fn(in, out, 1024, nullptr))) return {};
  out[1023] = L'\0';
  char back[1024];
  const int n = WideCharToMultiByte(CP_ACP, 0, out, -1, back, sizeof back, nullptr, nullptr);
  return n > 1 ? std::string(back, static_cast<size_t>(n - 1)) : std::string();
}

bool RunAsAdministrator(HWND owner, const std::string& exe, const std::string& parameters) {
  // ShellExecuteA is on every Windows; only the verb is new. Above 32 means it started.
  const HINSTANCE r = ShellExecuteA(owner, "runas", exe.c_str(), parameters.c_str(), nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(r) > 32;
}

}  // namespace later
