#include "robot/AnnouncementDesk.h"

#include <algorithm>
#include <utility>

#include "irc/wire/LineView.h"
#include "platform/Text.h"
#include "robot/Fields.h"
#include "robot/Moment.h"

namespace talvora {

namespace {

using Topic = FairQueue::Topic;

constexpr std::int64_t LongestId = 2'000'000'000;
constexpr std::int64_t Day = 86400;
constexpr const char* NotKept = "it could not be kept. Please post it again later.";

std::string lineOf(const Announcement& told) {
    return "ANN ANN " + CStr(told.Id) + " " + told.Poster + " " + CStr(told.Hours) + " " +
           DateWord(told.PostedAt) + " " + CStr(told.Category) + " " + told.Text;
}

// A lifetime as its poster typed it: what is no number counts as 0, as it does for him.
std::int64_t hoursOf(std::string_view typed) {
    try {
        return CLng(Val(typed));
    } catch (const RuntimeError&) {
        return -1;
    }
}

}  // namespace

AnnouncementDesk::AnnouncementDesk(Platform& platform, const RobotConfig& config, RobotStore& store,
                                   FairQueue& out, RobotLog log)
    : clock_(platform.WallClock),
      config_(config),
      store_(store),
      out_(out),
      log_(std::move(log)),
      lines_(config) {}

bool AnnouncementDesk::Handle(const Caller& caller, std::string_view verb, std::string_view rest) {
    if (verb == "HAS") {
        SkipBlanks(rest);
        tellNews(caller, rest);
    } else if (verb == "POST") {
        post(caller, rest);
    } else {
        return false;
    }
    return true;
}

// A number beyond the last one is from a history that this robot does not know: such a client begins here, as
// one without a history does.
void AnnouncementDesk::tellNews(const Caller& caller, std::string_view has) {
    if (!AllDigits(has) || out_.Waits(caller.Nick, Topic::Announcements)) return;
    const std::int64_t last = store_.LastAnnouncement();
    const std::int64_t number = WholeNumber(has).value_or(-1);
    if (number == last) return say(caller, "ANN NO");
    if (number <= 0 || number > last) return say(caller, "ANN ANNID " + CStr(last));
    const auto news = store_.AnnouncementsAfter(number, MomentOf(clock_.Now()), AtATime);
    for (const Announcement& one : news) say(caller, lineOf(one));
    // All of them have expired.
    if (news.empty()) say(caller, "ANN ANNID " + CStr(last));
}

// An empty lifetime leaves two blanks in front of the category.
void AnnouncementDesk::post(const Caller& caller, std::string_view rest) {
    Announcement wanted;
    wanted.Poster = caller.Bare;
    wanted.Hours = hoursOf(TakeWord(rest));
    SkipBlanks(rest);
    wanted.Category = WholeNumber(TakeWord(rest)).value_or(-1);
    wanted.PostedAt = MomentOf(clock_.Now());
    wanted.Text = OneLine(Trim(rest));
    const std::string wrong = objection(caller, wanted);
    if (!wrong.empty()) return refuse(caller, wrong);
    try {
        store_.AddAnnouncement(wanted, [this, caller, category = wanted.Category](bool safe) {
            if (!safe) return refuse(caller, NotKept);
            log_(LogSubject::Announcements, "posted by " + caller.Bare + " in category " + CStr(category));
        });
    } catch (const StoreError&) {
        refuse(caller, NotKept);
        throw;
    }
}

// The nick is compared as the servers do, which know no capitals but ASCII ones: a name that only looks the
// same may be another user's. Behind it nothing but a state that belongs to the network, since anybody can
// take `Boss[x]`.
bool AnnouncementDesk::mayPost(const Caller& caller, const CategoryRules& rules) const {
    const auto is = [&](const std::string& nick) { return sameAscii(nick, caller.Nick); };
    const auto isWithAState = [&](const std::string& poster) {
        return is(poster) || std::ranges::any_of(config_.PosterStates, [&](const std::string& state) {
                   return is(poster + "[" + state + "]");
               });
    };
    return rules.Posters.empty() || std::ranges::any_of(rules.Posters, isWithAState);
}

std::string AnnouncementDesk::objection(const Caller& caller, const Announcement& wanted) const {
    if (wanted.Category < 0 || wanted.Category >= CategoryCount) return "there is no such category.";
    const CategoryRules& rules = config_.Categories[static_cast<std::size_t>(wanted.Category)];
    if (!mayPost(caller, rules)) return "you may not post in this category.";
    if (wanted.Text.empty()) return "it has no text.";
    if (wanted.Hours < 0 || wanted.Hours > rules.MaxHours) {
        return "in this category it may last from 0 to " + CStr(rules.MaxHours) + " hours.";
    }
    Announcement longest = wanted;
    longest.Id = LongestId;
    if (const std::size_t excess = lines_.Excess({}, lineOf(longest)); excess > 0) {
        return "its text is too long by " + CStr(excess) + " letters.";
    }
    if (store_.PostedSince(caller.Bare, wanted.Category, wanted.PostedAt - Day) >= rules.PerDay) {
        return "you may post " + CStr(rules.PerDay) + " a day in this category. Please post it tomorrow.";
    }
    return {};
}

void AnnouncementDesk::refuse(const Caller& caller, const std::string& reason) {
    log_(LogSubject::Announcements, "refused to " + caller.Bare + ": " + reason);
    out_.SendAs(FairQueue::LineKind::Plain, caller, "Your announcement was not posted: " + reason);
}

void AnnouncementDesk::say(const Caller& caller, const std::string& text) {
    out_.Send(caller, Topic::Announcements, text);
}

}  // namespace talvora
