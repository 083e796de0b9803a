// Lines of servers before and after. N is ngircd 26.1, I is InspIRCd 3.15, H is ircd-hybrid 8.2; the client
// is Nikos and in #thes.
#include <gtest/gtest.h>

#include "irc/wire/WireWorld.h"

namespace talvora::test {
namespace {

struct Case {
    std::string line;
    Lines read;
};

void expectEach(const std::string& name, const std::vector<Case>& cases) {
    for (const auto& one : cases) {
        WireWorld alone("plain +" + name);
        EXPECT_EQ(alone.loggedOn().says(one.line), one.read) << name << " alone: " << one.line;
        WireWorld all("standard");
        EXPECT_EQ(all.loggedOn().says(one.line), one.read) << "standard: " << one.line;
        WireWorld none("plain +length");
        EXPECT_EQ(none.loggedOn().says(one.line), Lines{one.line}) << "switched off: " << one.line;
    }
}

const std::string u = ":Nikos!~Nikos@127.0.0.1 ";

TEST(LastColon, StandsWhereTheEngineLooks) {
    expectEach("last-colon", {
                                 {u + "JOIN #thes", {u + "JOIN :#thes"}},   // older servers
                                 {u + "JOIN :#thes", {u + "JOIN :#thes"}},  // N, I, H
                                 {u + "JOIN #thes Nikos :Nikos P.", {u + "JOIN :#thes"}},
                                 {u + "NICK Maria", {u + "NICK :Maria"}},
                                 {u + "MODE Nikos +i", {u + "MODE Nikos :+i"}},
                                 {u + "MODE nikos :+i", {u + "MODE nikos :+i"}},  // N, I, H
                                 {u + "PART :#thes", {u + "PART #thes"}},         // I
                                 {u + "PART #thes", {u + "PART #thes"}},          // H
                                 {u + "PART #thes :bye", {u + "PART #thes :bye"}},
                                 {u + "PART #thes bye", {u + "PART #thes :bye"}},
                                 {u + "KICK #thes :Maria", {u + "KICK #thes Maria"}},
                                 {u + "KICK #thes Maria out", {u + "KICK #thes Maria :out"}},
                                 {"PING irc.talvora.test", {"PING :irc.talvora.test"}},
                                 {u + "PRIVMSG Maria hello", {u + "PRIVMSG Maria :hello"}},
                                 {u + "PRIVMSG Maria a:b", {u + "PRIVMSG Maria :a:b"}},
                             });
    WireWorld world("plain +last-colon");
    EXPECT_EQ(world.says(u + "MODE #thes :-l"), Lines{u + "MODE #thes -l"});  // I
}

TEST(ChannelModes, OfOneLineBecomeOneLineEach) {
    expectEach("channel-modes",
               {
                   {u + "MODE #thes +v :Maria", {u + "MODE #thes +v Maria"}},  // I
                   {u + "MODE #thes +v Maria", {u + "MODE #thes +v Maria"}},   // N, H
                   {u + "MODE #thes +k sesame", {u + "MODE #thes +k"}},        // N, H
                   {u + "MODE #thes +k :sesame", {u + "MODE #thes +k"}},       // I
                   {u + "MODE #thes :-l", {u + "MODE #thes -l"}},              // I
                   {u + "MODE #thes +ov-kl+nb Maria Eleni sesame *!*@x",
                    {u + "MODE #thes +o Maria", u + "MODE #thes +v Eleni", u + "MODE #thes -kl+n"}},
                   {u + "MODE #thes +b :*!*@x", {}},
                   {u + "MODE #thes +o", {u + "MODE #thes +o"}},
                   {u + "MODE #thes", {u + "MODE #thes"}},
                   {u + "MODE #thes :+lo 5 Maria", {u + "MODE #thes +lo"}},
               });
}

TEST(ChannelModes, DoNotMultiplyAnOverlongLine) {
    const auto line = ":" + std::string(100'000, 'x') + " MODE #thes +ooo a b c";
    EXPECT_EQ(WireWorld("standard").says(line), Lines{line});
}

TEST(ChannelModes, FollowTheServersOwnLetters) {
    WireWorld world("standard");
    world.loggedOn();
    world.says(
        ":S 005 Nikos CHANMODES=IXbegw,k,FHJLdfjl,ACK PREFIX=(yov)!@+ :are supported by this server");  // I
    EXPECT_EQ(world.says(u + "MODE #thes +fyhg 5:10 Maria x"),
              (Lines{u + "MODE #thes +y Maria", u + "MODE #thes +fh"}));
    world.adapter.connectionStarted();
    EXPECT_EQ(world.says(u + "MODE #thes +h Maria"), Lines{u + "MODE #thes +h Maria"});
}

TEST(Names, HoldKnownRanksAndSomething) {
    expectEach("names", {{":S 366 Nikos #none :End of NAMES list", {}},  // N, I, H
                         {":S 315 Nikos * :End of WHO list.", {}}});     // H, with all users invisible
    for (const auto* value : {"plain +names", "standard"}) {
        WireWorld world(value);
        EXPECT_EQ(world.loggedOn().saysAll({":S 353 Nikos = #thes :%Maria @Nikos ~Eleni 50%",
                                            ":S 353 Nikos = #thes :&Anna",
                                            ":S 366 Nikos #thes :End of NAMES list"}),
                  (Lines{":S 353 Nikos = #thes :+Maria @Nikos @Eleni 50%", ":S 353 Nikos = #thes :@Anna",
                         ":S 366 Nikos #thes :End of NAMES list"}));
        EXPECT_EQ(world.says(":S 366 Nikos #thes :End of NAMES list"), Lines{});
        const Lines who{":S 352 Nikos * ~Maria 127.0.0.1 S Maria[DND] H :0 UL:Work.Pylea",
                        ":S 315 Nikos * :End"};  // N
        EXPECT_EQ(world.saysAll(who), who);
    }
}

TEST(GlobalUsers, AreANumberAlone) {
    expectEach("global-users", {
                                   {":S 266 Nikos 1 1 :Current global users: 12, Max: 20",
                                    {":S 266 Nikos :Current global users: 12"}},  // N
                                   {":S 266 Nikos :Current global users: 1  Max: 1",
                                    {":S 266 Nikos :Current global users: 1  Max: 1"}},  // I, H
                                   {":S 266 Nikos 7 9 :Current global users 7, max 9",
                                    {":S 266 Nikos :Current global users: 7"}},
                                   {":S 266 Nikos 7 9 :many", {":S 266 Nikos :Current global users: 7"}},
                                   {":S 266 Nikos :many", {":S 266 Nikos :many"}},
                                   {":S 266 Nikos ", {":S 266 Nikos "}},
                               });
}

TEST(Moderated, ChannelIsNotTakenForLeft) {
    // N, I, H
    expectEach("moderated", {{":S 404 Nikos #THES :Cannot send to channel (+m)",
                              {":S NOTICE Nikos :#THES: Cannot send to channel (+m)"}},
                             {":S 404 Nikos #other :Cannot send to channel (+n)",
                              {":S 404 Nikos #other :Cannot send to channel (+n)"}}});
}

TEST(EmptyText, DoesNotReachTheEngine) {
    expectEach("empty-text", {
                                 {u + "PRIVMSG Maria :", {}},  // N
                                 {u + "NOTICE Maria ", {}},
                                 {u + "PRIVMSG", {}},
                                 {"", {}},
                                 {":S", {}},
                                 {":S ", {}},
                                 {"PING", {"PING "}},
                                 {u + "QUIT", {u + "QUIT "}},
                                 {u + "PRIVMSG Maria : ", {u + "PRIVMSG Maria : "}},
                             });
    EXPECT_EQ(WireWorld("plain +empty-text").says(u + "PRIVMSG Maria hello"), Lines{});
    // A character without a width leaves nothing behind in the code page.
    EXPECT_EQ(WireWorld(dialect("standard", Encoding::UTF8)).says(u + "PRIVMSG Maria :\xE2\x80\x8D"),
              Lines{});
}

TEST(GivenNick, IsToldToTheEngine) {
    for (const auto* value : {"plain +given-nick", "standard"}) {
        WireWorld world(value);
        world.sends("NICK MariaOfThessaloniki");
        const std::string welcome = ":S 001 MariaOfThessalo :Welcome";  // H cuts without a word
        EXPECT_EQ(world.says(welcome), (Lines{welcome, ":MariaOfThessaloniki NICK :MariaOfThessalo"}));
        EXPECT_TRUE(world.adapter.own().isOwn("mariaofthessalo"));
        EXPECT_EQ(world.says(welcome), Lines{welcome});
    }
    WireWorld same("standard");
    same.sends("NICK Nikos");
    EXPECT_EQ(same.says(":S 001 NIKOS :Welcome"), Lines{":S 001 NIKOS :Welcome"});
}

TEST(ColonsInWords, DoNotEndTheWords) {
    WireWorld world("plain +colons-in-words");
    const std::vector<Case> cases{
        {":S 311 Nikos Maria ~m 2001:db8::1 * :UL:Work", {":S 311 Nikos Maria ~m 2001.db8..1 * :UL:Work"}},
        {":S 352 Nikos #thes ~m 0::1 S Maria H :0 UL:Work",
         {":S 352 Nikos #thes ~m 0..1 S Maria H :0 UL:Work"}},
        {":S 352 Nikos #thes ~m h S Maria H :0 UL:Work", {":S 352 Nikos #thes ~m h S Maria H :0 UL:Work"}},
        {":S 352 Nikos a:b :c", {":S 352 Nikos a.b :c"}},
        {":S 311 :", {":S 311 :"}},
        {":S 311 Nikos", {":S 311 Nikos"}},
    };
    for (const auto& one : cases) EXPECT_EQ(world.says(one.line), one.read);
}

TEST(Tags, AreTakenOffInStandard) {
    EXPECT_EQ(WireWorld("standard").saysAll({"@time=2026;x=:a :S 001 Nikos :Hi", "@a  PING :x", "@a", "@"}),
              (Lines{":S 001 Nikos :Hi", "PING :x"}));
    EXPECT_EQ(WireWorld("plain +names").says("@a PING :x"), Lines{"@a PING :x"});
}

TEST(OneReplyAtATime, KeepsMixedRepliesApart) {
    for (const auto* value : {"plain +one-reply-at-a-time", "standard"}) {
        WireWorld world(value);
        EXPECT_EQ(
            world.loggedOn().saysAll({":S 353 Nikos = #a :Anna", ":S 352 Nikos * m h S Maria H :0 M",
                                      ":S 353 Nikos = #b :Bill", ":S 311 Nikos Maria m h * :M",
                                      u + "QUIT :bye", ":S 353 Nikos = #A :Alex", ":S 366 Nikos #a :End",
                                      ":S 317 Nikos maria 5 6 :idle", ":S 301 Nikos Anna :away",
                                      ":S 301 Nikos Maria :gone", ":S 315 Nikos * :End",
                                      ":S 318 Nikos Maria :End", ":S 366 Nikos #b :End"}),
            (Lines{u + "QUIT :bye", ":S 353 Nikos = #a :Anna", ":S 353 Nikos = #A :Alex",
                   ":S 366 Nikos #a :End", ":S 301 Nikos Anna :away", ":S 352 Nikos * m h S Maria H :0 M",
                   ":S 315 Nikos * :End", ":S 311 Nikos Maria m h * :M", ":S 317 Nikos maria 5 6 :idle",
                   ":S 301 Nikos Maria :gone", ":S 318 Nikos Maria :End", ":S 353 Nikos = #b :Bill",
                   ":S 366 Nikos #b :End"}))
            << value;
        // Absent: 401 and 318 alone.
        const Lines absent{":S 401 Nikos Eleni :No such nick", ":S 318 Nikos Eleni :End"};
        EXPECT_EQ(world.saysAll(absent), absent);
        const Lines motd{":S 375 Nikos :- ", ":S 372 Nikos :- a", ":S 376 Nikos :End"};
        EXPECT_EQ(world.saysAll(motd), motd);
        // All channels at once end with "*", a pattern with itself.
        const Lines all{":S 353 Nikos = #a :A", ":S 353 Nikos = #b :B", ":S 366 Nikos * :End"};
        EXPECT_EQ(world.saysAll(all), all);
        const Lines pattern{":S 311 Nikos Maria m h * :M", ":S 318 Nikos Mar* :End"};
        EXPECT_EQ(world.saysAll(pattern), pattern);
    }
}

TEST(OneReplyAtATime, IsBounded) {
    WireWorld world("standard");
    world.loggedOn();
    // More replies than are kept: the oldest is forgotten, and its end too.
    for (std::size_t i = 0; i <= ReplyKeeper::MostReplies; ++i) {
        EXPECT_EQ(world.says(":S 353 Nikos = #c" + std::to_string(i) + " :Anna"), Lines{});
    }
    EXPECT_EQ(world.says(":S 366 Nikos #c0 :End"), Lines{});
    EXPECT_EQ(world.says(":S 366 Nikos #c1 :End").size(), 2U);
    // A reply that never ends is let through at the bound, and then as it comes.
    const std::string lump = ":S 322 Nikos #" + std::string(100'000, 'x') + " 1 :topic";
    std::size_t sent = 0;
    Lines read;
    while (read.empty()) {
        read = world.says(lump);
        ++sent;
        ASSERT_LE(sent * lump.size(), ReplyKeeper::MostBytes + lump.size());
    }
    EXPECT_EQ(world.says(lump), Lines{lump});
    EXPECT_EQ(world.says(":S 366 Nikos #c2 :End"), Lines{":S 366 Nikos #c2 :End"});
    // The end of the connection drops what was kept.
    world.says(":S 353 Nikos = #d :Anna");
    world.adapter.connectionEnded();
    world.adapter.connectionStarted();
    EXPECT_EQ(world.says(":S 366 Nikos #d :End"), Lines{});
}

}  // namespace
}  // namespace talvora::test
