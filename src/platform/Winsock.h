#pragma once
// The control `Winsock`: a TCP client or server. Bytes in, bytes out; no event is raised from inside the call
// that caused it.
//
// `SocketDriver` is what a platform (or a layer in front of it, such as the wire adapter) implements.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Event.h"
#include "platform/Guard.h"

namespace talvora {

// The classic error numbers of sockets, as far as the system meets them.
namespace SocketErrors {
constexpr int NetworkUnreachable = 10051;
constexpr int MessageTooLong = 10040;
constexpr int ConnectionReset = 10054;
constexpr int NoBufferSpace = 10055;
constexpr int TimedOut = 10060;
constexpr int ConnectionRefused = 10061;
constexpr int HostNotFound = 11001;
constexpr int AddressInUse = 10048;
constexpr int Other = 10038;
constexpr int NotConnected =
    40006;  // "Wrong protocol or connection state for the requested transaction or request"
constexpr int InvalidState = 40020;  // "Invalid operation at current state"
constexpr int CertificateRefused = 10013;
}  // namespace SocketErrors

class SocketDriver {
  public:
    // What the driver tells; called from the loop, never from inside one of the operations below, and not
    // after `close`.
    struct Listener {
        virtual ~Listener() = default;
        virtual void onConnected() = 0;
        virtual void onData() = 0;     // bytes can be taken
        virtual void onClosed() = 0;   // by the peer, after everything that arrived was taken
        virtual void onRequest() = 0;  // listening: a connection waits for `accept`
        virtual void onError(int number, const std::string& description) = 0;  // the socket is dead
    };

    virtual ~SocketDriver() = default;
    virtual void setListener(Listener* listener) = 0;

    // Begins to connect. Look-up and connection never block; a failure comes as `onError`.
    virtual void connect(const std::string& host, int port) = 0;
    // Listens on `address` ("" for any), port 0 for any free one. Throws RuntimeError 10048 if it is taken.
    virtual void listen(const std::string& address, int port) = 0;
    // Takes over the connection that waits at `listening`.
    virtual void accept(SocketDriver& listening) = 0;
    // Gives up the connection; what was sent before is still delivered if the network lets it.
    virtual void close() = 0;
    // Queues bytes. What the peer does not take is bounded: beyond it the socket ends with `onError`.
    virtual void send(std::string_view bytes) = 0;
    // What is queued leaves now and not at the end of the turn, as far as the network takes it.
    virtual void flush() {}
    // Before it connects or accepts: the owner answers what arrives within `onData`, and then waits for the
    // peer. The driver may deliver the next bytes in the same turn of the loop, for some milliseconds.
    virtual void answerAtOnce() {}
    // Moves what has arrived to the end of `to`. Bytes that are not taken stay, and beyond a bound the driver
    // stops to read from the network, so that a flooding peer has to wait.
    virtual void take(std::string& to) = 0;
    virtual int localPort() const = 0;
    virtual std::string remoteHost() const = 0;
    virtual int remotePort() const = 0;
};

enum class SocketState {
    Closed = 0,
    Open = 1,
    Listening = 2,
    Connecting = 6,
    Connected = 7,
    Closing = 8,
    Error = 9
};

class Winsock final : private SocketDriver::Listener {
  public:
    Winsock(Guard& guard, std::unique_ptr<SocketDriver> driver);
    ~Winsock() override;

    SocketState State() const { return state_; }
    std::string RemoteHost;  // where `Connect` goes; the peer's address after `Accept`
    int RemotePort = 0;
    std::string LocalAddress;  // where `Listen` listens; empty for any
    int LocalPort = 0;         // the port to listen on; 0 for any free one
    int BoundPort() const { return driver_->localPort(); }
    std::string Tag;  // for the owner's use

    // To RemoteHost and RemotePort. Faults with 40020 unless the socket is closed.
    void Connect();
    void Listen();
    void Accept(Winsock& listening);
    void Close();
    // Faults with 40006 unless the socket is connected.
    void SendData(std::string_view bytes);
    // What has been sent leaves now and not at the end of the turn: for who goes on to do something slow.
    void Flush() { driver_->flush(); }
    // For who answers each `DataArrival` in its handler: a message to and fro then costs little more than the
    // network does. Once, before the first connection.
    void AnswerAtOnce() { driver_->answerAtOnce(); }
    // Appends what has arrived to `to`; what is not taken stays and holds the peer up.
    void GetData(std::string& to);

    Event<> Connected;
    Event<> Closed;  // by the peer
    Event<> DataArrival;
    Event<> ConnectionRequest;
    Event<int, const std::string&> Error;  // number, description

  private:
    void onConnected() override;
    void onData() override;
    void onClosed() override;
    void onRequest() override;
    void onError(int number, const std::string& description) override;

    Guard& guard_;
    std::unique_ptr<SocketDriver> driver_;
    SocketState state_ = SocketState::Closed;
};

}  // namespace talvora
