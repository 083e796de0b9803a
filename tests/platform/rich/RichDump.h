#pragma once
// A document as text that a person can compare: paragraphs between "|", in front of each run what differs
// from the base format, as "[b c2 h1 f1 s40]", in front of a paragraph its own format as "<center 720 0 0 0
// 0>".
// "#" is a picture, "^" a line break.

#include <algorithm>
#include <string>

#include "platform/rich/RichDocument.h"

namespace talvora::test {

inline std::string dumpOf(const CharFormat& format, const CharFormat& base) {
    std::string dump;
    const auto add = [&](bool differs, const std::string& word) {
        if (differs) dump += (dump.empty() ? "" : " ") + word;
    };
    add(format.Bold, "b");
    add(format.Italic, "i");
    add(format.Underline, "u");
    add(format.StrikeThru, "x");
    add(format.Color != base.Color, "c" + std::to_string(format.Color));
    add(format.Highlight != base.Highlight, "h" + std::to_string(format.Highlight));
    add(format.Font != base.Font, "f" + std::to_string(format.Font));
    add(format.HalfPoints != base.HalfPoints, "s" + std::to_string(format.HalfPoints));
    return "[" + dump + "]";
}

inline std::string dumpOf(const Paragraph& paragraph, const RichHead& head) {
    std::string dump;
    const ParagraphFormat& block = paragraph.Format;
    if (block != head.BaseParagraph) {
        const char* const names[] = {"left", "right", "center", "justify"};
        dump += std::string("<") + names[static_cast<int>(block.Align)];
        for (const int twips :
             {block.LeftIndent, block.RightIndent, block.FirstIndent, block.SpaceBefore, block.SpaceAfter})
            dump += " " + std::to_string(twips);
        dump += ">";
    }
    for (std::size_t i = 0; i < paragraph.Runs.size(); ++i) {
        const Run& run = paragraph.Runs[i];
        const std::size_t end =
            i + 1 < paragraph.Runs.size() ? paragraph.Runs[i + 1].Begin : paragraph.Text.size();
        if (i != 0 || run.Format != head.Base) dump += dumpOf(run.Format, head.Base);
        dump += paragraph.Text.substr(run.Begin, end - run.Begin);
    }
    std::ranges::replace(dump, PictureMark, '#');
    std::ranges::replace(dump, LineBreak, '^');
    return dump;
}

inline std::string dumpOf(const RichDocument& document) {
    std::string dump;
    for (std::uint64_t number = document.FirstNumber(); number < document.EndNumber(); ++number)
        dump += (number == document.FirstNumber() ? "" : "|") + dumpOf(document.At(number), document.Head());
    return dump;
}

}  // namespace talvora::test
