#pragma once
// A connected stream socket that carries lines. Lines that have arrived wait, in order, until somebody asks
// for one; what nobody asked for stays, so that a test may take things in the order in which it tells its
// story.

#include <QtCore/QIODevice>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "simulation/programs/Waiting.h"

namespace talvora::programs {

class LineSocket {
  public:
    using Wanted = std::function<bool(const std::string& line)>;

    // To a port of loopback, and to a local socket. One that cannot be connected is closed from the start.
    explicit LineSocket(int port);
    explicit LineSocket(const std::string& path);
    LineSocket(const LineSocket&) = delete;
    LineSocket& operator=(const LineSocket&) = delete;

    // Adds the line's end.
    void send(std::string_view line);
    // Takes the first waiting line that is wanted, or waits for it. Throws Missing, which names `what`.
    std::string take(const Wanted& wanted, const std::string& what, Milliseconds wait = Patience);
    // Reads what has arrived, or arrives in that time. `filter` may swallow a line by returning true.
    void gather(int milliseconds);
    bool closed() const { return closed_; }
    int descriptor() const { return descriptor_; }

    Wanted filter;
    std::string transcript;  // all lines in both directions

  private:
    template <typename Socket>
    void own(std::unique_ptr<Socket> socket);
    void keep(std::string line);

    int descriptor_ = -1;
    bool closed_ = false;
    std::deque<std::string> lines_;
    std::unique_ptr<QIODevice> socket_;
};

}  // namespace talvora::programs
