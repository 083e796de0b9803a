#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace talvora {
namespace {

constexpr unsigned char byteOf(char c) {
    return static_cast<unsigned char>(c);
}

using ByteTable = std::array<unsigned char, 256>;

// Small letters and their capitals that do not stand 32 apart in the page.
constexpr std::string_view AccentedSmall = "\xDC\xDD\xDE\xDF\xFC\xFD\xFE";
constexpr std::string_view AccentedCapital = "\xA2\xB8\xB9\xBA\xBC\xBE\xBF";
constexpr unsigned FinalSigma = 0xF2;
constexpr unsigned Sigma = 0xF3;
// Letters that are small and have no capital in the page: florin, micro, iota and upsilon with both accents.
constexpr std::string_view WithoutCapital = "\x83\xB5\xC0\xE0";

constexpr ByteTable upper = [] {
    ByteTable table{};
    for (unsigned c = 0; c < 256; ++c) table[c] = static_cast<unsigned char>(c);
    for (unsigned c = 'a'; c <= 'z'; ++c) table[c] = static_cast<unsigned char>(c - 32);
    for (unsigned c = 0xE1; c <= 0xFB; ++c) table[c] = static_cast<unsigned char>(c - 32);
    table[FinalSigma] = table[Sigma];
    for (std::size_t i = 0; i < AccentedSmall.size(); ++i)
        table[byteOf(AccentedSmall[i])] = byteOf(AccentedCapital[i]);
    return table;
}();

constexpr ByteTable lower = [] {
    ByteTable table{};
    for (unsigned c = 0; c < 256; ++c) table[c] = static_cast<unsigned char>(c);
    for (unsigned c = 0; c < 256; ++c)
        if (upper[c] != c && c != FinalSigma) table[upper[c]] = static_cast<unsigned char>(c);
    return table;
}();

constexpr std::array<bool, 256> isLetter = [] {
    std::array<bool, 256> table{};
    for (unsigned c = 0; c < 256; ++c) table[c] = upper[c] != c || lower[c] != c;
    for (const char c : WithoutCapital) table[byteOf(c)] = true;
    return table;
}();

constexpr char toUpper(char c) {
    return static_cast<char>(upper[byteOf(c)]);
}
constexpr char toLower(char c) {
    return static_cast<char>(lower[byteOf(c)]);
}
constexpr bool equalAsText(char a, char b) {
    return toUpper(a) == toUpper(b);
}

constexpr bool endsWord(char c) {
    return c == ' ' || c == '\0' || (c >= '\t' && c <= '\r');
}

std::string mapped(std::string_view text, const ByteTable& table) {
    std::string result(text);
    for (char& c : result) c = static_cast<char>(table[byteOf(c)]);
    return result;
}

constexpr auto Nowhere = std::string_view::npos;

// As string_view::find, with `what` not empty.
std::size_t findText(std::string_view text, std::string_view what, std::size_t from) {
    const auto at = std::search(text.begin() + static_cast<std::ptrdiff_t>(std::min(from, text.size())),
                                text.end(), what.begin(), what.end(), equalAsText);
    return at == text.end() ? Nowhere : static_cast<std::size_t>(at - text.begin());
}

std::size_t find(std::string_view text, std::string_view what, std::size_t from, Compare how) {
    return how == Compare::Binary ? text.find(what, from) : findText(text, what, from);
}

// Hands each piece to `take`.
template <typename Take>
void forEachPiece(std::string_view text, std::string_view separator, int limit, Compare how, Take take) {
    if (limit < -1) throw RuntimeError(Fault::InvalidProcedureCall);
    if (text.empty() || limit == 0) return;
    std::size_t cuts = limit == -1 ? Nowhere : static_cast<std::size_t>(limit) - 1;
    std::size_t begin = 0;
    if (separator.size() == 1 && how == Compare::Binary) {
        while (cuts-- != 0) {
            const void* hit = std::memchr(text.data() + begin, byteOf(separator[0]), text.size() - begin);
            if (hit == nullptr) break;
            const auto end = static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
            take(text.substr(begin, end - begin));
            begin = end + 1;
        }
    } else if (!separator.empty()) {
        while (cuts-- != 0) {
            const std::size_t end = find(text, separator, begin, how);
            if (end == Nowhere) break;
            take(text.substr(begin, end - begin));
            begin = end + separator.size();
        }
    }
    take(text.substr(begin));
}

template <typename Piece>
void splitOver(std::vector<Piece>& to, std::string_view text, std::string_view separator, int limit,
               Compare how) {
    std::size_t count = 0;
    forEachPiece(text, separator, limit, how, [&](std::string_view piece) {
        if (count < to.size()) {
            to[count] = piece;
        } else {
            to.emplace_back(piece);
        }
        ++count;
    });
    to.resize(count);
}

// A position counted from 1 as an offset that does not lie behind the end.
std::size_t offsetOf(std::int64_t start, std::string_view text) {
    if (start < 1) throw RuntimeError(Fault::InvalidProcedureCall);
    return std::min(static_cast<std::size_t>(start) - 1, text.size());
}

std::size_t checkedCount(std::int64_t count) {
    if (count < 0) throw RuntimeError(Fault::InvalidProcedureCall);
    return static_cast<std::size_t>(count);
}

std::string_view withoutLeading(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view withoutTrailing(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

std::string UCase(std::string_view text) {
    return mapped(text, upper);
}

std::string LCase(std::string_view text) {
    return mapped(text, lower);
}

std::string ProperCase(std::string_view text) {
    std::string result(text);
    bool waiting = true;  // the word's first letter is still to come
    for (char& c : result) {
        if (endsWord(c)) waiting = true;
        c = waiting ? toUpper(c) : toLower(c);
        if (isLetter[byteOf(c)]) waiting = false;
    }
    return result;
}

bool EqualText(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), equalAsText);
}

int CompareText(std::string_view a, std::string_view b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = upper[byteOf(a[i])] - upper[byteOf(b[i])];
        if (difference != 0) return difference;
    }
    return static_cast<int>(a.size() > b.size()) - static_cast<int>(a.size() < b.size());
}

