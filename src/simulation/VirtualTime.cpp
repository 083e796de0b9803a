#include "simulation/VirtualTime.h"

#include <algorithm>

namespace talvora::test {

void VirtualTime::at(Microseconds due, std::function<void()> call) {
    calls_.emplace(due, std::move(call));
}

bool VirtualTime::turn() {
    bool any = false;
    if (!calls_.empty() && calls_.begin()->first <= now_) {
        const auto call = std::move(calls_.begin()->second);
        calls_.erase(calls_.begin());
        call();
        any = true;
    }
    return timers_.fireNext(now_) || any;
}

void VirtualTime::Pump() {
    if (!turn()) now_ += 100;
}

void VirtualTime::run(std::chrono::microseconds duration) {
    const Microseconds end = now_ + duration.count();
    for (;;) {
        while (turn()) {
        }
        Microseconds next = timers_.nextDue().value_or(end + 1);
        if (!calls_.empty()) next = std::min(next, calls_.begin()->first);
        if (next > end) break;
        now_ = std::max(now_, next);
    }
    now_ = std::max(now_, end);
}

void VirtualTime::jump(std::chrono::microseconds duration) {
    now_ += duration.count();
    settle();
}

}  // namespace talvora::test
