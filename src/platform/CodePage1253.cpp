#include "platform/CodePage1253.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "platform/CodePage1253Nearest.h"

namespace talvora {
namespace {

// The upper half of the page, 0x80 to 0xFF.
constexpr std::array<char16_t, 128> UpperHalf = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
    0x0088, 0x2030, 0x008A, 0x2039, 0x008C, 0x008D, 0x008E, 0x008F,  // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
    0x0098, 0x2122, 0x009A, 0x203A, 0x009C, 0x009D, 0x009E, 0x009F,  // 98
    0x00A0, 0x0385, 0x0386, 0x00A3, 0x00A4, 0x00A5, 0x00A6, 0x00A7,  // A0
    0x00A8, 0x00A9, 0xF8F9, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x2015,  // A8
    0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x0384, 0x00B5, 0x00B6, 0x00B7,  // B0
    0x0388, 0x0389, 0x038A, 0x00BB, 0x038C, 0x00BD, 0x038E, 0x038F,  // B8
    0x0390, 0x0391, 0x0392, 0x0393, 0x0394, 0x0395, 0x0396, 0x0397,  // C0
    0x0398, 0x0399, 0x039A, 0x039B, 0x039C, 0x039D, 0x039E, 0x039F,  // C8
    0x03A0, 0x03A1, 0xF8FA, 0x03A3, 0x03A4, 0x03A5, 0x03A6, 0x03A7,  // D0
    0x03A8, 0x03A9, 0x03AA, 0x03AB, 0x03AC, 0x03AD, 0x03AE, 0x03AF,  // D8
    0x03B0, 0x03B1, 0x03B2, 0x03B3, 0x03B4, 0x03B5, 0x03B6, 0x03B7,  // E0
    0x03B8, 0x03B9, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BE, 0x03BF,  // E8
    0x03C0, 0x03C1, 0x03C2, 0x03C3, 0x03C4, 0x03C5, 0x03C6, 0x03C7,  // F0
    0x03C8, 0x03C9, 0x03CA, 0x03CB, 0x03CC, 0x03CD, 0x03CE, 0xF8FB,  // F8
};

constexpr char16_t forward(unsigned byte) {
    return byte < 0x80 ? static_cast<char16_t>(byte) : UpperHalf[byte - 0x80];
}

struct ByteOfCode {
    char16_t code;
    unsigned char byte;
};

// The upper half sorted by character.
constexpr auto backward = [] {
    std::array<ByteOfCode, 128> table{};
    for (unsigned byte = 0x80; byte < 0x100; ++byte)
        table[byte - 0x80] = {forward(byte), static_cast<unsigned char>(byte)};
    std::ranges::sort(table, {}, &ByteOfCode::code);
    return table;
}();

static_assert(std::ranges::adjacent_find(backward, {}, &ByteOfCode::code) == backward.end(),
              "two bytes of the page have the same character");

// All characters of two UTF-8 bytes (U+0080 to U+07FF) by number; 0 for those without an exact byte.
constexpr auto twoByteCodes = [] {
    std::array<unsigned char, 0x800> table{};
    for (const ByteOfCode& entry : backward)
        if (entry.code < 0x800) table[entry.code] = entry.byte;
    return table;
}();

struct Encoded {
    std::array<char, 3> bytes;
    unsigned char size;
};

// The UTF-8 form of each byte.
constexpr auto encoded = [] {
    std::array<Encoded, 256> table{};
    for (unsigned byte = 0; byte < 0x100; ++byte) {
        const unsigned code = forward(byte);
        Encoded& to = table[byte];
        if (code < 0x80) {
            to = {{static_cast<char>(code)}, 1};
        } else if (code < 0x800) {
            to = {{static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))}, 2};
        } else {
            to = {{static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
                   static_cast<char>(0x80 | (code & 0x3F))},
                  3};
        }
    }
    return table;
}();

constexpr std::size_t utf8Size(char32_t code) {
    return code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
}

