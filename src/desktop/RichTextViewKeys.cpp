// The keyboard on a RichTextView. A locked view scrolls by the keys that move an editor's caret.

#include <QKeyEvent>
#include <algorithm>

#include "desktop/CaretMoves.h"
#include "desktop/QtText.h"
#include "desktop/RichTextView.h"

namespace talvora {

namespace {

using Key = QKeySequence;

struct Move {
    Key::StandardKey Moves;
    Key::StandardKey Selects;
};

constexpr Move moves[] = {
    {Key::MoveToNextChar, Key::SelectNextChar},
    {Key::MoveToPreviousChar, Key::SelectPreviousChar},
    {Key::MoveToNextWord, Key::SelectNextWord},
    {Key::MoveToPreviousWord, Key::SelectPreviousWord},
    {Key::MoveToNextLine, Key::SelectNextLine},
    {Key::MoveToPreviousLine, Key::SelectPreviousLine},
    {Key::MoveToNextPage, Key::SelectNextPage},
    {Key::MoveToPreviousPage, Key::SelectPreviousPage},
    {Key::MoveToStartOfLine, Key::SelectStartOfLine},
    {Key::MoveToEndOfLine, Key::SelectEndOfLine},
    {Key::MoveToStartOfDocument, Key::SelectStartOfDocument},
    {Key::MoveToEndOfDocument, Key::SelectEndOfDocument},
};

constexpr Key::StandardKey edits[] = {
    Key::Undo,
    Key::Redo,
    Key::Cut,
    Key::Paste,
    Key::Delete,
    Key::Backspace,
    Key::DeleteStartOfWord,
    Key::DeleteEndOfWord,
    Key::InsertParagraphSeparator,
    Key::InsertLineSeparator,
};

bool controlAnd(const QKeyEvent* event, int key, Qt::KeyboardModifiers more = {}) {
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    return event->key() == key && modifiers == (Qt::ControlModifier | more);
}

// What a key types, if it types anything. The third-level key of many keyboards counts as Ctrl+Alt.
QString typedBy(const QKeyEvent* event) {
    const QString text = event->text();
    if (text.isEmpty()) return {};
    const auto modifiers = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (modifiers != Qt::NoModifier && modifiers != (Qt::ControlModifier | Qt::AltModifier)) return {};
    return text.at(0).isPrint() || text.at(0).isHighSurrogate() ? text : QString();
}

}  // namespace

bool RichTextView::isOwnKey(QKeyEvent* event) const {
    const auto matches = [&](Key::StandardKey key) { return event->matches(key); };
    if (matches(Key::Copy) || matches(Key::SelectAll)) return true;
    if (std::ranges::any_of(moves,
                            [&](const Move& move) { return matches(move.Moves) || matches(move.Selects); })) {
        return true;
    }
    return editable() && (std::ranges::any_of(edits, matches) || !typedBy(event).isEmpty());
}

void RichTextView::keyPressEvent(QKeyEvent* event) {
    if (dirty_) settle();
    holdSelection();
    if (editable()) drag_ = Drag::None;  // from here on the keys move the caret
    const bool done = commonKey(event) || selectKey(event) ||
                      (editable() ? moveKey(event) || editKey(event) : scrollKey(event));
    event->setAccepted(done);
}

bool RichTextView::commonKey(QKeyEvent* event) {
    if (event->matches(Key::Copy)) {
        model_.userCopies(clipboard_);
    } else if (event->matches(Key::SelectAll)) {
        model_.userSelects(model_.Document().Begin(), model_.Document().End());
    } else if (event->matches(Key::ZoomIn) || controlAnd(event, Qt::Key_Plus)) {
        setZoom(zoom_ + 0.1);
    } else if (event->matches(Key::ZoomOut)) {
        setZoom(zoom_ - 0.1);
    } else if (controlAnd(event, Qt::Key_0)) {
        setZoom(1);
    } else {
        return false;
    }
    return true;
}

bool RichTextView::selectKey(QKeyEvent* event) {
    for (const Move& move : moves) {
        if (!event->matches(move.Selects)) continue;
        moveTo(moved(move.Moves, model_.Caret()), true);
        return true;
    }
    return false;
}

bool RichTextView::moveKey(QKeyEvent* event) {
    for (const Move& move : moves) {
        if (!event->matches(move.Moves)) continue;
        const auto [begin, end] = selection();
        // Out of a selection the caret first goes to its edge.
        if (begin != end && move.Moves == Key::MoveToNextChar) {
            moveTo(end, false);
        } else if (begin != end && move.Moves == Key::MoveToPreviousChar) {
            moveTo(begin, false);
        } else {
            moveTo(moved(move.Moves, model_.Caret()), false);
        }
        return true;
    }
    return false;
}

bool RichTextView::scrollKey(QKeyEvent* event) {
    const int page = std::max(lineStep(), viewport()->height() - 2 * lineStep());
    const std::int64_t all = scroll_.MaxPosition();
    const std::pair<Key::StandardKey, std::int64_t> steps[] = {
        {Key::MoveToNextLine, 2 * lineStep()},
        {Key::MoveToPreviousLine, -2 * lineStep()},
        {Key::MoveToNextPage, page},
        {Key::MoveToPreviousPage, -page},
    };
    for (const auto& [key, pixels] : steps) {
        if (!event->matches(key)) continue;
        glide_ += static_cast<double>(pixels);
        if (!gliding_) scrolled(static_cast<std::int64_t>(std::exchange(glide_, 0)));
        wantFrames();
        return true;
    }
    if (event->matches(Key::MoveToStartOfLine) || event->matches(Key::MoveToStartOfDocument)) {
        glide_ = 0;
        scroll_.toBegin();
        scrolledUp_ = all > 0;
        touch();
        return true;
    }
    if (!event->matches(Key::MoveToEndOfLine) && !event->matches(Key::MoveToEndOfDocument)) return false;
    scrollToEnd();
    return true;
}

// ---- Where the caret goes

void RichTextView::moveTo(Place place, bool select) {
    const bool wasSelected = model_.Anchor() != model_.Caret();
    model_.userSelects(select ? model_.Anchor() : place, place);
    restartCaret();
    if (select) offerPrimary();
    if (select || wasSelected || editable()) scroll_.reveal(model_.Caret());
    scrolledUp_ = !scroll_.AtEnd();
    touch();
}

Place RichTextView::moved(int key, Place from) {
    const RichDocument& document = model_.Document();
    const bool isVertical = key == Key::MoveToNextLine || key == Key::MoveToPreviousLine ||
                            key == Key::MoveToNextPage || key == Key::MoveToPreviousPage;
    if (!isVertical) goalX_.reset();
    switch (key) {
        case Key::MoveToNextChar:
            return characterRight(document, from);
        case Key::MoveToPreviousChar:
            return characterLeft(document, from);
        case Key::MoveToNextWord:
            return wordRight(document, from);
        case Key::MoveToPreviousWord:
            return wordLeft(document, from);
        case Key::MoveToNextLine:
            return vertical(from, 1);
        case Key::MoveToPreviousLine:
            return vertical(from, -1);
        case Key::MoveToNextPage:
            return pageAway(from, 1);
        case Key::MoveToPreviousPage:
            return pageAway(from, -1);
        case Key::MoveToStartOfLine:
            return page_.lineBegin(from);
        case Key::MoveToEndOfLine:
            return page_.lineEnd(from);
        case Key::MoveToStartOfDocument:
            return document.Begin();
        default:
            return document.End();
    }
}

Place RichTextView::vertical(Place from, int lines) {
    if (!goalX_) goalX_ = page_.caretRect(from).left();
    for (; lines > 0; --lines) from = page_.lineDown(from, *goalX_);
    for (; lines < 0; ++lines) from = page_.lineUp(from, *goalX_);
    return from;
}

Place RichTextView::pageAway(Place from, int direction) {
    const int lines = std::max(1, viewport()->height() / std::max(1, lineStep()) - 1);
    return vertical(from, direction * lines);
}

// ---- Editing

bool RichTextView::editKey(QKeyEvent* event) {
    goalX_.reset();
    if (event->matches(Key::Undo)) {
        model_.userUndoes();
    } else if (event->matches(Key::Redo) || controlAnd(event, Qt::Key_Y)) {
        model_.userRedoes();
    } else if (event->matches(Key::Cut)) {
        model_.userCuts(clipboard_);
    } else if (event->matches(Key::Paste)) {
        model_.userPastes(clipboard_);
    } else if (controlAnd(event, Qt::Key_V, Qt::ShiftModifier)) {
        model_.userPastesPlain(clipboard_);
    } else if (event->matches(Key::DeleteStartOfWord) || event->matches(Key::DeleteEndOfWord)) {
        eraseWord(event->matches(Key::DeleteStartOfWord));
    } else if (event->key() == Qt::Key_Backspace) {
        model_.userErasesBackward();
    } else if (event->matches(Key::Delete)) {
        model_.userErasesForward();
    } else if (event->matches(Key::InsertLineSeparator)) {
        model_.userInsertsLineBreak();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        model_.userTypes("\r\n");
    } else if (controlAnd(event, Qt::Key_Tab) || event->key() == Qt::Key_Backtab) {
        return QAbstractScrollArea::focusNextPrevChild(event->key() == Qt::Key_Tab);
    } else if (event->key() == Qt::Key_Tab) {
        model_.userTypes("\t");
    } else {
        const QString text = typedBy(event);
        type(text);
        return !text.isEmpty();
    }
    return true;
}

void RichTextView::type(const QString& text) {
    if (text.isEmpty()) return;
    model_.userTypes(fromQString(text));
}

void RichTextView::eraseWord(bool backward) {
    if (model_.Anchor() == model_.Caret()) {
        const Place caret = model_.Caret();
        const RichDocument& document = model_.Document();
        model_.userSelects(caret, backward ? wordLeft(document, caret) : wordRight(document, caret));
    }
    if (model_.Anchor() != model_.Caret()) model_.userErasesBackward();
}

// Tab is text in an editor, as in any writer of letters.
bool RichTextView::focusNextPrevChild(bool next) {
    if (editable()) return false;
    return QAbstractScrollArea::focusNextPrevChild(next);
}

}  // namespace talvora
