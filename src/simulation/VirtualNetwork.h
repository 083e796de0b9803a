#pragma once
// Sockets on virtual time. A test scripts the servers; two components of one process reach each other through
// listening sockets. The stream is cut as the test says.

#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "simulation/VirtualTime.h"

namespace talvora::test {

// How a stream of bytes arrives.
enum class Cut { AsSent, SingleBytes, OneLump, Random };

class VirtualSocket;
class VirtualNetwork;

// A server that a test plays, at one host and port. It serves one connection at a time.
class ScriptedServer {
  public:
    enum class Mood { Accepts, Refuses, Silent };

    Mood mood = Mood::Accepts;
    bool deaf = false;  // half open: neither side hears of the other any more
    int connections = 0;

    bool connected() const { return client_ != nullptr; }
    // Bytes that the client has left in its socket.
    std::size_t untaken() const;
    void says(const std::string& line) { sends(line + "\r\n"); }
    void sends(const std::string& bytes);
    void closes();
    void resets();

    // Called after each piece that came.
    std::function<void()> whenHeard;
    // The complete lines that came since the last call.
    std::vector<std::string> heard();
    // All that came on all connections, in order.
    std::string transcript;

  private:
    friend class VirtualSocket;
    VirtualSocket* client_ = nullptr;
    std::string unread_;
};

class VirtualSocket final : public SocketDriver {
  public:
    explicit VirtualSocket(VirtualNetwork& network) : network_(network) {}
    ~VirtualSocket() override { close(); }

    void setListener(Listener* listener) override { listener_ = listener; }
    void connect(const std::string& host, int port) override;
    void listen(const std::string& address, int port) override;
    void accept(SocketDriver& listening) override;
    void close() override;
    void send(std::string_view bytes) override;
    void take(std::string& to) override;
    int localPort() const override { return localPort_; }
    std::string remoteHost() const override { return remoteHost_; }
    int remotePort() const override { return remotePort_; }

    // What the other side does.
    void arrive(const std::string& bytes);
    void peerCloses();
    void fail(int number, const std::string& description);

  private:
    friend class VirtualNetwork;
    friend class ScriptedServer;
    template <class Call>
    void later(Call call);  // not after `close`
    void reach(ScriptedServer& server);
    void reachListener();
    void leaveQueue();
    void becomeConnected();
    void receive(const std::string& bytes);
    void closedIfEmpty();

    VirtualNetwork& network_;
    Listener* listener_ = nullptr;
    std::shared_ptr<bool> life_ = std::make_shared<bool>(true);  // of this connection
    ScriptedServer* server_ = nullptr;
    VirtualSocket* peer_ = nullptr;
    std::vector<VirtualSocket*> waiting_;  // for this one to accept them
    VirtualSocket* waitsAt_ = nullptr;
    std::string inbox_;
    std::string lump_;
    bool peerClosed_ = false;
    bool connected_ = false;
    std::string remoteHost_;
    int remotePort_ = 0;
    std::string localAddress_;
    int localPort_ = 0;
};

class VirtualNetwork final : public Network {
  public:
    explicit VirtualNetwork(VirtualTime& time, unsigned seed = 1) : time_(time), random_(seed) {}

    std::unique_ptr<SocketDriver> CreateSocket(const Security& security) override;

    // The server at `host` and `port`; made at the first call. Elsewhere connections are refused.
    ScriptedServer& server(const std::string& host, int port);

    Cut cut = Cut::AsSent;
    Microseconds delay = 0;  // of everything that travels

  private:
    friend class VirtualSocket;

    VirtualTime& time_;
    std::mt19937 random_;
    std::map<std::pair<std::string, int>, std::unique_ptr<ScriptedServer>> servers_;
    // At its address and port, or at any address; null if nobody listens there.
    VirtualSocket* listenerAt(const std::string& host, int port) const;

    std::map<std::pair<int, std::string>, VirtualSocket*> listening_;  // by port and address
    int nextPort_ = 40000;
};

}  // namespace talvora::test
