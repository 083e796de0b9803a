#pragma once
// The rate at which lines leave for a server whose flood limits can't be lifted: a burst, then one line a
// second. Answers to other people's questions wait behind the user's own lines and are dropped beyond a
// bound. Knows no clock: the time is given, in microseconds.

#include <cstddef>
#include <deque>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Loop.h"

namespace talvora {

class Pacing {
  public:
    enum class Kind {
        AtOnce,  // never waits: the answer to a PING
        Own,     // the user's own
        Answer,  // to somebody else's question
        Last,    // goes at once, and nothing that waits is sent any more
    };

    static constexpr int Burst = 5;
    static constexpr Microseconds Interval = 1'000'000;
    static constexpr std::size_t MostOwnBytes = std::size_t{1024} * 1024;
    static constexpr std::size_t MostAnswers = 16;

    // Takes a whole line with its end and puts into `out` what may go now. False if too much of the user's
    // own waits; the line is lost then.
    bool add(Kind kind, std::string_view line, Microseconds now, std::string& out);
    void tick(Microseconds now, std::string& out);
    // When the next line may go; nothing if none waits.
    std::optional<Microseconds> nextDue() const;
    std::size_t waiting() const { return own_.size() + answers_.size(); }
    void reset();

  private:
    bool mayGo(Microseconds now) const { return free_ <= now; }
    void spend(Microseconds now);

    std::deque<std::string> own_;
    std::deque<std::string> answers_;
    std::size_t ownBytes_ = 0;
    // The moment from which a line may go. Each line moves it on by the interval, and it lags behind the time
    // by at most a burst less one.
    Microseconds free_ = std::numeric_limits<Microseconds>::min();
};

}  // namespace talvora
