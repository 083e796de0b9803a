#pragma once
// How a document looks at the present scale: its character formats as the toolkit's, colours, and lengths in
// pixels. It belongs to one page and follows its document's tables.

#include <QColor>
#include <QFont>
#include <QSize>
#include <QTextCharFormat>
#include <array>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>

#include "platform/rich/RichText.h"

namespace talvora {

class PageStyle {
  public:
    explicit PageStyle(const RichHead& head) : head_(head) { setScale(1.0, 96); }

    // `zoom` is the user's; `dpi` the resolution that the desktop's fonts are made for.
    void setScale(double zoom, int dpi);
    // The tables have changed.
    void headChanged();

    const QTextCharFormat& format(const CharFormat& format);
    // Of a mark in the text that takes the room of a picture.
    const QTextCharFormat& pictureFormat(const CharFormat& format, int width);
    // Not valid where there is none, or none to be seen.
    QColor highlight(const CharFormat& format) const;

    int pixels(int twips) const;
    QSize pictureSize(const Picture& picture, int maxWidth) const;
    // The height of a line whose text needs `ascent` and `descent`: a little air above and below.
    static int lineHeight(double ascent, double descent);

    struct Metrics {
        int LineHeight = 0;
        float AverageWidth = 0;  // of a character
    };
    // Of plain text of one size in the document's first font, for estimates.
    const Metrics& metrics(int halfPoints);
    const CharFormat& Base() const { return head_.Base; }

  private:
    QColor color(std::uint16_t index) const;
    QFont font(const CharFormat& format) const;

    const RichHead& head_;
    double pointPixels_ = 0;  // of a point of text
    double twipPixels_ = 0;   // of a length on the page
    std::unordered_map<std::uint64_t, QTextCharFormat> formats_;
    std::map<std::pair<std::uint64_t, int>, QTextCharFormat> pictureFormats_;
    std::array<Metrics, MaxHalfPoints + 1> metrics_;
};

}  // namespace talvora
