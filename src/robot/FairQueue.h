#pragma once
// All that the robot says to users. Each has a queue of his own, and the queues are served in turn, one line
// each, at the rate that the network bears: a user who is owed many lines keeps nobody waiting. News, and the
// word that there are none, can wait: while dialogues are under way they get a small share. A user whose
// queue grows beyond what any dialogue needs loses it, and his dialogues with it.

#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/Platform.h"

namespace talvora {

// The nick in front of the mark of its state: "Maria" of `Maria[DND]`.
std::string BareNick(std::string_view nick);

// One who speaks to the robot. Who he is for the length of a dialogue is the nick as the server wrote it,
// state and capitals included: nobody else on the network has it. The mailbox is that of the bare nick.
struct Caller {
    explicit Caller(const std::string& nick);

    std::string Nick;  // where the answers go
    std::string Bare;
    std::string Key;  // of the mailbox: the bare nick in upper case
};

class FairQueue {
  public:
    enum class Topic { Acknowledgement, Reading, Other, NoMail, Announcements };
    enum class LineKind { Special, Plain, SpecialNotice };
    using Put = std::function<void(const std::string& nick, const std::string& text, LineKind kind)>;
    using WhenSent = std::function<void()>;

    static constexpr std::size_t MostLinesOfUser = 64;
    static constexpr std::size_t MostLines = 100'000;
    static constexpr unsigned NewsAmong = 4;  // one line of news among so many, while both wait

    // `linesPerSecond` 0 for no limit. `put` hands a line to the connection.
    FairQueue(Platform& platform, int linesPerSecond, int burst, Put put);

    // The user's queue has been dropped, since it grew too long. His dialogues are to go, too.
    Event<const std::string&> Overflowed;

    // A line of a reader has waited for longer than the reader does, and has been dropped with what else he
    // was to read: he would take it for nothing, and its answer would be false.
    Event<const std::string&> CameTooLate;
    static constexpr Microseconds ReadersWait = 20'000'000;

    // Closed, nothing waits and nothing is taken.
    void Open() { open_ = true; }
    void Close();

    void Send(const Caller& to, Topic topic, std::string_view text, WhenSent whenSent = {});
    void SendAs(LineKind kind, const Caller& to, std::string_view text);

    // Whether a line of that topic waits for the user of exactly that nick.
    bool Waits(const std::string& nick, Topic topic) const;
    // Takes back the lines of a topic; the user keeps his place among those who wait.
    void Forget(const std::string& nick, Topic topic);
    void Drop(const std::string& nick);
    // The user has another nick now: what waits goes there.
    void Rename(const std::string& before, const std::string& now);

    std::size_t Waiting() const { return dialogues_.waiting + news_.waiting; }

  private:
    struct Line {
        Topic topic = Topic::Other;
        LineKind kind = LineKind::Special;
        std::string text;
        WhenSent whenSent;
        Microseconds since = 0;
    };
    struct Queue {
        std::string nick;
        std::deque<Line> lines;
    };
    using Place = std::list<Queue>::iterator;
    struct Ring {
        std::list<Queue> turn;  // who is next stands first
        std::unordered_map<std::string, Place> byNick;
        std::size_t waiting = 0;  // lines in all queues

        Queue* find(const std::string& nick);
        const Queue* find(const std::string& nick) const;
        Queue& queueOf(const std::string& nick);
        void erase(Place place);
        void drop(const std::string& nick);
        void rename(const std::string& before, const std::string& now);
        void clear();
    };

    void add(const Caller& to, Line line);
    static bool isNews(Topic topic) { return topic >= Topic::NoMail; }
    Ring& ringOf(Topic topic) { return isNews(topic) ? news_ : dialogues_; }
    const Ring& ringOf(Topic topic) const { return isNews(topic) ? news_ : dialogues_; }
    Ring& nextRing();
    void serve();
    void serveNext(Ring& ring);
    bool isTooLate(const Line& line) const;
    bool mayGo() const { return interval_ == 0 || free_ <= loop_.Now(); }
    void spend();
    void waitForTurn();

    Loop& loop_;
    Put put_;
    Microseconds interval_;
    Microseconds burst_;
    Microseconds free_ = INT64_MIN;  // from when on a line may go, as for the wire's own pacing
    bool open_ = false;
    bool serving_ = false;
    Ring dialogues_;
    Ring news_;
    unsigned served_ = 0;
    WakeUp due_;
};

}  // namespace talvora
