// The view of a box that the user writes in.

#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QMenu>

#include "ViewFixture.h"
#include "desktop/CaretMoves.h"

namespace talvora::test {

class EditorView : public ViewTest {
  protected:
    EditorView() { become("", false); }
};

TEST_F(EditorView, WritesErasesAndTakesBack) {
    type(QString::fromUtf8("Καλημέρα, νaïve – “x” 漢"));
    EXPECT_EQ(model.Text(),
              "\xCA\xE1\xEB\xE7\xEC\xDD\xF1\xE1, \xED"
              "aive \x96 \x93x\x94 ?");
    key(Qt::Key_A, Qt::ControlModifier);
    type("one two");
    key(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(model.Text(), "one ");
    key(Qt::Key_Return, {}, "\r");
    type("b");
    key(Qt::Key_Return, Qt::ShiftModifier, "\r");
    key(Qt::Key_Tab, {}, "\t");
    EXPECT_EQ(model.Text(), "one \r\nb\v\t");
    key(Qt::Key_Home, Qt::ControlModifier);
    key(Qt::Key_Delete);
    key(Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(model.Text(), "\r\nb\v\t");
    for (int i = 0; i < 9; ++i) key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(model.Text(), "");
    for (int i = 0; i < 9; ++i) key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(model.Text(), "\r\nb\v\t");
}

TEST_F(EditorView, KeysOfOtherMeaningTypeNothing) {
    for (const auto modifiers : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier})
        key(Qt::Key_K, modifiers, "k");
    key(Qt::Key_Escape, {}, "\x1b");
    key(Qt::Key_F5);
    EXPECT_EQ(model.Text(), "");
    key(Qt::Key_E, Qt::ControlModifier | Qt::AltModifier, QString::fromUtf8("€"));  // a third-level key
    EXPECT_EQ(model.Text(), "\x80");
}

TEST_F(EditorView, TheCaretGoesUpAndDownAtOneX) {
    become("a long first line\r\nx\r\nanother long line", false);
    const std::uint64_t first = model.Document().FirstNumber();
    model.userSelects({first, 12}, {first, 12});
    const double x = pointOf(model.Caret()).x();
    key(Qt::Key_Down);
    EXPECT_EQ(model.Caret(), (Place{first + 1, 1}));
    key(Qt::Key_Down);
    EXPECT_EQ(model.Caret().Paragraph, first + 2);
    EXPECT_NEAR(pointOf(model.Caret()).x(), x, 8);
    key(Qt::Key_Up, Qt::ShiftModifier);
    key(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(model.Caret(), (Place{first, 12}));
    key(Qt::Key_Left);
    EXPECT_EQ(model.Caret(), (Place{first, 12})) << "out of a selection to its edge";
    key(Qt::Key_Home);
    key(Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(model.SelText(), "a long first line");
}

TEST_F(EditorView, TheCaretStaysInSight) {
    for (int i = 0; i < 60; ++i) key(Qt::Key_Return, {}, "\r");
    EXPECT_TRUE(view.caretRect(model.Caret()));
    key(Qt::Key_PageUp);
    key(Qt::Key_PageUp);
    EXPECT_TRUE(view.caretRect(model.Caret()));
    EXPECT_LT(model.Caret().Paragraph, 50U);
    model.SetSelStart(0);
    EXPECT_EQ(scroll(), 0);
}

TEST_F(EditorView, AnInputMethodComposesBeforeItWrites) {
    type("ab");
    key(Qt::Key_Left);
    const auto compose = [&](const QString& preedit, const QString& commit) {
        QInputMethodEvent event(preedit,
                                {{QInputMethodEvent::Cursor, static_cast<int>(preedit.size()), 1, {}}});
        event.setCommitString(commit);
        QApplication::sendEvent(&view, &event);
    };
    const double before = pointOf({0, 1}).x();
    compose("xyz", "");
    EXPECT_EQ(model.Text(), "ab");
    EXPECT_GT(pointOf({0, 1}).x(), before + 10) << "the caret stands behind what is composed";
    EXPECT_EQ(view.placeAt(pointOf({0, 2})), (Place{0, 2}));
    compose("", QString::fromUtf8("ή"));
    EXPECT_EQ(model.Text(),
              "a\xDE"
              "b");
    EXPECT_EQ(view.inputMethodQuery(Qt::ImCursorPosition).toInt(), 2);
    EXPECT_EQ(view.inputMethodQuery(Qt::ImSurroundingText).toString(), QString::fromUtf8("aήb"));
}

TEST_F(EditorView, TheMenuDoesWhatItSays) {
    type("words");
    key(Qt::Key_A, Qt::ControlModifier);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {10, 10}, {10, 10});
    QApplication::sendEvent(view.viewport(), &event);
    const auto* menu = view.findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    QStringList names;
    for (QAction* action : menu->actions()) {
        if (!action->isSeparator()) names << action->text().remove('&') + (action->isEnabled() ? "" : " off");
        if (action->text() == "Cu&t") action->trigger();
    }
    EXPECT_EQ(names.join(", ").toStdString(), "Undo, Redo off, Cut, Copy, Paste, Select All");
    EXPECT_EQ(model.Text(), "");
    EXPECT_EQ(clipboard.GetText(ClipboardFormat::Text), "words");
    key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(clipboard.GetText(ClipboardFormat::Text), "wordswords");
}

TEST_F(EditorView, WordsAreLettersAndDigits) {
    become("one, two_2  \xE1\xE2!\r\nnext", false);
    const RichDocument& document = model.Document();
    std::string stops;
    for (Place at = document.Begin(), last{~0ULL, 0}; at != last;
         last = std::exchange(at, wordRight(document, at))) {
        stops += std::to_string(document.PositionOf(at)) + " ";
    }
    EXPECT_EQ(stops, "0 3 5 12 14 15 17 21 ");
    stops.clear();
    for (Place at = document.End(), last{~0ULL, 0}; at != last;
         last = std::exchange(at, wordLeft(document, at))) {
        stops += std::to_string(document.PositionOf(at)) + " ";
    }
    EXPECT_EQ(stops, "21 17 15 14 12 5 3 0 ");
}

}  // namespace talvora::test
