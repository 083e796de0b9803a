#include "simulation/programs/FreePort.h"

#include <QtCore/QCoreApplication>
#include <QtNetwork/QTcpServer>

#include "simulation/programs/Waiting.h"

namespace talvora::programs {

namespace {

constexpr int FirstPort = 20000;
constexpr int Ports = 12000;

bool canBeBound(int port) {
    return QTcpServer().listen(QHostAddress::LocalHost, static_cast<quint16>(port));
}

}  // namespace

FreePort::FreePort() {
    claim_.setSocketOptions(QLocalServer::AbstractNamespaceOption);
    const auto start = static_cast<int>(QCoreApplication::applicationPid() * 7 % Ports);
    for (int tries = 0; tries < Ports; ++tries) {
        const int port = FirstPort + (start + tries) % Ports;
        if (!claim_.listen(QStringLiteral("talvora-port-%1").arg(port))) continue;
        number_ = port;
        if (canBeBound(port)) return;
        claim_.close();
    }
    throw Missing("no free port on loopback");
}

}  // namespace talvora::programs
