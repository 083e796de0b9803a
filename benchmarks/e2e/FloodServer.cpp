#include "e2e/FloodServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <string>
#include <utility>

namespace talvora::bench {

namespace {

constexpr std::string_view server = ":irc.talvora.test ";
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

// Not in the order of the names.
std::string nameOf(int number, int of) {
    constexpr std::string_view states[] = {"[DND]", "[AWAY]", "[BRB]", "[own]"};
    std::string name = "user" + std::to_string(number * 7919LL % of);
    if (number % 4 == 0) name += states[static_cast<std::size_t>(number / 4 % 4)];
    return name;
}

std::string_view wordBehind(std::string_view line, std::size_t at) {
    line.remove_prefix(std::min(at, line.size()));
    return line.substr(0, line.find(' '));
}

}  // namespace

FloodServer::FloodServer() : listener_(listenOn(port_.number())) {}

void FloodServer::accept() {
    client_.reset();
    if (!programs::readable(listener_.get(), static_cast<int>(patience.count())))
        throw programs::Missing("no client comes");
    client_ = Descriptor(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    received_.clear();
    outgoing_.clear();
    joined_ = false;
}

void FloodServer::firstByte() {
    char byte = 0;
    if (!programs::readable(client_.get(), static_cast<int>(patience.count())) ||
        recv(client_.get(), &byte, 1, MSG_PEEK) != 1 || byte != 'N') {
        throw programs::Missing("the client does not begin with NICK");
    }
}

void FloodServer::logOn() {
    pump([this] { return joined_ && outgoing_.empty(); }, patience, "the log-on");
}

void FloodServer::serve(programs::Milliseconds time) {
    const programs::Deadline deadline(time);
    while (!deadline.passed()) {
        if (!step(deadline.left())) throw programs::Missing("the client has gone");
    }
}

void FloodServer::flood(std::string_view bytes, std::string_view answer) {
    stream_ = bytes;
    awaited_ = answer;
    answered_ = false;
    pump([&] { return answered_; }, patience, "the answer to the flood");
}

void FloodServer::pump(const Done& done, programs::Milliseconds wait, const char* what) {
    const programs::Deadline deadline(wait);
    while (!done()) {
        if (!step(deadline.left()) || deadline.passed())
            throw programs::Missing(std::string("missing: ") + what);
    }
}

bool FloodServer::step(int milliseconds) {
    pollfd entry{client_.get(), POLLIN, 0};
    if (!outgoing_.empty() || !stream_.empty()) entry.events |= POLLOUT;
    if (poll(&entry, 1, milliseconds) <= 0) return true;
    if ((entry.revents & POLLIN) != 0) receive();
    if ((entry.revents & POLLOUT) != 0) send();
    return client_.get() >= 0;
}

void FloodServer::receive() {
    char buffer[65536];
    const ssize_t got = recv(client_.get(), buffer, sizeof buffer, 0);
    if (got <= 0) {
        client_.reset();
        return;
    }
    received_.append(buffer, static_cast<std::size_t>(got));
    std::size_t start = 0;
    for (std::size_t end; (end = received_.find("\r\n", start)) != std::string::npos; start = end + 2) {
        const std::string line = received_.substr(start, end - start);
        answered_ = answered_ || line.starts_with(awaited_);
        handle(line);
    }
    received_.erase(0, start);
}

void FloodServer::send() {
    const std::string_view bytes = outgoing_.empty() ? stream_ : std::string_view(outgoing_);
    const ssize_t sent = ::send(client_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return;
    const auto count = static_cast<std::size_t>(sent);
    if (outgoing_.empty()) {
        stream_.remove_prefix(count);
    } else {
        outgoing_.erase(0, count);
    }
}

void FloodServer::say(std::string_view line) {
    outgoing_.append(line).append("\r\n");
}

void FloodServer::handle(std::string_view line) {
    const std::string front = std::string(server);
    if (line.starts_with("NICK ")) nick_ = wordBehind(line, 5);
    if (line.starts_with("USER ")) {
        say(front + "001 " + nick_ + " :Welcome to the network " + nick_ + "!u@127.0.0.1");
        say(front + "375 " + nick_ + " :- Message of the day");
        say(front + "372 " + nick_ + " :- Welcome.");
        say(front + "376 " + nick_ + " :End of MOTD command");
    }
    if (line.starts_with("WHO")) {
        say(front + "352 " + nick_ + " * u 127.0.0.1 irc.talvora.test " + nick_ + " H :0 UL:Work.Pylea");
        say(front + "315 " + nick_ + " * :End of WHO list");
    }
    if (line.starts_with("LUSERS")) {
        say(front + "265 " + nick_ + " :Current local users: 12  Max: 20");
        say(front + "266 " + nick_ + " :Current global users: 12  Max: 20");
    }
    if (line.starts_with("JOIN ")) answerJoin(wordBehind(line, 5));
    if (!HasRobot && line.starts_with("PRIVMSG OrreryServ "))
        say(front + "401 " + nick_ + " OrreryServ :No such nick");
}

void FloodServer::answerJoin(std::string_view channel) {
    const std::string name(channel);
    say(":" + nick_ + "!u@127.0.0.1 JOIN :" + name);
    say(std::string(server) + "353 " + nick_ + " = " + name + " :" + nick_ +
        " @anna maria[DND] petros +eleni kostas[AWAY] sofia giorgos dimitra");
    say(std::string(server) + "366 " + nick_ + " " + name + " :End of NAMES list");
    joined_ = joined_ || name == "#talk";
}

std::string typicalTraffic(int lines) {
    constexpr int users = 40;
    std::string result;
    result.reserve(static_cast<std::size_t>(lines) * 84);
    for (int i = 0; i < lines; ++i) {
        const int user = (i * 7) % users;
        const std::string nick = "user" + std::to_string(user);
        const std::string prefix = ":" + nick + "!~u@host" + std::to_string(user) + ".example ";
        switch (i % 50) {
            case 7:
                result += prefix + "JOIN :#talk\r\n";
                break;
            case 17:
                result += prefix + "PART #talk :until later\r\n";
                break;
            case 27:
                result += ":wanderer!~u@host.example NICK :wanderer[AWAY]\r\n";
                break;
            case 28:
                result += ":wanderer[AWAY]!~u@host.example NICK :wanderer\r\n";
                break;
            case 33:
                result += prefix + "NOTICE Nikos :the meeting is at eight o'clock, do not be late\r\n";
                break;
            case 40:
                result +=
                    std::string(server) + "353 Nikos = #talk :Nikos @anna maria[DND] petros +eleni sofia\r\n";
                break;
            case 41:
                result += std::string(server) + "366 Nikos #talk :End of NAMES list\r\n";
                break;
            default:
                result += prefix + "PRIVMSG #talk :line " + std::to_string(i) +
                          " of an evening's talk among friends\r\n";
        }
    }
    return result;
}

std::string namesReply(int names) {
    constexpr std::size_t longestLine = 510;
    const std::string front = std::string(server) + "353 Nikos = #talk :";
    std::string result;
    std::string line = front;
    for (int i = 0; i < names; ++i) {
        const std::string name = (i % 10 == 0 ? "@" : "") + nameOf(i, names) + " ";
        if (line.size() + name.size() > longestLine) result += std::exchange(line, front) + "\r\n";
        line += name;
    }
    return result + line + "\r\n" + std::string(server) +
           "366 Nikos #talk :End of NAMES list\r\nPING :names\r\n";
}

std::string namesQuit(int names) {
    std::string result;
    for (int i = 0; i < names; ++i) result += ":" + nameOf(i, names) + "!~u@host.example QUIT :bye\r\n";
    return result + "PING :gone\r\n";
}

}  // namespace talvora::bench
