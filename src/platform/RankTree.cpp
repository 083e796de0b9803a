#include "platform/RankTree.h"

#include <algorithm>
#include <bit>

namespace talvora {
namespace {

constexpr std::size_t lowestBit(std::size_t number) {
    return number & (~number + 1);
}

}  // namespace

void RankTree::append() {
    const std::size_t entry = sums_.size() + 1;
    std::uint32_t sum = 1;
    const std::size_t begin = entry - lowestBit(entry);
    for (std::size_t below = entry - 1; below > begin; below -= lowestBit(below)) sum += sums_[below - 1];
    sums_.push_back(sum);
    ++taken_;
}

void RankTree::vacate(std::size_t slot) {
    for (std::size_t entry = slot + 1; entry <= sums_.size(); entry += lowestBit(entry)) --sums_[entry - 1];
    --taken_;
}

void RankTree::fill(std::size_t slot) {
    for (std::size_t entry = slot + 1; entry <= sums_.size(); entry += lowestBit(entry)) ++sums_[entry - 1];
    ++taken_;
}

void RankTree::clear() {
    sums_.clear();
    taken_ = 0;
}

std::size_t RankTree::rankOf(std::size_t slot) const {
    std::size_t sum = 0;
    for (std::size_t entry = std::min(slot + 1, sums_.size()); entry > 0; entry -= lowestBit(entry))
        sum += sums_[entry - 1];
    return sum;
}

std::size_t RankTree::slotOf(std::size_t rank) const {
    std::size_t before = 0;  // slots that are known to stand in front of the one sought
    for (std::size_t step = std::bit_floor(sums_.size()); step > 0; step /= 2) {
        if (before + step > sums_.size() || sums_[before + step - 1] >= rank) continue;
        before += step;
        rank -= sums_[before - 1];
    }
    return before;
}

}  // namespace talvora
