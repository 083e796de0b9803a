#pragma once
// A value of a control that tells its observers when it has really changed. Assigning the value that it
// already has does nothing.

#include <utility>

#include "platform/Event.h"

namespace talvora {

template <class T>
class Property {
  public:
    Property() = default;
    explicit Property(T value) : value_(std::move(value)) {}
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;

    Property& operator=(T value) {
        if (value == value_) return *this;
        value_ = std::move(value);
        Changed.raise(value_);
        return *this;
    }

    operator const T&() const { return value_; }
    const T& get() const { return value_; }

    Event<const T&> Changed;

  private:
    T value_{};
};

}  // namespace talvora
