#include "platform_qt/QuickStream.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>
#include <utility>

namespace talvora {

namespace {

constexpr std::size_t Room = std::size_t{64} * 1024;
constexpr std::size_t MostUnread = std::size_t{256} * 1024 - Room;  // for as much again to be read

void makeBlocking(int connection) {
    const int flags = ::fcntl(connection, F_GETFL);
    ::fcntl(connection, F_SETFL, flags & ~O_NONBLOCK);
    const timeval shortest{0, 1000};  // the kernel makes a tick or two of it
    ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &shortest, sizeof shortest);
}

bool isForLater(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

}  // namespace

void QuickStream::Silence::operator()(QSocketNotifier* notifier) const {
    notifier->setEnabled(false);
    notifier->disconnect();
    notifier->deleteLater();
}

QuickStream::QuickStream(Descriptor connection, std::string early, std::function<void()> onReadable)
    : connection_(std::move(connection)),
      received_(std::move(early)),
      room_(std::make_unique_for_overwrite<char[]>(Room)),
      readable_(new QSocketNotifier(connection_.get(), QSocketNotifier::Read)),
      writable_(new QSocketNotifier(connection_.get(), QSocketNotifier::Write)) {
    makeBlocking(connection_.get());
    writable_->setEnabled(false);
    QObject::connect(readable_.get(), &QSocketNotifier::activated, readable_.get(),
                     [call = std::move(onReadable)] { call(); });
    QObject::connect(writable_.get(), &QSocketNotifier::activated, writable_.get(),
                     [this] { sendWaiting(); });
    if (received_.size() > MostUnread) hold(true);
}

QuickStream::Got QuickStream::read(int flags) {
    if (ended_ || received_.size() > MostUnread) return Got::Nothing;
    const ssize_t size = ::recv(connection_.get(), room_.get(), Room, flags);
    if (size > 0) {
        received_.append(room_.get(), static_cast<std::size_t>(size));
        if (received_.size() > MostUnread) hold(true);
        return Got::Bytes;
    }
    if (size < 0 && isForLater(errno)) return Got::Nothing;
    if (size < 0) error_ = errno;
    ended_ = true;
    hold(true);
    return Got::End;
}

void QuickStream::take(std::string& to) {
    if (to.empty()) {
        to.swap(received_);
    } else {
        to += received_;
    }
    received_.clear();
    if (isHeld_ && !ended_) hold(false);
}

void QuickStream::hold(bool held) {
    isHeld_ = held;
    readable_->setEnabled(!held);
}

std::size_t QuickStream::put(std::string_view bytes) {
    const ssize_t sent = ::send(connection_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent >= 0) return static_cast<std::size_t>(sent);
    if (isForLater(errno)) return 0;
    error_ = errno;
    return bytes.size();
}

void QuickStream::send(std::string_view bytes) {
    if (waiting() == 0) bytes.remove_prefix(put(bytes));
    if (bytes.empty()) return;
    toSend_ += bytes;
    writable_->setEnabled(true);
}

void QuickStream::sendWaiting() {
    sent_ += put(std::string_view(toSend_).substr(sent_));
    if (waiting() == 0) writable_->setEnabled(false);
    if (sent_ < waiting()) return;
    toSend_.erase(0, sent_);
    sent_ = 0;
}

std::unique_ptr<QTcpSocket> QuickStream::release() {
    readable_.reset();
    writable_.reset();
    auto socket = std::make_unique<QTcpSocket>();
    if (socket->setSocketDescriptor(connection_.get())) connection_.release();
    socket->write(toSend_.data() + sent_, static_cast<qint64>(waiting()));
    return socket;
}

}  // namespace talvora
