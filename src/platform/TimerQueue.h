#pragma once
// The wake-ups of a loop in the order in which they fall due. Shared by the real and the virtual platform, so
// that both keep the loop's contract by the same code.

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "platform/Loop.h"

namespace talvora {

class TimerQueue {
  public:
    // On the real platform a period of 1 ms means "as soon as the loop is free": such a wake-up is due again
    // in the turn that follows, behind everything that is due by then. On the virtual platform it takes its
    // millisecond of virtual time.
    enum class OneMillisecond { AsSoonAsFree, Exact };

    explicit TimerQueue(OneMillisecond mode) : mode_(mode) {}

    std::optional<Microseconds> nextDue() const;
    // Fires the earliest wake-up if it is due at `now`; false if none was. With a mark, what was armed or has
    // fired since the mark was taken is left for later, so that one round calls each wake-up once at most.
    bool fireNext(Microseconds now, std::uint64_t mark = ~std::uint64_t{0});
    std::uint64_t mark() const { return nextOrder_; }

  private:
    friend class WakeUp;
    void insert(WakeUp& entry, Microseconds due);
    void remove(WakeUp& entry);
    Microseconds period(const WakeUp& entry) const;

    static bool earlier(const WakeUp& a, const WakeUp& b);
    void place(WakeUp* entry, std::size_t index);
    void siftUp(std::size_t index);
    void siftDown(std::size_t index);

    OneMillisecond mode_;
    std::uint64_t nextOrder_ = 0;
    std::vector<WakeUp*> heap_;
};

}  // namespace talvora
