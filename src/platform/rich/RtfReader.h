#pragma once
// Reads RTF. It knows text, character and paragraph formatting, font and colour tables, code pages and
// pictures, by a closed table of control words; everything else is skipped. It opens nothing and fetches
// nothing, works without recursion, and bounds depth, tables, numbers, pictures and memory by the length of
// what it is given.

#include <deque>
#include <string_view>
#include <vector>

#include "platform/rich/RichText.h"

namespace talvora {

// Gives out equal pictures as one object, and counts the pixels of those in use.
class PictureStore;

struct RtfContent {
    RichHead Head;
    std::vector<Paragraph> Paragraphs;  // at least one
};

// Whether it begins as RTF does.
bool isRtf(std::string_view text);
// A whole document: its tables are taken from it.
RtfContent readRtf(std::string_view rtf, PictureStore& pictures);
// The same, put in place of `paragraphs`.
RichHead readRtf(std::string_view rtf, PictureStore& pictures, std::deque<Paragraph>& paragraphs);
// What stands in front of the text: the tables, and the state that they and the words behind them leave.
RichHead readRtfHead(std::string_view head);

}  // namespace talvora
