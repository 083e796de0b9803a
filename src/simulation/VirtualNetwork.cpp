#include "simulation/VirtualNetwork.h"

#include <algorithm>

namespace talvora::test {

void ScriptedServer::sends(const std::string& bytes) {
    if (client_ != nullptr && !deaf) client_->arrive(bytes);
}

std::size_t ScriptedServer::untaken() const {
    return client_ == nullptr ? 0 : client_->inbox_.size();
}

void ScriptedServer::closes() {
    if (auto* client = std::exchange(client_, nullptr)) client->peerCloses();
}

void ScriptedServer::resets() {
    if (auto* client = std::exchange(client_, nullptr)) {
        client->fail(SocketErrors::ConnectionReset, "The connection was reset by the other side");
    }
}

std::vector<std::string> ScriptedServer::heard() {
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end; (end = unread_.find("\r\n", begin)) != std::string::npos; begin = end + 2) {
        lines.push_back(unread_.substr(begin, end - begin));
    }
    unread_.erase(0, begin);
    return lines;
}

template <class Call>
void VirtualSocket::later(Call call) {
    const std::weak_ptr<bool> life = life_;
    network_.time_.at(network_.time_.Now() + network_.delay, [life, call] {
        if (!life.expired()) call();
    });
}

void VirtualSocket::connect(const std::string& host, int port) {
    remoteHost_ = host;
    remotePort_ = port;
    const auto server = network_.servers_.find({host, port});
    if (server != network_.servers_.end() && server->second->mood != ScriptedServer::Mood::Refuses) {
        if (server->second->mood == ScriptedServer::Mood::Accepts) reach(*server->second);
        return;
    }
    if (server == network_.servers_.end() && network_.listenerAt(host, port) != nullptr) {
        reachListener();
        return;
    }
    fail(SocketErrors::ConnectionRefused, "Connection is forcefully rejected");
}

void VirtualSocket::reach(ScriptedServer& server) {
    later([this, &server] {
        server_ = &server;
        server.client_ = this;
        ++server.connections;
        server.unread_.clear();
        becomeConnected();
    });
}

void VirtualSocket::reachListener() {
    later([this] {
        VirtualSocket* const listening = network_.listenerAt(remoteHost_, remotePort_);
        if (listening == nullptr)
            return fail(SocketErrors::ConnectionRefused, "Connection is forcefully rejected");
        listening->waiting_.push_back(this);
        waitsAt_ = listening;
        if (listening->listener_ != nullptr) listening->listener_->onRequest();
    });
}

void VirtualSocket::leaveQueue() {
    if (auto* listening = std::exchange(waitsAt_, nullptr)) std::erase(listening->waiting_, this);
    for (VirtualSocket* knocking : std::exchange(waiting_, {})) {
        knocking->waitsAt_ = nullptr;
        knocking->fail(SocketErrors::ConnectionReset, "The connection was reset by the other side");
    }
}

void VirtualSocket::becomeConnected() {
    connected_ = true;
    if (listener_ != nullptr) listener_->onConnected();
}

void VirtualSocket::listen(const std::string& address, int port) {
    if (port == 0) port = network_.nextPort_++;
    if (!network_.listening_.emplace(std::pair(port, address), this).second) {
        throw RuntimeError(SocketErrors::AddressInUse, "Address in use", "Winsock");
    }
    localAddress_ = address;
    localPort_ = port;
}

void VirtualSocket::accept(SocketDriver& listening) {
    auto& waiting = dynamic_cast<VirtualSocket&>(listening).waiting_;
    if (waiting.empty()) throw RuntimeError(SocketErrors::NotConnected, "No connection waits", "Winsock");
    peer_ = waiting.front();
    waiting.erase(waiting.begin());
    peer_->waitsAt_ = nullptr;
    peer_->peer_ = this;
    connected_ = true;
    remoteHost_ = "127.0.0.1";
    remotePort_ = peer_->localPort_ = network_.nextPort_++;
    peer_->later([peer = peer_] { peer->becomeConnected(); });
}

void VirtualSocket::close() {
    life_ = std::make_shared<bool>(true);
    if (auto* server = std::exchange(server_, nullptr)) {
        if (server->client_ == this) server->client_ = nullptr;
    }
    if (auto* peer = std::exchange(peer_, nullptr)) {
        peer->peer_ = nullptr;
        peer->peerCloses();
    }
    leaveQueue();
    if (localPort_ != 0) network_.listening_.erase({std::exchange(localPort_, 0), localAddress_});
    inbox_.clear();
    lump_.clear();
    peerClosed_ = false;
    connected_ = false;
}

void VirtualSocket::send(std::string_view bytes) {
    if (peer_ != nullptr) peer_->arrive(std::string(bytes));
    ScriptedServer* const server = server_;
    if (server == nullptr || server->deaf) return;
    server->unread_.append(bytes);
    server->transcript.append(bytes);
    if (server->whenHeard) server->whenHeard();
}

void VirtualSocket::take(std::string& to) {
    to += std::exchange(inbox_, {});
    if (peerClosed_) later([this] { closedIfEmpty(); });
}

void VirtualSocket::arrive(const std::string& bytes) {
    if (network_.cut == Cut::OneLump) {
        lump_ += bytes;
        later([this] { receive(std::exchange(lump_, {})); });
        return;
    }
    std::size_t at = 0;
    while (at < bytes.size()) {
        std::size_t size = bytes.size();
        if (network_.cut == Cut::SingleBytes) size = 1;
        if (network_.cut == Cut::Random) size = 1 + network_.random_() % 40;
        later([this, piece = bytes.substr(at, size)] { receive(piece); });
        at += std::min(size, bytes.size() - at);
    }
}

void VirtualSocket::receive(const std::string& bytes) {
    if (bytes.empty()) return;
    inbox_ += bytes;
    if (listener_ != nullptr) listener_->onData();
}

void VirtualSocket::peerCloses() {
    server_ = nullptr;
    later([this] {
        peerClosed_ = true;
        closedIfEmpty();
    });
}

void VirtualSocket::closedIfEmpty() {
    if (!peerClosed_ || !inbox_.empty()) return;
    peerClosed_ = false;
    if (listener_ != nullptr) listener_->onClosed();
}

void VirtualSocket::fail(int number, const std::string& description) {
    server_ = nullptr;
    later([this, number, description] {
        if (listener_ != nullptr) listener_->onError(number, description);
    });
}

std::unique_ptr<SocketDriver> VirtualNetwork::CreateSocket(const Security&) {
    return std::make_unique<VirtualSocket>(*this);
}

VirtualSocket* VirtualNetwork::listenerAt(const std::string& host, int port) const {
    auto found = listening_.find({port, host});
    if (found == listening_.end()) found = listening_.find({port, ""});
    return found == listening_.end() ? nullptr : found->second;
}

ScriptedServer& VirtualNetwork::server(const std::string& host, int port) {
    auto& server = servers_[{host, port}];
    if (server == nullptr) server = std::make_unique<ScriptedServer>();
    return *server;
}

}  // namespace talvora::test
