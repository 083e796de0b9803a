#pragma once
// The rewrites of lines that the engine sends, by the names of the profile. A line comes without its end and
// in code page 1253; what leaves is handed on whole, in the wire's encoding and with CR LF. Belongs to the
// wire adapter.

#include <string>
#include <string_view>

#include "irc/wire/LineView.h"
#include "irc/wire/OwnState.h"
#include "irc/wire/Pacing.h"
#include "irc/wire/ServerNames.h"
#include "irc/wire/WireProfile.h"

namespace talvora {

class Outgoing {
  public:
    // The longest line that a server takes, and relays, without its end.
    static constexpr std::size_t LongestSent = 510;
    // However long the own prefix is said to be, this much of a line is sent.
    static constexpr std::size_t ShortestCut = 200;

    Outgoing(const WireProfile& profile, OwnState& own, const ServerNames& names)
        : profile_(profile), own_(own), names_(names) {}

    // For a new connection, and at the end of one.
    void reset();
    // Lines that are answered here instead of by the server are appended to `toEngine`.
    void line(std::string_view line, Microseconds now, std::string& toServer, std::string& toEngine);

    Pacing& pacing() { return pacing_; }
    const Pacing& pacing() const { return pacing_; }
    // More waits than may; the connection is to be given up.
    bool overflowed() const { return overflowed_; }

  private:
    void spell(std::string_view text);
    void nick(const LineView& line, Microseconds now, std::string& toServer);
    void user(const LineView& line, Microseconds now, std::string& toServer);
    void pass(const LineView& line, Microseconds now, std::string& toServer);
    void join(const LineView& line, Microseconds now, std::string& toServer, std::string& toEngine);
    void leave(std::string_view channels);
    void answerJoin(std::string_view channel, std::string& toEngine) const;

    // Encodes, cuts and hands on.
    void send(std::string_view line, Microseconds now, std::string& toServer);
    void cut(std::string_view command);
    std::size_t limitOf(std::string_view command) const;

    bool holds() const { return profile_.has(Rewrite::PasswordFirst) && !passwordSent_ && !own_.loggedIn(); }

    const WireProfile& profile_;
    OwnState& own_;
    const ServerNames& names_;
    Pacing pacing_;
    bool overflowed_ = false;
    bool passwordSent_ = false;
    std::string heldNick_;  // wait for PASS
    std::string heldUser_;
    std::string spelled_;  // a line with the server's names
    std::string changed_;  // a line while it is rewritten
    std::string wire_;     // the same as it leaves
};

}  // namespace talvora
