// What others say to the program itself.

#include "session/PanelFixture.h"

namespace talvora::test {
namespace {

using namespace std::string_literals;

struct Services : Nobody {
    void HandleMailCmd(const std::string& text) override { told.push_back("mail " + text); }
    void HandleAnnData(const std::string& text) override { told.push_back("news " + text); }
    bool IsResolving() const override { return resolving; }
    void ResolveIP(const std::string& address) override { told.push_back("address " + address); }
    bool resolving = false;
    std::vector<std::string> told;
};

struct Privates : Nobody {
    void StartPM(const std::string& nick) override {
        if (starting) starting();
        started = nick;
    }
    void PMDistribute(const std::string&, const std::string&, const std::string&) override { ++lines; }
    std::function<void()> starting;
    std::string started;
    int lines = 0;
};

class VerbTest : public ChannelPanelTest {
  protected:
    VerbTest() {
        to.Mail = services;
        to.Announcements = services;
        to.Resolver = services;
    }
    void says(const std::string& verb, const std::string& nick = "Eve") {
        ChannelPanelTest::says(":" + nick + "!u@h PRIVMSG me :\1" + verb + "\1");
    }
    Services services;
    ScriptedServer& addresses = network.server("ip.test", 37183);
};

TEST_F(VerbTest, AreTakenFromAnybodyUnlessTheNetworkSaysFromTheRobotAlone) {
    for (const bool robotOnly : {false, true}) {
        account.RobotOnly = robotOnly;
        for (const char* nick : {"Eve", "ORRERYSERV"}) {
            for (const char* verb : {"MAIL new 1", "ANN a|b", "mail x"}) says(verb, nick);
        }
    }
    EXPECT_THAT(services.told,
                ElementsAre("mail new 1", "news a|b", "mail new 1", "news a|b", "mail new 1", "news a|b"));
    says("IP ip.test Nikos");
    EXPECT_EQ(addresses.connections, 0);
    says("IP ip.test Nikos", "OrreryServ");
    EXPECT_EQ(addresses.connections, 1);
}

TEST_F(VerbTest, AnAddressIsAskedForFoundAndTold) {
    says("WIP");
    EXPECT_THAT(server.heard(), ElementsAre("PRIVMSG OrreryServ :\1INFO IP Eve\1"));
    says("GIP 10.0.0.7");
    services.resolving = true;
    says("GIP -");
    says("GIP 10.0.0.8");
    EXPECT_THAT(services.told, ElementsAre("address 10.0.0.8"));
    says("IP nowhere.test Nikos");  // silent
    says("IP -");                   // there is none, and nobody to tell
    says("IP ip.test Nikos");
    says("IP ip.test Anna");  // only the last one who asks gets an answer
    EXPECT_EQ(addresses.connections, 2);
    addresses.sends("10.0.0.9");
    time.run(10ms);
    EXPECT_THAT(server.heard(), ElementsAre("PRIVMSG Anna :\1GIP 10.0.0.9\1"));
}

TEST_F(VerbTest, AChosenNickStaysWhileItsWindowOpens) {
    Privates privates;
    to.Privates = privates;
    privates.starting = [&] { form.Presence.SelectedNick = "somebody else"; };
    form.Presence.SelectedNick = "Nikos, whose nick is of some length";
    form.popULChat.Click.raise();
    EXPECT_EQ(privates.started, "Nikos, whose nick is of some length");
}

TEST_F(VerbTest, AStrangerCannotHaveTheUserSayWhatHeLikes) {
    struct Case {
        std::string verb;
        std::string who;  // who is told the address
    };
    for (const auto& [verb, who] :
         {Case{"ip.test Nikos", "Nikos"}, Case{"ip.test Nikos,Eve :boo", "Nikos"},
          Case{"ip.test Nikos :boo", "Nikos"}, Case{"ip.test Ni\0kos"s, "Nikos"}, Case{"ip.test #greek", ""},
          Case{"ip.test @#greek", ""}, Case{"ip.test $*", ""}, Case{"ip.test  Nikos", ""},
          Case{"ip.test ,Nikos", ""}, Case{"ip.test \0"s, ""}, Case{"- Nikos", ""}}) {
        const int before = addresses.connections;
        says("IP " + verb);
        EXPECT_EQ(addresses.connections - before, who.empty() ? 0 : 1) << verb;
        for (const char* bytes : {"\r\n", "10.0.0.7\r\nQUIT :x\r\n", "more"}) {
            addresses.sends(bytes);
            time.run(10ms);
        }
        const auto heard = server.heard();
        if (who.empty()) {
            EXPECT_THAT(heard, IsEmpty()) << verb;
        } else {
            EXPECT_THAT(heard, ElementsAre("PRIVMSG " + who + " :\1GIP 10.0.0.7\1")) << verb;
        }
    }
    says("IP ip.test Nikos");
    addresses.sends(std::string(100000, '9'));
    time.run(10ms);
    EXPECT_THAT(server.heard(), ElementsAre("PRIVMSG Nikos :\1GIP " + std::string(255, '9') + "\1"));
    // A verb that failed is no text for a window, whatever the user answers.
    Privates privates;
    to.Privates = privates;
    for (const Answer answer : {Answer::Abort, Answer::Ignore}) {
        around.questions.willAnswer(answer);
        says("IP ip.test");
    }
    EXPECT_EQ(privates.lines, 0);
}

}  // namespace
}  // namespace talvora::test
