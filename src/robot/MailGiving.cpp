#include "robot/MailGiving.h"

#include <algorithm>
#include <utility>

#include "platform/CodePage1253.h"
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
    out_.Forget(caller.Nick, Topic::Reading);
    out_.Forget(caller.Nick, Topic::NoMail);
    if (id == 0) noteArrival(caller);
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

// A store that others have locked can be read all the same; what has arrived goes with a later poll.
void MailGiving::noteArrival(const Caller& caller) {
    try {
        store_.RemoveDelivered(caller.Bare);
    } catch (const StoreError& fault) {
        log_(LogSubject::Store, "what has arrived stays for now: " + fromUtf8(fault.what()));
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
    readings_.Put(caller.Key, {caller, std::move(mail), id == 0 ? 0 : line}, loop_.Now());
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
    const Reading* reading = readingOf(caller);
    return reading != nullptr && reading->Stage != Reading::EndWaits &&
           !out_.Waits(caller.Nick, Topic::Reading);
}

// While the last line has not left yet, nobody can have read it.
void MailGiving::Acknowledge(const Caller& caller) {
    if (!Awaits(caller)) return;
    Reading* reading = readingOf(caller);
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
    store_.NoteEndSent(id, [this, key = caller.Key, id](bool safe) { sayEnd(key, id, safe); });
    reading->Stage = Reading::EndWaits;
}

void MailGiving::sayEnd(const std::string& key, std::int64_t id, bool safe) {
    Reading* reading = readings_.Find(key);
    if (reading == nullptr || reading->Mail.Id != id || reading->Stage != Reading::EndWaits) return;
    if (!safe) {
        readings_.Erase(key);
        return;
    }
    reading->Stage = Reading::Ended;
    log_(LogSubject::Mail, "read by " + reading->Who.Bare + ": number " + CStr(id));
    say(reading->Who, "MAIL DONE");
}

void MailGiving::say(const Caller& caller, std::string_view text) {
    out_.Send(caller, Topic::Reading, text);
}

MailGiving::Reading* MailGiving::readingOf(const Caller& caller) {
    Reading* reading = readings_.Find(caller.Key);
    return reading != nullptr && reading->Who.Nick == caller.Nick ? reading : nullptr;
}

MailGiving::WaitingReader* MailGiving::waitingOf(const Caller& caller) {
    const auto known = waitingByKey_.find(caller.Key);
    if (known == waitingByKey_.end() || known->second->Who.Nick != caller.Nick) return nullptr;
    return &*known->second;
}

// One who waits and has not asked again for long has gone.
std::string MailGiving::Holder(const std::string& key) {
    if (const Reading* reading = readings_.Find(key)) return reading->Who.Nick;
    const auto known = waitingByKey_.find(key);
    if (known == waitingByKey_.end() || loop_.Now() - known->second->Asked >= LapsesAfter) return {};
    return known->second->Who.Nick;
}

void MailGiving::Drop(const Caller& caller) {
    if (readingOf(caller) != nullptr) readings_.Erase(caller.Key);
    if (waitingOf(caller) != nullptr) LeaveQueue(caller.Key);
}

void MailGiving::Rename(const Caller& before, const Caller& now) {
    if (Reading* reading = readingOf(before)) reading->Who = now;
    if (WaitingReader* reader = waitingOf(before)) reader->Who = now;
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
