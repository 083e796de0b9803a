#include "mail/MailHeaders.h"

#include <chrono>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {

namespace {

std::int64_t minutesOf(const DateTime& moment) {
    const std::chrono::year_month_day day{std::chrono::year(moment.Year),
                                          std::chrono::month(static_cast<unsigned>(moment.Month)),
                                          std::chrono::day(static_cast<unsigned>(moment.Day))};
    return std::chrono::sys_days(day).time_since_epoch().count() * 1440LL + moment.Hour * 60 + moment.Minute;
}

std::optional<DateTime> dateIn(const std::string& text) {
    try {
        return CDate(text);
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

// Keeps of `headers` those whose names are among `found`.
void forgetOthers(auto& headers, const std::vector<FolderLook::Entry>& found) {
    if (headers.empty()) return;
    std::unordered_set<std::string_view> names;
    for (const FolderLook::Entry& entry : found) names.insert(entry.Name);
    std::erase_if(headers, [&](const auto& header) { return !names.contains(header.second.Name); });
}

}  // namespace

const MailHeader* MailHeaders::Known(const std::string& name) const {
    const auto found = incoming_.headers.find({MailFile::NumberOf(name), name});
    return found == incoming_.headers.end() ? nullptr : &found->second;
}

// What stands there about a mail that is new or has changed; its head is still to be read.
std::optional<MailHeaders::Key> MailHeaders::noted(Kept& kept, FolderLook::Entry entry) {
    Key key{MailFile::NumberOf(entry.Name), entry.Name};
    MailHeader& header = kept.headers[key];
    if (!header.Name.empty() && header.Size == entry.Size && header.Version == entry.Version)
        return std::nullopt;
    header = {};
    header.Number = key.first;
    header.Size = entry.Size;
    header.Version = entry.Version;
    header.Name = std::move(entry.Name);
    header.Damaged = true;
    return key;
}

// A damaged file is reported once, under the name of the procedure that shows the list, and does not keep the
// mails behind it from being shown. A report lets others look meanwhile, and the mail may be gone behind it.
void MailHeaders::readHead(Kept& kept, const Key& key, char kind) {
    const auto found = kept.headers.find(key);
    if (found == kept.headers.end()) return;
    MailHeader header = found->second;
    trapped(globError_, "RefreshMailList", [&](Trap& step) {
        std::string start;
        step([&] { start = files_.ReadStart(MailFile::PathOf(header.Name), HeadLimit); });
        const bool read = step([&] {
            if (kind == 'i') {
                MailFile::ReadSummary(start, header.Incoming);
            } else {
                header.Outgoing = MailFile::ReadOutgoing(start.substr(0, start.find_first_of("\r\n")));
            }
        });
        header.Damaged = !read;
    });
    header.ReceivedAt = dateIn(header.Incoming.Received);
    const auto still = kept.headers.find(key);
    if (still != kept.headers.end() && still->second.Version == header.Version)
        still->second = std::move(header);
}

// All are noted before the first is read, since what a look tells it tells once.
std::vector<const MailHeader*> MailHeaders::Read(char kind) {
    Kept& kept = kind == 'i' ? incoming_ : outgoing_;
    FolderLook::News news = kept.folder.Look();
    for (const std::string& name : news.Gone) kept.headers.erase({MailFile::NumberOf(name), name});
    if (news.All) forgetOthers(kept.headers, news.Found);
    std::vector<Key> unread;
    for (FolderLook::Entry& entry : news.Found)
        if (auto key = noted(kept, std::move(entry))) unread.push_back(std::move(*key));
    for (const Key& key : unread) readHead(kept, key, kind);
    std::vector<const MailHeader*> headers;
    headers.reserve(kept.headers.size());
    for (const auto& [key, header] : kept.headers) headers.push_back(&header);
    return headers;
}

std::string AgeText(const DateTime& moment, const DateTime& now) {
    const std::int64_t minutes = minutesOf(now) - minutesOf(moment);
    if (minutes < 0) return {};
    if (minutes < 1) return "now";
    struct Unit {
        std::int64_t minutes;
        const char* name;
    };
    for (const auto& [size, name] : {Unit{525600, " y"}, {10080, " w"}, {1440, " d"}, {60, " h"}}) {
        if (minutes >= size) return CStr(minutes / size) + name;
    }
    return CStr(minutes) + " min";
}

std::string SizeText(std::int64_t bytes) {
    if (bytes <= 1024) return CStr(bytes) + " b";
    const std::int64_t tenths = bytes * 10 / 1024;
    return CStr(tenths / 10) + "." + CStr(tenths % 10) + " Kb";
}

}  // namespace talvora
