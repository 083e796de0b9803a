#include "irc/ModeCodec.h"

namespace talvora {

namespace {

std::int32_t bitOf(char letter) {
    for (const ModeBit& mode : ModeBits) {
        if (mode.readAs == letter) return mode.bit;
    }
    return 0;
}

void PMModeAdd(std::int32_t newMode, std::int32_t oldMode, const ModeBit& mode, ModeChange& letters) {
    const bool was = (oldMode & mode.bit) != 0;
    const bool is = (newMode & mode.bit) != 0;
    if (was && !is) letters.Removed += mode.writtenAs;
    if (is && !was) letters.Added += mode.writtenAs;
}

}  // namespace

std::int32_t DecodeModes(std::string_view modes, std::int32_t oldMode) {
    std::int32_t added = 0;
    std::int32_t removed = 0;
    std::int32_t ignored = 0;
    std::int32_t* target = &ignored;
    for (const char c : modes) {
        switch (c) {
            case '+':
                target = &added;
                break;
            case '-':
                target = &removed;
                break;
            case ' ':
                target = &ignored;
                break;
            default:
                *target |= bitOf(c);
        }
    }
    return (oldMode | added) & ~removed;
}

ModeChange EncodeModes(std::int32_t newMode, std::int32_t oldMode) {
    ModeChange letters;
    for (const ModeBit& mode : ModeBits) PMModeAdd(newMode, oldMode, mode, letters);
    return letters;
}

}  // namespace talvora
