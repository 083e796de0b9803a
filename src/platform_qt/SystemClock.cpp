#include "platform_qt/SystemClock.h"

#include <time.h>

#include <algorithm>

namespace talvora {

namespace {

struct LocalTime {
    tm parts{};
    long nanoseconds = 0;
};

LocalTime localTime() {
    timespec moment{};
    ::clock_gettime(CLOCK_REALTIME, &moment);
    LocalTime result;
    ::localtime_r(&moment.tv_sec, &result.parts);
    result.parts.tm_sec = std::min(result.parts.tm_sec, 59);  // no leap second on the wall
    result.nanoseconds = moment.tv_nsec;
    return result;
}

}  // namespace

DateTime SystemClock::Now() const {
    const tm parts = localTime().parts;
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

double SystemClock::SecondsSinceMidnight() const {
    const LocalTime time = localTime();
    const int seconds = (time.parts.tm_hour * 60 + time.parts.tm_min) * 60 + time.parts.tm_sec;
    return seconds + static_cast<double>(time.nanoseconds) / 1e9;
}

}  // namespace talvora
