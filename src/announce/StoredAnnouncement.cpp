#include "announce/StoredAnnouncement.h"

#include <vector>

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::int64_t HoursOfADay = 24;
constexpr std::int64_t DaysOfAWeek = 7;

std::string counted(std::int64_t number, const char* unit) {
    return CStr(number) + " " + unit + (number == 1 ? "" : "s");
}

}  // namespace

StoredAnnouncement StoredAnnouncement::Read(std::string_view line) {
    std::vector<std::string_view> fields;
    splitInto(fields, line, " ", Fields);
    const auto field = [&](std::size_t index) { return std::string(elementOf(fields, index)); };
    StoredAnnouncement read{field(0), field(1), field(2), field(3), field(4), field(5)};
    read.Date = Replace(read.Date, "_", " ");
    return read;
}

std::int64_t StoredAnnouncement::Age(const DateTime& now) const {
    return DateDiffHours(CDate(Date), now);
}

std::int64_t StoredAnnouncement::Remaining(std::int64_t age) const {
    return CLng(Val(Lifetime)) - age;
}

int StoredAnnouncement::TheCategory() const {
    const std::int32_t number = CLng(Val(Kind));
    return number >= 0 && number < Category::Count ? number : -1;
}

std::string StoredAnnouncement::ShownText() const {
    return Replace(Text, AnnouncementLineEnd, "\r\n");
}

std::string HoursInWords(std::int64_t hours) {
    if (hours < 0) return "expired";
    if (hours == 0) return "now";
    const std::int64_t days = (hours + HoursOfADay / 2) / HoursOfADay;
    if (hours < 2 * HoursOfADay) return counted(hours, "hour");
    if (days < 2 * DaysOfAWeek) return counted(days, "day");
    return counted((days + DaysOfAWeek / 2) / DaysOfAWeek, "week");
}

}  // namespace talvora
