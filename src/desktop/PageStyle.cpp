#include "desktop/PageStyle.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "desktop/FontMap.h"
#include "desktop/QtText.h"

namespace talvora {

namespace {

// Documents say 8.5 points and mean text that is easy to read on the screens of their time.
constexpr double Readable = 1.15;
constexpr double LineSpacing = 1.15;
constexpr std::size_t MaxFormats = 4096;
constexpr int MinPicture = 4;

std::uint64_t keyOf(const CharFormat& format) {
    std::uint64_t key = format.Color;
    key = key << 16 | format.Font;
    key = key << 16 | format.HalfPoints;
    return key << 4 | (format.Bold ? 8U : 0U) | (format.Italic ? 4U : 0U) | (format.Underline ? 2U : 0U) |
           (format.StrikeThru ? 1U : 0U);
}

}  // namespace

void PageStyle::setScale(double zoom, int dpi) {
    pointPixels_ = zoom * Readable * dpi / 72;
    twipPixels_ = zoom * dpi / 1440;
    headChanged();
}

void PageStyle::headChanged() {
    formats_.clear();
    pictureFormats_.clear();
    metrics_.fill({});
}

QColor PageStyle::color(std::uint16_t index) const {
    if (index == 0 || index >= head_.Colors.size()) return Qt::black;
    const Colour colour = head_.Colors[index];
    return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
            static_cast<int>(colour >> 16 & 0xFF)};
}

QColor PageStyle::highlight(const CharFormat& format) const {
    if (format.Highlight == 0 || format.Highlight >= head_.Colors.size()) return {};
    const QColor behind = color(format.Highlight);
    return behind == Qt::white ? QColor() : behind;
}

QFont PageStyle::font(const CharFormat& format) const {
    const std::size_t index = format.Font < head_.Fonts.size() ? format.Font : 0;
    QFont font;
    font.setFamilies(fontFamiliesFor(head_.Fonts.empty() ? QString() : toQString(head_.Fonts[index].Name)));
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(format.HalfPoints * pointPixels_ / 2))));
    font.setBold(format.Bold);
    font.setItalic(format.Italic);
    return font;
}

const QTextCharFormat& PageStyle::format(const CharFormat& format) {
    if (formats_.size() >= MaxFormats) formats_.clear();
    const auto [place, isNew] = formats_.try_emplace(keyOf(format));
    if (isNew) {
        QTextCharFormat& made = place->second;
        made.setFont(font(format));
        made.setForeground(color(format.Color));
        made.setFontUnderline(format.Underline);
        made.setFontStrikeOut(format.StrikeThru);
    }
    return place->second;
}

const QTextCharFormat& PageStyle::pictureFormat(const CharFormat& format, int width) {
    CharFormat plain = format;
    plain.Underline = plain.StrikeThru = false;
    if (pictureFormats_.size() >= MaxFormats) pictureFormats_.clear();
    const auto [place, isNew] = pictureFormats_.try_emplace({keyOf(plain), width});
    if (isNew) {
        QTextCharFormat& made = place->second;
        made = this->format(plain);
        made.setFontLetterSpacingType(QFont::AbsoluteSpacing);
        const double blank = QFontMetricsF(made.font()).horizontalAdvance(QChar(QChar::Nbsp));
        made.setFontLetterSpacing(width - blank);
    }
    return place->second;
}

int PageStyle::pixels(int twips) const {
    return static_cast<int>(std::lround(twips * twipPixels_));
}

QSize PageStyle::pictureSize(const Picture& picture, int maxWidth) const {
    double width = std::max(1.0, picture.WidthTwips * twipPixels_);
    double height = std::max(1.0, picture.HeightTwips * twipPixels_);
    if (width > maxWidth) {
        height = height * maxWidth / width;
        width = maxWidth;
    }
    return QSize(static_cast<int>(std::lround(width)), static_cast<int>(std::lround(height)))
        .expandedTo({MinPicture, MinPicture});
}

int PageStyle::lineHeight(double ascent, double descent) {
    return std::max(1, static_cast<int>(std::lround((ascent + descent) * LineSpacing)));
}

const PageStyle::Metrics& PageStyle::metrics(int halfPoints) {
    Metrics& known = metrics_[static_cast<std::size_t>(std::clamp(halfPoints, 0, MaxHalfPoints))];
    if (known.LineHeight == 0) {
        CharFormat format = head_.Base;
        format.HalfPoints = static_cast<std::uint16_t>(std::clamp(halfPoints, MinHalfPoints, MaxHalfPoints));
        const QFontMetricsF metrics(font(format));
        known.LineHeight = lineHeight(metrics.ascent(), metrics.descent());
        known.AverageWidth =
            static_cast<float>(metrics.horizontalAdvance("the quick brown fox jumps over the lazy dog") / 43);
    }
    return known;
}

}  // namespace talvora
