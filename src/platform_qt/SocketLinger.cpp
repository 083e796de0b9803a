#include "platform_qt/SocketLinger.h"

#include <sys/socket.h>

#include <QSslSocket>
#include <QTimer>

namespace talvora {

namespace {

constexpr int LongestMs = 5000;
constexpr qsizetype MostLingering = 64;
constexpr qint64 MostThrownAway = 16 << 20;  // whoever goes on sending does not wait for the last word

// A socket that is closed while the peer's bytes are unread resets the connection, and a reset may overtake
// what was sent. So a plain one only ends its own direction and throws away what still comes.
void halfClose(QTcpSocket& socket) {
    if (socket.bytesToWrite() == 0) ::shutdown(static_cast<int>(socket.socketDescriptor()), SHUT_WR);
}

}  // namespace

SocketLinger::~SocketLinger() {
    for (QTcpSocket* socket : keeper_.findChildren<QTcpSocket*>(QString(), Qt::FindDirectChildrenOnly)) {
        socket->disconnect();
        socket->flush();
    }
}

void SocketLinger::take(std::unique_ptr<QTcpSocket> given) {
    while (keeper_.children().size() >= MostLingering) delete keeper_.children().front();
    given->setParent(&keeper_);
    QTcpSocket* socket = given.release();
    QObject::connect(socket, &QTcpSocket::errorOccurred, socket, &QObject::deleteLater);
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, thrownAway = qint64{0}]() mutable {
        thrownAway += socket->skip(socket->bytesAvailable());
        if (thrownAway > MostThrownAway) socket->deleteLater();
    });
    QTimer::singleShot(LongestMs, socket, &QObject::deleteLater);
    socket->skip(socket->bytesAvailable());
    socket->flush();
    if (qobject_cast<QSslSocket*>(socket) != nullptr) {
        socket->disconnectFromHost();
        return;
    }
    QObject::connect(socket, &QTcpSocket::bytesWritten, socket, [socket] { halfClose(*socket); });
    halfClose(*socket);
}

}  // namespace talvora
