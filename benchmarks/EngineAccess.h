#pragma once
// Reaches the engine's line reader below the socket. It is private, and stays so to everybody else: an
// explicit instantiation may name it.

#include <string>

#include "irc/IRCServ.h"

namespace talvora {

using HandleDataOf = void (IRCServ::*)(const std::string&);

HandleDataOf handleData();

template <HandleDataOf Member>
struct Reach {
    friend HandleDataOf handleData() { return Member; }
};
template struct Reach<&IRCServ::HandleData>;

class IRCServBench {
  public:
    static void handle(IRCServ& engine, const std::string& line) { (engine.*handleData())(line); }
};

}  // namespace talvora
