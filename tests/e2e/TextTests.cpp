// Text and special text between a user's programs, the component and other people.

#include "e2e/EachServer.h"

namespace talvora::programs {

namespace {

TALVORA_EACH_SERVER(Texts);

// "Καλημέρα" in code page 1253, as it goes over the wire.
constexpr const char* greekBytes = "\xCA\xE1\xEB\xE7\xEC\xDD\xF1\xE1";
constexpr const char* greek = "Καλημέρα";

TEST_P(Texts, OfUsersAndChannelsGoBothWays) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");
    anna.join("#one");
    OrreryProcess nikos(server, {.channels = "#one|"});
    anna.expect({":Nikos!", "JOIN", "#one"});
    GateReader& gate = nikos.gate();

    gate.send(HostMsg::SayPrivate, QJsonArray{"Anna", greek});
    anna.expect({":Nikos!", std::string("PRIVMSG Anna :") + greekBytes});
    anna.say("Nikos", greekBytes);
    gate.expectMessage(HostMsg::PrivateText, QJsonArray{"Anna", greek});
    anna.say("#one", "all: hear this");
    gate.expectMessage(HostMsg::ChannelText, QJsonArray{"#one", "Anna", "all: hear this"});
    gate.send(HostMsg::SayRaw, "PRIVMSG #one :said raw");
    anna.expect({":Nikos!", "PRIVMSG #one :said raw"});
}

TEST_P(Texts, WithNothingInThemCostNothing) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");
    OrreryProcess nikos(server);
    nikos.gate().expectNumeric(1);

    anna.say("Nikos", "");
    anna.say("Nikos", "something");
    nikos.gate().expectMessage(HostMsg::PrivateText, QJsonArray{"Anna", "something"});
    EXPECT_EQ(nikos.process().output().find("HandleData"), std::string::npos) << nikos.process().output();
}

TEST_P(Texts, ThatAreTooLongKeepTheirClosingMark) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");
    OrreryProcess nikos(server);
    nikos.gate().expectNumeric(366, {"#orrery"});  // by its own JOIN it has learnt its prefix

    nikos.gate().send(HostMsg::SayVerb, QJsonArray{"LONG", QString(600, 'x'), "Anna"});
    const std::string line = anna.expect({":Nikos!", "PRIVMSG Anna :\1_LONG xxx"});
    EXPECT_EQ(line.back(), '\1');
    EXPECT_GT(line.size(), 480U);
    nikos.gate().send(HostMsg::SayPrivate, QJsonArray{"Anna", "still there"});
    anna.expect({"PRIVMSG Anna :still there"});
}

}  // namespace

}  // namespace talvora::programs
