#pragma once
// One paragraph laid out at one width: its lines, and where its characters and pictures stand. It is made of
// what the paragraph holds and knows neither the document nor the screen. Coordinates are those of the
// paragraph's row; offsets are those of the paragraph's text.

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QTextLayout>
#include <cstdint>
#include <memory>
#include <vector>

#include "desktop/PageStyle.h"

namespace talvora {

// Text that an input method is still composing, shown at a place but no part of the document.
struct Preedit {
    std::uint32_t Offset = 0;
    QString Text;
    int Caret = 0;  // within Text
    QList<QTextLayout::FormatRange> Formats;

    bool empty() const { return Text.isEmpty(); }
};

class ParagraphLayout {
  public:
    ParagraphLayout(const Paragraph& paragraph, PageStyle& style, int width,
                    const Preedit* preedit = nullptr);

    int Height() const { return height_; }
    std::uint32_t offsetAt(QPointF point) const;
    // An upright line at the left edge of the character at `offset`, as high as its line.
    QRectF caretRect(std::uint32_t offset) const;
    // Ends of the line that holds the offset.
    std::uint32_t lineBegin(std::uint32_t offset) const;
    std::uint32_t lineEnd(std::uint32_t offset) const;
    // The place one line up or down at the same x; nothing where there is no such line. `begin` offsets of
    // wrapped lines belong to the lower line.
    bool hasLineAbove(std::uint32_t offset) const { return lineAt(offset) > 0; }
    bool hasLineBelow(std::uint32_t offset) const { return lineAt(offset) + 1 < lines_.size(); }

    // What a painter needs.
    struct Line {
        std::size_t Chunk = 0;
        int Index = 0;            // in the chunk's layout
        std::uint32_t Begin = 0;  // of the shown text, preedit included
        std::uint32_t End = 0;
        int Top = 0;
        int Height = 0;
        float Baseline = 0;  // from the row's top
    };
    struct Chunk {
        std::uint32_t Begin = 0;
        int Top = 0;
        std::unique_ptr<QTextLayout> Text;
    };
    struct Shown {
        std::uint32_t At = 0;  // in the shown text
        std::shared_ptr<const Picture> What;
        QSize Size;
    };
    struct Stripe {
        std::uint32_t Begin = 0;
        std::uint32_t End = 0;
        QColor Behind;
    };
    const std::vector<Line>& Lines() const { return lines_; }
    const std::vector<Chunk>& Chunks() const { return chunks_; }
    const std::vector<Shown>& Pictures() const { return pictures_; }
    const std::vector<Stripe>& Highlights() const { return highlights_; }
    // Where the shown character stands in its line; `at` lies within it or at its end.
    double xOf(const Line& line, std::uint32_t at) const;
    QRectF pictureRect(const Line& line, const Shown& picture) const;
    // Offset in the paragraph to place in the shown text.
    std::uint32_t shownAt(std::uint32_t offset) const;
    std::uint32_t Length() const { return length_; }
    // Lines from this one on reach below `y`.
    std::size_t firstLineBelow(double y) const;

  private:
    using Formats = QList<QTextLayout::FormatRange>;

    Formats makeFormats(const Paragraph& paragraph, PageStyle& style, int width);
    void addRun(const Paragraph& paragraph, const Run& run, std::uint32_t end, Formats& formats,
                PageStyle& style, int width);
    void addPreedit(QString& text, Formats& formats);
    void layOut(const QString& text, const Formats& formats, const Paragraph& paragraph, PageStyle& style,
                int width);
    void addChunk(const QString& text, const Formats& formats, std::uint32_t begin, std::uint32_t length);
    std::uint32_t breakLines(const Paragraph& paragraph, const PageStyle& style, int width, bool last);
    int place(QTextLine line, std::uint32_t begin, int top, double x);
    std::size_t lineAt(std::uint32_t offset) const;
    std::uint32_t offsetOf(std::uint32_t shown) const;
    double dropOf(const Shown& picture) const;

    Preedit preedit_;
    std::uint32_t length_ = 0;  // of the paragraph
    int height_ = 0;
    double textHeight_ = 0;
    std::vector<Line> lines_;
    std::vector<Chunk> chunks_;
    std::vector<Shown> pictures_;
    std::vector<Stripe> highlights_;
};

}  // namespace talvora
