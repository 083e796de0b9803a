// What strangers and crowds cost the robot.

#include "RobotWorld.h"

namespace talvora::test {
namespace {

TEST(Robot, AnswersSoManyRequestsOfANickAMinute) {
    RobotWorld world;
    world.config.RequestsPerMinute = 3;
    world.start();
    const Lines three(3, "Maria> PING 1 | (notice) PING 1");
    world.plays(three);
    world.plays({"Maria> PING 1", "Maria> MAIL 0 0", "Maria[x]> PING 1 | (notice) PING 1"});
    world.time.run(1min);
    world.plays(three);
    world.time.run(1min);
    world.sends("Maria", "Nikos", "s", {"1", "2", "3", "4", "5"});
    world.plays({three[0], "Maria> PING 1"});
}

TEST(Robot, AFloodCostsOnlyTheFlooder) {
    RobotWorld world;
    world.config.LinesPerSecond = 5;
    world.start();
    for (int i = 0; i < 5000; ++i) world.says("Evil", i % 2 == 0 ? "PING x" : "MAIL 0 0");
    for (int i = 0; i < 3000; ++i) world.says("Half" + std::to_string(i), "MAIL SENDREQUEST");
    world.says("Maria", "MAIL 0 0");
    world.time.run(9s);
    EXPECT_EQ(world.robot->Taking().Sending(), 100U);
    EXPECT_LT(world.robot->Out().Waiting(), 3200U);
    // Nobody of them is there: each costs one line, and no more.
    world.time.run(11min);
    EXPECT_THAT(world.heard(), Contains("Maria< MAIL NOMAIL"));
    EXPECT_EQ(world.robot->Out().Waiting() + world.robot->Taking().Sending(), 0U);

    world.sends("Maria", "Nikos", "s", {"x"});
    for (const std::string& bad : {std::string("MAIL \0 \0", 8), std::string("MAIL SEND \xFF 1 \0\x02", 15),
                                   std::string("\0", 1), "MAIL " + std::string(100'000, '9') + " 0",
                                   std::string(200'000, ' ') + "x", std::string("ANN HAS -1")}) {
        world.says("Evil[\xFF]", bad);
        world.server.sends(":Evil!u@h PRIVMSG OrreryServ :\1MAIL SEND a 1 x\rQUIT :x\nJOIN #evil\r\n");
    }
    world.says("Evil\x1B[2J\x9D", "ANN POST 1 9 x");
    world.time.run(10s);
    for (const std::string& line : world.server.heard()) EXPECT_EQ(line.rfind("PRIVMSG Evil", 0), 0U) << line;
    world.plays({"Nikos> MAIL 0 0 | MAIL START Maria DATE 1 1 s"});
    // A log line steers no terminal. The nick's end is its state.
    EXPECT_THAT(world.log, Contains("refused to Evil\\x1B: there is no such category."));
    EXPECT_EQ(LogLine("a\x9D\x7F\n\xC1" + std::string(999, 'b')).substr(0, 16),
              "a\\x9D\\x7F\\x0A\xC1"
              "bb");
    EXPECT_LT(LogLine(std::string(100'000, 'b')).size(), 1000U);
}

// Who waits for his next line gives up after a while, so nobody is begun with whose lines the rate does not
// bear.
TEST(Robot, ReadersBeyondWhatItsRateBearsWaitForTheirTurnInOrder) {
    RobotWorld world;
    world.config.LinesPerSecond = 1;
    world.start();
    for (int i = 0; i < 14; ++i)
        world.store->AddMail({"Maria", "U" + std::to_string(i), "s", {"1"}, 0, 0}, {});
    world.store->Commit();
    for (int i = 0; i < 13; ++i) world.says("U" + std::to_string(i), "MAIL 0 0");
    world.says("Nobody", "MAIL 0 0");
    world.says("U11", "MAIL 0 0");  // keeps his place
    world.says("U13", "MAIL 0 0");
    world.time.run(15s);
    EXPECT_THAT(world.heard(), testing::AllOf(testing::SizeIs(11), Contains("Nobody< MAIL NOMAIL"),
                                              Contains("U9< MAIL START Maria DATE 1 10 s")));
    EXPECT_EQ(std::pair(world.robot->Giving().Readers(), world.robot->Giving().WaitingReaders()),
              std::pair(std::size_t{10}, std::size_t{4}));
    const auto readsToTheEnd = [&](const std::string& nick) {
        for (int line = 0; line < 3; ++line) {
            world.says(nick, "MAIL OK");
            world.time.run(2s);
        }
        return world.heard();
    };
    EXPECT_EQ(readsToTheEnd("U0"),
              (Lines{"U0< MAIL DUMP 1", "U0< MAIL DONE", "U10< MAIL START Maria DATE 1 11 s"}));
    world.server.says(":U11!u@h QUIT :bye");
    EXPECT_EQ(readsToTheEnd("U1").back(), "U12< MAIL START Maria DATE 1 13 s");
    world.time.run(66s);
    EXPECT_THAT(world.heard(), testing::IsEmpty()) << "U13 asked long ago";
    EXPECT_EQ(world.robot->Giving().Readers() + world.robot->Giving().WaitingReaders(), 0U);
}

}  // namespace
}  // namespace talvora::test
