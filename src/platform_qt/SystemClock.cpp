#include "platform_qt/SystemClock.h"

#include <time.h>

#include <algorithm>

namespace talvora {

namespace {

timespec now() {
    timespec moment{};
    ::clock_gettime(CLOCK_REALTIME, &moment);
    return moment;
}

}  // namespace

DateTime localDateTime(std::int64_t seconds) {
    const auto moment = static_cast<time_t>(seconds);
    tm parts{};
    if (::localtime_r(&moment, &parts) == nullptr) return {};  // no year can hold it
    const int second = std::min(parts.tm_sec, 59);             // no leap second on the wall
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, second};
}

DateTime SystemClock::Now() const {
    return localDateTime(now().tv_sec);
}

double SystemClock::SecondsSinceMidnight() const {
    const timespec moment = now();
    const DateTime time = localDateTime(moment.tv_sec);
    return (time.Hour * 60 + time.Minute) * 60 + time.Second + static_cast<double>(moment.tv_nsec) / 1e9;
}

}  // namespace talvora
