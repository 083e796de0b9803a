#pragma once
// The code pages in which documents of others come, towards our own. A page without a place among them is
// read as ours: the bytes stand as they are.

#include <string>
#include <string_view>

namespace talvora {

struct CodePage {
    int Number;
    const char16_t* Upper;  // of the bytes from 80 on; none if two bytes make one character
};

// None for code page 1253 and for those that nobody knows.
const CodePage* codePageOf(int number);
// The page of a font's character set, or `otherwise` if it names none.
const CodePage* codePageOfCharset(int charset, const CodePage* otherwise);

// Appends the nearest text. `inPair` carries the first half of a pair from one call to the next.
void appendFromPage(std::string& to, std::string_view text, const CodePage& page, bool& inPair);

}  // namespace talvora
