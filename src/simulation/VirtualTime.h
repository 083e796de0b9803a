#pragma once
// The loop on virtual time: the clock moves only when a test moves it. Thirty minutes cost microseconds.

#include <chrono>
#include <functional>
#include <map>
#include <utility>

#include "platform/TimerQueue.h"

namespace talvora::test {

class VirtualTime final : public Loop {
  public:
    Microseconds Now() const override { return now_; }
    void Defer(std::function<void()> call) override { at(now_, std::move(call)); }
    void Pump() override;
    void Yield() override { turn(); }
    TimerQueue& Timers() override { return timers_; }
    void TimersChanged() override {}

    // Runs `call` at `due`, in order with other calls of that time; socket events come this way.
    void at(Microseconds due, std::function<void()> call);

    // Runs through the time event by event.
    void run(std::chrono::microseconds duration);
    // Everything that is ready now, without moving the clock.
    void settle() { run(std::chrono::microseconds{0}); }
    // The clock jumps, as after a long sleep; then everything that fell due in between runs.
    void jump(std::chrono::microseconds duration);

  private:
    bool turn();  // one call and one timer that are ready; false if nothing was

    Microseconds now_ = 1'000'000;
    TimerQueue timers_{TimerQueue::OneMillisecond::Exact};
    std::multimap<Microseconds, std::function<void()>> calls_;
};

}  // namespace talvora::test