constexpr bool harmless(std::string_view nearest) {
    return std::ranges::none_of(nearest, [](char c) {
        return (c >= '\0' && c < ' ') || c == '\x7F' ||
               std::string_view("!@:,|").find(c) != std::string_view::npos;
    });
}

static_assert(std::ranges::is_sorted(nearest::dropped, std::ranges::less_equal{}, &nearest::Range::first));
static_assert(std::ranges::all_of(nearest::runs, [previous = char32_t{0}](const nearest::Run& run) mutable {
    const bool behind = run.first > previous && !run.bytes.empty() && harmless(run.bytes);
    previous = run.first + static_cast<char32_t>(run.bytes.size()) - 1;
    return behind;
}));
static_assert(std::ranges::all_of(nearest::several, [previous = char32_t{
                                                         0}](const nearest::Several& one) mutable {
    const bool behind = one.code > previous && one.bytes.size() <= utf8Size(one.code) && harmless(one.bytes);
    previous = one.code;
    return behind && one.bytes.find(' ') == std::string_view::npos;
}));

// The last entry of a sorted table whose character is not above `code`, or the table's end.
template <typename Table, typename Member>
auto lastNotAbove(const Table& table, char32_t code, Member member) {
    const auto above = std::ranges::upper_bound(table, code, {}, member);
    return above == std::begin(table) ? std::end(table) : std::prev(above);
}

bool isDropped(char32_t code) {
    const auto range = lastNotAbove(nearest::dropped, code, &nearest::Range::first);
    return range != std::end(nearest::dropped) && code <= range->last;
}

std::string_view nearestText(char32_t code) {
    const auto run = lastNotAbove(nearest::runs, code, &nearest::Run::first);
    if (run != std::end(nearest::runs) && code - run->first < run->bytes.size()) {
        const std::string_view one = run->bytes.substr(code - run->first, 1);
        if (one != " ") return one;
    }
    const auto several = lastNotAbove(nearest::several, code, &nearest::Several::code);
    if (several != std::end(nearest::several) && several->code == code) return several->bytes;
    return isDropped(code) ? std::string_view{} : std::string_view{"?"};
}

// What a letter becomes under a combining accent (any of the Greek ones counts as the tonos) or dialytika.
char accented(char letter, char32_t mark) {
    constexpr std::string_view plain = "\xE1\xE5\xE7\xE9\xEF\xF5\xF9\xFA\xFB\xC1\xC5\xC7\xC9\xCF\xD5\xD9";
    constexpr std::string_view tonos = "\xDC\xDD\xDE\xDF\xFC\xFD\xFE\xC0\xE0\xA2\xB8\xB9\xBA\xBC\xBE\xBF";
    constexpr std::string_view open = "\xE9\xF5\xC9\xD5\xDF\xFD";
    constexpr std::string_view dialytika = "\xFA\xFB\xDA\xDB\xC0\xE0";
    const bool isTonos = mark == 0x300 || mark == 0x301 || mark == 0x342;
    if (!isTonos && mark != 0x308) return letter;
    const std::size_t at = (isTonos ? plain : open).find(letter);
    return at == std::string_view::npos ? letter : (isTonos ? tonos : dialytika)[at];
}

constexpr std::uint64_t HighBits = 0x8080808080808080U;

// The number of bytes below 0x80 at the beginning.
std::size_t asciiPrefix(const char* at, std::size_t size) {
    std::size_t i = 0;
    for (; i + sizeof HighBits <= size; i += sizeof HighBits) {
        std::uint64_t word = 0;
        std::memcpy(&word, at + i, sizeof word);
        if ((word & HighBits) != 0) break;
    }
    while (i < size && static_cast<unsigned char>(at[i]) < 0x80) ++i;
    return i;
}

struct Decoded {
    char32_t code = 0;
    std::size_t size = 0;  // 0: no valid sequence begins here
};

