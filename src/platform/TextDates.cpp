#include <algorithm>
#include <array>

#include "platform/Text.h"

namespace talvora {
namespace {

void appendPadded(std::string& to, int value, std::size_t width) {
    const std::string digits = CStr(value);
    to.append(width - std::min(width, digits.size()), '0').append(digits);
}

void appendTime(std::string& to, const DateTime& moment, bool withSeconds) {
    appendPadded(to, moment.Hour, 2);
    to += ':';
    appendPadded(to, moment.Minute, 2);
    if (!withSeconds) return;
    to += ':';
    appendPadded(to, moment.Second, 2);
}

bool isLeap(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysIn(int month, int year) {
    constexpr std::array<int, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : days[static_cast<std::size_t>(month - 1)];
}

bool isDate(const DateTime& at) {
    return at.Year >= 100 && at.Year <= 9999 && at.Month >= 1 && at.Month <= 12 && at.Day >= 1 &&
           at.Day <= daysIn(at.Month, at.Year);
}

// Reads the parts of a date text one after the other; what does not fit is a type mismatch.
class DateReader {
  public:
    explicit DateReader(std::string_view text) : rest_(text) {}

    bool atEnd() const { return rest_.empty(); }

    bool skip(char c) {
        if (rest_.empty() || rest_.front() != c) return false;
        rest_.remove_prefix(1);
        return true;
    }

    void skipBlanks() {
        while (skip(' ')) {
        }
    }

    void expect(char c) {
        if (!skip(c)) fail();
    }

    char separator() {
        for (const char c : {'/', '-', '.'})
            if (skip(c)) return c;
        fail();
    }

    // One to four digits.
    int number() {
        int value = 0;
        std::size_t size = 0;
        for (; size < rest_.size() && rest_[size] >= '0' && rest_[size] <= '9'; ++size) {
            if (size == 4) fail();
            value = value * 10 + (rest_[size] - '0');
        }
        if (size == 0) fail();
        rest_.remove_prefix(size);
        lastSize_ = size;
        return value;
    }

    // How many digits the last number had.
    std::size_t lastSize() const { return lastSize_; }

    bool word(std::string_view text) {
        if (!EqualText(rest_.substr(0, text.size()), text)) return false;
        rest_.remove_prefix(text.size());
        return true;
    }

    [[noreturn]] static void fail() { throw RuntimeError(Fault::TypeMismatch); }

  private:
    std::string_view rest_;
    std::size_t lastSize_ = 0;
};

void readDate(DateReader& reader, DateTime& to) {
    const int first = reader.number();
    const bool yearFirst = reader.lastSize() > 2;
    const char separator = reader.separator();
    to.Month = reader.number();
    reader.expect(separator);
    const int last = reader.number();
    const bool shortYear = !yearFirst && reader.lastSize() <= 2;
    to.Day = yearFirst ? last : first;
    to.Year = yearFirst ? first : last;
    if (shortYear) to.Year += to.Year < 30 ? 2000 : 1900;
    if (to.Month > 12) std::swap(to.Month, to.Day);
    if (!isDate(to)) DateReader::fail();
}

void readTime(DateReader& reader, DateTime& to) {
    to.Hour = reader.number();
    reader.expect(':');
    to.Minute = reader.number();
    if (reader.skip(':')) to.Second = reader.number();
    reader.skipBlanks();
    const bool afternoon = reader.word("PM") || reader.word("\xEC\xEC");
    if (afternoon || reader.word("AM") || reader.word("\xF0\xEC")) {
        if (to.Hour < 1 || to.Hour > 12) DateReader::fail();
        to.Hour = to.Hour % 12 + (afternoon ? 12 : 0);
    }
    if (to.Hour > 23 || to.Minute > 59 || to.Second > 59) DateReader::fail();
}

// Days since 1 March of the year 0, of the Gregorian calendar.
std::int64_t dayNumber(const DateTime& at) {
    const std::int64_t month = (at.Month + 9) % 12;  // from March
    const std::int64_t year = std::int64_t{at.Year} - month / 10;
    return year * 365 + year / 4 - year / 100 + year / 400 + (month * 306 + 5) / 10 + at.Day;
}

}  // namespace

std::string GeneralDate(const DateTime& moment) {
    std::string text;
    appendPadded(text, moment.Day, 2);
    text += '/';
    appendPadded(text, moment.Month, 2);
    text += '/';
    appendPadded(text, moment.Year, 4);
    text += ' ';
    appendTime(text, moment, true);
    return text;
}

std::string ShortTime(const DateTime& moment) {
    std::string text;
    appendTime(text, moment, false);
    return text;
}

std::string LongTime(const DateTime& moment) {
    std::string text;
    appendTime(text, moment, true);
    return text;
}

DateTime CDate(std::string_view text) {
    DateReader reader(text);
    DateTime moment;
    reader.skipBlanks();
    readDate(reader, moment);
    reader.skipBlanks();
    if (!reader.atEnd()) readTime(reader, moment);
    reader.skipBlanks();
    if (!reader.atEnd()) DateReader::fail();
    return moment;
}

std::int64_t DateDiffHours(const DateTime& from, const DateTime& to) {
    return (dayNumber(to) - dayNumber(from)) * 24 + (to.Hour - from.Hour);
}

}  // namespace talvora
