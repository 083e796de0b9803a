// A whole document from a stranger: it is read, its paragraphs are sound, and it is no longer than its
// source.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/rich/RichDocument.h"

namespace {

using namespace talvora;

void require(bool holds) {
    if (!holds) std::abort();
}

void requireSound(const CharFormat& format, const RichHead& head) {
    require(format.Color < head.Colors.size() && format.Highlight < head.Colors.size());
    require(format.Font < head.Fonts.size());
    require(format.HalfPoints >= MinHalfPoints && format.HalfPoints <= MaxHalfPoints);
}

void requireSound(const Paragraph& paragraph, const RichHead& head) {
    require(paragraph.Runs.empty() == paragraph.Text.empty());
    require(paragraph.Runs.empty() || paragraph.Runs[0].Begin == 0);
    for (std::size_t i = 0; i < paragraph.Runs.size(); ++i) {
        const Run& run = paragraph.Runs[i];
        requireSound(run.Format, head);
        require(run.Begin < paragraph.Text.size());
        require(i == 0 || paragraph.Runs[i - 1].Begin < run.Begin);
        require(i == 0 || paragraph.Runs[i - 1].Format != run.Format);
    }
    require(std::ranges::count(paragraph.Text, PictureMark) == std::ssize(paragraph.Pictures));
    require(std::ranges::none_of(paragraph.Text, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < ' ' && c != '\t' && c != LineBreak && c != PictureMark;
    }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view rtf(reinterpret_cast<const char*>(data), size);
    RichDocument document;
    document.Read(rtf);
    for (std::uint64_t number = document.FirstNumber(); number < document.EndNumber(); ++number)
        requireSound(document.At(number), document.Head());
    // A line end in plain text is one byte and counts two; a character becomes three at most.
    require(document.TextLength() <= size * 3);
    require(document.Text().size() == document.TextLength());
    require(document.PlaceAt(size / 2) <= document.End());
    return 0;
}
