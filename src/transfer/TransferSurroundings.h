#pragma once
// What the forms of the file transfer live on. All of it outlives them.

#include <functional>
#include <string>

#include "common/ComponentSettings.h"
#include "common/GlobError.h"
#include "common/HostGate.h"
#include "common/SingleBox.h"
#include "platform/Platform.h"
#include "transfer/TransferHistory.h"

namespace talvora {

// Where a receiver listens.
inline constexpr int TransferPort = 37182;

// Two values of the whole component.
struct TransferFlags {
    bool gTransferBusy = false;  // a file is being sent, or is to be: one transfer at a time
    bool gResolvingIP = false;   // the dialog waits for the receiver's address
};

// The boxes that the other side can cause: one of a kind stands, the rest are counted in it.
struct TransferBoxes {
    explicit TransferBoxes(Platform& platform)
        : Canceled(platform), Lost(platform), Silent(platform), Failed(platform) {}
    SingleBox Canceled;
    SingleBox Lost;
    SingleBox Silent;
    SingleBox Failed;

    void SayCanceled();
    void SayLost();
    void SaySilent();
    void SayFailed(const std::string& description);
};

struct TransferSurroundings {
    Platform& ThePlatform;
    GlobError& Reporter;
    ComponentSettings& Settings;
    HostGate& Gate;
    TransferFlags& Flags;
    TransferBoxes& Boxes;
    TransferHistory& History;
    std::function<std::string()> Nickname;        // the user's bare nick
    std::function<std::string()> ReceiveAddress;  // on which to listen; empty for all
};

}  // namespace talvora
