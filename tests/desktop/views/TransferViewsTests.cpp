// Files between two users with the windows of one of them, by mouse and by keyboard.

#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QUrl>

#include "Vocabulary.h"
#include "desktop/views/WindowsFixture.h"

namespace talvora::test {
namespace {

class TransferViews : public WindowsTest {
  protected:
    TransferViews() {
        for (Client* one : {&client, &bob}) one->around.disk.put("Received/old.txt", "");
        says(":Maria!m@h JOIN :#room");
        says(":srv 353 Maria = #room :Maria Bob[AWAY] Eleni");
        says(":srv 366 Maria #room :End");
        chats().Channels.StartChan("#room");
        settle();
        client.server.heard();
    }

    static QPoint centreOf(QTreeView* view, int row) {
        return view->visualRect(view->model()->index(row, 0)).center();
    }
    // Drags files onto a widget and lets them go; whether they would be taken there.
    bool drop(QWidget* target, QPoint at, const std::vector<std::string>& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const std::string& path : paths) urls << QUrl::fromLocalFile(QString::fromStdString(path));
        data.setUrls(urls);
        QDragEnterEvent enters(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(target, &enters);
        QDragMoveEvent moves(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(target, &moves);
        QDropEvent falls(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(target, &falls);
        settle();
        return moves.isAccepted();
    }
    static void key(QWidget* window, Qt::Key code, Qt::KeyboardModifiers modifiers) {
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
        QTest::keyClick(window, code, modifiers);
        QTest::qWait(200);  // a button that its keys press is seen to go down
    }
    static bool says(QWidget* window, const char* what) {
        const auto labels = window->findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* label) {
            return label->isVisible() && label->text().contains(QString::fromUtf8(what));
        });
    }
    using DesktopWorld::says;
    // Bob offers Maria a file of that name and size.
    frmReceiveFile& offeredByBob(const std::string& name, std::size_t size) {
        const std::string path = "/home/bob/" + name;
        bob.around.disk.picked[path] = std::string(size, 'b');
        TransferDesk& his = bob.component->Transfers();
        his.Offers().SendData("address-of-Maria", "", false, false);
        his.Dialog.Get()->AddFiles({path});
        his.Dialog.Get()->Command4.Click.raise();
        settle();
        return *desk().Receiver.Get();
    }
    TransferDesk& desk() { return client.component->Transfers(); }

