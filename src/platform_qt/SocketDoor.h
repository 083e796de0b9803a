#pragma once
// A listening socket and the connections that wait to be accepted, at most 16; further ones are closed at
// once. A waiting connection is a bare descriptor: nothing is read from a stranger before he is accepted.

#include <QTcpServer>
#include <deque>
#include <memory>
#include <string>

#include "platform/Loop.h"
#include "platform/Winsock.h"
#include "platform_qt/Descriptor.h"

namespace talvora {

class SocketDoor final : public std::enable_shared_from_this<SocketDoor> {
  public:
    SocketDoor(Loop& loop, SocketDriver::Listener* listener);

    // Throws RuntimeError 10048 if the port is taken.
    void open(const std::string& address, int port);
    void setListener(SocketDriver::Listener* listener) { listener_ = listener; }
    // The connection that waits longest. Throws RuntimeError if there is none.
    Descriptor next();
    int port() const { return server_.serverPort(); }
    // No event comes after this.
    void leave();

  private:
    class Server final : public QTcpServer {
      public:
        explicit Server(SocketDoor& door) : door_(door) {}

      protected:
        void incomingConnection(qintptr number) override {
            door_.onKnock(Descriptor(static_cast<int>(number)));
        }

      private:
        SocketDoor& door_;
    };

    void onKnock(Descriptor connection);
    void schedule();
    void deliver();

    Loop& loop_;
    SocketDriver::Listener* listener_;
    std::deque<Descriptor> waiting_;
    std::size_t announced_ = 0;  // of those that wait
    bool scheduled_ = false;
    Server server_;
};

}  // namespace talvora
