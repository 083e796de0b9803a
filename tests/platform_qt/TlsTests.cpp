#include <gmock/gmock.h>

#include <QFile>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>
#include <cstdlib>

#include "Worlds.h"

namespace talvora::test {
namespace {

// A server with a certificate that is its own authority. It sends its greeting to whoever gets through the
// handshake, takes what comes until the end, and can close.
struct TlsPeer {
    explicit TlsPeer(const std::string& host, const std::string& text = "welcome") : greeting(text) {
        const std::string command =
            "cd '" + folder.path().toStdString() +
            "' && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2"
            " -keyout key -out certificate -subj /CN=" +
            host + " -addext subjectAltName=DNS:" + host + " >log 2>&1";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        QSslConfiguration configuration;
        configuration.setLocalCertificateChain(QSslCertificate::fromPath(folder.filePath("certificate")));
        QFile key(folder.filePath("key"));
        EXPECT_TRUE(key.open(QIODevice::ReadOnly));
        configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
        server.setSslConfiguration(configuration);
        EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
        QObject::connect(&server, &QSslServer::pendingConnectionAvailable, &server, [this] { greet(); });
    }
    std::string authority() const { return folder.filePath("certificate").toStdString(); }
    void greet() {
        QTcpSocket* link = server.nextPendingConnection();
        QObject::connect(link, &QTcpSocket::readyRead, link,
                         [this, link] { got += link->readAll().toStdString(); });
        QObject::connect(link, &QTcpSocket::disconnected, link, [this] { ended = true; });
        link->write(greeting.data(), static_cast<qint64>(greeting.size()));
        if (closes) link->disconnectFromHost();
    }
    QTemporaryDir folder;
    QSslServer server;
    std::string greeting, got;
    bool closes = false, ended = false;
};

TEST(Tls, ConnectsOnlyWhereTheCertificateVerifies) {
    RealWorld world;
    TlsPeer peer("localhost"), other("other.example");
    Endpoint plain(world);
    plain.then = [&](const std::string&) {
        Endpoint server(world);
        server.socket.Accept(plain.socket);
        server.socket.SendData(":server NOTICE * :hello\r\n");
    };
    plain.listen();
    const struct {
        int port;
        std::string authorities, outcome, words;
    } cases[] = {{peer.server.serverPort(), peer.authority(), "Connect;Data;", ""},
                 {peer.server.serverPort(), "", "Error 10013;", "The server's certificate was refused: "},
                 {peer.server.serverPort(), "/no.pem", "Error 10013;",
                  "The file of trusted certificates can't be read"},
                 {other.server.serverPort(), other.authority(), "Error 10013;",
                  "The server's certificate was refused: The host name"},
                 {plain.socket.BoundPort(), "", "Error " + std::to_string(SocketErrors::Other) + ";", ""}};
    for (const auto& one : cases) {
        Endpoint client(world, {true, one.authorities});
        client.connectTo("localhost", one.port);
        world.until([&] { return client.saw("Data") || client.saw("Error"); });
        EXPECT_EQ(client.log, one.outcome);
        EXPECT_THAT(client.description, testing::StartsWith(one.words));
        EXPECT_EQ(client.data, client.saw("Data") ? peer.greeting : "");
    }
}

TEST(Tls, LosesNothingAtEitherEndAndTellsTheEndLast) {
    for (const bool closes : {false, true}) {
        RealWorld world;
        TlsPeer peer("localhost", std::string(closes ? 700'000 : 1'500'000, 'g'));
        peer.closes = closes;
        Endpoint client(world, {true, peer.authority()});
        client.taking = false;
        client.connectTo("localhost", peer.server.serverPort());
        client.untilSaw("Data");
        world.settle();
        EXPECT_EQ(client.log, "Connect;Data;");
        client.taking = true;
        client.socket.GetData(client.data);
        if (closes) {
            client.untilSaw("Close");
        } else {
            EXPECT_LE(client.data.size(), 512U * 1024);
        }
        world.until([&] { return client.data.size() == peer.greeting.size(); });
        if (closes) continue;
        const std::string sent = std::string(1'000'000, 's') + "QUIT";
        client.socket.SendData(sent);
        client.socket.Close();
        world.until([&] { return peer.ended; });
        EXPECT_TRUE(peer.got == sent);
    }
}

}  // namespace
}  // namespace talvora::test
