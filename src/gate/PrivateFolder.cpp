#include "gate/PrivateFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform_qt/Descriptor.h"

namespace talvora {

namespace {

constexpr mode_t OwnersAlone = 0700;

bool isSame(const struct stat& folder, const char* path) {
    struct stat other {};
    return path != nullptr && ::stat(path, &other) == 0 && other.st_dev == folder.st_dev &&
           other.st_ino == folder.st_ino;
}

bool isOneProgramsOwn(const struct stat& folder) {
    return folder.st_uid == ::geteuid() && (folder.st_mode & S_ISVTX) == 0 && !isSame(folder, "/") &&
           !isSame(folder, std::getenv("HOME"));
}

}  // namespace

void keepPrivate(const std::string& nativePath) {
    const Descriptor folder(::open(nativePath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat found {};
    if (folder.get() < 0 || ::fstat(folder.get(), &found) != 0) return;
    if ((found.st_mode & 0777) != OwnersAlone && isOneProgramsOwn(found)) {
        ::fchmod(folder.get(), OwnersAlone);
    }
}

}  // namespace talvora
