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

#include "platform/Form.h"
#include "platform/Platform.h"
#include "platform/RuntimeError.h"

namespace talvora {

template <class Window>
class WindowTable {
  public:
    static constexpr int Slots = 51;

    explicit WindowTable(Platform& platform) : platform_(platform) {}

    bool IsFull() const { return count_ == Slots; }

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

    // Takes a new window. It is destroyed some time after its unload, when none of its handlers runs any
    // more.
    Window& Own(std::unique_ptr<Window> window) {
        Window& loaded = *window;
        auto entry = std::make_unique<Entry>();
        entry->window = std::move(window);
        Entry& kept = *loaded_.emplace_back(std::move(entry));
        Loaded.raise(loaded);
        // Connected last: a view that has been made for the window hears of the end first, and goes first.
        kept.unloaded = loaded.Unloaded.connect([this, &loaded] { retire(loaded); });
        if (loaded.IsUnloaded()) retire(loaded);
        return loaded;
    }

    // A new window is there, and its view may be made.
    Event<Window&> Loaded;

    // Every window that is loaded, on the table or not.
    std::vector<Window*> AllLoaded() const {
        std::vector<Window*> windows;
        for (const auto& entry : loaded_) windows.push_back(entry->window.get());
        return windows;
    }

  private:
    struct Entry {
        std::unique_ptr<Window> window;
        Subscription unloaded;
    };

    void retire(Window& window) {
        // A window that a stale index has left on the table goes now, so that no slot is lost for good.
        const auto kept = std::remove(slots_.begin(), slots_.begin() + count_, &window);
        std::fill(kept, slots_.begin() + count_, nullptr);
        count_ = static_cast<std::int16_t>(kept - slots_.begin());
        const auto found = std::find_if(loaded_.begin(), loaded_.end(),
                                        [&](const auto& entry) { return entry->window.get() == &window; });
        if (found == loaded_.end()) return;
        std::shared_ptr<Entry> entry = std::move(*found);
        loaded_.erase(found);
        platform_.Guarded.WhenIdle([entry]() mutable { entry.reset(); });
        // The loop turns once more, so that there is a callback to end.
        platform_.TheLoop.Defer([] {});
    }

    Platform& platform_;
    std::array<Window*, Slots> slots_{};
    std::int16_t count_ = 0;
    std::vector<std::unique_ptr<Entry>> loaded_;
};

}  // namespace talvora
