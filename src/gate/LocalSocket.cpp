#include "gate/LocalSocket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cerrno>
#include <system_error>

namespace talvora {
namespace {

[[noreturn]] void fail(int reason, const std::string& path) {
    throw std::system_error(reason, std::generic_category(), path);
}

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) fail(ENAMETOOLONG, path);
    path.copy(address.sun_path, path.size());
    return address;
}

Descriptor makeSocket(const std::string& path, int flags) {
    Descriptor made(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0));
    if (made.get() < 0) fail(errno, path);
    return made;
}

}  // namespace

Descriptor connectLocal(const std::string& path) {
    const sockaddr_un address = addressOf(path);
    Descriptor made = makeSocket(path, 0);
    if (::connect(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        fail(errno, path);
    return made;
}

Descriptor listenLocal(const std::string& path) {
    const sockaddr_un address = addressOf(path);
    Descriptor made = makeSocket(path, SOCK_NONBLOCK);
    // The file gets the mode that the socket has when it is bound, so there is no moment without it.
    ::fchmod(made.get(), 0600);
    if (::bind(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        fail(errno, path);
    if (::chmod(path.c_str(), 0600) != 0 || ::listen(made.get(), 64) != 0) fail(errno, path);
    return made;
}

Descriptor acceptLocal(const Descriptor& listening) {
    return Descriptor(::accept4(listening.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
}

}  // namespace talvora
