#include "platform/rich/RtfScanner.h"

#include <algorithm>

namespace talvora {
namespace {

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

RtfToken RtfScanner::binary() {
    const auto size = static_cast<std::size_t>(std::max(0, Number(0)));
    text_ = Rest().substr(0, size);
    Skip(size);
    return RtfToken::Binary;
}

RtfToken RtfScanner::symbol() {
    byte_ = *at_++;
    return byte_ == '\'' ? hex() : RtfToken::Symbol;
}

// Without two digits it is a symbol that nobody knows.
RtfToken RtfScanner::hex() {
    const std::string_view rest = Rest();
    if (rest.size() < 2 || hexValue(rest[0]) < 0 || hexValue(rest[1]) < 0) return RtfToken::Symbol;
    byte_ = static_cast<char>(hexValue(rest[0]) * 16 + hexValue(rest[1]));
    Skip(2);
    return RtfToken::Hex;
}

}  // namespace talvora
