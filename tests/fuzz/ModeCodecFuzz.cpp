// The mode codec against a plain reading of its rules, letter by letter.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>

#include "irc/ModeCodec.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::int32_t old = data[0] * 64 + 5;
    const std::string modes(reinterpret_cast<const char*>(data) + 1, size - 1);
    std::string added;
    std::string removed;
    char sign = ' ';
    for (const char c : modes) {
        if (c == '+' || c == '-' || c == ' ') {
            sign = c;
        } else if (sign != ' ') {
            (sign == '+' ? added : removed) += c;
        }
    }
    std::int32_t expected = old;
    for (const talvora::ModeBit& mode : talvora::ModeBits) {
        if (added.find(mode.readAs) != std::string::npos) expected |= mode.bit;
        if (removed.find(mode.readAs) != std::string::npos) expected &= ~mode.bit;
    }
    if (talvora::DecodeModes(modes, old) != expected) __builtin_trap();
    const talvora::ModeChange letters = talvora::EncodeModes(expected, old);
    if (letters.Added.size() + letters.Removed.size() > std::size(talvora::ModeBits)) __builtin_trap();
    return 0;
}
