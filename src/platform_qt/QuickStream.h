#pragma once
// The bytes of a connection whose owner answers at once, past the toolkit's buffers: where one message goes
// to and fro, these and the ways through the loop cost several times what the network does. Owned by a
// `SocketLink`.
//
// The descriptor is a blocking one that nobody else has, so that there can be a wait in it. Such a wait ends
// with the kernel's tick, mostly after 8 ms at the latest: a shorter one would need a timer of its own for
// each, and to set one costs as much as the whole message.

#include <sys/socket.h>

#include <QSocketNotifier>
#include <QTcpSocket>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform_qt/Descriptor.h"

namespace talvora {

class QuickStream {
  public:
    enum class Got { Nothing, Bytes, End };

    // A connection that stands, and what has been read of it before. `onReadable` is called from the loop;
    // this object may go in it.
    QuickStream(Descriptor connection, std::string early, std::function<void()> onReadable);
    QuickStream(const QuickStream&) = delete;
    QuickStream& operator=(const QuickStream&) = delete;
    ~QuickStream() = default;

    // What has come is kept until it is taken; nothing comes while there is more than 192 KiB of it.
    Got receive() { return read(MSG_DONTWAIT); }
    // The same for who has nothing else to do.
    Got await() { return read(0); }
    // Why it ended: 0 if the peer has closed it, else a number of the system.
    int error() const { return error_; }
    std::size_t available() const { return received_.size(); }
    void take(std::string& to);

    // What the network does not take at once waits. That the connection is broken is left for `receive` to
    // find, behind what is still to be read.
    void send(std::string_view bytes);
    std::size_t waiting() const { return toSend_.size() - sent_; }

    // The connection with what still waits to be sent; this object is of no use any more.
    std::unique_ptr<QTcpSocket> release();

  private:
    // A notifier may be in the middle of its signal; it tells nothing after this.
    struct Silence {
        void operator()(QSocketNotifier* notifier) const;
    };
    using Notifier = std::unique_ptr<QSocketNotifier, Silence>;

    Got read(int flags);
    void hold(bool held);
    void sendWaiting();
    std::size_t put(std::string_view bytes);

    Descriptor connection_;
    std::string received_;
    std::string toSend_;
    std::size_t sent_ = 0;  // of it
    std::unique_ptr<char[]> room_;
    int error_ = 0;
    bool ended_ = false;
    bool isHeld_ = false;  // nothing is read for the time being
    Notifier readable_;
    Notifier writable_;
};

}  // namespace talvora
