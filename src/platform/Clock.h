#pragma once
// The wall clock, for texts and expiry only: it may jump. Intervals are measured by the loop's clock.

#include <chrono>
#include <compare>
#include <cstdint>

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
    // What the clock showed so many seconds after 1970 began in UTC, where it has a zone of its own; in UTC
    // else. The year 2000 for a moment that no calendar holds.
    virtual DateTime At(std::int64_t seconds) const {
        using namespace std::chrono;
        constexpr std::int64_t calendarEnd = 253402300799;  // 31/12/9999
        if (seconds < 0 || seconds > calendarEnd) return {};
        const sys_seconds moment{std::chrono::seconds{seconds}};
        const year_month_day day{floor<days>(moment)};
        const hh_mm_ss<std::chrono::seconds> time{moment - floor<days>(moment)};
        return {static_cast<int>(day.year()),
                static_cast<int>(static_cast<unsigned>(day.month())),
                static_cast<int>(static_cast<unsigned>(day.day())),
                static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count())};
    }
};

}  // namespace talvora
