#pragma once
// How many requests a user may make in a minute. What comes on top is dropped without an answer: an answer
// would be one more line to send.

#include <string>
#include <unordered_map>

namespace talvora {

class RequestLimit {
  public:
    // 0 for no limit.
    explicit RequestLimit(int perMinute) : perMinute_(perMinute) {}

    bool Allow(const std::string& user);
    // Everybody begins anew.
    void NewMinute();

  private:
    int perMinute_;
    std::unordered_map<std::string, int> made_;
};

}  // namespace talvora
