// Input methods, the caret's blinking and the menu of an editable RichTextView.

#include <QAction>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QMenu>
#include <QStyleHints>
#include <algorithm>

#include "desktop/QtText.h"
#include "desktop/RichTextView.h"

namespace talvora {

// ---- Input methods

void RichTextView::inputMethodEvent(QInputMethodEvent* event) {
    if (!editable()) return event->ignore();
    event->accept();
    const bool takesText = !event->commitString().isEmpty() || event->replacementLength() > 0;
    page_.setPreedit({}, model_.Caret().Paragraph);
    if (takesText) {
        if (event->replacementLength() > 0) {
            const Place caret = model_.Caret();
            const std::int64_t begin =
                std::max<std::int64_t>(0, std::int64_t{caret.Offset} + event->replacementStart());
            const auto end = static_cast<std::uint32_t>(begin + event->replacementLength());
            model_.userSelects({caret.Paragraph, static_cast<std::uint32_t>(begin)}, {caret.Paragraph, end});
            if (event->commitString().isEmpty()) model_.userErasesBackward();
        }
        type(event->commitString());
    }
    putPreedit(event);
    restartCaret();
    selectionChanged_ = true;
    touch();
}

void RichTextView::putPreedit(QInputMethodEvent* event) {
    if (event->preeditString().isEmpty()) return;
    if (model_.Anchor() != model_.Caret()) model_.userErasesBackward();
    Preedit preedit{
        model_.Caret().Offset, event->preeditString(), static_cast<int>(event->preeditString().size()), {}};
    for (const QInputMethodEvent::Attribute& attribute : event->attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor) {
            preedit.Caret = std::clamp(attribute.start, 0, static_cast<int>(preedit.Text.size()));
        } else if (attribute.type == QInputMethodEvent::TextFormat) {
            const auto format = qvariant_cast<QTextFormat>(attribute.value).toCharFormat();
            if (format.isValid()) preedit.Formats.append({attribute.start, attribute.length, format});
        }
    }
    page_.setPreedit(preedit, model_.Caret().Paragraph);
}

QVariant RichTextView::inputMethodQuery(Qt::InputMethodQuery query) const {
    const Place caret = model_.Caret();
    const Place anchor = model_.Anchor();
    const auto rectOf = [&](Place place) {
        auto* self = const_cast<RichTextView*>(this);  // laying out is no change to be seen
        const QRectF rect = self->caretRect(place).value_or(QRectF());
        return rect.translated(viewport()->pos());
    };
    switch (query) {
        case Qt::ImEnabled:
            return editable();
        case Qt::ImCursorRectangle:
            return rectOf(caret);
        case Qt::ImAnchorRectangle:
            return rectOf(anchor);
        case Qt::ImCursorPosition:
            return static_cast<int>(caret.Offset);
        case Qt::ImAnchorPosition:
            return static_cast<int>(anchor.Paragraph == caret.Paragraph ? anchor.Offset : caret.Offset);
        case Qt::ImSurroundingText:
            return toQString(model_.Document().At(caret.Paragraph).Text);
        case Qt::ImCurrentSelection:
            return anchor == caret ? QString() : toQString(model_.SelText());
        default:
            return QAbstractScrollArea::inputMethodQuery(query);
    }
}

// ---- Focus and the caret

void RichTextView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    restartCaret();
    viewport()->update();
}

void RichTextView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    blink_.stop();
    if (!page_.Composing().empty()) {
        page_.setPreedit({}, page_.ComposingParagraph());
        touch();
    }
    viewport()->update();
}

// Shown at once and blinking from now on, for a while.
void RichTextView::restartCaret() {
    caretShown_ = true;
    blinks_ = 0;
    blink_.stop();
    if (!editable() || !hasFocus()) return;
    const int period = QGuiApplication::styleHints()->cursorFlashTime();
    if (period > 1) blink_.start(period / 2, this);
}

// ---- The menu

void RichTextView::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    if (!editable()) return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(*menu);
    menu->popup(event->globalPos());
}

void RichTextView::fillMenu(QMenu& menu) {
    const auto add = [&](const char* text, QKeySequence::StandardKey key, bool enabled, auto action) {
        QAction* entry = menu.addAction(QString::fromLatin1(text), this,
                                        [this, action] { guard_.run("RichTextView", [&] { action(); }); });
        entry->setShortcut(key);
        entry->setEnabled(enabled);
    };
    const bool selected = model_.Anchor() != model_.Caret();
    add("&Undo", QKeySequence::Undo, model_.CanUndo(), [this] { model_.userUndoes(); });
    add("&Redo", QKeySequence::Redo, model_.CanRedo(), [this] { model_.userRedoes(); });
    menu.addSeparator();
    add("Cu&t", QKeySequence::Cut, selected, [this] { model_.userCuts(clipboard_); });
    add("&Copy", QKeySequence::Copy, selected, [this] { model_.userCopies(clipboard_); });
    add("&Paste", QKeySequence::Paste, true, [this] { model_.userPastes(clipboard_); });
    menu.addSeparator();
    add("Select &All", QKeySequence::SelectAll, true,
        [this] { model_.userSelects(model_.Document().Begin(), model_.Document().End()); });
}

}  // namespace talvora
