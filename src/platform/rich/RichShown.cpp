#include "platform/rich/RichShown.h"

#include <algorithm>

#include "platform/rich/PictureStore.h"

namespace talvora {

RichShown::RichShown(std::deque<Paragraph>& paragraphs, std::uint64_t& first, PictureStore& pictures)
    : paragraphs_(paragraphs), first_(first), pictures_(pictures) {}

RichShown::~RichShown() = default;

bool RichShown::Continues(const RichBody& body) const {
    const bool untouched = body.FirstNumber() == fragment_ && body.FirstCut() == cut_;
    return identity_ == body.Identity() && (untouched || body.FirstNumber() < endNumber());
}

void RichShown::SetHead(std::string_view text, const RichHead& head) {
    headText_ = text;
    base_ = head.BaseParagraph;
    reader_ = std::make_unique<RtfFragmentReader>(head, pictures_);
}

void RichShown::ReadAnew(const RichBody& body, std::string_view tail) {
    identity_ = body.Identity();
    fragment_ = body.FirstNumber();
    cut_ = body.FirstCut();
    endings_.clear();
    shift_ = 0;
    mending_.reset();
    paragraphs_.clear();
    paragraphs_.emplace_back().Format = base_;
    readFragments(body);
    readTail(tail);
}

Place RichShown::placeOf(const Ending& ending) const {
    return {
        first_ + static_cast<std::uint32_t>(ending.Paragraph + shift_ - static_cast<std::uint32_t>(first_)),
        ending.Offset};
}

Place RichShown::bodyEnd() const {
    return endings_.empty() ? Place{first_, 0} : placeOf(endings_.back());
}

// ---- At the end

std::uint64_t RichShown::ReadNew(const RichBody& body, std::string_view tail) {
    if (endNumber() == body.EndNumber() && tail == tail_) return first_ + paragraphs_.size();
    takeTailOff();
    const std::uint64_t changed = bodyEnd().Paragraph;
    readFragments(body);
    readTail(tail);
    return changed;
}

void RichShown::readFragments(const RichBody& body) {
    while (endNumber() < body.EndNumber()) {
        reader_->Read(body.Fragment(endNumber()), paragraphs_);
        const auto last = static_cast<std::uint32_t>(first_ + paragraphs_.size() - 1);
        endings_.push_back({last - shift_, static_cast<std::uint32_t>(paragraphs_.back().Text.size())});
    }
}

void RichShown::readTail(std::string_view tail) {
    tail_ = tail;
    const std::size_t open = paragraphs_.size() - 1;
    const std::size_t pictures = paragraphs_[open].Pictures.size();
    openFormat_ = paragraphs_[open].Format;
    reader_->Read(tail, paragraphs_);
    tailPictures_ = paragraphs_[open].Pictures.size() - pictures;
}

void RichShown::takeTailOff() {
    const Place end = bodyEnd();
    while (paragraphs_.size() > end.Paragraph - first_ + 1) paragraphs_.pop_back();
    Paragraph& open = paragraphs_.back();
    open.Text.resize(end.Offset);
    while (!open.Runs.empty() && open.Runs.back().Begin >= end.Offset) open.Runs.pop_back();
    open.Pictures.resize(open.Pictures.size() - tailPictures_);
    open.Format = openFormat_;
}

// ---- At the front

std::uint64_t RichShown::DropParagraphs(const RichBody& body) {
    const std::uint64_t gone = body.FirstNumber() - fragment_;
    if (gone == 0 && body.FirstCut() == cut_) return 0;
    fragment_ += gone;
    cut_ = body.FirstCut();
    // Where what is still there begins; of a cut fragment, where its text ended, for the rest is read anew.
    Place begin = placeOf(endings_[cut_ == 0 ? gone - 1 : gone]);
    endings_.erase(endings_.begin(), endings_.begin() + static_cast<std::ptrdiff_t>(gone));
    // The usual cut: of a line end and a blank, the blank is left, which begins a paragraph anyway.
    const bool usual = cut_ == 6 && body.Fragment(fragment_) == " ";
    if (usual) begin.Offset = 0;
    const bool reads = cut_ != 0 && !usual;
    std::uint64_t paragraphs = begin.Paragraph - first_;
    if (reads || begin.Offset != 0) {
        std::deque<Paragraph>& by = mending_.emplace(Mending{begin, std::deque<Paragraph>(1)}).By;
        by.front().Format = base_;
        if (reads) reader_->Read(body.Fragment(fragment_), by);
        paragraphs -= std::min<std::uint64_t>(paragraphs, by.size() - 1);
    }
    paragraphs_.erase(paragraphs_.begin(), paragraphs_.begin() + static_cast<std::ptrdiff_t>(paragraphs));
    first_ += paragraphs;
    return paragraphs;
}

DocumentChange RichShown::MendFront() {
    DocumentChange change{first_, 0, 0};
    if (!mending_) return change;
    Mending mending = std::move(*mending_);
    mending_.reset();
    const std::uint64_t whole = mending.End.Paragraph - first_;
    change.OldCount = whole + 1;
    change.NewCount = mending.By.size();
    // From here on the old front counts as the first paragraph; what is put before it moves it on.
    paragraphs_.erase(paragraphs_.begin(), paragraphs_.begin() + static_cast<std::ptrdiff_t>(whole));
    shift_ -= static_cast<std::uint32_t>(whole);
    eraseFront(mending.End.Offset);
    joinFront(std::move(mending.By.back()));
    mending.By.pop_back();
    shift_ += static_cast<std::uint32_t>(mending.By.size());
    paragraphs_.insert(paragraphs_.begin(), std::make_move_iterator(mending.By.begin()),
                       std::make_move_iterator(mending.By.end()));
    return change;
}

// Erases the beginning of the first paragraph, which belongs to fragments that are gone.
void RichShown::eraseFront(std::uint32_t offset) {
    if (offset == 0) return;
    Paragraph& front = paragraphs_.front();
    const auto marks = std::count(front.Text.begin(), front.Text.begin() + offset, PictureMark);
    front.Pictures.erase(front.Pictures.begin(), front.Pictures.begin() + marks);
    front.Text.erase(0, offset);
    auto run = std::ranges::upper_bound(front.Runs, offset, {}, &Run::Begin);
    front.Runs.erase(front.Runs.begin(), front.Text.empty() ? run : std::prev(run));
    for (Run& left : front.Runs) left.Begin -= std::min(left.Begin, offset);
    for (Ending& ending : endings_) {
        if (placeOf(ending).Paragraph != first_) break;
        ending.Offset -= std::min(ending.Offset, offset);
    }
    if (front.Text.empty()) front.Format = base_;
    if (bodyEnd() == Place{first_, 0}) openFormat_ = base_;
}

// Puts text before the first paragraph's.
void RichShown::joinFront(Paragraph before) {
    const auto size = static_cast<std::uint32_t>(before.Text.size());
    if (size == 0) return;
    if (bodyEnd() == Place{first_, 0}) openFormat_ = before.Format;
    Paragraph& front = paragraphs_.front();
    if (!front.Text.empty()) before.Format = front.Format;
    before.Text += front.Text;
    for (const Run& run : front.Runs)
        if (run.Begin != 0 || before.Runs.back().Format != run.Format)
            before.Runs.push_back({run.Begin + size, run.Format});
    std::ranges::move(front.Pictures, std::back_inserter(before.Pictures));
    front = std::move(before);
    for (Ending& ending : endings_) {
        if (placeOf(ending).Paragraph != first_) break;
        ending.Offset += size;
    }
}

}  // namespace talvora
