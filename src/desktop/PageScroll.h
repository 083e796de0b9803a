#pragma once
// Which part of a page a window of some height shows. What is remembered is the row on top and how much of it
// is hidden, so that nothing moves under the reader's eyes while rows come, go or turn out higher than they
// were estimated. Positions are pixels, the page's margins included.

#include <cstdint>
#include <optional>
#include <vector>

#include "desktop/RichPage.h"

namespace talvora {

class PageScroll {
  public:
    explicit PageScroll(RichPage& page) : page_(page) {}

    static constexpr int Margin = 8;

    void setHeight(int height) { height_ = height; }
    int Height() const { return height_; }

    // The window shows the end and goes with it, until the reader moves away from the end.
    void follow() { follows_ = true; }
    void toBegin();
    void scrollBy(std::int64_t pixels);
    void scrollTo(std::int64_t position);
    // Moves as little as is needed for the place to be seen.
    void reveal(Place place);

    // Lays out what is in sight and corrects the place; with `hold` it doesn't go with the end just now.
    void settle(bool hold = false);

    // As of the last `settle`.
    struct Visible {
        std::uint64_t Number = 0;
        int Top = 0;  // in the window
    };
    const std::vector<Visible>& Rows() const { return visible_; }
    std::int64_t Position() const;
    std::int64_t MaxPosition() const;
    bool AtEnd() const { return Position() >= MaxPosition(); }
    // The place nearest to a point of the window; x from the text's left edge.
    Place placeAt(QPointF point);
    // In the window; nothing for a row that isn't in sight.
    std::optional<QRectF> caretRect(Place place);

  private:
    void showEnd();
    void normalize();
    bool fill();

    RichPage& page_;
    int height_ = 100;
    bool follows_ = false;
    std::uint64_t top_ = 0;
    std::int64_t offset_ =
        -Margin;  // how much of the top row is hidden; the margin above the first row is -Margin
    std::vector<Visible> visible_;
};

}  // namespace talvora
