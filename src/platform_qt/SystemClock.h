#pragma once
// The wall clock of the machine, in the user's local time.

#include <cstdint>

#include "platform/Clock.h"

namespace talvora {

// What the user's wall clock showed so many seconds after 1970 began in UTC.
DateTime localDateTime(std::int64_t seconds);

class SystemClock final : public Clock {
  public:
    DateTime Now() const override;
    double SecondsSinceMidnight() const override;
    DateTime At(std::int64_t seconds) const override { return localDateTime(seconds); }
};

}  // namespace talvora
