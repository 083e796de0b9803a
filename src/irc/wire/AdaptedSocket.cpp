#include "irc/wire/AdaptedSocket.h"

#include <algorithm>
#include <utility>

namespace talvora {

namespace {

// A buffer that one flood made large is not kept.
void clear(std::string& buffer) {
    constexpr std::size_t keptRoom = std::size_t{1024} * 1024;
    buffer.clear();
    if (buffer.capacity() > keptRoom) buffer.shrink_to_fit();
}

}  // namespace

AdaptedSocket::AdaptedSocket(Loop& loop, std::unique_ptr<SocketDriver> inner, const WireProfile& profile)
    : loop_(loop), inner_(std::move(inner)), adapter_(std::in_place, profile), pacing_([this] { pace(); }) {
    inner_->setListener(this);
}

AdaptedSocket::~AdaptedSocket() {
    inner_->setListener(nullptr);
    inner_->close();
}

void AdaptedSocket::renew(std::unique_ptr<SocketDriver> inner, const WireProfile& profile) {
    close();
    inner_->setListener(nullptr);
    inner_ = std::move(inner);
    inner_->setListener(this);
    adapter_.emplace(profile);
}

void AdaptedSocket::connect(const std::string& host, int port) {
    end();
    inner_->connect(host, port);
}

void AdaptedSocket::accept(SocketDriver& listening) {
    end();
    auto* adapted = dynamic_cast<AdaptedSocket*>(&listening);
    inner_->accept(adapted != nullptr ? *adapted->inner_ : listening);
    adapter_->connectionStarted();
}

void AdaptedSocket::close() {
    end();
    inner_->close();
}

void AdaptedSocket::send(std::string_view bytes) {
    if (gone_) return;
    adapter_->fromEngine(bytes, loop_.Now(), toServer_, answers_);
    passOn();
    giveUpIfOverflowed();
    if (!answers_.empty() && !gone_) tellOfAnswers();
}

void AdaptedSocket::take(std::string& to) {
    to += answers_;
    clear(answers_);
    if (closing_) tellOfEnd();
    if (gone_) return;
    inner_->take(raw_);
    adapter_->fromServer(raw_, to);
    clear(raw_);
    giveUpIfOverflowed();
}

void AdaptedSocket::onConnected() {
    adapter_->connectionStarted();
    if (listener_ != nullptr) listener_->onConnected();
}

void AdaptedSocket::onData() {
    if (listener_ != nullptr) listener_->onData();
}

void AdaptedSocket::onClosed() {
    adapter_->connectionEnded();
    pacing_.disarm();
    gone_ = true;
    if (listener_ == nullptr) return;
    if (answers_.empty()) return listener_->onClosed();
    closing_ = true;
    listener_->onData();
}

void AdaptedSocket::onRequest() {
    if (listener_ != nullptr) listener_->onRequest();
}

void AdaptedSocket::onError(int number, const std::string& description) {
    end();
    gone_ = true;
    if (listener_ != nullptr) listener_->onError(number, description);
}

void AdaptedSocket::later(std::function<void()> call) {
    if (life_ == nullptr) life_ = std::make_shared<bool>(true);
    loop_.Defer([life = std::weak_ptr<bool>(life_), call = std::move(call)] {
        if (!life.expired()) call();
    });
}

// What the connection left behind is forgotten, and nothing more is told of it.
void AdaptedSocket::end() {
    life_.reset();
    pacing_.disarm();
    adapter_->connectionEnded();
    clear(answers_);
    clear(toServer_);
    gone_ = closing_ = false;
}

void AdaptedSocket::tellOfAnswers() {
    later([this] {
        if (!answers_.empty() && listener_ != nullptr) listener_->onData();
    });
}

// The end is told of when everything before it was taken; the inner driver is empty by then.
void AdaptedSocket::tellOfEnd() {
    closing_ = false;
    later([this] {
        if (listener_ != nullptr) listener_->onClosed();
    });
}

void AdaptedSocket::giveUpIfOverflowed() {
    const auto overflow = adapter_->overflow();
    if (gone_ || overflow == WireAdapter::Overflow::None) return;
    const bool line = overflow == WireAdapter::Overflow::LineTooLong;
    end();
    gone_ = true;
    inner_->close();
    later([this, line] {
        if (listener_ == nullptr) return;
        if (line)
            return listener_->onError(SocketErrors::MessageTooLong, "A line from the server is too long");
        listener_->onError(SocketErrors::NoBufferSpace, "Too many lines wait for the server");
    });
}

void AdaptedSocket::passOn() {
    if (!toServer_.empty()) inner_->send(toServer_);
    clear(toServer_);
    waitForPace();
}

void AdaptedSocket::waitForPace() {
    const auto due = adapter_->nextTick();
    if (!due) return pacing_.disarm();
    if (pacing_.armed()) return;
    constexpr Microseconds perMillisecond = 1000;
    const auto left = std::max<Microseconds>(*due - loop_.Now(), 1);
    pacing_.arm(loop_, static_cast<int>((left + perMillisecond - 1) / perMillisecond));
}

void AdaptedSocket::pace() {
    pacing_.disarm();
    adapter_->tick(loop_.Now(), toServer_);
    passOn();
}

}  // namespace talvora
