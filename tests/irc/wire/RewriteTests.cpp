// Lines of servers and of the engine before and after. N is ngircd 26.1, I is InspIRCd 3.15, H is
// ircd-hybrid 8.2; the client is Nikos and in #thes.
#include <algorithm>

#include "irc/wire/WireWorld.h"

namespace talvora::test {
namespace {

TEST(Incoming, LinesTakeTheFormThatTheEngineReads) {
    const std::vector<Rewritten> rows{
        {"last-colon", ":x JOIN #a|:x JOIN #a x :x P.|", ":x JOIN :#a|:x JOIN :#a|"},        // older servers
        {"last-colon", ":x JOIN :#a|:x MODE Nikos :+i|", ":x JOIN :#a|:x MODE Nikos :+i|"},  // N, I, H
        {"last-colon", ":x NICK y|:x MODE nikos +i|", ":x NICK :y|:x MODE nikos :+i|"},
        {"last-colon", ":x MODE #a :-l|:x MODE #a -l|", ":x MODE #a -l|:x MODE #a -l|"},  // I
        {"last-colon", ":x PART :#a|:x PART #a|", ":x PART #a|:x PART #a|"},              // I, H
        {"last-colon", ":x PART #a bye|:x PART #a :bye|", ":x PART #a :bye|:x PART #a :bye|"},
        {"last-colon", ":x KICK #a :y|:x KICK #a y out|", ":x KICK #a y|:x KICK #a y :out|"},
        {"last-colon", "PING x|:x PRIVMSG y a:b|", "PING :x|:x PRIVMSG y :a:b|"},
        {"channel-modes", ":x MODE #a +v :y|:x MODE #a +k :key|", ":x MODE #a +v y|:x MODE #a +k|"},  // I
        {"channel-modes", ":x MODE #a +v y|:x MODE #a +k key|", ":x MODE #a +v y|:x MODE #a +k|"},    // N, H
        {"channel-modes", ":x MODE #a +ov-kl+n y z k|", ":x MODE #a +o y|:x MODE #a +v z|:x MODE #a -kl+n|"},
        {"channel-modes", ":x MODE #a +b :m|:x MODE #a :+lo 5 y|", ":x MODE #a +lo|"},
        {"channel-modes", ":x MODE #a +o|:x MODE #a +bo m y|", ":x MODE #a +o|:x MODE #a +o y|"},
        {"names", ":S 366 N #none :End|:S 315 N * :End|", ""},  // N, I, H; H with all users invisible
        {"names", ":S 352 N * ~y h S y H :0 y|:S 315 N * :|", ":S 352 N * ~y h S y H :0 y|:S 315 N * :|"},
        {"names", ":S 353 N = a :%y @z ~v &w 5%|:S 366 N a :|", ":S 353 N = a :+y @z @v @w 5%|:S 366 N a :|"},
        // N; I and H
        {"global-users", "266 N 1 1 :Current global users: 12, Max: 20|", "266 N :Current global users: 12|"},
        {"global-users", "266 :Current global users: 1  Max: 1|", "266 :Current global users: 1  Max: 1|"},
        {"global-users", ":S 266 N 7 9 :many|", ":S 266 N :Current global users: 7|"},
        {"moderated", ":S 404 N #THES :no (+m)|", ":S NOTICE Nikos :#THES: no (+m)|"},  // N, I, H
        {"moderated", ":S 404 N #b :no (+n)|", ":S 404 N #b :no (+n)|"},                // N, I, H
        {"empty-text", ":x PRIVMSG y :|:x NOTICE y |:x PRIVMSG|", ""},                  // N
        {"empty-text", "|:S|:S |PING|:x QUIT|:x PRIVMSG y : |", "PING |:x QUIT |:x PRIVMSG y : |"},
        {"colons-in-words", ":S 311 N y ~y 1:8::1 * :a:b|:S 311 :|", ":S 311 N y ~y 1.8..1 * :a:b|:S 311 :|"},
        {"colons-in-words", ":S 352 N #a ~y 0::1 S y H :0 a:b|", ":S 352 N #a ~y 0..1 S y H :0 a:b|"},
    };
    expectEach(&WireWorld::says, rows);
    // Message tags, which have no name of their own.
    EXPECT_EQ(WireWorld("standard").says("@t=:a :S 1 N :Hi|@a  PING :x|@a|@|"), ":S 1 N :Hi|PING :x|");
    EXPECT_EQ(WireWorld("plain +names").says("@a PING :x|"), "@a PING :x|");
    // A character without a width leaves nothing behind in the code page.
    EXPECT_EQ(WireWorld(dialect("standard", Encoding::UTF8)).says(":x PRIVMSG y :\xE2\x80\x8D|"), "");
}

TEST(ChannelModes, FollowTheServersOwnLettersAndDoNotMultiplyAnOverlongLine) {
    WireWorld world("standard");
    world.says(":S 005 N CHANMODES=IXbegw,k,FHJLdfjl,ACK PREFIX=(yov)!@+ :are supported|");  // I
    EXPECT_EQ(world.says(":x MODE #a +fyhg 5:10 y z|"), ":x MODE #a +y y|:x MODE #a +fh|");
    world.adapter.connectionStarted();
    EXPECT_EQ(world.says(":x MODE #a +h y|"), ":x MODE #a +h y|");
    const auto line = ":" + std::string(100'000, 'x') + " MODE #thes +ooo a b c|";
    EXPECT_EQ(world.says(line), line);
}

TEST(GivenNick, IsToldToTheEngineOnce) {
    WireWorld world("plain +given-nick");
    world.sends("NICK MariaOfThessaloniki|");
    // H cuts without a word.
    EXPECT_EQ(world.says(":S 001 MariaOf :Hi|"), ":S 001 MariaOf :Hi|:MariaOfThessaloniki NICK :MariaOf|");
    EXPECT_EQ(world.says(":S 001 MARIAOF :Hi|"), ":S 001 MARIAOF :Hi|");
}

TEST(OneReplyAtATime, KeepsMixedRepliesApart) {
    WireWorld world("standard");
    EXPECT_EQ(world.says(":S 353 N = #a :y|:S 352 N * m :0 M|:S 353 N = #b :z|:S 311 N y m :M|"), "");
    EXPECT_EQ(world.says(":S 353 N = #A :v|:x QUIT :bye|"), ":x QUIT :bye|");
    EXPECT_EQ(world.says(":S 366 N #a :End|"), ":S 353 N = #a :y|:S 353 N = #A :v|:S 366 N #a :End|");
    EXPECT_EQ(world.says(":S 301 N z :away|:S 301 N Y :gone|"), ":S 301 N z :away|");
    EXPECT_EQ(world.says(":S 315 N * :End|"), ":S 352 N * m :0 M|:S 315 N * :End|");
    EXPECT_EQ(world.says(":S 318 N y :End|"), ":S 311 N y m :M|:S 301 N Y :gone|:S 318 N y :End|");
    EXPECT_EQ(world.says(":S 366 N #b :End|"), ":S 353 N = #b :z|:S 366 N #b :End|");
    // An absent nick, a message of the day, a list, all channels at once, a pattern.
    for (const auto* whole :
         {":S 401 N y :No|:S 318 N y :End|", ":S 375 N :-|:S 372 N :a|:S 376 N :End|",
          ":S 322 N #a 1 :b|:S 323 N :End|", ":S 353 N = #a :A|:S 353 N = #b :B|:S 366 N * :End|",
          ":S 311 N y m :M|:S 318 N y* :End|"})
        EXPECT_EQ(world.says(whole), whole);
}

TEST(OneReplyAtATime, IsBounded) {
    WireWorld world("standard");
    // More replies than are kept: the oldest is forgotten, and its end too.
    for (std::size_t i = 0; i <= ReplyKeeper::MostReplies; ++i)
        EXPECT_EQ(world.says(":S 353 N = #c" + std::to_string(i) + " :y|"), "");
    EXPECT_EQ(world.says(":S 366 N #c0 :|:S 366 N #c1 :|"), ":S 353 N = #c1 :y|:S 366 N #c1 :|");
    // A reply that never ends is let through at the bound, and then as it comes.
    const std::string lump = ":S 322 N #" + std::string(100'000, 'x') + " 1 :topic|";
    std::size_t sent = lump.size();
    while (world.says(lump).empty()) ASSERT_LE(sent += lump.size(), ReplyKeeper::MostBytes + lump.size());
    EXPECT_EQ(world.says(lump + ":S 366 N #c2 :|"), lump + ":S 366 N #c2 :|");
    // The end of the connection drops what was kept.
    world.says(":S 353 N = #d :y|");
    world.adapter.connectionEnded();
    EXPECT_EQ(world.says(":S 366 N #d :End|"), "");
}

TEST(Outgoing, LinesTakeTheFormThatServersTake) {
    const std::vector<Rewritten> rows{
        {"user-name", "USER Maria[DND] 8 * :UL:Work [x]|",
         "USER Maria 8 * :UL:Work [x]|"},  // N and H refuse it
        {"user-name", "USER M\xE1ria_Of-Thessaloniki 0 * :x|", "USER MriaOfThe 0 * :x|"},
        {"user-name", "USER [afk] 0 * :x|USER x12 0 * :x12|USER|",
         "USER user 0 * :x|USER x12 0 * :x12|USER|"},
        {"who-all", "WHO|who |WHO #thes|", "WHO *|WHO *|WHO #thes|"},
        {"rejoin", "JOIN #Thes |JOIN #talvora |", "JOIN #talvora |"},
        {"rejoin", "JOIN #a,#thes,#b,#c k1,k2,k3|", "JOIN #a,#b,#c k1,k3|"},
    };
    expectEach(&WireWorld::sends, rows);
}

// In code page 1253: the small letters of Greek are 0xE1 to 0xFE, the capitals 0x20 below; 0xDC is an alpha
// with an accent, 0xA2 its capital.
TEST(ServerSpelling, IsPutInPlaceOfTheEnginesProperCase) {
    struct Case {
        const char* said;  // by the server
        const char* sent;  // by the engine
        const char* leaves;
    };
    const Case cases[] = {
        {":x!u@h JOIN :#\xE5\xEB\xEB|", "PRIVMSG #\xC5\xEB\xEB :\xC5\xEB\xEB, #\xC5\xEB\xEB|",
         "PRIVMSG #\xE5\xEB\xEB :\xC5\xEB\xEB, #\xC5\xEB\xEB|"},
        {":S 353 N = #\xE1 :@\xF9 +\xDC\xED x|", "NAMES #\xC1|NOTICE \xA2\xED :hi|MODE #\xC1 +o \xD9 x|",
         "NAMES #\xE1|NOTICE \xDC\xED :hi|MODE #\xE1 +o \xF9 x|"},
        {":\xF9!u@h PRIVMSG #\xE2 :hi|", "KICK #\xC2 \xD9|WHOIS \xD9 |", "KICK #\xE2 \xF9|WHOIS \xF9 |"},
        {":\xE1!u@h NICK :\xE2[dnd]|", "PRIVMSG \xC2[DND],\xC2,z :x|", "PRIVMSG \xE2[dnd],\xC2,z :x|"},
        // Later ones count; letters of ASCII, other words and the own choice of a nick are left alone.
        {":\xE1 JOIN :#\xE1|:\xE1 JOIN :#\xC1|", "JOIN #x,#\xE1 key|", "JOIN #x,#\xC1 key|"},
        {":\xE1y JOIN :#x\xE1|", "PART #X\xE1 :\xC1Y|TALK \xC1Y|NICK \xC1y|",
         "PART #X\xE1 :\xC1Y|TALK \xC1Y|NICK \xC1y|"},
    };
    for (const Case& c : cases) {
        for (const char* value : {"plain +server-spelling", "standard"}) {
            WireWorld world(value);
            world.loggedOn().says(c.said);
            EXPECT_EQ(world.sends(c.sent), c.leaves) << value;
            world.adapter.connectionStarted();
            EXPECT_EQ(world.sends(c.sent), c.sent) << "of another connection";
        }
        WireWorld without("standard -server-spelling");
        without.loggedOn().says(c.said);
        EXPECT_EQ(without.sends(c.sent), c.sent);
    }
    WireWorld utf8(dialect("standard", Encoding::UTF8));
    utf8.loggedOn().says(":Nikos!u@h JOIN :#\xCE\xB5|");
    EXPECT_EQ(utf8.sends("PRIVMSG #\xC5 :\xE1|JOIN #\xC5|"), "PRIVMSG #\xCE\xB5 :\xCE\xB1|");
    EXPECT_EQ(utf8.answers, ":irc.talvora.test 927 Nikos #\xE5 :You are in that channel already\r\n");
}

TEST(ServerSpelling, KnowsTheNamesSeenLast) {
    WireWorld world("standard");
    world.says(":x!u@h JOIN :#\xE5|:\xE5!u@h JOIN :#x|");
    for (std::size_t i = 0; i < 2 * ServerNames::Most; ++i)
        world.says(":\xE1" + std::to_string(i) + " JOIN :#x|");
    EXPECT_EQ(world.sends("NAMES #\xC5|WHOIS \xC5|WHOIS \xC1"
                          "9999|"),
              "NAMES #\xE5|WHOIS \xC5|WHOIS \xE1"
              "9999|");
}

TEST(PasswordFirst, HoldsNickAndUser) {
    WireWorld world("standard +password-first");
    EXPECT_EQ(world.sends("NICK y|PONG :1|USER y 0 * :N|NICK z|"), "PONG :1|");
    EXPECT_EQ(world.sends("PASS sesame|NICK v|"), "PASS sesame|NICK z|USER y 0 * :N|NICK v|");
    world.adapter.connectionEnded();
    EXPECT_EQ(world.sends("NICK w|"), "");
    world.adapter.connectionStarted();
    EXPECT_EQ(world.sends("PASS sesame|"), "PASS sesame|");
}

TEST(Rejoin, IsAnsweredHereAndFollowsTheOwnUserAlone) {
    WireWorld world("standard");
    world.loggedOn().says(":Op!o@h KICK #thes Maria :x|:Maria!m@h PART #thes|:S 404 Nikos #thes :no|");
    EXPECT_EQ(world.sends("JOIN #thes|"), "");
    EXPECT_EQ(world.answers, ":irc.talvora.test 927 Nikos #thes :You are in that channel already\r\n");
    for (const auto* leaves : {":Nikos PART #THES|", ":Nikos PART :#thes|", ":Op!o@h KICK #thes nikos :x|"}) {
        world.says(leaves);
        EXPECT_EQ(world.sends("JOIN #thes|"), "JOIN #thes|") << leaves;
        world.says(":Nikos JOIN :#thes|");
    }
    EXPECT_EQ(world.sends("PART #thes|JOIN #thes|"), "PART #thes|JOIN #thes|");  // before the server answers
    world.says(":Nikos NICK :Maria|:Nikos!x@y JOIN :#other|:Maria!x@y JOIN :#mine|");
    EXPECT_EQ(world.sends("JOIN #mine,#other|"), "JOIN #other |");
    for (int i = 0; i < 3000; ++i) world.says(":Maria JOIN :#c" + std::to_string(i) + "|");
    EXPECT_EQ(world.adapter.own().channels(), OwnState::MostChannels);
    world.adapter.connectionStarted();
    EXPECT_EQ(world.sends("JOIN #mine|"), "JOIN #mine|");
}

// N closes the connection on a line of 600; all relay 510 bytes with the prefix.
TEST(Length, LeavesWhatTheServerRelays) {
    WireWorld world("standard");
    const auto text = "PRIVMSG #thes :" + std::string(471, 'x');
    const auto flood = text + std::string(99, 'x') + "|";
    // Before the prefix is known: ":", the nick of 5, "!", 11, "@", 63, a blank.
    world.sends("NICK Nikos|");
    EXPECT_EQ(world.sends(flood), text.substr(0, 510 - 83) + "|");
    EXPECT_EQ(world.loggedOn().sends(flood + text + "|"), text + "|" + text + "|");
    EXPECT_EQ(world.sends("JOIN #" + std::string(600, 'x') + "|").size(), 511U);
    world.says(":S 396 Nikos cloaked.example.org :is now your displayed host|");  // I
    EXPECT_EQ(world.sends(flood), text.substr(0, 486 - 10) + "|");
    world.says(":Nikos!u@h NICK :" + std::string(190, 'n') + "|");
    EXPECT_EQ(world.sends(flood), text.substr(0, 510 - 196) + "|");
}

TEST(Length, CutsNoCharacterAndKeepsTheEndOfAnAnswer) {
    for (const auto* start : {"NOTICE #thes :\x01", "NOTICE #thes :\x01x"}) {
        WireWorld world(dialect("standard", Encoding::UTF8));
        // Alpha has two bytes on the wire.
        const auto sent = world.loggedOn().sends(start + std::string(300, '\xE1') + "\x01|");
        EXPECT_TRUE((sent.size() == 486 || sent.size() == 487) && sent.ends_with("\xCE\xB1\x01|")) << sent;
    }
}

TEST(Pacing, GivesABurstAndThenARateToTheOwnLinesFirst) {
    WireWorld world("standard +pacing");
    world.now = 7'000'000;
    EXPECT_EQ(world.sends("A|B|C|D|E|NOTICE y :\x01T\x01|PRIVMSG y :hello|PONG :1|"), "A|B|C|D|E|PONG :1|");
    world.now = 8'000'000;
    EXPECT_EQ(world.sends(""), "PRIVMSG y :hello|");
    world.now = 9'000'000;
    EXPECT_EQ(world.sends(""), "NOTICE y :\x01T\x01|");
}

TEST(Pacing, IsBounded) {
    WireWorld world("plain +pacing");
    // Answers beyond the bound are lost.
    std::string left;
    for (; world.now < 1000; ++world.now) left += world.sends("NOTICE y :\x01|");
    for (; world.now < 100'000'000; world.now += Pacing::Interval) left += world.sends("");
    EXPECT_EQ(std::count(left.begin(), left.end(), '|'), Pacing::Burst + 16);
    for (std::size_t i = 0; i < Pacing::MostOwnBytes / 8 + Pacing::Burst; ++i) world.sends("LUSERS|");
    EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::None);
    world.sends("LUSERS|");
    EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::TooMuchWaits);
    // A QUIT leaves at once, and nothing behind it.
    EXPECT_EQ(world.sends("QUIT :bye|"), "QUIT :bye|");
    EXPECT_EQ(world.adapter.nextTick(), std::nullopt);
}

}  // namespace
}  // namespace talvora::test
