// The C and C++ runtimes call three wide-character kernel32 functions (to find msvcrt.dll's newer
// functions and the shared libgcc, and for the runtime's lock). Windows 95 has only failing stubs of
// most wide-character functions, so the program takes these three from here instead: each converts its
// names and calls the ANSI function, which works on every Windows. Linked into the program itself,
// ahead of kernel32's import library, so that no wide import is left in it.
#include <windows.h>

#include <string>

namespace {

// A name in the system code page, or false when it has none.
bool Narrow(LPCWSTR wide, std::string& out) {
  if (!wide) return false;
  const int n = WideCharToMultiByte(CP_ACP, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  if (n <= 0) return false;
  out.assign(static_cast<size_t>(n), '\0');
  WideCharToMultiByte(CP_ACP, 0, wide, -1, out.data(), n, nullptr, nullptr);
  out.resize(static_cast<size_t>(n - 1));
  return true;
}

HMODULE WINAPI ModuleHandle(LPCWSTR name) {
  std::string narrow;
  return name ? (Narrow(name, narrow) ? GetModuleHandleA(narrow.c_str()) : nullptr) : GetModuleHandleA(nullptr);
}

HMODULE WINAPI LoadLibraryNamed(LPCWSTR name) {
  std::string narrow;
  if (!Narrow(name, narrow)) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  return LoadLibraryA(narrow.c_str());
}

HANDLE WINAPI Semaphore(LPSECURITY_ATTRIBUTES security, LONG initial, LONG maximum, LPCWSTR name) {
  std::string narrow;
  if (name && !Narrow(name, narrow)) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  return CreateSemaphoreA(security, initial, maximum, name ? narrow.c_str() : nullptr);
}

}  // namespace

// The import slots the runtimes call through, under the names their references use.
extern "C" {
extern decltype(&ModuleHandle) const vxGetModuleHandleW __asm__("__imp__GetModuleHandleW@4");
extern decltype(&LoadLibraryNamed) const vxLoadLibraryW __asm__("__imp__LoadLibraryW@4");
extern decltype(&Semaphore) const vxCreateSemaphoreW __asm__("__imp__CreateSemaphoreW@16");
decltype(&ModuleHandle) const vxGetModuleHandleW = &ModuleHandle;
decltype(&LoadLibraryNamed) const vxLoadLibraryW = &LoadLibraryNamed;
decltype(&Semaphore) const vxCreateSemaphoreW = &Semaphore;
}
