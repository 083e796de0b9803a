#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "platform/Text.h"

namespace talvora {
namespace {

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
constexpr bool isExponentMark(char c) {
    return c == 'e' || c == 'E' || c == 'd' || c == 'D';
}

// The value of a digit in any base up to 16; 16 for what is none.
constexpr unsigned digitValue(char c) {
    if (isDigit(c)) return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
    return 16;
}

[[noreturn]] void overflow() {
    throw RuntimeError(Fault::Overflow);
}

// A text as Val sees it: without blanks, tabs and LFs. 0 at the end.
class Reader {
  public:
    explicit Reader(std::string_view text) : rest_(text) { skipBlanks(); }

    char peek() const { return rest_.empty() ? '\0' : rest_.front(); }

    void next() {
        rest_.remove_prefix(1);
        skipBlanks();
    }

    bool skip(char c) {
        if (c == '\0' || peek() != c) return false;
        next();
        return true;
    }

  private:
    void skipBlanks() {
        while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t' || rest_.front() == '\n'))
            rest_.remove_prefix(1);
    }

    std::string_view rest_;
};

// The digits behind &H or &O.
double readBased(Reader reader) {
    const unsigned base = reader.skip('H') || reader.skip('h') ? 16 : 8;
    if (base == 8 && !reader.skip('O') && !reader.skip('o')) return 0;
    std::uint64_t value = 0;
    for (; digitValue(reader.peek()) < base; reader.next()) {
        value = value * base + digitValue(reader.peek());
        if (value > std::numeric_limits<std::uint32_t>::max()) overflow();
    }
    if (value <= 0xFFFF && reader.peek() != '&') return static_cast<std::int16_t>(value);
    return static_cast<std::int32_t>(value);
}

// A decimal number in a normal form: "digits", the point taken out, and a power of ten. Zeros in front and
// digits too far behind to matter are not kept, so that the cost has a bound.
struct Decimal {
    static constexpr std::size_t Kept = 800;  // a double is decided by 767 digits at most

    std::string digits;
    std::int64_t exponent = 0;

    void add(char digit, bool behindPoint) {
        if (digits.empty() && digit == '0') {
            exponent -= behindPoint ? 1 : 0;
        } else if (digits.size() < Kept) {
            digits += digit;
            exponent -= behindPoint ? 1 : 0;
        } else {
            exponent += behindPoint ? 0 : 1;
        }
    }
};

std::int64_t readExponent(Reader reader) {
    const bool negative = reader.peek() == '-';
    if (negative || reader.peek() == '+') reader.next();
    std::int64_t value = 0;
    for (; isDigit(reader.peek()); reader.next())
        value = std::min<std::int64_t>(value * 10 + (reader.peek() - '0'), 1'000'000'000);
    return negative ? -value : value;
}

double valueOf(Decimal& number) {
    if (number.digits.empty()) return 0;
    // The power of ten of the first digit tells which way it leaves the range.
    const std::int64_t magnitude = number.exponent + static_cast<std::int64_t>(number.digits.size());
    if (magnitude > 400) overflow();
    if (magnitude < -400) return 0;
    const std::string text = number.digits + 'e' + CStr(number.exponent);
    double value = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc{}) return value;
    if (magnitude > 0) overflow();
    return 0;
}

// Nearly all numbers are nothing but some digits.
std::optional<double> plainNumber(std::string_view text) {
    constexpr std::size_t exact = 15;
    if (text.empty() || text.size() > exact || !std::all_of(text.begin(), text.end(), isDigit)) return {};
    std::int64_t value = 0;
    for (const char digit : text) value = value * 10 + (digit - '0');
    return static_cast<double>(value);
}

// "&H" or "&O" with at least one digit and perhaps a closing "&".
bool isBased(std::string_view text) {
    if (text.size() < 3) return false;
    const char kind = text[1];
    const unsigned base = kind == 'H' || kind == 'h' ? 16 : kind == 'O' || kind == 'o' ? 8 : 0;
    if (text.back() == '&') text.remove_suffix(1);
    text.remove_prefix(2);
    for (const char c : text)
        if (digitValue(c) >= base) return false;
    return !text.empty();
}

std::size_t skipDigits(std::string_view& text) {
    std::size_t count = 0;
    while (count < text.size() && isDigit(text[count])) ++count;
    text.remove_prefix(count);
    return count;
}

void skipSign(std::string_view& text) {
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) text.remove_prefix(1);
}

template <typename T>
T rounded(double value) {
    double whole = std::floor(value);
    const double rest = value - whole;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2) != 0)) whole += 1;
    const bool fits = whole >= std::numeric_limits<T>::min() && whole <= std::numeric_limits<T>::max();
    if (!fits) overflow();
    return static_cast<T>(whole);
}

