#include <gtest/gtest.h>

#include "platform/Random.h"

namespace talvora {
namespace {

constexpr float asNumber(int state) {
    return static_cast<float>(state) / 16777216.0F;
}

TEST(Random, FollowsTheKnownSequences) {
    Random random;
    for (const int state : {11837123, 8949370, 9722709, 4858052, 5065847, 12997982})
        EXPECT_EQ(random.Rnd(), asNumber(state));
    EXPECT_EQ(random.Rnd(0), asNumber(12997982));
    EXPECT_EQ(Random().Rnd(3.5F), asNumber(11837123));
    // A negative number restarts it, whatever came before.
    using Restart = std::pair<float, int>;
    for (const auto& [x, state] : {Restart(-1, 0x395886), Restart(-0.5F, 0xB95886), Restart(-65535, 0xDF7B6E),
                                   Restart(-123.456F, 0x658C12), Restart(-1e-30F, 0xDCC9FC)})
        EXPECT_EQ(random.Rnd(x), asNumber(state)) << x;
}

TEST(Random, RandomizeChangesTheMiddleAndKeepsTheLowByte) {
    using Seed = std::pair<double, int>;
    for (const auto& [x, state] : {Seed(0, 0x0000C3), Seed(1, 0x3FF0C3), Seed(-1, 0xBFF0C3),
                                   Seed(42.5, 0x0045C3), Seed(73468.0, 0xAF31C3), Seed(1e100, 0x1D1FC3)}) {
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
    for (const char c : {'k', 'e', 'y'}) random.Randomize(random.Rnd(-random.Rnd() * static_cast<float>(c)));
    EXPECT_EQ(random.Rnd(0), asNumber(3650210));
    for (const int byte : {168, 34, 250, 148, 138, 204})
        EXPECT_EQ(static_cast<int>(random.Rnd() * 255.0F), byte);
}

}  // namespace
}  // namespace talvora
