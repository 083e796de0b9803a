#pragma once
// Keeps the lines of replies that a server spreads over many lines until their last one has come, so that two
// replies under way do not mix. Bounded: beyond MostBytes everything kept is let through as it comes, beyond
// MostReplies the oldest is forgotten.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace talvora {

class ReplyKeeper {
  public:
    enum class Kind : std::uint8_t { Names, Who, List, Whois, Motd };

    static constexpr std::size_t MostBytes = std::size_t{4} * 1024 * 1024;
    static constexpr std::size_t MostReplies = 64;

    // Adds a line to a reply, or begins it. `key` is the channel or nick that the reply is about.
    void keep(Kind kind, std::string_view key, std::string_view line, std::string& out);
    // The reply is whole: its lines go out. False if none was under way.
    bool release(Kind kind, std::string_view key, std::string& out);
    // The same with all of a kind, in the order in which they began.
    bool releaseAll(Kind kind, std::string& out);

    bool underWay(Kind kind, std::string_view key) const;
    bool underWay(Kind kind) const;
    std::size_t kept() const { return bytes_; }
    void drop();

  private:
    struct Reply {
        Kind kind = Kind::Names;
        bool through = false;  // its lines are no longer kept
        std::string key;
        std::string lines;
    };

    std::size_t find(Kind kind, std::string_view key) const;
    std::size_t begin(Kind kind, std::string_view key);
    void letOut(std::size_t index, std::string& out);
    void forget(std::size_t index);
    void letAllThrough(std::string& out);

    std::vector<Reply> replies_;  // in the order in which they began
    std::string spare_;           // the storage of the last reply, for the next
    std::size_t bytes_ = 0;
};

}  // namespace talvora