template <typename T>
std::string significant(T value, int digits) {
    if (value == 0) return "0";
    std::array<char, 40> text;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits).ptr;
    return UCase({text.data(), static_cast<std::size_t>(end - text.data())});
}

std::string withLeadingBlank(std::string text) {
    const std::size_t sign = text.front() == '-' ? 1 : 0;
    if (text.compare(sign, 2, "0.") == 0) text.erase(sign, 1);
    return sign == 1 ? text : ' ' + text;
}

// Adds one in the last place of a decimal text without a point.
void increment(std::string& digits) {
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.insert(0, 1, '1');
}

}  // namespace

double Val(std::string_view text) {
    if (const auto whole = plainNumber(text)) return *whole;
    Reader reader(text);
    const bool negative = reader.peek() == '-';
    if (negative || reader.peek() == '+') reader.next();
    if (reader.skip('&')) return negative ? -readBased(reader) : readBased(reader);
    Decimal number;
    bool behindPoint = false;
    bool any = false;
    for (; isDigit(reader.peek()) || (reader.peek() == '.' && !behindPoint); reader.next()) {
        if (reader.peek() == '.') {
            behindPoint = true;
        } else {
            number.add(reader.peek(), behindPoint);
            any = true;
        }
    }
    if (any && isExponentMark(reader.peek())) {
        reader.next();
        number.exponent += readExponent(reader);
    }
    const double value = valueOf(number);
    return negative && value != 0 ? -value : value;
}

bool IsNumeric(std::string_view text) {
    constexpr std::string_view white = " \t\n\v\f\r";
    text.remove_prefix(std::min(text.find_first_not_of(white), text.size()));
    text = text.substr(0, text.find_last_not_of(white) + 1);
    if (!text.empty() && text.front() == '&') return isBased(text);
    skipSign(text);
    std::size_t digits = skipDigits(text);
    if (!text.empty() && text.front() == '.') {
        text.remove_prefix(1);
        digits += skipDigits(text);
    }
    if (digits == 0) return false;
    if (text.empty()) return true;
    if (!isExponentMark(text.front())) return false;
    text.remove_prefix(1);
    skipSign(text);
    return skipDigits(text) != 0 && text.empty();
}

std::string CStr(double value) {
    return significant(value, 15);
}

std::string CStr(float value) {
    return significant(value, 7);
}

std::string Str(double value) {
    return withLeadingBlank(CStr(value));
}

std::string Str(float value) {
    return withLeadingBlank(CStr(value));
}

std::uint8_t CByte(double value) {
    return rounded<std::uint8_t>(value);
}

std::uint8_t CByte(std::string_view text) {
    return CByte(CDbl(text));
}

std::int16_t CInt(double value) {
    return rounded<std::int16_t>(value);
}

std::int16_t CInt(std::string_view text) {
    return CInt(CDbl(text));
}

std::int32_t CLng(double value) {
    return rounded<std::int32_t>(value);
}

std::int32_t CLng(std::string_view text) {
    return CLng(CDbl(text));
}

double CDbl(std::string_view text) {
    if (!IsNumeric(text)) throw RuntimeError(Fault::TypeMismatch);
    // Val does not skip all the white space that may stand in front of a number.
    return Val(text.substr(std::min(text.find_first_not_of("\v\f\r\t\n "), text.size())));
}

std::string Hex(std::int32_t value) {
    std::array<char, 8> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<std::uint32_t>(value), 16)
            .ptr;
    return UCase({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

std::string FormatTwoDecimals(double value) {
    if (!std::isfinite(value)) return CStr(value);
    constexpr int significantDigits = 15;
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                   std::chars_format::scientific, significantDigits - 1);
    // d.ddddde+xx: the digits without the point, and how many stand before it.
    const std::string_view form(text.data(), static_cast<std::size_t>(end.ptr - text.data()));
    const std::size_t mark = form.find('e');
    std::string digits(1, form[0]);
    digits.append(form.substr(2, mark - 2));
    const int whole = static_cast<int>(Val(form.substr(mark + 1))) + 1;
    if (whole < 1) digits.insert(0, static_cast<std::size_t>(1 - whole), '0');
    const auto wanted = static_cast<std::size_t>(std::max(whole, 1) + 2);
    const bool up = digits.size() > wanted && digits[wanted] >= '5';
    digits.resize(wanted, '0');
    if (up) increment(digits);
    const bool zero = digits.find_first_not_of('0') == std::string::npos;
    digits.insert(digits.size() - 2, 1, '.');
    return value < 0 && !zero ? '-' + digits : digits;
}

}  // namespace talvora
