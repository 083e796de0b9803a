#pragma once
// A connected stream socket that carries lines. Lines that have arrived wait, in order, until somebody asks
// for one; what nobody asked for stays, so that a test may take things in the order in which it tells its
// story.

#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "e2e/support/Descriptor.h"
#include "e2e/support/Waiting.h"

namespace talvora::e2e {

class LineSocket {
  public:
    using Wanted = std::function<bool(const std::string& line)>;

    explicit LineSocket(Descriptor socket) : socket_(std::move(socket)) {}

    // Adds the line's end.
    void send(std::string_view line);
    // Takes the first waiting line that is wanted, or waits for it. Throws Missing, which names `what`.
    std::string take(const Wanted& wanted, const std::string& what, Milliseconds wait = Patience);
    // Reads what has arrived. `filter` may swallow a line by returning true.
    void gather(int milliseconds);
    bool waiting(const Wanted& wanted) const;
    bool closed() const { return closed_; }
    int descriptor() const { return socket_.get(); }

    Wanted filter;
    std::string transcript;  // all lines in both directions

  private:
    void keep(std::string line);

    Descriptor socket_;
    std::string partial_;
    std::deque<std::string> lines_;
    bool closed_ = false;
};

}  // namespace talvora::e2e
