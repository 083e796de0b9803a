#pragma once
// Writes RTF that this reader and office programs read: 8-bit text in code page 1253, tables as the head has
// them, pictures as hexadecimal digits.

#include <string>
#include <vector>

#include "platform/rich/RichText.h"

namespace talvora {

// A whole document. The last paragraph gets no paragraph end.
std::string writeRtf(const RichHead& head, const std::vector<Paragraph>& paragraphs);

}  // namespace talvora
