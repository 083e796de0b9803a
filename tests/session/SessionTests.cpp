#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "common/HostMessageNumbers.h"
#include "platform/Text.h"
#include "simulation/World.h"

namespace talvora::test {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

void says(World& world, Client& client, const std::string& line) {
    client.server.says(line);
    world.time.run(10ms);
}

TEST(Session, TheFirstLogOnJoinsTheSystemChannelAndThenTheSavedOnes) {
    World world;
    Client& maria = world.client("Maria");
    maria.around.settings.SaveSetting("Talvora", "ChanKeys", "#two", "sesame");
    maria.around.settings.SaveSetting("Talvora", "Settings", "ChanList", "#one|#two|");
    maria.host.send(HostMsg::Start);
    EXPECT_THAT(maria.host.take(), ElementsAre("Started(Talvora IRC, 1)"));
    world.time.settle();
    EXPECT_EQ(maria.window().Session.Label8.Caption.get(), "Loging in...");
    EXPECT_EQ(maria.window().Session.imgStat.Picture, SessionPicture::Connecting);
    maria.server.says(":srv 001 Maria :Welcome");
    world.time.run(2500ms);
    EXPECT_THAT(maria.server.heard(), ElementsAre("NICK Maria", "WHO", "LUSERS", "PRIVMSG OrreryServ :. . .",
                                                  "JOIN #system syskey", "JOIN #one", "JOIN #two sesame",
                                                  "USER Maria 0 * :UL:Default.Unsetted", "PASS none"));
    EXPECT_EQ(maria.window().Session.Label8.Caption.get(), "Talvora is Up and Running");
    EXPECT_EQ(maria.window().Session.imgStat.Picture, SessionPicture::OnLine);
}

TEST(Session, AFirstStartRunsOnItsDefaults) {
    World world;
    Client& user = world.loggedIn("TalvchatUser");
    EXPECT_THAT(user.server.transcript, testing::HasSubstr("JOIN #thessaloniki\r\n"));
    EXPECT_THAT(user.around.questions.asked, IsEmpty());
}

TEST(Session, TheRefreshAsksEachMinuteAndProbesTheRobot) {
    World world;
    Client& maria = world.loggedIn("Maria");
    SessionPanel& session = maria.window().Session;
    EXPECT_TRUE(session.imgMailOK.Visible);
    says(world, maria, ":srv 401 Maria orreryserv :No such nick");
    EXPECT_FALSE(session.imgMailOK.Visible);
    EXPECT_TRUE(session.imgMailErr.Visible);
    world.time.run(60s);
    EXPECT_THAT(maria.server.heard(), ElementsAre("WHO", "LUSERS", "PRIVMSG OrreryServ :. . .",
                                                  "PRIVMSG OrreryServ :\x01MAIL 0 0\x01",
                                                  "PRIVMSG OrreryServ :\x01"
                                                  "ANN HAS 0\x01"));
    EXPECT_TRUE(session.imgMailOK.Visible);
    says(world, maria, ":srv 266 Maria :Current global users: 12  Max: 30");
    EXPECT_EQ(session.Label20.Caption.get(), "Global users: 12");
    maria.server.closes();
    world.time.run(5min);
    EXPECT_EQ(session.Label8.Caption.get(), "Loging in...") << "AutoRetry is forced at every ReConnect";
}

TEST(Session, AMonthOnLineOverflowsNoCounter) {
    World world;
    Client& maria = world.client("Maria");
    maria.around.settings.SaveSetting("Talvora", "Settings", "MailInterval", "3");
    maria.host.send(HostMsg::Start);
    world.time.settle();
    maria.server.says(":srv 001 Maria :Welcome");
    world.time.run(33'000min);  // beyond what 16 bits count
    EXPECT_THAT(maria.around.questions.asked, IsEmpty());
    // Since the third minute each one checks, whatever the clock on the wall says.
    maria.server.heard();
    for (const auto ahead : {-24h * 900, 24h * 9000}) {
        maria.around.clock.ahead = ahead;
        world.time.run(1min);
        const auto heard = maria.server.heard();
        for (const char* line :
             {"WHO", "PRIVMSG OrreryServ :\1MAIL 0 0\1", "PRIVMSG OrreryServ :\1ANN HAS 0\1"})
            EXPECT_EQ(std::ranges::count(heard, line), 1) << line;
    }
    EXPECT_EQ(maria.server.connections, 1);
    says(world, maria, "PING :there?");
    EXPECT_THAT(maria.server.heard(), Contains("PONG :there?"));
}

TEST(Session, TheSystemChannelsRefusalsAreComparedWithItsKey) {
    World world;
    Client& maria = world.loggedIn("Maria");
    SessionPanel& session = maria.window().Session;
    says(world, maria, ":Maria!u@h JOIN :#SYSTEM");
    EXPECT_TRUE(session.SysChanOK());
    EXPECT_THAT(maria.window().Channels.Joined(), Not(testing::HasSubstr("SYSTEM")));
    says(world, maria, ":srv 474 Maria syskey :banned");
    EXPECT_EQ(session.SysChanState(), 3);
    says(world, maria, ":srv 474 Maria #system :banned");
    EXPECT_EQ(session.SysChanState(), 3);
    says(world, maria, ":Maria!u@h PART #system");
    EXPECT_EQ(session.SysChanState(), 4);
}

TEST(Session, NewsOfOthersReachTheHost) {
    World world;
    Client& maria = world.loggedIn("Maria");
    for (const char* line :
         {":a!b@c JOIN :#x", ":a!b@c NICK :d", ":d!b@c PART #x :bye", ":e!b@c QUIT :gone",
          ":a!b@c PRIVMSG #x :hi", ":a!b@c PRIVMSG #system :hi", ":a!b@c PRIVMSG Maria :psst",
          ":a!b@c PRIVMSG #system :\1_calc 1 2\1", ":a!b@c PRIVMSG #system :\1calc 1\1",
          ":a!b@c PRIVMSG Maria :\1_move e4\1", ":a!b@c PRIVMSG Maria :\1ACTION waves\1"}) {
        says(world, maria, line);
    }
    EXPECT_THAT(
        maria.host.take(),
        ElementsAre("UserJoined(#x, a)", "UserRenamed(a, d)", "UserParted(#x, d)", "UserQuit(e, gone)",
                    "ChannelText(#x, a, hi)", "Notice(Chat, A: psst, 1, A, , imgChat, False, False)",
                    "PrivateText(a, psst)", "SystemVerb(calc, a, 1 2)", "Verb(move, a, e4)",
                    "Notice(Chat, A: waves, 1, A, , imgChat, False, False)"));
}

TEST(Session, QueriesAreAnsweredOnOneLineEach) {
    World world;
    Client& maria = world.loggedIn("Maria");
    for (const char* line : {":a!b@c PRIVMSG Maria :\1PING 123\1", ":a!b@c PRIVMSG Maria :\1VERSION\1",
                             ":a!b@c PRIVMSG Maria :\1TIME\1", ":a!b@c PRIVMSG Maria :\1FINGER\1",
                             ":a!b@c PRIVMSG Maria :\1ping 1\1"}) {
        says(world, maria, line);
    }
    maria.server.sends(":a!b@c PRIVMSG Maria :\1PING x\0y\1\r\n"s);
    world.time.run(10ms);
    EXPECT_THAT(
        maria.server.heard(),
        ElementsAre("NOTICE a :\1PING 123\1", "NOTICE a :\1VERSION Talvchat v0.1.0 the Talvora team\1",
                    testing::MatchesRegex("NOTICE a :\1TIME 14/03/2026 09:00:..\1"),
                    "NOTICE a :\1FINGER Maria. Unknown idle time\1", "NOTICE a :\1PING xy\1"));
}

TEST(Presence, AStateIsASuffixOnTheNickAndDndTurnsAway) {
    World world;
    Client& maria = world.client("Maria");
    maria.around.settings.SaveSetting("Talvora", "Settings", "IgnoreList", "nikos@bob@");
    maria.host.send(HostMsg::Start);
    world.time.settle();
    maria.server.says(":srv 001 Maria :Welcome");
    world.time.run(4s);
    maria.server.heard();
    PresencePanel& presence = maria.window().Presence;
    ASSERT_EQ(presence.popStat.UBound(), 2);
    EXPECT_EQ(presence.popStat(1).Caption.get(), "Do not disturb");
    EXPECT_EQ(presence.popStat(1).Tag.get(), "5|DND");
    says(world, maria, ":nikos[afk]!b@c PRIVMSG Maria :hey");
    says(world, maria, ":nikos!b@c PRIVMSG #x :hey");
    presence.popStat(1).Click.raise();
    EXPECT_EQ(presence.Label18.Caption.get(), "Dnd");
    says(world, maria, ":Maria!u@h NICK :Maria[DND]");
    EXPECT_EQ(maria.window().State.gNickname(), "Maria");
    says(world, maria, ":nikos!b@c PRIVMSG Maria[DND] :\1MAIL x\1");
    // What his program says by itself is not answered, or the two would never end.
    says(world, maria, ":nikos!b@c PRIVMSG Maria[DND] :\1ACTION ignores you\1");
    presence.popStat(2).Click.raise();
    presence.popOnline.Click.raise();
    EXPECT_THAT(maria.server.heard(),
                ElementsAre("PRIVMSG nikos[afk] :\1ACTION ignores you\1", "NICK Maria[DND]",
                            "PRIVMSG nikos :\1ACTION is busy and doesn't want to be disturbed\1",
                            "NICK Maria[away]", "NICK Maria"));
    EXPECT_FALSE(presence.DoNotDisturb());
}

// What the window shows of the state: nick, name, picture, and whether private texts are turned away.
std::string stateOf(Client& client) {
    const PresencePanel& shown = client.window().Presence;
    return shown.lblNick.Caption.get() + " " + shown.Label18.Caption.get() + " " +
           std::to_string(shown.imgState.Picture) + (shown.DoNotDisturb() ? " busy" : "");
}

TEST(Presence, AReloadKeepsTheStateAndSoDoesALogOn) {
    World world;
    Client& maria = world.client("Maria[DND]");  // as the settings hold it; states never stack
    maria.host.send(HostMsg::Start);
    EXPECT_EQ(stateOf(maria), "Maria Online 3");
    maria.window().Presence.popStat(1).Click.raise();
    EXPECT_EQ(stateOf(maria), "Maria[DND] Dnd 5 busy") << "off line at once";
    world.time.settle();
    EXPECT_THAT(maria.server.heard(), ElementsAre("NICK Maria[DND]"));
    maria.server.says(":srv 001 Maria :Welcome");
    world.time.run(4s);
    maria.server.heard();
    maria.component->TheAccount().gSettingsChanged = false;
    maria.host.send(HostMsg::ApplySettings);
    EXPECT_THAT(maria.server.heard(), ElementsAre("NICK Maria[DND]"));
    EXPECT_EQ(stateOf(maria), "Maria[DND] Dnd 5 busy");
    maria.window().Presence.popStat(2).Click.raise();
    maria.server.closes();  // it has not answered
    EXPECT_EQ(maria.window().State.Nick(), "Maria[away]");
    world.time.run(11s);
    EXPECT_EQ(stateOf(maria), "Maria[away] Away 4");
    // A state chosen while the server is still thinking is told to it, too.
    maria.window().Presence.popStat(1).Click.raise();
    EXPECT_THAT(maria.server.heard(),
                testing::AllOf(Contains("NICK Maria[away]"), Contains("NICK Maria[DND]")));
    maria.server.says(":srv 001 Maria :Welcome");
    world.time.run(10ms);
    EXPECT_EQ(stateOf(maria), "Maria[DND] Dnd 5 busy");
}

TEST(Presence, TheStateIsWhatTheNickSaysWhoeverHasPutItThere) {
    World world;
    Client& maria = world.loggedIn("Maria");
    says(world, maria, ":Maria!u@h NICK :Guest[dnd]");
    EXPECT_EQ(stateOf(maria), "Guest[dnd] Dnd 5 busy");
    EXPECT_EQ(maria.window().State.gNickname(), "Guest");
    maria.window().State.Ask("Anna");
    EXPECT_EQ(stateOf(maria), "Guest[dnd] Dnd 5 busy") << "the server decides";
    says(world, maria, ":Guest[dnd]!u@h NICK :Anna");
    EXPECT_EQ(stateOf(maria), "Anna Online 3");
    // Of two choices in a row the last one stands, whichever is answered first.
    for (const int state : {2, 1}) maria.window().Presence.popStat(state).Click.raise();
    says(world, maria, ":Anna!u@h NICK :Anna[away]");
    EXPECT_EQ(stateOf(maria), "Anna[away] Dnd 5 busy");
    says(world, maria, ":Anna[away]!u@h NICK :Anna[DND]");
    maria.window().Presence.popOnline.Click.raise();
    EXPECT_FALSE(maria.window().Presence.DoNotDisturb());
    says(world, maria, ":srv 433 Anna[DND] Anna :Nickname is already in use");
    EXPECT_TRUE(maria.window().Presence.DoNotDisturb()) << "refused: the others still see it";
}

TEST(Presence, ATableOfSixtyStatesGivesFiftyEntriesAndABadLineOneReport) {
    World world;
    Client& maria = world.client("Maria");
    std::string table = "broken line\r\n";
    for (int i = 0; i < 60; ++i) table += "S" + std::to_string(i) + "|State|3\r\n";
    maria.around.disk.put("System/perflix.lst", table);
    maria.around.questions.willAnswer(Answer::Ignore);
    maria.host.send(HostMsg::Start);
    EXPECT_EQ(maria.window().Presence.popStat.UBound(), 50);
    EXPECT_EQ(maria.window().Presence.popStat(1).Tag.get(), "3|S0");
}

TEST(Presence, AnUnreadableTableOfStatesLeavesNoTemplateInTheMenu) {
    World world;
    Client& maria = world.client("Maria");
    maria.around.questions.answerFaults(Answer::Ignore);
    maria.around.disk.remove("System/perflix.lst");
    maria.host.send(HostMsg::Start);
    EXPECT_EQ(maria.window().Presence.popStat.UBound(), 0);
    EXPECT_FALSE(maria.window().Presence.popStat(0).Visible);
}

TEST(Presence, TheIgnoreListIsPlainText) {
    World world;
    Client& maria = world.loggedIn("Maria");
    PresencePanel& presence = maria.window().Presence;
    struct Step {
        Menu& menu;
        const char* nick;
        const char* list;
    };
    for (const Step& step :
         {Step{presence.mnuIgnore, "bob[afk]", "bob@"}, Step{presence.mnuIgnore, "OB", "bob@"},
          Step{presence.mnuUnignore, "BOB", "bob@"}, Step{presence.mnuUnignore, "ob", "b@"},
          Step{presence.mnuIgnore, "nikos", "b@nikos@"}, Step{presence.mnuUnignore, "[afk]", "b@nikos@"},
          Step{presence.mnuIgnore, "[Zeus]", "b@nikos@"}}) {
        presence.SelectedNick = step.nick;
        step.menu.Click.raise();
        EXPECT_EQ(maria.around.settings.GetSetting("Talvora", "Settings", "IgnoreList", ""), step.list)
            << step.nick;
    }
    EXPECT_TRUE(presence.IsIgnored("NIKOS[DND]"));
    EXPECT_TRUE(presence.IsIgnored("kos")) << "an entry ends so";
    for (const char* nick : {"nikosa", "[afk]", ""}) EXPECT_FALSE(presence.IsIgnored(nick)) << nick;
    says(world, maria, ":srv 352 Maria * u h srv NIKOS[DND] H :0 UL:Home");
    says(world, maria, ":srv 315 Maria * :End of WHO");
    const ListItems& shown = maria.window().UserList3.ListView1.ListItems;
    ASSERT_EQ(shown.Count(), 2);
    EXPECT_EQ(shown(1).Key(), "b[Offline]");
    EXPECT_EQ(shown(2).Text(), "Nikos (Do not disturb)");
    // Nobody is there to be talked to behind a row of one who is off line.
    for (const int row : {1, 2}) maria.window().UserList3.DblClick.raise(shown(row).Key());
    presence.SelectedNick = shown(1).Key();
    maria.window().popULChat.Click.raise();
    EXPECT_EQ(maria.component->Chats().Privates.Window("b[Offline]"), nullptr);
    EXPECT_NE(maria.component->Chats().Privates.Window("nikos[dnd]"), nullptr);
}

// ---- The channel panel

struct Windows : KeyPrompt, NoteBox, ChannelWindows {
    void JoinNew() override {}
    void ExecList(const std::string& list) override { told.push_back("keys " + list); }
    void Display(const std::string& text, const std::string& title, int) override {
        told.push_back(title + ": " + text);
    }
    void StartChan(const std::string& c) override { told.push_back("start " + c); }
    void RemoveChan(const std::string& c) override {
        told.push_back("remove " + c);
        if (removing) removing();
    }
    void ForgetUsers() override {}
    void NamesChan(const std::string&, const NameList&) override {}
    void JoinChan(const std::string&, const std::string&) override {}
    void PartChan(const std::string&, const std::string&) override {}
    void QuitChan(const std::string&) override {}
    void RenameChan(const std::string&, const std::string&) override {}
    void ChanDistribute(const std::string&, const std::string&, const std::string&,
                        const std::string&) override {}
    std::vector<std::string> told;
    std::function<void()> removing;
};

class ChannelPanelTest : public testing::Test {
  protected:
    ChannelPanelTest() {
        to.Keys = windows;
        to.Notes = windows;
        to.Channels = windows;
        around.disk.put("System/perflix.lst", "");
        form.State.Start("me");
        account.gServerHost = "irc.test";
        account.gServerPort = 6667;
        account.gSysChannel = "#system";
        account.gSettingsChanged = true;
        settings.Save(Section::Settings, "ChanList", "");
        form.Form_Load();
        time.settle();
        server.says(":srv 001 me :Welcome");
        time.run(4s);
        server.heard();
    }
    void says(const std::string& line) {
        server.says(line);
        time.run(50ms);
    }
    // Each row as its name, its ticks and its icon.
    std::vector<std::string> rows() {
        std::vector<std::string> all;
        for (int i = 1; i <= list.ListItems.Count(); ++i) {
            const ListItem& row = list.ListItems(i);
            all.push_back((row.Checked() ? "+" : "-") + row.Text() + " " + std::to_string(row.SmallIcon()) +
                          " " + row.SubItems(1) + " " + row.SubItems(2));
        }
        return all;
    }

    VirtualTime time;
    VirtualNetwork network{time};
    ScriptedServer& server = network.server("irc.test", 6667);
    VirtualPlatform around{time, network};
    GlobError globError{around.platform};
    ComponentSettings settings{around.settings};
    HostGate gate{settings};
    Account account;
    Random random;
    Windows windows;
    modNickDecode nicks{globError, around.files};
    modFriendsList friends{globError, around.files};
    Handovers to;
    Form1 form{{around.platform, globError, settings, gate, account, random, nicks, friends, to},
               network.CreateSocket({})};
    ChannelPanel& panel = form.Channels;
    ListView& list = panel.ListView2;
};

TEST_F(ChannelPanelTest, ShowsJoinedChannelsFirstAndFillsInTheServersList) {
    settings.Save(Section::ChanKeys, "#b", "key");
    says(":me!u@h JOIN :#b");
    says(":me!u@h JOIN :#a");
    for (const char* line :
         {":s 322 me #B 7 :About b", ":s 322 me #System 9 :", ":s 322 me #c 1 :c: topic", ":s 323 me :End"}) {
        says(line);
    }
    EXPECT_THAT(rows(), ElementsAre("+#b 7 7 About b", "+#a 6  ", "-#c 6 1 c: topic"));
    says(":s 442 me #b :not on it");
    EXPECT_THAT(rows(), ElementsAre("+#a 6  ", "-#B 7 7 About b", "-#c 6 1 c: topic"));
    EXPECT_THAT(windows.told, ElementsAre("remove #b"));
}

TEST_F(ChannelPanelTest, TickingRowsWithinFiveSecondsGivesOneNewList) {
    for (const char* line : {":me!u@h JOIN :#a", ":me!u@h JOIN :#b", ":s 322 me #c 1 :", ":s 323 me :End"})
        says(line);
    server.heard();
    list.userTicks(list.ListItems(2), false);
    time.run(3s);
    list.userTicks(list.ListItems(3), true);
    time.run(4900ms);
    EXPECT_THAT(server.heard(), IsEmpty());
    time.run(200ms);
    EXPECT_THAT(server.heard(), ElementsAre("NAMES #a", "PART #b", "JOIN #a", "JOIN #c"));
    EXPECT_EQ(settings.Get(Section::Settings, "ChanList", ""), "#a|#c|");
    says(":s 927 me #a :Already in channel");
    EXPECT_EQ(panel.Joined(), "#a|");
}

TEST_F(ChannelPanelTest, KeyRefusalsOfOneLoginBecomeOneRoundOfQuestions) {
    says(":s 475 me #red :Cannot join channel (+k)");
    time.run(4s);
    says(":s 475 me #blue :Cannot join channel (+k)");
    EXPECT_THAT(windows.told, IsEmpty());
    time.run(2s);
    EXPECT_THAT(windows.told, ElementsAre("keys #red|#blue|"));
    time.run(10s);
    EXPECT_EQ(windows.told.size(), 1U);
}

TEST_F(ChannelPanelTest, OtherRefusalsAreTold) {
    says(":s 474 me #x :banned");
    says(":s 473 me #y :invite");
    EXPECT_THAT(
        windows.told,
        ElementsAre("Join error: You cannot join channel #x because you are banned from it!",
                    "Join error: You cannot join channel #y because it accepts only users with invitation!"));
}

TEST_F(ChannelPanelTest, TheMenusAreCrossedAndADoubleClickJoins) {
    says(":me!u@h JOIN :#a");
    ListItem& row = list.ListItems(1);
    list.userSelects(row);
    panel.popChanJoin.Click.raise();
    EXPECT_FALSE(row.Checked());
    panel.popChanPart.Click.raise();
    EXPECT_TRUE(row.Checked());
    EXPECT_TRUE(panel.tmrRefreshUsers.Enabled);
    server.heard();
    list.DblClick.raise();
    EXPECT_THAT(server.heard(), ElementsAre("JOIN #a", "NAMS #a"));
    EXPECT_THAT(windows.told, ElementsAre("start #a"));
    // Neither of them, nor a tick meanwhile, parts what was joined by a double click.
    time.run(6s);
    EXPECT_THAT(server.heard(), ElementsAre("NAMES #a", "JOIN #a"));
    for (const char* line : {":s 927 me #a :Already", ":s 322 me #c 1 :", ":s 323 me :End"}) says(line);
    list.userSelects(list.ListItems(1));
    panel.popChanJoin.Click.raise();
    list.userTicks(list.ListItems(2), true);
    time.run(6s);
    EXPECT_THAT(server.heard(), ElementsAre("NAMES #a", "JOIN #a", "JOIN #c"));
    // What was left otherwise is not joined again; what is unticked by hand goes, though the server is late.
    for (const char* line : {":s 927 me #a :", ":me!u@h JOIN :#c", ":me!u@h PART #c"}) says(line);
    list.userTicks(list.ListItems(1), false);
    says(":s 927 me #a :Already");
    time.run(6s);
    EXPECT_THAT(server.heard(), ElementsAre("PART #a"));
}

TEST_F(ChannelPanelTest, AKeyIsAskedForAndClearedOnlyAfterYes) {
    says(":me!u@h JOIN :#a");
    const auto chooseKey = [&](std::optional<std::string> typed, std::optional<Answer> clear) {
        list.userSelects(list.ListItems(1));
        around.questions.willType(std::move(typed));
        if (clear) around.questions.willAnswer(*clear);
        panel.popChanKey.Click.raise();
        return settings.Get(Section::ChanKeys, "#A", "");
    };
    EXPECT_EQ(chooseKey("sesame", {}), "sesame");
    EXPECT_EQ(chooseKey(std::nullopt, Answer::No), "sesame");
    EXPECT_EQ(chooseKey("", Answer::Yes), "");
    EXPECT_THAT(around.questions.asked[0], testing::HasSubstr("to use as default for channel #a"));
}

TEST_F(ChannelPanelTest, AServerCannotMakeTheListGrowWithoutEnd) {
    panel.MostListed = 1'000;
    int redrawn = 0;
    const auto counting = list.ListItems.Cleared.connect([&] { ++redrawn; });
    for (int i = 0; i < 140; ++i) server.says(":me!u@h JOIN :#" + std::string(500, 'x') + std::to_string(i));
    time.run(2s);
    EXPECT_GT(panel.Joined().size(), 65000U);
    EXPECT_LE(panel.Joined().size(), 65536U);
    EXPECT_EQ(rows().size(), Split(panel.Joined(), "|").size() - 1);
    EXPECT_EQ(redrawn, 0) << "a channel costs its own row";
    server.says(":s 322 me #late 1 :" + std::string(200'000, 'x'));
    for (int i = 0; i < 1'100; ++i) server.says(":s 322 me #l" + std::to_string(i) + " 1 :");
    time.run(5s);
    says(":s 323 me :End");
    const auto joined = static_cast<int>(Split(panel.Joined(), "|").size() - 1);
    EXPECT_EQ(list.ListItems.Count(), joined + 1'000);
    server.closes();
    time.run(50ms);
    EXPECT_EQ(list.ListItems.Count(), joined) << "what was listed goes with the server";
}

// Against the list that is drawn anew.
TEST_F(ChannelPanelTest, AChannelThatIsJoinedOrLeftTakesItsPlaceInTheList) {
    for (int i = 0; i < 40; ++i) server.says(":s 322 me #c" + std::to_string(i * 7 % 40) + " 1 :t");
    says(":s 323 me :End");
    std::mt19937 dice(3);
    for (int step = 0; step < 400; ++step) {
        const std::string channel = (dice() % 2 == 0 ? "#c" : "#C") + std::to_string(dice() % 50);
        server.says(":me!u@h " + std::string(dice() % 3 != 0 ? "JOIN :" : "PART ") + channel);
        time.run(5ms);
        const auto shown = rows();
        if (step % 10 != 0) continue;
        for (int i = 0; i < 40; ++i) server.says(":s 322 me #c" + std::to_string(i * 7 % 40) + " 1 :t");
        says(":s 323 me :End");
        ASSERT_EQ(shown, rows()) << step << " " << channel;
    }
}

TEST_F(ChannelPanelTest, ChannelsAndUsersFollowTheServersSpelling) {
    for (const char* line :
         {":me!u@h JOIN :#Ab", ":me!u@h JOIN :#AB", ":me!u@h JOIN :#c", ":a!u@h JOIN :#AB"})
        says(line);
    EXPECT_EQ(panel.Joined(), "#AB|#c|");
    EXPECT_THAT(rows(), ElementsAre("+#AB 6  ", "+#c 6  "));
    says(":a!u@h PART #ab");
    EXPECT_EQ(form.UserList1.ListView1.ListItems.Count(), 0);
    says(":me!u@h PART #ab");
    says(":s 474 me #C :banned");
    EXPECT_EQ(panel.Joined(), "");
    says(":a!u@h JOIN :#x");
    server.closes();
    time.run(50ms);
    EXPECT_EQ(form.UserList1.ListView1.ListItems.Count(), 0) << "nobody is known to be anywhere";
}

TEST_F(ChannelPanelTest, TheEndStartsNothingAgainUnderAHandlerThatItInterrupts) {
    windows.removing = [&] { form.Unload(); };
    panel.tmrRefreshUsers.Enabled = true;
    says(":me!u@h PART #a");
    EXPECT_EQ(windows.told.size(), 1U);
    int ticks = 0;
    Subscriptions on;
    for (Timer* timer : {&panel.tmrRefreshUsers, &form.Session.tmrWHOUpdate}) {
        timer->Enabled = true;
        on += timer->Tick.connect([&] { ++ticks; });
    }
    time.run(5min);
    EXPECT_EQ(ticks, 0);
}

TEST_F(ChannelPanelTest, AFailedSaveIsReportedAndTheSessionGoesOn) {
    around.settings.FailNextSave();
    around.questions.willAnswer(Answer::Abort);
    panel.CreateChannelList("#a|");
    EXPECT_THAT(around.questions.asked, Contains(testing::HasSubstr("Function:CreateChannelList")));
    EXPECT_THAT(server.heard(), ElementsAre("JOIN #a"));
}

// ---- Verbs

struct Services : MailService, AnnouncementService, AddressResolver {
    void CheckRCVMail() override {}
    void HandleMailCmd(const std::string& text) override { told.push_back("mail " + text); }
    void CheckAnn() override {}
    void HandleAnnData(const std::string& text) override { told.push_back("news " + text); }
    bool IsResolving() const override { return resolving; }
    void ResolveIP(const std::string& address) override { told.push_back("address " + address); }
    bool resolving = false;
    std::vector<std::string> told;
};

struct Privates : PrivateWindows {
    void StartPM(const std::string& nick) override {
        if (starting) starting();
        started = nick;
    }
    void PMDistribute(const std::string&, const std::string&, const std::string&) override { ++lines; }
    void EnterPM(const std::string&) override {}
    void QuitPM(const std::string&) override {}
    void RenamePM(const std::string&, const std::string&) override {}
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
