#include <random>

#include "EngineFixture.h"
#include "irc/LineBuffer.h"

namespace talvora::test {
namespace {

TEST_F(EngineTest, LogsOnInTimedStepsWhateverTheServerAnswers) {
    engine.SetNickname("Maria");
    engine.SetRealName("UL:Work.Pylea");
    engine.Password = "none";
    engine.Connect("irc.test", 6667);
    time.settle();
    EXPECT_THAT(log.take(), ElementsAre("SocketConnect()", "Logining()"));
    EXPECT_THAT(server.heard(), ElementsAre("NICK Maria"));
    server.says(":srv 001 Maria :Welcome");
    time.run(999ms);
    EXPECT_THAT(server.heard(), IsEmpty());
    EXPECT_TRUE(engine.LoggedIn);
    time.run(1ms);
    EXPECT_THAT(server.heard(), ElementsAre("USER Maria 0 * :UL:Work.Pylea"));
    time.run(1s);
    EXPECT_THAT(server.heard(), ElementsAre("PASS none"));
    time.run(60s);
    EXPECT_THAT(server.heard(), IsEmpty());
    EXPECT_THAT(log.take(), ElementsAre("LoginOK()"));
}

TEST_F(EngineTest, WithoutPasswordOnlyNickAndUserGoOut) {
    engine.Connect("irc.test", 6667);
    time.run(10s);
    const Lines heard = server.heard();
    ASSERT_EQ(heard.size(), 2U);
    // A fresh control is called "User" and a number from 0 to 254, and so is its real name.
    EXPECT_THAT(heard[0], testing::MatchesRegex("NICK User[0-9]+"));
    EXPECT_EQ(heard[1], "USER " + heard[0].substr(5) + " 0 * :" + heard[0].substr(5));
}

TEST_F(EngineTest, ConfirmedModesGoIntoTheNextUserLine) {
    online();
    server.says(":me MODE me :+iw");
    time.run(10ms);
    EXPECT_EQ(engine.UserMode(), 6);
    engine.Disconnect("again");
    engine.Connect("", 0);
    time.run(1s);
    EXPECT_THAT(server.heard(), testing::Contains("USER me 12 * :" + engine.RealName()));
}

TEST_F(EngineTest, NickInUseStandsStillUnlessThePrefixNamesAnother) {
    engine.SetNickname("Maria");
    engine.Connect("irc.test", 6667);
    time.settle();
    server.says(":srv 433 * Maria :Nickname is already in use");
    time.run(60s);
    EXPECT_THAT(server.heard(), ElementsAre("NICK Maria"));
    EXPECT_THAT(log.take(), testing::Contains("NicknameInUse()"));
    server.says(":x!y@Nikos 436 * Maria :collision");
    time.run(5s);
    EXPECT_THAT(server.heard(), ElementsAre("NICK Nikos", "USER Nikos 0 * :" + engine.RealName()));
    EXPECT_EQ(engine.Nickname(), "Nikos");
}

TEST_F(EngineTest, LinesWrittenBeforeTheLogOnLeaveAfterItOneIn100Ms) {
    engine.SendIRC("JOIN #early");
    engine.Connect("irc.test", 6667);
    time.settle();
    engine.SendText("a", "b", true);
    server.heard();
    time.run(500ms);
    EXPECT_THAT(server.heard(), IsEmpty());
    server.says(":srv 001 me :Welcome");
    time.run(101ms);
    EXPECT_THAT(server.heard(), ElementsAre("JOIN #early"));
    engine.SendIRC("WHO");  // overtakes what waits
    time.run(100ms);
    EXPECT_THAT(server.heard(), ElementsAre("WHO", "PRIVMSG a :\1b\1"));
}

TEST_F(EngineTest, NickIsAskedForAgainUntilTheServerConfirmsIt) {
    online();
    engine.SetNickname("me[DND]");
    engine.SetNickname("me[AWAY]");
    EXPECT_THAT(server.heard(), ElementsAre("NICK me[DND]", "NICK me[AWAY]"));
    EXPECT_THAT(raisedBy(":srv 438 me me[AWAY] :too fast"), ElementsAre("QuickNickChange()"));
    time.run(65s);
    EXPECT_THAT(server.heard(), ElementsAre("NICK me[AWAY]", "NICK me[AWAY]"));
    EXPECT_THAT(raisedBy(":ME!u@h NICK :me[AWAY]"), ElementsAre("YouChangeNick(me[AWAY])"));
    EXPECT_EQ(engine.Nickname(), "me[AWAY]");
    time.run(120s);
    EXPECT_THAT(server.heard(), IsEmpty());
}

TEST_F(EngineTest, RetriesForEverTenSecondsAfterTheLastFailure) {
    engine.AutoRetry = true;
    engine.SetNickname("me");
    server.mood = ScriptedServer::Mood::Refuses;
    engine.Connect("irc.test", 6667);
    time.run(30min);
    const Lines events = log.take();
    EXPECT_EQ(std::count(events.begin(), events.end(), "AutoRetryConnection(False)"), 180);
    EXPECT_EQ(events[0], "SocketError(10061, Connection is forcefully rejected)");
    EXPECT_EQ(events[1], "SocketDisconnect()");
    server.mood = ScriptedServer::Mood::Accepts;
    time.run(10s);
    EXPECT_THAT(server.heard(), ElementsAre("NICK me"));
}

TEST_F(EngineTest, AutoRetryCountsForTheSocketsEventsOnly) {
    online();
    server.closes();
    time.run(60s);
    EXPECT_EQ(server.connections, 1) << "lost without AutoRetry: stays off line";
    engine.Disconnect("from outside");
    time.run(11s);
    EXPECT_EQ(server.connections, 2) << "Disconnect leaves the timer running, whatever AutoRetry says";
}

TEST_F(EngineTest, WhatStopHasEndedIsNotStartedAgainByTheHandlerThatItInterrupts) {
    online();
    engine.AutoRetry = true;
    const Subscription ends = engine.SocketDisconnect.connect([&] { engine.Stop(); });
    server.closes();
    time.run(60s);
    EXPECT_EQ(server.connections, 1);
}

TEST_F(EngineTest, ACancelledRetryIsAskedForAgain) {
    const Subscription no = engine.AutoRetryConnection.connect([](bool& cancel) { cancel = true; });
    engine.Disconnect("x");
    time.run(35s);
    EXPECT_THAT(log.take(), ElementsAre("SocketDisconnect()", "AutoRetryConnection(False)",
                                        "AutoRetryConnection(False)", "AutoRetryConnection(False)"));
    EXPECT_EQ(server.connections, 0);
}

TEST_F(EngineTest, QuitIsSaidAndWaitedForOnlyWhenLoggedIn) {
    engine.Connect("irc.test", 6667);
    time.settle();
    server.heard();
    engine.Disconnect("early");
    EXPECT_THAT(server.heard(), IsEmpty());
    online();
    const Microseconds before = time.Now();
    engine.Disconnect("Bye bye!");  // the server never closes: the wait ends by itself
    EXPECT_THAT(server.transcript, testing::HasSubstr("QUIT :Bye bye!\r\n"));
    EXPECT_LE(time.Now() - before, 1'100'000);
    EXPECT_FALSE(server.connected());
    EXPECT_FALSE(engine.LoggedIn);
}

TEST_F(EngineTest, ALineCanArriveInTheMiddleOfADisconnect) {
    online();
    bool again = false;
    const Subscription nested = engine.PMTextArrived.connect([&](auto&, auto&, auto&, auto&) {
        again = true;
        engine.Disconnect("nested");  // says nothing more and does not wait inside the wait
    });
    server.says(":a!b@c PRIVMSG me :hello");
    engine.Disconnect("outer");
    EXPECT_TRUE(again);
    EXPECT_THAT(server.transcript, testing::Not(testing::HasSubstr("nested")));
}

TEST_F(EngineTest, WhatWasNotWorkedOffBelongsToTheNextConnection) {
    online();
    server.sends("FOO :stop\r\nPING :two\r\nPING :un");
    const Subscription stop = engine.ServerStrRespond.connect([&](auto&, auto&, const std::string& t) {
        if (t == "stop") engine.Disconnect("now");
    });
    engine.LoggedIn = false;  // no QUIT and no wait
    time.run(5ms);
    engine.Connect("", 0);
    time.settle();
    server.says("finished");
    time.run(50ms);
    EXPECT_THAT(server.heard(), ElementsAre("NICK me", "PONG :two", "PONG :unfinished"));
}

TEST_F(EngineTest, ImmediateLinesWithoutASocketAreReported) {
    around.questions.willAnswer(Answer::Ignore);
    engine.SendIRC("WHO", true);
    ASSERT_EQ(around.questions.asked.size(), 1U);
    for (const char* part : {"Description: Socket is not connected!\r\n", "Number:16776961\r\n",
                             "Source: IRCServ\r\n", "Function:SendIRC\r\n"}) {
        EXPECT_THAT(around.questions.asked[0], testing::HasSubstr(part));
    }
}

TEST_F(EngineTest, RetryRunsTheFailedStatementAgain) {
    around.questions.willAnswer(Answer::Retry, [this] {
        engine.Connect("irc.test", 6667);
        time.settle();
    });
    engine.SendIRC("VERSION", true);
    EXPECT_THAT(server.heard(), testing::Contains("VERSION"));
}

TEST_F(EngineTest, WhatAServerMayNotDoEndsAsOneErrorOfTheSocket) {
    const std::string much(200'000, 'x');
    const std::string many = replaced(std::string(10'000, 'x'), "x", "x ");
    struct Case {
        std::string repeated;
        int times;  // fewer are taken
        const char* what;
    };
    const Case cases[] = {{much, 2, "line"},
                          {":srv 372 me :" + much + "\r\n", 84, "message of the day"},
                          {":srv 353 me = #c :" + much + "\r\n", 84, "reply"},
                          {":srv 353 me = #c :" + many + "\r\n", 14, "reply"},
                          {":srv 322 me #c 1 :" + much + "\r\n", 84, "reply"}};
    engine.AutoRetry = true;
    for (const Case& c : cases) {
        online();
        for (int i = 1; i < c.times; ++i) server.sends(c.repeated);
        time.run(200ms);
        EXPECT_THAT(log.take(), IsEmpty()) << c.what;
        for (int i = 0; i < 3; ++i) server.sends(c.repeated);  // comes on after the end
        time.run(100ms);
        EXPECT_THAT(log.take(), ElementsAre(std::string("SocketError(10040, The server sent a ") + c.what +
                                                " without an end)",
                                            "SocketDisconnect()"));
        EXPECT_THAT(server.transcript, testing::Not(testing::HasSubstr("QUIT")));
        engine.Disconnect("");
    }
    online();
    raisedBy("PING :still well");
    EXPECT_THAT(server.heard(), testing::Contains("PONG :still well"));
}

TEST_F(EngineTest, ABacklogMakesTheServerWait) {
    online();
    const std::string piece = replaced(std::string(8192, '.'), ".", "FOO x\r\n");
    const std::size_t all = 40 * piece.size();
    for (int i = 0; i < 40; ++i) server.sends(piece);
    int lines = 0;
    const Subscription counts = engine.ServerStrRespond.connect([&](auto&, auto&, auto&) { ++lines; });
    time.run(1s);
    EXPECT_GT(server.untaken(), all - (2 << 20)) << "what is not worked off stays in the socket";
    time.run(500s);
    EXPECT_EQ(lines, 40 * 8192);
}

TEST_F(EngineTest, WhatWaitsForTheLogOnIsBounded) {
    around.questions.answerFaults(Answer::Abort);
    const std::string line(100'000, 'x');
    for (int i = 0; i < 10; ++i) engine.SendIRC(line);
    EXPECT_THAT(around.questions.asked, IsEmpty());
    engine.SendIRC(line);
    EXPECT_THAT(around.questions.asked, ElementsAre(testing::HasSubstr("Too many lines wait")));
    online();
    time.run(3s);
    EXPECT_EQ(std::count(server.transcript.begin(), server.transcript.end(), 'x'), 10 * 100'000);
}

// Against a plain string, around the sizes of its pieces.
TEST(LineBuffer, HoldsWhatAPlainTextWouldHold) {
    std::mt19937 dice(11);
    LineBuffer buffer;
    std::string plain;
    const auto bytes = [&] {
        std::string text(dice() % 4 == 0 ? 32'768 - dice() % 3 : dice() % 3000, 'x');
        for (char& c : text) c = static_cast<char>('a' + dice() % 26);
        for (auto ends = dice() % 4; ends > 0 && !text.empty(); --ends) text[dice() % text.size()] = '\r';
        return text;
    };
    for (int step = 0; step < 1000; ++step) {
        std::string line;
        const auto act = dice() % 8;
        if (act < 3) {
            const std::string text = bytes();
            buffer.appendReceived(text + "\n");
            plain += replaced(text, "\r", "\r\n");
        } else if (act == 3) {
            buffer.append("typed\r\n");
            plain += "typed\r\n";
        } else if (act == 4 && dice() % 4 == 0) {
            buffer.dropUnfinished();
            const auto end = plain.rfind("\r\n");
            plain.resize(end == std::string::npos ? 0 : end + 2);
        } else if (buffer.takeLine(line)) {
            const auto end = plain.find("\r\n");
            ASSERT_EQ(line, plain.substr(0, end)) << step;
            plain.erase(0, end + 2);
        } else {
            ASSERT_EQ(plain.find("\r\n"), std::string::npos) << step;
        }
        const auto end = plain.rfind("\r\n");
        ASSERT_EQ(buffer.size(), plain.size()) << step;
        ASSERT_EQ(buffer.unfinished(), plain.size() - (end == std::string::npos ? 0 : end + 2)) << step;
    }
}

}  // namespace
}  // namespace talvora::test
