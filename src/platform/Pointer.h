#pragma once
// The pointer of the desktop, for who waits for it at the screen's upper edge. Positions are in pixels of 15
// twips, from the upper left corner of the primary screen; they may lie beyond it where there are more
// screens.

#include <optional>

#include "platform/Event.h"

namespace talvora {

class Pointer {
  public:
    struct Place {
        int X;
        int Y;
    };

    virtual ~Pointer() = default;
    // Nothing where the desktop keeps it to itself.
    virtual std::optional<Place> Position() const = 0;
    // Raises `Arrived` once when the pointer comes to the screen's upper edge, in the `height` topmost pixels
    // from `left` on. Until then it costs nothing, however the pointer moves. A later call replaces the one
    // before.
    virtual void AwaitAtTop(int left, int height) = 0;
    virtual void StopWaiting() = 0;

    Event<> Arrived;
};

// Of a desktop that has none, or tells nobody of it.
class NoPointer final : public Pointer {
  public:
    std::optional<Place> Position() const override { return {}; }
    void AwaitAtTop(int, int) override {}
    void StopWaiting() override {}
};

}  // namespace talvora
