#include "robot/RequestLimit.h"

namespace talvora {

namespace {

// More users than any network has in a minute: beyond, somebody makes nicks up, and those are not served.
constexpr std::size_t MostUsers = 100'000;

}  // namespace

bool RequestLimit::Allow(const std::string& user) {
    if (perMinute_ <= 0) return true;
    const auto known = made_.find(user);
    if (known != made_.end()) return known->second < perMinute_ && ++known->second > 0;
    if (made_.size() >= MostUsers) return false;
    made_.emplace(user, 1);
    return true;
}

void RequestLimit::NewMinute() {
    made_ = {};
}

}  // namespace talvora
