#include "desktop/LinkNote.h"

#include <QEvent>
#include <QTextCursor>
#include <algorithm>

#include "chat/Links.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view BetweenWords = " \t\r\n";

}  // namespace

LinkNote::LinkNote(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    // A link's address is its place among the links: what a stranger wrote is nowhere taken for an address.
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& place) {
        const auto at = static_cast<std::size_t>(place.toString().toUInt());
        if (at >= links_.size()) return;
        const std::string link = links_[at];
        LinkClicked.raise(link);
    });
}

void LinkNote::setNote(const std::string& text) {
    text_ = text;
    links_.clear();
    clear();
    QTextCursor at(document());
    const std::string plain = Replace(text, "\r\n", "\n");
    for (std::size_t begin = 0; begin < plain.size();) {
        const std::size_t word = std::min(plain.find_first_of(BetweenWords, begin), plain.size());
        addWord(at, plain.substr(begin, word - begin));
        const std::size_t next = std::min(plain.find_first_not_of(BetweenWords, word), plain.size());
        at.insertText(toQString(plain.substr(word, next - word)), QTextCharFormat());
        begin = next;
    }
    moveCursor(QTextCursor::Start);
}

// The colour of links is the desktop's.
void LinkNote::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) setNote(std::string(text_));
}

void LinkNote::addWord(QTextCursor& at, const std::string& word) {
    QTextCharFormat format;
    const std::string link = LinkIn(word, {0, word.size()});
    if (!link.empty()) {
        format.setAnchor(true);
        format.setAnchorHref(QString::number(links_.size()));
        format.setForeground(theme::newsColor(palette()));
        format.setFontUnderline(true);
        links_.push_back(link);
    }
    at.insertText(toQString(word), format);
}

}  // namespace talvora
