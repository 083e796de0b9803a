#include <algorithm>

#include "RobotWorld.h"
#include "robot/FairQueue.h"

namespace talvora::test {
namespace {

using Topic = FairQueue::Topic;

struct FairQueueTest : testing::Test, Timeline {
    FairQueueTest() {
        queue.Open();
        for (auto* event : {&queue.Overflowed, &queue.CameTooLate}) {
            on += event->connect([this](const std::string& nick) { lost.push_back(nick); });
        }
    }
    void send(const std::string& nick, const Lines& texts, Topic topic = Topic::Other) {
        for (const auto& text : texts) queue.Send(Caller(nick), topic, text);
    }
    Lines sent(std::chrono::milliseconds during = 0ms) {
        time.run(during);
        return std::exchange(put, {});
    }

    VirtualPlatform around{time, network};
    Lines put;
    Lines lost;
    FairQueue queue{around.platform, 5, 2,
                    [this](const auto& nick, const auto& text, auto) { put.push_back(nick + " " + text); }};
    Subscriptions on;
};

TEST_F(FairQueueTest, OneLineEachInTurnAtTheRate) {
    send("A", {"1", "2", "3"});
    for (const char* nick : {"B", "C"}) send(nick, {"1"});
    EXPECT_THAT(sent(), ElementsAre("A 1", "A 2")) << "a burst";
    EXPECT_THAT(sent(600ms), ElementsAre("A 3", "B 1", "C 1"));
    sent(10s);
    send("A", Lines(20, "x"));
    EXPECT_EQ(sent(1s).size(), 7U) << "a burst is no longer after a long rest";
}

TEST_F(FairQueueTest, WhoChangesHisMindOrHisNickKeepsHisPlaceAndNobodyElseGetsHisLines) {
    for (const char* nick : {"A", "A", "A", "B", "C", "C[x]"}) send(nick, {"1"}, Topic::Reading);
    sent();
    for (const char* nick : {"A", "B"}) queue.Forget(nick, Topic::Reading);
    EXPECT_FALSE(queue.Waits("B", Topic::Reading));
    send("B", {"again"});
    queue.Rename("C", "C[x]");
    EXPECT_TRUE(queue.Waits("C[x]", Topic::Reading) && !queue.Waits("C", Topic::Reading));
    send("C[evil]", {"2"});
    EXPECT_THAT(sent(1s), ElementsAre("B again", "C[x] 1", "C[evil] 2"));
}

TEST_F(FairQueueTest, NewsAreAFourthOfWhatIsSaidDuringDialogues) {
    send("A", Lines(20, "n"), Topic::Announcements);
    send("A", Lines(20, "d"), Topic::Reading);
    sent();
    const Lines lines = sent(4s);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "A n"), 5);
    EXPECT_EQ(lines.size(), 20U);
    EXPECT_EQ(sent(10s).size(), 18U);
}

TEST_F(FairQueueTest, WhatComesTooLateOrGrowsTooLongGoes) {
    for (int i = 0; i < 120; ++i) send("N" + std::to_string(i), {"other"});
    send("A", {"line"}, Topic::Reading);
    EXPECT_THAT(sent(30s), Not(Contains("A line"))) << "its reader awaits it no longer";
    send("B", {"1", "2", "3"});
    send("C", Lines(FairQueue::MostLinesOfUser + 1, "x"));
    EXPECT_THAT(lost, ElementsAre("A", "C"));
    EXPECT_THAT(sent(1min), ElementsAre("B 1", "B 2", "B 3"));
    send("B", {"4\r\nQUIT", "5", "6"});
    queue.Close();
    send("B", {"7"});
    EXPECT_THAT(sent(1min), ElementsAre("B 4QUIT", "B 5"));
}

}  // namespace
}  // namespace talvora::test
