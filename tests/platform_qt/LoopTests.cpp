#include <gmock/gmock.h>

#include <QAbstractEventDispatcher>
#include <QEventLoop>

#include "RealWorld.h"

namespace talvora::test {

TEST(QtLoop, FiresInTheOrderOfDueTimes) {
    RealWorld world;
    std::string order;
    WakeUp late([&] { order += 'c'; }), equal([&] { order += 'b'; }), early([&] { order += 'a'; });
    world.loop.Defer([&] {
        late.arm(world.loop, 30);
        early.arm(world.loop, 20);
        equal.arm(world.loop, 20);
        world.loop.Defer([&] { order += '2'; });
        order += '1';
    });
    RealWorld::until([&] { return order.find('c') != std::string::npos; });
    EXPECT_EQ(order.substr(0, 5), "12abc");
}

TEST(QtLoop, SleepsWhileNothingIsDue) {
    RealWorld world;
    WakeUp later([] {});
    WakeUp resting([] {});
    later.arm(world.loop, 60'000);
    resting.arm(world.loop, 1);
    resting.rest();
    QCoreApplication::processEvents();
    EXPECT_FALSE(QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
}

TEST(QtLoop, KeepsTheTimeStillWithinATurnAndFreshAfterASleep) {
    RealWorld world;
    bool done = false;
    Microseconds armedAt = 0, firedAt = 0;
    WakeUp first([&] {
        firedAt = world.loop.Now();
        first.disarm();
        done = true;
    });
    // Armed by what is no callback of the loop, as a click is.
    armedAt = world.loop.Now();
    first.arm(world.loop, 30);
    RealWorld::until([&] { return done; });
    EXPECT_GE(firedAt - armedAt, 30'000);
    world.loop.Defer([&] {
        const Microseconds before = world.loop.Now();
        for (int i = 0; i < 10'000; ++i) EXPECT_EQ(world.loop.Now(), before);
        done = false;
    });
    RealWorld::until([&] { return !done; });
}

TEST(QtLoop, NeitherTicksNorSocketsNorDeferredCallsStarveTheOthers) {
    RealWorld world;
    Connection both(world);
    int ticks = 0, slow = 0, calls = 0;
    bool inTick = false;
    std::size_t flooded = 0;
    WakeUp tick([&] {
        EXPECT_FALSE(inTick);
        ++ticks;
    });
    WakeUp slowTick([&] { ++slow; });
    std::function<void()> storm = [&] {
        ++calls;
        world.loop.Defer(storm);
    };
    const std::string piece(64 * 1024, 'x');
    both.client.socket.SendData(piece);
    // Both ends send back what they get, for ever.
    for (Endpoint* end : {&both.client, &both.server}) {
        end->taking = false;
        end->then = [&, end](const std::string&) {
            std::string data;
            end->socket.GetData(data);
            flooded += data.size();
            end->socket.SendData(data);
        };
    }
    tick.arm(world.loop, 1);
    slowTick.arm(world.loop, 50);
    world.loop.Defer(storm);
    RealWorld::until(
        [&] { return slow >= 4 && flooded >= 20 * piece.size() && ticks > 1000 && calls > 1000; });
}

TEST(QtLoop, PumpCallsWhatIsReadyOnce) {
    RealWorld world;
    int ticks = 0, others = 0, deferred = 0;
    WakeUp tick([&] { ++ticks; }), other([&] { ++others; }), later([] { ADD_FAILURE(); });
    tick.arm(world.loop, 1);
    other.arm(world.loop, 1);
    later.arm(world.loop, 60'000);
    std::function<void()> storm = [&] {
        ++deferred;
        world.loop.Defer(storm);
    };
    world.loop.Defer(storm);
    for (int round = 1; round <= 100; ++round) {
        world.loop.Pump();
        EXPECT_EQ(ticks, round);
        EXPECT_EQ(others, round);
        EXPECT_EQ(deferred, round);
    }
}

TEST(QtLoop, PumpStandsInsideItselfOnlySoDeep) {
    RealWorld world;
    int depth = 0, deepest = 0, ticks = 0;
    WakeUp tick([&] {
        ++ticks;
        deepest = std::max(deepest, ++depth);
        world.loop.Pump();
        world.loop.Pump();
        --depth;
        if (ticks > 200) tick.disarm();
    });
    tick.arm(world.loop, 1);
    RealWorld::until([&] { return !tick.armed(); });
    EXPECT_GE(deepest, 2);
    EXPECT_LE(deepest, 17);
}

TEST(QtLoop, RunsOnBehindAnOpenDialog) {
    RealWorld world;
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
    RealWorld::until([&] { return closed; });
    EXPECT_EQ(ticks, 3);
}

TEST(QtLoop, HandsStrayFaultsToTheGuardAndGoesOn) {
    RealWorld world;
    std::vector<int> strays;
    world.guard.OnStray = [&](const RuntimeError& error, const std::string&) {
        strays.push_back(error.Number);
    };
    world.loop.setGuard(world.guard);
    bool done = false;
    WakeUp faulty([&] {
        faulty.disarm();
        throw RuntimeError(Fault::Overflow);
    });
    faulty.arm(world.loop, 1);
    RealWorld::until([&] { return !strays.empty(); });
    world.loop.Defer([] { throw RuntimeError(Fault::TypeMismatch); });
    world.loop.Defer([&] { done = true; });
    RealWorld::until([&] { return done; });
    EXPECT_THAT(strays, testing::ElementsAre(6, 13));
}

}  // namespace talvora::test
