#include "e2e/support/FreePort.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>

namespace talvora::e2e {

namespace {

constexpr int firstPort = 20000;
constexpr int ports = 12000;

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool claimName(const Descriptor& socket, int port) {
    const std::string name = "talvora-e2e-port-" + std::to_string(port);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, name.data(), name.size());
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    return bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), length) == 0;
}

bool canBeBound(int port) {
    const Descriptor probe(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    setsockopt(probe.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in address = loopback(port);
    return bind(probe.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

}  // namespace

FreePort::FreePort() {
    for (int tries = 0; tries < ports; ++tries) {
        const int port = firstPort + (static_cast<int>(getpid()) * 7 + tries) % ports;
        Descriptor claim(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        if (!claimName(claim, port) || !canBeBound(port)) continue;
        claim_ = std::move(claim);
        number_ = port;
        return;
    }
    throw std::runtime_error("no free port on loopback");
}

Descriptor connectToPort(int port) {
    Descriptor result(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in address = loopback(port);
    if (connect(result.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        result.close();
    return result;
}

}  // namespace talvora::e2e
