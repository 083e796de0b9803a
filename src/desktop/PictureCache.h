#pragma once
// Decoded pictures, no larger than they are shown, the longest unused ones dropped first. A view asks for
// what it paints; what one frame has no time to decode is there in a later one.

#include <QImage>
#include <QSize>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <utility>

#include "platform/rich/RichText.h"

namespace talvora {

class PictureCache {
  public:
    struct Entry {
        QImage Image;  // null while it isn't decoded, or if it can't be
        bool Broken = false;
    };

    // A new frame may decode again; at least one picture, whatever its size.
    void beginFrame();
    // The picture for a place of that size in device pixels. The place may be larger than the image.
    Entry get(const std::shared_ptr<const Picture>& picture, QSize size);
    // Something was put off since beginFrame.
    bool Waiting() const { return waiting_; }
    std::int64_t Pixels() const { return pixels_; }

    static constexpr std::int64_t MaxPixels = 24 << 20;

  private:
    struct Kept {
        std::weak_ptr<const Picture> Source;
        Entry Shown;
        std::pair<const Picture*, std::pair<int, int>> Key;
    };
    using Place = std::list<Kept>::iterator;

    void trim();

    std::list<Kept> kept_;  // the latest used one first
    std::map<std::pair<const Picture*, std::pair<int, int>>, Place> places_;
    std::int64_t pixels_ = 0;
    std::int64_t decoded_ = 0;  // pixels of this frame
    bool waiting_ = false;
};

// Not decoded through a cache: null if the bytes aren't what their header says.
QImage decodePicture(const Picture& picture);

}  // namespace talvora