// Reads the sequence that begins at the first byte, which is not ASCII.
Decoded decode(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t size = byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
    if (byte(0) < 0xC2 || byte(0) > 0xF4 || text.size() < size) return {};
    char32_t code = byte(0) & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xC0U) != 0x80) return {};
        code = code << 6 | (byte(i) & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code < 0xE000;
    if (utf8Size(code) != size || surrogate || code > 0x10FFFF) return {};
    return {code, size};
}

// The short way for most of Greek: the byte of a two-byte sequence at `i`, 0 if there is none with an exact
// byte.
unsigned char exactPair(std::string_view text, std::size_t i) {
    if (i + 1 >= text.size()) return 0;
    const auto lead = static_cast<unsigned char>(text[i]);
    const auto second = static_cast<unsigned char>(text[i + 1]);
    if ((lead & 0xE0U) != 0xC0 || (second & 0xC0U) != 0x80) return 0;
    return twoByteCodes[(lead & 0x1FU) << 6 | (second & 0x3FU)];
}

// Writes the text of a character that is not ASCII to `out`. `begin` is the start of this conversion's
// output.
char* put(char* begin, char* out, char32_t code) {
    if (code >= 0x300 && code < 0x370) {
        if (out != begin) out[-1] = accented(out[-1], code);
        return out;
    }
    if (const auto exact = byteOf(code)) {
        *out = static_cast<char>(*exact);
        return out + 1;
    }
    return std::ranges::copy(nearestText(code), out).out;
}

}  // namespace

char16_t codePointOf(unsigned char byte) noexcept {
    return forward(byte);
}

std::optional<unsigned char> byteOf(char32_t codePoint) noexcept {
    if (codePoint < 0x80) return static_cast<unsigned char>(codePoint);
    const auto entry = std::ranges::lower_bound(backward, codePoint, {}, &ByteOfCode::code);
    if (entry == backward.end() || entry->code != codePoint) return std::nullopt;
    return entry->byte;
}

bool isAscii(std::string_view text) noexcept {
    return asciiPrefix(text.data(), text.size()) == text.size();
}

std::string toUtf8(std::string_view cp1253) {
    std::string result;
    appendUtf8(result, cp1253);
    return result;
}

std::string fromUtf8(std::string_view utf8) {
    std::string result;
    appendFromUtf8(result, utf8);
    return result;
}

void appendUtf8(std::string& to, std::string_view cp1253) {
    const std::size_t plain = asciiPrefix(cp1253.data(), cp1253.size());
    to.append(cp1253.substr(0, plain));
    cp1253.remove_prefix(plain);
    if (cp1253.empty()) return;
    const std::size_t before = to.size();
    to.resize(before + cp1253.size() * 3);
    char* out = to.data() + before;
    for (const char c : cp1253) {
        const Encoded& form = encoded[static_cast<unsigned char>(c)];
        std::memcpy(out, form.bytes.data(), form.bytes.size());
        out += form.size;
    }
    to.resize(static_cast<std::size_t>(out - to.data()));
}

void appendFromUtf8(std::string& to, std::string_view utf8) {
    const std::size_t before = to.size();
    to.resize(before + utf8.size());
    char* const begin = to.data() + before;
    char* out = begin;
    std::size_t i = 0;
    while (i < utf8.size()) {
        const std::size_t plain = asciiPrefix(utf8.data() + i, utf8.size() - i);
        out = std::copy_n(utf8.data() + i, plain, out);
        i += plain;
        for (unsigned char byte = exactPair(utf8, i); byte != 0; byte = exactPair(utf8, i += 2))
            *out++ = static_cast<char>(byte);
        if (i == utf8.size() || static_cast<unsigned char>(utf8[i]) < 0x80) continue;
        const Decoded next = decode(utf8.substr(i));
        if (next.size != 0) {
            out = put(begin, out, next.code);
        } else {
            *out++ = utf8[i];
        }
        i += std::max<std::size_t>(next.size, 1);
    }
    to.resize(static_cast<std::size_t>(out - to.data()));
}

void appendCodePoint(std::string& to, char32_t codePoint) {
    char text[4];
    to.append(text, static_cast<std::size_t>(put(text, text, codePoint) - text));
}

}  // namespace talvora
