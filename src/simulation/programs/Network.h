#pragma once
// A whole private network of real programs: an IRC server, the robot with its address server, and any number
// of users. Each has ports and folders of its own, so that several networks can stand side by side.

#include <memory>
#include <string>
#include <vector>

#include "simulation/programs/Folder.h"
#include "simulation/programs/FreePort.h"
#include "simulation/programs/IrcPeer.h"
#include "simulation/programs/IrcServer.h"
#include "simulation/programs/OrreryProcess.h"
#include "simulation/programs/Process.h"

namespace talvora::programs {

struct RobotOptions {
    std::string settings{};                 // further lines of the configuration, with their sections
    std::string addressHost = "127.0.0.1";  // told to those who ask for the address server
    std::string addressListen = "127.0.0.1";
    int addressPort = 0;       // of the address server; 0 for a free one
    bool waitForRobot = true;  // until it is logged on
    std::string pacing = "LinesPerSecond=0\nRequestsPerMinute=1000000\n";
    ServerKind server = ServerKind::Ngircd;
};

// The configuration of a robot on loopback that keeps its store in the file `database`.
std::string robotConfig(int serverPort, int addressPort, const std::string& database,
                        const RobotOptions& options = {});

class Network {
  public:
    explicit Network(const RobotOptions& options = {});

    IrcServer& server() { return server_; }
    int port() const { return server_.port(); }
    int addressPort() const { return addressPort_.number(); }

    // The robot's process, which begins with the network.
    Process& robot() { return *robot_; }
    void startRobot();
    // kill -9. Returns when the process is gone.
    void killRobot() { robot_.reset(); }
    // Waits until the server knows the robot, or knows it no longer.
    void expectRobot(bool there = true);

    // A client that the test drives by hand.
    std::unique_ptr<IrcPeer> peer(const std::string& nick) const;
    // The real host program. It lives as long as the network.
    OrreryProcess& user(const OrreryOptions& options);

    static std::string whyNot() { return IrcServer::whyNot(ServerKind::Ngircd); }

  private:
    Folder folder_;
    IrcServer server_;
    FreePort addressPort_;
    std::string config_;
    IrcPeer watcher_;
    std::unique_ptr<Process> robot_;
    std::vector<std::unique_ptr<OrreryProcess>> users_;
};

}  // namespace talvora::programs
