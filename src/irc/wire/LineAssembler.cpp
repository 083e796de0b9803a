#include "irc/wire/LineAssembler.h"

#include <cstdint>
#include <cstring>

namespace talvora {

namespace {

constexpr std::uint64_t Ones = 0x0101010101010101;
constexpr std::uint64_t Highs = 0x8080808080808080;

// Not 0 if one of the eight bytes is 0.
constexpr std::uint64_t zeroByte(std::uint64_t word) {
    return (word - Ones) & ~word & Highs;
}

}  // namespace

LineScan scanLine(std::string_view bytes) {
    std::size_t at = 0;
    std::uint64_t seen = 0;
    // Eight bytes at a time up to the word that holds a line end.
    for (; at + sizeof(std::uint64_t) <= bytes.size(); at += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, sizeof(word));
        if ((zeroByte(word ^ (Ones * '\r')) | zeroByte(word ^ (Ones * '\n'))) != 0) break;
        seen |= word;
    }
    for (; at < bytes.size() && bytes[at] != '\r' && bytes[at] != '\n'; ++at) {
        seen |= static_cast<unsigned char>(bytes[at]);
    }
    return {at, (seen & Highs) == 0};
}

}  // namespace talvora
