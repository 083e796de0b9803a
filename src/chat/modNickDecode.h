#pragma once
// A nick carries its user's state as a suffix in square brackets: `Maria[DND]`.

#include <string>
#include <string_view>

namespace talvora {

// The bare nick: the text in front of the first "[". That of `[afk]` is empty, and an ordinary nick.
inline std::string TruncNick(std::string_view nick) {
    return std::string(nick.substr(0, nick.find('[')));
}

}  // namespace talvora
