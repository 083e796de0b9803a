#pragma once
// User and channel modes as one integer of bits, and mode text turned into bits and back.

#include <cstdint>
#include <string>
#include <string_view>

namespace talvora {

// One row a mode. The last one is no slip: the bit is read from the letter "l" and written as the letter "u".
struct ModeBit {
    std::int32_t bit;
    char readAs;
    char writtenAs;
};
constexpr ModeBit ModeBits[] = {
    {1, 'a', 'a'},    {2, 'i', 'i'},    {4, 'w', 'w'},    {8, 'r', 'r'},    {16, 'o', 'o'},
    {32, 'O', 'O'},   {64, 'v', 'v'},   {128, 's', 's'},  {256, 'm', 'm'},  {512, 'n', 'n'},
    {1024, 'p', 'p'}, {2048, 't', 't'}, {4096, 'k', 'k'}, {8192, 'l', 'u'},
};
constexpr std::int32_t ModeInvisible = 2;
constexpr std::int32_t ModeWallops = 4;

// The bits of `oldMode` changed by mode text such as "+ik-w". Additions first: a letter in both is cleared.
std::int32_t DecodeModes(std::string_view modes, std::int32_t oldMode);

// The letters of the bits that came and that went.
struct ModeChange {
    std::string Added;
    std::string Removed;
};
ModeChange EncodeModes(std::int32_t newMode, std::int32_t oldMode);

}  // namespace talvora
