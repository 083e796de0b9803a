#pragma once
// A document as rows of pixels: follows its changes, lays out the rows that somebody looks at, and estimates
// the heights of the others. Knows no window. A new row costs the same whatever is there already.

#include <QPointF>
#include <QRectF>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "desktop/PageStyle.h"
#include "desktop/ParagraphLayout.h"
#include "desktop/RowCache.h"
#include "platform/rich/RichDocument.h"

namespace talvora {

class RichPage {
  public:
    explicit RichPage(const RichDocument& document);

    const RichDocument& Document() const { return document_; }
    const RowCache& Rows() const { return rows_; }
    PageStyle& Style() { return style_; }

    // What the document tells.
    void changed(const DocumentChange& change);
    void dropped(std::uint64_t count);
    void headChanged();

    // Every row is estimated anew if the width or scale is another.
    void setWidth(int width);
    void setScale(double zoom, int dpi);
    void setPreedit(const Preedit& preedit, std::uint64_t paragraph);
    const Preedit& Composing() const { return preedit_; }
    std::uint64_t ComposingParagraph() const { return preeditRow_; }

    // Lays the row out if that hasn't happened yet, and so may correct its height.
    const ParagraphLayout& layout(std::uint64_t number);
    int height(std::uint64_t number) { return layout(number).Height(); }
    // Keeps only the layouts of these rows and a few on both sides.
    void keepLayouts(std::uint64_t begin, std::uint64_t end);

    // In the coordinates of the place's row.
    QRectF caretRect(Place place);
    Place placeAt(std::uint64_t number, QPointF point);
    Place lineBegin(Place place);
    Place lineEnd(Place place);
    // One line up or down, as near to `x` as there is a place; the place itself at the document's ends.
    Place lineUp(Place place, double x);
    Place lineDown(Place place, double x);

  private:
    int estimate(std::uint64_t number);
    void estimateAll();

    const RichDocument& document_;
    PageStyle style_;
    RowCache rows_;
    std::map<std::uint64_t, std::unique_ptr<ParagraphLayout>> layouts_;
    std::vector<int> heights_;  // of a change, kept to spare allocations
    int width_ = 400;
    double zoom_ = 1;
    int dpi_ = 96;
    Preedit preedit_;
    std::uint64_t preeditRow_ = 0;
};

}  // namespace talvora
