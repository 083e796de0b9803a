#include "simulation/programs/FreePort.h"

#include <QtCore/QCoreApplication>
#include <QtNetwork/QTcpServer>

#include "simulation/programs/Waiting.h"

namespace talvora::programs {

namespace {

constexpr int firstPort = 20000;
constexpr int ports = 12000;

bool canBeBound(int port) {
    return QTcpServer().listen(QHostAddress::LocalHost, static_cast<quint16>(port));
}

}  // namespace

FreePort::FreePort() {
    claim_.setSocketOptions(QLocalServer::AbstractNamespaceOption);
    const auto start = static_cast<int>(QCoreApplication::applicationPid() * 7 % ports);
    for (int tries = 0; tries < ports; ++tries) {
        const int port = firstPort + (start + tries) % ports;
        if (!claim_.listen(QStringLiteral("talvora-port-%1").arg(port))) continue;
        number_ = port;
        if (canBeBound(port)) return;
        claim_.close();
    }
    throw Missing("no free port on loopback");
}

}  // namespace talvora::programs
