#include "irc/wire/Pacing.h"

#include <algorithm>

namespace talvora {

bool Pacing::add(Kind kind, std::string_view line, Microseconds now, std::string& out) {
    if (kind == Kind::AtOnce || kind == Kind::Last) {
        if (kind == Kind::Last) reset();
        out += line;
        return true;
    }
    if (kind == Kind::Answer) {
        if (answers_.size() < MostAnswers) answers_.emplace_back(line);
    } else {
        if (ownBytes_ + line.size() > MostOwnBytes) return false;
        own_.emplace_back(line);
        ownBytes_ += line.size();
    }
    tick(now, out);
    return true;
}

void Pacing::tick(Microseconds now, std::string& out) {
    while (waiting() > 0 && mayGo(now)) {
        auto& queue = own_.empty() ? answers_ : own_;
        if (&queue == &own_) ownBytes_ -= queue.front().size();
        out += queue.front();
        queue.pop_front();
        spend(now);
    }
}

std::optional<Microseconds> Pacing::nextDue() const {
    if (waiting() == 0) return std::nullopt;
    return free_;
}

void Pacing::reset() {
    own_.clear();
    answers_.clear();
    ownBytes_ = 0;
    free_ = std::numeric_limits<Microseconds>::min();
}

void Pacing::spend(Microseconds now) {
    free_ = std::max(free_, now - (Burst - 1) * Interval) + Interval;
}

}  // namespace talvora
