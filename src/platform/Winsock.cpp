#include "platform/Winsock.h"

#include <utility>

namespace talvora {

Winsock::Winsock(Guard& guard, std::unique_ptr<SocketDriver> driver)
    : guard_(guard), driver_(std::move(driver)) {
    driver_->setListener(this);
}

Winsock::~Winsock() {
    driver_->setListener(nullptr);
    driver_->close();
}

void Winsock::Connect() {
    if (state_ != SocketState::Closed) {
        throw RuntimeError(SocketErrors::InvalidState, "Invalid operation at current state", "Winsock");
    }
    state_ = SocketState::Connecting;
    driver_->connect(RemoteHost, RemotePort);
}

void Winsock::Listen() {
    if (state_ != SocketState::Closed) {
        throw RuntimeError(SocketErrors::InvalidState, "Invalid operation at current state", "Winsock");
    }
    driver_->listen(LocalAddress, LocalPort);
    state_ = SocketState::Listening;
}

void Winsock::Accept(Winsock& listening) {
    if (state_ != SocketState::Closed) {
        throw RuntimeError(SocketErrors::InvalidState, "Invalid operation at current state", "Winsock");
    }
    driver_->accept(*listening.driver_);
    RemoteHost = driver_->remoteHost();
    RemotePort = driver_->remotePort();
    state_ = SocketState::Connected;
}

void Winsock::Close() {
    state_ = SocketState::Closed;
    driver_->close();
}

void Winsock::SendData(std::string_view bytes) {
    if (state_ != SocketState::Connected) {
        throw RuntimeError(SocketErrors::NotConnected,
                           "Wrong protocol or connection state for the requested transaction or request",
                           "Winsock");
    }
    driver_->send(bytes);
}

void Winsock::GetData(std::string& to) {
    driver_->take(to);
}

void Winsock::onConnected() {
    state_ = SocketState::Connected;
    guard_.run("Winsock_Connect", [this] { Connected.raise(); });
}

void Winsock::onData() {
    guard_.run("Winsock_DataArrival", [this] { DataArrival.raise(); });
}

void Winsock::onClosed() {
    state_ = SocketState::Closing;
    guard_.run("Winsock_Close", [this] { Closed.raise(); });
}

void Winsock::onRequest() {
    guard_.run("Winsock_ConnectionRequest", [this] { ConnectionRequest.raise(); });
}

void Winsock::onError(int number, const std::string& description) {
    state_ = SocketState::Error;
    guard_.run("Winsock_Error", [&] { Error.raise(number, description); });
}

}  // namespace talvora
