#include "EngineFixture.h"

namespace talvora::test {
namespace {

struct LineCase {
    const char* line;
    Lines events;
};

TEST_F(EngineTest, LinesRaiseTheirEvents) {
    online();
    engine.SetNickname("me");
    server.heard();
    const LineCase cases[] = {
        {":a!b@c PRIVMSG me :hello: you", {"PMTextArrived(a, b, c, hello: you)"}},
        {":a!b@c PRIVMSG ME :hello", {"PMTextArrived(a, b, c, hello)"}},
        {":a!b@c PRIVMSG me :\1VERSION\1", {"PMSpecialTextArrived(a, b, c, VERSION, )"}},
        {":a!b@c PRIVMSG me :\1MAIL 1  2 \1", {"PMSpecialTextArrived(a, b, c, MAIL, 1  2)"}},
        {":a!b@c PRIVMSG #x :\1ACTION waves\1", {"SpecialTextArrived(a, b, c, #x, ACTION, waves)"}},
        {":a!b@c PRIVMSG #x :a\1b", {"TextArrived(a, b, c, #x, a<1>b)"}},
        {":a!b@c PRIVMSG #x :", {}},
        {":srv NOTICE * :*** Looking up", {"NoticeArrived(srv, , , *** Looking up)"}},
        {":a!b@c NOTICE me :\1PING 1\1", {"SpecialNoticeArrived(a, b, c, PING, 1)"}},
        {":me!b@c JOIN :#x", {"YouJoinChannel(#x)"}},
        {":a!b@c JOIN #x", {"UserJoinChannel(, a, b, c)"}},
        {":a!b@c PART #x :bye", {"UserPartChannel(#x, a, b, c, bye)"}},
        {":me!b@c PART #x", {"YouPartChannel(#x)"}},
        {":me!b@c QUIT :Quit: x", {"UserQuit(me, b, c, Quit: x)"}},
        {":a!b@c NICK :d[DND]", {"UserChangeNick(a, d[DND], b, c)"}},
        {":a!b@c KICK #x d :bye", {"UserKicked(#x, bye, a)", "UserPartChannel(#x, d, b, c, Kicked by a)"}},
        {":a!b@c KICK #x ME :out", {"YouAreKicked(#x, out, a)", "YouPartChannel(#x)"}},
        {":me MODE me :+i", {"YouChangedMode(2)"}},
        {":me MODE me +w", {"YouChangedMode(2)"}},
        {":a!b@c MODE #x +mn", {"RetriveChannelMode(#x, 0)", "ChannelChangedMode(#x, 768)"}},
        {":a!b@c MODE #x +o d", {"RetriveUserMode(d, 0)", "UserChangeMode(d, , 16)"}},
        {":a!b@c MODE &x +o d", {}},
        {":srv 005 me A=B :are supported", {"Bounced(are supported)"}},
        {":srv 265 me :Current local users: 3", {"LocalUsers(Current local users: 3)"}},
        {":srv 266 me 1 1 :Current global users: 1, Max: 1",
         {"GlobalUsers(Current global users: 1, Max: 1)"}},
        {":srv 301 me a :gone", {"UserIsAway(me, gone)"}},
        {":srv 305 me :back", {"YourAwayState(False)"}},
        {":srv 306 me :away", {"YourAwayState(True)"}},
        {":srv 401 me OrreryServ :No such nick", {"UserNotExist(OrreryServ)"}},
        {":srv 404 me #x :Cannot send", {"YouAreNotInThisChannel(#x)"}},
        {":srv 442 me #x :Not there", {"YouAreNotInThisChannel(#x)"}},
        {":srv 431 me :none", {"NicknameError(none)"}},
        {":srv 432 me x :bad", {"NicknameError(bad)"}},
        {":srv 473 me #x :(+i)", {"ChannelInvitationOnly(#x)"}},
        {":srv 474 me #x :(+b)", {"ChannelBanned(#x)"}},
        {":srv 475 me #x :(+k)", {"ChannelKeyRequired(#x)"}},
        {":srv 927 me #x :Already", {"AlreadyInChannel(#x)"}},
        {":srv 421 me FOO :Unknown command", {"MOTDReceived(- There is no MOTD)"}},
        {":srv 422 me :no motd", {}},
        {":srv TOPIC #x :t", {}},
        {"ERROR :Closing Link", {}},
    };
    for (const LineCase& c : cases) {
        EXPECT_EQ(raisedBy(c.line), c.events) << shown(c.line);
    }
    EXPECT_THAT(server.heard(), IsEmpty());
}

TEST_F(EngineTest, ALineIsTakenApartByItsFirstColonAndItsBlanks) {
    online();
    log.everyLine = true;
    const LineCase cases[] = {
        {":a!b@c FOO x y :t:u", {"ServerStrRespond(FOO, [x|y||], t:u)"}},
        {"foo x", {"ServerStrRespond(FOO, [x|], )"}},
        {"FOO :t", {"ServerStrRespond(FOO, [|], t)"}},
        {"FOO a:b c", {"ServerStrRespond(FOO, [a|], b c)"}},
        {"FOO ", {"ServerStrRespond(FOO, [|], )"}},
        {":srv 0999 x", {"ServerRespond(999, [x|], )"}},
        {"1e3 x", {"ServerRespond(1000, [x|], )"}},
    };
    for (const LineCase& c : cases) EXPECT_EQ(raisedBy(c.line), c.events) << c.line;
}

TEST_F(EngineTest, APrefixIsReadInThreeSteps) {
    online();
    const LineCase cases[] = {
        {":a PRIVMSG me :x", {"PMTextArrived(a, , , x)"}},
        {":a!b PRIVMSG me :x", {"PMTextArrived(a, b, , x)"}},
        {":a@c PRIVMSG me :x", {"PMTextArrived(a, , c, x)"}},
        {":a!b@c@d PRIVMSG me :x", {"PMTextArrived(a, b, d, x)"}},
        {":!@ PRIVMSG me :x", {"PMTextArrived(, , , x)"}},
    };
    for (const LineCase& c : cases) EXPECT_EQ(raisedBy(c.line), c.events) << c.line;
}

TEST_F(EngineTest, PingIsAnsweredBeforeTheLogOnIsOver) {
    engine.SetNickname("me");
    engine.Connect("irc.test", 6667);
    time.settle();
    using namespace std::string_literals;
    server.says("PING :1\0002:3"s);
    time.run(10ms);
    EXPECT_THAT(server.heard(), ElementsAre("NICK me", "PONG :12:3")) << "one line, and no NUL in it";
}

TEST_F(EngineTest, NamesInSeveralLinesAreOneCleanArray) {
    online();
    raisedBy(":srv 353 me = #c : @a b ");
    raisedBy(":srv 353 me = #c :c  d    e");
    raisedBy(":srv 353 me = #c :f");
    EXPECT_THAT(raisedBy(":srv 366 me #c :End"), ElementsAre("NamesReceived(#c, [@a|b|c|d|e|f])"));
    EXPECT_THAT(raisedBy(":srv 366 me #d :End"), ElementsAre("NamesReceived(, [])"));
}

// A question that a handler asks lets the next line in.
TEST_F(EngineTest, WhatAHandlerIsToldStaysWhileOtherLinesComeIn) {
    online();
    Lines told;
    const auto letIn = [&](const std::string& what) {
        time.run(10ms);
        told.push_back(what);
    };
    Subscriptions on;
    on += engine.NamesReceived.connect([&](const std::string& channel, auto&) { letIn(channel); });
    on += engine.WhoisReply.connect([&](auto&, const std::string& nick) { letIn(nick); });
    on += engine.MOTDReceived.connect([&](const std::string& text) { letIn(text); });
    server.says(":srv 353 me = #first :a\r\n:srv 366 me #first :\r\n:srv 353 me = #second :b");
    time.run(20ms);
    server.says(":srv 311 me First u h * :\r\n:srv 318 me First :\r\n:srv 311 me Second u h * :");
    time.run(20ms);
    server.says(":srv 375 me :first\r\n:srv 376 me :\r\n:srv 375 me :second");
    time.run(20ms);
    EXPECT_THAT(told, ElementsAre("#first", "First", "first\r\n"));
}

TEST_F(EngineTest, WhoAndListAreGatheredByTheirFields) {
    online();
    raisedBy(":srv 352 me #x ~u host srv2 Nick[DND] H :0 UL:Work.Pylea  here");
    raisedBy(":srv 352 me * v h2 srv2 B G* :1 ");
    EXPECT_THAT(raisedBy(":srv 315 me * :End"),
                ElementsAre("WHORespond([#x<5>~u<5>host<5>srv2<5>Nick[DND]<5>H<5>0<5>UL:Work.Pylea  here|"
                            "*<5>v<5>h2<5>srv2<5>B<5>G*<5>1<5>])"));
    EXPECT_THAT(raisedBy(":srv 315 me * :End"), ElementsAre("WHORespond([])"));
    raisedBy(":srv 322 me #x 5 :topic: a");
    raisedBy(":srv 322 me #y 1 :");
    EXPECT_THAT(raisedBy(":srv 323 me :End"), ElementsAre("ChannelListReply([#x<5>5<5>topic: a|#y<5>1<5>])"));
}

TEST_F(EngineTest, WhoisFillsItsTemplateAndWhatIsLeft) {
    online();
    for (const char* line : {":srv 311 me Nik user host * :Real N", ":srv 319 me Nik :#a @#b",
                             ":srv 312 me Nik irc.x :The server", ":srv 301 me Nik :out"}) {
        raisedBy(line);
    }
    EXPECT_THAT(
        raisedBy(":srv 318 me Nik :End"),
        ElementsAre("WhoisReply([user|host|Real N|#a @#b|irc.x, The server|out|0|0|is a Normal User], Nik)"));
    raisedBy(":srv 311 me Nik user host * :Real");
    raisedBy(":srv 317 me Nik 12 99 :idle");
    raisedBy(":srv 313 me Nik :is an operator");
    EXPECT_THAT(raisedBy(":srv 318 me Nik :End"),
                ElementsAre("WhoisReply([user|host|Real|-|-|-|12|99|is an operator], Nik)"));
    raisedBy(":srv 401 me Gone :No such nick");
    EXPECT_THAT(raisedBy(":srv 318 me Gone :End"), ElementsAre("WhoisReply([], )"));
}

TEST_F(EngineTest, TheMessageOfTheDayIsHandedOverWholeAndKept) {
    online();
    for (const char* line : {":srv 375 me :- start", ":srv 372 me :- one", ":srv 372 me :"}) raisedBy(line);
    EXPECT_THAT(raisedBy(":srv 376 me :End"),
                ElementsAre("MOTDReceived(- start<13><10>- one<13><10><13><10>)"));
    EXPECT_THAT(raisedBy(":srv 376 me :End"),
                ElementsAre("MOTDReceived(- start<13><10>- one<13><10><13><10>)"));
}

TEST_F(EngineTest, FaultyLinesEndInOneReportEachAndTheNextLineWorks) {
    online();
    const char* faulty[] = {"",
                            ":",
                            ":srv",
                            ":srv ",
                            "PING",
                            ":srv QUIT",
                            ":a!b@c PRIVMSG me :",
                            ":a!b@c NOTICE me :",
                            ":srv 352 me #x u h s n H :0",
                            ":srv 352 me :0 x",
                            ":srv 401 ",
                            "99999999999 x",
                            ":a!b@c KICK #x",
                            "MODE #x",
                            ":srv 312 me"};
    for (const char* line : faulty) {
        around.questions.answerFaults(Answer::Ignore);
        around.questions.asked.clear();
        raisedBy(line);
        EXPECT_LE(around.questions.asked.size(), 1U) << line;
        around.questions.answerFaults(Answer::Abort);
        if (!around.questions.asked.empty()) {
            EXPECT_THAT(around.questions.asked[0], testing::HasSubstr("Function:HandleData\r\n")) << line;
        }
        EXPECT_THAT(raisedBy(":a!b@c PRIVMSG me :well"), ElementsAre("PMTextArrived(a, b, c, well)"));
    }
    around.questions.answerFaults(Answer::Ignore);
    // Where the failing statement was a condition, its branch is not taken.
    EXPECT_THAT(raisedBy(":a!b@c PRIVMSG me :"), ElementsAre("PMTextArrived(a, b, c, )"));
}

TEST_F(EngineTest, EachEventOfALineCanFailWithEachAnswer) {
    online();
    int failsAt = 0;
    const auto hear = [&] {
        if (--failsAt == 0) throw RuntimeError(Fault::InternalError);
    };
    Subscriptions on;
    on += engine.ServerStrRespond.connect([&](IRCServ::Text, IRCServ::List, IRCServ::Text) { hear(); });
    on += engine.UserKicked.connect([&](IRCServ::Text, IRCServ::Text, IRCServ::Text) { hear(); });
    on += engine.UserPartChannel.connect(
        [&](IRCServ::Text, IRCServ::Text, IRCServ::Text, IRCServ::Text, IRCServ::Text) { hear(); });
    for (const Answer answer : {Answer::Abort, Answer::Retry, Answer::Ignore}) {
        for (int event = 1; event <= 3; ++event) {
            failsAt = event;
            around.questions.answerFaults(answer);
            Lines events = raisedBy(":a!b@c KICK #x d :bye");
            EXPECT_EQ(around.questions.asked.size(), 1U);
            around.questions.asked.clear();
            events.erase(std::unique(events.begin(), events.end()), events.end());
            // Abort leaves the line where it failed; Ignore goes on behind it, and Retry does it again.
            EXPECT_EQ(events.size(), answer == Answer::Abort ? static_cast<std::size_t>(event) - 1 : 2U)
                << event;
            EXPECT_THAT(raisedBy(":a!b@c PART #x"), testing::Contains("UserPartChannel(#x, a, b, c, )"));
        }
    }
}

// The stream may be cut anywhere.
TEST(LineReader, TheSameStoryComesOutOfEveryCutOfTheStream) {
    Lines first;
    for (const Cut cut : {Cut::AsSent, Cut::SingleBytes, Cut::OneLump, Cut::Random}) {
        VirtualTime time;
        VirtualNetwork network{time, 5};
        network.cut = cut;
        VirtualPlatform around{time, network};
        GlobError globError{around.platform};
        Random random;
        IRCServ engine{around.platform, globError, random, network.CreateSocket({})};
        EventLog log{engine};
        log.everyLine = true;
        ScriptedServer& server = network.server("irc.test", 6667);
        engine.Connect("irc.test", 6667);
        time.settle();
        log.take();
        server.sends("PING :a\r\n:x PRIVMSG #c :lf\nglued\r:y PRIVMSG #c :next\r\n:z NICK :q\r");
        server.sends("\n:srv 353 me = #c :a b\r\n:srv 366 me #c :End\r\n");
        time.run(1s);
        const Lines lines = log.take();
        if (first.empty()) first = lines;
        EXPECT_EQ(lines, first);
        EXPECT_EQ(lines[2], "TextArrived(x, , , #c, lfglued)");
    }
}

}  // namespace
}  // namespace talvora::test
