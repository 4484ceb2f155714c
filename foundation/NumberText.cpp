// Saturating 32-bit number conversion.
#include "NumberText.h"

#include <cctype>

namespace {

// The white space and digits of the "C" locale, which the tool never leaves.
bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

int32_t Atoi32(char const* text) {
    if (!text) return 0;
    while (IsSpace(*text)) ++text;
    bool negative = false;
    if (*text == '+' || *text == '-') negative = *text++ == '-';
    int64_t value = 0;
    constexpr int64_t kLimit = static_cast<int64_t>(INT32_MAX) + 1;
    while (IsDigit(*text)) {
        value = value * 10 + (*text++ - '0');
        if (value > kLimit) value = kLimit;
    }
    if (negative) return static_cast<int32_t>(-value);
    return value > INT32_MAX ? INT32_MAX : static_cast<int32_t>(value);
}

bool ReadHex32(char const* text, uint32_t& value) {
    value = 0;
    if (!text) return false;
    while (std::isspace(static_cast<unsigned char>(*text))) ++text;
    bool negative = false;
    if (*text == '+' || *text == '-') negative = *text++ == '-';
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X') && std::isxdigit(static_cast<unsigned char>(text[2]))) text += 2;
    uint64_t result = 0;
    bool any = false;
    while (std::isxdigit(static_cast<unsigned char>(*text))) {
        char c = static_cast<char>(std::tolower(static_cast<unsigned char>(*text++)));
        result = result * 16 + static_cast<uint64_t>(c <= '9' ? c - '0' : c - 'a' + 10);
        if (result > UINT32_MAX) result = static_cast<uint64_t>(UINT32_MAX) + 1;
        any = true;
    }
    if (result > UINT32_MAX) {
        value = UINT32_MAX;
        return any;
    }
    value = negative ? 0u - static_cast<uint32_t>(result) : static_cast<uint32_t>(result);
    return any;
}
