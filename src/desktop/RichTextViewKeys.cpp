// The keyboard on a RichTextView. A locked view scrolls by the keys that move an editor's caret.

#include <QKeyEvent>
#include <algorithm>

#include "desktop/CaretMoves.h"
#include "desktop/QtText.h"
#include "desktop/RichTextView.h"

namespace talvora {

namespace {

using Keys = QKeySequence;

struct Move {
    Keys::StandardKey Moves;
    Keys::StandardKey Selects;
};

constexpr Move moves[] = {
    {Keys::MoveToNextChar, Keys::SelectNextChar},
    {Keys::MoveToPreviousChar, Keys::SelectPreviousChar},
    {Keys::MoveToNextWord, Keys::SelectNextWord},
    {Keys::MoveToPreviousWord, Keys::SelectPreviousWord},
    {Keys::MoveToNextLine, Keys::SelectNextLine},
    {Keys::MoveToPreviousLine, Keys::SelectPreviousLine},
    {Keys::MoveToNextPage, Keys::SelectNextPage},
    {Keys::MoveToPreviousPage, Keys::SelectPreviousPage},
    {Keys::MoveToStartOfLine, Keys::SelectStartOfLine},
    {Keys::MoveToEndOfLine, Keys::SelectEndOfLine},
    {Keys::MoveToStartOfDocument, Keys::SelectStartOfDocument},
    {Keys::MoveToEndOfDocument, Keys::SelectEndOfDocument},
};

constexpr Keys::StandardKey edits[] = {
    Keys::Undo,
    Keys::Redo,
    Keys::Cut,
    Keys::Paste,
    Keys::Delete,
    Keys::Backspace,
    Keys::DeleteStartOfWord,
    Keys::DeleteEndOfWord,
    Keys::InsertParagraphSeparator,
    Keys::InsertLineSeparator,
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
    const auto matches = [&](Keys::StandardKey key) { return event->matches(key); };
    if (matches(Keys::Copy) || matches(Keys::SelectAll)) return true;
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
    if (event->matches(Keys::Copy)) {
        model_.userCopies(clipboard_);
    } else if (event->matches(Keys::SelectAll)) {
        model_.userSelects(model_.Document().Begin(), model_.Document().End());
    } else if (event->matches(Keys::ZoomIn) || controlAnd(event, Qt::Key_Plus)) {
        setZoom(zoom_ + 0.1);
    } else if (event->matches(Keys::ZoomOut)) {
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
        if (begin != end && move.Moves == Keys::MoveToNextChar) {
            moveTo(end, false);
        } else if (begin != end && move.Moves == Keys::MoveToPreviousChar) {
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
    const std::pair<Keys::StandardKey, std::int64_t> steps[] = {
        {Keys::MoveToNextLine, 2 * lineStep()},
        {Keys::MoveToPreviousLine, -2 * lineStep()},
        {Keys::MoveToNextPage, page},
        {Keys::MoveToPreviousPage, -page},
    };
    for (const auto& [key, pixels] : steps) {
        if (!event->matches(key)) continue;
        glide_ += static_cast<double>(pixels);
        if (!gliding_) scrolled(static_cast<std::int64_t>(std::exchange(glide_, 0)));
        wantFrames();
        return true;
    }
    if (event->matches(Keys::MoveToStartOfLine) || event->matches(Keys::MoveToStartOfDocument)) {
        glide_ = 0;
        scroll_.toBegin();
        scrolledUp_ = all > 0;
        touch();
        return true;
    }
    if (!event->matches(Keys::MoveToEndOfLine) && !event->matches(Keys::MoveToEndOfDocument)) return false;
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
    const bool isVertical = key == Keys::MoveToNextLine || key == Keys::MoveToPreviousLine ||
                            key == Keys::MoveToNextPage || key == Keys::MoveToPreviousPage;
    if (!isVertical) goalX_.reset();
    switch (key) {
        case Keys::MoveToNextChar:
            return characterRight(document, from);
        case Keys::MoveToPreviousChar:
            return characterLeft(document, from);
        case Keys::MoveToNextWord:
            return wordRight(document, from);
        case Keys::MoveToPreviousWord:
            return wordLeft(document, from);
        case Keys::MoveToNextLine:
            return vertical(from, 1);
        case Keys::MoveToPreviousLine:
            return vertical(from, -1);
        case Keys::MoveToNextPage:
            return pageAway(from, 1);
        case Keys::MoveToPreviousPage:
            return pageAway(from, -1);
        case Keys::MoveToStartOfLine:
            return page_.lineBegin(from);
        case Keys::MoveToEndOfLine:
            return page_.lineEnd(from);
        case Keys::MoveToStartOfDocument:
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
    if (event->matches(Keys::Undo)) {
        model_.userUndoes();
    } else if (event->matches(Keys::Redo) || controlAnd(event, Qt::Key_Y)) {
        model_.userRedoes();
    } else if (event->matches(Keys::Cut)) {
        model_.userCuts(clipboard_);
    } else if (event->matches(Keys::Paste)) {
        model_.userPastes(clipboard_);
    } else if (controlAnd(event, Qt::Key_V, Qt::ShiftModifier)) {
        model_.userPastesPlain(clipboard_);
    } else if (event->matches(Keys::DeleteStartOfWord) || event->matches(Keys::DeleteEndOfWord)) {
        eraseWord(event->matches(Keys::DeleteStartOfWord));
    } else if (event->key() == Qt::Key_Backspace) {
        model_.userErasesBackward();
    } else if (event->matches(Keys::Delete)) {
        model_.userErasesForward();
    } else if (event->matches(Keys::InsertLineSeparator)) {
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
