#include "chat/frmPM.h"

#include "chat/modWinManager.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr auto PMSection = Section::PMSettings;
constexpr char CommandPrefix = '\\';

}  // namespace

frmPM::frmPM(ChatSurroundings& around, modWinManager& manager)
    : ChatWindow(around),
      Commands(around.Commands, around.Commands.PrivateMenu, *this,
               [this] {
                   return CommandMenu::Target{UserName, UserName};
               }),
      manager_(manager) {
    mnuPopup.Caption = "Popup messages when closed";
    mnuNoFocus.Caption = "Do not take focus";
    mnuTimeStamp.Caption = "Timestamp";
    mnuStopPM.Caption = "&Stop Private chat";
    mnuHide.Caption = "&Hide";
    mnuSendFile.Caption = "Send a file";
    mnuSendFile.Visible = around.Files != nullptr;
    keepCheck(mnuPopup, PMSection, "Popup_");
    // Written under one key and read under another: each new window starts with the check set.
    keepCheck(mnuNoFocus, PMSection, "NoFocus_");
    keepCheck(mnuTimeStamp, PMSection, "TimeStamp_");
    on_ += mnuStopPM.Click.connect([this] { stop(); });
    // Nobody is asked for the address here: it comes by a late answer, or the user gives up.
    on_ += mnuSendFile.Click.connect([this] {
        if (around_.Files != nullptr) around_.Files->SendData(std::string(UserName), "", false, true);
    });
}

void frmPM::Form_Load() {
    Slots.InstallAll(around_.Plugins.PrivatePlugins());
}

// ---- Start and end

void frmPM::Start(const std::string& nick) {
    trapped(around_.Reporter, "Start", [&](Trap& step) {
        UserName = ProperCase(nick);
        Caption = "Private chat with " + UserName;
        showNote("*** You are now talking in private with user " + UserName + " ***");
        if (!offerName(nick)) return;
        WinIndex = manager_.RegisterPM(*this);
        if (WinIndex < 0) {
            Unload();
            return;
        }
        Show();
        step([&] { loadSettings(); });
    });
}

void frmPM::loadSettings() {
    loadCheck(mnuPopup, PMSection, "Popup_", true);
    loadCheck(mnuNoFocus, PMSection, "Focus_", true);
    loadCheck(mnuTimeStamp, PMSection, "Timestamp_", true);
}

void frmPM::stop() {
    if (IsUnloaded()) return;  // its slot is another window's now
    trapped(around_.Reporter, "mnuStopPM_Click", [&](Trap&) {
        manager_.UnregisterPM(WinIndex);
        Unload();
    });
}

bool frmPM::isOnTable() const {
    return manager_.Table().Holds(*this);
}

void frmPM::Form_QueryUnload(bool& cancel, CloseReason reason) {
    if (reason != CloseReason::UserClosesBox) return;
    if (around_.gHideInactive && !isOnTable()) return;
    cancel = true;
    if (around_.gHideInactive) {
        Hide();
        return;
    }
    // The question stands already.
    if (asksToClose_) return;
    MessageBox box{"This action will terminate your Personal Conversation. Do you want to minimize instead?",
                   "Close", Buttons::YesNoCancel, MessageIcon::Question};
    asksToClose_ = true;
    const Answer answer = around_.ThePlatform.Asking.Ask(box);
    asksToClose_ = false;
    if (IsUnloaded()) return;
    if (answer == Answer::Yes) WindowState = FormState::Minimized;
    if (answer != Answer::No) return;
    manager_.UnregisterPM(WinIndex);
    cancel = false;
}

// ---- What arrives

void frmPM::PMArrived(const std::string& text, const std::string& command) {
    trapped(around_.Reporter, "PMArrived", [&](Trap&) {
        std::string line = incomingLine(text, command);
        if (!Broadcast(line, -1)) return;
        // A copy: the peer may be renamed while the line is shown.
        if (isShown(command)) DisplayIRCCommand(line, std::string(UserName));
        noteNews();
    });
}

void frmPM::DisplayIRCCommand(const std::string& data, const std::string& nick) {
    trapped(around_.Reporter, "DisplayIRCCommand", [&](Trap&) {
        const std::string payload(payloadOf(data));
        if (payload.empty()) return;
        const ChatColors& colors = around_.Colors;
        showSaid(nick, payload, colors.ChatForeColor, colors.ChatBackColor, colors.ActionForeColor,
                 colors.ActionBackColor);
        arrived(withoutActionMark(payload));
    });
}

void frmPM::arrived(const std::string& text) {
    LastText = text;
    noteNews();
    if (!HasFocus) tellHost(NoticeKind::PrivateText, UserName, UserName + ": " + LastText);
    if (!mnuNoFocus.Checked) takeForeground();
}

void frmPM::ShowPluginLine(const std::string& text) {
    trapped(around_.Reporter, "plugins_DataBroadcast", [&](Trap&) {
        IRCWin1.AddIRCLine(text, around_.Colors.PluginForeColor, around_.Colors.PluginBackColor);
        arrived(text);
    });
}

// A text that begins with "\" is a script command: it is neither shown nor sent.
std::vector<std::string> frmPM::CommandsLike(const std::string& typed) const {
    std::vector<std::string> commands;
    if (!typed.starts_with(CommandPrefix) || typed.find(' ') != std::string::npos) return commands;
    for (const std::string& name : around_.Commands.NamesLike(typed.substr(1)))
        commands.push_back(CommandPrefix + name);
    return commands;
}

void frmPM::SendData(const std::string& data) {
    trapped(around_.Reporter, "SendData", [&](Trap& step) {
        if (data.starts_with(CommandPrefix)) {
            around_.Commands.RunScriptCommand(data.substr(1), std::string(UserName), *this);
        } else {
            sendOn(step, std::string(UserName), data);
        }
    });
}

// ---- The peer

bool frmPM::offerName(const std::string& nick) {
    std::string line = "CON|" + nick;
    return Broadcast(line, -1);
}

void frmPM::Rename(const std::string& newNick) {
    trapped(around_.Reporter, "Rename", [&](Trap&) {
        const std::string name = ProperCase(newNick);
        showNote("*** User " + UserName + " changed to " + name + " ***");
        noteNews();
        UserName = name;
        Caption = "Private chat with " + UserName;
        // The list of windows has the old name, whether there is news or not.
        around_.Session.RefreshWindows();
        offerName(newNick);
    });
}

void frmPM::UserQuit() {
    trapped(around_.Reporter, "UserQuit", [&](Trap&) {
        showNote("*** User " + UserName + " has quit IRC!", 4);
        noteNews();
        std::string line = "QIT";
        Broadcast(line, -1);
        UserGone = true;
    });
}

void frmPM::UserEnter() {
    trapped(around_.Reporter, "UserEnter", [&](Trap&) {
        showNote("*** User " + UserName + " has entered again IRC!");
        noteNews();
        offerName(UserName);
        UserGone = false;
    });
}

void frmPM::OfferFiles(const std::vector<std::string>& paths) {
    if (around_.Files != nullptr) around_.Files->Offer(std::string(UserName), paths);
}

void frmPM::unNotice() {
    if (!HasNews) return;
    HasNews = false;
    around_.Session.RefreshWindows();
}

}  // namespace talvora
