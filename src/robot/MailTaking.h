#pragma once
// The robot's side of the sending of a mail. A user asks, is granted his turn, names recipient and number of
// pieces, and hands over one piece a line. A mail is whole or it is nothing: what is cut off is forgotten,
// and only what the store has safely kept is confirmed. A mailbox has one who sends at a time, known by his
// exact nick; whoever owns this asks for `Holder` before it hands on the words of another one.

#include <string>
#include <string_view>

#include "robot/FairQueue.h"
#include "robot/LapsingTable.h"
#include "robot/LineRoom.h"
#include "robot/RobotConfig.h"
#include "robot/RobotLog.h"
#include "robot/RobotStore.h"

namespace talvora {

class MailTaking {
  public:
    // A turn and a half-taken mail lapse so long after the user's last line.
    static constexpr Microseconds LapsesAfter = 60'000'000;
    // A mail to several recipients asks once for each in one breath: one turn is the answer to all.
    static constexpr Microseconds OneBreath = 3'000'000;

    MailTaking(Platform& platform, const RobotConfig& config, RobotStore& store, FairQueue& out,
               RobotLog log);

    // The words of a user: "SENDREQUEST", "SEND", "DUMP", "SENT", "SENDCANCEL". False for any other. If the
    // store fails, the mail is refused, and the StoreError goes on to the caller.
    bool Handle(const Caller& caller, std::string_view verb, std::string_view rest);
    // Whether a line with that word is the next one of a mail under way, and so no new request.
    bool Awaits(const Caller& caller, std::string_view verb);

    // The nick that has the turn of that mailbox; empty if nobody has it.
    std::string Holder(const std::string& key);
    // What that nick has half sent, and nobody else's.
    void Drop(const Caller& caller);
    void Rename(const Caller& before, const Caller& now);
    void Clear() { takings_.Clear(); }
    void Sweep() { takings_.Lapse(loop_.Now() - LapsesAfter); }

    std::size_t Sending() const { return takings_.Size(); }

  private:
    struct Taking {
        std::string Holder;
        NewMail Mail;
        int Total = 0;  // 0 while the user has his turn and has not named his mail
        std::int64_t Bytes = 0;
        std::int64_t Room = 0;
        Microseconds Granted = 0;
    };

    Taking* takingOf(const Caller& caller);
    bool handle(const Caller& caller, std::string_view verb, std::string_view rest);
    void request(const Caller& caller);
    void begin(const Caller& caller, std::string_view header);
    bool read(Taking& taking, std::string_view header) const;
    bool reaches(const NewMail& mail, int pieces) const;
    std::int64_t roomOf(const std::string& recipient) const;
    void piece(const Caller& caller, std::string_view rest, bool last);
    void keep(const Caller& caller, NewMail mail, std::int64_t bytes);
    void confirm(const Caller& caller, bool safe);
    void note(const std::string& sender);
    void cancel(const Caller& caller);
    void refuse(const Caller& caller);
    void answer(const Caller& caller, std::string_view text);

    Loop& loop_;
    Clock& clock_;
    const RobotConfig& config_;
    RobotStore& store_;
    FairQueue& out_;
    RobotLog log_;
    LineRoom lines_;
    LapsingTable<Taking> takings_;
};

}  // namespace talvora
