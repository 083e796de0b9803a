#pragma once
// Where deleted files go that can be had back when the desktop has no waste basket: a small private folder
// below the root of a disk. It holds the youngest files up to a count and a size in bytes, and always the
// last one. A driver makes one for the call (`DiskDriver::moveToWaste`).

#include <cstdint>
#include <string>
#include <vector>

#include "platform/DiskDriver.h"

namespace talvora {

class WasteFolder {
  public:
    static constexpr const char* name = ".waste";
    static constexpr std::size_t MostFiles = 64;
    static constexpr std::int64_t MostBytes = std::int64_t{256} << 20;

    explicit WasteFolder(DiskDriver& disk) : disk_(disk) {}

    // Moves the file there under its name with a running number before it. Lost power leaves it in its place
    // or in the folder; a fault leaves it in its place unless the folder could not be flushed at the end.
    void keep(const std::string& path);

  private:
    void make();
    std::vector<DiskDriver::Entry> files();
    void makeRoom(const std::vector<DiskDriver::Entry>& present, std::int64_t bytes);

    DiskDriver& disk_;
};

}  // namespace talvora
