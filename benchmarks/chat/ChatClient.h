#pragma once
// One client as the host program puts it together, in this process: real loop, sockets, disk and settings,
// and a message database that somebody listens to. It needs a QCoreApplication, which outlives it.

#include <cstdint>
#include <memory>

#include "host/Connect.h"
#include "orrery/HostDatabase.h"
#include "platform/Files.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/QtPlatform.h"
#include "platform_qt/SqliteSettings.h"
#include "profile/NetworkProfile.h"
#include "simulation/programs/Folder.h"

namespace talvora::bench {

class ChatClient {
  public:
    explicit ChatClient(int port);

    // Begins to connect, and returns.
    void start();
    // The window of the channel that the server floods.
    frmChanChat& openWindow();
    // Host messages of channel text so far.
    std::uint64_t broadcasts() const { return broadcasts_; }

  private:
    programs::Folder folder_;
    SqliteSettings settings_;
    PosixDisk disk_;
    Files files_{disk_};
    QtPlatform platform_{files_, settings_};
    HostDatabase database_;
    NetworkProfile profile_;
    Connect component_;
    std::uint64_t broadcasts_ = 0;
    Subscription hearing_;
};

}  // namespace talvora::bench
