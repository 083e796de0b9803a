#pragma once
// The real loop: the component's timers and deferred calls on Qt's event loop, in the application's thread.
//
// A timer descriptor of the kernel stands among Qt's sockets and is readable while something is due. So Qt's
// dispatcher itself makes timers and sockets alternate, the loop sleeps exactly until the next due time, and
// an idle loop costs nothing. Needs a QCoreApplication, which outlives it. Several loops may live in one
// thread.

#include <QSocketNotifier>
#include <deque>
#include <functional>

#include "platform/Guard.h"
#include "platform/Loop.h"
#include "platform/TimerQueue.h"
#include "platform_qt/Descriptor.h"

namespace talvora {

class QtLoop final : public Loop {
  public:
    QtLoop();
    QtLoop(const QtLoop&) = delete;
    QtLoop& operator=(const QtLoop&) = delete;
    ~QtLoop() override = default;

    Microseconds Now() const override;
    void Defer(std::function<void()> call) override;
    // Within 16 rounds that stand inside each other; a deeper one returns at once.
    void Pump() override { pump(true); }
    void Yield() override { pump(false); }
    TimerQueue& Timers() override { return timers_; }
    void TimersChanged() override;

    // Where a fault goes that strays out of a deferred call or a wake-up. Without one it is printed. The
    // guard outlives the loop's last turn.
    void setGuard(Guard& guard) { guard_ = &guard; }

  private:
    Microseconds refresh() const;
    void turn();
    void pump(bool waits);
    bool round();
    bool runDeferred();
    bool fire(std::uint64_t mark);
    void settle();
    void wakeAt(Microseconds time);

    TimerQueue timers_{TimerQueue::OneMillisecond::AsSoonAsFree};
    std::deque<std::function<void()>> deferred_;
    Guard printing_;
    Guard* guard_ = &printing_;
    Descriptor alarm_;
    QSocketNotifier notifier_;
    Microseconds armedFor_;
    mutable Microseconds now_ = 0;
    mutable bool fresh_ = false;  // now_ is the time of this turn
    int pumps_ = 0;
    bool skipTurn_ = false;
};

}  // namespace talvora
