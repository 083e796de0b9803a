#pragma once
// One connection of the gate: whole lines in, bytes out, both bounded. Owned by `Gate`.

#include <QSocketNotifier>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform_qt/Descriptor.h"

namespace talvora {

class GateReader {
  public:
    // `readable` is called from the loop while there is something to take, `broken` when a later write
    // failed.
    GateReader(Descriptor socket, std::int32_t id, std::function<void()> readable);

    std::int32_t ID() const { return id_; }
    // While it is handled the loop does not call `readable`.
    void setWorking(bool working);
    bool Working() const { return working_; }

    // The next line without its end; false if it has not arrived whole.
    bool takeLine(std::string& line);
    // Nothing has come from it so far.
    bool silent() const;
    // The line that has begun is longer than GateLineLimit.
    bool overlong() const;
    // The other side has ended, and there is no whole line left.
    bool ended() const { return ended_; }

    // Writes at once what the other side takes, and queues the rest. False if the connection is lost: more
    // than Gate::QueueLimit bytes would wait, or it is broken.
    bool send(std::string_view bytes);
    void close();
    bool closed() const { return closed_; }

  private:
    bool receive();
    std::size_t sendNow(std::string_view bytes);
    void drain();

    Descriptor socket_;
    std::int32_t id_;
    QSocketNotifier readable_;
    QSocketNotifier writable_;

    std::string received_;
    std::size_t start_ = 0;   // of the next line
    std::size_t looked_ = 0;  // up to here there is no line end
    std::string waiting_;
    std::size_t sent_ = 0;  // of what waits
    bool spoke_ = false;
    bool working_ = false;
    bool ended_ = false;
    bool deaf_ = false;
    bool closed_ = false;
};

}  // namespace talvora
