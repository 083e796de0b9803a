#pragma once
// Who is where, in the main window: names, joins, parts, quits and renames go to the user lists, the chat
// windows and the host; a WHO reply fills the tree of all users on line.

#include <cstdint>
#include <memory>
#include <string>

#include "chat/UserList.h"
#include "chat/UserTree.h"
#include "common/HostGate.h"
#include "common/Trap.h"
#include "irc/IRCServ.h"
#include "platform/Controls.h"
#include "session/Handovers.h"
#include "session/OnlineUsers.h"

namespace talvora {

class UsersPanel {
  public:
    UsersPanel(GlobError& globError, IRCServ& engine, HostGate& gate, UserList& userList1,
               modNickDecode& nicks, const Handovers& to);

    UserTree UserTree1;
    Label Label21;  // "Online:" and the number of users

    // A WHO reply has been taken, and the tree shows it.
    Event<> OnlineChanged;

    // Who was on line at the last WHO reply.
    using Reply = std::shared_ptr<const OnlineUsers>;
    const Reply& Online() const { return online_; }

  private:
    using Text = const std::string&;
    void IRCServ1_SocketDisconnect();
    void IRCServ1_NamesReceived(Text channel, const StringArray& names);
    void IRCServ1_UserJoinChannel(Text channel, Text nick);
    void IRCServ1_UserPartChannel(Text channel, Text nick);
    void IRCServ1_UserQuit(Text nick, Text message);
    void IRCServ1_UserChangeNick(Text oldNick, Text newNick);
    void IRCServ1_WHORespond(const StringArray& list);
    void IRCServ1_WhoisReply(const StringArray& results, Text nick);
    void IRCServ1_MOTDReceived(Text text);
    void enterOnline(Text line, OnlineUsers& online);

    GlobError& globError_;
    IRCServ& IRCServ1;
    HostGate& gate_;
    UserList& UserList1;
    const Handovers& to_;
    Reply online_ = std::make_shared<OnlineUsers>();
    std::uint64_t reply_ = 0;  // the number of the reply that is being taken
    std::vector<std::string> fields_;
    Subscriptions on_;
};

}  // namespace talvora
