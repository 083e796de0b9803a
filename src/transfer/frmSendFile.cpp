#include "transfer/frmSendFile.h"

#include <limits>
#include <utility>

#include "common/Trap.h"
#include "platform/CodePage1253.h"
#include "platform/Files.h"
#include "platform/Text.h"
#include "transfer/FormatBit.h"

namespace talvora {

namespace {

constexpr const char* Resolving = "(Resolving...)";
constexpr int ResolvingMs = 5000;
constexpr std::size_t MostAddresses = 21;
constexpr std::int64_t LargestFile = std::numeric_limits<std::int32_t>::max();

}  // namespace

std::string NameOfNative(const std::string& nativePath) {
    return fromUtf8(nativePath.substr(nativePath.rfind('/') + 1));
}

frmSendFile::frmSendFile(const TransferSurroundings& around, SendList sendList)
    : Timer1(around.ThePlatform, Ending, ResolvingMs), around_(around), sendList_(std::move(sendList)) {
    Caption = "Peer to peer file transfer";
    connectButtons();
    on_ += Text1.Text.Changed.connect([this](const std::string&) { lookAgain(); });
    on_ += List1.Click.connect([this] { lookAgain(); });
    on_ += Timer1.Tick.connect([this] { Timer1_Timer(); });
    Form_Load();
}

void frmSendFile::connectButtons() {
    on_ += Command1.Click.connect([this] { Command1_Click(); });
    on_ += Command2.Click.connect([this] { Command2_Click(); });
    on_ += Command3.Click.connect([this] { Command3_Click(); });
    on_ += Command4.Click.connect([this] { Command4_Click(); });
    on_ += Command5.Click.connect([this] {
        around_.Flags.gResolvingIP = false;
        Unload();
    });
}

void frmSendFile::Form_Load() {
    trapped(around_.Reporter, "Form_Load", [&](Trap& step) {
        FileList.clear();
        Text1.List.clear();
        const std::string list =
            step.value(std::string(), [&] { return around_.Settings.Get(Section::Storage, "SendList", ""); });
        for (std::string& address : Split(list, "|")) {
            if (address.empty() || Text1.List.size() == MostAddresses) break;
            Text1.List.push_back(std::move(address));
        }
    });
}

// What the list shows is what is sent: a dialog that is opened anew shows nothing of the last time.
void frmSendFile::SendData(const std::string& Host, const std::string& FilePath, bool SendNow, bool Resolve) {
    trapped(around_.Reporter, "SendData", [&](Trap&) {
        peer_ = Host;
        Text1.Text = Host;
        FileList.clear();
        List1.Clear();
        Command4.Enabled = false;
        if (!FilePath.empty()) add(FilePath);
        if (SendNow) {
            Command4_Click();
            Hide();
            return;
        }
        if (Resolve) {
            Timer1.Enabled = false;
            Text1.Text = Resolving;
            Text1.Enabled = false;
            around_.Flags.gResolvingIP = true;
        }
        Show();
    });
}

void frmSendFile::ResolveIP(const std::string& Address) {
    Text1.Enabled = true;
    Timer1.Enabled = false;
    Text1.Text = Address;
    around_.Flags.gResolvingIP = false;
}

void frmSendFile::Timer1_Timer() {
    Text1.Text = "";
    Text1.Enabled = true;
    Text1.SetFocus();
    Timer1.Enabled = false;
    around_.Flags.gResolvingIP = false;
}

void frmSendFile::lookAgain() {
    Command4.Enabled = !Text1.Text.get().empty() && List1.ListCount() > 0;
}

// ---- The files

void frmSendFile::add(const std::string& path) {
    if (!FileList.empty()) FileList += "|";
    FileList += path;
    List1.AddItem(NameOfNative(path));
    if (!Text1.Text.get().empty()) Command4.Enabled = true;
}

// Nothing asks whether the dialog was cancelled: what it held before is added then, perhaps nothing.
void frmSendFile::Command1_Click() {
    trapped(around_.Reporter, "Command1_Click", [&](Trap& step) {
        const OpenFileBox box{"Add", {{"All files", "*.*"}}, true};
        std::vector<std::string> chosen;
        step([&] { chosen = around_.ThePlatform.Asking.Ask(box); });
        if (IsUnloaded()) return;
        if (chosen.empty()) chosen.push_back(lastChosen_);
        lastChosen_ = chosen.back();
        addOrRefuse(chosen, false);
    });
}

void frmSendFile::AddFiles(const std::vector<std::string>& paths) {
    trapped(around_.Reporter, "AddFiles", [&](Trap&) { addOrRefuse(paths, true); });
}

// Why a file is not to be offered; empty if nothing speaks against it. A file that can't be opened may be one
// that can be when its turn comes, and is told of then.
std::string frmSendFile::whyNot(const std::string& path, bool mustBeFile) const {
    const std::string name = "\"" + ShownName(NameOfNative(path)) + "\"";
    if (path.find('|') != std::string::npos)
        return name + " has a | in its path; give it another name first.";
    try {
        const std::int64_t size = around_.ThePlatform.ProgramFiles.OpenPicked(path).Length();
        if (size > LargestFile)
            return name + " has " + FormatBit(static_cast<double>(size)) +
                   "; files of 2 Gb and more can't be sent.";
    } catch (const RuntimeError&) {
        if (mustBeFile) return name + " is no file that can be read.";
    }
    return {};
}

// However many are refused, it is said in one box.
void frmSendFile::addOrRefuse(const std::vector<std::string>& paths, bool mustBeFiles) {
    constexpr std::size_t mostTold = 8;
    std::vector<std::string> refused;
    for (const std::string& path : paths) {
        std::string why = whyNot(path, mustBeFiles);
        if (why.empty()) {
            add(path);
        } else {
            refused.push_back(std::move(why));
        }
    }
    if (refused.empty()) return;
    const std::size_t more = refused.size() - std::min(refused.size(), mostTold);
    refused.resize(refused.size() - more);
    if (more > 0) refused.push_back("And " + CStr(more) + " more.");
    MessageBox box{Join(refused, "\r\n"), "Send file", Buttons::Ok, MessageIcon::Information};
    around_.ThePlatform.Asking.Ask(box);
}

// The list box and the list are counted apart: after a cancelled dialog they may differ.
void frmSendFile::Command2_Click() {
    trapped(around_.Reporter, "Command2_Click", [&](Trap&) {
        const int index = List1.ListIndex;
        if (index < 0) return;
        std::vector<std::string> paths = Split(FileList, "|");
        if (static_cast<std::size_t>(index) < paths.size()) paths.erase(paths.begin() + index);
        FileList = Join(paths, "|");
        List1.RemoveItem(index);
    });
}

void frmSendFile::Command3_Click() {
    FileList.clear();
    Command4.Enabled = false;
    List1.Clear();
}

// ---- Send

void frmSendFile::Command4_Click() {
    trapped(around_.Reporter, "Command4_Click", [&](Trap& step) {
        const std::string entry = Text1.Text.get() + "|";
        step([&] {
            const std::string list = around_.Settings.Get(Section::Storage, "SendList", "");
            if (InStr(list, entry, Compare::Text) == 0)
                around_.Settings.Save(Section::Storage, "SendList", entry + list);
        });
        if (around_.Flags.gTransferBusy) {
            Show();
            MessageBox box{
                "You cannot send file(s) a this moment because another file transfer is in "
                "progress. Please send them later",
                "Send file", Buttons::Ok, MessageIcon::Information};
            step([&] { around_.ThePlatform.Asking.Ask(box); });
            return;
        }
        const std::string host = Text1.Text;
        step([&] { sendList_(FileList, host, peer_.empty() ? host : peer_); });
        around_.Flags.gResolvingIP = false;
        Unload();
    });
}

}  // namespace talvora
