#pragma once
// Looks at the header of a picture's bytes, which is all that is known of it here: decoding is the view's.

#include <optional>
#include <string_view>

#include "platform/rich/RichText.h"

namespace talvora {

struct PixelSize {
    int Width;
    int Height;
};

// The size in pixels; nothing if the bytes are no such picture, or a larger one than documents may hold.
std::optional<PixelSize> pictureSize(Picture::Kind kind, std::string_view bytes);

}  // namespace talvora
