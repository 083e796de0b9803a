#pragma once
// The table of open chat windows of one kind, and the windows themselves.
//
// The table has 51 slots, packed from the front. A window keeps the index that it got, also when others move
// down in front of it: one that closes later hands in a stale index and takes whatever stands there off the
// table. The windows do not depend on it: each lives until it is unloaded, and a slot never holds a window
// that is gone.

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "platform/FormSet.h"
#include "platform/RuntimeError.h"

namespace talvora {

template <class Window>
class WindowTable {
  public:
    static constexpr int Slots = 51;

    explicit WindowTable(Platform& platform) : windows_(platform, MostWindows) {}

    bool IsFull() const { return count_ == Slots; }

    int Count() const { return count_; }
    // The window in a slot, counted from 0; null for a slot that is free.
    Window* At(int index) const {
        return index >= 0 && index < count_ ? slots_[static_cast<std::size_t>(index)] : nullptr;
    }

    // The slot that the window now has; the table must not be full.
    std::int16_t Register(Window& window) {
        if (IsFull()) throw RuntimeError(Fault::SubscriptOutOfRange);
        slots_[static_cast<std::size_t>(count_)] = &window;
        return count_++;
    }

    void Unregister(int index) {
        if (index < 0 || index >= Slots) throw RuntimeError(Fault::SubscriptOutOfRange);
        if (count_ == 0) return;
        const auto gap = slots_.begin() + index;
        if (index < count_) std::move(gap + 1, slots_.begin() + count_, gap);
        slots_[static_cast<std::size_t>(--count_)] = nullptr;
    }

    // The windows in the order of the table. They may come and go while the list is worked off.
    std::vector<Window*> Windows() const {
        std::vector<Window*> windows;
        for (int i = 0; i < count_; ++i) {
            if (Window* window = slots_[static_cast<std::size_t>(i)]) windows.push_back(window);
        }
        return windows;
    }

    template <class Matches>
    Window* Find(const Matches& matches) const {
        for (int i = 0; i < count_; ++i) {
            Window* window = slots_[static_cast<std::size_t>(i)];
            if (window != nullptr && matches(*window)) return window;
        }
        return nullptr;
    }

    bool Holds(const Window& window) const {
        return Find([&](const Window& one) { return &one == &window; }) != nullptr;
    }

    // Calls `act` with each window that is still on the table when its turn comes.
    template <class Act>
    void ForEach(const Act& act) const {
        for (Window* window : Windows()) {
            if (Holds(*window)) act(*window);
        }
    }

    Window& Own(std::unique_ptr<Window> window) { return windows_.Own(std::move(window)); }
    // Every window that is loaded, on the table or not.
    std::vector<Window*> AllLoaded() const { return windows_.Forms(); }

  private:
    // A window that a stale index has left on the table goes with its unload, so that no slot is lost for
    // good.
    void forget(Window& window) {
        const auto kept = std::remove(slots_.begin(), slots_.begin() + count_, &window);
        std::fill(kept, slots_.begin() + count_, nullptr);
        count_ = static_cast<std::int16_t>(kept - slots_.begin());
    }

    // Far more than a user opens by hand; a window that a stale index has left without a slot is one of them.
    static constexpr std::size_t MostWindows = 4 * Slots;

    FormSet<Window> windows_;
    std::array<Window*, Slots> slots_{};
    std::int16_t count_ = 0;
    Subscription ended_ = windows_.Ended.connect([this](Window& window) { forget(window); });

  public:
    // A new window is there, and its view may be made.
    Event<Window&>& Loaded = windows_.Loaded;
};

}  // namespace talvora
