// The small windows, used by keyboard.

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "desktop/TextNote.h"
#include "desktop/views/ChanKeyView.h"
#include "desktop/views/EmoticonsView.h"
#include "desktop/views/MOTDView.h"
#include "desktop/views/MsgBoxView.h"
#include "desktop/views/PluginViews.h"
#include "simulation/VirtualMachine.h"
#include "simulation/windows/RememberingFace.h"

namespace talvora::test {

namespace {

class SmallViewsTest : public testing::Test, public VirtualMachine {
  protected:
    SmallViewsTest() { face.acts = true; }

    // One key in a window, as the guarded application delivers it.
    void press(QWidget* window, int key, const QString& text = {}) {
        QWidget* target = window->focusWidget() != nullptr ? window->focusWidget() : window;
        QApplication::processEvents();
        // A window manager takes its time.
        QApplication::setActiveWindow(window);
        around.platform.Guarded.run("key", [&] {
            QTest::sendKeyEvent(QTest::Click, target, static_cast<Qt::Key>(key), text, Qt::NoModifier);
        });
    }
    void click(QAbstractButton* button) {
        around.platform.Guarded.run("click", [&] { button->click(); });
    }
    // A view goes with its form.
    static void expectGone(QPointer<QWidget>& view) {
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(view.isNull());
    }

    modEmotions emotions{around.files, globError};
    RememberingFace face;
    ViewMemory memory{around.settings};
    PluginViews plugins;
    ViewSite site{face, around.platform, memory, plugins};
};

struct Typed final : EmotionTarget {
    void Emotion(const std::string& Code) override { codes.push_back(Code); }
    std::vector<std::string> codes;
};

TEST_F(SmallViewsTest, AnEmoticonIsChosenByArrowKeys) {
    std::string table;
    for (int i = 0; i < 65; ++i) table += "<b>" + std::to_string(i) + ":=:{x}\r\n";
    around.disk.put("System/emoticons.dat", table);
    emotions.LoadEmotions();
    frmEmoticons form(around.platform, globError, emotions);
    Typed owner;
    QPointer<QWidget> view = new EmoticonsView(form, site);
    form.Display(owner, 300, 4500);
    ASSERT_TRUE(view->isVisible());
    const auto nameInFocus = [&] { return view->focusWidget()->accessibleName().toStdString(); };
    EXPECT_EQ(nameInFocus(), "<b>0");
    EXPECT_EQ(view->focusWidget()->toolTip(), QStringLiteral("<span>&lt;b&gt;0</span>"));
    for (const auto& [key, name] : {std::pair{Qt::Key_Left, "<b>0"},
                                    {Qt::Key_Right, "<b>1"},
                                    {Qt::Key_Down, "<b>7"},
                                    {Qt::Key_Up, "<b>1"},
                                    {Qt::Key_PageDown, "<b>31"},
                                    {Qt::Key_Down, "<b>37"},
                                    {Qt::Key_PageDown, "<b>60"},
                                    {Qt::Key_PageDown, "<b>60"},
                                    {Qt::Key_PageUp, "<b>30"}}) {
        press(view, key);
        EXPECT_EQ(nameInFocus(), name) << key;
    }
    view->findChild<QScrollBar*>()->setValue(0);
    EXPECT_EQ(form.VScroll1.Value, 0);
    EXPECT_EQ(nameInFocus(), "<b>0");
    press(view, Qt::Key_Return);
    EXPECT_THAT(owner.codes, testing::ElementsAre("<b>0"));
    expectGone(view);
}

TEST_F(SmallViewsTest, AKeyIsTypedAndAnotherQuestionSkipped) {
    std::vector<std::string> sent;
    frmChanKey form(globError, settings, [&](const std::string& line) { sent.push_back(line); });
    settings.Save(Section::ChanKeys, "#a", "old");
    QPointer<QWidget> view = new ChanKeyView(form, site);
    form.ExecList("#a|#<b>|#c|");
    auto* line = view->findChild<QLineEdit*>();
    EXPECT_EQ(line->selectedText(), QStringLiteral("old"));
    press(view, Qt::Key_A, QString::fromUtf8("Γ"));
    press(view, Qt::Key_Return);
    EXPECT_THAT(sent, testing::ElementsAre("JOIN #a \xC3"));
    EXPECT_EQ(view->findChild<TextNote*>()->Note(), QStringLiteral("Please enter the key for channel #<b>"));
    EXPECT_EQ(line->text(), QString());
    const auto buttons = view->findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 2);
    const bool okFirst = buttons[0]->isDefault() || buttons[0]->text().contains(QStringLiteral("OK"));
    click(buttons[okFirst ? 1 : 0]);
    EXPECT_EQ(form.CurrentChan, "#c");
    press(view, Qt::Key_Escape);
    EXPECT_EQ(sent.size(), 1U);
    expectGone(view);
}

TEST_F(SmallViewsTest, NotesComeOneAfterTheOther) {
    frmMsgBox form(around.platform, globError);
    QPointer<QWidget> view = new MsgBoxView(form, site);
    form.Display("<i>one</i>", "First", 1);
    form.Display("two", "Second", 3);
    EXPECT_EQ(view->findChild<TextNote*>()->Note(), QStringLiteral("<i>one</i>"));
    EXPECT_EQ(view->windowTitle(), QStringLiteral("First"));
    press(view, Qt::Key_Return);
    EXPECT_EQ(view->findChild<TextNote*>()->Note(), QStringLiteral("two"));
    around.platform.Guarded.run("close", [&] { view->close(); });
    expectGone(view);
}

TEST_F(SmallViewsTest, TheMessageOfTheDayIsReadAndSwitchedOff) {
    around.disk.put("System/emoticons.dat", ":-):=:{x}\r\n");
    emotions.LoadEmotions();
    frmMOTD form(around.platform, globError, settings, emotions);
    QPointer<QWidget> view = new MOTDView(form, site);
    form.Display("Welcome\r\nto all");
    EXPECT_TRUE(view->isVisible());
    click(view->findChild<QCheckBox*>());
    EXPECT_EQ(settings.Get(Section::Settings, "ShowMOTD", ""), "0");
    click(view->findChild<QPushButton*>());
    EXPECT_TRUE(form.IsUnloaded());
    expectGone(view);
}

}  // namespace

}  // namespace talvora::test
