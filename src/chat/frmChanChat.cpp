#include "chat/frmChanChat.h"

#include "chat/modChanWinManager.h"
#include "platform/Text.h"

namespace talvora {

frmChanChat::frmChanChat(ChatSurroundings& around, modChanWinManager& manager)
    : ChatWindow(around),
      Commands(around.Commands, around.Commands.ChannelMenu, *this,
               [this] {
                   return CommandMenu::Target{SelectedNick, SelectedNick + " " + ChannelName};
               }),
      UserList1(around.ThePlatform, around.Reporter, around.Nicks),
      Timer1(around.ThePlatform, Ending, 1000),
      manager_(manager) {
    mnuChkshow.Caption = "Show form on incoming messages";
    mnuChkBeep.Caption = "Beep on incoming messages";
    mnuChkFlash.Caption = "Flash on incoming messages";
    mnuNoFocus.Caption = "Do not take focus";
    mnuPopup.Caption = "Popup messages when hidden";
    mnuTimeStamp.Caption = "Time stamp";
    mnuPM.Caption = "Start Private &Chat";
    mnuInfo.Caption = "&Info";
    mnuSendFile.Caption = "Send &file";
    mnuSendFileUser.Caption = "&Send a file to user...";
    for (Menu* menu : {&mnuSendFile, &mnuSendFileUser}) menu->Visible = around.Files != nullptr;
    mnuPart.Caption = "&Part channel";
    mnuClose.Caption = "&Close window";
    mnuHide.Caption = "&Hide window";
    connectMenus();
    connectUsers();
    on_ += Timer1.Tick.connect([this] { around_.ThePlatform.Screen.FlashWindow(*this, true); });
}

void frmChanChat::Form_Load() {
    Slots.InstallAll(around_.Plugins.ChannelPlugins());
}

void frmChanChat::connectMenus() {
    const auto section = Section::ChanSettings;
    keepCheck(mnuChkshow, section, "Show_");
    keepCheck(mnuChkBeep, section, "Beep_");
    keepCheck(mnuChkFlash, section, "Flash_");
    keepCheck(mnuNoFocus, section, "NoFocus_");
    keepCheck(mnuPopup, section, "Popup_");
    keepCheck(mnuTimeStamp, section, "TimeStamp_");
    on_ += mnuPart.Click.connect([this] { leave(true); });
    on_ += mnuSendFile.Click.connect([this] {
        if (around_.Files != nullptr) around_.Files->SendData(std::string(SelectedNick), "", false, true);
    });
    on_ += mnuSendFileUser.Click.connect([this] {
        if (around_.Files != nullptr) around_.Files->SendData("", "", false, false);
    });
    on_ += mnuClose.Click.connect([this] { leave(false); });
}

void frmChanChat::connectUsers() {
    on_ += UserList1.DblClick.connect([this](const std::string& nick) {
        if (around_.Privates != nullptr) around_.Privates->StartPM(nick);
    });
    on_ += UserList1.MouseUp.connect([this](const std::string& nick, int button, int, int, int) {
        SelectedNick = nick;
        if (button == 2) PopupMenu.raise(pop);
    });
    on_ += mnuPM.Click.connect([this] {
        // A copy: a window that opens may let the user choose somebody else.
        if (around_.Privates != nullptr) around_.Privates->StartPM(std::string(SelectedNick));
    });
    on_ += mnuInfo.Click.connect([this] {
        trapped(around_.Reporter, "mnuInfo_Click",
                [&](Trap& step) { step([&] { around_.Session.SendIRC("WHOIS " + SelectedNick); }); });
    });
}

// ---- Start and end

void frmChanChat::Start(const std::string& channel, bool) {
    trapped(around_.Reporter, "Start", [&](Trap& step) {
        ChannelName = ProperCase(channel);
        Caption = "Talking in " + ChannelName;
        showNote("*** You are now talking in " + ChannelName + " ***");
        std::string line = "CON|" + channel;
        if (!Broadcast(line, -1)) return;
        WinIndex = manager_.RegisterChan(*this);
        if (WinIndex < 0) {
            Unload();
            return;
        }
        Show();
        step([&] { loadSettings(); });
        step([&] { around_.Session.SendIRC("NAMES " + channel); });
    });
}

void frmChanChat::loadSettings() {
    const auto section = Section::ChanSettings;
    loadCheck(mnuChkshow, section, "Show_", true);
    loadCheck(mnuChkBeep, section, "Beep_", false);
    loadCheck(mnuChkFlash, section, "Flash_", true);
    loadCheck(mnuNoFocus, section, "NoFocus_", true);
    loadCheck(mnuPopup, section, "Popup_", true);
    loadCheck(mnuTimeStamp, section, "TimeStamp_", true);
}

void frmChanChat::Remove() {
    if (IsUnloaded()) return;
    trapped(around_.Reporter, "Remove", [&](Trap&) {
        manager_.UnregisterChan(WinIndex);
        Unload();
    });
}

void frmChanChat::leave(bool part) {
    if (IsUnloaded()) return;  // its slot is another window's now
    trapped(around_.Reporter, part ? "mnuPart_Click" : "mnuClose_Click", [&](Trap& step) {
        manager_.UnregisterChan(WinIndex);
        if (part) step([&] { around_.Session.SendIRC("PART " + ChannelName); });
        Unload();
    });
}

bool frmChanChat::isOnTable() const {
    return manager_.Table().Holds(*this);
}

void frmChanChat::Form_QueryUnload(bool& cancel, CloseReason reason) {
    if (reason != CloseReason::UserClosesBox || !isOnTable()) return;
    cancel = true;
    Hide();
}

// ---- What arrives

void frmChanChat::PMArrived(const std::string& nick, const std::string& text, const std::string& command) {
    trapped(around_.Reporter, "PMArrived", [&](Trap&) {
        std::string author = "USR|" + nick;
        if (!Broadcast(author, -1)) return;
        std::string line = incomingLine(text, command);
        if (!Broadcast(line, -1)) return;
        if (isShown(command)) DisplayIRCCommand(line, nick);
    });
}

void frmChanChat::DisplayIRCCommand(const std::string& data, const std::string& nick) {
    trapped(around_.Reporter, "DisplayIRCCommand", [&](Trap& step) {
        const std::string_view payload = payloadOf(data);
        if (!payload.empty()) showSpeech(payload, nick);
        // A line that a plug-in has emptied still calls the user.
        step([&] { callAttention(); });
    });
}

void frmChanChat::showSpeech(std::string_view payload, const std::string& nick) {
    const ChatColors& colors = around_.Colors;
    showSaid(nick, payload, colors.ChatForeColor, colors.ChatBackColor, colors.ActionForeColor,
             colors.ActionBackColor);
    LastText.assign(nick).append(": ").append(payload);
    noteNews();
    if (!HasFocus) tellHost(NoticeKind::ChannelText, ChannelName, ChannelName + ": " + LastText);
    if (!mnuNoFocus.Checked) takeForeground();
}

std::string frmChanChat::setting(const char* key, const char* byDefault) const {
    return around_.Settings.Get(Section::ChanSettings, key + ChannelName, byDefault);
}

// The settings of the channel are read anew for each line.
void frmChanChat::callAttention() {
    if (IsUnloaded()) return;  // by the host, which has just been told of the line
    if (setting("Show_", "T") == "T") Show();
    if (setting("Beep_", "F") == "T" && !HasFocus) around_.ThePlatform.Screen.Beep();
    if (setting("Flash_", "T") == "T" && Visible && !HasFocus) Flash();
    if (setting("NoFocus_", "T") == "F") takeForeground();
}

void frmChanChat::ShowPluginLine(const std::string& text) {
    trapped(around_.Reporter, "plugins_DataBroadcast", [&](Trap& step) {
        step([&] { callAttention(); });
        IRCWin1.AddIRCLine(text, around_.Colors.PluginForeColor, around_.Colors.PluginBackColor);
        LastText = text;
        noteNews();
        if (!HasFocus) tellHost(NoticeKind::ChannelText, ChannelName, ChannelName + ": " + text);
    });
}

void frmChanChat::SendData(const std::string& data) {
    trapped(around_.Reporter, "SendData", [&](Trap& step) { sendOn(step, ChannelName, data); });
}

// ---- Who comes and goes

void frmChanChat::happened(const std::string& nick, const std::string& what, const std::string& lastText) {
    showNote("*** User " + nick + what + " ***");
    LastText = lastText;
    noteNews();
}

void frmChanChat::UserJoin(const std::string& nick) {
    trapped(around_.Reporter, "UserJoin", [&](Trap& step) {
        step([&] { UserList1.Add(nick, ChannelName); });
        happened(nick, " has joined this channel", "Join::" + nick);
    });
}

void frmChanChat::UserLeft(const std::string& nick) {
    trapped(around_.Reporter, "UserLeft", [&](Trap& step) {
        step([&] { UserList1.Remove(nick); });
        happened(nick, " has left this channel", "Part::" + nick);
    });
}

void frmChanChat::UserQuit(const std::string& nick) {
    trapped(around_.Reporter, "UserQuit", [&](Trap& step) {
        step([&] { UserList1.Remove(nick); });
        happened(nick, " has quited IRC", "Quit::" + nick);
    });
}

void frmChanChat::UserRename(const std::string& oldNick, const std::string& newNick) {
    trapped(around_.Reporter, "UserRename", [&](Trap& step) {
        step([&] { UserList1.Rename(oldNick, newNick); });
        happened(oldNick, " has changed to " + newNick, "Rename::" + oldNick + " -> " + newNick);
    });
}

void frmChanChat::NamesRespond(const NameList& names) {
    trapped(around_.Reporter, "NamesRespond", [&](Trap& step) {
        step([&] { UserList1.Clear(); });
        step([&] { UserList1.ListNames(names, ChannelName); });
    });
}

// ---- Focus and flashing

void frmChanChat::seen() {
    if (!HasNews) return;
    StopFlash();
    around_.Session.RefreshWindows();
}

void frmChanChat::OfferFiles(const std::string& nick, const std::vector<std::string>& paths) {
    if (around_.Files != nullptr) around_.Files->Offer(nick, paths);
}

void frmChanChat::Flash() {
    trapped(around_.Reporter, "Flash", [&](Trap&) {
        Timer1.Enabled = true;
        noteNews();
    });
}

void frmChanChat::StopFlash() {
    trapped(around_.Reporter, "StopFlash", [&](Trap& step) {
        Timer1.Enabled = false;
        step([&] { around_.ThePlatform.Screen.FlashWindow(*this, false); });
        HasNews = false;
    });
}

}  // namespace talvora
