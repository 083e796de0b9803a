#pragma once
// Who is where, in the main window: names, joins, parts, quits and renames go to the user lists, the chat
// windows and the host; a WHO reply goes to the directory of all users on line.

#include <string>

#include "chat/UserList.h"
#include "common/HostGate.h"
#include "common/Trap.h"
#include "irc/IRCServ.h"
#include "platform/Controls.h"
#include "session/Handovers.h"

namespace talvora {

class UsersPanel {
  public:
    UsersPanel(GlobError& globError, IRCServ& engine, HostGate& gate, UserList& userList1,
               const Handovers& to);

    Label Label21;  // "Online:" and the number of users

    // A WHO reply has been taken.
    Event<> OnlineChanged;

    // The nicks of the last WHO reply, bare and as they came, side by side.
    const StringArray& OnlineNicks() const { return onlineNicks_; }
    const StringArray& OnlineRaw() const { return onlineRaw_; }

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
    void enterOnline(Text line);

    GlobError& globError_;
    IRCServ& IRCServ1;
    HostGate& gate_;
    UserList& UserList1;
    const Handovers& to_;
    StringArray onlineNicks_;
    StringArray onlineRaw_;
    Subscriptions on_;
};

}  // namespace talvora
