#pragma once
// The program's own name, maker and addresses: shown in the About box and the web menu, and written
// into every theme file's credits.
namespace vx {

inline constexpr const char* kProductName = "Vexillor";
inline constexpr const char* kProductVersion = "2.06";
inline constexpr const char* kCompanyName = "Quenby";
inline constexpr const char* kAuthorName = "J. Quenby";
inline constexpr const char* kHomePage = "http://www.quenby.example/vexillor";
inline constexpr const char* kMailScheme = "mailto:";
inline constexpr const char* kAuthorMail = "mailto:vexillor@quenby.example";

}  // namespace vx
