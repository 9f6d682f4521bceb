#pragma once
// Functions that only later Windows versions have, found at run time so that the program still starts
// on Windows 95 (a missing import stops a program before its first line runs). Each has a fallback
// that works there. Everything that needs such a function calls it through here, never directly.
#include <windows.h>
#include <ole2.h>

#include <cstdint>
#include <string>

namespace later {

// True when this 32-bit process runs on 64-bit Windows (IsWow64Process: XP SP2 and later). Asked once.
bool IsWow64();

// The registry view that Explorer reads: the 64-bit one under WOW64 (KEY_WOW64_64KEY), else nothing
// extra. Or it into every access mask.
REGSAM RegistryView();

// RegDeleteKeyExA in the 64-bit view under WOW64; RegDeleteKeyA everywhere else.
LONG DeleteRegistryKey(HKEY parent, const char* subkey);

// The per-user application data folder without a trailing backslash, or "" when there is none.
// SHGetFolderPathA where shell32 (2000, Me) or shfolder.dll has it; else the AppData entry of the
// Explorer's Shell Folders key (95 and NT 4 with the desktop update); else "<Windows>\Application Data".
// With create, a missing folder is made.
std::string AppDataFolder(bool create = false);

// Under WOW64, a path in the 32-bit system folder (SysWOW64, which a 32-bit process's file dialogs can
// show) given as the same path in the system folder (System32), the name 64-bit programs such as Explorer
// resolve; every other path as it is. (GetSystemWow64DirectoryA: XP and later.)
std::string SystemFolderPath(const std::string& path);

// The size of an open file (GetFileSizeEx: 2000 and later; GetFileSize before). False on failure.
bool FileSize(HANDLE file, uint64_t& size);

// Asks for the shutdown privilege where there is one (NT); nothing on 95 and 98.
void EnableShutdownPrivilege();

// Screen readers (MSAA). oleacc.dll and NotifyWinEvent came with 98, NT 4 SP6 and the accessibility
// update for 95; where they are missing a list simply stays silent.
// Tells screen readers that something of a window changed (NotifyWinEvent); nothing where there is none.
void NotifyWinEvent(DWORD event, HWND hwnd, LONG objectId, LONG childId);
// The answer to WM_GETOBJECT for an accessible object (LresultFromObject); 0 where oleacc is missing.
// COM is started on the calling thread the first time, as marshalling the object needs it.
LRESULT LresultFromObject(REFIID riid, WPARAM wp, IUnknown* object);
// The system's own accessible object for a part of a window (CreateStdAccessibleObject), or E_NOTIMPL.
HRESULT CreateStdAccessibleObject(HWND hwnd, LONG objectId, REFIID riid, void** object);
// An ANSI text as a BSTR (SysAllocString of oleaut32), or null where there is none.
BSTR AllocBstr(const std::string& text);

// Window subclassing with the shape of comctl32's SetWindowSubclass family (version 6, XP). Where
// comctl32 lacks it, the same chain is kept by this program: one window procedure per window, the
// chain in a window property, the original procedure called last.
using SubclassProc = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR);
BOOL SetWindowSubclass(HWND hwnd, SubclassProc proc, UINT_PTR id, DWORD_PTR data);
BOOL RemoveWindowSubclass(HWND hwnd, SubclassProc proc, UINT_PTR id);
LRESULT DefSubclassProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);

// The fallback chain on its own, whatever comctl32 offers (the tests exercise it on every system).
namespace own {
BOOL SetWindowSubclass(HWND hwnd, SubclassProc proc, UINT_PTR id, DWORD_PTR data);
BOOL RemoveWindowSubclass(HWND hwnd, SubclassProc proc, UINT_PTR id);
LRESULT DefSubclassProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);
}  // namespace own

}  // namespace later
