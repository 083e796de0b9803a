#include "robot/MailTaking.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"
#include "robot/Fields.h"
#include "robot/MailGiving.h"
#include "robot/Moment.h"

namespace talvora {

namespace {

using Topic = FairQueue::Topic;

// Longest numbers, for a line that is yet to be made.
constexpr std::int64_t LongestMailId = 2'000'000'000;

// The hours of a subject that ends in ":48:E"; 0 for a mail without the mark.
std::int32_t keptHours(std::string_view subject) {
    if (!subject.ends_with(":E")) return 0;
    subject.remove_suffix(2);
    const std::size_t colon = subject.rfind(':');
    if (colon == std::string_view::npos) return 0;
    return WholeNumber(subject.substr(colon + 1)).value_or(0);
}

}  // namespace

MailTaking::MailTaking(Platform& platform, const RobotConfig& config, RobotStore& store, FairQueue& out,
                       RobotLog log)
    : loop_(platform.TheLoop),
      clock_(platform.WallClock),
      config_(config),
      store_(store),
      out_(out),
      log_(std::move(log)),
      lines_(config) {}

bool MailTaking::Handle(const Caller& caller, std::string_view verb, std::string_view rest) {
    try {
        return handle(caller, verb, rest);
    } catch (const StoreError&) {
        refuse(caller);
        throw;
    }
}

bool MailTaking::handle(const Caller& caller, std::string_view verb, std::string_view rest) {
    if (verb == "SENDREQUEST") {
        request(caller);
    } else if (verb == "SEND") {
        begin(caller, rest);
    } else if (verb == "DUMP" || verb == "SENT") {
        piece(caller, rest, verb == "SENT");
    } else if (verb == "SENDCANCEL") {
        cancel(caller);
    } else {
        return false;
    }
    return true;
}

bool MailTaking::Awaits(const Caller& caller, std::string_view verb) {
    if (verb != "DUMP" && verb != "SENT") return false;
    const Taking* taking = takingOf(caller);
    return taking != nullptr && taking->Total > 0;
}

std::string MailTaking::Holder(const std::string& key) {
    const Taking* taking = takings_.Find(key);
    return taking == nullptr ? std::string() : taking->Holder;
}

MailTaking::Taking* MailTaking::takingOf(const Caller& caller) {
    Taking* taking = takings_.Find(caller.Key);
    return taking != nullptr && taking->Holder == caller.Nick ? taking : nullptr;
}

void MailTaking::Drop(const Caller& caller) {
    if (takingOf(caller) != nullptr) takings_.Erase(caller.Key);
}

void MailTaking::Rename(const Caller& before, const Caller& now) {
    if (Taking* taking = takingOf(before)) taking->Holder = now.Nick;
}

void MailTaking::request(const Caller& caller) {
    const Taking* taking = takingOf(caller);
    if (taking != nullptr && taking->Total == 0 && loop_.Now() - taking->Granted < OneBreath) return;
    cancel(caller);
    const bool free = takings_.Size() < static_cast<std::size_t>(config_.UsersSending);
    Taking turn;
    turn.Holder = caller.Nick;
    turn.Granted = loop_.Now();
    if (free) takings_.Put(caller.Key, std::move(turn), loop_.Now());
    answer(caller, free ? "SENDOK" : "SENDWAIAT");
}

void MailTaking::begin(const Caller& caller, std::string_view header) {
    const bool granted = takings_.Erase(caller.Key);
    if (!granted && takings_.Size() >= static_cast<std::size_t>(config_.UsersSending)) return refuse(caller);
    Taking taking;
    taking.Holder = caller.Nick;
    taking.Mail.Sender = caller.Bare;
    if (!read(taking, header)) return refuse(caller);
    takings_.Put(caller.Key, std::move(taking), loop_.Now());
    out_.Send(caller, Topic::Acknowledgement, "MAIL OK");
}

bool MailTaking::read(Taking& taking, std::string_view header) const {
    NewMail& mail = taking.Mail;
    mail.Recipient = BareNick(TakeWord(header));
    taking.Total = WholeNumber(TakeWord(header)).value_or(0);
    mail.Subject = header;
    if (mail.Recipient.empty() || taking.Total < 1 || taking.Total > config_.PiecesPerMail) return false;
    if (!reaches(mail, taking.Total)) return false;
    taking.Bytes = static_cast<std::int64_t>(mail.Subject.size());
    taking.Room = roomOf(mail.Recipient);
    return taking.Bytes <= taking.Room;
}

// A subject whose mail could not be announced to its recipient in one line would never reach him.
bool MailTaking::reaches(const NewMail& mail, int pieces) const {
    MailHead head;
    head.Id = LongestMailId;
    head.Sender = mail.Sender;
    head.Subject = mail.Subject;
    head.Pieces = pieces;
    head.SentAt = MomentOf(clock_.Now());
    return lines_.Excess(mail.Recipient, StartLine(head)) == 0;
}

std::int64_t MailTaking::roomOf(const std::string& recipient) const {
    const MailTotals totals = store_.TotalsOf(recipient);
    if (totals.Mails >= config_.MailsPerUser) return -1;
    return std::int64_t{config_.KilobytesPerUser} * 1024 - totals.Bytes;
}

// Without a mail under way a piece is a late one of a mail that is finished or given up, and a word of
// refusal would cut off the next mail. Only the last one is answered, since the user waits for it.
void MailTaking::piece(const Caller& caller, std::string_view rest, bool last) {
    Taking* taking = takingOf(caller);
    if (taking == nullptr || taking->Total == 0) {
        if (last) refuse(caller);
        return;
    }
    const bool same = EqualText(BareNick(TakeWord(rest)), taking->Mail.Recipient);
    const auto number = static_cast<int>(taking->Mail.Pieces.size()) + 1;
    taking->Bytes += static_cast<std::int64_t>(rest.size());
    if (!same || (number == taking->Total) != last || taking->Bytes > taking->Room) return refuse(caller);
    taking->Mail.Pieces.emplace_back(rest);
    if (last) {
        NewMail mail = std::move(taking->Mail);
        const std::int64_t bytes = taking->Bytes;
        takings_.Erase(caller.Key);
        return keep(caller, std::move(mail), bytes);
    }
    takings_.Touch(caller.Key, loop_.Now());
    out_.Send(caller, Topic::Acknowledgement, "MAIL OK");
}

// Others may have sent to the same recipient meanwhile, so his limit is looked at once more.
void MailTaking::keep(const Caller& caller, NewMail mail, std::int64_t bytes) {
    // An acknowledgement that comes behind the last piece would make the sender read beyond his mail's end.
    out_.Forget(caller.Nick, Topic::Acknowledgement);
    if (bytes > roomOf(mail.Recipient)) return refuse(caller);
    mail.SentAt = MomentOf(clock_.Now());
    const std::int64_t longest = std::int64_t{config_.KeepDays} * 24;
    const std::int64_t hours = keptHours(mail.Subject);
    mail.ExpiresAt = mail.SentAt + (hours > 0 ? std::min(hours, longest) : longest) * 3600;
    const std::string told =
        caller.Bare + " to " + mail.Recipient + ", " + CStr(mail.Pieces.size()) + " pieces";
    store_.AddMail(mail, [this, caller, told](bool safe) {
        if (safe) log_(LogSubject::Mail, "kept: " + told);
        confirm(caller, safe);
    });
}

void MailTaking::confirm(const Caller& caller, bool safe) {
    if (!safe) return refuse(caller);
    out_.Send(caller, Topic::Other, "MAIL SENTDONE", [this, sender = caller.Bare] { note(sender); });
}

// If this fails, the mail stays one whose confirmation may have got lost, which does no harm.
void MailTaking::note(const std::string& sender) {
    try {
        store_.NoteConfirmed(sender, MomentOf(clock_.Now()));
    } catch (const StoreError&) {
        return;
    }
}

void MailTaking::cancel(const Caller& caller) {
    Drop(caller);
    out_.Forget(caller.Nick, Topic::Acknowledgement);
}

void MailTaking::refuse(const Caller& caller) {
    cancel(caller);
    answer(caller, "SENDERROR");
}

void MailTaking::answer(const Caller& caller, std::string_view text) {
    out_.Send(caller, Topic::Other, "MAIL " + std::string(text));
}

}  // namespace talvora
