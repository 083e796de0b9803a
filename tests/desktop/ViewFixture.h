#pragma once
// A box in its view, as large as a small window, and hands for it.

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <memory>
#include <string>

#include "desktop/RichTextView.h"
#include "platform/MemoryClipboard.h"

namespace talvora::test {

class ViewTest : public testing::Test {
  protected:
    ViewTest() {
        view.resize(300, 200);
        view.setGliding(false);
        view.show();
        QApplication::processEvents();
    }

    // A chat's way to show a line more, and to drop the oldest ones.
    void addLine(const std::string& text) {
        body.Append(text);
        body.Append("\\par\r\n ");
        show();
    }
    void addLines(int count) {
        for (; count > 0; --count) addLine("line " + std::to_string(++number));
    }
    void dropLines(int count) {
        for (; count > 0; --count) body.CutFirstLine();
        show();
    }
    void show() {
        model.ShowBody("{\\rtf1\\ansi{\\colortbl;\\red255\\green0\\blue0;}\\fs17 ", body, "\r\n\\par }");
        model.SetSelStartToEnd();
    }
    void become(const std::string& text, bool locked) {
        model.Locked = locked;
        model.SetText(text);
        view.settle();
    }

    int scroll() {
        view.settle();
        return view.verticalScrollBar()->value();
    }
    bool atEnd() { return scroll() == view.verticalScrollBar()->maximum(); }
    std::string topLine() { return model.Document().At(view.placeAt({40, 2}).Paragraph).Text; }

    QPointF pointOf(Place place) { return view.caretRect(place).value().center(); }
    void mouse(QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = {}) {
        const bool moves = type == QEvent::MouseMove;
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
        QMouseEvent event(type, at, at, moves ? Qt::NoButton : button, held, modifiers);
        QApplication::sendEvent(view.viewport(), &event);
    }
    void key(int code, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
        QKeyEvent event(QEvent::KeyPress, code, modifiers, text);
        QApplication::sendEvent(&view, &event);
    }
    void type(const QString& text) {
        for (const QChar letter : text) key(0, {}, letter);
    }
    int pixelsOf(QColor color) {
        const QImage image = view.viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == color ? 1 : 0;
        }
        return count;
    }

    RichBody body;
    int number = 0;
    MemoryClipboard clipboard;
    Guard guard;
    RichTextBox model{true};
    RichTextView view{model, clipboard, guard};
};

}  // namespace talvora::test
