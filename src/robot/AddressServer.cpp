#include "robot/AddressServer.h"

#include <utility>

namespace talvora {

namespace {

constexpr int AgainMs = 30'000;

}  // namespace

AddressServer::AddressServer(Platform& platform, const std::string& address, int port, RobotLog log)
    : platform_(platform),
      log_(std::move(log)),
      listening_(platform.Guarded, platform.Sockets.CreateSocket({})),
      tmrAgain_(platform, AgainMs) {
    listening_.LocalAddress = address;
    listening_.LocalPort = port;
    on_ += listening_.ConnectionRequest.connect([this] { answer(); });
    on_ += listening_.Error.connect([this](int, const std::string& description) {
        log_(LogSubject::Session, "the address server has stopped: " + description);
        tmrAgain_.Enabled = true;
    });
    on_ += tmrAgain_.Tick.connect([this] { listen(); });
}

void AddressServer::Start() {
    if (listening_.LocalPort > 0) listen();
}

void AddressServer::Stop() {
    tmrAgain_.Enabled = false;
    listening_.Close();
}

void AddressServer::listen() {
    try {
        listening_.Close();
        listening_.Listen();
        tmrAgain_.Enabled = false;
    } catch (const RuntimeError& fault) {
        if (!tmrAgain_.Enabled)
            log_(LogSubject::Session, "the address server cannot listen: " + fault.Description);
        tmrAgain_.Enabled = true;
    }
}

// One that is gone before it is answered is its own loss.
void AddressServer::answer() {
    Winsock peer(platform_.Guarded, platform_.Sockets.CreateSocket({}));
    try {
        peer.Accept(listening_);
        peer.SendData(peer.RemoteHost);
    } catch (const RuntimeError&) {
        return;
    }
    peer.Close();
}

}  // namespace talvora
