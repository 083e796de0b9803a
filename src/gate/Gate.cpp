#include "gate/Gate.h"

#include <QMetaObject>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

#include "gate/GateJson.h"
#include "gate/GateReader.h"
#include "gate/LocalSocket.h"
#include "gate/PrivateFolder.h"
#include "platform/Guard.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;

// What one connection may do in one turn of the loop, so that none starves the others.
constexpr int LinesATurn = 64;
// Lines of one turn are written together, but not more than this.
constexpr std::size_t WriteAtOnce = std::size_t{128} << 10;
// How long nobody is welcomed after the system had nothing left for another connection.
constexpr int PauseMs = 1000;

void makeFolder(const fs::path& folder) {
    if (fs::is_directory(folder)) return keepPrivate(folder.string());
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all);
}

// Nobody holds the lock, so a socket that is there is left over or another program's.
void clearTheWay(const std::string& path) {
    const auto kind = fs::symlink_status(path).type();
    if (kind == fs::file_type::not_found) return;
    if (kind != fs::file_type::socket) throw GateError(path + " is there and is no socket.");
    try {
        connectLocal(path);
    } catch (const std::system_error& error) {
        if (error.code().value() != ECONNREFUSED) throw;
        fs::remove(path);
        return;
    }
    throw GateError("Another program listens at " + path + ".");
}

}  // namespace

struct Gate::Listening {
    explicit Listening(const std::string& where)
        : path(where), socket(listenLocal(where)), notifier(socket.get(), QSocketNotifier::Read) {}
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;
    ~Listening() {
        std::error_code ignored;
        fs::remove(path, ignored);
    }

    std::string path;
    Descriptor socket;
    QSocketNotifier notifier;
};

// It connects when it is made: it hears first, and the event's own memory is the host's.
Gate::Gate(MessageDatabase& database)
    : database_(database),
      hearing_(database.MessageBroadcasted.connect([this](const HostMessage& m) { broadcasted(m); })) {}

Gate::~Gate() {
    Close();
}

void Gate::Open(const std::string& path) {
    Close();
    const std::string absolute = fs::absolute(path).string();
    try {
        makeFolder(fs::path(absolute).parent_path());
        if (!lock_.tryLock(absolute + ".lock")) {
            throw GateError("Another host is running and listens at " + absolute + ".");
        }
        clearTheWay(absolute);
        listening_ = std::make_unique<Listening>(absolute);
    } catch (const std::system_error& error) {
        lock_.unlock();
        throw GateError("The gate " + absolute + " cannot be opened: " + error.code().message() + ".");
    } catch (...) {
        lock_.unlock();
        throw;
    }
    QObject::connect(&listening_->notifier, &QSocketNotifier::activated, &context_, [this] { welcome(); });
}

void Gate::Close() {
    flush();
    readers_.clear();
    dead_.clear();
    listening_.reset();
    lock_.unlock();
}

void Gate::welcome() {
    flush();  // what was said before is not for the newcomers
    for (;;) {
        Descriptor socket = acceptLocal(listening_->socket);
        if (socket.get() < 0) break;
        const std::int32_t id = nextReader_;
        nextReader_ = id == std::numeric_limits<std::int32_t>::max() ? FirstReader : id + 1;
        auto reader = std::make_unique<GateReader>(std::move(socket), id, [this, id] { work(id); });
        makeRoom();
        if (readers_.size() < MostReaders) {
            readers_.push_back(std::move(reader));
        } else {
            reader->send("{\"error\":\"too many connections\"}\n");
        }
    }
    if (errno != EMFILE && errno != ENFILE) return;
    listening_->notifier.setEnabled(false);
    QTimer::singleShot(PauseMs, &listening_->notifier, [this] { listening_->notifier.setEnabled(true); });
}

void Gate::makeRoom() {
    if (readers_.size() < MostReaders) return;
    const auto silent = std::ranges::find_if(readers_, [](const auto& reader) { return reader->silent(); });
    if (silent == readers_.end()) return;
    (*silent)->send("{\"error\":\"the place went to another connection\"}\n");
    drop(**silent);
}

GateReader* Gate::find(std::int32_t id) const {
    const auto found =
        std::find_if(readers_.begin(), readers_.end(), [&](const auto& r) { return r->ID() == id; });
    return found == readers_.end() ? nullptr : found->get();
}

void Gate::drop(GateReader& reader) {
    reader.close();
    const auto found =
        std::find_if(readers_.begin(), readers_.end(), [&](const auto& r) { return r.get() == &reader; });
    if (found == readers_.end()) return;
    dead_.push_back(std::move(*found));
    readers_.erase(found);
    soon(&Gate::bury);
}

void Gate::bury() {
    std::erase_if(dead_, [](const auto& reader) { return !reader->Working(); });
}

void Gate::soon(void (Gate::*call)()) {
    QMetaObject::invokeMethod(
        &context_, [this, call] { (this->*call)(); }, Qt::QueuedConnection);
}

void Gate::broadcasted(const HostMessage& message) {
    if (readers_.empty()) return;
    if (queued_.empty()) soon(&Gate::flush);
    appendMessage(queued_, message);
    queued_ += '\n';
    if (queued_.size() > WriteAtOnce) flush();
}

void Gate::flush() {
    if (queued_.empty()) return;
    // Backwards: a reader that is dropped leaves the list.
    for (std::size_t i = readers_.size(); i > 0; --i) {
        if (!readers_[i - 1]->send(queued_)) drop(*readers_[i - 1]);
    }
    queued_.clear();
    if (queued_.capacity() > 2 * WriteAtOnce) queued_.shrink_to_fit();
}

void Gate::answer(GateReader& reader, std::string_view reason) {
    flush();
    std::string line;
    appendError(line, reason);
    line += '\n';
    if (!reader.send(line)) drop(reader);
}

// Handling a line may let the loop run. Meanwhile the connection's notifier is off, so its lines go one after
// the other.
void Gate::work(std::int32_t id) {
    GateReader* const reader = find(id);
    if (reader == nullptr || reader->Working()) return;
    reader->setWorking(true);
    workLines(*reader);
    if (!reader->closed() && reader->overlong()) answer(*reader, "line too long");
    if (!reader->closed() && (reader->overlong() || reader->ended())) {
        flush();  // one that has only said all it wanted to may still listen
        drop(*reader);
    }
    reader->setWorking(false);
    if (reader->closed()) soon(&Gate::bury);
}

void Gate::workLines(GateReader& reader) {
    std::string line;
    for (int lines = 0; lines < LinesATurn; ++lines) {
        if (reader.closed() || !reader.takeLine(line)) return;
        handle(reader, line);
    }
    QMetaObject::invokeMethod(
        &context_, [this, id = reader.ID()] { work(id); }, Qt::QueuedConnection);
}

void Gate::handle(GateReader& reader, std::string_view line) {
    GateLine read = readMessage(line);
    if (!read.Message) {
        answer(reader, read.Error);
        return;
    }
    read.Message->FromID = reader.ID();
    try {
        database_.Broadcast(*read.Message);
    } catch (...) {
        const RuntimeError fault = CurrentFault();
        answer(reader, "fault " + std::to_string(fault.Number) + ": " + fault.Description);
    }
}

}  // namespace talvora
