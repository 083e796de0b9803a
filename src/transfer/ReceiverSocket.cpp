#include "transfer/ReceiverSocket.h"

#include <utility>

#include "platform/Text.h"
#include "transfer/TransferSurroundings.h"

namespace talvora {

ReceiverSocket::ReceiverSocket(Guard& guard, Network& network, std::function<std::string()> address)
    : Winsock1(guard, network.CreateSocket({})),
      address_(std::move(address)),
      door_(guard, network.CreateSocket({})) {
    Winsock1.AnswerAtOnce();
    on_ = door_.ConnectionRequest.connect([this] { ConnectionRequest.raise(); });
}

SocketState ReceiverSocket::State() const {
    return Winsock1.State() != SocketState::Closed ? Winsock1.State() : door_.State();
}

void ReceiverSocket::Close() {
    Winsock1.Close();
    door_.Close();
}

void ReceiverSocket::Listen() {
    Close();
    door_.LocalAddress = address_();
    door_.LocalPort = TransferPort;
    try {
        door_.Listen();
        Trouble = "";
    } catch (const RuntimeError& fault) {
        const bool taken = fault.Number == SocketErrors::AddressInUse;
        Trouble =
            "Nobody can send you files: port " + CStr(TransferPort) +
            (taken ? " is taken by another program" : " can't be listened on (" + fault.Description + ")") +
            "; trying again";
    }
}

bool ReceiverSocket::Accept() {
    Winsock1.Close();
    try {
        Winsock1.Accept(door_);
    } catch (const RuntimeError&) {
        return false;
    }
    door_.Close();
    return true;
}

bool ReceiverSocket::IsMisplaced() const {
    return door_.State() == SocketState::Listening && door_.LocalAddress != address_();
}

}  // namespace talvora
