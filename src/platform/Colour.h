#pragma once
// A colour as the system writes and stores it.

#include <cstdint>

namespace talvora {

// 0x00BBGGRR.
using Colour = std::uint32_t;

}  // namespace talvora
