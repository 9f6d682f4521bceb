#pragma once
// Small text routines shared by every part of the program.
#include <string>
#include <string_view>
#include <cstdint>
#include <optional>

// The text cut before its first NUL character, or unchanged when it holds none.
std::string StripNull(std::string_view s);
// The text without leading and trailing blanks (spaces only, as the registry buffers are padded with them).
std::string TrimSpaces(std::string_view s);
// Lower-case copy (ASCII letters only, as the system's own paths compare).
std::string LowerAscii(std::string_view s);
std::string UpperAscii(std::string_view s);
// Bytes as two-digit hex numbers separated by blanks ("01 00 00 00").
std::string HexBytes(std::string_view bytes);

// Numbers read from a file or the registry, converted one checked way. The leading whole number of
// the text (blanks, an optional sign, digits; anything after them is ignored): nothing when there are
// no digits or the number does not fit 32 bits.
std::optional<int32_t> ParseInt32(std::string_view s);
// An icon index: the digits taken as a 16-bit value, wrapping as an integer conversion to 16 bits
// does (so "65535" is -1); text without digits is 0.
int16_t ParseIconIndex(std::string_view s);
