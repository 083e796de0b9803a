// What a person does with announcements, and what comes of it.

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "Vocabulary.h"
#include "desktop/LinkNote.h"
#include "desktop/views/AnnouncementPanel.h"
#include "desktop/views/WindowsFixture.h"

namespace talvora::test {
namespace {

class AnnouncementViews : public WindowsTest {
  protected:
    void posted(int number, const char* who, int hours, int category, const char* text) {
        says(":OrreryServ!o@h PRIVMSG Maria :\001ANN ANN " + std::to_string(number) + " " + who + " " +
             std::to_string(hours) + " 14/03/2026_09:00:00 " + std::to_string(category) + " " + text +
             "\001");
    }
    static std::string text(QWidget* window, const char* name) {
        return fromQString(named<LinkNote>(window, name)->toPlainText());
    }
    static void press(QWidget* window, const char* caption) {
        for (auto* button : window->findChildren<QPushButton*>())
            if (button->text() == QString::fromUtf8(caption)) return button->click();
        ADD_FAILURE() << "no button says " << caption;
    }
    AnnounceDesk& desk() { return client.component->Announcements(); }
};

TEST_F(AnnouncementViews, AreReadSortedFilteredAndTheirLinksOpenedAfterAQuestion) {
    posted(1, "Anna", 100, 0, "Look: http://a.example/b[#n]not this");
    posted(2, "Nikos", 20, 1, "<b>urgent</b>");
    posted(3, "Eleni", 3, 6, "Who?");
    AnnouncementPanel panel(desk().Panel, client.around.platform, nullptr);
    EXPECT_EQ(text(&panel, "Last announcement"), "Who?");
    press(&panel, "Announcement Viewer");
    settle();
    FormView* window = viewOf(desk().Viewer.Get());
    QTreeView* view = list(window, "Announcements");
    ASSERT_TRUE(window->isVisible());
    EXPECT_THAT(rows(view), ElementsAre("Anna", "Nikos", "Eleni"));
    const auto icon = [&](int row) {
        return view->model()->index(row, 0).data(Qt::DecorationRole).value<QIcon>().pixmap(16).toImage();
    };
    EXPECT_NE(icon(0), icon(1)) << "categories are told apart";
    QHeaderView* heads = view->header();
    const int left = static_cast<int>(frmAnnouncements::WordsColumn);
    const QPoint head(heads->sectionViewportPosition(left) + 5, 5);
    QTest::mouseClick(heads->viewport(), Qt::LeftButton, {}, head);
    QTest::mouseClick(heads->viewport(), Qt::LeftButton, {}, head);
    EXPECT_THAT(rows(view), ElementsAre("Eleni", "Nikos", "Anna")) << "hours and days in order of time";

    named<QLineEdit>(window, "Filter")->setText("LOOK");
    EXPECT_THAT(rows(view), ElementsAre("Anna"));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      view->visualRect(view->model()->index(0, 0)).center());
    settle();
    auto* note = named<LinkNote>(window, "Text of the announcement");
    EXPECT_EQ(text(window, "Text of the announcement"), "Look: http://a.example/b\nnot this");
    client.around.questions.willAnswer(Answer::Yes);
    QTextCursor link(note->document());
    link.setPosition(10);
    QTest::mouseClick(note->viewport(), Qt::LeftButton, {}, note->cursorRect(link).center());
    EXPECT_THAT(client.around.screen.opened, ElementsAre("http://a.example/b"));

    // One that comes in while the window is open is there at once, in its place.
    named<QLineEdit>(window, "Filter")->clear();
    posted(4, "Zoe", 10, 7, "New");
    EXPECT_THAT(rows(view), ElementsAre("Eleni", "Zoe", "Nikos", "Anna"));
    EXPECT_EQ(text(&panel, "Last announcement"), "New");
}

TEST_F(AnnouncementViews, TheComposerSaysBeforehandWhatFits) {
    AnnouncementPanel panel(desk().Panel, client.around.platform, nullptr);
    press(&panel, "Post an announcement");
    settle();
    frmAnnounce* form = desk().Composer.Get();
    FormView* window = viewOf(form);
    auto* box = named<QPlainTextEdit>(window, "Text");
    const auto says = [&](const char* what) {
        const auto labels = window->findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [&](const QLabel* l) { return l->text().contains(QString::fromUtf8(what)); });
    };
    named<QComboBox>(window, "Category")->setCurrentIndex(Category::Moderator);
    EXPECT_TRUE(says("168 hours, which are 7 days"));
    QTest::keyClicks(named<QLineEdit>(window, "Expires in hours"), "24");
    box->setPlainText(QString(500, 'x'));
    EXPECT_TRUE(says("bytes too long for one line"));
    box->clear();
    box->setFocus();
    QTest::keyClicks(box, "One");
    QTest::keyClick(box, Qt::Key_Return);
    QTest::keyClicks(box, "two");
    EXPECT_TRUE(says("bytes left"));
    ASSERT_FALSE(form->IsUnloaded()) << "Return is a new line of the text";
    client.server.heard();
    press(window, "Post");
    settle();
    EXPECT_THAT(client.server.heard(), Contains(HasSubstr("\001ANN POST 24 2 One[#n]two\001")));
    EXPECT_EQ(desk().Composer.Get(), nullptr);
}

}  // namespace
}  // namespace talvora::test
