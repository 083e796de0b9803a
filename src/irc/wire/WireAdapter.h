#pragma once
// What stands between the network and the bytes of the IRC connection: brings the lines of servers into the
// form that the engine reads, and what the engine writes into the form that the server wants, as the
// network's profile says. Pure: bytes in, bytes out, in both directions, and the time in microseconds where
// it matters. It has no socket and no clock; AdaptedSocket is its host.
//
// With the plain profile every byte goes through as it came. Otherwise it works on whole lines (ended by CR,
// LF or both; CR LF when they leave), and the bytes of a line that is not complete stay here. Of a line, 256
// KiB are the most: beyond that the connection has overflowed and no more of it is read.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "irc/wire/Incoming.h"
#include "irc/wire/LineAssembler.h"
#include "irc/wire/Outgoing.h"
#include "irc/wire/OwnState.h"
#include "irc/wire/ServerNames.h"
#include "irc/wire/WireProfile.h"

namespace talvora {

class WireAdapter {
  public:
    explicit WireAdapter(const WireProfile& profile);
    WireAdapter(const WireAdapter&) = delete;
    WireAdapter& operator=(const WireAdapter&) = delete;
    ~WireAdapter() = default;

    // Both forget everything about the connection before.
    void connectionStarted() { reset(); }
    void connectionEnded() { reset(); }

    // From the network; what the engine shall read is appended to `toEngine`.
    void fromServer(std::string_view bytes, std::string& toEngine);
    // From the engine; what shall leave now is appended to `toServer`, lines that are answered here to
    // `toEngine`.
    void fromEngine(std::string_view bytes, Microseconds now, std::string& toServer, std::string& toEngine);

    // Pacing: when `tick` is to be called (nothing while nothing waits), and what may leave then.
    std::optional<Microseconds> nextTick() const { return outgoing_.pacing().nextDue(); }
    void tick(Microseconds now, std::string& toServer) { outgoing_.pacing().tick(now, toServer); }

    enum class Overflow { None, LineTooLong, TooMuchWaits };
    // Stays until the next connection.
    Overflow overflow() const;

    const OwnState& own() const { return own_; }

  private:
    void reset();
    void passPlain(std::string_view bytes, std::string& toEngine);

    const WireProfile profile_;
    OwnState own_;
    ServerNames names_;
    Incoming incoming_;
    Outgoing outgoing_;
    LineAssembler fromServer_{LineAssembler::Beyond::Fails};
    LineAssembler fromEngine_{LineAssembler::Beyond::IsCutOff};
    std::size_t unfinished_ = 0;  // bytes since the last line end, with the plain profile
    bool tooLong_ = false;
    std::string converted_;  // a line from UTF-8
};

}  // namespace talvora
