#pragma once
// The pointer of a screen of X11. Whoever waits for it at the upper edge has a window there that shows
// nothing and takes nothing but the pointer's coming: the server wakes the program then, and not before. As
// soon as the pointer has come the window goes, so that what lies below it gets the clicks. Positions are in
// the pixels of Pointer.h, however fine the screen is.

#include <QAbstractNativeEventFilter>
#include <cstdint>

#include "platform/Guard.h"
#include "platform/Pointer.h"

struct xcb_connection_t;

namespace talvora {

class EdgePointer final : public Pointer, private QAbstractNativeEventFilter {
  public:
    // Whether the application is on such a screen, where a window stands where it is put. The programs of a
    // Wayland desktop that speak X11 are told of the pointer on their own windows only.
    static bool IsPossible();

    // `guard` takes faults of those who hear Arrived, and outlives the pointer.
    explicit EdgePointer(Guard& guard);
    EdgePointer(const EdgePointer&) = delete;
    EdgePointer& operator=(const EdgePointer&) = delete;
    ~EdgePointer() override;
    void SetGuard(Guard& guard) { guard_ = &guard; }

    std::optional<Place> Position() const override;
    void AwaitAtTop(int left, int height) override;
    void StopWaiting() override;

  private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    Guard* guard_;
    xcb_connection_t* server_;
    std::uint32_t strip_;  // the window
};

}  // namespace talvora
