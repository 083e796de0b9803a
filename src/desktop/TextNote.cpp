#include "desktop/TextNote.h"

#include <QEvent>
#include <QScrollBar>
#include <QTextDocument>
#include <QtMath>
#include <algorithm>

namespace talvora {

namespace {

constexpr int WidestLine = 64;  // mean characters
constexpr int ShortestLine = 24;
constexpr int MostLines = 18;

}  // namespace

TextNote::TextNote(QWidget* parent) : QTextEdit(parent) {
    setReadOnly(true);
    setAcceptRichText(false);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    // It stands on the window's own ground.
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    measure();
}

void TextNote::setNote(const QString& text) {
    QString plain = text.left(Longest);
    if (text.size() > Longest) plain += QChar(0x2026);
    plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    setPlainText(plain);
    measure();
}

void TextNote::measure() {
    const QFontMetrics metrics(font());
    QTextDocument copy(toPlainText());
    copy.setDefaultFont(font());
    copy.setDocumentMargin(0);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    copy.setDefaultTextOption(option);
    const int mean = metrics.averageCharWidth();
    const int width = std::clamp(qCeil(copy.idealWidth()) + 2, ShortestLine * mean, WidestLine * mean);
    copy.setTextWidth(width);
    const int tallest = MostLines * metrics.lineSpacing();
    const int height = qCeil(copy.size().height());
    const bool scrolls = height > tallest;
    // What has to be scrolled must be reachable by keyboard.
    setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::ClickFocus);
    setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    hint_ = {width + (scrolls ? verticalScrollBar()->sizeHint().width() : 0), std::min(height, tallest)};
    updateGeometry();
}

void TextNote::changeEvent(QEvent* event) {
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) measure();
}

}  // namespace talvora
