#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

#include "platform/Timer.h"
#include "simulation/VirtualPlatform.h"

namespace talvora::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class LoopTest : public testing::Test {
  protected:
    VirtualTime time;
    VirtualNetwork network{time};
    VirtualPlatform around{time, network};
    Platform& platform = around.platform;
    std::vector<std::string> path;
    Subscriptions on;

    void note(Timer& timer, const std::string& name) {
        on += timer.Tick.connect([this, name] { path.push_back(name); });
    }
};

TEST_F(LoopTest, TimersFireByDueTimeAndEqualOnesInTheOrderOfArming) {
    Timer slow(platform, 30);
    Timer first(platform, 10);
    Timer second(platform, 10);
    note(slow, "slow");
    note(first, "first");
    note(second, "second");
    slow.Enabled = true;
    second.Enabled = true;
    first.Enabled = true;
    time.run(30ms);
    EXPECT_THAT(path, ElementsAre("second", "first", "second", "first", "slow", "second", "first"));
}

TEST_F(LoopTest, EnablingARunningTimerDoesNotRestartItButANewIntervalDoes) {
    Timer timer(platform, 100, true);
    note(timer, "tick");
    time.run(60ms);
    timer.Enabled = true;
    time.run(40ms);
    EXPECT_EQ(path.size(), 1U);
    time.run(60ms);
    timer.Interval = 50;
    time.run(49ms);
    EXPECT_EQ(path.size(), 1U);
    time.run(1ms);
    EXPECT_EQ(path.size(), 2U);
    timer.Enabled = false;
    time.run(1h);
    EXPECT_EQ(path.size(), 2U);
}

TEST_F(LoopTest, TimersFireInOrderWhateverIsDisarmedInBetween) {
    std::mt19937 dice(5);
    std::vector<unsigned> fired;
    std::vector<std::unique_ptr<WakeUp>> timers(300);
    for (auto& timer : timers) {
        const auto due = static_cast<unsigned>(2 + dice() % 5000);
        timer = std::make_unique<WakeUp>([&, due] {
            fired.push_back(due);
            timer->disarm();
        });
        timer->arm(time, static_cast<int>(due));
    }
    for (int i = 0; i < 150; ++i) timers[dice() % timers.size()]->disarm();
    time.run(6s);
    EXPECT_TRUE(std::ranges::is_sorted(fired));
    EXPECT_GT(fired.size(), 100U);
}

TEST_F(LoopTest, ATimerThatFellBehindFiresOnce) {
    Timer timer(platform, 10, true);
    note(timer, "tick");
    time.jump(1h);
    EXPECT_EQ(path.size(), 1U);
    time.run(10ms);
    EXPECT_EQ(path.size(), 2U);
}

TEST_F(LoopTest, ATimerMayStopRestAndDestroyItselfInItsTick) {
    auto timer = std::make_unique<Timer>(platform, 1, true);
    int ticks = 0;
    on += timer->Tick.connect([&] {
        ++ticks;
        if (ticks == 3) timer->Rest();
        if (ticks == 5) timer.reset();
    });
    time.run(1s);
    EXPECT_EQ(ticks, 3);
    EXPECT_TRUE(timer->Enabled) << "it only rests";
    timer->Wake();
    time.run(1s);
    EXPECT_EQ(ticks, 5);
}

TEST_F(LoopTest, AnExceptionNeverLeavesACallback) {
    std::string stray;
    platform.Guarded.OnStray = [&](const RuntimeError& error, const std::string& where) {
        stray = where + ": " + error.Description;
    };
    Timer timer(platform, 10, true);
    on += timer.Tick.connect([] { throw RuntimeError(Fault::Overflow); });
    time.run(10ms);
    EXPECT_EQ(stray, "Timer: Overflow");
}

}  // namespace
}  // namespace talvora::test
