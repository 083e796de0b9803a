#include "announce/PostRoom.h"

#include <algorithm>

namespace talvora {

namespace {

constexpr std::size_t LineLength = 510;
constexpr std::size_t LongestUser = 11;  // "~" and ten characters
constexpr std::size_t LongestHost = 63;
constexpr std::size_t LongestReader = 40;  // a nick of 30 characters with its state

constexpr std::string_view Robot = "OrreryServ";
constexpr std::string_view Frame = "PRIVMSG  :\1\1";
constexpr std::string_view Posting = "ANN POST  0 ";
constexpr std::string_view Telling = "ANN ANN 2000000000   24/11/2026_20:24:28 0 ";

std::size_t prefixOf(std::size_t nick) {
    return std::string_view(":!@ ").size() + nick + LongestUser + LongestHost;
}

}  // namespace

std::ptrdiff_t PostRoom::Left(const std::string& poster, const std::string& hours,
                              const std::string& text) const {
    const std::size_t longer = std::max(toRobot(poster, hours, text), toReaders(poster, hours, text));
    return static_cast<std::ptrdiff_t>(LineLength) - static_cast<std::ptrdiff_t>(longer);
}

std::size_t PostRoom::toRobot(const std::string& poster, const std::string& hours,
                              const std::string& text) const {
    return prefixOf(width_(poster)) + Frame.size() + Robot.size() + Posting.size() + width_(hours) +
           width_(text);
}

std::size_t PostRoom::toReaders(const std::string& poster, const std::string& hours,
                                const std::string& text) const {
    return prefixOf(Robot.size()) + Frame.size() + LongestReader + Telling.size() + width_(poster) +
           std::max<std::size_t>(1, width_(hours)) + width_(text);
}

}  // namespace talvora
