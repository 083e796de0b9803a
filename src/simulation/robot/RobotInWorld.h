#pragma once
// The network's robot on virtual time, with its real store: alone in front of a scripted server, or among the
// whole clients of a World behind their Relay. The wall clock of each can be put wrong by
// `around.clock.ahead`. Owned by whoever plays the story; `world` and `relay` outlive it.

#include <memory>
#include <string>
#include <vector>

#include "robot/Robot.h"
#include "simulation/Relay.h"
#include "simulation/VirtualPlatform.h"

namespace talvora::test {

struct SimulatedRobot {
    // The store is in memory until `config` names a file.
    SimulatedRobot(VirtualTime& time, VirtualNetwork& network, const std::string& serverHost);

    // Opens the store by `config` and begins the log-on. Throws StoreError.
    void start();
    // The program is gone without a word to anybody; what waited for the store is safe.
    void end();

    VirtualPlatform around;
    ScriptedServer& server;
    RobotConfig config;  // of the next start: no pace, no address server, anybody may post for 48 hours
    std::vector<std::string> log;
    std::unique_ptr<RobotStore> store;
    std::unique_ptr<Robot> robot;
};

class RobotInWorld : public SimulatedRobot {
  public:
    RobotInWorld(World& world, Relay& relay);

    // The same, and waits for the log-on.
    void start();

  private:
    World& world_;
};

}  // namespace talvora::test
