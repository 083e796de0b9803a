#pragma once
// What a rich text document is made of, as values: paragraphs of 8-bit text with runs of one format,
// pictures, and the tables that formats point into. A paragraph knows nothing of RTF, a toolkit or a screen.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/Colour.h"

namespace talvora {

struct CharFormat {
    std::uint16_t Color = 0;        // index in the colour table; 0 is the automatic colour
    std::uint16_t Highlight = 0;    // the colour behind the text; 0 is none
    std::uint16_t Font = 0;         // index in the font table
    std::uint16_t HalfPoints = 24;  // size, MinHalfPoints to MaxHalfPoints
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;
    bool StrikeThru = false;

    bool operator==(const CharFormat&) const = default;
};

constexpr int MinHalfPoints = 4;
constexpr int MaxHalfPoints = 288;

enum class Alignment : std::uint8_t { Left, Right, Center, Justify };

// Lengths in twips, 1440 to the inch, within MaxTwips on both sides of 0.
struct ParagraphFormat {
    Alignment Align = Alignment::Left;
    std::int16_t LeftIndent = 0;
    std::int16_t RightIndent = 0;
    std::int16_t FirstIndent = 0;  // of the first line, on top of LeftIndent
    std::int16_t SpaceBefore = 0;
    std::int16_t SpaceAfter = 0;

    bool operator==(const ParagraphFormat&) const = default;
};

constexpr int MaxTwips = 31680;

// A picture as it came, checked but not decoded: kind, size in bytes and size in pixels are within bounds and
// agree with its header. Immutable; paragraphs share it.
struct Picture {
    enum class Kind : std::uint8_t { Png, Jpeg, Dib };

    Kind Type = Kind::Png;
    std::string Bytes;    // the file's bytes; of a DIB from its BITMAPINFOHEADER on
    int PixelWidth = 0;   // at least 1
    int PixelHeight = 0;  // at least 1
    int WidthTwips = 0;   // the size on the page, at least 1
    int HeightTwips = 0;

    bool operator==(const Picture&) const = default;
};

constexpr std::size_t MaxPictureBytes = 8 << 20;
constexpr std::int64_t MaxPicturePixels = 16 << 20;   // of one picture
constexpr std::int64_t MaxDocumentPixels = 64 << 20;  // of all different pictures that one reading brings

// The text from `Begin` to the next run's begin, or to the paragraph's end.
struct Run {
    std::uint32_t Begin = 0;
    CharFormat Format;

    bool operator==(const Run&) const = default;
};

// The characters of a paragraph's text that are no letters.
constexpr char LineBreak = '\v';      // a new line within the paragraph
constexpr char PictureMark = '\x1a';  // stands for the next of `Pictures`

struct Paragraph {
    std::string Text;       // code page 1253; the only characters below the blank are tab and the two above
    std::vector<Run> Runs;  // by Begin, the first at 0, neighbours differ; empty only if Text is
    std::vector<std::shared_ptr<const Picture>> Pictures;  // one for each PictureMark, in order
    ParagraphFormat Format;
};

// Equal as values: text, runs, pictures by content, format.
bool operator==(const Paragraph& a, const Paragraph& b);

struct FontEntry {
    std::string Name;          // code page 1253
    std::uint8_t Charset = 1;  // as \fcharset tells it: 161 is Greek

    bool operator==(const FontEntry&) const = default;
};

// The tables and the state in which each fragment of the document starts.
struct RichHead {
    std::vector<FontEntry> Fonts;  // never empty, at most MaxFonts
    std::vector<Colour> Colors;    // entry 0 is the automatic colour, whatever its value; at most MaxColors
    CharFormat Base;
    ParagraphFormat BaseParagraph;
    int CodePage = 1253;  // of text whose font doesn't name one
    int UnicodeSkip = 1;  // \uc: characters that stand behind a \u for readers that don't know it

    RichHead();

    bool operator==(const RichHead&) const = default;
};

// What one reading makes at most; further paragraph ends become line breaks. An empty paragraph takes a
// hundred times the memory of the word that makes it.
constexpr std::size_t MaxParagraphs = 200'000;         // of a document or plain text
constexpr std::size_t MaxParagraphsOfFragment = 1000;  // of one fragment

constexpr std::size_t MaxFonts = 1024;
constexpr std::size_t MaxColors = 4096;

}  // namespace talvora
