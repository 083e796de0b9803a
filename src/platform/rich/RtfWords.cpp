#include "platform/rich/RtfWords.h"

#include <array>
#include <iterator>

#include "platform/rich/RichText.h"
#include "platform/rich/RtfScanner.h"

namespace talvora {
namespace {

constexpr RtfWord flag(std::string_view name, RtfFlag what) {
    return {name, RtfKind::Flag, static_cast<std::uint8_t>(what)};
}
constexpr RtfWord value(std::string_view name, RtfValue what) {
    return {name, RtfKind::Value, static_cast<std::uint8_t>(what)};
}
constexpr RtfWord symbol(std::string_view name, char byte) {
    return {name, RtfKind::Symbol, static_cast<std::uint8_t>(byte)};
}
constexpr RtfWord action(std::string_view name, RtfAction what) {
    return {name, RtfKind::Action, static_cast<std::uint8_t>(what)};
}
constexpr RtfWord align(std::string_view name, Alignment what) {
    return {name, RtfKind::Align, static_cast<std::uint8_t>(what)};
}
constexpr RtfWord group(std::string_view name, RtfDestination what = RtfDestination::Skipped) {
    return {name, RtfKind::Destination, static_cast<std::uint8_t>(what)};
}

constexpr RtfWord allWords[] = {
    flag("b", RtfFlag::Bold),
    flag("i", RtfFlag::Italic),
    flag("ul", RtfFlag::Underline),
    flag("uld", RtfFlag::Underline),
    flag("uldash", RtfFlag::Underline),
    flag("uldb", RtfFlag::Underline),
    flag("ulth", RtfFlag::Underline),
    flag("ulw", RtfFlag::Underline),
    flag("ulwave", RtfFlag::Underline),
    flag("strike", RtfFlag::StrikeThru),
    flag("striked", RtfFlag::StrikeThru),

    value("cf", RtfValue::Color),
    value("highlight", RtfValue::Highlight),
    value("cb", RtfValue::Highlight),
    value("chcbpat", RtfValue::Highlight),
    value("f", RtfValue::Font),
    value("fs", RtfValue::HalfPoints),
    value("li", RtfValue::LeftIndent),
    value("ri", RtfValue::RightIndent),
    value("fi", RtfValue::FirstIndent),
    value("sb", RtfValue::SpaceBefore),
    value("sa", RtfValue::SpaceAfter),
    value("uc", RtfValue::UnicodeSkip),
    value("u", RtfValue::Unicode),
    value("ansicpg", RtfValue::CodePage),
    value("deff", RtfValue::DefaultFont),
    value("fcharset", RtfValue::Charset),
    value("red", RtfValue::Red),
    value("green", RtfValue::Green),
    value("blue", RtfValue::Blue),
    value("picwgoal", RtfValue::GoalWidth),
    value("pichgoal", RtfValue::GoalHeight),
    value("picscalex", RtfValue::ScaleX),
    value("picscaley", RtfValue::ScaleY),

    symbol("tab", '\t'),
    symbol("cell", '\t'),
    symbol("nestcell", '\t'),
    symbol("line", LineBreak),
    symbol("emdash", '\x97'),
    symbol("endash", '\x96'),
    symbol("bullet", '\x95'),
    symbol("lquote", '\x91'),
    symbol("rquote", '\x92'),
    symbol("ldblquote", '\x93'),
    symbol("rdblquote", '\x94'),
    symbol("emspace", ' '),
    symbol("enspace", ' '),
    symbol("qmspace", ' '),

    action("par", RtfAction::EndParagraph),
    action("row", RtfAction::EndParagraph),
    action("nestrow", RtfAction::EndParagraph),
    action("page", RtfAction::EndParagraph),
    action("sect", RtfAction::EndParagraph),
    action("plain", RtfAction::Plain),
    action("pard", RtfAction::PlainParagraph),
    action("ulnone", RtfAction::NoUnderline),
    action("mac", RtfAction::Macintosh),
    action("pc", RtfAction::Dos),
    action("pca", RtfAction::DosLatin),
    action("pngblip", RtfAction::Png),
    action("jpegblip", RtfAction::Jpeg),
    action("dibitmap", RtfAction::Dib),
    action("emfblip", RtfAction::OtherPicture),
    action("macpict", RtfAction::OtherPicture),
    action("wmetafile", RtfAction::OtherPicture),
    action("pmmetafile", RtfAction::OtherPicture),
    action("wbitmap", RtfAction::OtherPicture),

    align("ql", Alignment::Left),
    align("qr", Alignment::Right),
    align("qc", Alignment::Center),
    align("qj", Alignment::Justify),

    group("fonttbl", RtfDestination::Fonts),
    group("colortbl", RtfDestination::Colors),
    group("pict", RtfDestination::Picture),
    group("shppict", RtfDestination::Body),
    group("nonshppict"),
    group("fldinst"),
    group("stylesheet"),
    group("info"),
    group("header"),
    group("headerl"),
    group("headerr"),
    group("headerf"),
    group("footer"),
    group("footerl"),
    group("footerr"),
    group("footerf"),
    group("footnote"),
    group("annotation"),
    group("atnid"),
    group("atnauthor"),
    group("objdata"),
    group("objclass"),
    group("objname"),
    group("xe"),
    group("tc"),
    group("rxe"),
    group("bkmkstart"),
    group("bkmkend"),
    group("falt"),
    group("panose"),
    group("filetbl"),
    group("listtable"),
    group("listoverridetable"),
    group("revtbl"),
    group("generator"),
    group("themedata"),
    group("colorschememapping"),
    group("datastore"),
    group("mmathPr"),
};

constexpr std::size_t SlotCount = 512;
static_assert(std::size(allWords) < SlotCount / 2);

constexpr std::uint32_t hashOf(std::string_view name) {
    std::uint32_t hash = RtfHashStart;
    for (const char letter : name) hash = rtfHash(hash, letter);
    return hash;
}

// Slot by hash, or one of the next; number and 1 of the word, 0 where there is none.
constexpr auto slots = [] {
    std::array<std::uint8_t, SlotCount> table{};
    for (std::size_t i = 0; i < std::size(allWords); ++i) {
        std::size_t slot = hashOf(allWords[i].Name) % SlotCount;
        while (table[slot] != 0) slot = (slot + 1) % SlotCount;
        table[slot] = static_cast<std::uint8_t>(i + 1);
    }
    return table;
}();

constexpr RtfWord unknown;

}  // namespace

const RtfWord& findRtfWord(std::string_view name, std::uint32_t hash) {
    for (std::size_t slot = hash % SlotCount; slots[slot] != 0; slot = (slot + 1) % SlotCount) {
        const RtfWord& word = allWords[slots[slot] - 1];
        if (word.Name == name) return word;
    }
    return unknown;
}

}  // namespace talvora
