#pragma once
// The one loop of the component, as the platform offers it: time, timers, deferred calls and `Pump`.
//
// The contract, the same on every platform: the clock stands still within one turn; timers fire in the order
// of their due times, equal ones in the order in which they were armed; a timer that fell behind fires once,
// not once for each missed period; socket events and timers alternate and none starves the other. No
// exception leaves a callback: a stray one goes to the platform's last guard.

#include <cstdint>
#include <functional>

namespace talvora {

// Microseconds of the monotonic clock, from an arbitrary start.
using Microseconds = std::int64_t;

class Loop;

// One armed or idle wake-up. `Timer` is the control made of it.
class WakeUp {
  public:
    explicit WakeUp(std::function<void()> action) : action_(std::move(action)) {}
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;
    ~WakeUp() { disarm(); }

    // First due one period from now, then every period, until it is disarmed. Arming an armed one starts the
    // period anew. `periodMs` is at least 1.
    void arm(Loop& loop, int periodMs);
    void disarm();
    bool armed() const { return loop_ != nullptr; }

    // An armed wake-up that rests keeps its place but is not called until `wake`; see Timer::Rest.
    void rest();
    void wake();

  private:
    friend class TimerQueue;
    std::function<void()> action_;
    Loop* loop_ = nullptr;
    int periodMs_ = 0;
    Microseconds due_ = 0;
    std::uint64_t order_ = 0;
    std::size_t place_ = 0;  // in the queue's heap, counted from 1; 0 while it rests
};

class TimerQueue;

class Loop {
  public:
    virtual ~Loop() = default;

    // The time of this turn.
    virtual Microseconds Now() const = 0;
    // Runs `call` once, later in this or the next turn, in order with other deferred calls.
    virtual void Defer(std::function<void()> call) = 0;
    // One round: what is ready is delivered, and if nothing is, it waits at most a tenth of a millisecond.
    // With `Yield` and the questions the only place where other events run inside a handler.
    virtual void Pump() = 0;
    // The same for who has work to do: what is ready is delivered, and nothing is waited for.
    virtual void Yield() = 0;

    // The queue that holds the loop's wake-ups.
    virtual TimerQueue& Timers() = 0;
    // Tells the loop that the earliest due time may have changed.
    virtual void TimersChanged() = 0;
};

}  // namespace talvora
