#include "robot/LineRoom.h"

#include "platform/CodePage1253.h"

namespace talvora {

namespace {

constexpr std::size_t LineLength = 510;
constexpr std::size_t LongestUser = 11;  // "~" and ten characters
constexpr std::size_t LongestHost = 63;
constexpr std::size_t LongestNick = 30;
constexpr std::size_t LongestState = 10;  // "[DND]" and its kind

}  // namespace

LineRoom::LineRoom(const RobotConfig& config)
    : utf8_(config.Network.Wire.Encoding == Encoding::UTF8),
      prefix_(std::string_view(":!@ ").size() + widthOf(config.Nick) + LongestUser + LongestHost) {}

std::size_t LineRoom::Excess(std::string_view bare, std::string_view text) const {
    constexpr std::string_view around = "PRIVMSG  :\1\1";
    const std::size_t nick = (bare.empty() ? LongestNick : widthOf(bare)) + LongestState;
    const std::size_t whole = prefix_ + around.size() + nick + widthOf(text);
    return whole > LineLength ? whole - LineLength : 0;
}

std::size_t LineRoom::widthOf(std::string_view text) const {
    if (!utf8_) return text.size();
    std::string wire;
    appendUtf8(wire, text);
    return wire.size();
}

}  // namespace talvora
