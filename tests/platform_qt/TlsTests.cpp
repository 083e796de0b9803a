#include <gmock/gmock.h>

#include <QFile>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>
#include <cstdlib>
#include <memory>

#include "RealWorld.h"

namespace talvora::test {

namespace {

// An authority of its own and certificates that it signed, in a folder that goes with it.
class Authority {
  public:
    Authority() {
        run("openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj "
            "/CN=Authority"
            " -keyout ca.key -out ca.pem");
    }
    std::string file() const { return path("ca.pem").toStdString(); }

    QSslConfiguration certify(const std::string& host) {
        run("printf 'subjectAltName=DNS:" + host +
            "' > names && openssl req -newkey ec -pkeyopt"
            " ec_paramgen_curve:prime256v1 -nodes -subj /CN=" +
            host +
            " -keyout server.key -out server.csr &&"
            " openssl x509 -req -in server.csr -CA ca.pem -CAkey ca.key -CAcreateserial -days 2 -extfile "
            "names"
            " -out server.pem");
        QSslConfiguration configuration;
        configuration.setLocalCertificateChain(QSslCertificate::fromPath(path("server.pem")));
        QFile key(path("server.key"));
        EXPECT_TRUE(key.open(QIODevice::ReadOnly));
        configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
        return configuration;
    }

  private:
    QString path(const char* name) const { return folder_.filePath(QString::fromLatin1(name)); }
    void run(const std::string& command) {
        const std::string all = "cd '" + folder_.path().toStdString() + "' && { " + command + "; } >log 2>&1";
        EXPECT_EQ(std::system(all.c_str()), 0) << command;
    }
    QTemporaryDir folder_;
};

// Sends its greeting to whoever gets through the handshake, takes what comes until the end, and can close.
struct TlsPeer {
    explicit TlsPeer(const QSslConfiguration& configuration) {
        server.setSslConfiguration(configuration);
        EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
        QObject::connect(&server, &QSslServer::pendingConnectionAvailable, &server, [this] { greet(); });
    }
    void greet() {
        link = server.nextPendingConnection();
        QObject::connect(link, &QTcpSocket::readyRead, link,
                         [this] { got += link->readAll().toStdString(); });
        QObject::connect(link, &QTcpSocket::disconnected, link, [this] { ended = true; });
        link->write(greeting.data(), static_cast<qint64>(greeting.size()));
        if (closes) link->disconnectFromHost();
    }
    QSslServer server;
    QTcpSocket* link = nullptr;
    std::string greeting = "welcome", got;
    bool closes = false, ended = false;
};

}  // namespace

TEST(Tls, ConnectsOnlyWhereTheCertificateVerifies) {
    Authority authority;
    const struct {
        const char* certified;
        std::string authorities;
        std::string outcome;
        const char* words;
    } cases[] = {
        {"localhost", authority.file(), "Connect;Data;", ""},
        {"localhost", "", "Error 10013;", "The server's certificate was refused: "},
        {"other.example", authority.file(), "Error 10013;",
         "The server's certificate was refused: The host name"},
        {"localhost", "/nowhere/ca.pem", "Error 10013;", "The file of trusted certificates can't be read"},
    };
    for (const auto& one : cases) {
        RealWorld world;
        TlsPeer peer(authority.certify(one.certified));
        Endpoint client(world, {true, one.authorities});
        client.connectTo("localhost", peer.server.serverPort());
        RealWorld::until([&] { return client.saw("Data") || client.saw("Error"); });
        EXPECT_EQ(client.log, one.outcome);
        EXPECT_THAT(client.description, testing::StartsWith(one.words));
        EXPECT_EQ(client.data, client.saw("Data") ? peer.greeting : "");
    }
}

TEST(Tls, FailsAgainstAServerWithoutIt) {
    RealWorld world;
    Endpoint door(world), server(world);
    door.then = [&](const std::string&) {
        server.socket.Accept(door.socket);
        server.socket.SendData(":server NOTICE * :hello\r\n");
    };
    door.listen();
    Endpoint client(world, {true, ""});
    client.connectTo("127.0.0.1", door.socket.BoundPort());
    client.untilSaw("Error");
    EXPECT_EQ(client.log, "Error " + std::to_string(SocketErrors::Other) + ";");
}

TEST(Tls, LosesNothingAtEitherEnd) {
    Authority authority;
    TlsPeer peer(authority.certify("localhost"));
    peer.greeting = std::string(1'500'000, 'g');
    RealWorld world;
    Endpoint client(world, {true, authority.file()});
    client.taking = false;
    client.connectTo("localhost", peer.server.serverPort());
    client.untilSaw("Data");
    world.settle();
    EXPECT_EQ(client.log, "Connect;Data;");
    client.taking = true;
    client.socket.GetData(client.data);
    EXPECT_LE(client.data.size(), 512U * 1024);
    RealWorld::until([&] { return client.data.size() == peer.greeting.size(); });
    const std::string sent = std::string(1'000'000, 's') + "QUIT";
    client.socket.SendData(sent);
    client.socket.Close();
    RealWorld::until([&] { return peer.ended; });
    EXPECT_TRUE(peer.got == sent);
}

TEST(Tls, TellsTheEndOnlyWhenEverythingWasTaken) {
    Authority authority;
    TlsPeer peer(authority.certify("localhost"));
    peer.greeting = std::string(700'000, 'g');
    peer.closes = true;
    RealWorld world;
    Endpoint client(world, {true, authority.file()});
    client.taking = false;
    client.connectTo("localhost", peer.server.serverPort());
    client.untilSaw("Data");
    world.settle();
    EXPECT_EQ(client.log, "Connect;Data;");
    client.taking = true;
    client.socket.GetData(client.data);
    client.untilSaw("Close");
    EXPECT_EQ(client.data.size(), peer.greeting.size());
}

}  // namespace talvora::test
