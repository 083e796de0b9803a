#include "robot/Moment.h"

#include <algorithm>
#include <chrono>

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::int64_t SecondsOfDay = 86400;
// What a general date can hold: the years 100 to 9999.
constexpr std::int64_t Earliest = -59011459200;
constexpr std::int64_t Latest = 253402300799;

}  // namespace

std::int64_t MomentOf(const DateTime& date) {
    using namespace std::chrono;
    const year_month_day day{year{date.Year}, month{static_cast<unsigned>(date.Month)},
                             std::chrono::day{static_cast<unsigned>(date.Day)}};
    const std::int64_t days = sys_days{day}.time_since_epoch().count();
    return days * SecondsOfDay + date.Hour * 3600 + date.Minute * 60 + date.Second;
}

DateTime DateOf(std::int64_t moment) {
    using namespace std::chrono;
    moment = std::clamp(moment, Earliest, Latest);
    const std::int64_t second = ((moment % SecondsOfDay) + SecondsOfDay) % SecondsOfDay;
    const auto count = static_cast<int>((moment - second) / SecondsOfDay);
    const year_month_day day{sys_days{days{count}}};
    const auto left = static_cast<int>(second);
    return {static_cast<int>(day.year()),
            static_cast<int>(static_cast<unsigned>(day.month())),
            static_cast<int>(static_cast<unsigned>(day.day())),
            left / 3600,
            left / 60 % 60,
            left % 60};
}

std::string DateWord(std::int64_t moment) {
    return Replace(GeneralDate(DateOf(moment)), " ", "_");
}

}  // namespace talvora
