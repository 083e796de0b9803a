#pragma once
// How much of one line of the wire is left for an announcement. A server cuts a line behind 510 bytes,
// counted with the sender's prefix that it puts in front; a post has to pass twice, to the robot and from the
// robot to everybody. The robot refuses what would be cut on the second way, whoever reads it.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace talvora {

class PostRoom {
  public:
    // How many bytes a text has on the wire, in the network's encoding.
    using Width = std::function<std::size_t(std::string_view text)>;

    explicit PostRoom(Width width) : width_(std::move(width)) {}

    // Bytes that are left; below 0 it is too long. `text` is on one line.
    std::ptrdiff_t Left(const std::string& poster, const std::string& hours, const std::string& text) const;

  private:
    std::size_t toRobot(const std::string& poster, const std::string& hours, const std::string& text) const;
    std::size_t toReaders(const std::string& poster, const std::string& hours, const std::string& text) const;

    Width width_;
};

}  // namespace talvora
