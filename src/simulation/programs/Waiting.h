#pragma once
// Bounded waiting for real programs: a deadline on the monotonic clock, and the fault that a wait ends in.
// The fault leaves the story that is told; everything that it started is ended by destructors.

#include <poll.h>

#include <chrono>
#include <stdexcept>
#include <string>

namespace talvora::programs {

using Milliseconds = std::chrono::milliseconds;

// Generous, since a sanitized build on a loaded machine is slow. Nobody waits so long when all is well.
constexpr Milliseconds Patience{20000};

class Missing : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class Deadline {
  public:
    explicit Deadline(Milliseconds wait) : end_(std::chrono::steady_clock::now() + wait) {}

    // 0 when it has passed, as poll wants it.
    int left() const {
        const auto left = std::chrono::ceil<Milliseconds>(end_ - std::chrono::steady_clock::now()).count();
        return left > 0 ? static_cast<int>(left) : 0;
    }
    bool passed() const { return left() == 0; }

  private:
    std::chrono::steady_clock::time_point end_;
};

// True when `descriptor` can be read (or has ended) before `milliseconds` are over.
inline bool readable(int descriptor, int milliseconds) {
    pollfd entry{descriptor, POLLIN, 0};
    return poll(&entry, 1, milliseconds) > 0;
}

}  // namespace talvora::programs
