#include "simulation/peer/FileConnection.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>

namespace talvora::peer {

namespace {

constexpr timeval Patience{120, 0};  // a person decides whether to accept

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

sockaddr_in placeOf(const std::string& address) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(FilePort);
    if (inet_pton(AF_INET, address.c_str(), &place.sin_addr) != 1)
        throw std::runtime_error(address + " is no address");
    return place;
}

int newSocket() {
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) fail("no socket");
    return descriptor;
}

}  // namespace

FileConnection::FileConnection(int descriptor) : descriptor_(descriptor) {
    constexpr int yes = 1;
    ::setsockopt(descriptor_, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    ::setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &Patience, sizeof Patience);
    ::setsockopt(descriptor_, SOL_SOCKET, SO_SNDTIMEO, &Patience, sizeof Patience);
}

FileConnection FileConnection::To(const std::string& address) {
    constexpr int tries = 20;
    const sockaddr_in place = placeOf(address);
    for (int i = 0; i < tries; ++i) {
        const int descriptor = newSocket();
        if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0)
            return FileConnection(descriptor);
        ::close(descriptor);
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
    fail("nobody receives files at " + address);
}

FileConnection::FileConnection(FileConnection&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      stream_(std::move(other.stream_)),
      readable_(other.readable_) {}

FileConnection::~FileConnection() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

void FileConnection::Send(const std::string& message) {
    const std::string framed = message + std::string(TransferStream::Delimiter);
    for (std::size_t sent = 0; sent < framed.size();) {
        const ssize_t count = ::send(descriptor_, framed.data() + sent, framed.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) fail("the other side takes nothing more");
        sent += static_cast<std::size_t>(count);
    }
}

Message FileConnection::Next() {
    while (!readable_ || stream_.IsEmpty() || stream_.IsTorn()) {
        std::array<char, 1 << 16> chunk{};
        const ssize_t count = ::recv(descriptor_, chunk.data(), chunk.size(), 0);
        if (count == 0) throw std::runtime_error("the other side has gone");
        if (count < 0) fail("the other side says nothing");
        const auto fed =
            stream_.Feed([&](std::string& to) { to.append(chunk.data(), static_cast<std::size_t>(count)); });
        if (fed == TransferStream::Fed::TooMuch) throw std::runtime_error("the other side never ends");
        readable_ = readable_ || fed == TransferStream::Fed::Whole;
    }
    std::string message;
    stream_.Next(message);
    readable_ = !stream_.IsEmpty() && !stream_.IsTorn();
    if (message.empty()) return {' ', {}};
    return {message.front(), message.substr(1)};
}

std::string FileConnection::Expect(char type) {
    const Message message = Next();
    if (message.Type == 'X') throw std::runtime_error("the other side has canceled");
    if (message.Type != type) throw std::runtime_error("the other side says what nobody has asked");
    return message.Parameter;
}

int ListenForFiles(const std::string& address) {
    const sockaddr_in place = placeOf(address);
    const int descriptor = newSocket();
    constexpr int yes = 1;
    ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (::bind(descriptor, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0 ||
        ::listen(descriptor, 1) != 0) {
        ::close(descriptor);
        fail("can't receive files at " + address);
    }
    return descriptor;
}

}  // namespace talvora::peer
