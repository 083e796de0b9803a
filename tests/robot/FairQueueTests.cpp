#include <algorithm>

#include "RobotWorld.h"
#include "robot/FairQueue.h"

namespace talvora::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Topic = FairQueue::Topic;

class FairQueueTest : public testing::Test {
  protected:
    FairQueueTest() {
        queue.Open();
        on += queue.Overflowed.connect([this](const std::string& key) { overflowed.push_back(key); });
    }
    void send(const std::string& nick, const std::string& text, Topic topic = Topic::Other) {
        queue.Send(Caller(nick), topic, text);
    }
    Lines sent(std::chrono::milliseconds during = 0ms) {
        time.run(during);
        return std::exchange(put, {});
    }

    VirtualTime time;
    VirtualNetwork network{time};
    VirtualPlatform around{time, network};
    Lines put;
    Lines overflowed;
    FairQueue queue{around.platform, 5, 2,
                    [this](const std::string& nick, const std::string& text, FairQueue::LineKind) {
                        put.push_back(nick + " " + text);
                    }};
    Subscriptions on;
};

TEST_F(FairQueueTest, OneLineEachInTurnAtTheRate) {
    for (const char* text : {"1", "2", "3"}) send("A", text);
    send("B", "1");
    send("C", "1");
    EXPECT_THAT(sent(), ElementsAre("A 1", "A 2")) << "a burst";
    EXPECT_THAT(sent(600ms), ElementsAre("A 3", "B 1", "C 1"));
    EXPECT_EQ(queue.Waiting(), 0U);
    sent(10s);
    for (int i = 0; i < 20; ++i) send("A", "x");
    EXPECT_EQ(sent(1s).size(), 7U) << "a burst is no longer after a long rest";
}

TEST_F(FairQueueTest, WhoChangesHisMindKeepsHisPlace) {
    for (const char* nick : {"A", "A", "A", "B", "C"}) send(nick, "1", Topic::Reading);
    sent();
    EXPECT_TRUE(queue.Waits("B", Topic::Reading));
    queue.Forget("A", Topic::Reading);
    queue.Forget("B", Topic::Reading);
    EXPECT_FALSE(queue.Waits("B", Topic::Reading));
    send("b[DND]", "again");
    queue.Readdress(Caller("C[away]"));
    EXPECT_TRUE(queue.GoesElsewhere(Caller("C")));
    EXPECT_THAT(sent(1s), ElementsAre("b[DND] again", "C[away] 1"));
}

TEST_F(FairQueueTest, NewsAreAFourthOfWhatIsSaidDuringDialogues) {
    for (int i = 0; i < 20; ++i) send("A", "n", Topic::Announcements);
    for (int i = 0; i < 20; ++i) send("A", "d", Topic::Reading);
    sent();
    const Lines lines = sent(4s);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "A n"), 5);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "A d"), 15);
    EXPECT_EQ(sent(10s).size(), 18U);
}

TEST_F(FairQueueTest, ALineThatItsReaderNoLongerAwaitsIsNotSaid) {
    Lines late;
    on += queue.CameTooLate.connect([&](const std::string& key) { late.push_back(key); });
    for (int i = 0; i < 120; ++i) send("N" + std::to_string(i), "other", Topic::Other);
    send("A", "line", Topic::Reading);
    EXPECT_THAT(sent(30s), Not(Contains("A line")));
    EXPECT_THAT(late, ElementsAre("A"));
}

TEST_F(FairQueueTest, AQueueThatGrowsTooLongGoes) {
    send("B", "1");
    send("B", "2");
    send("B", "3");
    for (std::size_t i = 0; i <= FairQueue::MostLinesOfUser; ++i) send("A", "x");
    EXPECT_THAT(overflowed, ElementsAre("A"));
    EXPECT_THAT(sent(1min), ElementsAre("B 1", "B 2", "B 3"));
    send("B", "4\r\nQUIT");
    send("B", "5");
    send("B", "6");
    queue.Close();
    send("B", "7");
    EXPECT_THAT(sent(1min), ElementsAre("B 4QUIT", "B 5"));
}

}  // namespace
}  // namespace talvora::test
