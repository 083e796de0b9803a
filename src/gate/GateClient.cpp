#include "gate/GateClient.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <sys/socket.h>

#include <cerrno>
#include <csignal>

#include "gate/LocalSocket.h"

namespace talvora {
namespace {

constexpr std::size_t ReadAtOnce = std::size_t{256} << 10;

Descriptor catchInterrupts() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return Descriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

}  // namespace

GateClient::GateClient(const std::string& path)
    : socket_(connectLocal(path)), interrupts_(catchInterrupts()) {}

bool GateClient::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool GateClient::readLine(std::string& line) {
    for (;;) {
        const std::size_t end = received_.find('\n', looked_);
        if (end != std::string::npos) {
            line.assign(received_, start_, end - start_);
            start_ = looked_ = end + 1;
            return true;
        }
        received_.erase(0, start_);
        start_ = 0;
        looked_ = received_.size();
        if (!receive()) return false;
    }
}

bool GateClient::receive() {
    pollfd sources[] = {{socket_.get(), POLLIN, 0}, {interrupts_.get(), POLLIN, 0}};
    while (::poll(sources, 2, -1) < 0) {
        if (errno != EINTR) return false;
    }
    if (sources[1].revents != 0) return false;
    const std::size_t before = received_.size();
    received_.resize(before + ReadAtOnce);
    const ssize_t got = ::recv(socket_.get(), received_.data() + before, ReadAtOnce, 0);
    received_.resize(before + static_cast<std::size_t>(got > 0 ? got : 0));
    return got > 0 || (got < 0 && errno == EINTR);
}

}  // namespace talvora
