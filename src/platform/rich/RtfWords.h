#pragma once
// The control words that the reader knows, by kind. A word that is not here has no effect.

#include <cstdint>
#include <string_view>

namespace talvora {

enum class RtfKind : std::uint8_t { Unknown, Flag, Value, Symbol, Action, Align, Destination };

// Switched on without a number, off by 0.
enum class RtfFlag : std::uint8_t { Bold, Italic, Underline, StrikeThru };

enum class RtfValue : std::uint8_t {
    Color,
    Highlight,
    Font,
    HalfPoints,
    LeftIndent,
    RightIndent,
    FirstIndent,
    SpaceBefore,
    SpaceAfter,
    UnicodeSkip,
    Unicode,
    CodePage,
    DefaultFont,
    Charset,
    Red,
    Green,
    Blue,
    GoalWidth,
    GoalHeight,
    ScaleX,
    ScaleY,
};

enum class RtfAction : std::uint8_t {
    EndParagraph,
    Plain,
    PlainParagraph,
    NoUnderline,
    Macintosh,
    Dos,
    DosLatin,
    Png,
    Jpeg,
    Dib,
    OtherPicture,
};

// What the text of a group is for. What other programs need not show, such as the source of a field, is
// skipped.
enum class RtfDestination : std::uint8_t { Body, Skipped, Fonts, Colors, Picture };

struct RtfWord {
    std::string_view Name;
    RtfKind Kind = RtfKind::Unknown;
    // One of the values above; the byte for which a symbol stands.
    std::uint8_t What = 0;
};

// `hash` is the name's.
const RtfWord& findRtfWord(std::string_view name, std::uint32_t hash);

}  // namespace talvora
