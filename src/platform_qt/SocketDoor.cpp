#include "platform_qt/SocketDoor.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QTimer>
#include <utility>

namespace talvora {

namespace {
constexpr std::size_t MostWaiting = 16;
constexpr int RestMs = 1000;  // after the machine had no descriptor for a connection
}  // namespace

SocketDoor::SocketDoor(Loop& loop, SocketDriver::Listener* listener)
    : loop_(loop), listener_(listener), server_(*this) {
    server_.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    QObject::connect(&server_, &QTcpServer::acceptError, &server_, [this] {
        server_.pauseAccepting();
        QTimer::singleShot(RestMs, &server_, [this] { server_.resumeAccepting(); });
    });
}

void SocketDoor::open(const std::string& address, int port) {
    const QHostAddress where = address.empty() ? QHostAddress(QHostAddress::Any)
                                               : QHostAddress(QString::fromLatin1(address.c_str()));
    if (where.isNull() || port < 0 || port > 65535) {
        throw RuntimeError(SocketErrors::Other, "The address to listen on is not valid", "Winsock");
    }
    if (server_.listen(where, static_cast<quint16>(port))) return;
    if (server_.serverError() == QAbstractSocket::AddressInUseError) {
        throw RuntimeError(SocketErrors::AddressInUse, "The address and port are in use", "Winsock");
    }
    throw RuntimeError(SocketErrors::Other, server_.errorString().toStdString(), "Winsock");
}

Descriptor SocketDoor::next() {
    if (waiting_.empty()) {
        throw RuntimeError(SocketErrors::InvalidState, "Invalid operation at current state", "Winsock");
    }
    Descriptor connection = std::move(waiting_.front());
    waiting_.pop_front();
    if (announced_ > 0) --announced_;
    return connection;
}

void SocketDoor::leave() {
    listener_ = nullptr;
    server_.close();
    waiting_.clear();
}

void SocketDoor::onKnock(Descriptor connection) {
    if (waiting_.size() == MostWaiting) return;
    waiting_.push_back(std::move(connection));
    schedule();
}

void SocketDoor::schedule() {
    if (std::exchange(scheduled_, true)) return;
    loop_.Defer([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->deliver();
    });
}

void SocketDoor::deliver() {
    scheduled_ = false;
    if (!listener_ || announced_ >= waiting_.size()) return;
    if (++announced_ < waiting_.size()) schedule();
    listener_->onRequest();
}

}  // namespace talvora
