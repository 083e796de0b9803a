#pragma once
// The moment by which the robot deletes what has expired. A wall clock that is put wrong, or comes up wrong
// after a start, would delete everybody's mail; so it is believed only when it has gone along with the
// monotonic clock for an hour. Nobody misses the deletion: an expired mail is not begun in any case. Owned by
// `Robot`.

#include <cstdint>
#include <optional>

#include "platform/Platform.h"

namespace talvora {

class ExpiryClock {
  public:
    static constexpr Microseconds PlausibleAfter = 3600 * Microseconds{1'000'000};

    explicit ExpiryClock(Platform& platform) : loop_(platform.TheLoop), clock_(platform.WallClock) {}

    // Asked each minute: the present moment as `Moment.h` counts it, or nothing while the clock is not
    // believed.
    std::optional<std::int64_t> Now();

  private:
    bool jumped(std::int64_t moment) const;

    Loop& loop_;
    Clock& clock_;
    std::optional<std::int64_t> moment_;  // when it was asked last
    Microseconds asked_ = 0;
    Microseconds plausibleSince_ = 0;
};

}  // namespace talvora
