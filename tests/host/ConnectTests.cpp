#include "Vocabulary.h"
#include "common/HostMessageNumbers.h"
#include "simulation/World.h"

namespace talvora::test {
namespace {

TEST(Connect, AnswersTheHostsMessagesAddressedToItOrToAll) {
    World world;
    Client& maria = world.client("Maria");
    maria.host.send(HostMsg::GatherPages);
    maria.host.send(HostMsg::GatherAbout, {}, HostAddress::Everybody);
    maria.host.send(HostMsg::GatherPages, {}, 2);
    maria.host.send(999);
    maria.host.send(HostMsg::ShowWindow, 1);  // before message 1: no effect
    EXPECT_THAT(maria.host.take(),
                ElementsAre("SettingsPage(TalvoraClient.Settings, Talvora IRC, IRC)",
                            "About(Talvora Messenger, By the Talvora team, All rights reserved, )"));
}

TEST(Connect, IsTheGateOfOtherPluginsToTheNetwork) {
    World world;
    Client& maria = world.loggedIn("Maria");
    maria.host.send(HostMsg::SaySystemVerb, HostArray{"calc", "1 2"});
    maria.host.send(HostMsg::SayVerb, HostArray{"move", "e4", "Nikos"});
    maria.host.send(HostMsg::SayPrivate, HostArray{"Nikos", "hello"});
    maria.host.send(HostMsg::SayRaw, "TOPIC #x :t");
    EXPECT_THAT(maria.server.heard(),
                ElementsAre("PRIVMSG #system :\1_calc 1 2\1", "PRIVMSG Nikos :\1_move e4\1",
                            "PRIVMSG Nikos :hello", "TOPIC #x :t"));
    maria.around.questions.willAnswer(Answer::Abort);
    maria.host.send(HostMsg::SayVerb, HostArray{"move", "e4"});
    EXPECT_THAT(maria.around.questions.asked[0], HasSubstr("Number:9\r\n"));
    EXPECT_THAT(maria.around.questions.asked[0], HasSubstr("Function:dMsgDB_MessageBroadcasted"));
    maria.around.questions.willAnswer(Answer::Ignore);
    maria.host.send(HostMsg::SayPrivate, "no array");
    maria.host.send(HostMsg::SayPrivate, HostArray{"Nikos", "still here"});
    maria.host.send(HostMsg::SayPrivate, HostArray{"Ni\nkos", "one\r\nline"});
    EXPECT_THAT(maria.server.heard(), ElementsAre("PRIVMSG Nikos :still here", "PRIVMSG Nikos :oneline"));
}

TEST(Connect, AFaultyListenerCostsNeitherTheStartNorThePong) {
    World world;
    Client& maria = world.client("Maria");
    const auto view =
        maria.component->MainWindowLoaded.connect([](Form1&) { throw std::runtime_error("no view"); });
    auto listener = maria.host.MessageBroadcasted.connect([](const HostMessage& message) {
        const bool fails = message.MsgID == HostMsg::Started || message.MsgID == HostMsg::ServerWord;
        if (fails) throw std::runtime_error("faulty");
    });
    maria.around.questions.answerFaults(Answer::Ignore);
    maria.around.settings.SaveSetting("Talvora", "Settings", "MailInterval", "1e999");
    maria.host.send(HostMsg::Start);
    world.time.settle();
    EXPECT_THAT(maria.server.heard(), ElementsAre("NICK Maria"));
    EXPECT_EQ(maria.window().Session.gMailInterval, 1);
    maria.around.questions.answerFaults(Answer::Abort);
    maria.server.says("PING :there?");
    world.time.run(10ms);
    EXPECT_THAT(maria.server.heard(), ElementsAre("PONG :there?"));
    EXPECT_EQ(maria.around.questions.asked.size(), 3U);
    EXPECT_THAT(maria.around.questions.asked.back(), HasSubstr("Function:IRCServ1_ServerStrRespond"));
}

TEST(Connect, DamagedListsCostTheirContentAndAReportButNotTheLogOn) {
    for (const char* list : {"System/emoticons.dat", "System/perflix.lst", "System/plugin.lst"}) {
        World world;
        Client& maria = world.client("Maria");
        maria.around.disk.remove(list);
        maria.around.questions.answerFaults(Answer::Abort);
        maria.host.send(HostMsg::Start);
        world.time.settle();
        EXPECT_TRUE(maria.server.connected()) << list;
        const std::size_t reports = maria.around.questions.asked.size();
        EXPECT_LE(reports, 2U);
        maria.server.says(":Nikos!n@h PRIVMSG Maria :hello");
        maria.server.says(":Nikos!n@h PRIVMSG Maria :hello again");
        world.time.run(2s);
        EXPECT_EQ(maria.around.questions.asked.size(), reports) << list;
    }
}

TEST(Connect, Message8SaysQuitWithTheUsersWordsOrTheDefaultAndEndsForGood) {
    for (const char* words : {"", "So long"}) {
        World world;
        Client& maria = world.loggedIn("Maria");
        maria.around.settings.SaveSetting("talvora", "SETTINGS", "quitmsg", words);
        maria.host.send(HostMsg::Terminate);
        EXPECT_EQ(maria.component->MainWindow(), nullptr);
        maria.host.send(HostMsg::SayPrivate, HostArray{"Nikos", "too late"});
        world.time.run(1h);
        EXPECT_THAT(
            maria.server.transcript,
            testing::EndsWith(std::string("QUIT :") + (*words != '\0' ? words : "Bye bye!") + "\r\n"));
        EXPECT_EQ(maria.server.connections, 1) << "no retry after the end";
        maria.around.settings.SaveSetting("Talvora", "Settings", "MailInterval", "99999");
        maria.host.send(HostMsg::Start);
        EXPECT_EQ(maria.component->MainWindow()->Presence.lblNick.Caption.get(), "Maria");
        world.time.run(1s);
        EXPECT_EQ(maria.server.connections, 2) << "and message 1 starts anew";
    }
}

TEST(Connect, SettingsAreAppliedWithANewConnectionOnlyIfNeeded) {
    World world;
    Client& maria = world.loggedIn("Maria");
    Account& account = maria.component->TheAccount();
    SettingsStore& store = maria.around.settings;
    account.gSettingsChanged = false;
    store.SaveSetting("Talvora", "Settings", "Nickname", "Anna");
    maria.host.send(HostMsg::ApplySettings);
    world.time.run(5s);
    EXPECT_EQ(maria.server.connections, 1);
    EXPECT_THAT(maria.server.heard(), ElementsAre("NICK Anna"));
    maria.server.says(":Maria!m@h NICK :Zoe");
    world.time.run(5s);
    maria.host.send(HostMsg::ApplySettings);
    world.time.run(5s);
    EXPECT_THAT(maria.server.heard(), ElementsAre("NICK Zoe")) << "the settings say nothing new";
    account.gSettingsChanged = true;
    store.SaveSetting("Talvora", "Settings", "RealName", "Home.Kavala");
    maria.host.send(HostMsg::ApplySettings);
    EXPECT_THAT(maria.server.transcript, HasSubstr("QUIT :Reconfiguring settings\r\n"));
    EXPECT_THAT(maria.server.transcript, Not(HasSubstr("Changing some settings")));
    world.time.run(1500ms);
    EXPECT_EQ(maria.server.connections, 2);
    EXPECT_THAT(maria.server.heard(), ElementsAre("NICK Zoe", "USER Zoe 0 * :UL:Home.Kavala"));
}

TEST(NotifyHost, IsSilentForKindsThatTheUserSwitchedOff) {
    World world;
    Client& maria = world.client("Maria");
    ComponentSettings settings(maria.around.settings);
    HostGate gate(settings);
    gate.Attach(maria.host, 1);
    Notice notice{"Title", "Text", NoticeKind::PrivateText, {}, "line", 7, true, false};
    gate.NotifyHost(notice);
    settings.Save(Section::Settings, "PopupPM", "F");
    gate.NotifyHost(notice);
    notice.Kind = NoticeKind::ChannelText;
    gate.NotifyHost(notice);
    settings.Save(Section::Settings, "PopupChan", "F");
    gate.NotifyHost(notice);
    EXPECT_THAT(maria.host.take(), ElementsAre("Notice(Title, Text, 1, null, line, 7, True, False)",
                                               "Notice(Title, Text, 2, null, line, 7, True, False)"));
}

// ---- The reporter

TEST(GlobError, HasItsExactText) {
    EXPECT_EQ(GlobError::ReportText(RuntimeError(Fault::SubscriptOutOfRange, 2), "HandleData"),
              "WARNING! A critical error has occured on Talvora core! You can continue but the system might "
              "not work "
              "properly!\r\n"
              "Please contact Brindle or Fennmark, providing the follow error information:\r\n"
              "\r\n"
              "Description: Subscript out of range\r\n"
              "Number:9\r\n"
              "Last DllError:2\r\n"
              "Source: Talvora\r\n"
              "Function:HandleData\r\n"
              "\r\n"
              "What to you want to do?");
}

TEST(GlobError, FaultsBehindAnOpenReportAreCountedAndNotStacked) {
    World world;
    Client& maria = world.loggedIn("Maria");
    maria.around.questions.willAnswer(Answer::Abort, [&] {
        for (int i = 0; i < 1000; ++i) maria.server.says(":a!b@c PRIVMSG Maria :");
        world.time.run(2s);
    });
    maria.server.says(":a!b@c PRIVMSG Maria :");
    world.time.run(10ms);
    EXPECT_EQ(maria.around.questions.asked.size(), 1U);
    EXPECT_EQ(maria.around.questions.lastSuppressed, 1000);
}

TEST(Trap, EachAnswerDoesWhatItSays) {
    World world;
    Client& maria = world.client("Maria");
    GlobError reporter(maria.around.platform);
    for (const Answer answer : {Answer::Abort, Answer::Retry, Answer::Ignore}) {
        std::string path;
        int failures = 1;
        maria.around.questions.willAnswer(answer);
        trapped(reporter, "Outer", [&](Trap& step) {
            step([&] { path += "a"; });
            step([&] {
                if (failures-- > 0) throw RuntimeError(Fault::DiskFull);
                path += "b";
            });
            path += "c";
        });
        EXPECT_EQ(path, answer == Answer::Abort ? "a" : answer == Answer::Retry ? "abc" : "ac");
    }
    // A fault outside any step leaves the procedure, whatever the answer, and its caller goes on.
    std::string path;
    maria.around.questions.willAnswer(Answer::Ignore);
    trapped(reporter, "Outer", [&](Trap& outer) {
        outer([&] {
            trapped(reporter, "Inner", [&](Trap&) { throw std::runtime_error("foreign"); });
            path += "on";
        });
    });
    EXPECT_EQ(path, "on");
    EXPECT_THAT(maria.around.questions.asked.back(), HasSubstr("Description: foreign\r\nNumber:51"));
}

}  // namespace
}  // namespace talvora::test
