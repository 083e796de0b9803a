#include "desktop/WordOffers.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <utility>

#include "desktop/QtText.h"

namespace talvora {

namespace {

constexpr int MostOffers = 8;  // in sight

}  // namespace

WordOffers::WordOffers(QPlainTextEdit& box, Source source)
    : box_(box), source_(std::move(source)), completer_(&words_) {
    completer_.setWidget(&box_);
    completer_.setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer_.setMaxVisibleItems(MostOffers);
    QObject::connect(&completer_, qOverload<const QString&>(&QCompleter::activated), &completer_,
                     [this](const QString& word) { take(word); });
}

void WordOffers::edited() {
    const QString text = box_.toPlainText();
    QStringList words;
    if (box_.hasFocus() && box_.textCursor().atEnd()) {
        for (const std::string& word : source_(fromQString(text))) words += toQString(word);
    }
    if (words.isEmpty()) {
        if (completer_.popup()->isVisible()) completer_.popup()->hide();
        return;
    }
    words_.setStringList(words);
    QRect at = box_.cursorRect();
    at.setLeft(0);
    at.setWidth(completer_.popup()->sizeHintForColumn(0) +
                completer_.popup()->verticalScrollBar()->sizeHint().width());
    completer_.complete(at);
    // The toolkit has walked to the first.
    completer_.popup()->setCurrentIndex({});
}

bool WordOffers::wants(const QKeyEvent& event) const {
    const QAbstractItemView* list = completer_.popup();
    if (!list->isVisible()) return false;
    const bool chooses =
        event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter || event.key() == Qt::Key_Tab;
    return chooses && list->currentIndex().isValid();
}

// What is behind the word are its parameters.
void WordOffers::take(const QString& word) {
    QTextCursor cursor(box_.document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(word + QLatin1Char(' '));
}

}  // namespace talvora
