#pragma once
// What the program says of itself.

#include <string>

namespace talvora::Version {

inline constexpr int Major = 0;
inline constexpr int Minor = 1;
inline constexpr int Revision = 0;
inline constexpr const char* Author = "the Talvora team";

inline std::string text() {
    return std::to_string(Major) + "." + std::to_string(Minor) + "." + std::to_string(Revision);
}

}  // namespace talvora::Version
