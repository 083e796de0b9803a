#include "platform_qt/SocketLink.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <QHostAddress>
#include <QNetworkProxy>
#include <QSslConfiguration>
#include <QSslError>
#include <QSslSocket>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/CodePage1253.h"
#include "platform_qt/SocketLinger.h"

namespace talvora {

namespace {

constexpr int ConnectMs = 30'000;
constexpr qint64 ReadAhead = 256 * 1024;
constexpr qint64 MostToSend = 16 * 1024 * 1024;
using SteadyClock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds LongestTurn{5};
constexpr std::chrono::milliseconds QuickPeer{1};   // from an answer to what it is answered
constexpr std::chrono::milliseconds Mistrust{100};  // after a wait for nothing, which held all others up

struct ErrorWords {
    QAbstractSocket::SocketError error;
    int number;
    const char* description;
};

constexpr ErrorWords errorTable[] = {
    {QAbstractSocket::ConnectionRefusedError, SocketErrors::ConnectionRefused,
     "The other side refused the connection"},
    {QAbstractSocket::RemoteHostClosedError, SocketErrors::ConnectionReset,
     "The connection was reset by the other side"},
    {QAbstractSocket::HostNotFoundError, SocketErrors::HostNotFound, "The host was not found"},
    {QAbstractSocket::SocketTimeoutError, SocketErrors::TimedOut, "The other side does not answer"},
    {QAbstractSocket::NetworkError, SocketErrors::NetworkUnreachable, "The network or host can't be reached"},
    {QAbstractSocket::SocketResourceError, SocketErrors::NoBufferSpace, "There are too many open sockets"},
};

// Keep-alive finds out a link whose other end is gone while nothing is sent, the user time-out while
// something is.
void tune(QTcpSocket& socket) {
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    const int number = static_cast<int>(socket.socketDescriptor());
    const std::pair<int, int> options[] = {
        {TCP_KEEPIDLE, 60}, {TCP_KEEPINTVL, 15}, {TCP_KEEPCNT, 4}, {TCP_USER_TIMEOUT, 120'000}};
    for (const auto& [option, value] : options) {
        ::setsockopt(number, IPPROTO_TCP, option, &value, sizeof value);
    }
}

std::string plainText(const QString& text) {
    std::string plain;
    for (const QChar letter : text) {
        const bool printable = letter.unicode() >= 32 && letter.unicode() < 127;
        plain += printable ? static_cast<char>(letter.unicode()) : '?';
    }
    return plain;
}

}  // namespace

void SocketLink::connectTo(const std::string& host, int port, const Network::Security& security) {
    if (host.empty() || port < 1 || port > 65535) {
        fail(host.empty() ? SocketErrors::HostNotFound : SocketErrors::Other,
             host.empty() ? "There is no host to connect to" : "The port must be from 1 to 65535");
        return;
    }
    deadline_.arm(loop_, ConnectMs);
    if (security.TLS) {
        makeSecure(host, port, security.CAFile);
        return;
    }
    socket_ = std::make_unique<QTcpSocket>();
    watch();
    QObject::connect(socket_.get(), &QTcpSocket::connected, &context_, [this] { onStands(); });
    socket_->connectToHost(QString::fromStdString(toUtf8(host)), static_cast<quint16>(port));
}

void SocketLink::makeSecure(const std::string& host, int port, const std::string& caFile) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    if (!caFile.empty()) {
        const auto further = QSslCertificate::fromPath(QString::fromLocal8Bit(caFile.c_str()));
        if (further.isEmpty()) {
            fail(SocketErrors::CertificateRefused,
                 "The file of trusted certificates can't be read: " + caFile);
            return;
        }
        configuration.setCaCertificates(QSslConfiguration::systemCaCertificates() + further);
    }
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    auto socket = std::make_unique<QSslSocket>();
    secure_ = socket.get();
    socket_ = std::move(socket);
    secure_->setSslConfiguration(configuration);
    watch();
    QObject::connect(secure_, &QSslSocket::encrypted, &context_, [this] { onStands(); });
    QObject::connect(secure_, &QSslSocket::sslErrors, &context_, [this](const QList<QSslError>& errors) {
        if (!errors.isEmpty()) refusal_ = plainText(errors.first().errorString());
    });
    secure_->connectToHostEncrypted(QString::fromStdString(toUtf8(host)), static_cast<quint16>(port));
}

void SocketLink::adopt(Descriptor connection) {
    socket_ = std::make_unique<QTcpSocket>();
    watch();
    if (!socket_->setSocketDescriptor(connection.get())) {
        throw RuntimeError(SocketErrors::Other, words(), "Winsock");
    }
    connection.release();
    onStands();
    tellStands_ = false;  // its owner knows
}

void SocketLink::watch() {
    socket_->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    socket_->setReadBufferSize(ReadAhead);
    QObject::connect(socket_.get(), &QTcpSocket::readyRead, &context_, [this] {
        tellData_ = true;
        schedule();
    });
    QObject::connect(socket_.get(), &QTcpSocket::errorOccurred, &context_,
                     [this](QAbstractSocket::SocketError error) { onSocketError(error); });
    QObject::connect(socket_.get(), &QTcpSocket::disconnected, &context_,
                     [this] { onSocketError(QAbstractSocket::RemoteHostClosedError); });
}

void SocketLink::onStands() {
    deadline_.disarm();
    tune(*socket_);
    probe_.reset(::fcntl(static_cast<int>(socket_->socketDescriptor()), F_DUPFD_CLOEXEC, 0));
    stands_ = true;
    tellStands_ = true;
    schedule();
}

// Qt's socket gives its connection up; what it has read already comes along.
void SocketLink::becomeQuick() {
    if (!answersAtOnce_ || !stands_ || !socket_ || secure_ || failure_ || peerClosed_) return;
    if (socket_->bytesToWrite() > 0 || probe_.get() < 0) return;
    localPort_ = localPort();
    remoteHost_ = remoteHost();
    remotePort_ = remotePort();
    std::string early;
    take(early);
    quick_ = std::make_unique<QuickStream>(std::move(probe_), std::move(early), [this] { onReadable(); });
    QObject::disconnect(socket_.get(), nullptr, &context_, nullptr);
    socket_.reset();
}

void SocketLink::onReadable() {
    const auto self = shared_from_this();
    onQuick(quick_->receive());
    const auto now = SteadyClock::now();
    const bool isQuick = answered_ && now - *answered_ < QuickPeer && now >= slowUntil_;
    hasAnswered_ = false;
    deliver();
    if (isQuick && !keepsTurn_) keepTurn();
}

// The owner may have closed or destroyed the socket, or let the loop run inside its handler.
void SocketLink::keepTurn() {
    const auto end = SteadyClock::now() + LongestTurn;
    keepsTurn_ = true;
    while (listener_ && quick_ && std::exchange(hasAnswered_, false) && *answered_ < end) {
        const auto got = quick_->await();
        if (got == QuickStream::Got::Nothing) slowUntil_ = SteadyClock::now() + Mistrust;
        onQuick(got);
        deliver();
    }
    keepsTurn_ = false;
}

void SocketLink::onQuick(QuickStream::Got got) {
    if (got == QuickStream::Got::Bytes) tellData_ = true;
    if (got != QuickStream::Got::End) return;
    const int error = quick_->error();
    if (error == 0) {
        peerClosed_ = true;
    } else {
        const bool reset = error == ECONNRESET || error == EPIPE;
        failAs(reset ? QAbstractSocket::RemoteHostClosedError : QAbstractSocket::NetworkError);
    }
}

std::size_t SocketLink::available() const {
    if (quick_) return quick_->available();
    return socket_ ? static_cast<std::size_t>(socket_->bytesAvailable()) : 0;
}

void SocketLink::onSocketError(QAbstractSocket::SocketError error) {
    if (peerClosed_ || failure_) return;
    if (error == QAbstractSocket::RemoteHostClosedError && stands_ && !wasReset()) {
        peerClosed_ = true;
        probe_.reset();
        schedule();
        return;
    }
    if (!refusal_.empty()) {
        fail(SocketErrors::CertificateRefused, "The server's certificate was refused: " + refusal_);
        return;
    }
    failAs(error);
}

void SocketLink::failAs(QAbstractSocket::SocketError error) {
    if (error == QAbstractSocket::NetworkError && stands_) error = QAbstractSocket::SocketTimeoutError;
    for (const ErrorWords& row : errorTable) {
        if (row.error == error) return fail(row.number, row.description);
    }
    fail(SocketErrors::Other, words());
}

bool SocketLink::wasReset() const {
    tcp_info info{};
    socklen_t size = sizeof info;
    if (::getsockopt(probe_.get(), IPPROTO_TCP, TCP_INFO, &info, &size) != 0) return false;
    return info.tcpi_state == TCP_CLOSE;
}

std::string SocketLink::words() const {
    return plainText(socket_->errorString());
}

void SocketLink::fail(int number, std::string description) {
    if (peerClosed_ || failure_) return;
    failure_ = Failure{number, std::move(description)};
    deadline_.disarm();
    probe_.reset();
    schedule();
}

void SocketLink::abort(int number, std::string description) {
    fail(number, std::move(description));
    quick_.reset();
    if (socket_) {
        QObject::disconnect(socket_.get(), nullptr, &context_, nullptr);
        socket_->abort();
    }
}

void SocketLink::schedule() {
    if (std::exchange(scheduled_, true)) return;
    loop_.Defer([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->deliver();
    });
}

// The owner may close or destroy the socket in any of these calls; then there is no listener any more.
void SocketLink::deliver() {
    scheduled_ = false;
    becomeQuick();
    if (listener_ && std::exchange(tellStands_, false)) listener_->onConnected();
    if (listener_ && std::exchange(tellData_, false) && available() > 0) listener_->onData();
    if (!listener_ || told_) return;
    if (failure_) {
        told_ = true;
        listener_->onError(failure_->number, failure_->description);
    } else if (peerClosed_ && available() == 0) {
        told_ = true;
        listener_->onClosed();
    }
}

qint64 SocketLink::waiting() const {
    if (quick_) return static_cast<qint64>(quick_->waiting());
    return socket_->bytesToWrite() + (secure_ ? secure_->encryptedBytesToWrite() : 0);
}

void SocketLink::send(std::string_view bytes) {
    if (!stands_ || failure_ || peerClosed_) return;
    if (waiting() + static_cast<qint64>(bytes.size()) > MostToSend) {
        abort(SocketErrors::NoBufferSpace, "The other side does not take what is sent");
    } else if (quick_) {
        hasAnswered_ = true;
        answered_ = SteadyClock::now();
        quick_->send(bytes);
    } else {
        socket_->write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
}

void SocketLink::flush() {
    if (socket_ && stands_ && !failure_) socket_->flush();
}

void SocketLink::take(std::string& to) {
    const std::size_t there = available();
    if (there == 0) return;
    if (quick_) {
        quick_->take(to);
    } else {
        const std::size_t before = to.size();
        to.resize(before + there);
        const qint64 taken = socket_->read(to.data() + before, static_cast<qint64>(there));
        to.resize(before + static_cast<std::size_t>(std::max<qint64>(taken, 0)));
    }
    if (peerClosed_ && !told_) schedule();
}

void SocketLink::leave(SocketLinger& linger) {
    listener_ = nullptr;
    deadline_.disarm();
    probe_.reset();
    if (const auto quick = std::exchange(quick_, nullptr)) socket_ = quick->release();
    if (!socket_) return;
    QObject::disconnect(socket_.get(), nullptr, &context_, nullptr);
    if (stands_ && !failure_ && !peerClosed_) linger.take(std::move(socket_));
    socket_.reset();
}

int SocketLink::localPort() const {
    return socket_ ? socket_->localPort() : localPort_;
}

std::string SocketLink::remoteHost() const {
    if (!socket_) return remoteHost_;
    bool mapped = false;
    const QHostAddress address = socket_->peerAddress();
    const quint32 four = address.toIPv4Address(&mapped);
    return (mapped ? QHostAddress(four) : address).toString().toStdString();
}

int SocketLink::remotePort() const {
    return socket_ ? socket_->peerPort() : remotePort_;
}

}  // namespace talvora
