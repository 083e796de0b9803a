#include <gmock/gmock.h>

#include <QAbstractEventDispatcher>
#include <QEventLoop>

#include "platform_qt/Worlds.h"

namespace talvora::test {

struct QtLoopTest : testing::Test {
    // Defers a call that defers itself, for ever.
    void storm() {
        ++calls;
        world.loop.Defer([this] { storm(); });
    }
    RealWorld world;
    int calls = 0;
};

TEST_F(QtLoopTest, SleepsWhileNothingIsDue) {
    WakeUp late([] { ADD_FAILURE(); }), rests([] { ADD_FAILURE(); });
    late.arm(world.loop, 60'000);
    rests.arm(world.loop, 1);
    rests.rest();
    QCoreApplication::processEvents();
    EXPECT_FALSE(QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
}

TEST_F(QtLoopTest, KeepsTheTimeStillWithinATurnAndFreshAfterASleep) {
    Microseconds firedAt = 0;
    WakeUp first([&] {
        firedAt = world.loop.Now();
        for (int i = 0; i < 10'000; ++i) EXPECT_EQ(world.loop.Now(), firedAt);
    });
    // Armed by what is no callback of the loop, as a click is.
    const Microseconds armedAt = world.loop.Now();
    first.arm(world.loop, 30);
    world.until([&] { return firedAt != 0; });
    EXPECT_GE(firedAt - armedAt, 30'000);
}

TEST_F(QtLoopTest, NeitherTicksNorSocketsNorDeferredCallsStarveTheOthers) {
    Connection both(world);
    int ticks = 0, slow = 0;
    std::size_t flooded = 0;
    WakeUp tick([&] { ++ticks; }), slowTick([&] { ++slow; });
    const std::string piece(64 * 1024, 'x');
    both.client.socket.SendData(piece);
    // Both ends send back what they get, for ever.
    for (Endpoint* end : {&both.client, &both.server}) {
        end->then = [&, end](const std::string&) {
            flooded += end->data.size();
            end->socket.SendData(end->data);
            end->data.clear();
        };
    }
    tick.arm(world.loop, 1);
    slowTick.arm(world.loop, 50);
    storm();
    world.until([&] { return slow >= 4 && flooded >= 20 * piece.size() && ticks > 1000 && calls > 1000; });
}

TEST_F(QtLoopTest, PumpCallsWhatIsReadyOnce) {
    int ticks = 0, others = 0;
    WakeUp tick([&] { ++ticks; }), other([&] { ++others; }), later([] { ADD_FAILURE(); });
    tick.arm(world.loop, 1);
    other.arm(world.loop, 1);
    later.arm(world.loop, 60'000);
    storm();
    for (int round = 1; round <= 100; ++round) {
        world.loop.Pump();
        EXPECT_THAT((std::array{ticks, others, calls - 1}), testing::Each(round));
    }
}

TEST_F(QtLoopTest, PumpStandsInsideItselfOnlySoDeep) {
    int depth = 0, deepest = 0, ticks = 0;
    WakeUp tick([&] {
        deepest = std::max(deepest, ++depth);
        world.loop.Pump();
        world.loop.Pump();
        --depth;
        if (++ticks > 200) tick.disarm();
    });
    tick.arm(world.loop, 1);
    world.until([&] { return !tick.armed(); });
    EXPECT_GE(deepest, 2);
    EXPECT_LE(deepest, 17);
}

TEST_F(QtLoopTest, RunsOnBehindAnOpenDialog) {
    int ticks = 0;
    bool closed = false;
    QEventLoop dialog;
    WakeUp slow([&] {
        if (++ticks == 3) dialog.quit();
    });
    world.loop.Defer([&] {
        world.loop.Pump();  // sets the alarm anew while the outer turn stands
        slow.arm(world.loop, 5);
        dialog.exec();
        closed = true;
    });
    world.until([&] { return closed; });
    EXPECT_EQ(ticks, 3);
}

TEST_F(QtLoopTest, HandsStrayFaultsToTheGuardAndGoesOn) {
    std::vector<int> strays;
    world.guard.OnStray = [&](const RuntimeError& error, const std::string&) {
        strays.push_back(error.Number);
    };
    world.loop.setGuard(world.guard);
    WakeUp faulty([&] {
        faulty.disarm();
        world.loop.Defer([] { throw RuntimeError(Fault::TypeMismatch); });
        throw RuntimeError(Fault::Overflow);
    });
    faulty.arm(world.loop, 1);
    world.until([&] { return strays.size() == 2; });
    EXPECT_THAT(strays, testing::ElementsAre(6, 13));
}

}  // namespace talvora::test
