// Conversations from end to end: two hosts with each other, with irssi, and with plug-ins in the text path.

#include <gtest/gtest.h>

#include "simulation/programs/IrcPeer.h"
#include "simulation/programs/IrcServer.h"
#include "simulation/programs/Irssi.h"
#include "simulation/programs/OrreryProcess.h"

namespace talvora::programs {

namespace {

// A window for each channel in which somebody speaks.
const std::string channelWindows = "ChanSettings/CreateOnPM=T";

// The component reported nothing, and ends as it should.
void expectPeacefulEnd(OrreryProcess& orrery) {
    EXPECT_EQ(orrery.terminate(), 0);
    EXPECT_EQ(orrery.process().output().find("Description: "), std::string::npos)
        << orrery.process().output();
}

// A line of the server whose text holds `part`.
void expectWord(GateReader& gate, const std::string& word, const std::string& part) {
    const auto wanted = [&](const QJsonValue& data) {
        return textOf(data[0]) == word && textOf(data[2]).find(part) != std::string::npos;
    };
    gate.expectMessage(HostMsg::ServerWord, wanted, word + " with " + part);
}

// Servers decorate the words of farewell.
void expectQuit(GateReader& gate, const std::string& nick, const std::string& words) {
    const auto wanted = [&](const QJsonValue& data) {
        return textOf(data[0]) == nick && textOf(data[1]).find(words) != std::string::npos;
    };
    gate.expectMessage(HostMsg::UserQuit, wanted, nick + " saying " + words);
}

// ---- Two hosts

struct Speech {
    const char* name;
    const char* dialect;
    const char* encoding;
};

std::ostream& operator<<(std::ostream& out, const Speech& speech) {
    return out << speech.name;
}

class TwoUsers : public testing::TestWithParam<Speech> {
  protected:
    void SetUp() override {
        if (const auto reason = IrcServer::whyNot(ServerKind::Ngircd); !reason.empty())
            GTEST_SKIP() << reason;
    }
    static OrreryOptions user(const std::string& nick, const std::string& channels,
                              std::vector<std::string> settings) {
        OrreryOptions options{.nick = nick, .channels = channels};
        options.dialect = GetParam().dialect;
        options.encoding = GetParam().encoding;
        options.settings = std::move(settings);
        return options;
    }
};

INSTANTIATE_TEST_SUITE_P(Speaking, TwoUsers,
                         testing::Values(Speech{"StandardUtf8", "standard", "utf-8"},
                                         Speech{"PlainCodePage", "plain", "cp1253"}),
                         [](const auto& speech) { return std::string(speech.param.name); });

TEST_P(TwoUsers, MeetTalkPartAndMeetAgain) {
    IrcServer server(ServerKind::Ngircd);
    OrreryProcess nikos(server, user("Nikos", "#one|", {channelWindows}));
    GateReader& hears = nikos.gate();
    {
        OrreryProcess maria(server, user("Maria", "", {"Settings/QuitMsg=Τα λέμε"}));
        GateReader& says = maria.gate();
        hears.expectNumeric(366, {"#one"});
        says.expectNumeric(366, {"#orrery"});
        says.send(HostMsg::SayRaw, "JOIN #one");
        hears.expectMessage(HostMsg::UserJoined, QJsonArray{"#one", "Maria"});
        EXPECT_NE(textOf(says.expectNumeric(353, {"=", "#one"})[2]).find("Nikos"), std::string::npos);

        says.send(HostMsg::SayRaw, "PRIVMSG #one :Καλησπέρα: \"όλοι\"");
        hears.expectNotice(2, "#One", "#One: Maria: Καλησπέρα: \"όλοι\"");
        hears.expectMessage(HostMsg::ChannelText, QJsonArray{"#one", "Maria", "Καλησπέρα: \"όλοι\""});
        // A window that opens asks for the names of its channel.
        const auto both = [](const QJsonValue& data) {
            return textOf(data[2]).find("Maria") != std::string::npos;
        };
        hears.expectMessage(HostMsg::ServerNumeric, both, "names with Maria");
        says.send(HostMsg::SayRaw, "PRIVMSG #one :\1ACTION γνέφει\1");
        hears.expectNotice(2, "#One", "#One: Maria: $ACTION γνέφει");
        says.send(HostMsg::SayPrivate, QJsonArray{"Nikos", "μόνο εσύ"});
        hears.expectNotice(1, "Maria", "Maria: μόνο εσύ");
        hears.expectMessage(HostMsg::PrivateText, QJsonArray{"Maria", "μόνο εσύ"});

        says.send(HostMsg::SayRaw, "NICK Maria[AWAY]");
        hears.expectMessage(HostMsg::UserRenamed, QJsonArray{"Maria", "Maria[AWAY]"});
        says.send(HostMsg::SayRaw, "PRIVMSG Nikos :\1ACTION λείπει\1");
        hears.expectNotice(1, "Maria[away]", "Maria[away]: λείπει");
        says.send(HostMsg::SayRaw, "NICK Maria");
        hears.expectMessage(HostMsg::UserRenamed, QJsonArray{"Maria[AWAY]", "Maria"});
        says.send(HostMsg::Terminate, {});
        expectQuit(hears, "Maria", "Τα λέμε");
        expectPeacefulEnd(maria);
    }
    // Back again, and of another mind.
    OrreryProcess maria(server, user("Maria", "#one|", {"Settings/IgnoreList=nikos@"}));
    hears.expectMessage(HostMsg::UserJoined, QJsonArray{"#one", "Maria"});
    maria.gate().send(HostMsg::SayPrivate, QJsonArray{"Nikos", "πάλι εδώ"});
    hears.expectNotice(1, "Maria", "Maria: πάλι εδώ");
    hears.send(HostMsg::SayRaw, "PRIVMSG #one :μ' ακούς;");
    hears.send(HostMsg::SayPrivate, QJsonArray{"Maria", "μ' ακούς;"});
    hears.expectNotice(1, "Maria", "Maria: ignores you");
    EXPECT_FALSE(maria.gate().saw(hostMessage(HostMsg::ChannelText)) ||
                 maria.gate().saw(hostMessage(HostMsg::PrivateText)));
    expectPeacefulEnd(maria);
    expectPeacefulEnd(nikos);
}

// ---- A client of other people's

class WithIrssi : public testing::Test {
  protected:
    void SetUp() override {
        std::string reason = Irssi::whyNot();
        if (reason.empty()) reason = IrcServer::whyNot(ServerKind::Ngircd);
        if (!reason.empty()) GTEST_SKIP() << reason;
    }
};

TEST_F(WithIrssi, TheUserAnswersAndIsHeard) {
    IrcServer server(ServerKind::Ngircd);
    OrreryProcess maria(server, {.nick = "Maria",
                                 .channels = "#one|",
                                 .encoding = "utf-8",
                                 .settings = {"Settings/QuitMsg=Γεια σας"}});
    GateReader& gate = maria.gate();
    gate.expectNumeric(366, {"#one"});
    Irssi petros(server.port());

    petros.type("/ctcp Maria VERSION");
    petros.expect("VERSION reply from Maria: Talvchat v[0-9.]+ the Talvora team");
    petros.type("/ping Maria");
    petros.expect("PING reply from Maria: [0-9.]+ seconds");
    petros.type("/ctcp Maria TIME");
    petros.expect("TIME reply from Maria: [0-9]{2}/[0-9]{2}/[0-9]{4} [0-9]");
    petros.type("/ctcp Maria FINGER");
    petros.expect("FINGER reply from Maria: Maria[.] Unknown idle time");
    petros.type("/whois Maria");
    petros.expect("ircname +: UL:Default.Unsetted");

    gate.send(HostMsg::SayRaw, "PRIVMSG #one :Καλημέρα σε \00312όλους\003!");
    petros.expect("<@Maria> Καλημέρα σε όλους!");
    gate.send(HostMsg::SayRaw, "PRIVMSG #one :\1ACTION γνέφει\1");
    petros.expect("[*] Maria γνέφει");
    gate.send(HostMsg::SayPrivate, QJsonArray{"Petros", "μόνο εσύ"});
    petros.expect("\\[Maria\\(~Maria@127.0.0.1\\)\\] μόνο εσύ");
    gate.send(HostMsg::SayRaw, "NICK Maria[AWAY]");
    petros.expect("Maria is now known as Maria\\[AWAY\\]");
    gate.send(HostMsg::Terminate, {});
    petros.expect("Maria\\[AWAY\\] \\[.*\\] has quit \\[.*Γεια σας");
    expectPeacefulEnd(maria);
}

TEST_F(WithIrssi, ItsWordsArriveAsTheyAre) {
    IrcServer server(ServerKind::Ngircd);
    OrreryProcess maria(server, {.nick = "Maria", .channels = "#one|", .settings = {channelWindows}});
    GateReader& gate = maria.gate();
    gate.expectNumeric(366, {"#one"});
    Irssi petros(server.port(), {.charset = "CP1253"});
    gate.expectMessage(HostMsg::UserJoined, QJsonArray{"#one", "Petros"});

    petros.type("Καλημέρα \0034,8με χρώμα\003 :-)");
    gate.expectNotice(2, "#One", "#One: Petros: Καλημέρα \0034,8με χρώμα\003 :-)");
    gate.expectMessage(HostMsg::ChannelText,
                       QJsonArray{"#one", "Petros", "Καλημέρα \0034,8με χρώμα\003 :-)"});
    petros.type("/me γνέφει");
    gate.expectNotice(2, "#One", "#One: Petros: $ACTION γνέφει");
    petros.type("/msg Maria {\\rtf1 τι;}");
    gate.expectNotice(1, "Petros", "Petros: {\\rtf1 τι;}");
    gate.expectMessage(HostMsg::PrivateText, QJsonArray{"Petros", "{\\rtf1 τι;}"});
    petros.type("/action Maria γελά");
    gate.expectNotice(1, "Petros", "Petros: γελά");
    petros.type("/ctcp Maria _CHESS e2 e4");
    gate.expectMessage(HostMsg::Verb, QJsonArray{"CHESS", "Petros", "e2 e4"});
    petros.type("/nctcp Maria VERSION ως έχει");
    expectWord(gate, "NOTICE", "\1VERSION ως έχει\1");

    petros.type("/quit αντίο");
    expectQuit(gate, "Petros", "αντίο");
    expectPeacefulEnd(maria);
}

// ---- Plug-ins

TEST(ChatPlugins, StandInTheTextPathOfEachWindow) {
    if (const auto reason = IrcServer::whyNot(ServerKind::Ngircd); !reason.empty()) GTEST_SKIP() << reason;
    IrcServer server(ServerKind::Ngircd);
    OrreryProcess nikos(server, {.channels = "#one|",
                                 .settings = {channelWindows},
                                 .plugins = {"e2e_microphone", "shout"},
                                 .pluginList = "Test.Microphone T T 0 0 Microphone\n"
                                               "Shout.Shout T T 0 0 Shout aloud\n"});
    GateReader& gate = nikos.gate();
    gate.expectNumeric(366, {"#one"});
    IrcPeer anna(server.port(), "Anna");
    anna.join("#one");

    anna.say("#one", "softly");
    gate.expectNotice(2, "#One", "#One: Anna: softly");
    anna.say("#one", "!shout");
    gate.expectNotice(2, "#One", "#One: You are shouting now.");
    anna.say("#one", "softly");
    gate.expectNotice(2, "#One", "#One: Anna: SOFTLY");
    anna.special("#one", "ACTION whispers");
    gate.expectNotice(2, "#One", "#One: Anna: $ACTION whispers");
    anna.say("Nikos", "softly");  // each window has plug-ins of its own
    gate.expectNotice(1, "Anna", "Anna: softly");
    for (const char* text : {"softly", "!shout", "softly"}) {
        gate.expectMessage(HostMsg::ChannelText,
                           QJsonArray{"#one", "Anna", text});  // the host hears it as it came
    }

    anna.say("#one", "say aloud");
    anna.expect({":Nikos!", "PRIVMSG #one :aloud"});
    anna.say("Nikos", "say $ACTION nods");
    anna.expect({":Nikos!", "PRIVMSG Anna :\1ACTION nods\1"});
    expectPeacefulEnd(nikos);
}

}  // namespace

}  // namespace talvora::programs
