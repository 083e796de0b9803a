#include "desktop/RowCache.h"

#include <algorithm>

#include "platform/RuntimeError.h"

namespace talvora {

void RowCache::Block::push(int height) {
    if (End == BlockRows) {  // room is left at the front only
        std::copy(Heights.begin() + static_cast<std::ptrdiff_t>(Begin), Heights.end(), Heights.begin());
        End -= Begin;
        Begin = 0;
    }
    Heights[End++] = height;
    Sum += height;
}

void RowCache::Block::insert(std::size_t at, int height) {
    push(height);
    const std::size_t place = Begin + at;
    std::rotate(Heights.begin() + static_cast<std::ptrdiff_t>(place),
                Heights.begin() + static_cast<std::ptrdiff_t>(End - 1),
                Heights.begin() + static_cast<std::ptrdiff_t>(End));
}

void RowCache::Block::erase(std::size_t at, std::size_t count) {
    const std::size_t begin = Begin + at;
    for (std::size_t i = begin; i < begin + count; ++i) Sum -= Heights[i];
    if (at == 0) {
        Begin += count;
        return;
    }
    std::copy(Heights.begin() + static_cast<std::ptrdiff_t>(begin + count),
              Heights.begin() + static_cast<std::ptrdiff_t>(End),
              Heights.begin() + static_cast<std::ptrdiff_t>(begin));
    End -= count;
}

void RowCache::clear(std::uint64_t first) {
    blocks_.clear();
    first_ = first;
    count_ = 0;
    total_ = 0;
}

void RowCache::append(int height) {
    if (blocks_.empty() || blocks_.back()->size() == BlockRows) blocks_.push_back(std::make_unique<Block>());
    blocks_.back()->push(height);
    ++count_;
    total_ += height;
}

void RowCache::removeBack(std::uint64_t count) {
    while (count > 0 && count_ > 0) {
        Block& last = *blocks_.back();
        const int height = last.Heights[--last.End];
        last.Sum -= height;
        total_ -= height;
        --count_;
        --count;
        if (last.size() == 0) blocks_.pop_back();
    }
}

void RowCache::dropFront(std::uint64_t count) {
    count = std::min(count, count_);
    first_ += count;
    count_ -= count;
    while (count > 0) {
        Block& front = *blocks_.front();
        const std::size_t here = std::min<std::uint64_t>(count, front.size());
        const std::int64_t before = front.Sum;
        front.erase(0, here);
        total_ -= before - front.Sum;
        count -= here;
        if (front.size() == 0) blocks_.pop_front();
    }
}

void RowCache::replace(std::uint64_t first, std::uint64_t oldCount, std::span<const int> heights) {
    first = std::clamp(first, first_, EndNumber());
    oldCount = std::min(oldCount, EndNumber() - first);
    if (first + oldCount == EndNumber()) {
        removeBack(oldCount);
        for (const int height : heights) append(height);
        return;
    }
    if (oldCount == heights.size()) {
        for (std::size_t i = 0; i < heights.size(); ++i) setHeight(first + i, heights[i]);
        return;
    }
    remove(first, oldCount);
    insert(first, heights);
}

void RowCache::remove(std::uint64_t first, std::uint64_t count) {
    while (count > 0) {
        const Spot spot = spotOf(first);
        Block& block = *blocks_[spot.Block];
        const std::size_t here = std::min<std::uint64_t>(count, block.size() - spot.Row);
        const std::int64_t before = block.Sum;
        block.erase(spot.Row, here);
        total_ -= before - block.Sum;
        count_ -= here;
        count -= here;
        if (block.size() == 0) blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(spot.Block));
    }
}

void RowCache::split(std::size_t block, std::size_t row) {
    Block& front = *blocks_[block];
    auto back = std::make_unique<Block>();
    for (std::size_t i = front.Begin + row; i < front.End; ++i) back->push(front.Heights[i]);
    front.erase(row, front.size() - row);
    blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(block) + 1, std::move(back));
}

void RowCache::insert(std::uint64_t number, std::span<const int> heights) {
    if (heights.empty()) return;
    Spot spot = spotOf(number);
    for (const int height : heights) {
        if (blocks_[spot.Block]->size() == BlockRows) {
            // What stands behind the new row gets a block of its own, and so the front one has room.
            split(spot.Block, std::max<std::size_t>(spot.Row, 1));
            if (spot.Row == BlockRows) {
                ++spot.Block;
                spot.Row = 0;
            }
        }
        blocks_[spot.Block]->insert(spot.Row++, height);
        ++count_;
        total_ += height;
    }
}

RowCache::Spot RowCache::spotOf(std::uint64_t number) const {
    if (number < first_ || number >= EndNumber()) throw RuntimeError(Fault::SubscriptOutOfRange);
    std::uint64_t row = number - first_;
    if (row <= count_ / 2) {
        Spot spot;
        while (row >= blocks_[spot.Block]->size()) {
            row -= blocks_[spot.Block]->size();
            spot.BlockTop += blocks_[spot.Block++]->Sum;
        }
        spot.Row = row;
        return spot;
    }
    Spot spot{blocks_.size() - 1, 0, total_ - blocks_.back()->Sum};
    std::uint64_t behind = count_ - row;  // rows from this one to the end
    while (behind > blocks_[spot.Block]->size()) {
        behind -= blocks_[spot.Block--]->size();
        spot.BlockTop -= blocks_[spot.Block]->Sum;
    }
    spot.Row = blocks_[spot.Block]->size() - behind;
    return spot;
}

int RowCache::Height(std::uint64_t number) const {
    const Spot spot = spotOf(number);
    const Block& block = *blocks_[spot.Block];
    return block.Heights[block.Begin + spot.Row];
}

void RowCache::setHeight(std::uint64_t number, int height) {
    const Spot spot = spotOf(number);
    Block& block = *blocks_[spot.Block];
    std::int32_t& place = block.Heights[block.Begin + spot.Row];
    block.Sum += height - place;
    total_ += height - place;
    place = height;
}

std::int64_t RowCache::TopOf(std::uint64_t number) const {
    if (number == EndNumber()) return total_;
    const Spot spot = spotOf(number);
    const Block& block = *blocks_[spot.Block];
    std::int64_t top = spot.BlockTop;
    for (std::size_t i = block.Begin; i < block.Begin + spot.Row; ++i) top += block.Heights[i];
    return top;
}

std::uint64_t RowCache::RowAt(std::int64_t position) const {
    if (count_ == 0) throw RuntimeError(Fault::SubscriptOutOfRange);
    if (position < 0) return first_;
    if (position >= total_) return EndNumber() - 1;
    std::size_t at = 0;
    std::uint64_t number = first_;
    std::int64_t top = 0;
    if (position < total_ / 2) {
        while (position >= top + blocks_[at]->Sum) {
            top += blocks_[at]->Sum;
            number += blocks_[at++]->size();
        }
    } else {
        at = blocks_.size();
        number = EndNumber();
        top = total_;
        do {
            top -= blocks_[--at]->Sum;
            number -= blocks_[at]->size();
        } while (position < top);
    }
    const Block& block = *blocks_[at];
    for (std::size_t i = block.Begin; i < block.End; ++i, ++number) {
        top += block.Heights[i];
        if (position < top) break;
    }
    return number;
}

}  // namespace talvora
