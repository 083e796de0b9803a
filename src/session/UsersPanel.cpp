#include "session/UsersPanel.h"

#include "chat/modNickDecode.h"
#include "common/HostArrays.h"
#include "common/HostMessageNumbers.h"
#include "platform/Text.h"

namespace talvora {

UsersPanel::UsersPanel(GlobError& globError, IRCServ& engine, HostGate& gate, UserList& userList1,
                       const Handovers& to)
    : globError_(globError), IRCServ1(engine), gate_(gate), UserList1(userList1), to_(to) {
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
        onlineNicks_.clear();
        onlineRaw_.clear();
        to_.Directory->Clear();
        for (const std::string& line : list) step([&] { enterOnline(line); });
        OnlineChanged.raise();
        step([&] { to_.Directory->RefreshFriends(); });
        Label21.Caption = "Online: " + std::to_string(to_.Directory->Count());
    });
}

void UsersPanel::enterOnline(Text line) {
    const auto fields = Split(line, "\5");
    const std::string& realName = elementOf(fields, 7);
    to_.Directory->AddUser(realName, fields[2], fields[4]);
    onlineNicks_.push_back(TruncNick(fields[4]));
    onlineRaw_.push_back(fields[4]);
}

void UsersPanel::IRCServ1_WhoisReply(const StringArray& results, Text nick) {
    trapped(globError_, "IRCServ1_WhoisReply",
            [&](Trap& step) { step([&] { to_.Whois->Reply(results, nick); }); });
}

void UsersPanel::IRCServ1_MOTDReceived(Text text) {
    trapped(globError_, "IRCServ1_MOTDReceived", [&](Trap& step) { step([&] { to_.MOTD->Display(text); }); });
}

}  // namespace talvora
