#pragma once
// Where a caret goes by characters and words, over the text alone. A word is a run of letters and digits; a
// move by words stops where the next one begins.

#include "platform/rich/RichDocument.h"

namespace talvora {

Place characterLeft(const RichDocument& document, Place place);
Place characterRight(const RichDocument& document, Place place);
Place wordLeft(const RichDocument& document, Place place);
Place wordRight(const RichDocument& document, Place place);

}  // namespace talvora
