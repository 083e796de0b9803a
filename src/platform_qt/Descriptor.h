#pragma once
// An open file descriptor and its owner. -1 is none.

#include <unistd.h>

#include <utility>

namespace talvora {

class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        reset(other.release());
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { reset(); }

    int get() const { return number_; }
    int release() { return std::exchange(number_, -1); }
    void reset(int number = -1) {
        if (number_ >= 0) ::close(number_);
        number_ = number;
    }

  private:
    int number_ = -1;
};

}  // namespace talvora
