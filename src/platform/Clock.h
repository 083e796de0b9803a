#pragma once
// The wall clock, for texts and expiry only: it may jump. Intervals are measured by the loop's clock.

#include <compare>

namespace talvora {

// A moment of local time, as a calendar and a clock on the wall show it.
struct DateTime {
    int Year = 2000;
    int Month = 1;  // 1 to 12
    int Day = 1;    // 1 to 31
    int Hour = 0;   // 0 to 23
    int Minute = 0;
    int Second = 0;

    auto operator<=>(const DateTime&) const = default;
};

class Clock {
  public:
    virtual ~Clock() = default;
    virtual DateTime Now() const = 0;
    // Seconds since midnight with a fraction: the seed of the random generator.
    virtual double SecondsSinceMidnight() const = 0;
};

}  // namespace talvora
