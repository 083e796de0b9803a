// The network page's test against servers that are none, or not quite.
#include <gmock/gmock.h>

#include <QFile>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>
#include <cstdlib>

#include "Until.h"
#include "orrery/face/ConnectionTest.h"

namespace talvora::test {
namespace {

using namespace testing;

// Says its piece when the guest has spoken (or at once), and closes if it is to.
struct Peer {
    explicit Peer(QTcpServer& on) : server(on) {
        EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
        QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server, [this] {
            QTcpSocket* const link = server.nextPendingConnection();
            QObject::connect(link, &QTcpSocket::readyRead, link, [this, link] {
                const bool first = got.isEmpty();
                got += link->readAll();
                if (!first) return;
                link->write(says);
                if (closes) link->disconnectFromHost();
            });
        });
    }
    QTcpServer& server;
    QByteArray says, got;
    bool closes = false;
};

std::string outcome(const NetworkProfile& profile, int patience = ConnectionTest::Patience) {
    QString told;
    const ConnectionTest run(
        profile, [&](bool works, const QString& words) { told = (works ? "+ " : "- ") + words; }, patience);
    until([&] { return !told.isEmpty(); });
    return told.toStdString();
}

TEST(TestConnection, NamesWhatIsWrongInPlainWords) {
    const struct {
        QByteArray says;
        bool closes, tls;
        const char* words;
    } cases[] = {
        {":irc.test 001 guest :Welcome\r\n", false, false, "+ Connected: irc.test answers."},
        {":irc.test 464 guest :Wrong\r\n", true, false, "asks for a password"},
        {"ERROR :Closing link: Password mismatch\r\n", true, false, "asks for a password"},
        {"NOTICE AUTH :*** Look\r\nERROR :Too \x1B"
         "fast\r\n",
         true, false, "not want the connection: Too fast"},
        {"NOTICE AUTH :*** Look\r\n", true, false, "has closed the connection."},
        {"220 mail.test ESMTP\r\n", false, false, "not an IRC server"},
        {"HTTP/1.1 400 Bad Request\r\n\r\n", true, false, "not an IRC server"},
        {QByteArray(9000, 'x'), false, false, "not an IRC server"},
        {QByteArray(": \n:\n::\n"), false, false, "not an IRC server"},
        {QByteArray("NOTICE x :y\n").repeated(9000), false, false, "not an IRC server"},
        {QByteArray("\x15\x03\x01\0\x02\x02\x16", 7), true, false, "switch TLS on"},
        {"", true, false, "perhaps it wants TLS"},
        {":irc.test 451 * :Register first\r\n", false, true, "does not speak TLS"},
    };
    for (const auto& one : cases) {
        QTcpServer server;
        Peer peer(server);
        peer.says = one.says;
        peer.closes = one.closes;
        NetworkProfile profile;
        profile.ServerPort = server.serverPort();
        profile.TLS = one.tls;
        EXPECT_THAT(outcome(profile), HasSubstr(one.words)) << one.says.left(80).toStdString();
    }
    NetworkProfile nobody;
    {
        QTcpServer gone;
        ASSERT_TRUE(gone.listen(QHostAddress::LocalHost));
        nobody.ServerPort = gone.serverPort();
    }
    EXPECT_THAT(outcome(nobody), HasSubstr("takes no connection on port"));
    nobody.ServerHost = "a..b";
    EXPECT_EQ(outcome(nobody), "- The name a..b is not known.");
}

TEST(TestConnection, TakesItsLeaveAndWaitsForNobodyForEver) {
    QTcpServer server;
    Peer peer(server);
    peer.says = "NOTICE AUTH :*** Look\r\nPING :42\r\n:irc.test 433 * guest :In use\r\n";
    NetworkProfile profile;
    profile.ServerPort = server.serverPort();
    QString told;
    const ConnectionTest run(profile, [&](bool, const QString& words) { told = words; });
    until([&] { return peer.got.endsWith("QUIT\r\n") && !told.isEmpty(); });
    EXPECT_THAT(peer.got.toStdString(),
                MatchesRegex("NICK guest[0-9]{4}\r\nUSER guest 0 [*] :guest\r\nPONG :42\r\nQUIT\r\n"));
    peer.got.clear();
    peer.says = "";
    EXPECT_EQ(outcome(profile, 300), "- The server takes the connection, but says nothing.");
}

TEST(TestConnection, SaysWhyACertificateIsNotTrusted) {
    const QTemporaryDir folder;
    const std::string command =
        "cd '" + folder.path().toStdString() +
        "' && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes"
        " -days 2 -keyout key -out certificate -subj /CN=other.test"
        " -addext subjectAltName=DNS:other.test >log 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0);
    QSslConfiguration configuration;
    configuration.setLocalCertificateChain(QSslCertificate::fromPath(folder.filePath("certificate")));
    QFile key(folder.filePath("key"));
    ASSERT_TRUE(key.open(QIODevice::ReadOnly));
    configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
    QSslServer server;
    server.setSslConfiguration(configuration);
    Peer peer(server);
    NetworkProfile profile;
    profile.ServerPort = server.serverPort();
    profile.TLS = true;
    EXPECT_THAT(outcome(profile), AllOf(HasSubstr("another name than 127.0.0.1"), HasSubstr("nobody whom")));
    profile.CAFile = folder.filePath("certificate").toStdString();
    EXPECT_THAT(outcome(profile), AllOf(HasSubstr("another name"), Not(HasSubstr("nobody whom"))));
    profile.CAFile = folder.filePath("none").toStdString();
    EXPECT_THAT(outcome(profile), HasSubstr("cannot be read"));
    profile.TLS = false;
    EXPECT_THAT(outcome(profile), AnyOf(HasSubstr("TLS"), HasSubstr("closed")));
}

}  // namespace
}  // namespace talvora::test
