#include "session/Form1.h"

#include <utility>

namespace talvora {

namespace {

constexpr int AboveBottom = 900;  // twips
constexpr int DesignWidth = 4200;
constexpr int DesignHeight = 9000;

}  // namespace

Form1::Form1(const Surroundings& around, std::unique_ptr<SocketDriver> ircSocket)
    : UserList1(around.ThePlatform, around.Reporter, around.Nicks),
      UserList2(around.ThePlatform, around.Reporter, around.Nicks),
      UserList3(around.ThePlatform, around.Reporter, around.Nicks),
      IRCServ1(around.ThePlatform, around.Reporter, around.Chance, std::move(ircSocket)),
      State(IRCServ1, around.Nicks),
      Out(IRCServ1),
      Session(around.ThePlatform, Ending, around.Reporter, IRCServ1, around.TheAccount, around.To),
      Channels(around.ThePlatform, Ending, around.Reporter, around.Settings, IRCServ1, around.TheAccount,
               Session, UserList1, around.To),
      Users(around.Reporter, IRCServ1, around.Gate, UserList1, around.Nicks, around.To),
      Presence(around.ThePlatform, around.Reporter, around.Settings, State, Users, UserList3),
      Friends(around.Reporter, around.Settings, around.Gate, around.Friends, Users, Presence, UserList2),
      Texts(around.ThePlatform, around.Reporter, IRCServ1, Out, around.TheAccount, around.Gate, Presence,
            around.To),
      Trouble(around.ThePlatform, Ending, IRCServ1),
      Mail(around.Mail),
      platform_(around.ThePlatform),
      globError_(around.Reporter),
      settings_(around.Settings),
      account_(around.TheAccount),
      to_(around.To) {
    Caption = "Talvora";
    popULRefresh.Caption = "&Refresh";
    mnuScripts.Caption = "Manage &scripts...";
    mnuBar.Caption = "Window list &bar";
    popULChat.Caption = "Start Private &Chat";
    popULSendFile.Caption = "Send &file";
    mnuTransfers.Caption = "File &transfers...";
    popULInfo.Caption = "&Info";
    Width = DesignWidth;
    Height = DesignHeight;
    connectMenus();
    connectFriends(around.Friends);
    for (UserList* list : {&UserList1, &UserList2, &UserList3}) connectUserList(*list);
    if (around.Windows != nullptr)
        Windows.emplace(around.ThePlatform, Ending, around.Reporter, *around.Windows);
}

void Form1::connectMenus() {
    on_ += popULRefresh.Click.connect([this] { Session.Refresh(); });
    on_ += popULInfo.Click.connect([this] { popULInfo_Click(); });
    for (Event<>* click : {&Presence.imgState.Click, &Presence.Label18.Click}) {
        on_ += click->connect([this] { PopupMenu.raise(Presence.popState); });
    }
    if (Mail != nullptr) {
        on_ += Mail->ListView3.MouseUp.connect([this](int button, int, int, int) {
            if (button == 2 && Mail->ListView3.SelectedItem != nullptr) PopupMenu.raise(Mail->popMail);
        });
    }
    on_ += Channels.ListView2.MouseUp.connect([this](int button, int, int, int) {
        if (button == 2) PopupMenu.raise(Channels.popChannel);
    });
    // A copy: a window that opens may let the user choose somebody else.
    on_ += popULChat.Click.connect([this] { startPM(std::string(Presence.SelectedNick)); });
    on_ += popULSendFile.Click.connect([this] { sendFile(std::string(Presence.SelectedNick)); });
}

void Form1::Form_Load() {
    trapped(globError_, "Form_Load", [&](Trap& step) {
        RefreshSettings();
        ReConnect();
        if (IsUnloaded()) return;
        // The socket is not open yet: the JOIN lines wait, and leave after the log-on.
        const std::string channels = step.value(
            std::string(), [&] { return settings_.Get(Section::Settings, "ChanList", "#thessaloniki"); });
        Channels.CreateChannelList(channels);
        step([&] { placeAtRightEdge(); });
        if (Mail != nullptr) step([&] { Mail->Load(); });
    });
}

void Form1::connectFriends(modFriendsList& friends) {
    using Text = const std::string&;
    on_ += Users.OnlineChanged.connect([this] { Friends.RefreshFriends(); });
    on_ += friends.Changed.connect([this] { Friends.RefreshFriends(); });
    on_ += Users.UserTree1.MouseUp.connect(
        [this](Text nick, Text, Text, int button, int, int, int) { pick(nick, button); });
    on_ +=
        Users.UserTree1.DblClickUser.connect([this](Text nick, Text, Text) { startPM(std::string(nick)); });
}

void Form1::pick(const std::string& nick, int button) {
    Presence.Select(nick);
    if (button != 2) return;
    Friends.FitMenus();
    PopupMenu.raise(popUserList);
}

void Form1::connectUserList(UserList& list) {
    on_ += list.MouseUp.connect(
        [this](const std::string& nick, int button, int, int, int) { pick(nick, button); });
    on_ += list.DblClick.connect([this](const std::string& nick) { startPM(std::string(nick)); });
}

void Form1::startPM(const std::string& nick) {
    const bool listed = Presence.IsIgnored(nick) || Friends.IsFriend(nick);
    if (!listed || !Presence.IsShownOffline(nick)) to_.Privates->StartPM(nick);
}

// The other side answers with its address, which the dialog waits for.
void Form1::sendFile(const std::string& nick) {
    trapped(globError_, "popULSendFile_Click", [&](Trap& step) {
        step([&] { Out.SendPM(nick, "WIP", true); });
        step([&] { to_.Files->SendData(nick, "", false, true); });
    });
}

void Form1::popULInfo_Click() {
    trapped(globError_, "popULInfo_Click",
            [&](Trap& step) { step([&] { IRCServ1.SendIRC("WHOIS " + Presence.SelectedNick); }); });
}

void Form1::placeAtRightEdge() {
    Left = platform_.Screen.ScreenWidth() - Width;
    Top = platform_.Screen.ScreenHeight() - Height - AboveBottom;
}

void Form1::RefreshSettings() {
    trapped(globError_, "RefreshSettings", [&](Trap&) {
        IRCServ1.AutoRetry = settings_.Get(Section::Settings, "AutoRetry", "T") == "T";
        Presence.RefreshSettings();
    });
}

void Form1::ReConnect() {
    trapped(globError_, "ReConnect", [&](Trap&) {
        // The text ends in a bracket that nothing opens, and goes out so.
        if (account_.gSettingsChanged) Leave("Changing some settings... rejoining in a while)");
        if (IsUnloaded()) return;
        IRCServ1.SetRealName("UL:" + account_.LocationPath);
        State.Ask(State.Nick());
        IRCServ1.AutoRetry = true;
        IRCServ1.Password = settings_.Get(Section::Settings, "Pass", "none");
        if (account_.gSettingsChanged) IRCServ1.Connect(account_.gServerHost, account_.gServerPort);
    });
}

void Form1::Leave(const std::string& words) {
    const TroublePanel::Leaving leaving(Trouble);
    IRCServ1.Disconnect(words);
}

void Form1::Form_QueryUnload(bool& cancel, CloseReason reason) {
    if (reason != CloseReason::UserClosesBox) return;
    cancel = true;
    Hide();
}

void Form1::Form_Unload() {
    if (Mail != nullptr) Mail->Status.Stop();
    Texts.Stop();
    IRCServ1.Stop();
}

}  // namespace talvora
