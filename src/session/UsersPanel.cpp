#include "session/UsersPanel.h"

#include "chat/modNickDecode.h"
#include "common/HostArrays.h"
#include "common/HostMessageNumbers.h"
#include "platform/Text.h"

namespace talvora {

UsersPanel::UsersPanel(GlobError& globError, IRCServ& engine, HostGate& gate, UserList& userList1,
                       modNickDecode& nicks, const Handovers& to)
    : UserTree1(globError, nicks),
      globError_(globError),
      IRCServ1(engine),
      gate_(gate),
      UserList1(userList1),
      to_(to) {
    on_ += IRCServ1.NamesReceived.connect(
        [this](Text channel, const StringArray& names) { IRCServ1_NamesReceived(channel, names); });
    on_ += IRCServ1.UserJoinChannel.connect(
        [this](Text channel, Text nick, Text, Text) { IRCServ1_UserJoinChannel(channel, nick); });
    on_ += IRCServ1.UserPartChannel.connect(
        [this](Text channel, Text nick, Text, Text, Text) { IRCServ1_UserPartChannel(channel, nick); });
    on_ += IRCServ1.UserQuit.connect(
        [this](Text nick, Text, Text, Text message) { IRCServ1_UserQuit(nick, message); });
    on_ += IRCServ1.UserChangeNick.connect(
        [this](Text oldNick, Text newNick, Text, Text) { IRCServ1_UserChangeNick(oldNick, newNick); });
    on_ += IRCServ1.WHORespond.connect([this](const StringArray& list) { IRCServ1_WHORespond(list); });
    on_ += IRCServ1.WhoisReply.connect(
        [this](const StringArray& results, Text nick) { IRCServ1_WhoisReply(results, nick); });
    on_ += IRCServ1.SocketDisconnect.connect([this] { IRCServ1_SocketDisconnect(); });
    on_ += IRCServ1.MOTDReceived.connect([this](Text text) { IRCServ1_MOTDReceived(text); });
}

void UsersPanel::IRCServ1_NamesReceived(Text channel, const StringArray& names) {
    trapped(globError_, "IRCServ1_NamesReceived", [&](Trap& step) {
        step([&] { to_.Channels->NamesChan(channel, names); });
        step([&] { UserList1.MergeNames(names, channel); });
    });
}

void UsersPanel::IRCServ1_UserJoinChannel(Text channel, Text nick) {
    trapped(globError_, "IRCServ1_UserJoinChannel", [&](Trap& step) {
        step([&] { to_.Privates->EnterPM(nick); });
        step([&] { to_.Channels->JoinChan(channel, nick); });
        step([&] { UserList1.Add(nick, channel); });
        step([&] { gate_.Broadcast(HostMsg::UserJoined, ArrayOf(channel, nick)); });
    });
}

void UsersPanel::IRCServ1_UserPartChannel(Text channel, Text nick) {
    trapped(globError_, "IRCServ1_UserPartChannel", [&](Trap& step) {
        step([&] { to_.Channels->PartChan(channel, nick); });
        step([&] { UserList1.Leave(nick, channel); });
        step([&] { gate_.Broadcast(HostMsg::UserParted, ArrayOf(channel, nick)); });
    });
}

void UsersPanel::IRCServ1_UserQuit(Text nick, Text message) {
    trapped(globError_, "IRCServ1_UserQuit", [&](Trap& step) {
        step([&] { UserList1.Remove(nick); });
        step([&] { to_.Privates->QuitPM(nick); });
        step([&] { to_.Channels->QuitChan(nick); });
        step([&] { gate_.Broadcast(HostMsg::UserQuit, ArrayOf(nick, message)); });
    });
}

void UsersPanel::IRCServ1_UserChangeNick(Text oldNick, Text newNick) {
    trapped(globError_, "IRCServ1_UserChangeNick", [&](Trap& step) {
        step([&] { UserList1.Rename(oldNick, newNick); });
        step([&] { to_.Privates->RenamePM(oldNick, newNick); });
        step([&] { to_.Channels->RenameChan(oldNick, newNick); });
        step([&] { gate_.Broadcast(HostMsg::UserRenamed, ArrayOf(oldNick, newNick)); });
    });
}

void UsersPanel::IRCServ1_SocketDisconnect() {
    trapped(globError_, "IRCServ1_SocketDisconnect", [&](Trap& step) {
        step([&] { UserList1.Clear(); });
        step([&] { to_.Channels->ForgetUsers(); });
    });
}

void UsersPanel::IRCServ1_WHORespond(const StringArray& list) {
    trapped(globError_, "IRCServ1_WHORespond", [&](Trap& step) {
        const std::uint64_t reply = ++reply_;
        const auto online = std::make_shared<OnlineUsers>();
        UserTree1.Clear();
        for (const std::string& line : list) {
            step([&] { enterOnline(line, *online); });
            if (reply != reply_) return;  // a report stood, and a later reply has been taken meanwhile
        }
        online->Index();
        online_ = online;
        UserTree1.Refresh();
        OnlineChanged.raise();
        Label21.Caption = "Online: " + CStr(UserTree1.OnlineCount);
    });
}

void UsersPanel::enterOnline(Text line, OnlineUsers& online) {
    splitInto(fields_, line, "\5");
    const std::string realName = elementOf(fields_, 7);
    const std::string host = fields_[2];
    const std::string nick = fields_[4];
    online.Add(nick);
    UserTree1.AddUser(realName, host, nick);
}

void UsersPanel::IRCServ1_WhoisReply(const StringArray& results, Text nick) {
    trapped(globError_, "IRCServ1_WhoisReply",
            [&](Trap& step) { step([&] { to_.Whois->Reply(results, nick); }); });
}

void UsersPanel::IRCServ1_MOTDReceived(Text text) {
    trapped(globError_, "IRCServ1_MOTDReceived", [&](Trap& step) { step([&] { to_.MOTD->Display(text); }); });
}

}  // namespace talvora
