#pragma once
// Small text routines shared by every part of the program.
#include <string>
#include <string_view>

// The text cut before its first NUL character, or unchanged when it holds none.
std::string StripNull(std::string_view s);
// The text without leading and trailing blanks (spaces only, as the registry buffers are padded with them).
std::string TrimSpaces(std::string_view s);
// Lower-case copy (ASCII letters only, as the system's own paths compare).
std::string LowerAscii(std::string_view s);
std::string UpperAscii(std::string_view s);
