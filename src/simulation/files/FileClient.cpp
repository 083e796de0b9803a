#include "simulation/files/FileClient.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "common/HostMessageNumbers.h"
#include "platform/CodePage1253.h"
#include "platform/Text.h"

namespace talvora {

namespace {

void tell(const std::string& line) {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    std::printf("%lld.%06ld %s\n", static_cast<long long>(time.tv_sec), time.tv_nsec / 1000,
                toUtf8(line).c_str());
    std::fflush(stdout);
}

}  // namespace

FileClient::FileClient(const std::string& folder, const std::string& nick, const NetworkProfile& profile)
    : client_(folder, nick, profile) {
    watch();
    client_.Init();
}

void FileClient::watch() {
    on_ += desk().Receiver.Loaded.connect([this](frmReceiveFile& form) { watchReceiver(form); });
    on_ += desk().Dialog.Loaded.connect([this](frmSendFile& form) { watchDialog(form); });
    on_ += desk().Status.Loaded.connect([this](frmTransferStatus& form) { watchSender(form); });
    on_ += desk().History.Changed.connect([this] { tellHistory(); });
    on_ += client_.Database.MessageBroadcasted.connect([](const HostMessage& message) {
        if (message.MsgID == HostMsg::ServerNumeric) tell("numeric " + message.Data.at(0).text());
    });
}

void FileClient::watchReceiver(frmReceiveFile& form) {
    const auto tellTrouble = [](const std::string& trouble) {
        tell("receiver " + (trouble.empty() ? "listens" : trouble));
    };
    tellTrouble(form.Socket.Trouble);
    on_ += form.Socket.Trouble.Changed.connect(tellTrouble);
    on_ += form.Shown.connect([&form] { tell("asked " + form.Label6.Caption.get()); });
    on_ += form.Label4.Caption.Changed.connect([](const std::string& text) { tell("receiver " + text); });
    on_ += form.Visible.Changed.connect([](bool visible) {
        if (!visible) tell("receiver hidden");
    });
}

void FileClient::watchDialog(frmSendFile& form) {
    onDialog_ = {};
    onDialog_ += form.Text1.Text.Changed.connect([](const std::string& text) { tell("address " + text); });
}

void FileClient::watchSender(frmTransferStatus& form) {
    onSender_ = {};
    onSender_ += form.Label4.Caption.Changed.connect([](const std::string& text) { tell("sender " + text); });
    onSender_ += form.Unloaded.connect([] { tell("sender gone"); });
}

void FileClient::tellHistory() {
    const auto& files = desk().History.Files();
    if (files.empty() || files.size() == told_) return;
    told_ = files.size();
    const FinishedFile& file = files.front();
    tell((file.Received ? "received " : "sent ") + file.Name + ": " + file.Outcome);
}

void FileClient::Obey(const std::string& line) {
    const std::size_t blank = std::min(line.find(' '), line.size());
    const std::string order = line.substr(0, blank);
    const std::string what = blank < line.size() ? line.substr(blank + 1) : "";
    if (order == "block") client_.Settings.Save(Section::Settings, "PackageSplit", what);
    if (order == "offer") {
        std::vector<std::string> words = Split(what, "|");
        const std::string nick = words.front();
        words.erase(words.begin());
        desk().Offers().Offer(nick, words);
    }
    if (order == "send") send(what);
    if (order == "abort") pressSender(&frmTransferStatus::Command1);
    if (order == "retry") pressSender(&frmTransferStatus::Command2);
    if (order == "accept") desk().Receiver.Load().Command2.Click.raise();
    if (order == "refuse") desk().Receiver.Load().Command1.Click.raise();
}

void FileClient::send(const std::string& address) {
    frmSendFile* const dialog = desk().Dialog.Get();
    if (dialog == nullptr) return tell("there is no dialog");
    if (!address.empty()) dialog->Text1.Text = address;
    if (!dialog->Command4.Enabled) return tell("there is nothing to send");
    dialog->Command4.Click.raise();
}

void FileClient::pressSender(CommandButton frmTransferStatus::*button) {
    frmTransferStatus* const form = desk().Status.Get();
    if (form != nullptr && (form->*button).Enabled) (form->*button).Click.raise();
}

}  // namespace talvora
