#pragma once
// The random generator, fixed to the bit because cipher texts must be readable by every build. Whoever needs
// a sequence of its own owns one; all of a component's ciphers share the one that the component owns. Numbers
// lie from 0 (included) to 1 (excluded) and are single precision. Nothing here fails.

#include <cstdint>

namespace talvora {

class Random {
  public:
    // The next number.
    float Rnd();
    // x < 0 restarts the sequence from a state made of x alone, 0 gives the last number again, any other x
    // the next number.
    float Rnd(float x);
    // Mixes x into the state. The low byte of the state stays.
    void Randomize(double x);
    // Mixes the clock in; the seconds since midnight count in single precision.
    void RandomizeByClock(double secondsSinceMidnight);

  private:
    float last() const;

    std::uint32_t state_ = 327680;  // 24 bits
};

}  // namespace talvora
