#include <algorithm>

#include "session/OnLine.h"

namespace talvora::test {
namespace {

using namespace std::string_literals;

TEST(Session, TheFirstLogOnJoinsTheSystemChannelAndThenTheSavedOnes) {
    World world;
    Client& maria = world.client("Maria");
    maria.around.settings.SaveSetting("Talvora", "ChanKeys", "#two", "sesame");
    maria.around.settings.SaveSetting("Talvora", "Settings", "ChanList", "#one|#two|");
    maria.host.send(HostMsg::Start);
    EXPECT_THAT(maria.host.take(), ElementsAre("Started(Talvora IRC, 1)"));
    world.time.settle();
    EXPECT_EQ(maria.window().Session.Label8.Caption.get(), "Loging in...");
    EXPECT_EQ(maria.window().Session.imgStat.Picture, SessionPicture::Connecting);
    maria.server.says(":srv 001 Maria :Welcome");
    world.time.run(2500ms);
    EXPECT_THAT(maria.server.heard(), ElementsAre("NICK Maria", "WHO", "LUSERS", "PRIVMSG OrreryServ :. . .",
                                                  "JOIN #system syskey", "JOIN #one", "JOIN #two sesame",
                                                  "USER Maria 0 * :UL:Default.Unsetted", "PASS none"));
    EXPECT_EQ(maria.window().Session.Label8.Caption.get(), "Talvora is Up and Running");
    EXPECT_EQ(maria.window().Session.imgStat.Picture, SessionPicture::OnLine);
}

TEST(Session, AFirstStartRunsOnItsDefaults) {
    World world;
    Client& user = world.loggedIn("TalvchatUser");
    EXPECT_THAT(user.server.transcript, testing::HasSubstr("JOIN #thessaloniki\r\n"));
    EXPECT_THAT(user.around.questions.asked, IsEmpty());
}

TEST_F(OnLine, TheRefreshAsksEachMinuteAndProbesTheRobot) {
    SessionPanel& session = maria.window().Session;
    EXPECT_TRUE(session.imgMailOK.Visible);
    says(":srv 401 Maria orreryserv :No such nick");
    EXPECT_FALSE(session.imgMailOK.Visible);
    EXPECT_TRUE(session.imgMailErr.Visible);
    world.time.run(60s);
    EXPECT_THAT(maria.server.heard(), ElementsAre("WHO", "LUSERS", "PRIVMSG OrreryServ :. . .",
                                                  "PRIVMSG OrreryServ :\x01MAIL 0 0\x01",
                                                  "PRIVMSG OrreryServ :\x01"
                                                  "ANN HAS 0\x01"));
    EXPECT_TRUE(session.imgMailOK.Visible);
    says(":srv 266 Maria :Current global users: 12  Max: 30");
    EXPECT_EQ(session.Label20.Caption.get(), "Global users: 12");
    maria.server.closes();
    world.time.run(5min);
    EXPECT_EQ(session.Label8.Caption.get(), "Loging in...") << "AutoRetry is forced at every ReConnect";
}

TEST(Session, AMonthOnLineOverflowsNoCounter) {
    World world;
    Client& maria = world.client("Maria");
    maria.around.settings.SaveSetting("Talvora", "Settings", "MailInterval", "3");
    maria.host.send(HostMsg::Start);
    world.time.settle();
    maria.server.says(":srv 001 Maria :Welcome");
    world.time.run(33'000min);  // beyond what 16 bits count
    EXPECT_THAT(maria.around.questions.asked, IsEmpty());
    // Since the third minute each one checks, whatever the clock on the wall says.
    maria.server.heard();
    for (const auto ahead : {-24h * 900, 24h * 9000}) {
        maria.around.clock.ahead = ahead;
        world.time.run(1min);
        const auto heard = maria.server.heard();
        for (const char* line :
             {"WHO", "PRIVMSG OrreryServ :\1MAIL 0 0\1", "PRIVMSG OrreryServ :\1ANN HAS 0\1"})
            EXPECT_EQ(std::ranges::count(heard, line), 1) << line;
    }
    EXPECT_EQ(maria.server.connections, 1);
    says(world, maria, "PING :there?");
    EXPECT_THAT(maria.server.heard(), Contains("PONG :there?"));
}

TEST_F(OnLine, TheSystemChannelsRefusalsAreComparedWithItsKey) {
    SessionPanel& session = maria.window().Session;
    says(":Maria!u@h JOIN :#SYSTEM");
    EXPECT_TRUE(session.SysChanOK());
    EXPECT_THAT(maria.window().Channels.Joined(), Not(testing::HasSubstr("SYSTEM")));
    says(":srv 474 Maria syskey :banned");
    EXPECT_EQ(session.SysChanState(), 3);
    says(":srv 474 Maria #system :banned");
    EXPECT_EQ(session.SysChanState(), 3);
    says(":Maria!u@h PART #system");
    EXPECT_EQ(session.SysChanState(), 4);
}

TEST_F(OnLine, NewsOfOthersReachTheHost) {
    for (const char* line :
         {":a!b@c JOIN :#x", ":a!b@c NICK :d", ":d!b@c PART #x :bye", ":e!b@c QUIT :gone",
          ":a!b@c PRIVMSG #x :hi", ":a!b@c PRIVMSG #system :hi", ":a!b@c PRIVMSG Maria :psst",
          ":a!b@c PRIVMSG #system :\1_calc 1 2\1", ":a!b@c PRIVMSG #system :\1calc 1\1",
          ":a!b@c PRIVMSG Maria :\1_move e4\1", ":a!b@c PRIVMSG Maria :\1ACTION waves\1"}) {
        says(line);
    }
    EXPECT_THAT(
        maria.host.take(),
        ElementsAre("UserJoined(#x, a)", "UserRenamed(a, d)", "UserParted(#x, d)", "UserQuit(e, gone)",
                    "ChannelText(#x, a, hi)", "Notice(Chat, A: psst, 1, A, , imgChat, False, False)",
                    "PrivateText(a, psst)", "SystemVerb(calc, a, 1 2)", "Verb(move, a, e4)",
                    "Notice(Chat, A: waves, 1, A, , imgChat, False, False)"));
}

TEST_F(OnLine, QueriesAreAnsweredOnOneLineEach) {
    for (const char* line : {":a!b@c PRIVMSG Maria :\1PING 123\1", ":a!b@c PRIVMSG Maria :\1VERSION\1",
                             ":a!b@c PRIVMSG Maria :\1TIME\1", ":a!b@c PRIVMSG Maria :\1FINGER\1",
                             ":a!b@c PRIVMSG Maria :\1ping 1\1"}) {
        says(line);
    }
    maria.server.sends(":a!b@c PRIVMSG Maria :\1PING x\0y\1\r\n"s);
    world.time.run(10ms);
    EXPECT_THAT(
        maria.server.heard(),
        ElementsAre("NOTICE a :\1PING 123\1", "NOTICE a :\1VERSION Talvchat v0.1.0 the Talvora team\1",
                    testing::MatchesRegex("NOTICE a :\1TIME 14/03/2026 09:00:..\1"),
                    "NOTICE a :\1FINGER Maria. Unknown idle time\1", "NOTICE a :\1PING xy\1"));
}

}  // namespace
}  // namespace talvora::test
