#pragma once
// File transfers put together: the receiver that listens, the dialog and the window of the sender, the
// history of both. The main window comes and goes; this stays for the component's life.

#include "chat/FileOffers.h"
#include "platform/SingleForm.h"
#include "profile/NetworkProfile.h"
#include "session/Form1.h"
#include "transfer/frmReceiveFile.h"
#include "transfer/frmSendFile.h"
#include "transfer/frmTransferStatus.h"
#include "transfer/frmTransfers.h"

namespace talvora {

class TransferDesk final : private AddressResolver, private FileOffers {
  public:
    TransferDesk(Platform& platform, GlobError& globError, ComponentSettings& settings, HostGate& gate,
                 const NetworkProfile& profile);

    // The file receiver listens from now on; doing it again does nothing.
    void Listen();
    // The main window that the transfers speak through; null while there is none.
    void Attach(Form1* window);
    void JoinTo(Handovers& to);
    FileOffers& Offers() { return *this; }
    // What a notice of files leads to: the question or the files under way, else what has become of them.
    Form& WindowOfNotice();
    // The profile may have changed.
    void LoadSettings();
    void UnloadAll(Trap& step);

    TransferFlags Flags;
    TransferHistory History;
    TransferBoxes Boxes;
    TransferSurroundings Around;
    SingleForm<frmReceiveFile> Receiver;
    SingleForm<frmSendFile> Dialog;
    SingleForm<frmTransferStatus> Status;
    SingleForm<frmTransfers> Transfers;

  private:
    bool IsResolving() const override { return Flags.gResolvingIP; }
    void ResolveIP(const std::string& address) override;
    void SendData(const std::string& host, const std::string& filePath, bool sendNow, bool resolve) override;
    void Offer(const std::string& nick, const std::vector<std::string>& paths) override;
    void sendList(const std::string& files, const std::string& host, const std::string& peer);
    void tellTrouble();

    Form1* form1_ = nullptr;
    Subscription transfersMenu_;  // of that window
    Subscription trouble_;        // of the receiver
};

}  // namespace talvora
