#pragma once
// How much memory the lists of users of one component may take together, in bytes, whatever a server says:
// many times what a network needs. Belongs to modNickDecode, which all lists share.

#include <algorithm>
#include <cstddef>

namespace talvora {

class UserMemory {
  public:
    std::size_t Most = 80 << 20;
    // What a row needs with its places in the indices, beside its texts.
    static constexpr std::size_t RowCost = 368;
    // A user's channels beyond this are not noted.
    static constexpr std::size_t LongestTag = 16 << 10;

    bool take(std::size_t bytes) {
        if (used_ + bytes > Most) return false;
        used_ += bytes;
        return true;
    }
    void give(std::size_t bytes) { used_ -= bytes; }
    // For a row that has another name now; the difference, wrapped around if it is below 0.
    std::size_t exchange(std::size_t before, std::size_t after) {
        used_ += after - before;
        return after - before;
    }
    std::size_t used() const { return used_; }
    // How many rows there can still be.
    std::size_t rows() const { return (Most - std::min(used_, Most)) / RowCost; }

  private:
    std::size_t used_ = 0;
};

}  // namespace talvora
