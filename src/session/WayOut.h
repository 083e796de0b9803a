#pragma once
// The way out: the one gate by which text leaves for others. What the user types in a window comes here, what
// other plug-ins of the host have him say, and what the session answers by itself. Whatever a text or an
// address holds, it leaves as one line.

#include <string>

#include "irc/IRCServ.h"

namespace talvora {

class WayOut {
  public:
    explicit WayOut(IRCServ& engine) : IRCServ1(engine) {}

    // `to` is a nick or a channel; a special text stands between two Chr(1).
    void SendPM(const std::string& to, const std::string& text, bool special);
    void SendNotice(const std::string& to, const std::string& text, bool special);

  private:
    IRCServ& IRCServ1;
};

}  // namespace talvora
