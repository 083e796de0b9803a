#pragma once
// A server that a measurement plays for one client at a time: it lets the client log on, answers what a fresh
// session asks, and can then send a prepared stream as fast as the client takes it.

#include <functional>
#include <string>
#include <string_view>

#include "platform_qt/Descriptor.h"
#include "simulation/programs/FreePort.h"
#include "simulation/programs/Waiting.h"

namespace talvora::bench {

class FloodServer {
  public:
    FloodServer();

    int port() const { return port_.number(); }
    // Whether somebody is called OrreryServ; what is said to it is answered by the measurement then.
    bool HasRobot = false;
    // Waits for a client. A client that is there is given up.
    void accept();
    // Waits for the first byte of the client.
    void firstByte();
    // Serves the client until it has logged on and all its questions are answered.
    void logOn();
    // Serves it for so long.
    void serve(programs::Milliseconds time);
    // Sends all bytes and returns when the client has sent a line that begins with `answer`.
    void flood(std::string_view bytes, std::string_view answer);

  private:
    using Done = std::function<bool()>;

    void pump(const Done& done, programs::Milliseconds wait, const char* what);
    bool step(int milliseconds);
    void receive();
    void send();
    void handle(std::string_view line);
    void answerJoin(std::string_view channel);
    void say(std::string_view line);

    programs::FreePort port_;
    Descriptor listener_;
    Descriptor client_;
    std::string received_;
    std::string outgoing_;  // answers
    std::string_view stream_;
    std::string awaited_;  // how the line begins that the client answers with
    bool answered_ = false;
    std::string nick_;
    bool joined_ = false;
};

// A busy network's traffic of `lines` lines, most of them channel text, about 80 bytes each.
std::string typicalTraffic(int lines);
// The names of a channel in as many lines as a server needs, their end, and PING :names behind them. Every
// fourth name has a state, every tenth a mark.
std::string namesReply(int names);
// All of them quit, and PING :gone behind it.
std::string namesQuit(int names);

}  // namespace talvora::bench
