#include "platform/rich/PictureFile.h"

namespace talvora {
namespace {

using Number = std::int64_t;

unsigned char byteAt(std::string_view bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes.at(at));
}

Number bigEndian(std::string_view bytes, std::size_t at, std::size_t size) {
    Number number = 0;
    for (std::size_t i = 0; i < size; ++i) number = number << 8 | byteAt(bytes, at + i);
    return number;
}

Number littleEndian(std::string_view bytes, std::size_t at, std::size_t size) {
    Number number = 0;
    for (std::size_t i = size; i > 0; --i) number = number << 8 | byteAt(bytes, at + i - 1);
    return number;
}

std::optional<PixelSize> bounded(Number width, Number height) {
    if (width < 1 || height < 1 || width > MaxPicturePixels || height > MaxPicturePixels / width)
        return std::nullopt;
    return PixelSize{static_cast<int>(width), static_cast<int>(height)};
}

std::optional<PixelSize> sizeOfPng(std::string_view bytes) {
    constexpr std::string_view start("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);
    if (bytes.size() < 24 || !bytes.starts_with(start)) return std::nullopt;
    return bounded(bigEndian(bytes, 16, 4), bigEndian(bytes, 20, 4));
}

// Steps from segment to segment up to the frame, which tells the size.
std::optional<PixelSize> sizeOfJpeg(std::string_view bytes) {
    if (!bytes.starts_with("\xFF\xD8")) return std::nullopt;
    for (std::size_t at = 2; at + 9 <= bytes.size() && byteAt(bytes, at) == 0xFF;) {
        const unsigned char marker = byteAt(bytes, at + 1);
        if (marker == 0xFF) {
            ++at;
            continue;
        }
        const bool frame =
            marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (frame) return bounded(bigEndian(bytes, at + 7, 2), bigEndian(bytes, at + 5, 2));
        const bool withSegment = marker >= 0xC0 && (marker < 0xD0 || marker > 0xDA);
        const Number size = bigEndian(bytes, at + 2, 2);
        if (!withSegment || size < 2) return std::nullopt;
        at += 2 + static_cast<std::size_t>(size);
    }
    return std::nullopt;
}

// Only rows as they are: palette and rows must be there in full.
std::optional<PixelSize> sizeOfDib(std::string_view bytes) {
    if (bytes.size() < 40) return std::nullopt;
    const Number header = littleEndian(bytes, 0, 4);
    const Number height = static_cast<std::int32_t>(littleEndian(bytes, 8, 4));
    const auto size = bounded(littleEndian(bytes, 4, 4), height < 0 ? -height : height);
    const Number bits = littleEndian(bytes, 14, 2);
    const Number compression = littleEndian(bytes, 16, 4);
    Number colours = littleEndian(bytes, 32, 4);
    const bool indexed = bits == 1 || bits == 4 || bits == 8;
    const bool masks = compression == 3 && (bits == 16 || bits == 32);
    if (!size || header < 40 || littleEndian(bytes, 12, 2) != 1 || colours > 256) return std::nullopt;
    if (!indexed && bits != 16 && bits != 24 && bits != 32) return std::nullopt;
    if (compression != 0 && !masks) return std::nullopt;
    if (indexed && colours == 0) colours = Number{1} << bits;
    const Number row = (Number{size->Width} * bits + 31) / 32 * 4;
    const Number needed = header + (masks && header == 40 ? 12 : 0) + colours * 4 + row * size->Height;
    return needed <= static_cast<Number>(bytes.size()) ? size : std::nullopt;
}

}  // namespace

std::optional<PixelSize> pictureSize(Picture::Kind kind, std::string_view bytes) {
    if (bytes.size() > MaxPictureBytes) return std::nullopt;
    switch (kind) {
        case Picture::Kind::Png:
            return sizeOfPng(bytes);
        case Picture::Kind::Jpeg:
            return sizeOfJpeg(bytes);
        case Picture::Kind::Dib:
            return sizeOfDib(bytes);
    }
    return std::nullopt;
}

}  // namespace talvora
