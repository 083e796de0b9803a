#pragma once
// The port through which the file layer (platform/Files.h) reaches a disk. A platform implements it; nobody
// but `Files` and its open files calls it.
//
// A path is relative to the driver's root folder, in UTF-8, with "/" between its parts; the empty path is the
// root itself. The layer above has checked it: it holds no "..", and no link on the way. A driver still
// follows no link. Every failure is a RuntimeError with a classic number and the errno behind it; an
// operation that failed has changed nothing, but for `write`, of which a part may have reached the disk. What
// is not flushed does not survive lost power: bytes by `flush`, names by `flushFolder`.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/RuntimeError.h"

namespace talvora {

// The fault that stands for an errno of the system.
RuntimeError DiskFault(int errorNumber);

// Notes what happens in a folder, whoever does it.
class FolderWatch {
  public:
    virtual ~FolderWatch() = default;
    // The names under which something was made, changed or taken away since the last call, some of them
    // twice. Nothing once they are not all known: then all may have changed, and the watch is of no more use.
    virtual std::optional<std::vector<std::string>> names() = 0;
};

class DiskDriver {
  public:
    using Handle = int;  // of an open file; never negative

    enum class Kind { Missing, File, Folder, Link, Other };
    struct Status {
        Kind What = Kind::Missing;
        std::int64_t Size = 0;  // of a file, in bytes
        // A number that is another one after the file's content has changed, whoever did it.
        std::uint64_t Version = 0;
    };
    struct Entry {
        std::string Name;
        Status Found;
    };
    // What a list tells of an entry: the kind alone, which costs next to nothing, or all.
    enum class Detail { Kind, All };
    enum class Access {
        Read,
        Write,   // read and write what exists
        Create,  // the same; a missing file is created, readable by its owner alone and not executable
        Empty    // created or emptied
    };

    DiskDriver() = default;
    DiskDriver(const DiskDriver&) = delete;
    DiskDriver& operator=(const DiskDriver&) = delete;
    virtual ~DiskDriver() = default;

    // Opens a plain file and nothing else.
    virtual Handle open(const std::string& path, Access access) = 0;
    // Opens for reading a file that the user has picked: a native path of the machine.
    virtual Handle openPicked(const std::string& nativePath) = 0;
    // Creates or empties such a file.
    virtual Handle createPicked(const std::string& nativePath) = 0;
    // Reads from byte `at` (counted from 0); fewer than `count` bytes only at the end of the file.
    virtual std::size_t read(Handle file, std::int64_t at, char* to, std::size_t count) = 0;
    // All of it, or a fault.
    virtual void write(Handle file, std::int64_t at, std::string_view bytes) = 0;
    virtual std::int64_t size(Handle file) = 0;
    // As `Status` tells it.
    virtual std::uint64_t version(Handle file) = 0;
    virtual void truncate(Handle file, std::int64_t size) = 0;
    virtual void flush(Handle file) = 0;
    // The handle is gone even if this faults.
    virtual void close(Handle file) = 0;

    virtual Status status(const std::string& path) = 0;
    virtual std::string linkTarget(const std::string& path) = 0;
    virtual std::vector<Entry> list(const std::string& folder, Detail detail) = 0;
    // From now on; null where the system doesn't note changes.
    virtual std::unique_ptr<FolderWatch> watch(const std::string& folder) = 0;
    virtual void flushFolder(const std::string& folder) = 0;
    // Readable by its owner alone.
    virtual void makeFolder(const std::string& path) = 0;
    // Takes the place of a file of the new name.
    virtual void rename(const std::string& from, const std::string& to) = 0;
    virtual void remove(const std::string& path) = 0;
    // To the desktop's waste basket, or to a bounded private folder where there is none.
    virtual void moveToWaste(const std::string& path) = 0;
    // Bytes that can still be written.
    virtual std::int64_t freeSpace() = 0;
    // Where the machine's other programs find it.
    virtual std::string nativePath(const std::string& path) const = 0;
};

}  // namespace talvora
