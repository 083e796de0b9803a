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
      UserList3(around.ThePlatform, around.Reporter, around.Nicks),
      IRCServ1(around.ThePlatform, around.Reporter, around.Chance, std::move(ircSocket)),
      Session(around.ThePlatform, around.Reporter, IRCServ1, around.TheAccount, around.To),
      Channels(around.ThePlatform, around.Reporter, around.Settings, IRCServ1, around.TheAccount, Session,
               UserList1, around.To),
      Users(around.Reporter, IRCServ1, around.TheAccount, around.Gate, UserList1, around.To),
      Presence(around.ThePlatform, around.Reporter, around.Settings, IRCServ1, around.TheAccount, Users,
               UserList3),
      Texts(around.ThePlatform, around.Reporter, IRCServ1, around.TheAccount, around.Gate, Presence,
            around.To),
      Trouble(around.ThePlatform, IRCServ1),
      platform_(around.ThePlatform),
      globError_(around.Reporter),
      settings_(around.Settings),
      account_(around.TheAccount),
      to_(around.To) {
    Caption = "Talvora";
    popULRefresh.Caption = "&Refresh";
    popULChat.Caption = "Start Private &Chat";
    Width = DesignWidth;
    Height = DesignHeight;
    on_ += popULRefresh.Click.connect([this] { Session.Refresh(); });
    on_ += Users.OnlineChanged.connect([this] { Presence.RefreshIgnore(); });
    for (Event<>* click : {&Presence.imgState.Click, &Presence.Label18.Click}) {
        on_ += click->connect([this] { PopupMenu.raise(Presence.popState); });
    }
    on_ += Channels.ListView2.MouseUp.connect([this](int button, int, int, int) {
        if (button == 2) PopupMenu.raise(Channels.popChannel);
    });
    on_ += popULChat.Click.connect([this] {
        if (to_.Privates != nullptr) to_.Privates->StartPM(Presence.SelectedNick);
    });
    connectUserList(UserList1);
    connectUserList(UserList3);
    if (around.Windows != nullptr) Windows.emplace(around.ThePlatform, around.Reporter, *around.Windows);
}

void Form1::Form_Load() {
    trapped(globError_, "Form_Load", [&](Trap& step) {
        RefreshSettings();
        ReConnect();
        // The socket is not open yet: the JOIN lines wait, and leave after the log-on.
        const std::string channels = step.value(
            std::string(), [&] { return settings_.Get(Section::Settings, "ChanList", "#thessaloniki"); });
        Channels.CreateChannelList(channels);
        placeAtRightEdge();
    });
}

void Form1::connectUserList(UserList& list) {
    on_ += list.MouseUp.connect([this](const std::string& nick, int button, int, int, int) {
        Presence.SelectedNick = nick;
        if (button == 2) PopupMenu.raise(popUserList);
    });
    on_ += list.DblClick.connect([this](const std::string& nick) {
        if (to_.Privates != nullptr) to_.Privates->StartPM(nick);
    });
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
        IRCServ1.SetRealName("UL:" + account_.LocationPath);
        IRCServ1.SetNickname(account_.gNickname);
        Presence.ShowNick();
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
    for (Timer* timer :
         {&Session.tmrSysChanJoin, &Session.tmrWHOUpdate, &Session.tmMailRefresh, &Channels.tmrRefreshUsers,
          &Channels.tmrDisplayKeyChans, &Trouble.tmrTrouble}) {
        timer->Enabled = false;
    }
    if (Windows) Windows->tmrRedraw.Enabled = false;
    Texts.Stop();
    IRCServ1.Stop();
}

}  // namespace talvora
