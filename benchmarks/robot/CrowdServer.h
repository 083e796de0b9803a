#pragma once
// An IRC server that a measurement plays for the robot alone: it lets it log on, brings it the lines of any
// number of users, and tells what the robot answers. It limits nothing.

#include <functional>
#include <string>
#include <string_view>

#include "platform_qt/Descriptor.h"
#include "simulation/programs/FreePort.h"
#include "simulation/programs/Waiting.h"

namespace talvora::bench {

class CrowdServer {
  public:
    using Done = std::function<bool()>;

    CrowdServer();

    int port() const { return port_.number(); }
    // Waits for the robot, until it has joined its channel. One that is there is given up.
    void logOn();
    // A special text of a user to the robot; it goes out with the next `serve`.
    void say(std::string_view nick, std::string_view text);
    // A special text of the robot to a user.
    std::function<void(std::string_view nick, std::string_view text)> answered;
    void serve(const Done& done, const char* what);

  private:
    void step(int milliseconds);
    void receive();
    void send();
    void handle(std::string_view line);
    void tell(std::string_view line) { outgoing_.append(line).append("\r\n"); }

    programs::FreePort port_;
    Descriptor listener_;
    Descriptor robot_;
    std::string received_;
    std::string outgoing_;
    std::string nick_;
    bool joined_ = false;
};

}  // namespace talvora::bench
