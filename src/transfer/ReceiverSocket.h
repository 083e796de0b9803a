#pragma once
// The socket of the file receiver as the system's rules see it: one that listens, becomes the connection of
// the first who comes, and listens again when that is over. While it is a connection nobody else gets in.
// Owned by `frmReceiveFile`.
//
// To listen can fail, since the port may be taken or the address not be there: that is no fault, but a
// sentence in `Trouble` until a later try succeeds.

#include <functional>
#include <string>

#include "platform/Platform.h"
#include "platform/Property.h"

namespace talvora {

class ReceiverSocket {
  public:
    // `address()` is where to listen; empty for all addresses.
    ReceiverSocket(Guard& guard, Network& network, std::function<std::string()> address);

    SocketState State() const;
    // Goes back to listening, whatever it was before.
    void Listen();
    // Becomes the connection that waits; false if it has gone again.
    bool Accept();
    void Close();
    // The address to listen on has become another one.
    bool IsMisplaced() const;

    Winsock Winsock1;  // the connection; its events are the receiver's
    Event<> ConnectionRequest;
    Property<std::string> Trouble;  // in words; empty while it listens or is connected

  private:
    std::function<std::string()> address_;
    Winsock door_;
    Subscription on_;
};

}  // namespace talvora
