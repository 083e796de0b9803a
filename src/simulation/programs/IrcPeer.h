#pragma once
// An IRC client that the test drives by hand: the other side of what the real programs do. Answers PING.

#include <string>
#include <string_view>

#include "simulation/programs/LineSocket.h"

namespace talvora::programs {

class IrcPeer {
  public:
    // Logs on; returns when the server has answered the whole log-on.
    IrcPeer(int port, const std::string& nick, const std::string& password = "");
    IrcPeer(const IrcPeer&) = delete;
    IrcPeer& operator=(const IrcPeer&) = delete;

    void send(std::string_view line) { lines_.send(line); }
    void say(const std::string& to, const std::string& text) { send("PRIVMSG " + to + " :" + text); }
    void special(const std::string& to, const std::string& text) { say(to, '\1' + text + '\1'); }
    // Returns when the channel's names have come.
    void join(const std::string& channel, const std::string& key = "");

    // The first waiting line that holds all of these texts, or the next that comes.
    std::string expect(std::initializer_list<std::string_view> parts);
    // Waits until the server has answered all that was sent before. Lines of other clients that the server
    // handled before are then here too.
    void settle();
    bool saw(std::string_view part) const;
    const std::string& nick() const { return nick_; }
    std::string transcript() const { return lines_.transcript; }

  private:
    std::string nick_;
    LineSocket lines_;
    int settled_ = 0;
};

}  // namespace talvora::programs
