// The bar of the open windows and the window of what is known of a user, in a whole client.

#include "Vocabulary.h"
#include "simulation/World.h"

namespace talvora::test {
namespace {

TEST(UserInformation, IsOneWindowWithFourQuestionsAndTakesAnybodysAnswer) {
    World world;
    Client& maria = world.loggedIn("Maria");
    const auto whois = [&](const std::string& nick, const std::string& realName) {
        maria.server.says(":srv 311 Maria " + nick + " user host * :" + realName);
        maria.server.says(":srv 317 Maria " + nick + " 7500 1773478800 :seconds idle, signon time");
        maria.server.says(":srv 318 Maria " + nick + " :End");
        world.time.run(100ms);
    };
    maria.window().Presence.SelectedNick = "Nikos[DND]";
    maria.window().popULInfo.Click.raise();
    world.time.run(3s);
    EXPECT_THAT(maria.server.heard(), Contains("WHOIS Nikos[DND]"));
    maria.server.says(":srv 401 Maria Nobody :No such nick");
    world.time.run(100ms);
    auto& slot = maria.component->Notes().Whois;
    EXPECT_EQ(slot.Get(), nullptr);

    whois("Nikos[DND]", "UL:Work.Pylea@Net1");
    frmWhois* form = slot.Get();
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->lblLocation.Caption.get() + "|" + form->lblAP.Caption.get(), "Work.Pylea|Net1");
    EXPECT_EQ(form->lblIdle.Caption.get() + "|" + form->IdleWords.Caption.get(),
              "7500 sec|2 hours 5 minutes");
    EXPECT_EQ(form->lblSignon.Caption.get() + "|" + form->SignonWords.Caption.get(),
              "1773478800 sec|14/03/2026 09:00:00");
    whois("Bob", "Bob");
    EXPECT_EQ(slot.Get(), form);
    EXPECT_EQ(form->lblLocation.Caption.get(), "(Unknown)");
    EXPECT_EQ(form->lblNick.Caption.get(), "user (Bob)");

    form->Command2.Click.raise();
    EXPECT_EQ(form->lblCtcp.Caption.get(), "Waitting for respond ...");
    world.time.run(3s);
    EXPECT_THAT(maria.server.heard(), Contains("PRIVMSG Bob :\1PING 1234567890\1"));
    maria.server.says(":Eve!e@h NOTICE Maria :\1PING 9\1");
    world.time.run(100ms);
    EXPECT_EQ(form->lblCtcp.Caption.get(), "3 sec");
    EXPECT_FALSE(form->tmrPing.Enabled);
    form->Command1.Click.raise();
    EXPECT_EQ(slot.Get(), nullptr);
}

TEST(Bar, SlidesOutForAPointerThatRestsInTheCornerAndShowsNewsByItself) {
    World world;
    Client& maria = world.loggedIn("Maria");
    VirtualScreen& screen = maria.around.screen;
    frmPopup& bar = *maria.component->Notes().Popup.Get();
    world.time.run(1s);
    const int asked = screen.pointer.asked;
    for (int i = 0; i < 20; ++i) {
        screen.pointer.goes(400 + i, 300);
        world.time.run(100ms);
    }
    EXPECT_EQ(screen.pointer.asked, asked);  // nobody looks at a pointer in the middle of the screen
    EXPECT_EQ(bar.Top, -bar.Height);

    const int shown = screen.topMost;
    screen.pointer.goes(1000, 2);
    world.time.run(300ms);
    screen.pointer.goes(1000, 200);
    world.time.run(1s);
    EXPECT_EQ(screen.topMost, shown);  // it only crossed the corner

    maria.server.says(":Nikos!n@h PRIVMSG Maria :hello");
    maria.server.says(":Anna!a@h PRIVMSG Maria :are you there");
    world.time.run(200ms);
    EXPECT_EQ(bar.Wins(0).Visible.get(), false);
    EXPECT_EQ(bar.WinNotice(1).Caption.get(), "Chat - Anna : are you there");
    EXPECT_EQ(bar.Top + bar.Height, bar.Picture2.Height);

    screen.pointer.goes(1000, 0);
    world.time.run(2s);
    EXPECT_TRUE(bar.BarOut);
    EXPECT_EQ(bar.Top, 0);
    bar.WinNotice(1).Label2_MouseMove();
    bar.WinNotice(0).Label2_MouseMove();
    EXPECT_FALSE(bar.WinNotice(1).Hovering);
    EXPECT_EQ(bar.HotNotice, 0);
    bar.WinNotice(0).Click.raise();
    EXPECT_EQ(screen.ForegroundWindow(), maria.component->Chats().Privates.Window("Nikos"));
    world.time.run(3s);
    EXPECT_EQ(bar.Wins(0).Tag, "0");  // it has been read
    EXPECT_EQ(bar.WinNotice(0).Tag, "1");
    screen.pointer.goes(300, 300);
    world.time.run(1s);
    EXPECT_FALSE(bar.BarOut);
    EXPECT_EQ(bar.HotNotice, frmPopup::NoButton);
}

}  // namespace
}  // namespace talvora::test
