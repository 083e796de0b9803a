// Questions on the screen, answered by keyboard and by the close box.

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFontDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "desktop/FontDialog.h"
#include "desktop/QtQuestions.h"
#include "desktop/QuestionBox.h"

namespace talvora::test {

namespace {

using Strings = std::vector<std::string>;

// The boxes on the screen, the oldest first.
std::vector<QuestionBox*> boxes() {
    std::vector<QuestionBox*> found;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* box = dynamic_cast<QuestionBox*>(window);
        if (box != nullptr && box->isVisible()) found.push_back(box);
    }
    return found;
}
QuestionBox& box() {
    return *boxes().at(0);
}

void press(int key, const QString& text = {}) {
    QWidget* target = box().focusWidget() != nullptr ? box().focusWidget() : &box();
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QApplication::sendEvent(target, &event);
    }
}

// What is done as soon as a box stands.
void meanwhile(std::function<void()> act) {
    QTimer::singleShot(0, qApp, std::move(act));
}

class QuestionsTest : public testing::Test {
  protected:
    Answer ask(Buttons choices, std::function<void()> act, MessageIcon icon = MessageIcon::Question) {
        MessageBox question;
        question.Text = "One\r\ntwo <b>three</b>";
        question.Title = "Title";
        question.Choices = choices;
        question.Icon = icon;
        meanwhile(std::move(act));
        return asking.Ask(question);
    }
    QtQuestions asking;
};

void closeBox() {
    box().close();
}

}  // namespace

TEST_F(QuestionsTest, ReturnEscapeAndTheCloseBoxMeanWhatTheyShould) {
    const auto enter = [] { press(Qt::Key_Return); };
    const auto escape = [] { press(Qt::Key_Escape); };
    const struct {
        Buttons Choices;
        Answer Enter, Escape;
    } table[] = {
        {Buttons::Ok, Answer::Ok, Answer::Ok},
        {Buttons::OkCancel, Answer::Ok, Answer::Cancel},
        {Buttons::AbortRetryIgnore, Answer::Abort, Answer::Abort},
        {Buttons::YesNoCancel, Answer::Yes, Answer::Cancel},
        {Buttons::YesNo, Answer::Yes, Answer::No},
        {Buttons::RetryCancel, Answer::Retry, Answer::Cancel},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(static_cast<int>(row.Choices));
        EXPECT_EQ(ask(row.Choices, enter), row.Enter);
        EXPECT_EQ(ask(row.Choices, escape), row.Escape);
        EXPECT_EQ(ask(row.Choices, closeBox), row.Escape);
    }
    EXPECT_EQ(ask(Buttons::YesNo, enter, MessageIcon::Exclamation), Answer::No)
        << "a warning isn't waved through";
    const auto ignore = [] {
        box().findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ignore)->click();
    };
    EXPECT_EQ(ask(Buttons::AbortRetryIgnore, ignore), Answer::Ignore);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(QuestionsTest, TheCountOfWhatWasNotAskedGrowsInTheOpenBox) {
    MessageBox question;
    question.Text = "Fault";
    meanwhile([&] {
        const QLabel* count = box().findChild<QLabel*>();
        EXPECT_FALSE(count->isVisible());
        question.Suppressed = 12;
        EXPECT_TRUE(count->isVisible());
        EXPECT_EQ(count->text(), QStringLiteral("and 12 more like this"));
        closeBox();
    });
    EXPECT_EQ(asking.Ask(question), Answer::Ok);
    question.Suppressed = 13;
}

TEST_F(QuestionsTest, ATypedTextComesBackInTheCodePage) {
    const InputBox question{"Key?", "Key", "old"};
    meanwhile([] {
        EXPECT_EQ(box().findChild<QLineEdit*>()->selectedText(), QStringLiteral("old"));
        press(Qt::Key_A, QString::fromUtf8("Γ"));
        press(Qt::Key_Return);
    });
    EXPECT_EQ(asking.Ask(question), "\xC3");
    meanwhile([] { press(Qt::Key_Escape); });
    EXPECT_FALSE(asking.Ask(question));
    meanwhile([] { press(Qt::Key_Return); });
    EXPECT_EQ(asking.Ask(question), "old");
}

