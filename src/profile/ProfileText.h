// What reading and writing a profile's lines have in common. UTF-8 or plain ASCII; nothing fails.
#pragma once

#include <algorithm>
#include <string_view>

namespace talvora {

inline bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// Without blanks and tabs on either side.
inline std::string_view trimmed(std::string_view text) {
    const auto begin = std::min(text.find_first_not_of(" \t"), text.size());
    return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

}  // namespace talvora
