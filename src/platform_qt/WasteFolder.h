#pragma once
// Where deleted files go that can be had back: the desktop's waste basket, and a small private folder where
// there is none. `PosixDisk` owns the decision.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/DiskDriver.h"

namespace talvora {

// False if the desktop has no basket for this file, which then is where it was.
bool moveToTrash(const std::string& nativePath);

// The private folder below the root of `disk`. It holds the youngest files up to a count and a size in bytes,
// and always the last one.
class WasteFolder {
  public:
    static constexpr const char* name = ".waste";
    static constexpr std::size_t mostFiles = 64;
    static constexpr std::int64_t mostBytes = std::int64_t{256} << 20;

    explicit WasteFolder(DiskDriver& disk) : disk_(disk) {}

    // Moves the file there under its name with a running number before it.
    void keep(const std::string& path);

  private:
    std::vector<std::string> files();
    void shrink();

    DiskDriver& disk_;
};

}  // namespace talvora
