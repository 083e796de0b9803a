#pragma once
// Writes down every event of an engine as a line of text, `Name(argument, argument)`; a control character is
// shown as its number in angle brackets.

#include <string>
#include <utility>
#include <vector>

#include "irc/IRCServ.h"

namespace talvora::test {

class EventLog {
  public:
    explicit EventLog(IRCServ& engine);

    // The events since the last call. The two that come with every line are left out unless asked for.
    std::vector<std::string> take() { return std::exchange(lines_, {}); }
    bool everyLine = false;

  private:
    template <class... Args>
    void watch(const char* name, Event<Args...>& event);

    std::vector<std::string> lines_;
    Subscriptions on_;
};

// Readable, with control characters as numbers.
std::string shown(const std::string& text);

}  // namespace talvora::test
