#include "robot/CrowdServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>

namespace talvora::bench {

namespace {

constexpr programs::Milliseconds patience{120000};

Descriptor listenOn(int port) {
    Descriptor result(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    setsockopt(result.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(result.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(result.get(), 4) != 0) {
        throw programs::Missing("the server's port cannot be opened");
    }
    return result;
}

std::string_view takeWord(std::string_view& line) {
    const std::size_t blank = std::min(line.find(' '), line.size());
    const std::string_view word = line.substr(0, blank);
    line.remove_prefix(std::min(blank + 1, line.size()));
    return word;
}

}  // namespace

CrowdServer::CrowdServer() : listener_(listenOn(port_.number())) {}

void CrowdServer::logOn() {
    robot_.reset();
    if (!programs::readable(listener_.get(), static_cast<int>(patience.count()))) {
        throw programs::Missing("no robot comes");
    }
    robot_ = Descriptor(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    const int on = 1;
    setsockopt(robot_.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    received_.clear();
    outgoing_.clear();
    joined_ = false;
    serve([this] { return joined_; }, "the log-on");
}

void CrowdServer::say(std::string_view nick, std::string_view text) {
    outgoing_.append(":").append(nick).append("!~user@users.example PRIVMSG OrreryServ :\1");
    outgoing_.append(text).append("\1\r\n");
}

void CrowdServer::serve(const Done& done, const char* what) {
    const programs::Deadline deadline(patience);
    while (!done()) {
        if (deadline.passed()) throw programs::Missing(what);
        step(deadline.left());
    }
}

void CrowdServer::step(int milliseconds) {
    send();
    pollfd entry{robot_.get(), static_cast<short>(outgoing_.empty() ? POLLIN : POLLIN | POLLOUT), 0};
    if (poll(&entry, 1, milliseconds) > 0 && (entry.revents & (POLLIN | POLLHUP)) != 0) receive();
}

void CrowdServer::receive() {
    char buffer[65536];
    const ssize_t got = recv(robot_.get(), buffer, sizeof buffer, 0);
    if (got == 0) throw programs::Missing("the robot has closed the connection");
    if (got < 0) return;
    received_.append(buffer, static_cast<std::size_t>(got));
    std::size_t start = 0;
    for (std::size_t end; (end = received_.find("\r\n", start)) != std::string::npos; start = end + 2) {
        handle(std::string_view(received_).substr(start, end - start));
    }
    received_.erase(0, start);
}

void CrowdServer::send() {
    if (outgoing_.empty()) return;
    const ssize_t sent = ::send(robot_.get(), outgoing_.data(), outgoing_.size(), MSG_NOSIGNAL);
    if (sent > 0) outgoing_.erase(0, static_cast<std::size_t>(sent));
}

void CrowdServer::handle(std::string_view line) {
    const std::string server = ":irc.talvora.test ";
    const std::string_view command = takeWord(line);
    if (command == "NICK") nick_ = line.substr(line.starts_with(':') ? 1 : 0);
    if (command == "PING") tell(server + "PONG irc.talvora.test " + std::string(line));
    if (command == "USER") {
        tell(server + "001 " + nick_ + " :Welcome to the network");
        tell(server + "376 " + nick_ + " :End of MOTD command");
    }
    if (command == "JOIN") {
        const std::string channel(takeWord(line));
        tell(":" + nick_ + "!u@127.0.0.1 JOIN :" + channel);
        tell(server + "353 " + nick_ + " = " + channel + " :" + nick_);
        tell(server + "366 " + nick_ + " " + channel + " :End of NAMES list");
        joined_ = true;
    }
    if (command != "PRIVMSG" || !answered) return;
    const std::string_view nick = takeWord(line);
    if (line.size() > 3 && line.starts_with(":\1")) answered(nick, line.substr(2, line.size() - 3));
}

}  // namespace talvora::bench
