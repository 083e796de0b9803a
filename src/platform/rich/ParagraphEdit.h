#pragma once
// Cutting and joining paragraphs, as values. Whatever goes in, runs come out normalised and each picture
// stays with its mark.

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "platform/rich/RichText.h"

namespace talvora {

// The format of the character at `offset`; fault 9 if there is none.
const CharFormat& formatOf(const Paragraph& paragraph, std::size_t offset);
// The runs with characters from `begin` up to `end`.
std::span<const Run> runsWithin(const Paragraph& paragraph, std::size_t begin, std::size_t end);
// The characters from `begin` up to `end`, with the paragraph's format; fault 9 if it is shorter.
Paragraph cutOut(const Paragraph& paragraph, std::size_t begin, std::size_t end);
// Appends the characters of `from`; the paragraph keeps its own format.
void join(Paragraph& paragraph, const Paragraph& from);
// Joins runs of one format that have come to stand side by side.
void normalise(std::vector<Run>& runs);

// Paragraphs of one format. CR LF, CR and LF end a paragraph, tab and LineBreak stay, other control
// characters have no place in a document.
std::vector<Paragraph> plainParagraphs(std::string_view text, const CharFormat& format,
                                       const ParagraphFormat& paragraphFormat);
// The characters that paragraphs count in a document's text, with the two between any two of them.
std::size_t lengthOf(const std::vector<Paragraph>& paragraphs);
// Drops what lies beyond so many characters.
void shorten(std::vector<Paragraph>& paragraphs, std::size_t length);

}  // namespace talvora
