#include "desktop/RichPage.h"

#include <algorithm>
#include <cmath>

namespace talvora {

namespace {

constexpr std::uint64_t NearSight = 24;  // rows above and below those in sight that stay laid out

}  // namespace

RichPage::RichPage(const RichDocument& document) : document_(document), style_(document.Head()) {
    estimateAll();
}

void RichPage::estimateAll() {
    layouts_.clear();
    rows_.clear(document_.FirstNumber());
    for (std::uint64_t number = document_.FirstNumber(); number < document_.EndNumber(); ++number) {
        rows_.append(estimate(number));
    }
}

int RichPage::estimate(std::uint64_t number) {
    // A document may tell of several changes after the last of them: what has gone already is dropped soon.
    if (number < document_.FirstNumber() || number >= document_.EndNumber()) return 1;
    const Paragraph& paragraph = document_.At(number);
    const int size =
        paragraph.Runs.empty() ? style_.Base().HalfPoints : paragraph.Runs.front().Format.HalfPoints;
    const PageStyle::Metrics& metrics = style_.metrics(size);
    double length = static_cast<double>(paragraph.Text.size()) * metrics.AverageWidth;
    int highest = metrics.LineHeight;
    for (const auto& picture : paragraph.Pictures) {
        const QSize shown = style_.pictureSize(*picture, std::max(1, width_));
        length += shown.width();
        highest = std::max(highest, shown.height());
    }
    const auto wrapped = static_cast<std::int64_t>(length / std::max(1, width_));
    const auto breaks = std::count(paragraph.Text.begin(), paragraph.Text.end(), LineBreak);
    const std::int64_t height = (wrapped + breaks) * metrics.LineHeight + highest +
                                std::max(0, style_.pixels(paragraph.Format.SpaceBefore)) +
                                std::max(0, style_.pixels(paragraph.Format.SpaceAfter));
    return static_cast<int>(std::clamp<std::int64_t>(height, 1, 1 << 30));
}

void RichPage::changed(const DocumentChange& change) {
    heights_.clear();
    for (std::uint64_t i = 0; i < change.NewCount; ++i) heights_.push_back(estimate(change.First + i));
    if (rows_.Total() == 0 && change.First != rows_.FirstNumber()) rows_.clear(change.First);
    rows_.replace(change.First, change.OldCount, heights_);
    if (heights_.capacity() > 4096) heights_ = {};

    auto at = layouts_.lower_bound(change.First);
    while (at != layouts_.end() && at->first < change.First + change.OldCount) at = layouts_.erase(at);
    if (change.NewCount == change.OldCount || at == layouts_.end()) return;
    decltype(layouts_) moved;
    while (at != layouts_.end()) {
        auto node = layouts_.extract(at++);
        node.key() += change.NewCount - change.OldCount;
        moved.insert(moved.end(), std::move(node));
    }
    layouts_.merge(moved);
}

void RichPage::dropped(std::uint64_t count) {
    rows_.dropFront(count);
    while (!layouts_.empty() && layouts_.begin()->first < rows_.FirstNumber())
        layouts_.erase(layouts_.begin());
}

void RichPage::headChanged() {
    style_.headChanged();
    estimateAll();
}

void RichPage::setWidth(int width) {
    if (width == width_) return;
    width_ = width;
    estimateAll();
}

void RichPage::setScale(double zoom, int dpi) {
    if (zoom == zoom_ && dpi == dpi_) return;
    zoom_ = zoom;
    dpi_ = dpi;
    style_.setScale(zoom, dpi);
    estimateAll();
}

void RichPage::setPreedit(const Preedit& preedit, std::uint64_t paragraph) {
    layouts_.erase(preeditRow_);
    layouts_.erase(paragraph);
    preedit_ = preedit;
    preeditRow_ = paragraph;
}

const ParagraphLayout& RichPage::layout(std::uint64_t number) {
    auto& place = layouts_[number];
    if (place == nullptr) {
        const bool composing = !preedit_.empty() && number == preeditRow_;
        try {
            place = std::make_unique<ParagraphLayout>(document_.At(number), style_, width_,
                                                      composing ? &preedit_ : nullptr);
        } catch (...) {
            layouts_.erase(number);
            throw;
        }
        rows_.setHeight(number, place->Height());
    }
    return *place;
}

void RichPage::keepLayouts(std::uint64_t begin, std::uint64_t end) {
    begin -= std::min(begin, NearSight);
    end += NearSight;
    layouts_.erase(layouts_.begin(), layouts_.lower_bound(begin));
    layouts_.erase(layouts_.lower_bound(end), layouts_.end());
}

QRectF RichPage::caretRect(Place place) {
    return layout(place.Paragraph).caretRect(place.Offset);
}

Place RichPage::placeAt(std::uint64_t number, QPointF point) {
    return {number, layout(number).offsetAt(point)};
}

Place RichPage::lineBegin(Place place) {
    return {place.Paragraph, layout(place.Paragraph).lineBegin(place.Offset)};
}

Place RichPage::lineEnd(Place place) {
    return {place.Paragraph, layout(place.Paragraph).lineEnd(place.Offset)};
}

Place RichPage::lineUp(Place place, double x) {
    const ParagraphLayout& here = layout(place.Paragraph);
    if (here.hasLineAbove(place.Offset)) {
        return placeAt(place.Paragraph, {x, here.caretRect(place.Offset).top() - 1});
    }
    if (place.Paragraph <= rows_.FirstNumber()) return place;
    const std::uint64_t above = place.Paragraph - 1;
    return placeAt(above, {x, layout(above).Lines().back().Top + 0.5});
}

Place RichPage::lineDown(Place place, double x) {
    const ParagraphLayout& here = layout(place.Paragraph);
    if (here.hasLineBelow(place.Offset)) {
        return placeAt(place.Paragraph, {x, here.caretRect(place.Offset).bottom() + 1});
    }
    if (place.Paragraph + 1 >= rows_.EndNumber()) return place;
    return placeAt(place.Paragraph + 1, {x, layout(place.Paragraph + 1).Lines().front().Top + 0.5});
}

}  // namespace talvora
