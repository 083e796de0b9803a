#pragma once
// Tells everyone who connects the address that he comes from, and closes. Users whose machine does not know
// its public address learn it so. It reads nothing and keeps no connection.

#include <string>

#include "platform/Timer.h"
#include "platform/Winsock.h"
#include "robot/RobotLog.h"

namespace talvora {

class AddressServer {
  public:
    // `port` 0 for no server.
    AddressServer(Platform& platform, const std::string& address, int port, RobotLog log);

    // A port that is taken is tried again until it is free.
    void Start();
    void Stop();
    bool Listening() const { return listening_.State() == SocketState::Listening; }

  private:
    void listen();
    void answer();

    Platform& platform_;
    RobotLog log_;
    Winsock listening_;
    Timer tmrAgain_;
    Subscriptions on_;
};

}  // namespace talvora
