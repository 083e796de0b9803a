// Lines of the engine before and after. N is ngircd 26.1, I is InspIRCd 3.15, H is ircd-hybrid 8.2.
#include <gtest/gtest.h>

#include "irc/wire/WireWorld.h"

namespace talvora::test {
namespace {

const std::string u = ":Nikos!~Nikos@127.0.0.1 ";

TEST(UserName, IsOneThatServersTake) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"USER Maria[DND] 8 * :UL:Work [x]", "USER Maria 8 * :UL:Work [x]"},  // N and H refuse the first
        {"USER [afk] 0 * :x", "USER user 0 * :x"},
        {"USER M\xE1ria_Of-Thessaloniki 0 * :x", "USER MriaOfThe 0 * :x"},
        {"USER user12 0 * :user12", "USER user12 0 * :user12"},
        {"USER", "USER"},
    };
    for (const auto& [line, sent] : cases) {
        EXPECT_EQ(WireWorld("plain +user-name").sends(line), Lines{sent});
        EXPECT_EQ(WireWorld("standard -user-name").sends(line), Lines{line});
    }
}

TEST(PasswordFirst, HoldsNickAndUser) {
    WireWorld world("standard +password-first");
    EXPECT_EQ(world.sends("NICK Nikos"), Lines{});
    EXPECT_EQ(world.sends("PONG :1"), Lines{"PONG :1"});
    EXPECT_EQ(world.sends("USER Nikos 0 * :N"), Lines{});
    EXPECT_EQ(world.sends("NICK Nikos2"), Lines{});
    EXPECT_EQ(world.sends("PASS sesame"), (Lines{"PASS sesame", "NICK Nikos2", "USER Nikos 0 * :N"}));
    EXPECT_EQ(world.sends("NICK Nikos3"), Lines{"NICK Nikos3"});
    world.adapter.connectionEnded();
    world.adapter.connectionStarted();
    EXPECT_EQ(world.sends("PASS sesame"), Lines{"PASS sesame"});
}

TEST(WhoAll, AsksForAll) {
    for (const auto* line : {"WHO", "WHO ", "who"})
        EXPECT_EQ(WireWorld("standard").sends(line), Lines{"WHO *"});
    EXPECT_EQ(WireWorld("standard").sends("WHO #thes"), Lines{"WHO #thes"});
    EXPECT_EQ(WireWorld("standard -who-all").sends("WHO"), Lines{"WHO"});
}

TEST(Rejoin, OfAJoinedChannelIsAnsweredHere) {
    WireWorld world("standard");
    world.loggedOn();
    EXPECT_EQ(world.sends("JOIN #Thes "), Lines{});
    EXPECT_EQ(world.answers, Lines{":irc.talvora.test 927 Nikos #Thes :You are in that channel already"});
    EXPECT_EQ(world.sends("JOIN #talvora "), Lines{"JOIN #talvora "});
    EXPECT_EQ(world.answers, Lines{});
    EXPECT_EQ(world.sends("JOIN #a,#thes,#b,#c k1,k2,k3"), Lines{"JOIN #a,#b,#c k1,k3"});
    EXPECT_EQ(world.answers.size(), 1U);
}

TEST(Rejoin, FollowsTheOwnUserAlone) {
    const std::vector<std::pair<std::string, bool>> leaves{
        {u + "PART #THES", true},
        {u + "PART :#thes", true},
        {":Op!o@h KICK #thes nikos :x", true},
        {":Op!o@h KICK #thes Maria :x", false},
        {":Maria!m@h PART #thes", false},
        {":S 404 Nikos #thes :no", false},
    };
    for (const auto& [line, left] : leaves) {
        WireWorld world("standard");
        world.loggedOn().says(line);
        EXPECT_EQ(world.sends("JOIN #thes") == Lines{"JOIN #thes"}, left) << line;
    }
    WireWorld renamed("standard");
    renamed.loggedOn().says(u + "NICK :Maria");
    renamed.saysAll({":Nikos!x@y JOIN :#other", ":Maria!x@y JOIN :#mine"});
    EXPECT_EQ(renamed.sends("JOIN #mine,#other"), Lines{"JOIN #other "});
    renamed.adapter.connectionStarted();
    EXPECT_EQ(renamed.sends("JOIN #mine"), Lines{"JOIN #mine"});
}

TEST(Rejoin, FollowsABoundedNumberOfChannels) {
    WireWorld world("standard");
    world.loggedOn();
    for (int i = 0; i < 3000; ++i) world.says(u + "JOIN :#c" + std::to_string(i));
    world.says(u + "JOIN :#" + std::string(5000, 'x'));
    EXPECT_EQ(world.adapter.own().channels(), OwnState::MostChannels);
}

