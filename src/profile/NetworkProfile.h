#pragma once
// The network profile: where the community's network is and how its servers speak. A small INI file, section
// [network], UTF-8; read once at the start, by whoever composes the component. A plain value; its texts are
// in code page 1253.

#include <stdexcept>
#include <string>
#include <string_view>

#include "irc/wire/WireProfile.h"

namespace talvora {

struct NetworkProfile {
    std::string ServerHost = "127.0.0.1";
    int ServerPort = 6667;  // 1 to 65535
    std::string SysChannel = "#talvora";
    std::string SysChanKey;  // empty if the channel has none
    bool TLS = false;
    std::string CAFile;  // native path (UTF-8) of further trusted certificates; empty for the system's alone
    WireProfile Wire = WireProfile::standard();
    std::string ReceiveAddress;  // on which the file receiver listens; empty for all
    bool RobotOnly = false;      // what others than the robot say in its words is dropped
};

// What is wrong with a profile, as "network.ini:3: ...", with what is allowed.
class ProfileError : public std::runtime_error {
  public:
    ProfileError(const std::string& file, int line, const std::string& text)
        : std::runtime_error(file + ":" + std::to_string(line) + ": " + text), Line(line) {}
    int Line;  // counted from 1
};

// Reads a profile from its text. `file` is the name for messages. Keys that are not given keep their
// defaults. Throws ProfileError.
NetworkProfile parseNetworkProfile(std::string_view text, const std::string& file = "network.ini");

}  // namespace talvora
