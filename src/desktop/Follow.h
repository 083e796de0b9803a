#pragma once
// How a binding keeps a widget as its model is.

#include "platform/Property.h"

namespace talvora {

// Calls `show` with the value as it is now, and with every later one.
template <class T, class Show>
void follow(Subscriptions& on, Property<T>& property, Show show) {
    show(property.get());
    on += property.Changed.connect([show](const T& value) { show(value); });
}

}  // namespace talvora
