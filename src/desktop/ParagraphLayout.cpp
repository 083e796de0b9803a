#include "desktop/ParagraphLayout.h"

#include <QFontMetricsF>
#include <QTextOption>
#include <algorithm>
#include <cmath>

#include "desktop/QtText.h"

namespace talvora {

namespace {

// A paragraph is laid out in stretches of so many characters, for the toolkit's cost grows faster than its
// text. A stretch begins where the last line of the one before it began, so that no joint is seen.
constexpr std::uint32_t ChunkSize = 2048;
// Each format and picture costs the toolkit many times what a character does. A paragraph that goes beyond
// this is shown with the rest in one format, and without further pictures.
constexpr qsizetype MaxRuns = 16384;
constexpr int MinLineWidth = 40;
constexpr int TabTwips = 720;
// Where the unfinished last line of a stretch is put, which the next stretch shows.
constexpr int Tallest = 1 << 28;  // pixels of a paragraph; further lines lie on one another
constexpr double OutOfSight = 1e7;

Qt::Alignment toolkitAlignment(Alignment alignment) {
    switch (alignment) {
        case Alignment::Right:
            return Qt::AlignRight;
        case Alignment::Center:
            return Qt::AlignHCenter;
        case Alignment::Justify:
            return Qt::AlignJustify;
        case Alignment::Left:
            break;
    }
    return Qt::AlignLeft;
}

}  // namespace

ParagraphLayout::ParagraphLayout(const Paragraph& paragraph, PageStyle& style, int width,
                                 const Preedit* preedit)
    : length_(static_cast<std::uint32_t>(paragraph.Text.size())) {
    if (preedit != nullptr && preedit->Offset <= length_) preedit_ = *preedit;
    QString text = toQString(paragraph.Text);
    text.replace(QChar(LineBreak), QChar(QChar::LineSeparator));
    text.replace(QChar(PictureMark), QChar(QChar::Nbsp));
    Formats formats = makeFormats(paragraph, style, width);
    if (!preedit_.empty()) addPreedit(text, formats);
    layOut(text, formats, paragraph, style, width);
}

ParagraphLayout::Formats ParagraphLayout::makeFormats(const Paragraph& paragraph, PageStyle& style,
                                                      int width) {
    Formats formats;
    const std::vector<Run>& runs = paragraph.Runs;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const bool last = i + 1 == runs.size() || formats.size() >= MaxRuns;
        const std::uint32_t end = last ? length_ : std::min(runs[i + 1].Begin, length_);
        if (const QColor behind = style.highlight(runs[i].Format); behind.isValid()) {
            highlights_.push_back({runs[i].Begin, end, behind});
        }
        addRun(paragraph, runs[i], end, formats, style, width);
        if (last) break;
    }
    return formats;
}

// The formats of a run's text and, between its stretches, of its pictures.
void ParagraphLayout::addRun(const Paragraph& paragraph, const Run& run, std::uint32_t end, Formats& formats,
                             PageStyle& style, int width) {
    std::uint32_t at = run.Begin;
    while (at < end) {
        std::size_t mark = end;
        const bool shows = pictures_.size() < paragraph.Pictures.size() && formats.size() < MaxRuns;
        if (shows) mark = std::min<std::size_t>(paragraph.Text.find(PictureMark, at), end);
        const auto stop = static_cast<std::uint32_t>(mark);
        if (stop > at)
            formats.append({static_cast<int>(at), static_cast<int>(stop - at), style.format(run.Format)});
        if (stop == end) return;
        const auto& what = paragraph.Pictures[pictures_.size()];
        const QSize size = style.pictureSize(*what, std::max(width, MinLineWidth));
        pictures_.push_back({stop, what, size});
        formats.append({static_cast<int>(stop), 1, style.pictureFormat(run.Format, size.width())});
        at = stop + 1;
    }
}

// What stands behind the composed text moves by its length.
void ParagraphLayout::addPreedit(QString& text, Formats& formats) {
    const int at = static_cast<int>(preedit_.Offset);
    const int length = static_cast<int>(preedit_.Text.size());
    text.insert(at, preedit_.Text);
    Formats moved;
    for (QTextLayout::FormatRange range : formats) {
        const int end = range.start + range.length;
        if (range.start >= at) {
            range.start += length;
        } else if (end > at) {
            moved.append({at + length, end - at, range.format});
            range.length = at - range.start;
        }
        moved.append(range);
    }
    const QTextCharFormat beside = formats.isEmpty() ? QTextCharFormat() : formats.first().format;
    QTextCharFormat composed = beside;
    for (const auto& range : formats) {
        if (range.start < at && at <= range.start + range.length) composed = range.format;
    }
    composed.setFontUnderline(true);
    moved.append({at, length, composed});
    for (QTextLayout::FormatRange range : preedit_.Formats) {
        range.start = std::clamp(range.start, 0, length);
        range.length = std::clamp(range.length, 0, length - range.start);
        range.start += at;
        moved.append(range);
    }
    std::stable_sort(moved.begin(), moved.end(),
                     [](const auto& a, const auto& b) { return a.start < b.start; });
    formats = moved;
    const auto shift = [&](std::uint32_t& place) {
        if (place >= preedit_.Offset) place += static_cast<std::uint32_t>(length);
    };
    for (Shown& picture : pictures_) shift(picture.At);
    for (Stripe& stripe : highlights_) {
        shift(stripe.Begin);
        if (stripe.End > preedit_.Offset) stripe.End += static_cast<std::uint32_t>(length);
    }
}

