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

void Timer::apply() {
    if (Enabled) {
        wakeUp_.arm(platform_.TheLoop, Interval);
    } else {
        wakeUp_.disarm();
    }
}

}  // namespace talvora
