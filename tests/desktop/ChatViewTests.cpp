// A locked view of a conversation: where it stands while lines come and go, and what the mouse selects.

#include <QAccessible>
#include <QWheelEvent>

#include "ViewFixture.h"

namespace talvora::test {

using ChatView = ViewTest;

TEST_F(ChatView, GoesWithTheEndUntilTheReaderScrollsUpAndAgainWhenHeReturns) {
    addLines(100);
    EXPECT_TRUE(atEnd());
    EXPECT_GT(scroll(), 500);

    key(Qt::Key_PageUp);
    const std::string top = topLine();
    const int offset = static_cast<int>(pointOf(view.placeAt({40, 2})).y());
    const int before = scroll();
    addLines(50);
    EXPECT_EQ(scroll(), before) << "lines below move nothing";
    dropLines(30);
    EXPECT_LT(scroll(), before) << "there is less above";
    EXPECT_EQ(topLine(), top);
    EXPECT_EQ(static_cast<int>(pointOf(view.placeAt({40, 2})).y()), offset);

    dropLines(110);
    EXPECT_EQ(view.placeAt({40, 2}).Paragraph, model.Document().FirstNumber()) << "what he read has gone";
    key(Qt::Key_End, Qt::ControlModifier);
    addLines(3);
    EXPECT_TRUE(atEnd());
    view.verticalScrollBar()->setValue(0);
    addLines(3);
    EXPECT_EQ(scroll(), 0);
}

TEST_F(ChatView, StaysAtTheEndWhenItIsResizedOrZoomed) {
    for (int i = 0; i < 40; ++i) addLine(std::string(200, 'w') + " and more words that wrap");
    ASSERT_TRUE(atEnd());
    view.resize(180, 150);
    QApplication::processEvents();
    EXPECT_TRUE(atEnd());
    const int before = view.verticalScrollBar()->maximum();
    key(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_TRUE(atEnd());
    EXPECT_GT(view.verticalScrollBar()->maximum(), before);
}

TEST_F(ChatView, ADocumentWrittenWholeIsShownFromItsBegin) {
    std::string text;
    for (int i = 0; i < 100; ++i) text += "line\r\n";
    become(text, true);
    EXPECT_EQ(scroll(), 0);
    view.verticalScrollBar()->setValue(300);
    become(text + "another", true);
    EXPECT_EQ(scroll(), 0);
}

TEST_F(ChatView, TheWheelScrolls) {
    addLines(100);
    const int before = scroll();
    const auto turn = [&](QPoint pixels, QPoint angle) {
        QWheelEvent event({50, 50}, {50, 50}, pixels, angle, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(view.viewport(), &event);
        return scroll();
    };
    EXPECT_EQ(turn({0, 7}, {0, 20}), before - 7) << "a touchpad's pixels as they are";
    EXPECT_LT(turn({}, {0, 120}), before - 7 - 30);
    // Gliding arrives at the same place, in frames.
    const auto fromTop = [&] {
        view.verticalScrollBar()->setValue(0);
        return turn({}, {0, -1200});
    };
    const int goal = fromTop();
    view.setGliding(true);
    fromTop();
    view.frame();
    EXPECT_GT(scroll(), 0);
    EXPECT_LT(scroll(), goal);
    for (int frames = 0; frames < 60; ++frames) view.frame();
    EXPECT_EQ(scroll(), goal);
}

TEST_F(ChatView, AHeldSelectionStaysRightWhileLinesComeAndGo) {
    addLines(100);
    std::string heard;
    const auto on = model.MouseUp.connect([&](MouseButton button) {
        heard = std::to_string(static_cast<int>(button)) + ":" + model.SelText();
        model.SetSelLength(0);
    });
    const std::uint64_t row = view.placeAt({40, 60}).Paragraph;
    const std::string text = model.Document().At(row).Text;
    mouse(QEvent::MouseButtonPress, pointOf({row, 1}));
    mouse(QEvent::MouseMove, pointOf({row, static_cast<std::uint32_t>(text.size())}));
    const int before = scroll();
    addLines(20);
    dropLines(10);
    view.frame();
    EXPECT_EQ(model.SelText(), text.substr(1)) << "a frame gives it back";
    addLines(1);
    EXPECT_LT(scroll(), before) << "what is held doesn't move, though the view was at the end";
    EXPECT_FALSE(atEnd());
    mouse(QEvent::MouseButtonRelease, {20, 20});
    EXPECT_EQ(heard, "1:" + text.substr(1));
    addLines(1);
    EXPECT_TRUE(atEnd());

    // The right button selects by a real movement only.
    mouse(QEvent::MouseButtonPress, pointOf(view.placeAt({40, 60})), Qt::RightButton);
    mouse(QEvent::MouseButtonRelease, pointOf(view.placeAt({40, 60})), Qt::RightButton);
    EXPECT_EQ(heard, "2:");
}

TEST_F(ChatView, DraggingBeyondTheEdgeScrolls) {
    addLines(100);
    const int before = scroll();
    mouse(QEvent::MouseButtonPress, {50, 50});
    const Place from = model.Anchor();
    mouse(QEvent::MouseMove, {50, -80});
    view.frame();
    EXPECT_LT(scroll(), before);
    EXPECT_EQ(model.Anchor(), from);
    EXPECT_LT(model.Caret().Paragraph, from.Paragraph);
    mouse(QEvent::MouseButtonRelease, {50, -80});
}

TEST_F(ChatView, ADoubleClickTellsTheModelWhere) {
    addLine("see http://one.example now");
    Place where;
    auto on = model.DblClick.connect([&] { where = model.Caret(); });
    const std::uint64_t row = model.Document().FirstNumber();
    mouse(QEvent::MouseButtonDblClick, pointOf({row, 8}));
    EXPECT_EQ(where, (Place{row, 8}));
    EXPECT_EQ(model.SelLength(), 0U);
    on.disconnect();  // with nobody to decide, it is the word
    mouse(QEvent::MouseButtonDblClick, pointOf({row, 1}));
    EXPECT_EQ(model.SelText(), "see");
}

TEST_F(ChatView, KeysSelectAndCopyButChangeNothing) {
    addLine("alpha beta");
    model.SetSelStart(0);
    key(Qt::Key_Right, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_EQ(model.SelText(), "alpha ");
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard.GetText(ClipboardFormat::Text), "alpha ");
    const std::string before = model.Text();
    type("x");
    key(Qt::Key_Backspace);
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(model.Text(), before);
    EXPECT_EQ(model.SelText(), before);
}

TEST_F(ChatView, EveryPlaceIsHitWhereItIsShown) {
    addLine("some words that wrap, then a verylongword" + std::string(120, 'm') + "\\line and\\tab a tab");
    addLine("{\\b\\fs40 large} and {\\i small}");
    addLine(std::string(5000, 'n') + " a paragraph of several stretches");
    const RichDocument& document = model.Document();
    for (std::uint64_t row = document.FirstNumber(); row < document.EndNumber(); ++row) {
        const auto length = static_cast<std::uint32_t>(document.At(row).Text.size());
        for (std::uint32_t offset = 0; offset <= length; offset += length > 1000 ? 97 : 1) {
            view.reveal({row, offset});
            const auto rect = view.caretRect({row, offset});
            ASSERT_TRUE(rect && view.viewport()->rect().contains(rect->toAlignedRect()))
                << row << ":" << offset;
            ASSERT_EQ(view.placeAt(rect->center()), (Place{row, offset}));
        }
    }
}

TEST_F(ChatView, AScreenReaderFindsTheText) {
    addLine("first");
    addLine("second line");
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(seen, nullptr);
    QAccessibleTextInterface* text = seen->textInterface();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->text(0, text->characterCount()).toStdString(), model.Text());
    EXPECT_EQ(text->text(7, 14).toStdString(), model.Text().substr(7, 7));
    text->setSelection(0, 8, 14);
    EXPECT_EQ(model.SelText(), "second");
    int begin = 0, end = 0;
    text->selection(0, &begin, &end);
    EXPECT_EQ(std::pair(begin, end), std::pair(8, 14));
    EXPECT_EQ(text->offsetAtPoint(text->characterRect(9).center()), 9);
    EXPECT_TRUE(seen->state().readOnly);
}

TEST_F(ChatView, PicturesAndHighlightsAreDrawn) {
    // A bitmap of 2 x 2 blue pixels, shown as 20 x 20.
    const std::string header =
        "280000000200000002000000"
        "01001800" +
        std::string(48, '0');
    const std::string row = "ff0000ff00000000";
    addLine("before {\\pict\\dibitmap0\\picw2\\pich2\\picwgoal300\\pichgoal300 " + header + row + row +
            "} after");
    EXPECT_NEAR(pixelsOf(Qt::blue), 400, 90);
    addLine("{\\highlight1 behind}");
    EXPECT_GT(pixelsOf(Qt::red), 100);
    view.setZoom(2);
    EXPECT_GT(pixelsOf(Qt::blue), 1200);
}

}  // namespace talvora::test