    Client& bob = world.loggedIn("Bob");
};

TEST_F(TransferViews, FilesDroppedOnAUserOfTheTreeAreForThatUser) {
    client.around.disk.picked["/home/maria/a.txt"] = "a";
    client.server.says(":srv 352 Maria * u h srv Eleni H :0 UL:Athens.Plaka");
    says(":srv 315 Maria * :End");
    FormView* main = viewOf(&client.window());
    main->findChild<QTabWidget*>()->setCurrentIndex(1);
    QTreeView* tree = list(main, "Users on line");
    tree->expandAll();
    const auto found = tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, "Eleni", 1,
                                            Qt::MatchStartsWith | Qt::MatchRecursive);
    ASSERT_EQ(found.size(), 1);
    const QPoint place = tree->visualRect(found[0].parent()).center();
    EXPECT_FALSE(drop(tree->viewport(), place, {"/home/maria/a.txt"}));
    EXPECT_EQ(desk().Dialog.Get(), nullptr);
    EXPECT_TRUE(drop(tree->viewport(), tree->visualRect(found[0]).center(), {"/home/maria/a.txt"}));
    EXPECT_THAT(client.server.heard(), ElementsAre("PRIVMSG Eleni :\001WIP\001"));
}

TEST_F(TransferViews, FilesDroppedOnANickAreSentAndTheHistorySaysSo) {
    client.around.disk.picked["/home/maria/a.txt"] = std::string(2048, 'a');
    client.around.disk.picked["/home/maria/b.txt"] = std::string(1024, 'b');
    FormView* main = viewOf(&client.window());
    main->findChild<QTabWidget*>()->setCurrentIndex(1);
    QTreeView* users = list(main, "Users");
    ASSERT_THAT(rows(users), ElementsAre("Bob (Away)", "Eleni (Online)", "Maria (Online)"));
    EXPECT_FALSE(drop(users->viewport(), {5, users->viewport()->height() - 3}, {"/home/maria/a.txt"}));
    ASSERT_EQ(desk().Dialog.Get(), nullptr) << "nobody is there";
    EXPECT_TRUE(drop(users->viewport(), centreOf(users, 0), {"/home/maria/a.txt", "/home/maria/b.txt"}));
    EXPECT_THAT(client.server.heard(), ElementsAre("PRIVMSG Bob[AWAY] :\001WIP\001"));

    FormView* dialog = viewOf(desk().Dialog.Get());
    ASSERT_TRUE(dialog != nullptr && dialog->isVisible());
    EXPECT_EQ(named<QListWidget>(dialog, "Send file list")->count(), 2);
    EXPECT_FALSE(named<QComboBox>(dialog, "IP / Host name")->isEnabled());
    says(":Bob[AWAY]!b@h PRIVMSG Maria :\001GIP address-of-Bob\001");
    EXPECT_TRUE(named<QComboBox>(dialog, "IP / Host name")->isEnabled());
    key(dialog, Qt::Key_Return, Qt::ControlModifier);
    settle();
    FormView* status = viewOf(desk().Status.Get());
    ASSERT_TRUE(status != nullptr && status->isVisible());
    EXPECT_EQ(bob.around.disk.content("Received/a.txt"), std::nullopt) << "he has not accepted yet";

    world.network.delay = 400'000;
    bob.component->Transfers().Receiver.Get()->Command2.Click.raise();
    for (int i = 0; i < 3; ++i) settle();
    QTest::qWait(50);
    EXPECT_TRUE(says(status, "a.txt"));
    EXPECT_TRUE(says(status, "File 1 of 2"));
    EXPECT_GT(named<QProgressBar>(status, "This file:")->value(), 0);
    EXPECT_THAT(face.progress, ElementsAre(testing::Pair(desk().Status.Get(), testing::Gt(0.0))));
    world.time.run(std::chrono::seconds(20));
    settle();
    EXPECT_EQ(bob.around.disk.content("Received/a.txt"), std::string(2048, 'a'));
    EXPECT_EQ(bob.around.disk.content("Received/b.txt"), std::string(1024, 'b'));
    EXPECT_TRUE(face.progress.empty());

    client.window().mnuTransfers.Click.raise();
    settle();
    QTreeView* history = list(viewOf(desk().Transfers.Get()), "File transfers");
    EXPECT_THAT(rows(history), ElementsAre("b.txt", "a.txt"));
    EXPECT_EQ(history->model()->index(0, 1).data().toString(), "to Bob[AWAY]");
    EXPECT_EQ(history->model()->index(0, 2).data().toString(), "Sent");
}

TEST_F(TransferViews, AnOfferIsAcceptedOpenedAndAbortedByKeyboard) {
    frmReceiveFile& form = offeredByBob("tune.ogg", 3000);
    FormView* window = viewOf(&form);
    ASSERT_TRUE(window->isVisible());
    EXPECT_TRUE(says(window, "User Bob is sending you 1 file(s)"));
    EXPECT_TRUE(says(window, "It comes from the address 127.0.0.1."));
    for (const Qt::Key typed : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Escape}) key(window, typed, {});
    settle();
    ASSERT_TRUE(form.Picture1.Visible) << "what the user was just typing answers nothing";
    key(window, Qt::Key_C, Qt::AltModifier);
    settle();
    EXPECT_EQ(client.around.disk.content("Received/tune.ogg"), std::string(3000, 'b') + std::string(72, ' '));
    EXPECT_FALSE(window->isVisible());
    face.openNotice(HostValue(std::string(frmReceiveFile::Folder)));
    settle();
    FormView* history = viewOf(desk().Transfers.Get());
    QTreeView* files = list(history, "File transfers");
    client.around.questions.willAnswer(Answer::Yes);
    doubleClick(files, 0);
    EXPECT_THAT(client.around.screen.opened, ElementsAre(HasSubstr("tune.ogg")));

    // The next one is too long for her; of it nothing is left but a row.
    world.network.delay = 10'000;
    offeredByBob("film.avi", 900'000);
    key(window, Qt::Key_C, Qt::AltModifier);
    for (int i = 0; i < 3; ++i) settle();
    ASSERT_TRUE(client.around.disk.content("Received/film.avi").has_value());
    EXPECT_THAT(rows(list(history, "File transfers")), ElementsAre("tune.ogg"));
    bob.around.questions.willAnswer(Answer::Ok);
    key(window, Qt::Key_A, Qt::AltModifier);
    world.time.run(std::chrono::seconds(6));
    settle();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(client.around.disk.content("Received/film.avi"), std::nullopt);
    EXPECT_THAT(rows(list(history, "File transfers")), ElementsAre("film.avi", "tune.ogg"));
    EXPECT_TRUE(face.progress.empty());
}

}  // namespace
}  // namespace talvora::test
