#pragma once
// Whether a text reaches its reader whole. A server cuts a line behind 510 bytes, counted with the sender's
// prefix that it puts in front; a text that has to arrive whole is measured before it is accepted.

#include <cstddef>
#include <string>
#include <string_view>

#include "robot/RobotConfig.h"

namespace talvora {

class LineRoom {
  public:
    explicit LineRoom(const RobotConfig& config);

    // By how many bytes a special text to a user is too long; 0 if it fits. `bare` is the reader's nick
    // without a state, or empty for whoever it may be.
    std::size_t Excess(std::string_view bare, std::string_view text) const;

  private:
    std::size_t widthOf(std::string_view text) const;

    bool utf8_;
    std::size_t prefix_;
};

}  // namespace talvora
