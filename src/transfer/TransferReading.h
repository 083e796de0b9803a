#pragma once
// How both sides handle `DataArrival`: the chunk goes into the stream, a chunk with a delimiter winds up the
// watchdog, and the messages are acted on one by one. Inside src/transfer only.

#include <string>
#include <string_view>
#include <utility>

#include "common/Trap.h"
#include "platform/Timer.h"
#include "platform/Winsock.h"
#include "transfer/TransferStream.h"

namespace talvora {

// Letting other events in lets them in again; behind a few of them nobody does any more. The sockets have the
// loop for some milliseconds only, between which all others have it: to let them in inside of a block as well
// is worth its cost a thousand times a second, and behind some messages that came at once, since the loop's
// clock stands while they are handled.
class BoundedYield {
  public:
    void operator()(Loop& loop) {
        constexpr int deepest = 8;
        constexpr Microseconds betweenTwo = 1000;
        constexpr int most = 64;
        if (depth_ >= deepest || (++passed_ < most && loop.Now() - last_ < betweenTwo)) return;
        passed_ = 0;
        last_ = loop.Now();
        ++depth_;
        loop.Yield();
        --depth_;
    }

  private:
    int depth_ = 0;
    int passed_ = 0;  // messages behind which nobody was let in
    Microseconds last_ = 0;
};

// Faults that the other side's messages cause: the first one goes to the reporter, and while they go on, no
// other does. True if the statement ran to its end.
class TellOnce {
  public:
    template <class Statement>
    bool operator()(Trap& step, Statement&& statement) {
        if (told_) return quietly(statement);
        told_ = true;  // also if the answer leaves the procedure
        if (!step(statement)) return false;
        told_ = false;
        return true;
    }
    void Renew() { told_ = false; }

  private:
    template <class Statement>
    static bool quietly(Statement& statement) {
        try {
            statement();
            return true;
        } catch (const RuntimeError&) {
            return false;
        }
    }

    bool told_ = false;
};

class TransferReading {
  public:
    // A new connection begins. What the last one has left unread stays, and is read as its beginning.
    void Connected() { torn_.Renew(); }
    void Clear() { stream_.Clear(); }

    // `act(type, parameter)` says whether to read on; it may end the connection, whose rest nobody reads.
    // `tooMuch()` is called instead if there is no end in sight.
    template <class Act, class TooMuch>
    void DataArrival(Trap& step, Winsock& socket, Timer& watchdog, Act&& act, TooMuch&& tooMuch) {
        const auto fed = stream_.Feed([&](std::string& to) { socket.GetData(to); });
        if (fed == TransferStream::Fed::Waits) return;
        if (fed == TransferStream::Fed::TooMuch) {
            stream_.Clear();
            return tooMuch();
        }
        watchdog.Restart();
        std::string message = std::exchange(spare_, {});
        while (socket.State() == SocketState::Connected && next(step, message)) {
            // A message without a letter is of no type.
            if (message.empty()) continue;
            if (!act(message.front(), std::string_view(message).substr(1))) return;
        }
        constexpr std::size_t mostKept = std::size_t{64} << 10;  // what a stranger makes longer is not kept
        if (message.capacity() <= mostKept) spare_ = std::move(message);
    }

  private:
    // A message whose end is still under way is a fault.
    bool next(Trap& step, std::string& message) {
        return !stream_.IsEmpty() && torn_(step, [&] { stream_.Next(message); });
    }

    TransferStream stream_;
    std::string spare_;  // room for the next message
    TellOnce torn_;
};

}  // namespace talvora
