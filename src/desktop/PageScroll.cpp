#include "desktop/PageScroll.h"

#include <algorithm>

namespace talvora {

void PageScroll::toBegin() {
    follows_ = false;
    top_ = page_.Rows().FirstNumber();
    offset_ = -Margin;
}

void PageScroll::scrollBy(std::int64_t pixels) {
    if (pixels == 0) return;
    follows_ = false;
    offset_ += pixels;
    settle();
    follows_ = AtEnd() && pixels > 0;
}

void PageScroll::scrollTo(std::int64_t position) {
    if (position == Position()) return;
    const bool down = position > Position();
    follows_ = false;
    top_ = page_.Rows().RowAt(position - Margin);
    offset_ = position - Margin - page_.Rows().TopOf(top_);
    settle();
    follows_ = AtEnd() && down;
}

void PageScroll::reveal(Place place) {
    const QRectF caret = page_.caretRect(place);
    const auto top = static_cast<std::int64_t>(caret.top());
    const auto bottom = static_cast<std::int64_t>(caret.bottom());
    const std::optional<QRectF> seen = caretRect(place);
    if (seen && seen->top() >= 0 && seen->bottom() <= height_) return;
    // What doesn't fit is shown by its lower edge, where the caret's letter is.
    const bool tooTall = bottom - top + Margin > height_;
    if (seen && tooTall && seen->bottom() >= 0 && seen->bottom() <= height_) return;
    const bool above = tooTall ? false : seen ? seen->top() < 0 : place.Paragraph <= top_;
    follows_ = false;
    top_ = place.Paragraph;
    offset_ = above ? top - Margin : bottom + Margin - height_;
    settle();
}

std::int64_t PageScroll::Position() const {
    const RowCache& rows = page_.Rows();
    return Margin + rows.TopOf(std::clamp(top_, rows.FirstNumber(), rows.EndNumber())) + offset_;
}

std::int64_t PageScroll::MaxPosition() const {
    return std::max<std::int64_t>(0, page_.Rows().Total() + 2LL * Margin - height_);
}

// Brings the hidden part of the top row between 0 and its height, laying out what is passed over.
void PageScroll::normalize() {
    const RowCache& rows = page_.Rows();
    if (top_ < rows.FirstNumber()) {
        top_ = rows.FirstNumber();
        offset_ = 0;
    }
    if (top_ >= rows.EndNumber()) {
        top_ = rows.EndNumber() - 1;
        offset_ = 0;
    }
    while (offset_ < 0 && top_ > rows.FirstNumber()) offset_ += page_.height(--top_);
    if (top_ == rows.FirstNumber()) offset_ = std::max<std::int64_t>(offset_, -Margin);
    while (offset_ >= page_.height(top_) && top_ + 1 < rows.EndNumber()) offset_ -= page_.height(top_++);
}

// Collects the rows in sight. False if the page ends above the window's lower edge.
bool PageScroll::fill() {
    visible_.clear();
    std::int64_t y = -offset_;
    for (std::uint64_t number = top_; number < page_.Rows().EndNumber() && y < height_; ++number) {
        visible_.push_back({number, static_cast<int>(y)});
        y += page_.height(number);
    }
    const bool reachesEnd = visible_.empty() || visible_.back().Number + 1 == page_.Rows().EndNumber();
    return !reachesEnd || y + Margin >= height_;
}

void PageScroll::showEnd() {
    const RowCache& rows = page_.Rows();
    std::int64_t above = Margin;
    top_ = rows.EndNumber();
    while (top_ > rows.FirstNumber() && above < height_) above += page_.height(--top_);
    offset_ = above - height_;
    if (offset_ < 0) offset_ = -Margin;  // all of it fits, and begins on top
}

void PageScroll::settle(bool hold) {
    if (page_.Rows().FirstNumber() == page_.Rows().EndNumber()) {
        visible_.clear();
        return;
    }
    if (follows_ && !hold) showEnd();
    normalize();
    if (!fill()) {
        showEnd();
        fill();
    }
    if (!visible_.empty()) page_.keepLayouts(visible_.front().Number, visible_.back().Number + 1);
}

Place PageScroll::placeAt(QPointF point) {
    if (visible_.empty()) return page_.Document().Begin();
    const auto behind = std::find_if(visible_.begin(), visible_.end(),
                                     [&](const Visible& row) { return row.Top > point.y(); });
    const Visible& row = behind == visible_.begin() ? visible_.front() : *(behind - 1);
    return page_.placeAt(row.Number, point - QPointF(0, row.Top));
}

std::optional<QRectF> PageScroll::caretRect(Place place) {
    for (const Visible& row : visible_) {
        if (row.Number == place.Paragraph) return page_.caretRect(place).translated(0, row.Top);
    }
    return std::nullopt;
}

}  // namespace talvora
