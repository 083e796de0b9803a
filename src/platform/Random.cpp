#include "platform/Random.h"

#include <bit>

namespace talvora {
namespace {

constexpr std::uint32_t Mask = 0xFFFFFF;

}  // namespace

float Random::Rnd() {
    // The product may wrap around at 32 bits: only its lower 24 count.
    state_ = (state_ * 1140671485U + 12820163U) & Mask;
    return last();
}

float Random::Rnd(float x) {
    if (x == 0) return last();
    if (x < 0) {
        const auto bits = std::bit_cast<std::uint32_t>(x);
        state_ = (bits + (bits >> 24)) & Mask;
    }
    return Rnd();
}

void Random::Randomize(double x) {
    const auto high = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(x) >> 32);
    const std::uint32_t middle = (high ^ high >> 16) & 0xFFFF;
    state_ = (state_ & 0xFF) | middle << 8;
}

void Random::RandomizeByClock(double secondsSinceMidnight) {
    Randomize(static_cast<double>(static_cast<float>(secondsSinceMidnight)));
}

float Random::last() const {
    return static_cast<float>(state_) / 16777216.0F;
}

}  // namespace talvora