void ParagraphLayout::layOut(const QString& text, const Formats& formats, const Paragraph& paragraph,
                             PageStyle& style, int width) {
    const auto length = static_cast<std::uint32_t>(text.size());
    const QTextCharFormat& first =
        style.format(paragraph.Runs.empty() ? style.Base() : paragraph.Runs.front().Format);
    const QFontMetricsF metrics(first.font());
    textHeight_ = metrics.ascent() + metrics.descent();
    height_ = std::max<int>(0, style.pixels(paragraph.Format.SpaceBefore));
    QTextOption option(toolkitAlignment(paragraph.Format.Align));
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTabStopDistance(std::max(1, style.pixels(TabTwips)));
    if (const int hanging = -style.pixels(paragraph.Format.FirstIndent); hanging > 0) {
        option.setTabs({QTextOption::Tab(hanging, QTextOption::LeftTab)});  // to where the other lines begin
    }
    std::uint32_t begin = 0;
    for (bool last = false; !last;) {
        const std::uint32_t part = std::min(ChunkSize, length - begin);
        last = begin + part == length;
        addChunk(text, formats, begin, part);
        QTextLayout& layout = *chunks_.back().Text;
        layout.setFont(first.font());
        layout.setTextOption(option);
        begin = breakLines(paragraph, style, width, last);
    }
    height_ += std::max<int>(0, style.pixels(paragraph.Format.SpaceAfter));
    height_ = std::max(1, height_);
}

void ParagraphLayout::addChunk(const QString& text, const Formats& formats, std::uint32_t begin,
                               std::uint32_t length) {
    const int from = static_cast<int>(begin);
    const int to = static_cast<int>(begin + length);
    Formats inside;
    auto next = std::partition_point(formats.begin(), formats.end(),
                                     [&](const auto& range) { return range.start + range.length <= from; });
    for (; next != formats.end() && next->start < to; ++next) {
        QTextLayout::FormatRange range = *next;
        const int end = std::min(range.start + range.length, to);
        range.start = std::max(range.start, from);
        if (range.start >= end) continue;
        range.length = end - range.start;
        range.start -= from;
        inside.append(range);
    }
    auto layout = std::make_unique<QTextLayout>(text.mid(from, to - from));
    layout->setFormats(inside);
    layout->setCacheEnabled(true);
    chunks_.push_back({begin, height_, std::move(layout)});
}

// Breaks the last stretch into lines and returns where the next one begins.
std::uint32_t ParagraphLayout::breakLines(const Paragraph& paragraph, const PageStyle& style, int width,
                                          bool last) {
    Chunk& chunk = chunks_.back();
    QTextLayout& layout = *chunk.Text;
    const auto chunkEnd = chunk.Begin + static_cast<std::uint32_t>(layout.text().size());
    const std::size_t before = lines_.size();
    const int left = style.pixels(paragraph.Format.LeftIndent);
    const int right = style.pixels(paragraph.Format.RightIndent);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        const int first = lines_.empty() ? style.pixels(paragraph.Format.FirstIndent) : 0;
        const int x = std::clamp(left + first, 0, std::max(0, width - MinLineWidth));
        line.setLineWidth(std::max(MinLineWidth, width - x - std::max(0, right)));
        height_ += place(line, chunk.Begin, height_, x);
    }
    std::uint32_t next = chunkEnd;
    if (!last && lines_.size() > before + 1) {  // the next stretch begins with this line
        next = lines_.back().Begin;
        height_ -= lines_.back().Height;
        layout.lineAt(lines_.back().Index).setPosition({0, OutOfSight});
        lines_.pop_back();
    }
    layout.endLayout();
    return next;
}

