#pragma once
// frmAbout: the about box. The program icon, the name, the version read from the program file's
// version resource, a line on what it does, the credits and the maker's two addresses, which open
// through the seam when clicked. OK, Enter, Escape and the close box all close it.
#include <windows.h>

#include <cstddef>
#include <string>

#include "ui/seam.h"
#include "ui/win.h"

namespace ui {

// A text of a version resource's first string table ("ProductVersion", "FileVersion", ...), read
// from the resource's bytes; empty when the block is damaged or has no such text.
std::string VersionResourceText(const void* data, size_t size, const std::string& name);

// The version of a module (the program when nullptr) as its version resource gives it: the
// "ProductVersion" text, else the fixed product version as "major.minor" with two minor digits;
// empty when the module carries no version resource.
std::string ModuleVersion(HMODULE module = nullptr);

// The address shown for a "mailto:" address: the part after the scheme.
std::string MailShown(const std::string& mail);

class frmAbout {
 public:
  explicit frmAbout(const AboutRequest& about) : about_(about) {}
  void Show(HWND owner);
  HWND hwnd() const { return hwnd_; }

 private:
  static INT_PTR CALLBACK DialogProc(HWND, UINT, WPARAM, LPARAM) noexcept;
  INT_PTR Handle(UINT msg, WPARAM wp, LPARAM lp);
  void Form_Load();
  bool IsLink(HWND control) const;
  void lblLink_Click(int id);

  const AboutRequest& about_;
  HWND hwnd_ = nullptr;
  FontHandle titleFont_, linkFont_;
};

}  // namespace ui