// N closes the connection on a line of 600; all relay 510 bytes with the prefix.
TEST(Length, LeavesWhatTheServerRelays) {
    WireWorld world("standard");
    const auto sent = [&](const std::string& line) { return world.sends(line).at(0); };
    // Before the prefix is known: ":", the nick of 5, "!", 11, "@", 63, a blank.
    world.sends("NICK Nikos");
    EXPECT_EQ(sent("PRIVMSG #thes :" + std::string(600, 'x')).size(), 510U - 83);
    world.loggedOn();
    EXPECT_EQ(sent("PRIVMSG #thes :" + std::string(600, 'x')), "PRIVMSG #thes :" + std::string(471, 'x'));
    const auto special = sent("NOTICE Maria :\x01PING " + std::string(600, 'x') + "\x01");
    EXPECT_EQ(special.size(), 486U);
    EXPECT_EQ(special.substr(484), "x\x01");
    EXPECT_EQ(sent("JOIN #" + std::string(600, 'x')).size(), 510U);
    EXPECT_EQ(sent("PRIVMSG #thes :" + std::string(471, 'x')).size(), 486U);
    world.says(":S 396 Nikos cloaked.example.org :is now your displayed host");  // I
    EXPECT_EQ(sent("PRIVMSG #thes :" + std::string(600, 'x')).size(), 486U - 10);
    world.says(":Nikos!u@h NICK :" + std::string(190, 'n'));
    EXPECT_EQ(sent("PRIVMSG #thes :" + std::string(600, 'x')).size(), 510U - 196);
}

TEST(Length, CutsNoCharacter) {
    for (int shift = 0; shift < 2; ++shift) {
        WireWorld world(dialect("standard", Encoding::UTF8));
        world.loggedOn();
        const auto line = "PRIVMSG #thes :" + std::string(static_cast<std::size_t>(shift), 'x') + "\x01" +
                          std::string(300, '\xE1') + "\x01";  // alpha: two bytes each
        auto sent = world.sends(line).at(0);
        EXPECT_LE(sent.size(), 486U);
        EXPECT_GE(sent.size(), 484U);
        EXPECT_EQ(sent.substr(sent.size() - 3), "\xCE\xB1\x01");
    }
}

TEST(Pacing, GivesABurstAndThenARate) {
    WireWorld world("standard +pacing");
    constexpr Microseconds second = 1'000'000;
    for (int i = 0; i < Pacing::Burst; ++i) EXPECT_EQ(world.sends("LUSERS", 7 * second).size(), 1U);
    EXPECT_EQ(world.sends("NOTICE Maria :\x01PING 1\x01", 7 * second), Lines{});
    EXPECT_EQ(world.sends("PRIVMSG Maria :hello", 7 * second), Lines{});
    EXPECT_EQ(world.sends("PONG :1", 7 * second), Lines{"PONG :1"});
    EXPECT_EQ(world.adapter.nextTick(), 8 * second);
    EXPECT_EQ(world.ticks(8 * second - 1), Lines{});
    EXPECT_EQ(world.ticks(8 * second), Lines{"PRIVMSG Maria :hello"});
    EXPECT_EQ(world.ticks(9 * second), Lines{"NOTICE Maria :\x01PING 1\x01"});
    EXPECT_EQ(world.adapter.nextTick(), std::nullopt);
    EXPECT_EQ(world.sends("LUSERS", 100 * second).size(), 1U);
}

TEST(Pacing, IsBounded) {
    WireWorld world("plain +pacing");
    const std::string answer = "NOTICE Maria :\x01VERSION x\x01";
    std::size_t sent = 0;
    for (int i = 0; i < 1000; ++i) sent += world.sends(answer).size();
    EXPECT_EQ(sent, static_cast<std::size_t>(Pacing::Burst));
    EXPECT_EQ(world.ticks(1'000'000'000'000).size(), 5U);
    for (int i = 0; i < 100'000; ++i) world.sends("LUSERS");
    EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::None);
    for (int i = 0; i < 100'000; ++i) world.sends("LUSERS");
    EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::TooMuchWaits);
    // A QUIT leaves at once, and nothing behind it.
    EXPECT_EQ(world.sends("QUIT :bye"), Lines{"QUIT :bye"});
    EXPECT_EQ(world.adapter.nextTick(), std::nullopt);
}

}  // namespace
}  // namespace talvora::test
