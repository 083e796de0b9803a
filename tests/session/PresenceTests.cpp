// The user's state, and whom he ignores.

#include "session/OnLine.h"

namespace talvora::test {
namespace {

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

TEST_F(OnLine, TheStateIsWhatTheNickSaysWhoeverHasPutItThere) {
    says(":Maria!u@h NICK :Guest[dnd]");
    EXPECT_EQ(stateOf(maria), "Guest[dnd] Dnd 5 busy");
    EXPECT_EQ(maria.window().State.gNickname(), "Guest");
    maria.window().State.Ask("Anna");
    EXPECT_EQ(stateOf(maria), "Guest[dnd] Dnd 5 busy") << "the server decides";
    says(":Guest[dnd]!u@h NICK :Anna");
    EXPECT_EQ(stateOf(maria), "Anna Online 3");
    // Of two choices in a row the last one stands, whichever is answered first.
    for (const int state : {2, 1}) maria.window().Presence.popStat(state).Click.raise();
    says(":Anna!u@h NICK :Anna[away]");
    EXPECT_EQ(stateOf(maria), "Anna[away] Dnd 5 busy");
    says(":Anna[away]!u@h NICK :Anna[DND]");
    maria.window().Presence.popOnline.Click.raise();
    EXPECT_FALSE(maria.window().Presence.DoNotDisturb());
    says(":srv 433 Anna[DND] Anna :Nickname is already in use");
    EXPECT_TRUE(maria.window().Presence.DoNotDisturb()) << "refused: the others still see it";
}

TEST(Presence, ABadTableOfStatesCostsAReportAndTheMenuStaysBounded) {
    World world;
    Client& maria = world.client("Maria");
    std::string table = "broken line\r\n";
    for (int i = 0; i < 60; ++i) table += "S" + std::to_string(i) + "|State|3\r\n";
    maria.around.disk.put("System/perflix.lst", table);
    maria.around.questions.answerFaults(Answer::Ignore);
    maria.host.send(HostMsg::Start);
    PresencePanel& presence = maria.window().Presence;
    EXPECT_EQ(presence.popStat.UBound(), 50);
    EXPECT_EQ(presence.popStat(1).Tag.get(), "3|S0");
    maria.around.disk.remove("System/perflix.lst");
    maria.host.send(HostMsg::ApplySettings);
    EXPECT_EQ(presence.popStat.UBound(), 0);
    EXPECT_FALSE(presence.popStat(0).Visible) << "no template in the menu";
}

TEST_F(OnLine, TheIgnoreListIsPlainText) {
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
    says(":srv 352 Maria * u h srv NIKOS[DND] H :0 UL:Home");
    says(":srv 315 Maria * :End of WHO");
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

}  // namespace
}  // namespace talvora::test
