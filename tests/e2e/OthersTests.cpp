// What the session hears of others in its channels: comings, goings and modes, as each server words them.

#include "e2e/EachServer.h"

namespace talvora::programs {

namespace {

TALVORA_EACH_SERVER(Others);

// A line of the server as the engine read it: the word, its parameters without the empty ones, the text.
void expectLine(GateReader& gate, const std::string& word, const QJsonArray& parameters) {
    gate.expectMessage(
        HostMsg::ServerWord,
        [&](const QJsonValue& data) {
            QJsonArray found;
            for (const QJsonValue parameter : data[1].toArray()) {
                if (!textOf(parameter).empty()) found.push_back(parameter);
            }
            return textOf(data[0]) == word && found == parameters && textOf(data[2]).empty();
        },
        word + " of that form");
}

// What the server answers to this stands behind all that it answered before.
void settle(GateReader& gate) {
    gate.send(HostMsg::SayRaw, "PING :settled");
    gate.expectMessage(
        HostMsg::ServerWord, [](const QJsonValue& data) { return textOf(data[0]) == "PONG"; }, "PONG");
}

TEST_P(Others, AreToldOfWhenTheyComeAndGo) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");  // before the other: ircd-hybrid drops the last words of a newcomer
    OrreryProcess nikos(server, {.channels = "#one|"});
    GateReader& gate = nikos.gate();
    gate.expectNumeric(366, {"#one"});

    anna.join("#one");
    gate.expectMessage(HostMsg::UserJoined, QJsonArray{"#one", "Anna"});
    anna.send("NICK Anna[AWAY]");
    gate.expectMessage(HostMsg::UserRenamed, QJsonArray{"Anna", "Anna[AWAY]"});
    anna.send("PART #one");
    gate.expectMessage(HostMsg::UserParted, QJsonArray{"#one", "Anna[AWAY]"});
    anna.join("#one");
    gate.expectMessage(HostMsg::UserJoined, QJsonArray{"#one", "Anna[AWAY]"});
    anna.send("PART #one :later");
    gate.expectMessage(HostMsg::UserParted, QJsonArray{"#one", "Anna[AWAY]"});
    anna.join("#one");
    anna.send("QUIT :so long");
    // ircd-hybrid keeps back the last words of somebody who has just come.
    gate.expectMessage(
        HostMsg::UserQuit, [](const QJsonValue& data) { return textOf(data[0]) == "Anna[AWAY]"; },
        "Anna[AWAY]");
}

TEST_P(Others, KickTheUserAndEachOther) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");
    anna.join("#one");
    OrreryProcess nikos(server, {.channels = "#one|"});
    anna.expect({":Nikos!", "JOIN", "#one"});
    IrcPeer petros(server.port(), "Petros");
    petros.join("#one");

    anna.send("KICK #one Petros :noise");
    nikos.gate().expectMessage(HostMsg::UserParted, QJsonArray{"#one", "Petros"});
    anna.send("KICK #one Nikos :noise");
    const auto kicked = [](const QJsonValue& data) {
        return textOf(data[0]) == "KICK" && textOf(data[1][1]) == "Nikos";
    };
    nikos.gate().expectMessage(HostMsg::ServerWord, kicked, "the kick");
}

TEST_P(Others, ChangeModesInLinesOfOneForm) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");
    anna.join("#one");
    OrreryProcess nikos(server, {.channels = "#one|"});
    anna.expect({":Nikos!", "JOIN", "#one"});
    GateReader& gate = nikos.gate();

    struct Case {
        const char* sent;
        QJsonArray read;
    };
    const Case cases[] = {
        {"+v Nikos", {"#one", "+v", "Nikos"}},
        {"+o Nikos", {"#one", "+o", "Nikos"}},
        {"-o Nikos", {"#one", "-o", "Nikos"}},
        {"+k sesame", {"#one", "+k"}},
        {"+l 20", {"#one", "+l"}},
        {"-l", {"#one", "-l"}},
        {"+m", {"#one", "+m"}},
    };
    for (const auto& [sent, read] : cases) {
        SCOPED_TRACE(sent);
        anna.send(std::string("MODE #one ") + sent);
        expectLine(gate, "MODE", read);
    }
    anna.send("MODE #one -v+v Nikos Anna");
    expectLine(gate, "MODE", {"#one", "-v", "Nikos"});
    expectLine(gate, "MODE", {"#one", "+v", "Anna"});
}

TEST_P(Others, MuteAChannelAndItStaysJoined) {
    IrcServer server(GetParam());
    IrcPeer anna(server.port(), "Anna");
    anna.join("#one");
    anna.send("MODE #one +m");
    OrreryProcess nikos(server, {.channels = "#one|"});
    anna.expect({":Nikos!", "JOIN", "#one"});

    nikos.gate().send(HostMsg::SayRaw, "PRIVMSG #one :may I?");
    const auto toldSo = [](const QJsonValue& data) {
        return textOf(data[0]) == "NOTICE" && textOf(data[2]).find("#one") != std::string::npos;
    };
    nikos.gate().expectMessage(HostMsg::ServerWord, toldSo, "a notice about #one");
    EXPECT_FALSE(nikos.gate().saw("\"Data\":[404,"));
}

TEST_P(Others, StayInTheListsOfKnownChannelsAlone) {
    IrcServer server(GetParam());
    OrreryProcess nikos(server, {.channels = "#one|"});
    GateReader& gate = nikos.gate();
    gate.expectNumeric(366, {"#one"});

    gate.send(HostMsg::SayRaw, "JOIN #one");  // says nothing more, though the channel list waits for a word
    gate.expectNumeric(927, {"#one"});
    gate.send(HostMsg::SayRaw, "NAMES #nobody");
    settle(gate);
    EXPECT_FALSE(gate.saw("\"#nobody\"")) << gate.transcript();
}

// ircd-hybrid alone: everybody begins invisible, and nicks are cut without a word.

TEST(HybridAsShipped, GivesNoEmptyRowForInvisibleUsers) {
    if (const auto reason = IrcServer::whyNot(ServerKind::Hybrid); !reason.empty()) GTEST_SKIP() << reason;
    IrcServer server(ServerKind::Hybrid, {.invisible = true});
    OrreryProcess nikos(server);

    nikos.gate().expectNumeric(266);  // the answer to WHO would stand before this one
    nikos.gate().expectNumeric(401, {"OrreryServ"});
    EXPECT_FALSE(nikos.gate().saw("\"Data\":[315,"));
}

TEST(HybridAsShipped, NamesTheUserAsItCutTheNick) {
    if (const auto reason = IrcServer::whyNot(ServerKind::Hybrid); !reason.empty()) GTEST_SKIP() << reason;
    IrcServer server(ServerKind::Hybrid, {.nickLength = 9});
    IrcPeer anna(server.port(), "Anna");
    OrreryProcess nikos(server, {.nick = "Alexandros"});

    nikos.gate().expectNumeric(1);
    nikos.gate().expectMessage(HostMsg::ServerWord, QJsonArray{"NICK", QJsonArray{"", ""}, "Alexandro"});
    anna.say("Alexandro", "is it you?");
    nikos.gate().expectMessage(HostMsg::PrivateText, QJsonArray{"Anna", "is it you?"});
}

}  // namespace

}  // namespace talvora::programs
