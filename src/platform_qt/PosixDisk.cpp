#include "platform_qt/PosixDisk.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/FilePath.h"
#include "platform/WasteFolder.h"
#include "platform_qt/Inotify.h"

namespace talvora {

namespace {

constexpr mode_t FileMode = 0600;
constexpr mode_t FolderMode = 0700;
constexpr int FolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
// Without waiting: a pipe in the place of a file must not hold the program up before it is refused.
constexpr int FileFlags = O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

// The call's result; again if it was interrupted, a fault if it failed.
template <class Call>
auto check(Call&& call) {
    for (;;) {
        const auto result = call();
        if (result >= 0) return result;
        if (errno != EINTR) throw DiskFault(errno);
    }
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

DiskDriver::Kind kindOf(mode_t mode) {
    if (S_ISREG(mode)) return DiskDriver::Kind::File;
    if (S_ISDIR(mode)) return DiskDriver::Kind::Folder;
    if (S_ISLNK(mode)) return DiskDriver::Kind::Link;
    return DiskDriver::Kind::Other;
}

// Whoever puts a file's time back has changed its last field, too.
std::uint64_t versionOf(const struct stat& found) {
    const auto moment = [](const timespec& at) {
        return static_cast<std::uint64_t>(at.tv_sec) * 1'000'000'000U +
               static_cast<std::uint64_t>(at.tv_nsec);
    };
    return moment(found.st_ctim) * 31 + moment(found.st_mtim) * 7 + static_cast<std::uint64_t>(found.st_size);
}

DiskDriver::Status statusAt(int folder, const char* name) {
    struct stat found {};
    if (::fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) == 0)
        return {kindOf(found.st_mode), found.st_size, versionOf(found)};
    if (errno == ENOENT) return {};
    throw DiskFault(errno);
}

constexpr mode_t Executable = S_IXUSR | S_IXGRP | S_IXOTH;

// The mode of what was opened, which has to be a plain file.
mode_t plainMode(const Descriptor& file) {
    struct stat found {};
    check([&] { return ::fstat(file.get(), &found); });
    if (S_ISDIR(found.st_mode)) throw DiskFault(EISDIR);
    if (!S_ISREG(found.st_mode)) throw RuntimeError(Fault::PathFileAccessError, ENXIO);
    return found.st_mode & 07777;
}

int flagsOf(DiskDriver::Access access) {
    switch (access) {
        case DiskDriver::Access::Read:
            return O_RDONLY;
        case DiskDriver::Access::Write:
            return O_RDWR;
        case DiskDriver::Access::Create:
            return O_RDWR | O_CREAT;
        case DiskDriver::Access::Empty:
            return O_RDWR | O_CREAT | O_TRUNC;
    }
    throw DiskFault(EINVAL);
}

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

// Without the user's own waste basket the toolkit would make one in whatever folder the program runs in.
bool thereIsAWasteBasket() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QFileInfo basket(data + QStringLiteral("/Trash"));
    if (data.isEmpty() || !QDir().mkpath(data)) return false;
    if (!basket.exists())
        QDir(data).mkdir(basket.fileName(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return basket.isDir() && basket.isWritable();
}

// A large file is on its way to the disk while it is still written, so that its flush is short. What fails
// here the flush tells.
void writeBehind(int file, std::int64_t from, std::int64_t to) {
    constexpr std::int64_t portion = std::int64_t{1} << 20;
    const std::int64_t whole = to - to % portion;
    if (from >= whole || whole < portion) return;
    ::sync_file_range(file, whole - portion, portion, SYNC_FILE_RANGE_WRITE);
}

}  // namespace

void makePrivateFolders(const std::string& nativePath) {
    for (std::size_t end = 0; end != std::string::npos;) {
        end = nativePath.find('/', end + 1);
        if (::mkdir(nativePath.substr(0, end).c_str(), FolderMode) == 0 || errno == EEXIST) continue;
        const int error = errno;
        struct stat found {};
        if (::stat(nativePath.substr(0, end).c_str(), &found) != 0) throw DiskFault(error);
    }
}

PosixDisk::PosixDisk(std::string root) : root_(std::move(root)) {
    try {
        makePrivateFolders(root_);
        rootFolder_.reset(check([&] { return ::open(root_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    } catch (const RuntimeError& fault) {
        throw RuntimeError(fault.Number,
                           "The folder " + root_ + " can't be used: " + std::strerror(fault.LastDllError),
                           fault.Source, fault.LastDllError);
    }
}

// In one call where the system has it. Where it hasn't, or not for this program, the walk decides.
Descriptor PosixDisk::below(const std::string& path, int flags, mode_t mode) const {
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags);
    how.mode = (flags & O_CREAT) != 0 ? mode : 0;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
    const auto opened = ::syscall(SYS_openat2, rootFolder_.get(), path.c_str(), &how, sizeof how);
    if (opened >= 0) return Descriptor(static_cast<int>(opened));
    if (errno != ENOSYS && errno != EPERM && errno != EAGAIN && errno != EINTR) throw DiskFault(errno);
    const Descriptor parent = walkedTo(folderOf(path));
    const std::string name = nameOf(path);
    return Descriptor(check([&] { return ::openat(parent.get(), name.c_str(), flags, mode); }));
}

Descriptor PosixDisk::folder(const std::string& path) const {
    return path.empty() ? walkedTo(path) : below(path, FolderFlags);
}

Descriptor PosixDisk::walkedTo(const std::string& path) const {
    Descriptor here;
    int above = rootFolder_.get();
    for (std::size_t from = 0; from <= path.size();) {
        const std::size_t to = std::min(path.find('/', from), path.size());
        const std::string name = path.empty() ? "." : path.substr(from, to - from);
        here.reset(check([&] { return ::openat(above, name.c_str(), FolderFlags); }));
        above = here.get();
        from = to + 1;
    }
    return here;
}

DiskDriver::Handle PosixDisk::open(const std::string& path, Access access) {
    Descriptor file = below(path, flagsOf(access) | FileFlags, FileMode);
    const mode_t mode = plainMode(file);
    if (access != Access::Read && (mode & Executable) != 0) {
        check([&] { return ::fchmod(file.get(), mode & ~Executable); });
    }
    return file.release();
}

DiskDriver::Handle PosixDisk::openPicked(const std::string& nativePath) {
    constexpr int flags = O_RDONLY | (FileFlags & ~O_NOFOLLOW);
    Descriptor file(check([&] { return ::open(nativePath.c_str(), flags); }));
    plainMode(file);
    return file.release();
}

DiskDriver::Handle PosixDisk::createPicked(const std::string& nativePath) {
    constexpr int flags = O_RDWR | O_CREAT | (FileFlags & ~O_NOFOLLOW);
    constexpr mode_t everybody = 0666;  // but for what the user's mask takes away
    Descriptor file(check([&] { return ::open(nativePath.c_str(), flags, everybody); }));
    plainMode(file);
    check([&] { return ::ftruncate(file.get(), 0); });
    return file.release();
}

std::size_t PosixDisk::read(Handle file, std::int64_t at, char* to, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        const auto position = static_cast<off_t>(at) + static_cast<off_t>(done);
        const auto got = check([&] { return ::pread(file, to + done, count - done, position); });
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

void PosixDisk::write(Handle file, std::int64_t at, std::string_view bytes) {
    const std::int64_t from = at;
    while (!bytes.empty()) {
        const auto put =
            check([&] { return ::pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(at)); });
        if (put == 0) throw DiskFault(ENOSPC);
        at += put;
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    writeBehind(file, from, at);
}

std::int64_t PosixDisk::size(Handle file) {
    struct stat found {};
    check([&] { return ::fstat(file, &found); });
    return found.st_size;
}

std::uint64_t PosixDisk::version(Handle file) {
    struct stat found {};
    check([&] { return ::fstat(file, &found); });
    return versionOf(found);
}

void PosixDisk::truncate(Handle file, std::int64_t size) {
    check([&] { return ::ftruncate(file, static_cast<off_t>(size)); });
}

void PosixDisk::flush(Handle file) {
    check([&] { return ::fsync(file); });
}

void PosixDisk::close(Handle file) {
    // Not again after an interruption: the descriptor is gone, and its number may be another's by then.
    if (::close(file) != 0 && errno != EINTR) throw DiskFault(errno);
}

DiskDriver::Status PosixDisk::status(const std::string& path) {
    return statusAt(folder(folderOf(path)).get(), path.empty() ? "." : nameOf(path).c_str());
}

std::string PosixDisk::linkTarget(const std::string& path) {
    const Descriptor parent = folder(folderOf(path));
    const std::string name = nameOf(path);
    std::array<char, PATH_MAX> target{};
    const auto length =
        check([&] { return ::readlinkat(parent.get(), name.c_str(), target.data(), target.size()); });
    return {target.data(), static_cast<std::size_t>(length)};
}

std::vector<DiskDriver::Entry> PosixDisk::list(const std::string& path, Detail detail) {
    Descriptor opened = folder(path);
    const std::unique_ptr<DIR, CloseFolder> stream(::fdopendir(opened.get()));
    if (!stream) throw DiskFault(errno);
    const int number = opened.release();  // the stream's now
    std::vector<Entry> entries;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get());
        if (entry == nullptr) break;
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        Status found{Kind::File, 0, {}};
        if (detail == Detail::All || entry->d_type != DT_REG) found = statusAt(number, name.c_str());
        entries.push_back({name, found});
    }
    if (errno != 0) throw DiskFault(errno);
    return entries;
}

std::unique_ptr<FolderWatch> PosixDisk::watch(const std::string& path) {
    return watchByKernel(folder(path));
}

void PosixDisk::flushFolder(const std::string& path) {
    const Descriptor opened = folder(path);
    check([&] { return ::fsync(opened.get()); });
}

void PosixDisk::makeFolder(const std::string& path) {
    const Descriptor parent = folder(folderOf(path));
    check([&] { return ::mkdirat(parent.get(), nameOf(path).c_str(), FolderMode); });
}

void PosixDisk::rename(const std::string& from, const std::string& to) {
    const Descriptor source = folder(folderOf(from));
    const Descriptor target = folder(folderOf(to));
    check([&] { return ::renameat(source.get(), nameOf(from).c_str(), target.get(), nameOf(to).c_str()); });
}

void PosixDisk::remove(const std::string& path) {
    const Descriptor parent = folder(folderOf(path));
    check([&] { return ::unlinkat(parent.get(), nameOf(path).c_str(), 0); });
}

void PosixDisk::moveToWaste(const std::string& path) {
    const auto kind = status(path).What;
    if (kind == Kind::Missing) throw DiskFault(ENOENT);
    if (kind != Kind::File) throw DiskFault(EISDIR);
    const bool taken =
        thereIsAWasteBasket() && QFile::moveToTrash(QString::fromStdString(joinNative(root_, path)));
    if (!taken) WasteFolder(*this).keep(path);
}

std::int64_t PosixDisk::freeSpace() {
    struct statvfs found {};
    check([&] { return ::fstatvfs(rootFolder_.get(), &found); });
    return static_cast<std::int64_t>(found.f_bavail) * static_cast<std::int64_t>(found.f_frsize);
}

std::string PosixDisk::nativePath(const std::string& path) const {
    return joinNative(root_, path);
}

}  // namespace talvora
