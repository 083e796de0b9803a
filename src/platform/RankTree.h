#pragma once
// Counts which of a row of slots are taken. A list that only grows at its end leaves a hole where a row went;
// this says in logarithmic time how many rows stand up to a slot, and in which slot the n-th row stands.
// Slots count from 0, ranks from 1.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace talvora {

class RankTree {
  public:
    // One more slot, taken, at the end.
    void append();
    // Leaves a hole; the slot has to be a taken one.
    void vacate(std::size_t slot);
    // Takes a hole again.
    void fill(std::size_t slot);
    void clear();

    std::size_t taken() const { return taken_; }
    // How many slots are taken up to and with `slot`.
    std::size_t rankOf(std::size_t slot) const;
    // The slot that is the `rank`-th taken one, from 1 to taken().
    std::size_t slotOf(std::size_t rank) const;

  private:
    // A binary indexed tree: entry n, counted from 1, sums up as many slots as the lowest bit of n says,
    // slot n - 1 being the last.
    std::vector<std::uint32_t> sums_;
    std::size_t taken_ = 0;
};

}  // namespace talvora
