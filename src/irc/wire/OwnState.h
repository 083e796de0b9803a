#pragma once
// What the adapter knows of the user's own place on the server, learnt from the lines of both directions: the
// nick, the length of the prefix that the server puts in front of relayed lines, and the joined channels.
// Everything kept is bounded, whatever a server says. Text is in code page 1253.

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

namespace talvora {

class OwnState {
  public:
    static constexpr std::size_t MostChannels = 1000;
    static constexpr std::size_t LongestName = 200;  // of a nick, host or channel that is remembered

    // For a new connection.
    void reset();

    // The engine asks for a nick; before the log-on it counts as its own.
    void askFor(std::string_view nick);
    // 001: the nick that the server gives, and the server's name.
    void welcome(std::string_view nick, std::string_view server);
    void changeNick(std::string_view nick);

    bool loggedIn() const { return loggedIn_; }
    bool isOwn(std::string_view nick) const;
    const std::string& nick() const { return nick_; }
    const std::string& server() const { return server_; }

    // From `nick!user@host`; anything else is ignored.
    void learnPrefix(std::string_view prefix);
    // The host alone, or `user@host`.
    void learnHost(std::string_view host);
    // Of `nick!user@host`, in bytes: as learnt, else the longest that servers give.
    std::size_t prefixLength() const { return nick_.size() + 1 + userLength_ + 1 + hostLength_; }

    // Beyond MostChannels a channel is not followed.
    void join(std::string_view channel);
    void part(std::string_view channel);
    bool isIn(std::string_view channel) const;
    std::size_t channels() const { return joined_.size(); }

  private:
    static constexpr std::size_t LongestUser = 11;  // "~" and ten characters
    static constexpr std::size_t LongestHost = 63;

    bool loggedIn_ = false;
    std::string nick_;
    std::string server_;
    std::size_t userLength_ = LongestUser;
    std::size_t hostLength_ = LongestHost;
    std::set<std::string, std::less<>> joined_;  // in lower case
};

}  // namespace talvora
