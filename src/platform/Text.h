#pragma once
// The text functions of the run-time that the system leans on, with the semantics that its texts, stored
// values and failure cases depend on. Plain functions, no state. Text is 8-bit code page 1253, NUL is a
// character like any other, positions count from 1. Faults are RuntimeError: 5 invalid call, 6 overflow, 9
// subscript, 13 type mismatch. Case is the page's own table, never the locale's: a final sigma has the
// capital of sigma, and letters without a capital in the page stay.

#include <charconv>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/RuntimeError.h"

namespace talvora {

// How characters are compared: exactly, or "as text", without regard to case.
enum class Compare { Binary, Text };

// ---- Case and comparison (Text.cpp)

std::string UCase(std::string_view text);
std::string LCase(std::string_view text);
// The first letter of each word in upper case, all others in lower case; words end at a blank, NUL, or one of
// the controls 9 to 13. So "#greek" becomes "#Greek".
std::string ProperCase(std::string_view text);

bool EqualText(std::string_view a, std::string_view b) noexcept;
// Below, at or above 0, by upper-cased bytes.
int CompareText(std::string_view a, std::string_view b) noexcept;

// Hash and equality "as text" for unordered containers with look-up by string_view.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept;
};
struct TextEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept { return EqualText(a, b); }
};

// ---- Searching, cutting and joining (Text.cpp)

// The position of `what` at or behind `start`, 0 if there is none. An empty `what` is found at `start`, but
// never in an empty text or behind its end. Fault 5 if `start` is 0.
std::size_t InStr(std::string_view text, std::string_view what, Compare how = Compare::Binary,
                  std::size_t start = 1);
// The position of the last `what`, 0 if there is none.
std::size_t InStrRev(std::string_view text, std::string_view what, Compare how = Compare::Binary);

// Every `what` replaced, from left to right, the new text not searched again. An empty `what` changes
// nothing.
std::string Replace(std::string_view text, std::string_view what, std::string_view by,
                    Compare how = Compare::Binary);

// The pieces between separators. An empty text has no piece at all, an empty separator leaves one piece.
// With a limit there are at most so many pieces, and the last one holds the rest with its separators; -1 is
// no limit, a limit of 0 gives no piece, below -1 is fault 5.
std::vector<std::string> Split(std::string_view text, std::string_view separator = " ", int limit = -1,
                               Compare how = Compare::Binary);
// The same into `to`, whose strings are used again; the text must not lie in them.
void splitInto(std::vector<std::string>& to, std::string_view text, std::string_view separator = " ",
               int limit = -1, Compare how = Compare::Binary);
// The same as views of `text`, which has to outlive them.
void splitInto(std::vector<std::string_view>& to, std::string_view text, std::string_view separator = " ",
               int limit = -1, Compare how = Compare::Binary);
std::string Join(const std::vector<std::string>& pieces, std::string_view separator = " ");

// The element of a list, counted from 0; fault 9 if it doesn't exist.
template <typename T>
const T& elementOf(const std::vector<T>& list, std::size_t index) {
    if (index >= list.size()) throw RuntimeError(Fault::SubscriptOutOfRange);
    return list[index];
}

// Without CR, LF and NUL: what may go into one line of a protocol.
std::string OneLine(std::string_view text);

// Only blanks are trimmed, no other white space.
std::string Trim(std::string_view text);
std::string LTrim(std::string_view text);
std::string RTrim(std::string_view text);

// Shorter than asked for where the text ends; fault 5 for a negative count or a start below 1.
std::string Left(std::string_view text, std::int64_t count);
std::string Right(std::string_view text, std::int64_t count);
std::string Mid(std::string_view text, std::int64_t start);
std::string Mid(std::string_view text, std::int64_t start, std::int64_t count);

// The code of the first character, 0 to 255; fault 5 if the text is empty.
int Asc(std::string_view text);
// The character of a code; fault 5 outside 0 to 255.
std::string Chr(int code);

// ---- Numbers (TextNumbers.cpp)

// The number that the text begins with, 0 if there is none. Blanks, tabs and LFs are skipped wherever they
// stand; reads signs, decimals with ".", exponents with E or D, and &H and &O (up to 16 bits as a signed
// 16-bit number, above as a signed 32-bit number, unless "&" follows). Overflow beyond a double.
double Val(std::string_view text);
// Whether the whole text, but for white space around it, is a number in one of the forms of Val. Any string
// of digits is one.
bool IsNumeric(std::string_view text);

// Decimal text without a blank: 15 significant digits for a double ("0.5", "1E+15", "1E-05"), 7 for a float.
std::string CStr(double value);
std::string CStr(float value);
template <std::integral T>
requires(!std::same_as<T, bool> && !std::same_as<T, char>) std::string CStr(T value) {
    char digits[24];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

// The same with a leading blank before a number that is not negative, and no zero before a decimal point.
std::string Str(double value);
std::string Str(float value);
template <std::integral T>
std::string Str(T value) {
    return value < 0 ? CStr(value) : ' ' + CStr(value);
}

// Conversions round half to even. Overflow outside the type; from a text that is no number, type mismatch.
std::uint8_t CByte(double value);
std::uint8_t CByte(std::string_view text);
std::int16_t CInt(double value);
std::int16_t CInt(std::string_view text);
std::int32_t CLng(double value);
std::int32_t CLng(std::string_view text);
double CDbl(std::string_view text);

// A whole number as `To`, or Overflow; also for results that are formed in 16 bits: CInt(line * 100).
template <std::integral To, std::integral From>
To checkedInteger(From value) {
    if (!std::in_range<To>(value)) throw RuntimeError(Fault::Overflow);
    return static_cast<To>(value);
}
template <std::integral T>
std::uint8_t CByte(T value) {
    return checkedInteger<std::uint8_t>(value);
}
template <std::integral T>
std::int16_t CInt(T value) {
    return checkedInteger<std::int16_t>(value);
}
template <std::integral T>
std::int32_t CLng(T value) {
    return checkedInteger<std::int32_t>(value);
}

// Upper-case hexadecimal without leading zeros; a negative number as its 32 bits.
std::string Hex(std::int32_t value);
// "1234.50": two decimals, a half rounded away from zero in the decimal text of the number.
std::string FormatTwoDecimals(double value);

// ---- Dates and times (TextDates.cpp)

// "24/11/2026 20:24:28", the date and time form of all the system's texts.
std::string GeneralDate(const DateTime& moment);
// "20:24"
std::string ShortTime(const DateTime& moment);
// "20:24:28"
std::string LongTime(const DateTime& moment);
// Reads a general date back. Also taken: "-" or "." between the parts, the year first, two digits for 1930 to
// 2029, month and day exchanged where only that is a date, no seconds or no time at all, AM and PM.
// Type mismatch if it is no date. Years are 100 to 9999.
DateTime CDate(std::string_view text);
// How many full hours of the clock are crossed from one moment to the other: 1 from 10:59 to 11:00, 0 from
// 11:00 to 11:59. Negative if `to` is earlier.
std::int64_t DateDiffHours(const DateTime& from, const DateTime& to);

}  // namespace talvora
