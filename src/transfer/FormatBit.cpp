#include "transfer/FormatBit.h"

#include <charconv>

namespace talvora {

namespace {

std::string rounded(double value, int decimals) {
    char digits[400];  // more than the longest double has
    return {digits,
            std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals).ptr};
}

}  // namespace

std::string FormatBit(double bytes) {
    constexpr const char* units[] = {" b", " Kb", " Mb", " Gb"};
    std::size_t unit = 0;
    for (; bytes > 1024 && unit < 3; ++unit) bytes /= 1024;
    return rounded(bytes, unit == 0 ? 0 : 2) + units[unit];
}

}  // namespace talvora
