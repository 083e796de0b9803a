#include "platform_qt/QtSockets.h"

#include <utility>

#include "platform_qt/SocketDoor.h"
#include "platform_qt/SocketLink.h"

namespace talvora {

namespace {

class QtSocket final : public SocketDriver {
  public:
    QtSocket(Loop& loop, SocketLinger& linger, Network::Security security)
        : loop_(loop), linger_(linger), security_(std::move(security)) {}
    ~QtSocket() override { drop(); }

    void setListener(Listener* listener) override {
        listener_ = listener;
        if (link_) link_->setListener(listener);
        if (door_) door_->setListener(listener);
    }

    void connect(const std::string& host, int port) override {
        drop();
        link_ = std::make_shared<SocketLink>(loop_, listener_, answersAtOnce_);
        link_->connectTo(host, port, security_);
    }

    void listen(const std::string& address, int port) override {
        drop();
        auto door = std::make_shared<SocketDoor>(loop_, listener_);
        door->open(address, port);
        door_ = std::move(door);
    }

    void accept(SocketDriver& listening) override {
        auto* other = dynamic_cast<QtSocket*>(&listening);
        if (other == nullptr || other->door_ == nullptr) {
            throw RuntimeError(SocketErrors::InvalidState, "Invalid operation at current state", "Winsock");
        }
        auto link = std::make_shared<SocketLink>(loop_, listener_, answersAtOnce_);
        link->adopt(other->door_->next());
        drop();
        link_ = std::move(link);
    }

    void close() override { drop(); }
    void answerAtOnce() override { answersAtOnce_ = true; }

    void send(std::string_view bytes) override {
        if (link_) link_->send(bytes);
    }
    void flush() override {
        if (link_) link_->flush();
    }
    void take(std::string& to) override {
        if (link_) link_->take(to);
    }

    int localPort() const override { return link_ ? link_->localPort() : door_ ? door_->port() : 0; }
    std::string remoteHost() const override { return link_ ? link_->remoteHost() : std::string(); }
    int remotePort() const override { return link_ ? link_->remotePort() : 0; }

  private:
    void drop() {
        if (auto link = std::exchange(link_, nullptr)) link->leave(linger_);
        if (auto door = std::exchange(door_, nullptr)) door->leave();
    }

    Loop& loop_;
    SocketLinger& linger_;
    Network::Security security_;
    Listener* listener_ = nullptr;
    bool answersAtOnce_ = false;
    std::shared_ptr<SocketLink> link_;
    std::shared_ptr<SocketDoor> door_;
};

}  // namespace

std::unique_ptr<SocketDriver> QtNetwork::CreateSocket(const Security& security) {
    return std::make_unique<QtSocket>(loop_, linger_, security);
}

}  // namespace talvora
