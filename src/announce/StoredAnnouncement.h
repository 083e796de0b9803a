#pragma once
// One announcement, read from a line of the list: six fields parted by single blanks, the text last. The line
// is as the robot has sent it, and anybody may have written it, so each reading may fault. A plain value.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Clock.h"

namespace talvora {

namespace Category {
inline constexpr int Simple = 0;
inline constexpr int Urgent = 1;
inline constexpr int Moderator = 2;
inline constexpr int Administrator = 3;
inline constexpr int Owner = 4;
inline constexpr int Meeting = 5;
inline constexpr int Query = 6;
inline constexpr int Information = 7;
inline constexpr int Count = 8;

// As they are shown, in their order.
inline constexpr std::array<const char*, Count> Names = {
    "Simple Announcement",
    "Urgent Announcement",
    "Morerator Announcement",
    "Administrator Announcement",
    "AP-Owner Announcement",
    "Meeting Announcement",
    "Query",
    "Information!",
};
}  // namespace Category

// Stands for a line end in an announcement's text.
inline constexpr std::string_view AnnouncementLineEnd = "[#n]";

struct StoredAnnouncement {
    static constexpr int Fields = 6;

    // Fault 9 if there are fewer than six fields.
    static StoredAnnouncement Read(std::string_view line);

    std::string Number;
    std::string Poster;
    std::string Lifetime;  // in hours
    std::string Date;      // of the posting, as the robot wrote it, with blanks
    std::string Kind;      // the category's number
    std::string Text;      // on one line

    // Hours of the clock since the posting; below 0 if that is still to come. Fault 13 if the date is none.
    std::int64_t Age(const DateTime& now) const;
    // Hours that are left at that age; below 0 it has expired. Fault 6 for a lifetime beyond 32 bits.
    std::int64_t Remaining(std::int64_t age) const;
    // -1 for a category that there is not; fault 6 for one beyond all numbers.
    int TheCategory() const;
    // With line ends, CR LF.
    std::string ShownText() const;
};

// What is left of an announcement's life in words: "3 days", "5 hours", "now", "expired".
std::string HoursInWords(std::int64_t hours);

}  // namespace talvora
