#include "mail/MailHeaders.h"

#include <algorithm>
#include <chrono>
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

}  // namespace

// A damaged file is reported once, under the name of the procedure that shows the list, and does not keep the
// mails behind it from being shown.
const MailHeader* MailHeaders::Known(const std::string& name) const {
    const auto found = incoming_.find(name);
    return found == incoming_.end() ? nullptr : &found->second;
}

void MailHeaders::readHead(MailHeader& header, char kind) {
    header.Damaged = true;
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
}

std::vector<const MailHeader*> MailHeaders::Read(char kind) {
    Table& kept = kind == 'i' ? incoming_ : outgoing_;
    std::vector<Files::Entry> entries;
    if (files_.FolderExists("Mail")) entries = files_.Entries("Mail", std::string(1, kind) + "*.qrm");
    Table now;
    now.reserve(entries.size());
    std::vector<const MailHeader*> headers;
    headers.reserve(entries.size());
    for (Files::Entry& entry : entries) {
        auto known = kept.extract(entry.Name);
        if (known.empty() || known.mapped().Size != entry.Size || known.mapped().Changed != entry.Changed) {
            MailHeader header;
            header.Number = MailFile::NumberOf(entry.Name);
            header.Size = entry.Size;
            header.Changed = entry.Changed;
            header.Name = entry.Name;
            readHead(header, kind);
            headers.push_back(&now.emplace(std::move(entry.Name), std::move(header)).first->second);
        } else {
            headers.push_back(&now.insert(std::move(known)).position->second);
        }
    }
    kept = std::move(now);
    std::ranges::stable_sort(headers, {}, [](const MailHeader* header) { return header->Number; });
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
