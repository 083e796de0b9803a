// What a person does with the windows, and what comes of it.

#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QPointer>

#include "Vocabulary.h"
#include "common/HostMessageNumbers.h"
#include "desktop/RichTextView.h"
#include "desktop/Theme.h"
#include "desktop/views/WindowsFixture.h"

namespace talvora::test {
namespace {

TEST(WindowsOfTheStart, WaitUntilTheLogOnIsUnderWay) {
    DesktopWorld desktop;
    desktop.client.host.send(HostMsg::Start);
    desktop.world.time.settle();
    EXPECT_THAT(desktop.face.windows, IsEmpty());
    desktop.chats().Channels.StartChan("#thes");
    FormView* main = desktop.viewOf(&desktop.client.window());
    ASSERT_NE(main, nullptr) << "it goes ahead of any other window";
    EXPECT_FALSE(main->isVisible());
}

TEST_F(WindowsTest, TalkInAChannel) {
    FormView* main = viewOf(&client.window());
    ASSERT_NE(main, nullptr);
    EXPECT_TRUE(main->isVisible());
    says(":Maria!m@h JOIN :#thes");
    ASSERT_THAT(rows(list(main, "Channels")), ElementsAre("#thes"));
    doubleClick(list(main, "Channels"), 0);
    frmChanChat* channel = chats().Channels.Window("#thes");
    ASSERT_NE(channel, nullptr);
    QPointer<FormView> window = viewOf(channel);
    ASSERT_FALSE(window.isNull());
    EXPECT_EQ(window->windowTitle(), "Channel - #Thes");

    says(":srv 353 Maria = #thes :@zoe Nikos[DND] Maria anna");
    says(":srv 366 Maria #thes :End");
    EXPECT_THAT(rows(list(window, "Users of the channel")),
                ElementsAre("Anna (Online)", "Maria (Online)", "Nikos (Do not disturb)", "Zoe (Online)"))
        << "by name, whatever order the server has";

    client.server.heard();
    type(window, "hello <all> & {every}one");
    press(window, Qt::Key_Return);
    EXPECT_THAT(client.server.heard(), Contains(HasSubstr("PRIVMSG #Thes :hello <all> & {every}one")));
    EXPECT_THAT(channel->IRCWin1.RichTextBox1.Text(), HasSubstr("<Maria> hello <all>"));
    EXPECT_TRUE(named<WritingBox>(window, "Message")->toPlainText().isEmpty());
    type(window, "waves");
    press(window, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_THAT(client.server.heard(), Contains(HasSubstr("\001ACTION waves\001")));

    // The close box hides the window; the list of windows brings it back.
    window->close();
    settle();
    EXPECT_FALSE(window->isVisible());
    says(":zoe!z@h PRIVMSG #thes :are you there?");
    EXPECT_TRUE(window->isVisible()) << "the channel shows on incoming messages";
    QTreeView* windows = list(main, "Open windows");
    EXPECT_TRUE(windows->model()->index(0, 0).data(Qt::FontRole).value<QFont>().bold()) << "there is news";
    window->close();
    doubleClick(windows, 0);
    EXPECT_TRUE(window->isVisible());

    EXPECT_THAT(rightClick(list(window, "Users of the channel"), 3),
                ElementsAre("Start Private &Chat", "&Info", "Send &file", "(No commands)"));
    choose("Start Private &Chat");
    EXPECT_NE(viewOf(chats().Privates.Window("zoe")), nullptr);

    QTest::mouseClick(named<QAbstractButton>(window, "Settings of this window"), Qt::LeftButton);
    choose("&Part channel");
    EXPECT_TRUE(window.isNull()) << "the view goes with its form";
    EXPECT_EQ(chats().Channels.Window("#thes"), nullptr);
}

TEST_F(WindowsTest, TalkInPrivate) {
    says(":Nikos!n@h PRIVMSG Maria :\xE3\xE5\xE9\xE1 <b>x</b>");
    frmPM* chat = chats().Privates.Window("Nikos");
    ASSERT_NE(chat, nullptr);
    FormView* window = viewOf(chat);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->testAttribute(Qt::WA_ShowWithoutActivating)) << "it came by itself";

    client.server.heard();
    QApplication::clipboard()->setText(QStringLiteral("one\n two \r\n\nthree"));
    named<WritingBox>(window, "Message")->paste();
    settle();
    EXPECT_THAT(client.server.heard(),
                ElementsAre("PRIVMSG Nikos :one", "PRIVMSG Nikos :two", "PRIVMSG Nikos :three"));
    named<WritingBox>(window, "Message")->insertPlainText(QString::fromUtf8("snow \xE2\x98\x83"));
    EXPECT_EQ(fromQString(named<WritingBox>(window, "Message")->toPlainText()), chat->Text1.Text.get())
        << "what will be sent is what is seen";
    press(window, Qt::Key_Return);

    // The checks of the menu are the model's.
    QTest::mouseClick(named<QAbstractButton>(window, "Settings of this window"), Qt::LeftButton);
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_TRUE(openMenu()->actions().at(2)->isChecked());
    choose("Timestamp");
    EXPECT_FALSE(chat->IRCWin1.TimeStamp);

    // Without hiding, the close box asks, and ends the window with its view.
    QCheckBox* hide = viewOf(&client.window())->findChild<QCheckBox*>();
    EXPECT_EQ(hide->text(), "Hide inactive windows");
    hide->click();
    client.around.questions.willAnswer(Answer::No);
    const QPointer<FormView> gone(window);
    window->close();
    settle();
    EXPECT_TRUE(gone.isNull());
}

TEST_F(WindowsTest, StateAndIgnoredUsers) {
    FormView* main = viewOf(&client.window());
    QTest::mouseClick(named<QAbstractButton>(main, "Change your state"), Qt::LeftButton);
    ASSERT_NE(openMenu(), nullptr);
    client.server.heard();
    choose("Do not disturb");
    EXPECT_THAT(client.server.heard(), Contains("NICK Maria[DND]"));
    EXPECT_NE(named<QAbstractButton>(main, "Your state: Dnd"), nullptr);
    says(":Maria!m@h NICK :Maria[DND]");
    EXPECT_THAT(client.window().Presence.lblNick.Caption.get(), "Maria[DND]");

    says(":Maria!m@h JOIN :#thes");
    says(":srv 353 Maria = #thes :bore");
    says(":srv 366 Maria #thes :End");
    named<QWidget>(main, "Users")->window();
    EXPECT_THAT(rightClick(list(main, "Users"), 0),
                AllOf(Contains("&Ignore"), Not(Contains("&Stop ignoring"))));
    choose("&Ignore");
    EXPECT_THAT(rows(list(main, "Ignored")), ElementsAre(HasSubstr("Bore")));
    EXPECT_THAT(rightClick(list(main, "Ignored"), 0),
                AllOf(Contains("&Stop ignoring"), Not(Contains("&Ignore"))));
    choose("&Stop ignoring");
    EXPECT_THAT(rows(list(main, "Ignored")), IsEmpty());
}

TEST_F(WindowsTest, TheMainWindowIsNeverLost) {
    FormView* main = viewOf(&client.window());
    main->close();
    EXPECT_FALSE(main->isVisible());
    client.host.send(HostMsg::ShowWindow, 1);
    settle();
    EXPECT_TRUE(main->isVisible());
    face.hasTray = false;
    main->close();
    EXPECT_TRUE(main->isMinimized());
    EXPECT_EQ(face.toldOfMinimizing, 1);
    EXPECT_TRUE(client.window().Visible);
    EXPECT_TRUE(face.onLine);
    client.server.closes();
    settle();
    EXPECT_FALSE(face.onLine);
    main->showNormal();
    QTest::mouseClick(named<QAbstractButton>(main, "Menu"), Qt::LeftButton);
    choose("&Settings...");
    EXPECT_EQ(face.settingsShown, 1);
    QTest::mouseClick(named<QAbstractButton>(main, "Menu"), Qt::LeftButton);
    choose("&Quit");
    EXPECT_EQ(face.quits, 1);
}

TEST_F(WindowsTest, ANoticeOpensItsWindow) {
    says(":Nikos!n@h PRIVMSG Maria :hi");
    FormView* window = viewOf(chats().Privates.Window("Nikos"));
    window->close();
    settle();
    face.openNotice(HostValue("nikos"));
    EXPECT_TRUE(window->isVisible());
    face.openNotice(HostValue("nobody"));
    face.openNotice(HostValue(7));
}

TEST_F(WindowsTest, StrangersDoNotShapeThem) {
    FormView* main = viewOf(&client.window());
    const int width = main->width();
    says(":Maria!m@h JOIN :#thes");
    says(":op!o@h KICK #thes Maria :" + std::string(400, 'W'));
    says(":srv 266 Maria :Current global users: " + std::string(400, '9'));
    EXPECT_FALSE(client.window().Trouble.lblTrouble.Caption.get().empty());
    EXPECT_EQ(main->width(), width);
    EXPECT_LE(main->minimumSizeHint().width(), width);

    says(
        ":a[*]\x1F"
        "b!n@h PRIVMSG Maria :hi");
    FormView* chat =
        viewOf(chats().Privates.Window("a[*]\x1F"
                                       "b"));
    ASSERT_NE(chat, nullptr);
    EXPECT_EQ(chat->windowTitle(), "Chat - A[*][*] b");
    for (const QString& tip : {QStringLiteral("<img src=x>"), QString(5000, QLatin1Char('x'))}) {
        EXPECT_FALSE(Qt::mightBeRichText(theme::plainToolTip(tip)) &&
                     theme::plainToolTip(tip).contains(u"<img"));
        EXPECT_LE(theme::plainToolTip(tip).size(), 400);
    }
}

TEST_F(WindowsTest, EveryButtonHasANameAndZoomIsRemembered) {
    says(":Nikos!n@h PRIVMSG Maria :hi");
    says(":Maria!m@h JOIN :#thes");
    chats().Channels.StartChan("#thes");
    chats().ChanKey.Load().JoinNew();
    chats().MsgBox.Load().Display("text", "title", 1);
    settle();
    QTest::mouseClick(named<QAbstractButton>(viewOf(chats().Privates.Window("Nikos")), "Emoticons"),
                      Qt::LeftButton);
    settle();
    for (const auto& [form, window] : face.windows) {
        for (const QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
            if (!button->isVisible() || button->objectName().startsWith(QLatin1String("qt_"))) continue;
            EXPECT_FALSE(button->text().isEmpty() && button->accessibleName().isEmpty())
                << "a button in " << window->windowTitle().toStdString();
        }
    }
    auto* talk = named<RichTextView>(viewOf(chats().Privates.Window("Nikos")), "Conversation");
    QTest::keyClick(viewOf(chats().Privates.Window("Nikos")), Qt::Key_Plus, Qt::ControlModifier);
    talk->setZoom(1.5);
    says(":Zoe!z@h PRIVMSG Maria :hi");
    EXPECT_EQ(named<RichTextView>(viewOf(chats().Privates.Window("Zoe")), "Conversation")->Zoom(), 1.5);
    QTest::mouseClick(named<QWidget>(viewOf(chats().Picker.Get()), "(sun)"), Qt::LeftButton);
    EXPECT_EQ(chats().Privates.Window("Nikos")->Text1.Text.get(), "(sun)");
}

}  // namespace
}  // namespace talvora::test
