#include "robot/MailGiving.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"
#include "robot/Fields.h"
#include "robot/Moment.h"

namespace talvora {

namespace {

using Topic = FairQueue::Topic;

std::size_t readersAtATime(int linesPerSecond) {
    if (linesPerSecond <= 0) return MailGiving::MostReaders;
    return std::min(MailGiving::MostReaders,
                    static_cast<std::size_t>(linesPerSecond) * MailGiving::SecondsToGoRound);
}

}  // namespace

// A reader faults on a line without a subject, and blanks at its end fall off on the way.
std::string StartLine(const MailHead& mail) {
    const std::string subject = Trim(mail.Subject).empty() ? "-" : mail.Subject;
    return "MAIL START " + mail.Sender + " " + DateWord(mail.SentAt) + " " + CStr(mail.Pieces) + " " +
           CStr(mail.Id) + " " + subject;
}

MailGiving::MailGiving(Platform& platform, const RobotConfig& config, RobotStore& store, FairQueue& out,
                       RobotLog log)
    : loop_(platform.TheLoop),
      clock_(platform.WallClock),
      store_(store),
      out_(out),
      log_(std::move(log)),
      most_(readersAtATime(config.LinesPerSecond)) {}

void MailGiving::Poll(const Caller& caller, std::string_view id, std::string_view line) {
    if (!AllDigits(id) || !AllDigits(line)) return;
    // A number that is too wide is that of no mail, and no mail has so many lines.
    take(caller, WholeNumber(id).value_or(-1), WholeNumber(line).value_or(-1));
}

void MailGiving::take(const Caller& caller, std::int32_t id, int line) {
    const bool served = readings_.Erase(caller.Key);
    out_.Forget(caller.Key, Topic::Reading);
    out_.Forget(caller.Key, Topic::NoMail);
    if (id == 0) store_.RemoveDelivered(caller.Bare);
    auto mail = find(caller, id, line);
    if (!mail) {
        LeaveQueue(caller.Key);
        refuse(caller, id, line);
    } else if (full() || (!served && !waiting_.empty())) {
        wait(caller, id, line);
    } else {
        LeaveQueue(caller.Key);
        start(caller, std::move(*mail), id, line);
    }
}

std::optional<MailHead> MailGiving::find(const Caller& caller, std::int32_t id, int line) {
    if (id < 0 || line < 0) return std::nullopt;
    if (id == 0) return store_.FirstMailFor(caller.Bare, MomentOf(clock_.Now()));
    auto mail = store_.MailFor(caller.Bare, id);
    if (mail && line > mail->Pieces) mail.reset();
    return mail;
}

void MailGiving::refuse(const Caller& caller, std::int32_t id, int line) {
    const bool none = id == 0 && line >= 0;
    out_.Send(caller, none ? Topic::NoMail : Topic::Reading, none ? "MAIL NOMAIL" : "MAIL NOTEXIST");
}

void MailGiving::start(const Caller& caller, MailHead mail, std::int32_t id, int line) {
    const std::string text = id == 0 ? StartLine(mail) : "MAIL RESUME";
    Reading reading;
    reading.Mail = std::move(mail);
    reading.Line = id == 0 ? 0 : line;
    readings_.Put(caller.Key, std::move(reading), loop_.Now());
    say(caller, text);
}

// One who asks again keeps his place. He asks each minute for as long as he is there.
void MailGiving::wait(const Caller& caller, std::int32_t id, int line) {
    const WaitingReader reader{caller, id, line, loop_.Now()};
    const auto known = waitingByKey_.find(caller.Key);
    if (known != waitingByKey_.end()) {
        *known->second = reader;
    } else if (waiting_.size() < MostReaders) {
        waitingByKey_.emplace(caller.Key, waiting_.insert(waiting_.end(), reader));
    }
}

void MailGiving::admit() {
    while (!waiting_.empty() && !full()) {
        const WaitingReader reader = waiting_.front();
        LeaveQueue(reader.Who.Key);
        if (loop_.Now() - reader.Asked >= LapsesAfter) continue;
        if (auto mail = find(reader.Who, reader.Id, reader.Line)) {
            start(reader.Who, std::move(*mail), reader.Id, reader.Line);
        } else {
            refuse(reader.Who, reader.Id, reader.Line);
        }
    }
}

bool MailGiving::Awaits(const Caller& caller) {
    const Reading* reading = readings_.Find(caller.Key);
    return reading != nullptr && reading->Stage != Reading::EndWaits &&
           !out_.Waits(caller.Key, Topic::Reading);
}

// While the last line has not left yet, nobody can have read it.
void MailGiving::Acknowledge(const Caller& caller) {
    if (!Awaits(caller)) return;
    Reading* reading = readings_.Find(caller.Key);
    readings_.Touch(caller.Key, loop_.Now());
    if (reading->Stage == Reading::Ended) {
        // This may be the acknowledgement of an earlier line that was under way: the mail stays until the
        // reader asks for the next one, which he does at once.
        readings_.Erase(caller.Key);
        return admit();
    }
    const std::int64_t id = reading->Mail.Id;
    if (reading->Line < reading->Mail.Pieces) {
        if (!store_.MailFor(caller.Bare, id)) {  // it has expired; the reader asks again and is told so
            readings_.Erase(caller.Key);
            return admit();
        }
        const std::string piece = store_.Piece(id, reading->Line + 1);
        ++reading->Line;
        return say(caller, "MAIL DUMP " + piece);
    }
    store_.NoteEndSent(id, [this, caller, id](bool safe) { sayEnd(caller, id, safe); });
    reading->Stage = Reading::EndWaits;
}

void MailGiving::sayEnd(const Caller& caller, std::int64_t id, bool safe) {
    Reading* reading = readings_.Find(caller.Key);
    if (reading == nullptr || reading->Mail.Id != id || reading->Stage != Reading::EndWaits) return;
    if (!safe) {
        readings_.Erase(caller.Key);
        return;
    }
    reading->Stage = Reading::Ended;
    log_(LogSubject::Mail, "read by " + caller.Bare + ": number " + CStr(id));
    say(caller, "MAIL DONE");
}

void MailGiving::say(const Caller& caller, std::string_view text) {
    out_.Send(caller, Topic::Reading, text);
}

void MailGiving::Drop(const std::string& key) {
    readings_.Erase(key);
    LeaveQueue(key);
}

void MailGiving::LeaveQueue(const std::string& key) {
    const auto known = waitingByKey_.find(key);
    if (known == waitingByKey_.end()) return;
    waiting_.erase(known->second);
    waitingByKey_.erase(known);
}

void MailGiving::Clear() {
    readings_.Clear();
    waitingByKey_.clear();
    waiting_.clear();
}

void MailGiving::Sweep() {
    readings_.Lapse(loop_.Now() - LapsesAfter);
    admit();
}

}  // namespace talvora
