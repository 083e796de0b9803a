#include "orrery/face/ConnectionTest.h"

#include <QNetworkProxy>
#include <QRandomGenerator>
#include <QSslConfiguration>
#include <QStringList>
#include <algorithm>
#include <array>
#include <utility>

#include "common/Numerics.h"
#include "desktop/QtText.h"

namespace talvora {

namespace {

constexpr qsizetype LongestLine = 8192;
constexpr qsizetype MostRead = 65536;
constexpr qsizetype LongestWords = 200;

// A server's own words: one line, not too long.
QString shown(const QByteArray& text) {
    QString line = QString::fromUtf8(text.left(LongestWords));
    for (QChar& letter : line) {
        if (!letter.isPrint()) letter = u' ';
    }
    return line.simplified();
}

// A server that speaks TLS answers everything else with an alert in its own form.
bool isTlsAlert(const QByteArray& bytes) {
    return bytes.size() >= 2 && bytes[0] == '\x15' && bytes[1] == '\x03';
}

bool isCommandWithoutSender(const QByteArray& word) {
    constexpr std::array<const char*, 5> words{"NOTICE", "PING", "ERROR", "CAP", "AUTHENTICATE"};
    return std::any_of(words.begin(), words.end(), [&](const char* one) { return word == one; });
}

bool isCommand(const QByteArray& word) {
    const auto all = [&](auto is) { return std::all_of(word.begin(), word.end(), is); };
    const bool digits = word.size() == 3 && all([](char c) { return c >= '0' && c <= '9'; });
    return digits ||
           (word.size() >= 2 && word.size() <= 16 && all([](char c) { return c >= 'A' && c <= 'Z'; }));
}

QByteArray tailOf(const QByteArray& text) {
    const auto colon = text.indexOf(" :");
    return colon < 0 ? text : text.mid(colon + 2);
}

bool asksForPassword(const QByteArray& words) {
    return words.toLower().contains("password");
}

}  // namespace

ConnectionTest::ConnectionTest(const NetworkProfile& profile, Done done, int patience)
    : profile_(profile), host_(toQString(profile.ServerHost)), done_(std::move(done)) {
    socket_.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    socket_.setReadBufferSize(MostRead);
    const auto on = [this](auto signal, auto call) { QObject::connect(&socket_, signal, &context_, call); };
    on(&QSslSocket::connected, [this] {
        connected_ = true;
        if (!profile_.TLS) stands();
    });
    on(&QSslSocket::encrypted, [this] { stands(); });
    on(&QSslSocket::readyRead, [this] { received(); });
    on(&QSslSocket::errorOccurred, [this](QAbstractSocket::SocketError error) { failed(error); });
    on(&QSslSocket::sslErrors, [this](const QList<QSslError>& errors) { doubts_ = errors; });
    QObject::connect(&deadline_, &QTimer::timeout, &context_, [this] { tooLate(); });
    deadline_.setSingleShot(true);
    deadline_.start(patience);
    QMetaObject::invokeMethod(
        &context_, [this] { start(); }, Qt::QueuedConnection);
}

ConnectionTest::~ConnectionTest() {
    QObject::disconnect(&socket_, nullptr, &context_, nullptr);
}

void ConnectionTest::start() {
    const auto port = static_cast<quint16>(profile_.ServerPort);
    if (!profile_.TLS) {
        socket_.connectToHost(host_, port);
    } else if (secure()) {
        socket_.connectToHostEncrypted(host_, port);
    }
}

bool ConnectionTest::secure() {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    if (!profile_.CAFile.empty()) {
        const auto further = QSslCertificate::fromPath(QString::fromLocal8Bit(profile_.CAFile.c_str()));
        if (further.isEmpty()) {
            finish(false, QStringLiteral("The file of trusted certificates cannot be read."));
            return false;
        }
        configuration.setCaCertificates(QSslConfiguration::systemCaCertificates() + further);
    }
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    socket_.setSslConfiguration(configuration);
    return true;
}

void ConnectionTest::stands() {
    const auto number = QRandomGenerator::global()->bounded(1000, 10000);
    socket_.write("NICK guest" + QByteArray::number(number) + "\r\nUSER guest 0 * :guest\r\n");
}

void ConnectionTest::received() {
    const QByteArray bytes = socket_.read(MostRead);
    total_ += bytes.size();
    received_ += bytes;
    if (!spoke_ && isTlsAlert(received_)) {
        return finish(false, QStringLiteral("The server speaks TLS on this port; switch TLS on."));
    }
    // `finish` forgets what has arrived.
    for (auto end = received_.indexOf('\n'); end >= 0; end = received_.indexOf('\n')) {
        QByteArray text = received_.left(end);
        received_.remove(0, end + 1);
        if (text.endsWith('\r')) text.chop(1);
        if (!text.isEmpty()) line(text);
        if (done_ == nullptr) return;
    }
    if (received_.size() > LongestLine || total_ > MostRead) {
        finish(false, QStringLiteral("What answers there is not an IRC server."));
    }
}

void ConnectionTest::line(const QByteArray& text) {
    QByteArray rest = text;
    QByteArray sender;
    if (rest.startsWith(':')) {
        const auto blank = std::max<qsizetype>(rest.indexOf(' '), 1);
        sender = rest.mid(1, blank - 1);
        rest = rest.mid(blank).trimmed();
    }
    const QByteArray command = rest.left(std::max<qsizetype>(rest.indexOf(' '), 0));
    const bool known = sender.isEmpty() ? isCommandWithoutSender(command) : isCommand(command);
    if (!known) return finish(false, QStringLiteral("What answers there is not an IRC server."));
    spoke_ = true;
    bool isNumber = false;
    const int number = command.toInt(&isNumber);
    if (command == "PING") {
        socket_.write("PONG " + rest.mid(5, 512) + "\r\n");
    } else if (command == "ERROR" && asksForPassword(rest)) {
        finish(false, QStringLiteral("The server answers, but it asks for a password."));
    } else if (command == "ERROR" || number == Numeric::BannedFromServer) {
        finish(false, QStringLiteral("The server does not want the connection: %1").arg(shown(tailOf(rest))));
    } else if (isNumber) {
        heardNumeric(number, shown(sender));
    }
}

void ConnectionTest::heardNumeric(int number, const QString& server) {
    if (number == Numeric::PasswordMismatch)
        return finish(false, QStringLiteral("The server answers, but it asks for a password."));
    finish(true, QStringLiteral("Connected: %1 answers.").arg(server));
}

void ConnectionTest::failed(QAbstractSocket::SocketError error) {
    if (!doubts_.isEmpty()) return finish(false, certificateWords());
    switch (error) {
        case QAbstractSocket::HostNotFoundError:
            return finish(false, QStringLiteral("The name %1 is not known.").arg(host_));
        case QAbstractSocket::ConnectionRefusedError:
            return finish(
                false,
                QStringLiteral("%1 takes no connection on port %2.").arg(host_).arg(profile_.ServerPort));
        case QAbstractSocket::SslHandshakeFailedError:
        case QAbstractSocket::SslInternalError:
        case QAbstractSocket::SslInvalidUserDataError:
            return finish(false, handshakeWords());
        case QAbstractSocket::RemoteHostClosedError:
            received();
            return finish(false, closedWords());
        default:
            return finish(false,
                          connected_ ? closedWords() : QStringLiteral("%1 cannot be reached.").arg(host_));
    }
}

// What is no TLS at all looks like TLS of a version that nobody knows.
QString ConnectionTest::handshakeWords() const {
    const QString reason = shown(socket_.errorString().toUtf8());
    for (const char* other : {"wrong version number", "packet length too long"}) {
        if (reason.contains(QLatin1String(other)))
            return QStringLiteral("The server does not speak TLS on this port.");
    }
    return QStringLiteral("TLS could not be agreed on: %1").arg(reason);
}

QString ConnectionTest::certificateWords() const {
    bool expired = false;
    bool early = false;
    bool otherName = false;
    bool untrusted = false;
    QStringList others;
    for (const QSslError& doubt : doubts_) {
        switch (doubt.error()) {
            case QSslError::CertificateExpired:
                expired = true;
                break;
            case QSslError::CertificateNotYetValid:
                early = true;
                break;
            case QSslError::HostNameMismatch:
                otherName = true;
                break;
            case QSslError::SelfSignedCertificate:
            case QSslError::SelfSignedCertificateInChain:
            case QSslError::UnableToGetIssuerCertificate:
            case QSslError::UnableToGetLocalIssuerCertificate:
            case QSslError::UnableToVerifyFirstCertificate:
            case QSslError::CertificateUntrusted:
                untrusted = true;
                break;
            default:
                others << shown(doubt.errorString().toUtf8());
                break;
        }
    }
    QStringList faults;
    if (expired) faults << QStringLiteral("it has expired");
    if (early) faults << QStringLiteral("it is not valid yet");
    if (otherName) faults << QStringLiteral("it was made for another name than %1").arg(host_);
    if (untrusted) faults << QStringLiteral("nobody whom this computer trusts has signed it");
    others.removeDuplicates();
    faults << others;
    return QStringLiteral("The server's certificate cannot be trusted: %1.")
        .arg(faults.join(QStringLiteral(", and ")));
}

QString ConnectionTest::closedWords() const {
    if (spoke_) return QStringLiteral("The server has closed the connection.");
    return profile_.TLS
               ? QStringLiteral(
                     "The server has closed the connection; perhaps it does not speak TLS on this port.")
               : QStringLiteral("The server has closed the connection without a word; perhaps it wants TLS.");
}

void ConnectionTest::tooLate() {
    if (!connected_) return finish(false, QStringLiteral("%1 does not answer.").arg(host_));
    if (profile_.TLS && !socket_.isEncrypted()) {
        return finish(
            false,
            QStringLiteral("The server does not answer in TLS; perhaps it does not speak it on this port."));
    }
    finish(false, spoke_ ? QStringLiteral("The server greets, but does not let anybody in.")
                         : QStringLiteral("The server takes the connection, but says nothing."));
}

void ConnectionTest::finish(bool works, const QString& words) {
    if (done_ == nullptr) return;
    deadline_.stop();
    received_.clear();
    QObject::disconnect(&socket_, nullptr, &context_, nullptr);
    if (socket_.state() == QAbstractSocket::ConnectedState) {
        if (spoke_) socket_.write("QUIT\r\n");
        socket_.disconnectFromHost();
    } else {
        socket_.abort();
    }
    QMetaObject::invokeMethod(
        &context_, [done = std::exchange(done_, nullptr), works, words] { done(works, words); },
        Qt::QueuedConnection);
}

}  // namespace talvora
