#pragma once
// The gate: a local socket, readable by its owner alone, on which other programs of the user hear and send
// host messages, one JSON object a line (GateJson.h). Owned by the host program, which makes it before any
// plug-in listens, so that a message is seen here before those that it causes.
//
// Every message goes to every reader. A line that comes in is broadcast with the connection's own number,
// FirstReader or more, as FromID; what is wrong with a line is answered with {"error":"..."}. A line longer
// than GateLineLimit ends its connection, and so does a reader that falls more than QueueLimit bytes behind.
// When all MostReaders places are taken, the oldest connection that never said anything loses its place to
// the newcomer. Needs a QCoreApplication. No exception leaves it but from `Open`. It is not closed from
// inside a broadcast.

#include <QObject>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "common/HostMessages.h"
#include "gate/FileLock.h"

namespace talvora {

class GateReader;

// The gate cannot be opened; the text, in UTF-8, names the path and the reason.
class GateError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class Gate {
  public:
    static constexpr std::size_t QueueLimit = std::size_t{8} << 20;
    static constexpr std::size_t MostReaders = 32;
    static constexpr std::int32_t FirstReader = 1000;

    explicit Gate(MessageDatabase& database);
    ~Gate();
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    // Listens on the native path (UTF-8). The folder is created if it is missing, and a socket that a dead
    // process left is replaced. Throws GateError.
    void Open(const std::string& path);
    // Hands out what is queued as far as the readers take it at once, and removes the socket.
    void Close();
    std::size_t Readers() const { return readers_.size(); }

  private:
    struct Listening;

    void welcome();
    void makeRoom();
    GateReader* find(std::int32_t id) const;
    void drop(GateReader& reader);
    void bury();
    void soon(void (Gate::*call)());

    void broadcasted(const HostMessage& message);
    void flush();
    void answer(GateReader& reader, std::string_view reason);

    void work(std::int32_t id);
    void workLines(GateReader& reader);
    void handle(GateReader& reader, std::string_view line);

    MessageDatabase& database_;
    FileLock lock_;
    std::unique_ptr<Listening> listening_;
    std::vector<std::unique_ptr<GateReader>> readers_;
    std::vector<std::unique_ptr<GateReader>> dead_;  // until nothing on the stack is theirs
    std::int32_t nextReader_ = FirstReader;
    std::string queued_;  // lines of this turn, for all readers
    QObject context_;     // of calls that wait for the next turn
    Subscription hearing_;
};

}  // namespace talvora
