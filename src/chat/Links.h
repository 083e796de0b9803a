#pragma once
// Links in a text that strangers wrote: found at a double click, opened only after the user has said "Yes".

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Platform.h"

namespace talvora {

// A stretch of the plain text, by positions of the control, which count from 0.
struct Stretch {
    std::size_t Begin = 0;
    std::size_t End = 0;
};

// The word at the caret with the blank behind it; only blanks separate words.
Stretch WordAt(std::string_view text, std::size_t caret);
// The link that the stretch is; empty if it is none.
std::string LinkIn(std::string_view text, const Stretch& word);
// Asks, and hands the link to the browser. Whoever calls may be gone behind it.
void OpenLink(Platform& platform, const std::string& link);

}  // namespace talvora
