#pragma once
// Cuts RTF into tokens: runs of text, control words and symbols, the two ends of groups, and raw data. It
// knows no control word but \bin, whose data it has to step over. CR, LF and other control characters are no
// tokens.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace talvora {

enum class RtfToken : std::uint8_t { End, Text, Word, Symbol, Hex, Open, Close, Binary };

// The hash by which control words are looked up, taken letter by letter.
constexpr std::uint32_t rtfHash(std::uint32_t hash, char letter) {
    return (hash ^ static_cast<unsigned char>(letter)) * 0x01000193U;
}
constexpr std::uint32_t RtfHashStart = 0x811C9DC5U;

namespace detail {

enum class RtfByte : std::uint8_t { Text, Backslash, Open, Close, Nothing };

constexpr auto rtfBytes = [] {
    std::array<RtfByte, 256> table{};
    for (unsigned byte = 0; byte < 0x20; ++byte) table[byte] = RtfByte::Nothing;
    table['\t'] = RtfByte::Text;
    table[0x7F] = RtfByte::Nothing;
    table['\\'] = RtfByte::Backslash;
    table['{'] = RtfByte::Open;
    table['}'] = RtfByte::Close;
    return table;
}();

}  // namespace detail

class RtfScanner {
  public:
    explicit RtfScanner(std::string_view input) : at_(input.data()), end_(input.data() + input.size()) {}

    RtfToken Next();

    // The text, the letters of the word, or the data.
    std::string_view Text() const { return text_; }
    std::uint32_t Hash() const { return hash_; }
    // The number behind the word, or what it is without one.
    std::int32_t Number(std::int32_t otherwise) const { return hasNumber_ ? number_ : otherwise; }
    // The symbol, or the byte that \' told.
    char Byte() const { return byte_; }

    // What has not been read.
    std::string_view Rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }
    void Skip(std::size_t size) { at_ += size < Rest().size() ? size : Rest().size(); }

  private:
    static bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    RtfToken text();
    RtfToken control();
    RtfToken word();
    void number();
    RtfToken binary();
    RtfToken symbol();
    RtfToken hex();

    const char* at_;
    const char* end_;
    std::string_view text_;
    std::uint32_t hash_ = 0;
    std::int32_t number_ = 0;
    bool hasNumber_ = false;
    char byte_ = 0;
};

inline RtfToken RtfScanner::Next() {
    for (; at_ != end_; ++at_) {
        switch (detail::rtfBytes[static_cast<unsigned char>(*at_)]) {
            case detail::RtfByte::Text:
                return text();
            case detail::RtfByte::Backslash:
                return control();
            case detail::RtfByte::Open:
                ++at_;
                return RtfToken::Open;
            case detail::RtfByte::Close:
                ++at_;
                return RtfToken::Close;
            case detail::RtfByte::Nothing:
                break;
        }
    }
    return RtfToken::End;
}

inline RtfToken RtfScanner::text() {
    const char* const begin = at_;
    do {
        ++at_;
    } while (at_ != end_ && detail::rtfBytes[static_cast<unsigned char>(*at_)] == detail::RtfByte::Text);
    text_ = {begin, static_cast<std::size_t>(at_ - begin)};
    return RtfToken::Text;
}

inline RtfToken RtfScanner::control() {
    ++at_;
    if (at_ == end_) return RtfToken::End;
    return isLetter(*at_) ? word() : symbol();
}

inline RtfToken RtfScanner::word() {
    const char* const begin = at_;
    hash_ = RtfHashStart;
    for (; at_ != end_ && isLetter(*at_); ++at_) hash_ = rtfHash(hash_, *at_);
    text_ = {begin, static_cast<std::size_t>(at_ - begin)};
    number();
    if (at_ != end_ && *at_ == ' ') ++at_;
    return text_ == "bin" ? binary() : RtfToken::Word;
}

inline void RtfScanner::number() {
    hasNumber_ = false;
    const char* digit = at_;
    const bool negative = digit != end_ && *digit == '-';
    if (negative) ++digit;
    if (digit == end_ || !isDigit(*digit)) return;
    constexpr std::int64_t limit = std::numeric_limits<std::int32_t>::max();
    std::int64_t value = 0;
    for (; digit != end_ && isDigit(*digit); ++digit)
        value = value < limit ? value * 10 + (*digit - '0') : value;
    value = value < limit ? value : limit;
    number_ = static_cast<std::int32_t>(negative ? -value : value);
    hasNumber_ = true;
    at_ = digit;
}

}  // namespace talvora
