#pragma once
// What blocking sockets of the system make of the framing of a file transfer, with nothing else to do: two
// processes on one processor, as two clients are, one that asks for the blocks and one that sends them.

#include <cstddef>

namespace talvora::bench {

// Whether each block is read from a file by one call, and written to one by another: no transfer can do
// without. The files have no name and lie in the folder for temporary ones.
enum class Blocks { OfMemory, OfFiles };

// Seconds for so many blocks of this size. Both ends keep to the processor.
double bareSeconds(std::size_t block, std::size_t blocks, int processor, Blocks what = Blocks::OfMemory);

}  // namespace talvora::bench
