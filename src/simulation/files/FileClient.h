#pragma once
// A whole client whose file transfers are steered by lines and told of in lines: who has no mouse clicks
// "Accept" so. `main` owns it; it needs a QCoreApplication.
//
// Orders, one a line; what they take is parted by "|", since paths hold blanks:
//   block SIZE             the sender's setting `PackageSplit`
//   offer NICK|PATH|...    as from the user list: asks NICK for its address, and opens the dialog
//   send ADDRESS           "Send", to what stands in the dialog if there is no ADDRESS
//   abort, retry           the sender's buttons
//   accept, refuse         the receiver's
// Answers begin with the time in seconds: "asked ...", "address ...", "sender ...", "receiver ...",
// "sent NAME: outcome", "received NAME: outcome", and what the user would be told in boxes, without a time.

#include <string>

#include "simulation/files/WholeClient.h"

namespace talvora {

class FileClient {
  public:
    // `folder` holds settings and data.
    FileClient(const std::string& folder, const std::string& nick, const NetworkProfile& profile);

    void Start() { client_.Start(); }
    void Obey(const std::string& line);

  private:
    void watch();
    void watchReceiver(frmReceiveFile& form);
    void watchSender(frmTransferStatus& form);
    void watchDialog(frmSendFile& form);
    void tellHistory();
    void send(const std::string& address);
    void pressSender(CommandButton frmTransferStatus::*button);

    TransferDesk& desk() { return client_.Component.Transfers(); }

    WholeClient client_;
    Subscriptions on_;
    Subscriptions onSender_;
    Subscriptions onDialog_;
    std::size_t told_ = 0;  // entries of the history
};

}  // namespace talvora
