#pragma once
// The configuration files of the three IRC servers.

#include <string>

#include "e2e/support/IrcServer.h"

namespace talvora::e2e {

struct ServerConfig {
    int port;
    std::string folder;  // the server's own, holds "motd"
    const ServerOptions& options;
};

// ngircd spins and logs without end when a client leaves with lines queued under its usual penalties.
std::string ngircdConfig(const ServerConfig& config);
std::string inspircdConfig(const ServerConfig& config);
std::string hybridConfig(const ServerConfig& config);

}  // namespace talvora::e2e
