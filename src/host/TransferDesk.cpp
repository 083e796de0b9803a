#include "host/TransferDesk.h"

#include <memory>

namespace talvora {

TransferDesk::TransferDesk(Platform& platform, GlobError& globError, ComponentSettings& settings,
                           HostGate& gate, const NetworkProfile& profile)
    : Boxes(platform),
      Around{platform,
             globError,
             settings,
             gate,
             Flags,
             Boxes,
             History,
             [this] { return form1_ != nullptr ? form1_->State.gNickname() : std::string(); },
             [&profile] { return profile.ReceiveAddress; }},
      Receiver(platform, [this] { return std::make_unique<frmReceiveFile>(Around); }),
      Dialog(platform,
             [this] {
                 return std::make_unique<frmSendFile>(
                     Around, [this](const std::string& files, const std::string& host,
                                    const std::string& peer) { sendList(files, host, peer); });
             }),
      Status(platform, [this] { return std::make_unique<frmTransferStatus>(Around); }),
      Transfers(platform, [this] { return std::make_unique<frmTransfers>(Around); }) {}

void TransferDesk::Listen() {
    frmReceiveFile& form = Receiver.Load();
    trouble_ = form.Socket.Trouble.Changed.connect([this](const std::string&) { tellTrouble(); });
    tellTrouble();
}

void TransferDesk::tellTrouble() {
    const frmReceiveFile* form = Receiver.Get();
    if (form1_ != nullptr) form1_->Trouble.TellReceiver(form != nullptr ? form->Socket.Trouble.get() : "");
}

void TransferDesk::Attach(Form1* window) {
    form1_ = window;
    if (window == nullptr) return;
    transfersMenu_ = window->mnuTransfers.Click.connect([this] { Transfers.Load().Show(); });
    tellTrouble();
}

void TransferDesk::JoinTo(Handovers& to) {
    to.Resolver = static_cast<AddressResolver&>(*this);
    to.Files = Offers();
}

Form& TransferDesk::WindowOfNotice() {
    frmReceiveFile* receiver = Receiver.Get();
    if (receiver != nullptr && receiver->Visible) return *receiver;
    return Transfers.Load();
}

void TransferDesk::LoadSettings() {
    if (frmReceiveFile* form = Receiver.Get()) form->RefreshSettings();
}

void TransferDesk::UnloadAll(Trap& step) {
    const auto unload = [&](Form* form) {
        if (form != nullptr) step([&] { form->Unload(); });
    };
    unload(Receiver.Get());
    unload(Dialog.Get());
    unload(Status.Get());
    unload(Transfers.Get());
    Flags = {};
}

void TransferDesk::ResolveIP(const std::string& address) {
    if (frmSendFile* dialog = Dialog.Get()) dialog->ResolveIP(address);
}

void TransferDesk::SendData(const std::string& host, const std::string& filePath, bool sendNow,
                            bool resolve) {
    Dialog.Load().SendData(host, filePath, sendNow, resolve);
}

void TransferDesk::Offer(const std::string& nick, const std::vector<std::string>& paths) {
    if (!nick.empty() && form1_ != nullptr) form1_->Out.SendPM(nick, "WIP", true);
    SendData(nick, "", false, !nick.empty());
    if (frmSendFile* dialog = Dialog.Get()) dialog->AddFiles(paths);
}

void TransferDesk::sendList(const std::string& files, const std::string& host, const std::string& peer) {
    if (frmTransferStatus* old = Status.Get()) old->Unload();
    frmTransferStatus& form = Status.Load();
    form.Peer = peer;
    form.SendList(files, host);
}

}  // namespace talvora