TEST_F(QuestionsTest, ASecondQuestionStandsOnTopAndTheFirstWaits) {
    std::vector<Answer> order;
    order.push_back(ask(Buttons::YesNo, [&] {
        QuestionBox& first = box();
        EXPECT_FALSE(first.isModal());
        order.push_back(ask(Buttons::OkCancel, [&] {
            EXPECT_FALSE(first.isEnabled());
            ASSERT_EQ(boxes().size(), 2U);
            for (QuestionBox* one : boxes()) {
                if (one != &first) one->close();
            }
        }));
        EXPECT_TRUE(first.isEnabled());
        press(Qt::Key_Return);
    }));
    EXPECT_EQ(order, (std::vector{Answer::Cancel, Answer::Yes}));
}

TEST_F(QuestionsTest, NoQuestionOutlivesItsWindowOrTheProgram) {
    auto window = std::make_unique<QWidget>();
    window->show();
    window->activateWindow();
    QApplication::processEvents();
    EXPECT_EQ(ask(Buttons::AbortRetryIgnore,
                  [&] {
                      EXPECT_EQ(box().parentWidget(), window.get());
                      EXPECT_TRUE(window->isEnabled());
                      window.reset();
                  }),
              Answer::Abort);

    std::vector<Answer> answers;
    QTimer::singleShot(0, qApp, [&] {
        answers.push_back(ask(Buttons::YesNo, [&] {
            answers.push_back(ask(Buttons::OkCancel, [] { QCoreApplication::quit(); }));
            // Nothing is asked of a program that ends.
            answers.push_back(ask(Buttons::YesNo, [] {}));
        }));
    });
    QApplication::exec();
    EXPECT_EQ(answers, (std::vector{Answer::Cancel, Answer::No, Answer::No}));
}

template <class Dialog>
Dialog* dialog() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* found = dynamic_cast<Dialog*>(window);
        if (found != nullptr && found->isVisible()) return found;
    }
    ADD_FAILURE() << "no such box";
    return nullptr;
}

TEST_F(QuestionsTest, FilesAreChosenByNativePathsAndNobodyElseIsBlocked) {
    const QTemporaryDir folder;
    Strings paths;
    for (const char* name : {"Ελλάδα.txt", "b.txt", "c.png"}) {
        QFile file(folder.filePath(QString::fromUtf8(name)));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        paths.push_back(QFile::encodeName(file.fileName()).toStdString());
    }
    OpenFileBox open;
    open.Kinds = {{"Texts", "*.txt"}, {"All files", "*.*"}};
    open.Many = true;
    meanwhile([&] {
        auto* files = dialog<QFileDialog>();
        EXPECT_FALSE(files->isModal());
        EXPECT_EQ(files->nameFilters().value(1), QStringLiteral("All files (*)"));
        files->setDirectory(folder.path());
        auto* line = files->findChild<QLineEdit*>();
        line->setText(QString::fromUtf8("\"Ελλάδα.txt\" \"b.txt\""));
        static_cast<QDialog*>(files)->accept();
    });
    EXPECT_EQ(asking.Ask(open), (Strings{paths[0], paths[1]}));
    meanwhile([] { dialog<QFileDialog>()->close(); });
    EXPECT_EQ(asking.Ask(open), Strings());

    SaveFileBox save;
    save.Suggested = "new.txt";
    meanwhile([&] {
        EXPECT_EQ(dialog<QFileDialog>()->directory(), QDir(folder.path())) << "where files were chosen last";
        static_cast<QDialog*>(dialog<QFileDialog>())->accept();
    });
    EXPECT_EQ(asking.Ask(save), QFile::encodeName(folder.filePath("new.txt")).toStdString());
    meanwhile([] { QTest::keyClick(dialog<QFileDialog>(), Qt::Key_Escape); });
    EXPECT_FALSE(asking.Ask(save));
}

TEST_F(QuestionsTest, AFontComesBackAsItWentInUnlessItIsChanged) {
    FontBox question;
    question.Preset = {"A font that nobody has", 13, true, false, true, true, 0x123456};
    meanwhile([] { dialog<FontDialog>()->accept(); });
    EXPECT_EQ(asking.Ask(question), question.Preset);
    meanwhile([] {
        auto* box = dialog<FontDialog>()->findChild<QComboBox*>(QString(), Qt::FindDirectChildrenOnly);
        box->setCurrentIndex(box->findText(QStringLiteral("Red")));
        dialog<FontDialog>()->accept();
    });
    FontChoice red = question.Preset;
    red.Color = 0x0000FF;
    EXPECT_EQ(asking.Ask(question), red);
    meanwhile([] { QTest::keyClick(dialog<FontDialog>()->findChild<QFontDialog*>(), Qt::Key_Escape); });
    EXPECT_FALSE(asking.Ask(question));
}

}  // namespace talvora::test
