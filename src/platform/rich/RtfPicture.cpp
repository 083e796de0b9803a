#include "platform/rich/RtfPicture.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "platform/rich/PictureFile.h"

namespace talvora {
namespace {

constexpr auto hexDigits = [] {
    std::array<std::int8_t, 256> table{};
    table.fill(-1);
    for (int i = 0; i < 16; ++i) {
        table[static_cast<unsigned char>("0123456789abcdef"[i])] = static_cast<std::int8_t>(i);
        table[static_cast<unsigned char>("0123456789ABCDEF"[i])] = static_cast<std::int8_t>(i);
    }
    return table;
}();

int valueOf(char digit) {
    return hexDigits[static_cast<unsigned char>(digit)];
}

constexpr int TwipsOfPixel = 15;

}  // namespace

void RtfPicture::Begin() {
    kind_.reset();
    width_ = {};
    height_ = {};
    bytes_.clear();
    half_ = -1;
}

void RtfPicture::AddHex(std::string_view digits) {
    if (!kind_ || bytes_.size() > MaxPictureBytes) return;
    std::size_t at = 0;
    if (half_ < 0) {
        const std::size_t begin = bytes_.size();
        bytes_.resize(begin + digits.size() / 2);
        std::size_t to = begin;
        for (; at + 1 < digits.size(); at += 2) {
            const int both = valueOf(digits[at]) * 16 | valueOf(digits[at + 1]);
            if (both < 0) break;
            bytes_[to++] = static_cast<char>(both);
        }
        bytes_.resize(to);
    }
    for (; at < digits.size(); ++at) {
        const int value = valueOf(digits[at]);
        if (value < 0) continue;
        if (half_ >= 0) bytes_ += static_cast<char>(half_ * 16 + value);
        half_ = half_ >= 0 ? -1 : value;
    }
}

void RtfPicture::AddBytes(std::string_view bytes) {
    if (kind_ && bytes_.size() + bytes.size() <= MaxPictureBytes) bytes_ += bytes;
}

// The goal, by the scale; without a goal, of a screen's pixels.
int RtfPicture::twips(Length length, int pixels) {
    const std::int64_t goal = length.Goal > 0 ? length.Goal : std::int64_t{pixels} * TwipsOfPixel;
    const std::int64_t percent = length.Percent > 0 ? length.Percent : 100;
    return static_cast<int>(std::clamp<std::int64_t>(goal * percent / 100, 1, MaxTwips));
}

std::optional<Picture> RtfPicture::Finish() {
    if (!kind_) return std::nullopt;
    std::string bytes = std::exchange(bytes_, {});
    const auto size = pictureSize(*kind_, bytes);
    if (!size) return std::nullopt;
    Picture picture;
    picture.Type = *kind_;
    picture.Bytes = std::move(bytes);
    picture.PixelWidth = size->Width;
    picture.PixelHeight = size->Height;
    picture.WidthTwips = twips(width_, size->Width);
    picture.HeightTwips = twips(height_, size->Height);
    return picture;
}

}  // namespace talvora
