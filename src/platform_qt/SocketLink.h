#pragma once
// One TCP connection, plain or TLS: owned by a socket driver from `connectTo` or `adopt` to `leave`, and by
// the deferred call that delivers its events while that runs. Qt's signals only note what happened here.
//
// At most 256 KiB are read ahead of the owner, twice as much with TLS; at most 16 MiB wait to be sent.
//
// A plain connection whose owner answers at once keeps the turn: when the owner has answered a peer that is
// quick, its next bytes are waited for and delivered within the same turn of the loop, for 5 ms. Then the
// loop has its own way, and so have all others. Nobody waits for a peer that has let the last answer lie.

#include <QObject>
#include <QTcpSocket>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Loop.h"
#include "platform/Platform.h"
#include "platform_qt/Descriptor.h"
#include "platform_qt/QuickStream.h"

class QSslSocket;

namespace talvora {

class SocketLinger;

class SocketLink final : public std::enable_shared_from_this<SocketLink> {
  public:
    SocketLink(Loop& loop, SocketDriver::Listener* listener, bool answersAtOnce)
        : loop_(loop), listener_(listener), answersAtOnce_(answersAtOnce) {}
    SocketLink(const SocketLink&) = delete;
    SocketLink& operator=(const SocketLink&) = delete;
    ~SocketLink() = default;

    // Ends with error 10060 if the connection does not stand after 30 seconds.
    void connectTo(const std::string& host, int port, const Network::Security& security);
    // Takes over an accepted connection. Throws RuntimeError if it cannot be used.
    void adopt(Descriptor connection);

    void setListener(SocketDriver::Listener* listener) { listener_ = listener; }
    void send(std::string_view bytes);
    void flush();
    void take(std::string& to);
    // No event comes after this. What was sent is left to `linger`.
    void leave(SocketLinger& linger);

    int localPort() const;
    std::string remoteHost() const;
    int remotePort() const;

  private:
    struct Failure {
        int number;
        std::string description;
    };

    void watch();
    void makeSecure(const std::string& host, int port, const std::string& caFile);
    void onStands();
    void becomeQuick();
    void onReadable();
    void keepTurn();
    void onQuick(QuickStream::Got got);
    std::size_t available() const;
    qint64 waiting() const;
    void onSocketError(QAbstractSocket::SocketError error);
    void failAs(QAbstractSocket::SocketError error);
    void fail(int number, std::string description);
    void abort(int number, std::string description);
    void schedule();
    void deliver();
    bool wasReset() const;
    std::string words() const;

    Loop& loop_;
    SocketDriver::Listener* listener_;
    std::unique_ptr<QTcpSocket> socket_;
    QSslSocket* secure_ = nullptr;        // the same socket, if it is one
    std::unique_ptr<QuickStream> quick_;  // instead of the socket, once it stands
    int localPort_ = 0;
    std::string remoteHost_;
    int remotePort_ = 0;
    Descriptor probe_;  // a second descriptor: Qt closes its own before it tells that the peer is gone
    WakeUp deadline_{[this] { abort(SocketErrors::TimedOut, "The attempt to connect timed out"); }};
    const bool answersAtOnce_;
    std::optional<std::chrono::steady_clock::time_point> answered_;  // when it was last
    std::chrono::steady_clock::time_point slowUntil_{};              // nobody waits for the peer before
    bool hasAnswered_ = false;                                       // what was delivered last
    bool keepsTurn_ = false;
    bool scheduled_ = false;
    bool stands_ = false;  // connected, and secured if it is to be
    bool tellStands_ = false;
    bool tellData_ = false;
    bool peerClosed_ = false;
    bool told_ = false;    // the end was delivered
    std::string refusal_;  // why the certificate did not verify
    std::optional<Failure> failure_;
    QObject context_;  // of the connected signals; the first to go
};

}  // namespace talvora
