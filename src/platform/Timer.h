#pragma once
// The control `Timer`: raises `Tick` every `Interval` milliseconds while it is `Enabled`.

#include "platform/Platform.h"
#include "platform/Property.h"

namespace talvora {

class Timer {
  public:
    // `intervalMs` at least 1; a timer is born disabled unless `enabled` says that design time has it on.
    Timer(Platform& platform, int intervalMs, bool enabled = false);
    // The timer of somebody who ends before it is destroyed: at `end` it stops, and nothing starts it again.
    Timer(Platform& platform, Event<>& end, int intervalMs, bool enabled = false);

    // True on a running timer does not restart it; off and on does.
    Property<bool> Enabled{false};
    // Off and on: it runs, and its next tick is a whole period away.
    void Restart();
    // In milliseconds. A new value starts the period anew.
    Property<int> Interval;
    Event<> Tick;

    // For a timer whose ticks only look whether there is something to do: it stays `Enabled`, but the loop is
    // spared the ticks that would find nothing, until `Wake` says that there may be something again.
    void Rest() { wakeUp_.rest(); }
    void Wake() { wakeUp_.wake(); }

  private:
    void apply();

    Platform& platform_;
    WakeUp wakeUp_;
    bool ended_ = false;
    Subscriptions own_;
};

}  // namespace talvora
