// A message from its writing to its end, by keyboard alone.

#include <QBuffer>
#include <QLabel>
#include <QLineEdit>
#include <QPdfWriter>
#include <QTabWidget>

#include "Vocabulary.h"
#include "desktop/RichPrint.h"
#include "desktop/RichTextView.h"
#include "desktop/views/WindowsFixture.h"

namespace talvora::test {
namespace {

class MailViewsTest : public WindowsTest {
  protected:
    MailViewsTest() {
        client.around.disk.put("Mail/.keep", "");
        front(main);
    }

    // The manager of windows takes its time.
    void front(QWidget* window) {
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window, 60'000));
    }
    void key(QWidget* where, int which, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(where, static_cast<Qt::Key>(which), modifiers);
        settle();
    }
    void robot(const std::string& text) { says(":OrreryServ!o@h PRIVMSG Maria :\001MAIL " + text + "\001"); }
    void toList() {
        front(main);
        messages->setFocus();
        settle();
    }
    std::string told() {
        std::string all;
        for (const std::string& line : client.server.heard()) all += line + "\n";
        return all;
    }
    FormView* composer() {
        const auto forms = mails.Composers.Forms();
        return forms.empty() ? nullptr : viewOf(forms.back());
    }
    std::vector<std::string> column(int number) {
        const QAbstractItemModel& model = *messages->model();
        std::vector<std::string> texts;
        for (int i = 0; i < model.rowCount(); ++i)
            texts.push_back(fromQString(model.index(i, number).data().toString()));
        return texts;
    }

    MailDesk& mails = client.component->Mails();
    FormView* main = viewOf(&client.window());
    QTreeView* messages = list(main, "Messages");
};

TEST_F(MailViewsTest, WrittenSentReceivedReadAnsweredAndErasedByKeyboard) {
    key(main, Qt::Key_N, Qt::ControlModifier);
    QPointer<FormView> window = composer();
    ASSERT_FALSE(window.isNull());
    front(window);
    auto* to = named<QLineEdit>(window, "Send To");
    says(":srv 352 Maria * u h srv Nikos[DND] H :0 UL:Home");
    says(":srv 315 Maria * :End of WHO");
    QTest::keyClicks(to, "Anna; ni");
    EXPECT_THAT(mails.Composers.Forms()[0]->Suggestions.get(), ElementsAre("Nikos"));
    QWidget* popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr) << "names are offered under what is typed";
    key(popup, Qt::Key_Down);
    key(popup, Qt::Key_Return);
    EXPECT_EQ(to->text(), "Anna; Nikos");
    to->setText("Nikos");
    QTest::keyClicks(named<QLineEdit>(window, "Subject"), "Dinner");
    auto* text = named<RichTextView>(window, "Text");
    text->setFocus();
    key(text, Qt::Key_B, Qt::ControlModifier);
    QTest::keyClicks(text, "Come at eight");
    EXPECT_EQ(mails.Composers.Forms()[0]->RichTextBox1.SelBold(), true);
    settle();
    EXPECT_THAT(fromQString(window->findChildren<QLabel*>().back()->text()), HasSubstr("about 2 seconds"));

