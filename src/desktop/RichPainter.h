#pragma once
// Paints rows of a page: what is behind the text, the selection, the text, pictures, the caret. It reads the
// layouts and changes nothing.

#include <QColor>
#include <QPainter>
#include <QRectF>

#include "desktop/ParagraphLayout.h"
#include "desktop/PictureCache.h"

namespace talvora {

// What is selected of one row, by offsets; `PastEnd` if the paragraph's end is selected too.
struct RowSelection {
    std::uint32_t Begin = 0;
    std::uint32_t End = 0;
    bool PastEnd = false;

    bool empty() const { return Begin == End && !PastEnd; }
};

class RichPainter {
  public:
    RichPainter(QPainter& painter, PictureCache& pictures, QRectF clip)
        : painter_(painter), pictures_(pictures), clip_(clip) {}

    void setSelectionColors(QColor behind, QColor text) {
        selectionBehind_ = behind;
        selectionText_ = text;
    }

    void paintRow(const ParagraphLayout& layout, QPointF at, RowSelection selection);
    void paintCaret(QRectF caret);

  private:
    void paintStripes(const ParagraphLayout& layout, const ParagraphLayout::Line& line);
    void paintSelection(const ParagraphLayout& layout, const ParagraphLayout::Line& line);
    void paintText(const ParagraphLayout& layout);
    void paintPictures(const ParagraphLayout& layout, const ParagraphLayout::Line& line);
    void paintPicture(QRectF where, const ParagraphLayout::Shown& picture, bool selected);
    void fill(const ParagraphLayout& layout, const ParagraphLayout::Line& line, std::uint32_t begin,
              std::uint32_t end, const QColor& color);

    QPainter& painter_;
    PictureCache& pictures_;
    QRectF clip_;
    QColor selectionBehind_;
    QColor selectionText_;
    // Of the row that is being painted, in the shown text.
    QPointF at_;
    std::uint32_t selectedBegin_ = 0;
    std::uint32_t selectedEnd_ = 0;
    bool pastEnd_ = false;
};

}  // namespace talvora
