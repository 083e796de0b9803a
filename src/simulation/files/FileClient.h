#pragma once
// One whole client without a screen, on the real platform, whose file transfers are steered by lines and told
// of in lines: who has no mouse clicks "Accept" so. `main` owns it; it needs a QCoreApplication.
//
// Orders, one a line; what they take is parted by "|", since paths hold blanks:
//   block SIZE             the sender's setting `PackageSplit`
//   offer NICK|PATH|...    as from the user list: asks NICK for its address, and opens the dialog
//   send ADDRESS           "Send", to what stands in the dialog if there is no ADDRESS
//   abort, retry           the sender's buttons
//   accept, refuse         the receiver's
// Answers begin with the time in seconds: "asked ...", "address ...", "sender ...", "receiver ...",
// "sent NAME: outcome", "received NAME: outcome", and what the user would be told in boxes, without a time.

#include <memory>
#include <string>

#include "host/Connect.h"
#include "orrery/HostDatabase.h"
#include "platform/Files.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/QtPlatform.h"
#include "platform_qt/SqliteSettings.h"

namespace talvora {

class FileClient {
  public:
    // `folder` holds settings and data.
    FileClient(const std::string& folder, const std::string& nick, const NetworkProfile& profile);

    void Start();
    void Obey(const std::string& line);

  private:
    void watch();
    void watchReceiver(frmReceiveFile& form);
    void watchSender(frmTransferStatus& form);
    void watchDialog(frmSendFile& form);
    void tellHistory();
    void send(const std::string& address);
    void pressSender(CommandButton frmTransferStatus::*button);

    SqliteSettings settings_;
    PosixDisk disk_;
    Files files_{disk_};
    QtPlatform platform_{files_, settings_};
    HostDatabase database_;
    NetworkProfile profile_;
    Connect component_;
    Subscriptions on_;
    Subscriptions onSender_;
    Subscriptions onDialog_;
    std::size_t told_ = 0;  // entries of the history
};

}  // namespace talvora
