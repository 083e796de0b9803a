#include "desktop/RichPrint.h"

#include <QPainter>
#include <algorithm>

#include "desktop/PictureCache.h"
#include "desktop/RichPage.h"
#include "desktop/RichPainter.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr double PrintZoom = 0.87;  // a document's points are those of paper, and not enlarged as on a screen

class Press {
  public:
    Press(const RichDocument& document, QPagedPaintDevice& device)
        : document_(document), page_(document), device_(device) {}

    bool print(const QString& title) {
        if (!painter_.begin(&device_)) return false;
        width_ = painter_.viewport().width();
        height_ = painter_.viewport().height();
        page_.setScale(PrintZoom, device_.logicalDpiY());
        page_.setWidth(width_);
        putTitle(title);
        for (std::uint64_t row = document_.FirstNumber(); row < document_.EndNumber(); ++row) {
            putRow(page_.layout(row));
            page_.keepLayouts(row, row + 1);
        }
        return painter_.end();
    }

  private:
    void putTitle(const QString& title) {
        QFont font = theme::titleFont();
        font.setPixelSize(std::max(1, device_.logicalDpiY() / 6));
        painter_.setFont(font);
        const QRectF room(0, 0, width_, height_ / 4.0);
        QRectF taken;
        painter_.drawText(room, Qt::TextWordWrap | Qt::TextIncludeTrailingSpaces, title, &taken);
        y_ = taken.bottom() + font.pixelSize();
    }

    void putRow(const ParagraphLayout& row) {
        const auto& lines = row.Lines();
        std::size_t first = 0;
        while (first < lines.size()) {
            const double top = lines[first].Top;
            std::size_t end = first;
            while (end < lines.size() && y_ + bottom(lines[end]) - top <= height_) ++end;
            if (end == first && y_ > 0) {
                nextPage();
                continue;
            }
            end = std::max(end, first + 1);  // a line higher than the page is cut by the page
            putLines(row, QRectF(0, y_, width_, bottom(lines[end - 1]) - top), top);
            y_ += bottom(lines[end - 1]) - top;
            first = end;
        }
        if (!lines.empty()) y_ += row.Height() - bottom(lines.back());
    }
    void putLines(const ParagraphLayout& row, const QRectF& where, double top) {
        painter_.save();
        painter_.setClipRect(where);
        RichPainter lines(painter_, pictures_, where);
        do {
            pictures_.beginFrame();
            lines.paintRow(row, QPointF(0, where.top() - top), {});
        } while (pictures_.Waiting());
        painter_.restore();
    }
    static double bottom(const ParagraphLayout::Line& line) { return line.Top + line.Height; }

    void nextPage() {
        device_.newPage();
        y_ = 0;
    }

    const RichDocument& document_;
    RichPage page_;
    QPagedPaintDevice& device_;
    QPainter painter_;
    PictureCache pictures_;
    double width_ = 0;
    double height_ = 0;
    double y_ = 0;
};

}  // namespace

bool printDocument(const RichDocument& document, const QString& title, QPagedPaintDevice& device) {
    return Press(document, device).print(title);
}

}  // namespace talvora
