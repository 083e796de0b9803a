#pragma once
// An engine on virtual time with a scripted server at its endpoint.

#include "Vocabulary.h"
#include "irc/IRCServ.h"
#include "platform/Text.h"
#include "simulation/EventLog.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {

using Lines = std::vector<std::string>;

inline std::string replaced(const std::string& text, const char* what, const char* by) {
    return Replace(text, what, by);
}

class EngineTest : public testing::Test, public VirtualMachine {
  protected:
    // Connects, and logs on as `me` unless told otherwise.
    void online() {
        engine.SetNickname("me");
        engine.Connect("irc.test", 6667);
        time.settle();
        server.says(":srv 001 me :Welcome");
        time.run(3s);
        server.heard();
        log.take();
    }

    // What one line of the server raises.
    Lines raisedBy(const std::string& line) {
        log.take();
        server.says(line);
        time.run(10ms);
        return log.take();
    }

    ScriptedServer& server = network.server("irc.test", 6667);
    Random random;
    IRCServ engine{around.platform, globError, random, network.CreateSocket({})};
    EventLog log{engine};
};

}  // namespace talvora::test
