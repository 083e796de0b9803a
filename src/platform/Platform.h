#pragma once
// All that a component needs from outside, given to it in one piece. A platform outlives its component and
// belongs to it alone: two components in one process have two platforms, perhaps on one loop.

#include <memory>

#include "platform/Clock.h"
#include "platform/Guard.h"
#include "platform/Loop.h"
#include "platform/Questions.h"
#include "platform/SettingsStore.h"
#include "platform/Winsock.h"

namespace talvora {

class Files;

// Makes sockets.
class Network {
  public:
    // How a connection is to be secured.
    struct Security {
        bool TLS = false;
        std::string CAFile;  // native path of further trusted certificates; empty for the system's alone
    };

    virtual ~Network() = default;
    virtual std::unique_ptr<SocketDriver> CreateSocket(const Security& security) = 0;
};

// What the desktop tells about itself.
class Desktop {
  public:
    virtual ~Desktop() = default;
    // In twips, 1440 to the inch.
    virtual int ScreenWidth() const = 0;
    virtual int ScreenHeight() const = 0;
};

struct Platform {
    Loop& TheLoop;
    Network& Sockets;
    Clock& WallClock;
    Questions& Asking;
    Files& ProgramFiles;
    SettingsStore& Settings;
    Desktop& Screen;
    Guard Guarded{};
};

}  // namespace talvora
