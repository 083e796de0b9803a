#include "simulation/robot/RobotInWorld.h"

#include <QtCore/QCoreApplication>

namespace talvora::test {

namespace {

// The databases are the toolkit's plug-ins, which it finds for an application only.
void needApplication() {
    static int count = 1;
    static char name[] = "simulation";
    static char* words[] = {name, nullptr};
    if (QCoreApplication::instance() == nullptr) static const QCoreApplication application(count, words);
}

}  // namespace

SimulatedRobot::SimulatedRobot(VirtualTime& time, VirtualNetwork& network, const std::string& serverHost)
    : around(time, network), server(network.server(serverHost, 6667)) {
    config.Network.ServerHost = serverHost;
    config.Network.SysChannel = "#system";
    config.Network.SysChanKey = "syskey";
    config.Network.Wire = WireProfile::plain();
    config.LinesPerSecond = 0;
    config.AddressPort = 0;
    config.Store.Database = ":memory:";
    config.Categories.fill({48, 20, {}});
}

void SimulatedRobot::start() {
    needApplication();
    end();
    store = std::make_unique<RobotStore>(config.Store);
    const auto write = [this](LogSubject, const std::string& line) { log.push_back(line); };
    robot = std::make_unique<Robot>(around.platform, config, *store, write);
    robot->Start();
}

void SimulatedRobot::end() {
    robot.reset();
    store.reset();
    server.closes();
}

RobotInWorld::RobotInWorld(World& world, Relay& relay)
    : SimulatedRobot(world.time, world.network, "irc-robot.test"), world_(world) {
    relay.serve(server);
}

void RobotInWorld::start() {
    SimulatedRobot::start();
    world_.time.run(std::chrono::seconds(3));
}

}  // namespace talvora::test
