#pragma once
// Reaches the engine's line reader below the socket.

#include <string>

#include "irc/IRCServ.h"

namespace talvora {

class IRCServBench {
  public:
    static void handle(IRCServ& engine, const std::string& line) { engine.HandleData(line); }
};

}  // namespace talvora
