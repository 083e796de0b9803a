#include "simulation/programs/LineSocket.h"

#include <QtNetwork/QHostAddress>
#include <QtNetwork/QLocalSocket>
#include <QtNetwork/QTcpSocket>
#include <algorithm>

namespace talvora::programs {

// Nothing here needs a running loop: each call reads and writes by itself.
template <typename Socket>
void LineSocket::own(std::unique_ptr<Socket> socket) {
    closed_ = !socket->waitForConnected();
    descriptor_ = static_cast<int>(socket->socketDescriptor());
    QObject::connect(socket.get(), &Socket::disconnected, socket.get(), [this] { closed_ = true; });
    socket_ = std::move(socket);
}

LineSocket::LineSocket(int port) {
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(port));
    own(std::move(socket));
}

LineSocket::LineSocket(const std::string& path) {
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(QString::fromStdString(path));
    own(std::move(socket));
}

// What the other side does not say because it is gone is what the test misses.
void LineSocket::send(std::string_view line) {
    transcript.append("<< ").append(line).append("\n");
    if (closed_) return;
    const std::string bytes = std::string(line) + "\r\n";
    socket_->write(bytes.data(), static_cast<qint64>(bytes.size()));
    while (!closed_ && socket_->bytesToWrite() > 0) {
        if (!socket_->waitForBytesWritten(static_cast<int>(Patience.count()))) return;
    }
}

void LineSocket::keep(std::string line) {
    while (line.ends_with('\n') || line.ends_with('\r')) line.pop_back();
    transcript.append(">> ").append(line).append("\n");
    if (!filter || !filter(line)) lines_.push_back(std::move(line));
}

void LineSocket::gather(int milliseconds) {
    if (!closed_ && !socket_->canReadLine()) socket_->waitForReadyRead(milliseconds);
    while (socket_->canReadLine()) keep(socket_->readLine().toStdString());
}

std::string LineSocket::take(const Wanted& wanted, const std::string& what, Milliseconds wait) {
    const Deadline deadline(wait);
    for (;;) {
        const auto found = std::ranges::find_if(lines_, wanted);
        if (found != lines_.end()) {
            std::string line = std::move(*found);
            lines_.erase(found);
            return line;
        }
        const bool lastLook = closed_ || deadline.passed();
        const std::size_t before = lines_.size();
        gather(deadline.left());
        if (lastLook && lines_.size() == before) {
            throw Missing("missing: " + what + (closed_ ? " (the connection has ended)" : "") +
                          "\nwhat went over the connection:\n" + transcript);
        }
    }
}

}  // namespace talvora::programs
