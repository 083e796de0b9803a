#include "platform/Timer.h"

namespace talvora {

Timer::Timer(Platform& platform, int intervalMs, bool enabled)
    : Interval(intervalMs),
      platform_(platform),
      wakeUp_([this] { platform_.Guarded.run("Timer", [this] { Tick.raise(); }); }) {
    own_ += Enabled.Changed.connect([this](bool) { apply(); });
    own_ += Interval.Changed.connect([this](int) { apply(); });
    Enabled = enabled;
}

Timer::Timer(Platform& platform, Event<>& end, int intervalMs, bool enabled)
    : Timer(platform, intervalMs, enabled) {
    own_ += end.connect([this] {
        ended_ = true;
        Enabled = false;
    });
}

// Who watches `Enabled` need not see it off for a moment.
void Timer::Restart() {
    if (Enabled) return apply();
    Enabled = true;
}

void Timer::apply() {
    if (Enabled && !ended_) {
        wakeUp_.arm(platform_.TheLoop, Interval);
    } else {
        wakeUp_.disarm();
    }
}

}  // namespace talvora
