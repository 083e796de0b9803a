#pragma once
// A real IRC server on loopback, with a configuration of its own (config/): no look-ups and no flood limits.

#include <csignal>
#include <memory>
#include <ostream>
#include <string>

#include "simulation/programs/Folder.h"
#include "simulation/programs/FreePort.h"
#include "simulation/programs/Process.h"

namespace talvora::programs {

enum class ServerKind { Ngircd, Inspircd, Hybrid };

std::string nameOf(ServerKind kind);
std::ostream& operator<<(std::ostream& out, ServerKind kind);

struct ServerOptions {
    std::string password{};  // of the server; "" needs none
    int nickLength = 30;     // the longest that all three can be given
    bool invisible = false;  // ircd-hybrid only: clients begin with +i, as it is shipped
};

class IrcServer {
  public:
    explicit IrcServer(ServerKind kind, const ServerOptions& options = {});

    // "" when the program is there; else what is missing.
    static std::string whyNot(ServerKind kind);

    // Returns when it takes connections.
    void start();
    void kill();
    // While it is held it takes connections and lines, and says nothing.
    void hold() { process_->signal(SIGSTOP); }
    void goOn() { process_->signal(SIGCONT); }
    int port() const { return port_.number(); }
    ServerKind kind() const { return kind_; }
    std::string output() { return process_ ? process_->output() : std::string(); }

  private:
    Program program() const;

    ServerKind kind_;
    FreePort port_;
    Folder folder_;
    std::unique_ptr<Process> process_;
};

}  // namespace talvora::programs
