#include "transfer/Bare.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

namespace talvora::bench {

namespace {

constexpr std::string_view delimiter{"\x01:.:\x01", 5};

void keepTo(int processor) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(processor, &set);
    ::sched_setaffinity(0, sizeof set, &set);
}

void need(bool holds) {
    if (!holds) throw std::runtime_error("the bare sockets do not work");
}

// The next message, without its delimiter.
void receive(int socket, std::string& message) {
    static char room[65536];
    message.clear();
    for (std::size_t searched = 0;;) {
        const ssize_t size = ::read(socket, room, sizeof room);
        need(size > 0);
        message.append(room, static_cast<std::size_t>(size));
        const std::size_t end = message.find(delimiter, searched);
        if (end != message.npos) return message.resize(end);
        searched = message.size() < delimiter.size() ? 0 : message.size() - delimiter.size();
    }
}

void send(int socket, const std::string& message) {
    need(::send(socket, message.data(), message.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(message.size()));
}

// Two ends of one connection over loopback.
void connectPair(int (&ends)[2]) {
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof where;
    auto* const address = reinterpret_cast<sockaddr*>(&where);
    const int door = ::socket(AF_INET, SOCK_STREAM, 0);
    need(::bind(door, address, size) == 0 && ::listen(door, 1) == 0);
    need(::getsockname(door, address, &size) == 0);
    ends[0] = ::socket(AF_INET, SOCK_STREAM, 0);
    need(::connect(ends[0], address, size) == 0);
    ends[1] = ::accept(door, nullptr, nullptr);
    ::close(door);
    const int yes = 1;
    for (const int end : ends) ::setsockopt(end, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
}

// A file without a name that has so many bytes; -1 if the blocks have no use for it.
int fileFor(Blocks what, std::size_t size) {
    if (what == Blocks::OfMemory) return -1;
    const std::string folder = std::filesystem::temp_directory_path().string();
    const int file = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    need(file >= 0);
    const std::string bytes(std::size_t{1} << 20, 'x');
    for (std::size_t at = 0; at < size; at += bytes.size())
        need(::pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(at)) > 0);
    return file;
}

void sendBlocks(int socket, int file, std::size_t block, std::size_t blocks) {
    std::string answer = "D" + std::string(block, 'x') + std::string(delimiter);
    std::string question;
    for (std::size_t i = 0; i < blocks; ++i) {
        receive(socket, question);
        if (file >= 0) need(::pread(file, answer.data() + 1, block, static_cast<off_t>(i * block)) > 0);
        send(socket, answer);
    }
}

[[noreturn]] void beSender(int socket, int file, std::size_t block, std::size_t blocks, int processor) {
    try {
        keepTo(processor);
        sendBlocks(socket, file, block, blocks);
        ::_exit(0);
    } catch (...) {
        ::_exit(1);
    }
}

double receiveBlocks(int socket, int file, std::size_t blocks) {
    std::string message;
    std::size_t position = 1;
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < blocks; ++i) {
        send(socket, "G" + std::to_string(position) + std::string(delimiter));
        receive(socket, message);
        const std::size_t size = message.size() - 1;
        if (file >= 0) need(::pwrite(file, message.data() + 1, size, static_cast<off_t>(position - 1)) > 0);
        position += size;
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

double bareSeconds(std::size_t block, std::size_t blocks, int processor, Blocks what) {
    const int from = fileFor(what, block * blocks);
    const int to = fileFor(what, 0);
    int ends[2];
    connectPair(ends);
    const pid_t sender = ::fork();
    need(sender >= 0);
    if (sender == 0) {
        ::close(ends[1]);
        beSender(ends[0], from, block, blocks, processor);
    }
    ::close(ends[0]);
    double seconds = 0;
    std::thread receiver([&] {  // the caller keeps its processors
        keepTo(processor);
        seconds = receiveBlocks(ends[1], to, blocks);
    });
    receiver.join();
    ::close(ends[1]);
    ::close(from);
    ::close(to);
    need(::waitpid(sender, nullptr, 0) == sender);
    return seconds;
}

}  // namespace talvora::bench
