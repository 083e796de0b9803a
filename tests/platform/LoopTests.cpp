#include <algorithm>
#include <memory>
#include <random>

#include "Vocabulary.h"
#include "platform/Timer.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {
namespace {

class LoopTest : public testing::Test, public VirtualMachine {
  protected:
    Platform& platform = around.platform;
    int ticks = 0;
    Subscriptions on;

    void count(Timer& timer) {
        on += timer.Tick.connect([this] { ++ticks; });
    }
};

TEST_F(LoopTest, EnablingARunningTimerDoesNotRestartItButANewIntervalDoes) {
    Timer timer(platform, 100, true);
    count(timer);
    time.run(60ms);
    timer.Enabled = true;
    time.run(40ms);
    EXPECT_EQ(ticks, 1);
    time.run(60ms);
    timer.Interval = 50;
    time.run(49ms);
    EXPECT_EQ(ticks, 1);
    time.run(1ms);
    EXPECT_EQ(ticks, 2);
    timer.Enabled = false;
    time.run(1h);
    EXPECT_EQ(ticks, 2);
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
    count(timer);
    time.jump(1h);
    EXPECT_EQ(ticks, 1);
    time.run(10ms);
    EXPECT_EQ(ticks, 2);
}

TEST_F(LoopTest, ATimerMayStopRestAndDestroyItselfInItsTick) {
    auto timer = std::make_unique<Timer>(platform, 1, true);
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
