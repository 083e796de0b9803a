#include "desktop/RichPainter.h"

#include <algorithm>

namespace talvora {

namespace {

constexpr int LineEndWidth = 5;  // of a selected paragraph end

}  // namespace

void RichPainter::paintRow(const ParagraphLayout& layout, QPointF at, RowSelection selection) {
    at_ = at;
    selectedBegin_ = layout.shownAt(selection.Begin);
    selectedEnd_ = layout.shownAt(selection.End);
    pastEnd_ = selection.PastEnd;
    const auto& lines = layout.Lines();
    const std::size_t first = layout.firstLineBelow(clip_.top() - at.y());
    std::size_t end = first;
    while (end < lines.size() && at.y() + lines[end].Top < clip_.bottom()) ++end;
    for (std::size_t i = first; i < end; ++i) paintStripes(layout, lines[i]);
    for (std::size_t i = first; i < end; ++i) paintSelection(layout, lines[i]);
    paintText(layout);
    for (std::size_t i = first; i < end; ++i) paintPictures(layout, lines[i]);
}

void RichPainter::fill(const ParagraphLayout& layout, const ParagraphLayout::Line& line, std::uint32_t begin,
                       std::uint32_t end, const QColor& color) {
    begin = std::max(begin, line.Begin);
    end = std::min(end, line.End);
    if (begin >= end) return;
    const double left = layout.xOf(line, begin);
    const double right = layout.xOf(line, end);
    painter_.fillRect(QRectF(at_.x() + left, at_.y() + line.Top, right - left, line.Height), color);
}

void RichPainter::paintStripes(const ParagraphLayout& layout, const ParagraphLayout::Line& line) {
    const auto& stripes = layout.Highlights();
    auto stripe = std::partition_point(stripes.begin(), stripes.end(),
                                       [&](const auto& one) { return one.End <= line.Begin; });
    for (; stripe != stripes.end() && stripe->Begin < line.End; ++stripe) {
        fill(layout, line, stripe->Begin, stripe->End, stripe->Behind);
    }
}

void RichPainter::paintSelection(const ParagraphLayout& layout, const ParagraphLayout::Line& line) {
    fill(layout, line, selectedBegin_, selectedEnd_, selectionBehind_);
    if (!pastEnd_ || &line != &layout.Lines().back()) return;
    const QRectF end(at_.x() + layout.xOf(line, line.End), at_.y() + line.Top, LineEndWidth, line.Height);
    painter_.fillRect(end, selectionBehind_);
}

void RichPainter::paintText(const ParagraphLayout& layout) {
    const auto& chunks = layout.Chunks();
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        const ParagraphLayout::Chunk& chunk = chunks[i];
        const QPointF at = at_ + QPointF(0, chunk.Top);
        if (at.y() > clip_.bottom()) break;
        if (i + 1 < chunks.size() && at_.y() + chunks[i + 1].Top < clip_.top()) continue;
        const auto length = static_cast<std::uint32_t>(chunk.Text->text().size());
        const std::uint32_t begin = std::clamp(selectedBegin_, chunk.Begin, chunk.Begin + length);
        const std::uint32_t end = std::clamp(selectedEnd_, chunk.Begin, chunk.Begin + length);
        QList<QTextLayout::FormatRange> selected;
        if (begin < end) {
            QTextCharFormat format;
            format.setForeground(selectionText_);
            selected.append({static_cast<int>(begin - chunk.Begin), static_cast<int>(end - begin), format});
        }
        chunk.Text->draw(&painter_, at, selected, clip_);
    }
}

void RichPainter::paintPictures(const ParagraphLayout& layout, const ParagraphLayout::Line& line) {
    const auto& pictures = layout.Pictures();
    auto picture = std::partition_point(pictures.begin(), pictures.end(),
                                        [&](const auto& one) { return one.At < line.Begin; });
    for (; picture != pictures.end() && picture->At < line.End; ++picture) {
        const bool selected = picture->At >= selectedBegin_ && picture->At < selectedEnd_;
        paintPicture(layout.pictureRect(line, *picture).translated(at_), *picture, selected);
    }
}

void RichPainter::paintPicture(QRectF where, const ParagraphLayout::Shown& picture, bool selected) {
    if (!where.intersects(clip_)) return;
    const double ratio = painter_.device()->devicePixelRatioF();
    const PictureCache::Entry entry = pictures_.get(picture.What, (where.size() * ratio).toSize());
    if (!entry.Image.isNull()) {
        painter_.setRenderHint(QPainter::SmoothPixmapTransform);
        painter_.drawImage(where, entry.Image);
    } else if (entry.Broken) {
        painter_.setPen(QColor(160, 160, 160));
        painter_.setBrush(Qt::NoBrush);
        painter_.drawRect(where.adjusted(0.5, 0.5, -0.5, -0.5));
    }
    if (!selected) return;
    QColor veil = selectionBehind_;
    veil.setAlpha(110);
    painter_.fillRect(where, veil);
}

void RichPainter::paintCaret(QRectF caret) {
    painter_.fillRect(caret, Qt::black);
}

}  // namespace talvora
