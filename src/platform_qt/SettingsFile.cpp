#include "platform_qt/SettingsFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtCore/QDateTime>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/CodePage1253.h"
#include "platform/FilePath.h"
#include "platform_qt/Descriptor.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/WriteAheadLog.h"

namespace talvora {

namespace {

constexpr mode_t OwnerOnly = 0600;
constexpr mode_t OthersToo = 0077;

bool exists(const std::string& path) {
    struct stat found {};
    return ::lstat(path.c_str(), &found) == 0;
}

off_t sizeOf(const std::string& path) {
    struct stat found {};
    return ::stat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode) ? found.st_size : 0;
}

void hideFromOthers(const std::string& path) {
    struct stat found {};
    if (::stat(path.c_str(), &found) == 0 && (found.st_mode & OthersToo) != 0)
        ::chmod(path.c_str(), OwnerOnly);
}

void flushFolderOf(const std::string& path) {
    const std::string folder = folderOf(path);
    const char* const here = path.starts_with('/') ? "/" : ".";
    const Descriptor opened(
        ::open(folder.empty() ? here : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.get() >= 0) ::fsync(opened.get());
}

}  // namespace

RuntimeError SettingsFile::fault(Fault number, const std::string& reason, int errorNumber) const {
    std::string text = "The settings in " + path_ + " can't be used: " + reason;
    if (errorNumber != 0) text += std::strerror(errorNumber);
    return {static_cast<int>(number), fromUtf8(text), "Talvora", errorNumber};
}

RuntimeError SettingsFile::systemFault(int errorNumber) const {
    return fault(static_cast<Fault>(DiskFault(errorNumber).Number), "", errorNumber);
}

void SettingsFile::prepare() const {
    if (!exists(path_)) create();
    struct stat found {};
    if (::stat(path_.c_str(), &found) != 0) throw systemFault(errno);
    if (!S_ISREG(found.st_mode)) throw fault(Fault::PathFileAccessError, "it is not a file");
    if (::faccessat(AT_FDCWD, path_.c_str(), R_OK | W_OK, AT_EACCESS) != 0) {
        throw systemFault(errno);
    }
    hideFromOthers(path_);
    hideFromOthers(logPath());
    hideFromOthers(path_ + "-shm");
}

void SettingsFile::create() const {
    try {
        const std::string folder = folderOf(path_);
        if (!folder.empty()) makePrivateFolders(folder);
    } catch (const RuntimeError& failure) {
        throw systemFault(failure.LastDllError);
    }
    const Descriptor made(::open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, OwnerOnly));
    if (made.get() < 0 && errno != EEXIST) throw systemFault(errno);
    flushFolderOf(path_);
}

bool SettingsFile::hasLog() const {
    return sizeOf(logPath()) > 0;
}

bool SettingsFile::isLogDamaged() const {
    const bool damaged = sizeOf(path_) == 0 ? sizeOf(logPath()) > 0 : talvora::isLogDamaged(logPath(), path_);
    return damaged && !isInUse();
}

// Whether another process holds the database. Closing the file gives up the locks that this process holds, so
// this is asked only of a log that no store of ours can have.
bool SettingsFile::isInUse() const {
    const Descriptor file(::open(path_.c_str(), O_RDWR | O_CLOEXEC));
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return file.get() < 0 || ::fcntl(file.get(), F_GETLK, &lock) != 0 || lock.l_type != F_UNLCK;
}

std::string SettingsFile::asideName(const std::string& of) const {
    const std::string stamp = QDateTime::currentDateTime().toString("yyyyMMdd-hhmmss").toStdString();
    const std::string name = of + ".damaged-" + stamp;
    std::string free = name;
    for (int number = 2; exists(free); ++number) free = name + "-" + std::to_string(number);
    return free;
}

std::string SettingsFile::putAside() const {
    const std::string aside = asideName(path_);
    // The log first: alone it does no harm, but a new database must not find an old log.
    if (exists(logPath()) && std::rename(logPath().c_str(), (aside + "-wal").c_str()) != 0) {
        throw fault(Fault::PathFileAccessError, "it is damaged and can't be put aside: ", errno);
    }
    if (std::rename(path_.c_str(), aside.c_str()) != 0) {
        throw fault(Fault::PathFileAccessError, "it is damaged and can't be put aside: ", errno);
    }
    std::remove((path_ + "-shm").c_str());
    flushFolderOf(path_);
    return aside;
}

std::string SettingsFile::putLogAside() const {
    const std::string aside = asideName(logPath());
    if (std::rename(logPath().c_str(), aside.c_str()) != 0) {
        throw fault(Fault::PathFileAccessError, "its log is damaged and can't be put aside: ", errno);
    }
    flushFolderOf(path_);
    return aside;
}

}  // namespace talvora
