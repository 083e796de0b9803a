#pragma once
// The nicks of one WHO reply, bare and as they came side by side. A value that never changes once the reply
// is whole; a nick is found at the same cost however many there are.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "chat/modNickDecode.h"
#include "platform/Text.h"

namespace talvora {

class OnlineUsers {
  public:
    OnlineUsers() = default;
    OnlineUsers(const OnlineUsers&) = delete;
    OnlineUsers& operator=(const OnlineUsers&) = delete;

    void Add(std::string nick) { raw_.push_back(std::move(nick)); }
    // Behind the last Add.
    void Index() {
        byBare_.reserve(raw_.size());
        for (const std::string& nick : raw_) byBare_.try_emplace(bareNickOf(nick), &nick);
    }

    // As it came: the first nick that is so without its state, without regard to case. Null if there is none.
    const std::string* find(std::string_view bareNick) const {
        const auto found = byBare_.find(bareNick);
        return found == byBare_.end() ? nullptr : found->second;
    }
    const std::vector<std::string>& Raw() const { return raw_; }

  private:
    std::vector<std::string> raw_;
    std::unordered_map<std::string_view, const std::string*, TextHash, TextEqual> byBare_;
};

}  // namespace talvora
