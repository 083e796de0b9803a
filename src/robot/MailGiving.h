#pragma once
// The robot's side of the reception of mail. A user asks for mail, and gets it line by line, the next one
// when he has acknowledged the last; after a cut he goes on at any line. A mail is there until its reader has
// all of it.
//
// A reader whose next line is long in coming gives up, and begins again later. So only as many are served at
// a time as the rate of lines allows; the others wait for their turn, in the order in which they came.
//
// A mailbox has one reader at a time, known by his exact nick; whoever owns this asks for `Holder` before it
// hands on the words of another one.

#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "robot/FairQueue.h"
#include "robot/LapsingTable.h"
#include "robot/RobotConfig.h"
#include "robot/RobotLog.h"
#include "robot/RobotStore.h"

namespace talvora {

// "MAIL START" with what a reader is told of a mail.
std::string StartLine(const MailHead& mail);

class MailGiving {
  public:
    static constexpr Microseconds LapsesAfter = 60'000'000;
    static constexpr std::size_t MostReaders = 10'000;
    // How many seconds of lines all readers together may be owed.
    static constexpr std::size_t SecondsToGoRound = 10;

    MailGiving(Platform& platform, const RobotConfig& config, RobotStore& store, FairQueue& out,
               RobotLog log);

    // "0 0": is there mail? "17 5": go on with mail 17, of which 5 lines are there.
    void Poll(const Caller& caller, std::string_view id, std::string_view line);
    // "OK"
    void Acknowledge(const Caller& caller);
    // Whether an acknowledgement would be the answer to a line that the user was sent.
    bool Awaits(const Caller& caller);

    // Whether a mail is being read by that user.
    bool Reads(const Caller& caller) { return readingOf(caller) != nullptr; }
    // The nick that reads from that mailbox or waits for its turn to; empty if there is none.
    std::string Holder(const std::string& key);
    // The user waits no longer for his turn.
    void LeaveQueue(const std::string& key);
    // The dialogue of that nick, and nobody else's.
    void Drop(const Caller& caller);
    void Rename(const Caller& before, const Caller& now);
    void Clear();
    void Sweep();

    std::size_t Readers() const { return readings_.Size(); }
    std::size_t WaitingReaders() const { return waiting_.size(); }

  private:
    struct Reading {
        Caller Who;
        MailHead Mail;
        int Line;  // sent so far
        enum { Lines, EndWaits, Ended } Stage = Lines;
    };
    struct WaitingReader {
        Caller Who;
        std::int32_t Id;
        int Line;
        Microseconds Asked;
    };

    Reading* readingOf(const Caller& caller);
    WaitingReader* waitingOf(const Caller& caller);
    void take(const Caller& caller, std::int32_t id, int line);
    std::optional<MailHead> find(const Caller& caller, std::int32_t id, int line);
    void refuse(const Caller& caller, std::int32_t id, int line);
    void wait(const Caller& caller, std::int32_t id, int line);
    void admit();
    void start(const Caller& caller, MailHead mail, std::int32_t id, int line);
    void noteArrival(const Caller& caller);
    void sayEnd(const std::string& key, std::int64_t id, bool safe);
    void say(const Caller& caller, std::string_view text);
    bool full() const { return readings_.Size() >= most_; }

    Loop& loop_;
    Clock& clock_;
    RobotStore& store_;
    FairQueue& out_;
    RobotLog log_;
    std::size_t most_;
    LapsingTable<Reading> readings_;
    std::list<WaitingReader> waiting_;
    std::unordered_map<std::string, std::list<WaitingReader>::iterator> waitingByKey_;
};

}  // namespace talvora
