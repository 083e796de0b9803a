#pragma once
// A TCP port on loopback that no other user of this class has while its owner lives, so that a server can be
// ended and started again on it. It lies below the range that the system gives to outgoing connections.
// Throws Missing where there is none.

#include <QtNetwork/QLocalServer>

namespace talvora::programs {

class FreePort {
  public:
    FreePort();
    int number() const { return number_; }

  private:
    QLocalServer claim_;  // a name that the system gives once, by which others keep off the port
    int number_ = 0;
};

}  // namespace talvora::programs
