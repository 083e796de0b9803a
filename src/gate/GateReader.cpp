#include "gate/GateReader.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "gate/Gate.h"
#include "gate/GateJson.h"

namespace talvora {
namespace {

constexpr std::size_t ReadBetweenLooks = std::size_t{64} << 10;
constexpr std::size_t SentAndKept = std::size_t{1} << 20;

bool wouldBlock() {
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

}  // namespace

GateReader::GateReader(Descriptor socket, std::int32_t id, std::function<void()> readable)
    : socket_(std::move(socket)),
      id_(id),
      readable_(socket_.get(), QSocketNotifier::Read),
      writable_(socket_.get(), QSocketNotifier::Write) {
    writable_.setEnabled(false);
    QObject::connect(&readable_, &QSocketNotifier::activated, &readable_, std::move(readable));
    QObject::connect(&writable_, &QSocketNotifier::activated, &writable_, [this] { drain(); });
}

void GateReader::setWorking(bool working) {
    working_ = working;
    if (!closed_) readable_.setEnabled(!working && !ended_);
}

bool GateReader::silent() const {
    char byte = 0;
    if (spoke_ || !received_.empty()) return false;
    const ssize_t got = ::recv(socket_.get(), &byte, 1, MSG_PEEK);
    return got == 0 || (got < 0 && wouldBlock());
}

bool GateReader::overlong() const {
    return received_.size() - start_ > GateLineLimit;
}

bool GateReader::takeLine(std::string& line) {
    for (;;) {
        const std::size_t end = received_.find('\n', looked_);
        if (end != std::string::npos) {
            line.assign(received_, start_, end - start_);
            start_ = looked_ = end + 1;
            spoke_ = true;
            return true;
        }
        looked_ = received_.size();
        if (closed_ || ended_ || overlong() || !receive()) return false;
    }
}

bool GateReader::receive() {
    received_.erase(0, start_);
    start_ = 0;
    looked_ = received_.size();
    const std::size_t room = std::min(ReadBetweenLooks, GateLineLimit + 1 - looked_);
    received_.resize(looked_ + room);
    const ssize_t got = ::recv(socket_.get(), received_.data() + looked_, room, 0);
    received_.resize(looked_ + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got < 0 && (wouldBlock() || errno == EINTR)) return false;
    ended_ = got <= 0;
    return got > 0;
}

std::size_t GateReader::sendNow(std::string_view bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t took = ::send(socket_.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (took < 0 && errno == EINTR) continue;
        if (took < 0 && !wouldBlock()) deaf_ = true;
        if (took < 0) break;
        sent += static_cast<std::size_t>(took);
    }
    return sent;
}

bool GateReader::send(std::string_view bytes) {
    if (waiting_.empty() && !deaf_ && !closed_) bytes.remove_prefix(sendNow(bytes));
    if (bytes.empty() || deaf_ || closed_) return true;
    if (waiting_.size() - sent_ + bytes.size() > Gate::QueueLimit) return false;
    waiting_.append(bytes);
    writable_.setEnabled(true);
    return true;
}

void GateReader::drain() {
    sent_ += sendNow(std::string_view(waiting_).substr(sent_));
    if (sent_ == waiting_.size() || deaf_) {
        writable_.setEnabled(false);
        waiting_ = {};
        sent_ = 0;
    } else if (sent_ > SentAndKept) {
        waiting_.erase(0, sent_);
        sent_ = 0;
    }
}

void GateReader::close() {
    if (std::exchange(closed_, true)) return;
    readable_.setEnabled(false);
    writable_.setEnabled(false);
    socket_ = {};
}

}  // namespace talvora
