#include "robot/FairQueue.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

// A wake-up comes no oftener than this; at a higher rate several lines leave at once.
constexpr int ShortestWait = 2;
constexpr Microseconds Second = 1'000'000;

}  // namespace

std::string BareNick(std::string_view nick) {
    return std::string(nick.substr(0, nick.find('[')));
}

Caller::Caller(const std::string& nick) : Nick(OneLine(nick)), Bare(BareNick(Nick)), Key(UCase(Bare)) {}

FairQueue::FairQueue(Platform& platform, int linesPerSecond, int burst, Put put)
    : loop_(platform.TheLoop),
      put_(std::move(put)),
      interval_(linesPerSecond > 0 ? Second / linesPerSecond : 0),
      burst_(std::max(burst, linesPerSecond / (1000 / ShortestWait) + 1)),
      due_([this, &platform] {
          platform.Guarded.run("FairQueue", [this] {
              due_.disarm();
              serve();
          });
      }) {}

// ---- One ring of queues

FairQueue::Queue* FairQueue::Ring::find(const std::string& nick) {
    const auto known = byNick.find(nick);
    return known == byNick.end() ? nullptr : &*known->second;
}

const FairQueue::Queue* FairQueue::Ring::find(const std::string& nick) const {
    const auto known = byNick.find(nick);
    return known == byNick.end() ? nullptr : &*known->second;
}

FairQueue::Queue& FairQueue::Ring::queueOf(const std::string& nick) {
    if (Queue* known = find(nick)) return *known;
    turn.push_back({nick, {}});
    byNick.emplace(nick, std::prev(turn.end()));
    return turn.back();
}

void FairQueue::Ring::erase(Place place) {
    waiting -= place->lines.size();
    byNick.erase(place->nick);
    turn.erase(place);
}

void FairQueue::Ring::drop(const std::string& nick) {
    const auto known = byNick.find(nick);
    if (known != byNick.end()) erase(known->second);
}

void FairQueue::Ring::rename(const std::string& before, const std::string& now) {
    const auto known = byNick.find(before);
    if (known == byNick.end()) return;
    const Place place = known->second;
    byNick.erase(known);
    place->nick = now;
    byNick[now] = place;
}

void FairQueue::Ring::clear() {
    byNick.clear();
    turn.clear();
    waiting = 0;
}

// ---- Taking lines

void FairQueue::Close() {
    open_ = false;
    due_.disarm();
    dialogues_.clear();
    news_.clear();
}

void FairQueue::Send(const Caller& to, Topic topic, std::string_view text, WhenSent whenSent) {
    add(to, {topic, LineKind::Special, OneLine(text), std::move(whenSent)});
}

void FairQueue::SendAs(LineKind kind, const Caller& to, std::string_view text) {
    add(to, {Topic::Other, kind, OneLine(text), {}});
}

void FairQueue::add(const Caller& to, Line line) {
    if (!open_) return;
    Ring& ring = ringOf(line.topic);
    Queue& queue = ring.queueOf(to.Nick);
    if (queue.lines.size() >= MostLinesOfUser || Waiting() >= MostLines) {
        Drop(to.Nick);
        Overflowed.raise(to.Nick);
        return;
    }
    line.since = loop_.Now();
    queue.lines.push_back(std::move(line));
    ++ring.waiting;
    if (!serving_) serve();
}

bool FairQueue::Waits(const std::string& nick, Topic topic) const {
    const Queue* queue = ringOf(topic).find(nick);
    if (queue == nullptr) return false;
    const auto isOfTopic = [topic](const Line& line) { return line.topic == topic; };
    return std::any_of(queue->lines.begin(), queue->lines.end(), isOfTopic);
}

void FairQueue::Forget(const std::string& nick, Topic topic) {
    Ring& ring = ringOf(topic);
    Queue* queue = ring.find(nick);
    if (queue == nullptr) return;
    ring.waiting -= std::erase_if(queue->lines, [topic](const Line& line) { return line.topic == topic; });
}

void FairQueue::Drop(const std::string& nick) {
    dialogues_.drop(nick);
    news_.drop(nick);
}

// The nick was nobody's until now, so what waits under it is of one who has gone.
void FairQueue::Rename(const std::string& before, const std::string& now) {
    Drop(now);
    dialogues_.rename(before, now);
    news_.rename(before, now);
}

// ---- Serving them

void FairQueue::serve() {
    const struct Serving {
        explicit Serving(bool& flag) : on(flag) { on = true; }
        ~Serving() { on = false; }
        Serving(const Serving&) = delete;
        Serving& operator=(const Serving&) = delete;
        bool& on;
    } serving(serving_);
    while (Waiting() > 0 && mayGo()) serveNext(nextRing());
    if (Waiting() > 0) waitForTurn();
}

FairQueue::Ring& FairQueue::nextRing() {
    if (dialogues_.waiting == 0) return news_;
    if (news_.waiting == 0) return dialogues_;
    return ++served_ % NewsAmong == 0 ? news_ : dialogues_;
}

bool FairQueue::isTooLate(const Line& line) const {
    return line.topic == Topic::Reading && loop_.Now() - line.since > ReadersWait;
}

void FairQueue::serveNext(Ring& ring) {
    const Place first = ring.turn.begin();
    if (first->lines.empty()) return ring.erase(first);
    if (isTooLate(first->lines.front())) {
        const std::string nick = first->nick;
        Forget(nick, Topic::Reading);
        CameTooLate.raise(nick);
        return;
    }
    const Line line = std::move(first->lines.front());
    const std::string nick = first->nick;
    first->lines.pop_front();
    --ring.waiting;
    if (first->lines.empty()) {
        ring.erase(first);
    } else {
        ring.turn.splice(ring.turn.end(), ring.turn, first);
    }
    spend();
    put_(nick, line.text, line.kind);
    if (line.whenSent) line.whenSent();
}

void FairQueue::spend() {
    if (interval_ == 0) return;
    free_ = std::max(free_, loop_.Now() - (burst_ - 1) * interval_) + interval_;
}

void FairQueue::waitForTurn() {
    if (due_.armed()) return;
    const Microseconds wait = std::clamp<Microseconds>(free_ - loop_.Now(), 0, Second);
    due_.arm(loop_, std::max(ShortestWait, static_cast<int>((wait + 999) / 1000)));
}

}  // namespace talvora
