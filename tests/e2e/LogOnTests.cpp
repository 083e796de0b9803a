// Logging on to a real server, and what a fresh session asks it.

#include "e2e/EachServer.h"

namespace talvora::programs {

namespace {

TALVORA_EACH_SERVER(LogOn);

// What Label20 shows of a line about the global users.
std::string shownNumber(const std::string& tailing) {
    const std::size_t colon = tailing.find(':');
    if (colon == std::string::npos) return "";
    const std::size_t begin = tailing.find_first_not_of(' ', colon + 1);
    if (begin == std::string::npos) return "";
    return tailing.substr(begin, tailing.find(' ', begin) - begin);
}

TEST_P(LogOn, IsFollowedByTheRefreshAndTheProbeOfTheRobot) {
    IrcServer server(GetParam());
    OrreryProcess nikos(server);
    GateReader& gate = nikos.gate();

    gate.expectNumeric(1);
    const QJsonValue users = gate.expectNumeric(352);
    EXPECT_EQ(textOf(users[1][5]), "Nikos");
    EXPECT_NE(textOf(users[2]).find("UL:Default.Unsetted"), std::string::npos);
    gate.expectNumeric(315);
    gate.expectNumeric(265);
    // Whether the user counts already differs; that a number stands where it is read does not.
    const std::string number = shownNumber(textOf(gate.expectNumeric(266)[2]));
    EXPECT_TRUE(number == "0" || number == "1") << number;
    gate.expectNumeric(401, {"OrreryServ"});
    gate.expectNumeric(366, {"#orrery"});
}

TEST_P(LogOn, JoinsTheSavedChannelsAndTheSystemChannelWithItsKey) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");
    anna.join("#one");
    anna.join("#two");
    anna.send("MODE #two +k second");
    anna.join("#orrery");
    anna.send("MODE #orrery +k sesame");
    anna.settle();
    OrreryProcess nikos(server, {.channels = "#one|#two|", .settings = {"ChanKeys/#two=second"}});

    for (const char* channel : {"#orrery", "#one", "#two"}) {
        anna.expect({":Nikos!", "JOIN", channel});
        nikos.gate().expectNumeric(366, {channel});
    }
}

TEST_P(LogOn, WithANickInUseStandsStill) {
    IrcServer server(GetParam());
    IrcPeer other(server.port(), "Nikos");
    OrreryProcess nikos(server);

    nikos.gate().expectNumeric(433, {"Nikos"});
    other.send("LUSERS");
    other.expect({" 253 Nikos 1 "});  // a connection whose log-on is not over
    EXPECT_FALSE(nikos.gate().saw("\"Data\":[1,"));
    EXPECT_FALSE(nikos.process().ended());
}

TEST_P(LogOn, SendsThePasswordFirstWhereTheProfileSaysSo) {
    IrcServer server(GetParam(), {.password = "open"});
    OrreryProcess nikos(server, {.dialect = "standard +password-first", .settings = {"Settings/Pass=open"}});

    nikos.gate().expectNumeric(1);
    nikos.gate().expectNumeric(366, {"#orrery"});
}

TEST_P(LogOn, TellsOfRefusedChannels) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");
    for (const char* line : {"MODE #keyed +k other", "MODE #invited +i", "MODE #banned +b *!*@*"}) {
        const std::string mode = line;
        anna.join(mode.substr(5, mode.find(' ', 5) - 5));
        anna.send(mode);
    }
    anna.settle();
    OrreryProcess nikos(server, {.channels = "#keyed|#invited|#banned|"});

    nikos.gate().expectNumeric(475, {"#keyed"});
    nikos.gate().expectNumeric(473, {"#invited"});
    nikos.gate().expectNumeric(474, {"#banned"});
}

TEST_P(LogOn, ComesBackAfterTheServerWasDown) {
    IrcServer server(GetParam());
    OrreryProcess nikos(server);
    nikos.gate().expectNumeric(1);
    nikos.gate().expectNumeric(366, {"#orrery"});

    server.kill();
    server.start();
    nikos.gate().expectNumeric(1);
    nikos.gate().expectNumeric(366, {"#orrery"});
    IrcPeer anna(server.port(), "Anna");
    nikos.gate().send(HostMsg::SayPrivate, QJsonArray{"Anna", "back again"});
    anna.expect({":Nikos!", "PRIVMSG Anna :back again"});
}

TEST_P(LogOn, EndsWithTheWordsOfFarewell) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");
    anna.join("#one");
    {
        OrreryProcess nikos(server, {.channels = "#one|", .settings = {"Settings/QuitMsg=Gone fishing"}});
        anna.expect({":Nikos!", "JOIN", "#one"});
        EXPECT_EQ(nikos.terminate(), 0) << nikos.process().output();
        anna.expect({":Nikos!", "QUIT", "Gone fishing"});
    }
    OrreryProcess maria(server, {.nick = "Maria", .channels = "#one|"});
    anna.expect({":Maria!", "JOIN", "#one"});
    maria.gate().send(HostMsg::Terminate, {});
    anna.expect({":Maria!", "QUIT", "Bye bye!"});
}

}  // namespace

}  // namespace talvora::programs
