#include "platform_qt/QtLoop.h"

#include <sys/timerfd.h>
#include <time.h>

#include <QAbstractEventDispatcher>
#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>
#include <utility>

namespace talvora {

namespace {

constexpr Microseconds Never = std::numeric_limits<Microseconds>::max();
constexpr Microseconds Slice = 2000;       // work of one turn before the sockets are looked at
constexpr Microseconds LongestWait = 100;  // of a round in which nothing is ready
constexpr Microseconds QuickPart = 100;    // ticks that are quicker than this are timed in larger parts
constexpr int TicksInPart = 16;
constexpr int DeepestPump = 16;

Descriptor makeAlarm() {
    Descriptor alarm(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC));
    if (alarm.get() < 0) throw std::system_error(errno, std::generic_category(), "timerfd_create");
    return alarm;
}

QAbstractEventDispatcher& dispatcher() {
    return *QAbstractEventDispatcher::instance();
}

}  // namespace

QtLoop::QtLoop() : alarm_(makeAlarm()), notifier_(alarm_.get(), QSocketNotifier::Read), armedFor_(Never) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { turn(); });
    // Also what Qt itself calls between two turns (a key, a click) finds the time of its own turn.
    QObject::connect(&dispatcher(), &QAbstractEventDispatcher::aboutToBlock, &notifier_,
                     [this] { fresh_ = false; });
}

Microseconds QtLoop::refresh() const {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    fresh_ = true;
    return now_ = Microseconds{time.tv_sec} * 1'000'000 + time.tv_nsec / 1000;
}

Microseconds QtLoop::Now() const {
    return fresh_ ? now_ : refresh();
}

void QtLoop::Defer(std::function<void()> call) {
    deferred_.push_back(std::move(call));
    // During a turn the alarm stands in the past already, and no system call is made.
    if (armedFor_ > Now()) wakeAt(0);
}

void QtLoop::TimersChanged() {
    const auto due = timers_.nextDue();
    if (due && *due < armedFor_) wakeAt(*due);
}

bool QtLoop::runDeferred() {
    if (deferred_.empty()) return false;
    const std::function<void()> call = std::move(deferred_.front());
    deferred_.pop_front();
    guard_->run("Deferred call", call);
    return true;
}

bool QtLoop::fire(std::uint64_t mark) {
    bool fired = true;
    guard_->run("Timer", [&] { fired = timers_.fireNext(now_, mark); });
    return fired;
}

void QtLoop::turn() {
    if (std::exchange(skipTurn_, false)) return;
    const Microseconds end = refresh() + Slice;
    int part = 1;
    for (int ran = 0;;) {
        const bool called = runDeferred();
        const bool fired = fire(~std::uint64_t{0});
        if (!called && !fired) break;
        if (++ran < part) continue;
        ran = 0;
        const Microseconds before = now_;
        if (refresh() >= end) break;
        part = now_ - before < QuickPart ? TicksInPart : 1;
    }
    settle();
}

// Asks to be woken when the next thing is due. While the alarm stands in the past it stays readable, and a
// turn that leaves work behind need not set it anew.
void QtLoop::settle() {
    const Microseconds due = deferred_.empty() ? timers_.nextDue().value_or(Never) : 0;
    if (due > now_ || armedFor_ > now_) wakeAt(due);
}

void QtLoop::wakeAt(Microseconds time) {
    if (time == armedFor_) return;
    armedFor_ = time;
    itimerspec alarm{};
    if (time != Never) {
        alarm.it_value.tv_sec = time / 1'000'000;
        alarm.it_value.tv_nsec = std::max<long>(time % 1'000'000 * 1000, 1);  // all zero would disarm it
    }
    ::timerfd_settime(alarm_.get(), TFD_TIMER_ABSTIME, &alarm, nullptr);
}

void QtLoop::pump(bool waits) {
    if (pumps_ == DeepestPump) return;
    struct Depth {
        int& count;
        explicit Depth(int& c) : count(c) { ++count; }
        Depth(const Depth&) = delete;
        Depth& operator=(const Depth&) = delete;
        ~Depth() { --count; }
    } depth(pumps_);
    bool delivered = round();
    // Qt's own events have their turn; ours was the round above.
    skipTurn_ = true;
    if (dispatcher().processEvents(QEventLoop::AllEvents)) delivered = true;
    if (!delivered && waits) {
        skipTurn_ = true;
        wakeAt(std::min(timers_.nextDue().value_or(Never), refresh() + LongestWait));
        dispatcher().processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    skipTurn_ = false;
    refresh();
    settle();
}

// What is ready now, each wake-up once; what is deferred meanwhile belongs to the next round.
bool QtLoop::round() {
    refresh();
    const std::uint64_t mark = timers_.mark();
    bool delivered = false;
    std::size_t calls = deferred_.size();
    for (bool more = true; more;) {
        const bool called = calls > 0 && runDeferred();
        if (called) --calls;
        more = fire(mark) || called;
        delivered = delivered || more;
    }
    return delivered;
}

}  // namespace talvora
