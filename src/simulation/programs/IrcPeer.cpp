#include "simulation/programs/IrcPeer.h"

#include <algorithm>

namespace talvora::programs {

IrcPeer::IrcPeer(int port, const std::string& nick, const std::string& password) : nick_(nick), lines_(port) {
    lines_.filter = [this](const std::string& line) {
        if (!line.starts_with("PING ")) return false;
        lines_.send("PONG " + line.substr(5));
        return true;
    };
    if (!password.empty()) send("PASS " + password);
    send("NICK " + nick);
    send("USER " + nick.substr(0, std::min(nick.find('['), std::size_t{9})) + " 0 * :Peer of the test");
    expect({" 001 " + nick + " "});
    expect({" 376 "});
}

void IrcPeer::join(const std::string& channel, const std::string& key) {
    send("JOIN " + channel + (key.empty() ? "" : " " + key));
    expect({" 366 ", channel});
}

std::string IrcPeer::expect(std::initializer_list<std::string_view> parts) {
    std::string what = "a line with";
    for (const std::string_view part : parts) what.append(" \"").append(part).append("\"");
    const auto wanted = [&](const std::string& line) {
        return std::ranges::all_of(parts,
                                   [&](std::string_view part) { return line.find(part) != line.npos; });
    };
    return lines_.take(wanted, what + " at " + nick_);
}

void IrcPeer::settle() {
    const std::string mark = "settled" + std::to_string(++settled_);
    send("PING " + mark);
    expect({"PONG", mark});
}

bool IrcPeer::saw(std::string_view part) const {
    return lines_.transcript.find(part) != std::string::npos;
}

}  // namespace talvora::programs
