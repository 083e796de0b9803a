#include "desktop/CaretMoves.h"

#include <QChar>
#include <algorithm>

#include "platform/CodePage1253.h"

namespace talvora {

namespace {

enum class Kind { Blank, Word, Sign };

Kind kindOf(char c) {
    if (c == ' ' || c == '\t' || c == LineBreak) return Kind::Blank;
    const QChar letter(codePointOf(static_cast<unsigned char>(c)));
    if (letter.isSpace()) return Kind::Blank;
    return letter.isLetterOrNumber() || c == '_' ? Kind::Word : Kind::Sign;
}

}  // namespace

Place characterLeft(const RichDocument& document, Place place) {
    if (place.Offset > 0) return {place.Paragraph, place.Offset - 1};
    if (place.Paragraph == document.FirstNumber()) return place;
    return {place.Paragraph - 1, static_cast<std::uint32_t>(document.At(place.Paragraph - 1).Text.size())};
}

Place characterRight(const RichDocument& document, Place place) {
    if (place.Offset < document.At(place.Paragraph).Text.size()) return {place.Paragraph, place.Offset + 1};
    if (place.Paragraph + 1 == document.EndNumber()) return place;
    return {place.Paragraph + 1, 0};
}

Place wordLeft(const RichDocument& document, Place place) {
    if (place.Offset == 0) return characterLeft(document, place);
    const std::string& text = document.At(place.Paragraph).Text;
    auto at = std::min(place.Offset, static_cast<std::uint32_t>(text.size()));
    while (at > 0 && kindOf(text[at - 1]) == Kind::Blank) --at;
    if (at == 0) return {place.Paragraph, 0};
    const Kind kind = kindOf(text[at - 1]);
    while (at > 0 && kindOf(text[at - 1]) == kind) --at;
    return {place.Paragraph, at};
}

Place wordRight(const RichDocument& document, Place place) {
    const std::string& text = document.At(place.Paragraph).Text;
    if (place.Offset >= text.size()) return characterRight(document, place);
    auto at = static_cast<std::size_t>(place.Offset);
    const Kind kind = kindOf(text[at]);
    while (at < text.size() && kind != Kind::Blank && kindOf(text[at]) == kind) ++at;
    while (at < text.size() && kindOf(text[at]) == Kind::Blank) ++at;
    return {place.Paragraph, static_cast<std::uint32_t>(at)};
}

}  // namespace talvora
