#pragma once
// A SocketDriver in front of another one, with the wire adapter between them: the IRC connection's own. It
// keeps the promises of SocketDriver: nothing is told from inside a call or after `close`, and bytes are
// pulled from the inner driver only when the engine asks, so that a flooding server still has to wait.
//
// An unfinished line that is too long ends the connection with error 10040, too much that waits for the
// server's pace with 10055. Made and owned where the engine's socket is made; `loop` outlives it.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "irc/wire/WireAdapter.h"
#include "platform/Loop.h"
#include "platform/Winsock.h"

namespace talvora {

class AdaptedSocket final : public SocketDriver, private SocketDriver::Listener {
  public:
    AdaptedSocket(Loop& loop, std::unique_ptr<SocketDriver> inner, const WireProfile& profile);
    AdaptedSocket(const AdaptedSocket&) = delete;
    AdaptedSocket& operator=(const AdaptedSocket&) = delete;
    ~AdaptedSocket() override;

    // Another driver and profile for the connections to come; only while the socket is closed.
    void renew(std::unique_ptr<SocketDriver> inner, const WireProfile& profile);

    void setListener(SocketDriver::Listener* listener) override { listener_ = listener; }
    void connect(const std::string& host, int port) override;
    void listen(const std::string& address, int port) override { inner_->listen(address, port); }
    void accept(SocketDriver& listening) override;
    void close() override;
    void send(std::string_view bytes) override;
    void take(std::string& to) override;
    int localPort() const override { return inner_->localPort(); }
    std::string remoteHost() const override { return inner_->remoteHost(); }
    int remotePort() const override { return inner_->remotePort(); }

  private:
    void onConnected() override;
    void onData() override;
    void onClosed() override;
    void onRequest() override;
    void onError(int number, const std::string& description) override;

    // Calls from the loop, unless the connection was closed before.
    void later(std::function<void()> call);
    void end();
    void tellOfAnswers();
    void tellOfEnd();
    void giveUpIfOverflowed();
    void passOn();
    void waitForPace();
    void pace();

    Loop& loop_;
    std::unique_ptr<SocketDriver> inner_;
    SocketDriver::Listener* listener_ = nullptr;
    std::optional<WireAdapter> adapter_;  // always there
    WakeUp pacing_;
    std::shared_ptr<bool> life_;  // of the connection; later calls hold it weakly
    bool gone_ = false;           // given up here, or closed by the peer
    bool closing_ = false;        // closed by the peer, with answers that were not taken yet
    std::string answers_;         // lines for the engine that were made while it sent
    std::string raw_;             // what was just taken from the inner driver
    std::string toServer_;        // what is just to leave
};

}  // namespace talvora
