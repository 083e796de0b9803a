#pragma once
// What blocking sockets of the system make of the framing of a file transfer, with nothing else to do: two
// processes on one processor, as two clients are, one that asks for the blocks and one that sends them. No
// file is read or written.

#include <cstddef>

namespace talvora::bench {

// Seconds for so many blocks of this size. Both ends keep to the processor.
double bareSeconds(std::size_t block, std::size_t blocks, int processor);

}  // namespace talvora::bench
