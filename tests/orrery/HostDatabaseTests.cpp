#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "orrery/HostDatabase.h"

namespace talvora {
namespace {

HostMessage numbered(std::int32_t number) {
    HostMessage message;
    message.MsgID = number;
    return message;
}

TEST(HostDatabase, ABroadcastReachesEverybodyBeforeItReturnsAndNestedOnesAreHeardWithin) {
    HostDatabase database;
    std::vector<std::string> heard;
    Subscriptions on;
    on += database.MessageBroadcasted.connect([&](const HostMessage& message) {
        heard.push_back("a" + std::to_string(message.MsgID));
        if (message.MsgID == 1) database.Broadcast(numbered(2));
    });
    on += database.MessageBroadcasted.connect(
        [&](const HostMessage& message) { heard.push_back("b" + std::to_string(message.MsgID)); });
    database.Broadcast(numbered(1));
    EXPECT_THAT(heard, testing::ElementsAre("a1", "a2", "b2", "b1"));
}

TEST(HostDatabase, AnswersWithoutEndEndInOneFaultAndTheNextMessagePasses) {
    HostDatabase database;
    int heard = 0;
    int faults = 0;
    // Each level answers twice and survives the fault: without an end this would take 2 to the 64 broadcasts.
    const auto answer = database.MessageBroadcasted.connect([&](const HostMessage& message) {
        ++heard;
        for (int i = 0; message.MsgID == 1 && i < 2; ++i) {
            try {
                database.Broadcast(message);
            } catch (const RuntimeError& error) {
                ++faults;
                EXPECT_EQ(error.Number, 28);
                EXPECT_THAT(error.Description, testing::HasSubstr("message 1 "));
            }
        }
    });
    database.Broadcast(numbered(1));
    EXPECT_EQ(heard, HostDatabase::DeepestNesting);
    EXPECT_EQ(faults, HostDatabase::DeepestNesting + 1);
    EXPECT_EQ(database.Nesting(), 0);
    database.Broadcast(numbered(3));
    EXPECT_EQ(heard, HostDatabase::DeepestNesting + 1);
}

TEST(HostDatabase, AListenersFaultGoesToTheCallerAndLeavesNoLevelBehind) {
    HostDatabase database;
    const auto failing =
        database.MessageBroadcasted.connect([](const HostMessage& message) { message.Data.at(0); });
    for (int i = 0; i < 2 * HostDatabase::DeepestNesting; ++i) {
        try {
            database.Broadcast(numbered(1002));
            FAIL();
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.Number, static_cast<int>(Fault::TypeMismatch));
        }
    }
}

}  // namespace
}  // namespace talvora
