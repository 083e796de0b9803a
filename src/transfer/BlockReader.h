#pragma once
// The blocks of the file that is sent, as whole messages that leave in one write: "D", the block, the
// delimiter. A block is as long as asked for, also at the end of the file, where it ends in blanks. Owned by
// the sender; a message that has been sent is given back, and its storage used for the next one.
//
// The next block is read ahead while the answer to the last one is on its way. It is used only if it is the
// one that is asked for, and if the file has not been changed meanwhile.

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
    // Reads a block that somebody will probably ask for; what fails is told when it is asked for.
    void ReadAhead(const File& file, std::int64_t position, std::size_t size);
    // Another file is sent.
    void Forget() { aheadAt_ = 0; }

  private:
    static void read(std::string& message, const File& file, std::int64_t position);

    std::string spare_;
    std::string ahead_;
    std::int64_t aheadAt_ = 0;  // 0: nothing is read ahead
    std::uint64_t version_ = 0;
};

}  // namespace talvora
