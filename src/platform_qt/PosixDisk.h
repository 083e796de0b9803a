#pragma once
// The disk of a real machine below one root folder, for `Files`. Owned by whoever composes the platform.
//
// Every step down a path refuses a link, so that nothing leads out between the check of the layer above and
// the call here. Files are made with mode 0600, folders with 0700. Only plain files are opened. An
// interrupted call is done again.

#include <sys/types.h>

#include <string>

#include "platform/DiskDriver.h"
#include "platform_qt/Descriptor.h"

namespace talvora {

class PosixDisk final : public DiskDriver {
  public:
    // `root` is a native path, UTF-8; it and the folders above it are made if they are missing. Throws
    // RuntimeError, with the path in its description, if the folder can't be had.
    explicit PosixDisk(std::string root);

    Handle open(const std::string& path, Access access) override;
    Handle openPicked(const std::string& nativePath) override;
    Handle createPicked(const std::string& nativePath) override;
    std::size_t read(Handle file, std::int64_t at, char* to, std::size_t count) override;
    void write(Handle file, std::int64_t at, std::string_view bytes) override;
    std::int64_t size(Handle file) override;
    std::uint64_t version(Handle file) override;
    void truncate(Handle file, std::int64_t size) override;
    void flush(Handle file) override;
    void close(Handle file) override;
    Status status(const std::string& path) override;
    std::string linkTarget(const std::string& path) override;
    std::vector<Entry> list(const std::string& folder, Detail detail) override;
    std::unique_ptr<FolderWatch> watch(const std::string& folder) override;
    void flushFolder(const std::string& folder) override;
    void makeFolder(const std::string& path) override;
    void rename(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    void moveToWaste(const std::string& path) override;
    std::int64_t freeSpace() override;
    std::string nativePath(const std::string& path) const override;

  private:
    Descriptor below(const std::string& path, int flags, mode_t mode = 0) const;
    Descriptor walkedTo(const std::string& folder) const;
    Descriptor folder(const std::string& path) const;

    std::string root_;
    Descriptor rootFolder_;
};

// Makes a folder for the owner alone, and those above it, as far as they are missing. Throws like DiskFault.
void makePrivateFolders(const std::string& nativePath);

}  // namespace talvora
