#include "desktop/WritingBox.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <algorithm>
#include <utility>

#include "desktop/QtText.h"
#include "platform/Text.h"
#include "platform/rich/RichTextBox.h"

namespace talvora {

namespace {

constexpr int MostLinesShown = 5;

}  // namespace

WritingBox::WritingBox(TextBox& model, QWidget* parent) : QPlainTextEdit(parent), model_(model) {
    setTabChangesFocus(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    on_ += model_.Text.Changed.connect([this](const std::string&) { showText(); });
    on_ += model_.SelStart.Changed.connect([this](const std::size_t&) { showCaret(); });
    on_ += model_.GotFocus.connect([this] { setFocus(); });
    connect(this, &QPlainTextEdit::textChanged, this, [this] { textEdited(); });
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] {
        if (passing_) return;
        passing_ = true;
        model_.SelStart = static_cast<std::size_t>(textCursor().selectionStart());
        model_.SelLength =
            static_cast<std::size_t>(textCursor().selectionEnd() - textCursor().selectionStart());
        passing_ = false;
    });
    showText();
}

void WritingBox::setOffers(WordOffers::Source source) {
    offers_ = std::make_unique<WordOffers>(*this, std::move(source));
}

// The document of this widget counts its height in lines.
int WritingBox::linesWanted() const {
    return static_cast<int>(document()->size().height());
}

QSize WritingBox::sizeHint() const {
    const int lines = std::clamp(linesWanted(), 1, MostLinesShown);
    const int margins = 2 * static_cast<int>(document()->documentMargin()) + 2 * frameWidth();
    return {QPlainTextEdit::sizeHint().width(), fontMetrics().lineSpacing() * lines + margins};
}

QSize WritingBox::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 8, sizeHint().height()};
}

void WritingBox::textEdited() {
    setVerticalScrollBarPolicy(linesWanted() > MostLinesShown ? Qt::ScrollBarAsNeeded
                                                              : Qt::ScrollBarAlwaysOff);
    updateGeometry();
    if (offers_) offers_->edited();
    if (passing_) return;
    passing_ = true;
    // As what is in front of the caret will be sent.
    model_.SelStart = fromQString(toPlainText().left(textCursor().position())).size();
    model_.Text = fromQString(toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
    passing_ = false;
    // What has no place in the code page becomes what will be sent; and the model may have emptied itself.
    showText();
}

void WritingBox::showText() {
    if (passing_) return;
    const QString text = toQString(model_.Text.get()).remove(QLatin1Char('\r'));
    if (text == toPlainText()) return;
    passing_ = true;
    setPlainText(text);
    passing_ = false;
    showCaret();
}

void WritingBox::showCaret() {
    if (passing_) return;
    const int place = static_cast<int>(
        std::min<std::size_t>(model_.SelStart.get(), static_cast<std::size_t>(toPlainText().size())));
    if (textCursor().position() == place) return;
    QTextCursor cursor = textCursor();
    cursor.setPosition(place);
    passing_ = true;
    setTextCursor(cursor);
    passing_ = false;
}

void WritingBox::keyPressEvent(QKeyEvent* event) {
    if (offers_ && offers_->wants(*event)) {
        event->ignore();
        return;
    }
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QPlainTextEdit::keyPressEvent(event);
        return;
    }
    event->accept();
    model_.userPresses(event->modifiers() & Qt::ControlModifier ? Key::LineFeed : Key::Return);
}

void WritingBox::focusInEvent(QFocusEvent* event) {
    QPlainTextEdit::focusInEvent(event);
    ensureCursorVisible();
}

// Within what a person could mean; the toolkit would lay out any amount.
void WritingBox::insertFromMimeData(const QMimeData* source) {
    if (!source->hasText() || source->hasUrls()) return;
    QString text = source->text().left(RichTextBox::MaxTextByHand);
    // Lines that are pasted are meant to be sent; what a hand lets fall here is still to be looked at.
    if (dropping_) text.replace(QRegularExpression(QStringLiteral("[\\r\\n]+")), QStringLiteral(" "));
    insertPlainText(text);
}

void WritingBox::dropEvent(QDropEvent* event) {
    dropping_ = true;
    QPlainTextEdit::dropEvent(event);
    dropping_ = false;
}

void WritingBox::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) updateGeometry();
}

}  // namespace talvora
