#include "platform/rich/RichTextBox.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/rich/ParagraphEdit.h"
#include "platform/rich/RtfWriter.h"

namespace talvora {

RichTextBox::RichTextBox(bool locked) : Locked(locked) {}

// ---- The whole document

std::string RichTextBox::TextRTF() const {
    return writeRtf(document_.Head(), document_.Copy(document_.Begin(), document_.End()));
}

void RichTextBox::SetTextRTF(std::string_view rtf) {
    document_.Read(rtf);
    wholeDocumentWritten(true);
}

void RichTextBox::ShowBody(std::string_view head, const RichBody& body, std::string_view tail) {
    document_.Show(head, body, tail);
    wholeDocumentWritten(true);
}

std::string RichTextBox::Text() const {
    return document_.Text();
}

void RichTextBox::SetText(std::string_view text) {
    const std::string before = Text();
    document_.ReadPlain(text);
    wholeDocumentWritten(Text() != before);
}

void RichTextBox::wholeDocumentWritten(bool changed) {
    undo_.Forget();
    length_.reset();
    next_.reset();
    const bool moved = put({document_.Begin(), document_.Begin()});
    if (changed) Change.raise();
    if (changed || moved) SelChange.raise();
}

// ---- The selection

Place RichTextBox::Anchor() const {
    return atEnd_ ? document_.End() : document_.Within(selection_.Anchor);
}

Place RichTextBox::Caret() const {
    return atEnd_ ? document_.End() : document_.Within(selection_.Caret);
}

std::pair<Place, Place> RichTextBox::range() const {
    return std::minmax(Anchor(), Caret());
}

bool RichTextBox::put(Selection to) {
    const bool moved = selection() != to;
    selection_ = to;
    atEnd_ = false;
    return moved;
}

void RichTextBox::select(Place anchor, Place caret) {
    if (put({document_.Within(anchor), document_.Within(caret)})) caretMoved();
}

void RichTextBox::caretMoved() {
    next_.reset();
    undo_.Close();
    SelChange.raise();
}

void RichTextBox::userSelects(Place anchor, Place caret) {
    select(anchor, caret);
}

std::size_t RichTextBox::SelStart() const {
    return document_.PositionOf(range().first);
}

std::size_t RichTextBox::SelLength() const {
    const auto [begin, end] = range();
    return begin == end ? 0 : document_.PositionOf(end) - document_.PositionOf(begin);
}

void RichTextBox::SetSelStart(std::size_t position) {
    const Place place = document_.PlaceAt(position);
    select(place, place);
}

void RichTextBox::SetSelLength(std::size_t length) {
    const Place begin = range().first;
    if (length == 0) return select(begin, begin);
    const std::size_t start = document_.PositionOf(begin);
    const std::size_t most = std::numeric_limits<std::size_t>::max() - start;
    select(begin, document_.PlaceAt(start + std::min(length, most)));
}

void RichTextBox::SetSelStartToEnd() {
    const bool moved = put({document_.End(), document_.End()});
    atEnd_ = true;
    if (moved) caretMoved();
}

std::string RichTextBox::SelText() const {
    const auto [begin, end] = range();
    return document_.Text(begin, end);
}

std::string RichTextBox::SelRTF() const {
    const auto [begin, end] = range();
    return writeRtf(document_.Head(), document_.Copy(begin, end));
}

void RichTextBox::SetSelText(std::string_view text) {
    insertPlain(text, EditKind::Other, Hand::Code);
}

void RichTextBox::SetSelRTF(std::string_view rtf) {
    insert(adopted(rtf), EditKind::Other, Hand::Code);
}

void RichTextBox::Paste(const Clipboard& clipboard) {
    insert(pastedFrom(clipboard), EditKind::Other, Hand::Code);
}

}  // namespace talvora
