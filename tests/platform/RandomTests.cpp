#include <gtest/gtest.h>

#include <array>

#include "platform/Random.h"

namespace talvora {
namespace {

constexpr float asNumber(int state) {
    return static_cast<float>(state) / 16777216.0F;
}

TEST(Random, BeginsWithTheKnownSequence) {
    Random random;
    for (const int state : {11837123, 8949370, 9722709, 4858052, 5065847, 12997982})
        EXPECT_EQ(random.Rnd(), asNumber(state));
    EXPECT_EQ(random.Rnd(0), asNumber(12997982));
    EXPECT_EQ(Random().Rnd(3.5F), asNumber(11837123));
}

TEST(Random, RestartsFromANegativeNumberWhateverCameBefore) {
    const struct {
        float x;
        int state;
    } cases[] = {
        {-1, 0x395886}, {-0.5F, 0xB95886}, {-123.456F, 0x658C12}, {-1e-30F, 0xDCC9FC}, {-65535, 0xDF7B6E}};
    Random random;
    for (const auto& [x, state] : cases) EXPECT_EQ(random.Rnd(x), asNumber(state)) << x;
}

TEST(Random, RandomizeChangesTheMiddleAndKeepsTheLowByte) {
    const struct {
        double x;
        int state;
    } cases[] = {{0, 0x0000C3},    {1, 0x3FF0C3},       {-1, 0xBFF0C3},
                 {42.5, 0x0045C3}, {73468.0, 0xAF31C3}, {1e100, 0x1D1FC3}};
    for (const auto& [x, state] : cases) {
        Random random;
        random.Rnd();
        random.Randomize(x);
        EXPECT_EQ(random.Rnd(0), asNumber(state)) << x;
    }
    Random random;
    random.RandomizeByClock(40000.99999);  // in double precision the state would be another
    EXPECT_EQ(random.Rnd(0), asNumber(13157120));
}

TEST(Random, KeyScheduleOfACipherIsTheSameEverywhere) {
    Random random;
    random.Randomize(random.Rnd(-1));
    EXPECT_EQ(random.Rnd(0), asNumber(9670534));
    const std::array<int, 3> states = {5424231, 13377447, 3650210};
    for (std::size_t i = 0; i < states.size(); ++i) {
        const float t = -random.Rnd() * static_cast<float>("key"[i]);
        random.Randomize(random.Rnd(t));
        EXPECT_EQ(random.Rnd(0), asNumber(states[i]));
    }
    for (const int byte : {168, 34, 250, 148, 138, 204})
        EXPECT_EQ(static_cast<int>(random.Rnd() * 255.0F), byte);
}

}  // namespace
}  // namespace talvora
