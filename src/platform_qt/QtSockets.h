#pragma once
// The component's sockets on Qt's: plain connections, TLS connections and listeners. Owned by the platform;
// its sockets do not outlive it. One thread.
//
// Nothing blocks. Every event is delivered by a deferred call of the loop, so none comes from inside the call
// that caused it and none after `close`. A plain socket does not load the TLS library.

#include "platform/Loop.h"
#include "platform/Platform.h"
#include "platform_qt/SocketLinger.h"

namespace talvora {

class QtNetwork final : public Network {
  public:
    explicit QtNetwork(Loop& loop) : loop_(loop) {}

    // With TLS the server's certificate must verify against the system's and the given authorities and bear
    // the host's name; otherwise the connection ends with error 10013.
    std::unique_ptr<SocketDriver> CreateSocket(const Security& security) override;

  private:
    Loop& loop_;
    SocketLinger linger_;
};

}  // namespace talvora
