// Editing: every change of paragraphs goes through Splice.

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "platform/rich/ParagraphEdit.h"
#include "platform/rich/RichDocument.h"

namespace talvora {

namespace {

constexpr std::size_t MaxFontName = 64;

std::pair<Place, Place> ordered(Place begin, Place end) {
    return std::minmax(begin, end);
}

// What a font table can hold: no control characters, no end of an entry, nothing that is RTF.
std::string fontName(std::string_view name) {
    std::string clean;
    for (const char c : name.substr(0, MaxFontName)) {
        if (static_cast<unsigned char>(c) >= ' ' &&
            std::string_view(";{}\\\x7f").find(c) == std::string_view::npos) {
            clean += c;
        }
    }
    return Trim(clean);
}

}  // namespace

Place RichDocument::Splice(Place begin, Place end, std::vector<Paragraph> by) {
    if (by.empty()) throw RuntimeError(Fault::InvalidProcedureCall);
    std::tie(begin, end) = ordered(Within(begin), Within(end));
    const Paragraph& first = At(begin.Paragraph);
    const Paragraph& last = At(end.Paragraph);
    const Paragraph behind = cutOut(last, end.Offset, last.Text.size());
    Paragraph front = cutOut(first, 0, begin.Offset);
    front.Format = by.front().Format;
    join(front, by.front());
    by.front() = std::move(front);
    const Place after{begin.Paragraph + by.size() - 1, static_cast<std::uint32_t>(by.back().Text.size())};
    join(by.back(), behind);

    forgetShown();
    const auto oldCount = static_cast<std::size_t>(end.Paragraph - begin.Paragraph + 1);
    const DocumentChange change{begin.Paragraph, oldCount, by.size()};
    const auto at = paragraphs_.begin() + static_cast<std::ptrdiff_t>(begin.Paragraph - first_);
    const auto same = static_cast<std::ptrdiff_t>(std::min(oldCount, by.size()));
    std::move(by.begin(), by.begin() + same, at);
    if (oldCount > by.size()) {
        paragraphs_.erase(at + same, at + static_cast<std::ptrdiff_t>(oldCount));
    } else if (oldCount < by.size()) {  // an empty insertion would move paragraphs onto themselves
        paragraphs_.insert(at + same, std::make_move_iterator(by.begin() + same),
                           std::make_move_iterator(by.end()));
    }
    Changed.raise(change);
    return after;
}

std::vector<Paragraph> RichDocument::Copy(Place begin, Place end) const {
    std::tie(begin, end) = ordered(Within(begin), Within(end));
    std::vector<Paragraph> copy;
    copy.reserve(end.Paragraph - begin.Paragraph + 1);
    for (std::uint64_t number = begin.Paragraph; number <= end.Paragraph; ++number) {
        const Paragraph& paragraph = At(number);
        copy.push_back(cutOut(paragraph, number == begin.Paragraph ? begin.Offset : 0,
                              number == end.Paragraph ? end.Offset : paragraph.Text.size()));
    }
    return copy;
}

void RichDocument::Reformat(Place begin, Place end, const std::function<void(CharFormat&)>& edit) {
    auto paragraphs = Copy(begin, end);
    bool changed = false;
    for (Paragraph& paragraph : paragraphs) {
        for (Run& run : paragraph.Runs) {
            const CharFormat before = run.Format;
            edit(run.Format);
            changed = changed || run.Format != before;
        }
        normalise(paragraph.Runs);
    }
    if (changed) Splice(begin, end, std::move(paragraphs));
}

CharFormat RichDocument::FormatAt(Place place) const {
    place = Within(place);
    const Paragraph& paragraph = At(place.Paragraph);
    if (paragraph.Text.empty()) return head_.Base;
    return formatOf(paragraph, place.Offset == 0 ? 0 : place.Offset - 1);
}

std::uint16_t RichDocument::FontIndex(std::string_view name, std::uint8_t charset) {
    const std::string clean = fontName(name);
    const auto found = std::ranges::find_if(head_.Fonts, [&](const FontEntry& font) {
        return font.Charset == charset && EqualText(font.Name, clean);
    });
    const auto index = static_cast<std::size_t>(found - head_.Fonts.begin());
    if (found != head_.Fonts.end()) return static_cast<std::uint16_t>(index);
    if (clean.empty() || index >= MaxFonts) return head_.Base.Font;
    forgetShown();
    head_.Fonts.push_back({clean, charset});
    HeadChanged.raise();
    return static_cast<std::uint16_t>(index);
}

std::uint16_t RichDocument::ColorIndex(Colour colour) {
    for (std::size_t i = 1; i < head_.Colors.size(); ++i) {
        if (head_.Colors[i] == colour) return static_cast<std::uint16_t>(i);
    }
    const std::size_t index = head_.Colors.size();
    if (index >= MaxColors) return 0;
    forgetShown();
    head_.Colors.push_back(colour);
    HeadChanged.raise();
    return static_cast<std::uint16_t>(index);
}

}  // namespace talvora
