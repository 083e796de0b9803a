#pragma once
// The blocks of the file that is sent, as whole messages that leave in one write: "D", the block, the
// delimiter. A block is as long as asked for, also at the end of the file, where it ends in blanks. Owned by
// the sender; a message that has been sent is given back, and its storage used for the next one.
//
// What follows is read ahead in larger portions while an answer is on its way. It is used only as long as the
// file has not been changed meanwhile.

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/File.h"

namespace talvora {

class BlockReader {
  public:
    // A message whose block is all blanks.
    std::string Blank(std::size_t size);
    // Reads the file over it, as far as it goes; `position` counts from 1.
    void Fill(std::string& message, const File& file, std::int64_t position);
    void GiveBack(std::string&& message) { spare_ = std::move(message); }
    // Somebody will probably ask for this block; what fails is told when it is asked for.
    void ReadAhead(const File& file, std::int64_t position, std::size_t size);
    // Another file is sent.
    void Forget() { aheadAt_ = 0; }

  private:
    bool hasAhead(std::int64_t position, std::size_t size) const;

    std::string spare_;
    std::string ahead_;
    std::int64_t aheadAt_ = 0;  // 0: nothing is read ahead
    bool endsAhead_ = false;    // the file ends behind it
    std::uint64_t version_ = 0;
};

}  // namespace talvora
