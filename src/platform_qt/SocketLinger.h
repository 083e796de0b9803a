#pragma once
// Connections that their owners have given up. Each still delivers what was sent, half closes, waits for the
// peer to close too, and is gone after 5 seconds at the latest. At most 64 at a time.

#include <QObject>
#include <QTcpSocket>
#include <memory>

namespace talvora {

class SocketLinger {
  public:
    SocketLinger() = default;
    SocketLinger(const SocketLinger&) = delete;
    SocketLinger& operator=(const SocketLinger&) = delete;
    // What the kernel takes at once is still sent.
    ~SocketLinger();

    // A connected socket to which nobody listens any more.
    void take(std::unique_ptr<QTcpSocket> given);

  private:
    QObject keeper_;  // the parent of all of them
};

}  // namespace talvora
