#pragma once
// The wall clock of the machine, in the user's local time.

#include "platform/Clock.h"

namespace talvora {

class SystemClock final : public Clock {
  public:
    DateTime Now() const override;
    double SecondsSinceMidnight() const override;
};

}  // namespace talvora
