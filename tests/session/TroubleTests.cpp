// The quiet line of trouble, as the user reads it while a session goes wrong in every way.

#include "Vocabulary.h"
#include "common/HostMessageNumbers.h"
#include "simulation/World.h"

namespace talvora::test {
namespace {

class TroubleTest : public testing::Test {
  protected:
    void starts() {
        maria.host.send(HostMsg::Start);
        passes();
    }
    void passes(std::chrono::microseconds time = 100ms) { world.time.run(time); }
    void says(const std::string& line) {
        maria.server.says(line);
        passes();
    }
    std::string line() {
        const Label& label = maria.window().Trouble.lblTrouble;
        return label.Visible ? label.Caption.get() : "";
    }

    World world;
    Client& maria = world.client("Maria");
};

TEST_F(TroubleTest, ALogOnThatFailsIsToldWithWhatTheEngineDoesNext) {
    maria.server.mood = ScriptedServer::Mood::Refuses;
    starts();
    EXPECT_EQ(line(), "The server takes no connection; trying again in ten seconds.");
    maria.server.mood = ScriptedServer::Mood::Silent;
    passes(10s);
    EXPECT_EQ(line(), "The server takes no connection; trying again now.");
    maria.host.send(HostMsg::ApplySettings);
    maria.server.mood = ScriptedServer::Mood::Accepts;
    passes(10s);
    EXPECT_EQ(line(), "") << "it can be reached";
    maria.server.closes();
    passes();
    EXPECT_EQ(line(), "The server closed the connection before the log-on; trying again in ten seconds.");
    passes(10s);
    says("ERROR :");
    EXPECT_EQ(line(), "The server ends the connection.");
    maria.server.closes();
    passes(11s);
    says("ERROR :Your host is trying to (re)connect too fast -- throttled");
    maria.server.closes();
    passes();
    EXPECT_EQ(line(), "The server says: too fast; trying again in ten seconds.");
    passes(10s);
    EXPECT_EQ(line(), "The server says: too fast.");
    says(":srv 464 Maria :Password incorrect");
    says("ERROR :Closing Link: (Bad Password)");
    maria.server.closes();
    passes();
    EXPECT_EQ(line(), "The server asks for another password; trying again in ten seconds.");
    maria.server.mood = ScriptedServer::Mood::Refuses;
    passes(10s);
    EXPECT_EQ(line(), "The server takes no connection; trying again in ten seconds.") << "no longer";
    maria.server.mood = ScriptedServer::Mood::Accepts;
    passes(10s);
    says(":srv 439 * :Please wait while we process your connection.");
    EXPECT_EQ(line(), "");
    says(":srv 432 * Maria :Erroneous Nickname");
    EXPECT_EQ(line(), "The server does not take the nick Maria; choose another in the settings.");
    says(":srv 433 * Maria :Nickname is already in use");
    passes(10min);
    EXPECT_EQ(line(), "The nick Maria is in use by somebody else; choose another in the settings.")
        << "the log-on stands still";
    says("ERROR :Closing Link: (Registration timed out)");
    maria.server.closes();
    passes();
    EXPECT_EQ(line(), "The nick Maria is in use by somebody else; trying again in ten seconds.");
    passes(10s);
    says(":srv 001 Maria :Welcome");
    EXPECT_EQ(line(), "");
}

TEST_F(TroubleTest, OnLineItTellsForAWhileOrUntilItIsOver) {
    starts();
    says(":srv 001 Maria :Welcome");
    says(":Nikos!u@h KICK #chat Maria :\2be\2have.");
    EXPECT_EQ(line(), "Nikos put you out of #chat: behave.");
    passes(4min);
    EXPECT_EQ(line(), "");
    says(":Nikos!u@h KICK #chat Maria");
    EXPECT_EQ(line(), "Nikos put you out of #chat.");
    says(":Nikos!u@h KICK #chat Eleni :go");
    says(":Maria!u@h JOIN :#Chat");
    EXPECT_EQ(line(), "");
    says(":srv 438 Maria Maria[DND] :Nick change too fast");
    EXPECT_EQ(line(), "The server says: too fast; trying again in half a minute.");
    says(":Maria!u@h NICK :Maria[DND]");
    EXPECT_EQ(line(), "");
    says(":srv 464 Maria :Password incorrect");
    EXPECT_EQ(line(), "The server asks for another password.");
    passes(4min);
    EXPECT_EQ(line(), "");
    says(":srv 263 Maria WHO :Server load is temporarily too heavy");
    EXPECT_EQ(line(), "The server says: too fast for WHO.");
    maria.server.resets();
    passes();
    EXPECT_EQ(line(), "The server is gone; trying again in ten seconds.");
    passes(10s);
    says(":srv 001 Maria :Welcome");
    EXPECT_EQ(line(), "");
    says("ERROR :" + std::string(5000, 'x'));
    EXPECT_EQ(line(), "The server says: " + std::string(197, 'x') + "...");
    maria.server.closes();
    passes();
    maria.component->TheAccount().gSettingsChanged = true;
    maria.host.send(HostMsg::ApplySettings);
    passes();
    EXPECT_EQ(line(), "") << "the user has asked for another connection";
}

TEST_F(TroubleTest, WhatTheSocketSaysIsSaidInPlainWords) {
    starts();
    IRCServ& engine = maria.window().IRCServ1;
    const struct {
        int number;
        const char* description;
        const char* sentence;
    } cases[] = {
        {10013, "The server's certificate was refused: The certificate has expired",
         "The server's certificate cannot be trusted: The certificate has expired."},
        {10013, "The file of trusted certificates can't be read: ca.pem",
         "There is no connection to the server: The file of trusted certificates can't be read: ca.pem."},
        {10060, "?", "The server does not answer."},
        {11001, "?", "The server's name is not known."},
        {10038, "odd\1\r\n", "There is no connection to the server: odd."},
    };
    for (const auto& row : cases) {
        engine.SocketConnect.raise();
        engine.SocketError.raise(static_cast<std::int16_t>(row.number), row.description);
        EXPECT_EQ(line(), row.sentence);
    }
    engine.AutoRetry = false;
    engine.SocketDisconnect.raise();
    EXPECT_EQ(line(), "There is no connection to the server: odd.") << "nobody tries again";
}

}  // namespace
}  // namespace talvora::test
