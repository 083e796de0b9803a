#pragma once
// The end of an object in whose handlers the program may still stand, such as an unloaded form.

#include <memory>
#include <utility>

#include "platform/Platform.h"

namespace talvora {

// Destroys `object` when no handler of the component runs any more.
template <class T>
void Retire(Platform& platform, std::unique_ptr<T> object) {
    if (object == nullptr) return;
    std::shared_ptr<T> old = std::move(object);
    platform.Guarded.WhenIdle([old]() mutable { old.reset(); });
    // The loop turns once more, so that there is a callback to end, also if no handler runs now.
    platform.TheLoop.Defer([] {});
}

}  // namespace talvora
