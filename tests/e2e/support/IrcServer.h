#pragma once
// A real IRC server on loopback, with a configuration of the test's own: no look-ups and no flood limits.

#include <memory>
#include <ostream>
#include <string>

#include "e2e/support/FreePort.h"
#include "e2e/support/Process.h"
#include "e2e/support/TempFolder.h"

namespace talvora::e2e {

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

    // "" when the program is there; else what is missing, for GTEST_SKIP.
    static std::string whyNot(ServerKind kind);

    // Returns when it takes connections.
    void start();
    void kill();
    int port() const { return port_.number(); }
    ServerKind kind() const { return kind_; }
    std::string output() { return process_ ? process_->output() : std::string(); }

  private:
    Program program() const;

    ServerKind kind_;
    FreePort port_;
    TempFolder folder_;
    std::unique_ptr<Process> process_;
};

}  // namespace talvora::e2e
