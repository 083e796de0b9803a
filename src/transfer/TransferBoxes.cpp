#include "transfer/TransferSurroundings.h"

namespace talvora {

void TransferBoxes::SayCanceled() {
    Canceled.Ask({"File transfering canceled by remote user!", "File transfer", Buttons::Ok,
                  MessageIcon::Exclamation});
}

void TransferBoxes::SayLost() {
    Lost.Ask({"Disconnected from remote machine!", "Error", Buttons::Ok, MessageIcon::Critical});
}

void TransferBoxes::SaySilent() {
    Silent.Ask(
        {"Remote computer did not respond on messages! It might be unavailable, or your connection is "
         "too slow to send data!",
         "Error", Buttons::Ok, MessageIcon::Critical});
}

void TransferBoxes::SayFailed(const std::string& description) {
    Failed.Ask({"Error transfering file!\r\n" + description, "Error", Buttons::Ok, MessageIcon::Critical});
}

}  // namespace talvora
