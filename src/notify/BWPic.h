#pragma once
// The grey twin of a picture, pixel by pixel. A colour is 0xRRGGBB.

#include <algorithm>
#include <cstdint>

namespace talvora {

// What is to be seen through in a list of pictures, and the near white that becomes it.
inline constexpr std::uint32_t SeenThrough = 0xFEFEFE;
inline constexpr std::uint32_t NearWhite = 0xFCFCFC;

inline std::uint32_t BWPic(std::uint32_t colour) {
    constexpr std::uint32_t lighter = 17;
    if (colour == NearWhite) return SeenThrough;
    std::uint32_t grey = ((colour >> 16 & 0xFF) + (colour >> 8 & 0xFF) + (colour & 0xFF)) / 3;
    if (grey > 0) grey = std::min<std::uint32_t>(grey + lighter, 0xFF);
    return grey << 16 | grey << 8 | grey;
}

}  // namespace talvora
