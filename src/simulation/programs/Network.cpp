#include "simulation/programs/Network.h"

namespace talvora::programs {

std::string robotConfig(int serverPort, int addressPort, const std::string& database,
                        const RobotOptions& options) {
    return "[network]\nServerHost=127.0.0.1\nServerPort=" + std::to_string(serverPort) +
           "\nSysChannel=#orrery\nSysChanKey=sesame\nEncoding=cp1253\n[address]\nAddressHost=" +
           options.addressHost + "\nAddressPort=" + std::to_string(addressPort) +
           "\nAddressListen=" + options.addressListen + "\n[pacing]\n" + options.pacing +
           "[store]\nDatabase=" + database + "\n" + options.settings;
}

Network::Network(const RobotOptions& options)
    : server_(options.server),
      config_(
          folder_.write("orreryserv.ini",
                        robotConfig(port(), options.addressPort == 0 ? addressPort() : options.addressPort,
                                    folder_ / "robot.db", options))),
      watcher_(port(), "Watcher") {
    startRobot();
    if (options.waitForRobot) expectRobot();
}

void Network::startRobot() {
    Program program;
    program.arguments = {builtProgram("orreryserv"), "--config", config_};
    program.environment = {"HOME=" + folder_.path().string()};
    robot_ = std::make_unique<Process>(program);
}

void Network::expectRobot(bool there) {
    const Deadline deadline(Patience);
    for (;;) {
        watcher_.send("ISON OrreryServ");
        if (watcher_.expect({" 303 "}).ends_with("OrreryServ") == there) return;
        if (deadline.passed() || (there && robot_->ended())) {
            throw Missing(std::string(there ? "the robot is not there" : "the robot is still there") +
                          ". It wrote:\n" + (robot_ ? robot_->output() : ""));
        }
        if (robot_) robot_->idle(5);
    }
}

std::unique_ptr<IrcPeer> Network::peer(const std::string& nick) const {
    return std::make_unique<IrcPeer>(port(), nick);
}

OrreryProcess& Network::user(const OrreryOptions& options) {
    return *users_.emplace_back(std::make_unique<OrreryProcess>(server_, options));
}

}  // namespace talvora::programs
