#include "gate/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace talvora {

bool FileLock::tryLock(const std::string& path) {
    unlock();
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0) throw std::system_error(errno, std::generic_category(), path);
    ::fchmod(file, 0600);  // one that is there already may be looser
    if (::flock(file, LOCK_EX | LOCK_NB) == 0) {
        file_ = file;
        return true;
    }
    const int reason = errno;
    ::close(file);
    if (reason == EWOULDBLOCK) return false;
    throw std::system_error(reason, std::generic_category(), path);
}

void FileLock::unlock() {
    if (file_ >= 0) ::close(file_);
    file_ = -1;
}

// It is only said by the way: a full disk keeps nobody from anything.
void FileLock::write(std::string_view text) const {
    if (file_ < 0 || ::ftruncate(file_, 0) != 0) return;
    [[maybe_unused]] const auto written = ::pwrite(file_, text.data(), text.size(), 0);
}

}  // namespace talvora
