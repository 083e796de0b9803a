#include "robot/ExpiryClock.h"

#include <cstdlib>

#include "robot/Moment.h"

namespace talvora {

namespace {

// In seconds, from one question to the next: time servers correct by less.
constexpr std::int64_t Tolerance = 120;

}  // namespace

std::optional<std::int64_t> ExpiryClock::Now() {
    const std::int64_t moment = MomentOf(clock_.Now());
    if (jumped(moment)) plausibleSince_ = loop_.Now();
    moment_ = moment;
    asked_ = loop_.Now();
    if (asked_ - plausibleSince_ < PlausibleAfter) return std::nullopt;
    return moment;
}

bool ExpiryClock::jumped(std::int64_t moment) const {
    if (!moment_) return true;
    return std::abs(moment - *moment_ - (loop_.Now() - asked_) / 1'000'000) > Tolerance;
}

}  // namespace talvora
