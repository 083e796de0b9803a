#include "platform/rich/RichDocument.h"

#include <algorithm>
#include <iterator>

#include "platform/RuntimeError.h"
#include "platform/rich/ParagraphEdit.h"
#include "platform/rich/PictureStore.h"
#include "platform/rich/RichShown.h"
#include "platform/rich/RtfReader.h"

namespace talvora {
namespace {

constexpr std::string_view ParagraphEnd = "\r\n";

void appendPlain(std::string& to, std::string_view text) {
    const std::size_t begin = to.size();
    to += text;
    std::replace(to.begin() + static_cast<std::ptrdiff_t>(begin), to.end(), PictureMark, ' ');
}

// Whether text that was read under one head would be the same under another.
bool readsTheSame(const RichHead& a, const RichHead& b) {
    return a.Base == b.Base && a.BaseParagraph == b.BaseParagraph && a.CodePage == b.CodePage &&
           a.UnicodeSkip == b.UnicodeSkip && a.Colors.size() == b.Colors.size() &&
           std::ranges::equal(a.Fonts, b.Fonts, {}, &FontEntry::Charset, &FontEntry::Charset);
}

}  // namespace

RichDocument::RichDocument() : paragraphs_(1), pictures_(std::make_unique<PictureStore>()) {}

RichDocument::~RichDocument() = default;

// ---- What it holds

const Paragraph& RichDocument::At(std::uint64_t number) const {
    if (number < first_ || number >= EndNumber()) throw RuntimeError(Fault::SubscriptOutOfRange);
    return paragraphs_[number - first_];
}

std::string RichDocument::Text() const {
    return Text(Begin(), End());
}

std::size_t RichDocument::TextLength() const {
    return PositionOf(End());
}

std::string RichDocument::Text(Place begin, Place end) const {
    begin = Within(begin);
    end = Within(end);
    std::string text;
    for (; begin.Paragraph < end.Paragraph; begin = {begin.Paragraph + 1, 0}) {
        appendPlain(text, std::string_view(At(begin.Paragraph).Text).substr(begin.Offset));
        text += ParagraphEnd;
    }
    if (begin < end)
        appendPlain(
            text, std::string_view(At(begin.Paragraph).Text).substr(begin.Offset, end.Offset - begin.Offset));
    return text;
}

Place RichDocument::End() const {
    return {EndNumber() - 1, static_cast<std::uint32_t>(paragraphs_.back().Text.size())};
}

Place RichDocument::PlaceAt(std::size_t position) const {
    std::uint64_t number = first_;
    for (const Paragraph& paragraph : paragraphs_) {
        const std::size_t size = paragraph.Text.size();
        if (position < size + ParagraphEnd.size())
            return {number, static_cast<std::uint32_t>(std::min(position, size))};
        position -= size + ParagraphEnd.size();
        ++number;
    }
    return End();
}

std::size_t RichDocument::PositionOf(Place place) const {
    place = Within(place);
    std::size_t position = place.Offset;
    for (std::uint64_t number = first_; number < place.Paragraph; ++number)
        position += paragraphs_[number - first_].Text.size() + ParagraphEnd.size();
    return position;
}

Place RichDocument::Within(Place place) const {
    if (place.Paragraph < first_) return Begin();
    if (place.Paragraph >= EndNumber()) return End();
    const std::size_t size = At(place.Paragraph).Text.size();
    return {place.Paragraph, static_cast<std::uint32_t>(std::min<std::size_t>(place.Offset, size))};
}

// ---- Whole documents

void RichDocument::Read(std::string_view rtf) {
    if (!isRtf(rtf)) return ReadPlain(rtf);
    std::deque<Paragraph> paragraphs;
    RichHead head = readRtf(rtf, *pictures_, paragraphs);
    replaceAll(std::move(head), std::move(paragraphs));
}

void RichDocument::ReadPlain(std::string_view text) {
    auto read = plainParagraphs(text, head_.Base, head_.BaseParagraph);
    replaceAll(head_, {std::make_move_iterator(read.begin()), std::make_move_iterator(read.end())});
}

void RichDocument::replaceAll(RichHead head, std::deque<Paragraph> paragraphs) {
    forgetShown();
    const std::uint64_t oldEnd = EndNumber();
    const bool sameHead = head == head_;
    head_ = std::move(head);
    paragraphs_ = std::move(paragraphs);
    raiseChange(first_, oldEnd);
    if (!sameHead) HeadChanged.raise();
}

void RichDocument::forgetShown() {
    shown_.reset();
}

// From `first` to the end all may be others.
void RichDocument::raiseChange(std::uint64_t first, std::uint64_t oldEnd) {
    Changed.raise({first, oldEnd - first, EndNumber() - first});
}

// ---- Heads, bodies and tails

// After each event the handlers may have changed the document, or shown something else.
void RichDocument::Show(std::string_view head, const RichBody& body, std::string_view tail) {
    bool headChanged = false;
    bool goesOn = shown_ != nullptr && shown_->Continues(body);
    if (!shown_) shown_ = std::make_unique<RichShown>(paragraphs_, first_, *pictures_);
    if (!shown_->HeadIs(head)) {
        RichHead read = readRtfHead(head);
        headChanged = read != head_;
        goesOn = goesOn && readsTheSame(read, head_);
        head_ = std::move(read);
        shown_->SetHead(head, head_);
    }
    if (goesOn) {
        showNew(body, tail);
    } else {
        const std::uint64_t oldEnd = EndNumber();
        shown_->ReadAnew(body, tail);
        raiseChange(first_, oldEnd);
    }
    if (headChanged) HeadChanged.raise();
}

void RichDocument::showNew(const RichBody& body, std::string_view tail) {
    const std::uint64_t dropped = shown_->DropParagraphs(body);
    if (dropped != 0) Dropped.raise(dropped);
    if (!shown_) return;
    const DocumentChange front = shown_->MendFront();
    if (front.OldCount != 0) Changed.raise(front);
    if (!shown_) return;
    const std::uint64_t oldEnd = EndNumber();
    const std::uint64_t changed = shown_->ReadNew(body, tail);
    if (changed < EndNumber()) raiseChange(changed, oldEnd);
}

}  // namespace talvora
