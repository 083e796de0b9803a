#pragma once
// The blocks of the file that is sent, as whole messages that leave in one write: "D", the block, the
// delimiter. A block is as long as asked for, also at the end of the file, where it ends in blanks. Owned by
// the sender; a message that has been sent is given back, and its storage used for the next one.
//
// What follows is read ahead in larger portions while an answer is on its way. It is used only as long as the
// file has not been changed meanwhile: it is looked at once for each moment of the loop's clock, which stands
// while a peer asks for blocks without a pause, for some milliseconds.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "platform/File.h"
#include "platform/Loop.h"

namespace talvora {

class BlockReader {
  public:
    explicit BlockReader(Loop& loop) : loop_(loop) {}

    // A message for a block of so many bytes; what they are, `Fill` says.
    std::string Message(std::size_t size);
    // The block is the file's, as far as it goes; `position` counts from 1. All blanks if that is a fault.
    void Fill(std::string& message, const File& file, std::int64_t position);
    void GiveBack(std::string&& message) { spare_ = std::move(message); }
    // Somebody will probably ask for this block; what fails is told when it is asked for.
    void ReadAhead(const File& file, std::int64_t position, std::size_t size);
    // Another file is sent.
    void Forget() { aheadAt_ = 0; }

  private:
    bool hasAhead(std::int64_t position, std::size_t size) const;
    bool isUnchanged(const File& file);
    std::size_t read(std::span<char> block, const File& file, std::int64_t position);

    Loop& loop_;
    std::string spare_;
    std::string ahead_;
    std::int64_t aheadAt_ = 0;  // 0: nothing is read ahead
    bool endsAhead_ = false;    // the file ends behind it
    std::uint64_t version_ = 0;
    Microseconds lookedAt_ = 0;  // when this was the file's version
};

}  // namespace talvora
