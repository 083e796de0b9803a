// What a person does with encryption and scripts, and what comes of it.

#include <QCompleter>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

#include "Vocabulary.h"
#include "desktop/views/WindowsFixture.h"

namespace talvora::test {
namespace {

class SecretViews : public WindowsTest {
  protected:
    FormView* chat() {
        says(":Nikos!n@h PRIVMSG Maria :hi");
        return viewOf(chats().Privates.Window("Nikos"));
    }
    static QAbstractButton* button(QWidget* window, const char* caption) {
        for (auto* one : window->findChildren<QAbstractButton*>())
            if (one->text() == QString::fromUtf8(caption)) return one;
        ADD_FAILURE() << "no button says " << caption;
        return nullptr;
    }
    static bool shows(QWidget* window, const char* what) {
        const auto labels = window->findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* label) {
            return label->isVisible() && label->text().contains(QString::fromUtf8(what));
        });
    }
    void put(const char* file, const std::string& text) { client.around.disk.put(file, text); }
};

TEST_F(SecretViews, AKeyIsTypedAndWhileItIsUsedTheTitleSaysSo) {
    put("System/plugin.lst", "<SYS>.plg_Encrypt T F 0 0 Encryption\r\n");
    chats().Plugins.ReloadPlugins();
    FormView* window = chat();
    button(window, "Encryption")->click();
    settle();
    EXPECT_TRUE(shows(window, "not an expert"));
    auto* key = named<QLineEdit>(window, "Encryption key");
    EXPECT_FALSE(button(window, "Enable Encryption")->isVisible()) << "there is no key";
    QTest::keyClicks(key, "our secret");
    EXPECT_EQ(key->echoMode(), QLineEdit::Password);
    button(window, "Show key")->click();
    EXPECT_EQ(key->echoMode(), QLineEdit::Normal);
    button(window, "Hide key")->click();
    EXPECT_EQ(key->echoMode(), QLineEdit::Password);
    key->setText(QString(256, 'k'));
    EXPECT_EQ(key->text(), "our secret");
    EXPECT_TRUE(shows(window, "at most 255"));

    const auto icon = [&] { return window->windowIcon().pixmap(16).toImage(); };
    const QImage open = icon();
    button(window, "Enable Encryption")->click();
    EXPECT_EQ(window->windowTitle(), "Encrypted: Chat - Nikos");
    EXPECT_NE(icon(), open);
    EXPECT_FALSE(key->isEnabled());
    client.server.heard();
    type(window, "at nine");
    press(window, Qt::Key_Return);
    EXPECT_THAT(client.server.heard(), ElementsAre(HasSubstr("PRIVMSG Nikos :\001PM ^")));
    button(window, "Disable Encryption")->click();
    EXPECT_EQ(window->windowTitle(), "Chat - Nikos");
    EXPECT_EQ(icon(), open);
}

TEST_F(SecretViews, ScriptsAreWrittenOfferedAndRun) {
    client.window().mnuScripts.Click.raise();
    settle();
    FormView* window = viewOf(chats().Scripts.Get());
    button(window, "Add")->click();
    auto* name = named<QLineEdit>(window, "Name");
    name->setText("say it");
    EXPECT_TRUE(shows(window, "A command is one word"));
    name->setText("greet");
    EXPECT_FALSE(shows(window, "A command is one word"));
    EXPECT_EQ(named<QListWidget>(window, "Entries")->item(0)->text(), "greet");
    named<QPlainTextEdit>(window, "Server commands")->setPlainText("PRIVMSG  #all :hello\nECHO said");
    QTest::mouseClick(named<QTabBar>(window, "Where the scripts are run"), Qt::LeftButton, {},
                      named<QTabBar>(window, "Where the scripts are run")->tabRect(2).center());
    button(window, "Add")->click();
    name->setText("Wave");
    named<QPlainTextEdit>(window, "Server commands")->setPlainText("PRIVMSG  %1 :o/");
    button(window, "&OK")->click();
    settle();
    EXPECT_EQ(chats().Scripts.Get(), nullptr);

    window = chat();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window, 60'000));
    auto* box = named<WritingBox>(window, "Message");
    box->setFocus();
    QTest::keyClicks(box, "\\gr");
    QWidget* offers = QApplication::activePopupWidget();
    ASSERT_NE(offers, nullptr) << "what could be meant is offered";
    QTest::keyClick(offers, Qt::Key_Down);
    client.server.heard();
    QTest::keyClick(offers, Qt::Key_Return);
    EXPECT_EQ(box->toPlainText(), "\\greet ");
    EXPECT_THAT(client.server.heard(), IsEmpty()) << "it is only chosen";
    press(window, Qt::Key_Return);
    EXPECT_THAT(client.server.heard(), ElementsAre("PRIVMSG #all :hello"));
    // Whoever doesn't walk into the list has what he typed sent.
    type(window, "\\gr");
    press(window, Qt::Key_Return);
    EXPECT_TRUE(box->toPlainText().isEmpty());
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);

    QTest::mouseClick(named<QAbstractButton>(window, "Settings of this window"), Qt::LeftButton);
    ASSERT_NE(openMenu(), nullptr);
    client.server.heard();
    for (const QAction* entry : openMenu()->actions())
        if (entry->menu() != nullptr) entry->menu()->actions().at(0)->trigger();
    openMenu()->close();
    settle();
    EXPECT_THAT(client.server.heard(), ElementsAre("PRIVMSG Nikos :o/"));
}

}  // namespace
}  // namespace talvora::test
