#pragma once
// What stands between two clients that send each other files, or in the place of one of them, on sockets of
// the system: a line that holds back what it is told to and can be cut, and a stranger who says what he
// likes.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>

#include "platform_qt/Descriptor.h"
#include "simulation/programs/Waiting.h"

namespace talvora::programs {

inline std::string framed(const std::string& message) {
    return message + "\x01:.:\x01";
}

inline sockaddr_in filePort(const std::string& address) {
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_port = htons(37182);
    inet_pton(AF_INET, address.c_str(), &where.sin_addr);
    return where;
}

inline Descriptor listenForFiles(const std::string& address) {
    const sockaddr_in where = filePort(address);
    const int yes = 1;
    Descriptor door(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ::setsockopt(door.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (::bind(door.get(), reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0 ||
        ::listen(door.get(), 4) != 0)
        throw Missing("cannot listen on " + address);
    return door;
}

inline Descriptor connectForFiles(const std::string& address) {
    const sockaddr_in where = filePort(address);
    Descriptor line(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (::connect(line.get(), reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0)
        throw Missing("nobody listens on " + address);
    return line;
}

class Stranger {
  public:
    explicit Stranger(Descriptor line) : line_(std::move(line)) {}

    // As much as the other side takes within `wait`; true if that is all.
    bool says(std::string_view bytes, Milliseconds wait = Patience) {
        for (const Deadline deadline(wait); !bytes.empty() && !deadline.passed();) {
            const ssize_t sent = ::send(line_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (sent < 0 && errno != EAGAIN) return false;
            if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
            if (sent < 0) ::poll(nullptr, 0, 1);
        }
        return bytes.empty();
    }
    // Reads until the other side has said this; false if it ends first.
    bool hears(std::string_view text) {
        for (const Deadline deadline(Patience); heard_.find(text) == heard_.npos;) {
            char chunk[65536];
            if (!readable(line_.get(), deadline.left())) return false;
            const ssize_t size = ::read(line_.get(), chunk, sizeof chunk);
            if (size <= 0) return false;
            heard_.append(chunk, static_cast<std::size_t>(size));
        }
        heard_.erase(0, heard_.find(text) + text.size());
        return true;
    }

  private:
    Descriptor line_;
    std::string heard_;
};

// Carries one connection from the address `at` to another client, up to so many bytes of either side until
// all may pass.
class FileRelay {
  public:
    FileRelay(const std::string& at, std::string to, std::size_t ofSender, std::size_t ofReceiver)
        : left_{ofSender, ofReceiver},
          door_(listenForFiles(at)),
          to_(std::move(to)),
          thread_([this] { run(); }) {}
    ~FileRelay() { cut(); }

    void passAll() {
        for (auto& left : left_) left = ~std::size_t{0};
    }
    void cut() {
        cut_ = true;
        if (thread_.joinable()) thread_.join();
    }

  private:
    void run() {
        while (!cut_ && !readable(door_.get(), 5)) {
        }
        if (cut_) return;
        Descriptor sender(::accept4(door_.get(), nullptr, nullptr, SOCK_CLOEXEC));
        Descriptor receiver = connectForFiles(to_);
        const int ends[] = {sender.get(), receiver.get()};
        while (!cut_ && carry(ends)) {
        }
        for (const int end : ends) ::shutdown(end, SHUT_WR);
        for (const int end : ends) drain(end);
    }
    // Whoever closes with something unread resets the connection; a cut is to be an end like any other.
    static void drain(int end) {
        char chunk[65536];
        for (const Deadline deadline(Milliseconds(2000)); readable(end, deadline.left());) {
            if (::read(end, chunk, sizeof chunk) <= 0) return;
        }
    }
    // What is held back stays in the kernel, and an end is seen even so.
    bool carry(const int (&ends)[2]) {
        pollfd entries[2];
        for (int i : {0, 1})
            entries[i] = {ends[i], static_cast<short>(POLLRDHUP | (left_[i] > 0 ? POLLIN : 0)), 0};
        ::poll(entries, 2, 5);
        for (int i : {0, 1}) {
            char chunk[65536];
            if ((entries[i].revents & POLLIN) == 0) {
                if ((entries[i].revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0) return false;
                continue;
            }
            const ssize_t size = ::read(ends[i], chunk, std::min(left_[i].load(), sizeof chunk));
            if (size <= 0 || ::send(ends[1 - i], chunk, static_cast<std::size_t>(size), MSG_NOSIGNAL) != size)
                return false;
            left_[i] -= static_cast<std::size_t>(size);
        }
        return true;
    }

    std::atomic<bool> cut_ = false;
    std::atomic<std::size_t> left_[2];
    Descriptor door_;
    std::string to_;
    std::thread thread_;
};

}  // namespace talvora::programs
