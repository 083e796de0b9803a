#include "e2e/support/LineSocket.h"

#include <sys/socket.h>

#include <algorithm>

namespace talvora::e2e {

void LineSocket::send(std::string_view line) {
    transcript.append("<< ").append(line).append("\n");
    std::string bytes = std::string(line) + "\r\n";
    std::string_view rest = bytes;
    while (!rest.empty()) {
        const ssize_t sent = ::send(socket_.get(), rest.data(), rest.size(), MSG_NOSIGNAL);
        if (sent <= 0) return;  // what the other side then does not say is what the test misses
        rest.remove_prefix(static_cast<std::size_t>(sent));
    }
}

void LineSocket::keep(std::string line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    transcript.append(">> ").append(line).append("\n");
    if (!filter || !filter(line)) lines_.push_back(std::move(line));
}

void LineSocket::gather(int milliseconds) {
    if (closed_ || !readable(socket_.get(), milliseconds)) return;
    char buffer[65536];
    const ssize_t got = recv(socket_.get(), buffer, sizeof buffer, MSG_DONTWAIT);
    if (got <= 0) {
        closed_ = true;
        return;
    }
    partial_.append(buffer, static_cast<std::size_t>(got));
    std::size_t start = 0;
    for (std::size_t end; (end = partial_.find('\n', start)) != std::string::npos; start = end + 1) {
        keep(partial_.substr(start, end - start));
    }
    partial_.erase(0, start);
}

bool LineSocket::waiting(const Wanted& wanted) const {
    return std::ranges::any_of(lines_, wanted);
}

std::string LineSocket::take(const Wanted& wanted, const std::string& what, Milliseconds wait) {
    const Deadline deadline(wait);
    for (;;) {
        const auto found = std::ranges::find_if(lines_, wanted);
        if (found != lines_.end()) {
            std::string line = std::move(*found);
            lines_.erase(found);
            return line;
        }
        if (closed_ || deadline.passed()) {
            throw Missing("missing: " + what + (closed_ ? " (the connection has ended)" : "") +
                          "\nwhat went over the connection:\n" + transcript);
        }
        gather(deadline.left());
    }
}

}  // namespace talvora::e2e
