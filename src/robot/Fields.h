#pragma once
// Reading the words of a request. What a stranger wrote is never trusted to be there or to be a number.

#include <cstdint>
#include <optional>
#include <string_view>

namespace talvora {

// Takes the text up to the first blank, and the blank; all of it if there is none.
inline std::string_view TakeWord(std::string_view& rest) {
    const std::size_t blank = rest.find(' ');
    const std::string_view word = rest.substr(0, blank);
    rest = blank == std::string_view::npos ? std::string_view() : rest.substr(blank + 1);
    return word;
}

inline void SkipBlanks(std::string_view& rest) {
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
}

inline bool AllDigits(std::string_view word) {
    return !word.empty() && word.find_first_not_of("0123456789") == std::string_view::npos;
}

// The number that the digits of `word` make; nothing if it is anything else, or has more than 9 digits behind
// its zeros.
inline std::optional<std::int32_t> WholeNumber(std::string_view word) {
    if (!AllDigits(word)) return std::nullopt;
    while (word.size() > 1 && word.front() == '0') word.remove_prefix(1);
    if (word.size() > 9) return std::nullopt;
    std::int32_t number = 0;
    for (const char digit : word) number = number * 10 + (digit - '0');
    return number;
}

}  // namespace talvora