std::size_t TextHash::operator()(std::string_view text) const noexcept {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : text) hash = (hash ^ upper[byteOf(c)]) * 0x100000001B3U;
    return static_cast<std::size_t>(hash ^ hash >> 32);
}

std::size_t InStr(std::string_view text, std::string_view what, Compare how, std::size_t start) {
    if (start == 0) throw RuntimeError(Fault::InvalidProcedureCall);
    if (start > text.size()) return 0;
    if (what.empty()) return start;
    const std::size_t at = find(text, what, start - 1, how);
    return at == Nowhere ? 0 : at + 1;
}

std::size_t InStrRev(std::string_view text, std::string_view what, Compare how) {
    if (text.empty()) return 0;
    if (what.empty()) return text.size();
    if (how == Compare::Binary) return text.rfind(what) + 1;
    const auto at = std::find_end(text.begin(), text.end(), what.begin(), what.end(), equalAsText);
    return at == text.end() ? 0 : static_cast<std::size_t>(at - text.begin()) + 1;
}

std::string Replace(std::string_view text, std::string_view what, std::string_view by, Compare how) {
    std::size_t at = what.empty() ? Nowhere : find(text, what, 0, how);
    if (at == Nowhere) return std::string(text);
    std::string result;
    result.reserve(text.size() + (by.size() > what.size() ? by.size() : 0));
    std::size_t begin = 0;
    for (; at != Nowhere; at = find(text, what, begin, how)) {
        result.append(text, begin, at - begin).append(by);
        begin = at + what.size();
    }
    return result.append(text, begin);
}

std::vector<std::string> Split(std::string_view text, std::string_view separator, int limit, Compare how) {
    std::vector<std::string> pieces;
    if (limit > 0) {
        pieces.reserve(std::min(static_cast<std::size_t>(limit), std::size_t{8}));
    } else if (separator.size() == 1 && !text.empty()) {
        pieces.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), separator[0])) + 1);
    }
    forEachPiece(text, separator, limit, how, [&](std::string_view piece) { pieces.emplace_back(piece); });
    return pieces;
}

void splitInto(std::vector<std::string>& to, std::string_view text, std::string_view separator, int limit,
               Compare how) {
    splitOver(to, text, separator, limit, how);
}

void splitInto(std::vector<std::string_view>& to, std::string_view text, std::string_view separator,
               int limit, Compare how) {
    splitOver(to, text, separator, limit, how);
}

std::string Join(const std::vector<std::string>& pieces, std::string_view separator) {
    std::size_t size = 0;
    for (const std::string& piece : pieces) size += piece.size() + separator.size();
    std::string result;
    result.reserve(size);
    for (const std::string& piece : pieces) {
        if (&piece != pieces.data()) result += separator;
        result += piece;
    }
    return result;
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    std::erase_if(line, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
    return line;
}

std::string Trim(std::string_view text) {
    return std::string(withoutLeading(withoutTrailing(text)));
}

std::string LTrim(std::string_view text) {
    return std::string(withoutLeading(text));
}

std::string RTrim(std::string_view text) {
    return std::string(withoutTrailing(text));
}

std::string Left(std::string_view text, std::int64_t count) {
    return std::string(text.substr(0, checkedCount(count)));
}

std::string Right(std::string_view text, std::int64_t count) {
    return std::string(text.substr(text.size() - std::min(checkedCount(count), text.size())));
}

std::string Mid(std::string_view text, std::int64_t start) {
    return std::string(text.substr(offsetOf(start, text)));
}

std::string Mid(std::string_view text, std::int64_t start, std::int64_t count) {
    const std::size_t size = checkedCount(count);
    return std::string(text.substr(offsetOf(start, text), size));
}

int Asc(std::string_view text) {
    if (text.empty()) throw RuntimeError(Fault::InvalidProcedureCall);
    return byteOf(text.front());
}

std::string Chr(int code) {
    if (code < 0 || code > 255) throw RuntimeError(Fault::InvalidProcedureCall);
    return std::string(1, static_cast<char>(code));
}

}  // namespace talvora
