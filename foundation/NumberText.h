// Number conversion as the 32-bit C library does it: leading white space, an
// optional sign, the longest run of digits; no digits read as 0. Values out of
// the 32-bit range saturate instead of wrapping.
#pragma once

#include <cstdint>

// Decimal, like atoi/atol on a 32-bit target: "12abc" is 12, "abc" is 0,
// "99999999999" is 2147483647.
int32_t Atoi32(char const* text);
// Hexadecimal digits as "%x" reads them (no prefix expected): stops at the first
// non-digit, saturates at 0xFFFFFFFF; false when no digit was read.
bool ReadHex32(char const* text, uint32_t& value);
