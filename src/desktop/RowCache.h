#pragma once
// The heights of a document's rows, a row for each paragraph, in blocks that know their sum. Rows come at the
// end and go from the front at no cost; finding a row by number or by position walks over the blocks from the
// nearer end. Numbers are the document's paragraph numbers.

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>

namespace talvora {

class RowCache {
  public:
    std::uint64_t FirstNumber() const { return first_; }
    std::uint64_t EndNumber() const { return first_ + count_; }
    std::int64_t Total() const { return total_; }

    void clear(std::uint64_t first);
    void append(int height);
    // `oldCount` rows from `first` on become rows of these heights; what follows moves up or down.
    void replace(std::uint64_t first, std::uint64_t oldCount, std::span<const int> heights);
    void dropFront(std::uint64_t count);

    int Height(std::uint64_t number) const;
    void setHeight(std::uint64_t number, int height);
    // Where the row begins; behind the last row for EndNumber.
    std::int64_t TopOf(std::uint64_t number) const;
    // The row at a position, the first or last one for a position outside. There must be a row.
    std::uint64_t RowAt(std::int64_t position) const;

  private:
    static constexpr std::size_t BlockRows = 256;
    struct Block {
        std::int64_t Sum = 0;
        std::size_t Begin = 0;
        std::size_t End = 0;
        std::array<std::int32_t, BlockRows> Heights;

        std::size_t size() const { return End - Begin; }
        void push(int height);
        void insert(std::size_t at, int height);
        void erase(std::size_t at, std::size_t count);
    };
    struct Spot {
        std::size_t Block = 0;
        std::size_t Row = 0;  // in the block's heights, from its Begin on
        std::int64_t BlockTop = 0;
    };

    Spot spotOf(std::uint64_t number) const;
    void removeBack(std::uint64_t count);
    void remove(std::uint64_t first, std::uint64_t count);
    void insert(std::uint64_t number, std::span<const int> heights);
    void split(std::size_t block, std::size_t row);

    std::deque<std::unique_ptr<Block>> blocks_;
    std::uint64_t first_ = 0;
    std::uint64_t count_ = 0;
    std::int64_t total_ = 0;
};

}  // namespace talvora
