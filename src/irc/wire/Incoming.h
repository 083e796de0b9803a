#pragma once
// The rewrites of lines from the server, by the names of the profile. A line comes without its end and in
// code page 1253; what the engine shall read is appended to `out`, each line with CR LF. Belongs to the wire
// adapter.

#include <string>
#include <string_view>

#include "irc/wire/LineView.h"
#include "irc/wire/ModeLetters.h"
#include "irc/wire/OwnState.h"
#include "irc/wire/ReplyKeeper.h"
#include "irc/wire/ServerNames.h"
#include "irc/wire/WireProfile.h"

namespace talvora {

class Incoming {
  public:
    Incoming(const WireProfile& profile, OwnState& own, ServerNames& names)
        : profile_(profile), own_(own), names_(names) {}

    // For a new connection, and at the end of one.
    void reset();
    void line(std::string_view line, std::string& out);

  private:
    // Incoming.cpp: which line needs what
    void word(const LineView& line, std::string& out);
    void numeric(const LineView& line, std::string& out);
    void pass(const LineView& line, std::string& out) const;

    // Incoming.cpp: lines of the session
    void join(const LineView& line, std::string& out);
    void part(const LineView& line, std::string& out);
    void nick(const LineView& line, std::string& out);
    void kick(const LineView& line, std::string& out);
    void text(const LineView& line, std::string& out);
    void passWithColon(const LineView& line, std::size_t index, std::string& out) const;
    void passWithoutColon(const LineView& line, const LineWords& words, std::string& out) const;

    // IncomingModes.cpp
    void mode(const LineView& line, std::string& out);
    void ownMode(const LineView& line, std::string& out) const;
    void channelModes(const LineView& line, const LineWords& words, std::string& out) const;

    // IncomingNumerics.cpp
    void welcome(const LineView& line, std::string& out);
    void givenNick(std::string_view given, std::string& out) const;
    void support(const LineView& line, std::string& out);
    void host(const LineView& line, std::string& out);
    void globalUsers(const LineView& line, std::string& out) const;
    void cannotSend(const LineView& line, std::string& out) const;
    std::string_view withoutColons(const LineView& line, std::size_t middleWords);

    // IncomingReplies.cpp
    void piece(ReplyKeeper::Kind kind, std::string_view key, std::string_view line, std::string& out);
    void names(const LineView& line, std::string& out);
    void endOfNames(const LineView& line, std::string& out);
    void who(const LineView& line, std::string& out);
    void endOfWho(const LineView& line, std::string& out);
    void whoisUser(const LineView& line, std::string& out);
    void whoisPiece(const LineView& line, std::string& out);
    void endOfWhois(const LineView& line, std::string& out);
    void endOf(ReplyKeeper::Kind kind, const LineView& line, std::string& out);

    const WireProfile& profile_;
    OwnState& own_;
    ServerNames& names_;
    ModeLetters modes_;
    ReplyKeeper replies_;
    // Without the keeper: a line of the kind came since the last end of such a reply.
    bool sawNames_ = false;
    bool sawWho_ = false;
    std::string changed_;  // a line while it is rewritten
};

}  // namespace talvora
