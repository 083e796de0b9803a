#pragma once
// One client as the host program puts it together, without a screen: real loop, sockets, disk and settings,
// and a message database that somebody listens to. It needs a QCoreApplication, which outlives it.

#include <string>

#include "host/Connect.h"
#include "orrery/HostDatabase.h"
#include "platform/Files.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/QtPlatform.h"
#include "platform_qt/SqliteSettings.h"

namespace talvora {

class WholeClient {
    SqliteSettings store_;

  public:
    // `folder` holds the settings and the data, where the program's own tables are laid out if there are
    // none.
    WholeClient(const std::string& folder, const std::string& nick, const NetworkProfile& profile);

    // To be called once whoever listens has connected.
    void Init();
    // Begins to connect, and returns.
    void Start();

    ComponentSettings Settings{store_};
    HostDatabase Database;

  private:
    PosixDisk disk_;
    Files files_{disk_};
    QtPlatform platform_{files_, store_};
    NetworkProfile profile_;

  public:
    Connect Component;
};

}  // namespace talvora
