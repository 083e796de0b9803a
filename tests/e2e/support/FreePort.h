#pragma once
// A TCP port on loopback that nobody else has while its owner lives, so that a server can be ended and
// started again on it. It lies below the range that the system gives to outgoing connections.

#include "e2e/support/Descriptor.h"

namespace talvora::e2e {

class FreePort {
  public:
    FreePort();
    int number() const { return number_; }

  private:
    Descriptor
        claim_;  // a name in the abstract space of local sockets, by which other tests keep off the port
    int number_ = 0;
};

// Tries to connect to `port` on loopback; the result is not open when nobody listens there.
Descriptor connectToPort(int port);

}  // namespace talvora::e2e