    told();
    key(text, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(window.isNull()) << "the view goes with its form";
    mails.Panel.MailBtn.userClicks(MailPanel::Outgoing);
    EXPECT_THAT(column(6), ElementsAre("Waiting for its turn"));
    robot("SENDOK");
    EXPECT_THAT(column(6), ElementsAre("Being sent"));
    robot("OK");
    EXPECT_THAT(column(6), ElementsAre("Sent, not confirmed yet"));
    robot("SENTDONE");
    EXPECT_THAT(told(), HasSubstr("MAIL SENT Nikos Come at eight"));
    EXPECT_THAT(column(6), IsEmpty());

    auto* tabs = main->findChild<QTabWidget*>();
    robot("START Nikos 14/03/2026_08:30:00 2 7 Urgent:RE: Dinner");
    robot("DUMP Gladly![#n]Is it <b>far</b>?");
    robot("DUMP http://www.example.org/");
    robot("DONE");
    EXPECT_EQ(face.unread, 1);
    EXPECT_EQ(tabs->tabText(tabs->count() - 1), "Mail (1)");
    tabs->setCurrentIndex(tabs->count() - 1);
    mails.Panel.MailBtn.userClicks(MailPanel::Incoming);
    ASSERT_THAT(column(4), ElementsAre("RE: Dinner"));
    EXPECT_THAT(column(0), ElementsAre("!")) << "urgent by more than colour";
    EXPECT_TRUE(messages->model()->index(0, 0).data(Qt::FontRole).value<QFont>().bold());

    toList();
    key(messages, Qt::Key_Down);
    key(messages, Qt::Key_Return);
    ASSERT_EQ(mails.Viewers.Forms().size(), 1u);
    QPointer<FormView> viewer = viewOf(mails.Viewers.Forms()[0]);
    EXPECT_EQ(named<QLineEdit>(viewer, "Subject")->text(), "RE: Dinner");
    EXPECT_THAT(mails.Viewers.Forms()[0]->RichTextBox1.Text(), HasSubstr("Is it <b>far</b>?http"));
    EXPECT_EQ(face.unread, 0);
    EXPECT_FALSE(messages->model()->index(0, 0).data(Qt::FontRole).value<QFont>().bold());
    EXPECT_TRUE(messages->selectionModel()->isRowSelected(0)) << "the list keeps its place";
    client.around.questions.willChoose({"/home/maria/dinner.TXT"});
    front(viewer);
    key(viewer, Qt::Key_S, Qt::ControlModifier);
    EXPECT_THAT(client.around.disk.created("/home/maria/dinner.TXT").value_or(""),
                HasSubstr("Gladly!\r\nIs it"));
    key(viewer, Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(viewer.isNull());
    ASSERT_NE(composer(), nullptr);
    EXPECT_EQ(named<QLineEdit>(composer(), "Subject")->text(), "RE: RE: Dinner");
    composer()->close();
    settle();

    client.around.questions.willAnswer(Answer::Yes);
    toList();
    key(messages, Qt::Key_Delete);
    EXPECT_THAT(column(4), IsEmpty());
    EXPECT_FALSE(client.around.disk.content("Mail/i1.qrm"));
}

TEST_F(MailViewsTest, ANoticeOpensItsMailAndTheMenusKnowTheRow) {
    robot("START Nikos 14/03/2026_08:30:00 1 7 Dinner");
    robot("DUMP Come");
    robot("DONE");
    face.openNotice(std::string("Mail\\i1.qrm"));
    settle();
    ASSERT_EQ(mails.Viewers.Forms().size(), 1u);
    EXPECT_EQ(face.unread, 0);
    auto* tabs = main->findChild<QTabWidget*>();
    tabs->setCurrentIndex(tabs->count() - 1);
    EXPECT_THAT(rightClick(messages, 0),
                ElementsAre("&View", "&Reply", "&Erase", "Erase &all", "&New message"));
    openMenu()->close();
    mails.Panel.txtFilter.Text = "nothing";
    EXPECT_THAT(rows(messages), IsEmpty());
}

// Each line is on one page, and none is lost.
TEST_F(MailViewsTest, ALongMailIsPrintedOnManyPages) {
    RichTextBox box;
    std::string text;
    for (int i = 0; i < 300; ++i) text += "Line " + std::to_string(i) + "\r\n";
    box.SetText(text);
    QBuffer paper;
    paper.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&paper);
        writer.setPageSize(QPageSize(QPageSize::A4));
        EXPECT_TRUE(printDocument(box.Document(), "Dinner", writer));
    }
    const auto pages = paper.data().count("/Type /Page\n");
    EXPECT_GE(pages, 5);
    EXPECT_LE(pages, 8);
}

}  // namespace
}  // namespace talvora::test