// Gives a line its place and returns its height. Pictures stand on the base line; small ones hang a little
// below it, so that they stand level with the text.
int ParagraphLayout::place(QTextLine line, std::uint32_t begin, int top, double x) {
    Line made;
    made.Chunk = chunks_.size() - 1;
    made.Index = line.lineNumber();
    made.Begin = begin + static_cast<std::uint32_t>(line.textStart());
    made.End = made.Begin + static_cast<std::uint32_t>(line.textLength());
    double ascent = line.ascent();
    double descent = line.descent();
    auto picture = std::lower_bound(pictures_.begin(), pictures_.end(), made.Begin,
                                    [](const Shown& a, std::uint32_t at) { return a.At < at; });
    for (; picture != pictures_.end() && picture->At < made.End; ++picture) {
        const double drop = dropOf(*picture);
        ascent = std::max(ascent, picture->Size.height() - drop);
        descent = std::max(descent, drop);
    }
    made.Top = top;
    made.Height = std::max(PageStyle::lineHeight(line.ascent(), line.descent()),
                           static_cast<int>(std::ceil(ascent + descent)) + 1);
    const double baseline = std::round((made.Height - ascent - descent) / 2 + ascent);
    made.Baseline = static_cast<float>(top + baseline);
    line.setPosition({x, top - chunks_.back().Top + baseline - line.ascent()});
    lines_.push_back(made);
    return std::min(made.Height, std::max(0, Tallest - height_));
}

double ParagraphLayout::dropOf(const Shown& picture) const {
    const double height = picture.Size.height();
    if (height > 2 * textHeight_) return 0;
    return std::max(0.0, std::round((height - 0.62 * textHeight_) / 2));
}

double ParagraphLayout::xOf(const Line& line, std::uint32_t at) const {
    const Chunk& chunk = chunks_[line.Chunk];
    return chunk.Text->lineAt(line.Index).cursorToX(static_cast<int>(at - chunk.Begin));
}

QRectF ParagraphLayout::pictureRect(const Line& line, const Shown& picture) const {
    return {std::round(xOf(line, picture.At)), line.Baseline - picture.Size.height() + dropOf(picture),
            static_cast<double>(picture.Size.width()), static_cast<double>(picture.Size.height())};
}

std::uint32_t ParagraphLayout::shownAt(std::uint32_t offset) const {
    offset = std::min(offset, length_);
    if (preedit_.empty() || offset < preedit_.Offset) return offset;
    const bool isCaret = offset == preedit_.Offset;
    return offset + static_cast<std::uint32_t>(isCaret ? preedit_.Caret : preedit_.Text.size());
}

std::uint32_t ParagraphLayout::offsetOf(std::uint32_t shown) const {
    if (preedit_.empty() || shown <= preedit_.Offset) return shown;
    const auto composed = static_cast<std::uint32_t>(preedit_.Text.size());
    return std::max(preedit_.Offset, shown - std::min(shown, composed));
}

std::size_t ParagraphLayout::lineAt(std::uint32_t offset) const {
    const auto behind = std::upper_bound(lines_.begin(), lines_.end(), shownAt(offset),
                                         [](std::uint32_t at, const Line& line) { return at < line.Begin; });
    return behind == lines_.begin() ? 0 : static_cast<std::size_t>(behind - lines_.begin()) - 1;
}

std::size_t ParagraphLayout::firstLineBelow(double y) const {
    const auto found = std::partition_point(lines_.begin(), lines_.end(),
                                            [&](const Line& line) { return line.Top + line.Height <= y; });
    return static_cast<std::size_t>(found - lines_.begin());
}

std::uint32_t ParagraphLayout::offsetAt(QPointF point) const {
    const Line& line = lines_[std::min(firstLineBelow(point.y()), lines_.size() - 1)];
    const Chunk& chunk = chunks_[line.Chunk];
    const int at = chunk.Text->lineAt(line.Index).xToCursor(point.x());
    return std::min(length_, offsetOf(chunk.Begin + static_cast<std::uint32_t>(std::max(0, at))));
}

QRectF ParagraphLayout::caretRect(std::uint32_t offset) const {
    const Line& line = lines_[lineAt(offset)];
    return {xOf(line, shownAt(offset)), static_cast<double>(line.Top), 1, static_cast<double>(line.Height)};
}

std::uint32_t ParagraphLayout::lineBegin(std::uint32_t offset) const {
    return offsetOf(lines_[lineAt(offset)].Begin);
}

// A wrapped line ends in front of its last character, which is the blank at which it was wrapped: the place
// behind that is the next line's begin.
std::uint32_t ParagraphLayout::lineEnd(std::uint32_t offset) const {
    const std::size_t index = lineAt(offset);
    const Line& line = lines_[index];
    if (index + 1 == lines_.size()) return length_;
    return offsetOf(std::max(line.Begin, line.End - 1));
}

}  // namespace talvora
