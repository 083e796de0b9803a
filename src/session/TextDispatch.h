#pragma once
// Where an incoming text goes: to a chat window, to the mail or announcement code, to the information window,
// to the host, or nowhere. Verbs are taken from any nick, unless the network's profile says that the robot's
// come from the robot alone.

#include <string>

#include "common/HostGate.h"
#include "common/Trap.h"
#include "irc/IRCServ.h"
#include "platform/Winsock.h"
#include "session/Account.h"
#include "session/Handovers.h"
#include "session/PresencePanel.h"
#include "session/WayOut.h"

namespace talvora {

class TextDispatch {
  public:
    TextDispatch(Platform& platform, GlobError& globError, IRCServ& engine, WayOut& out,
                 const Account& account, HostGate& gate, const PresencePanel& presence, const Handovers& to);

    // The end: closes what is still open to an address server, and nothing is opened any more.
    void Stop() {
        stopped_ = true;
        gIPSock.Close();
    }

  private:
    using Text = const std::string&;
    void IRCServ1_PMTextArrived(Text nick, Text text);
    void IRCServ1_PMSpecialTextArrived(Text nick, Text command, Text text);
    void IRCServ1_TextArrived(Text nick, Text channel, Text text);
    void IRCServ1_SpecialTextArrived(Text nick, Text channel, Text command, Text text);
    void IRCServ1_SpecialNoticeArrived(Text command, Text text);
    void IRCServ1_ServerRespond(std::int32_t number, const StringArray& parameters, Text tailing);
    void IRCServ1_ServerStrRespond(Text cmd, const StringArray& parameters, Text tailing);
    void connectText();

    bool turnedAway(Text nick, bool answer);
    bool isSystemChannel(Text channel) const;
    bool fromRobot(Text nick) const;
    bool answerQuery(Text nick, Text command, Text text);
    bool handleVerb(Text nick, Text command, Text text);
    bool findAddress(Text nick, Text command, Text text);
    void askAddressServer(Text text);
    void gIPSock_DataArrival();
    void distributePrivate(Text nick, Text text, Text command);
    void distributeChannel(Text channel, Text nick, Text text, Text command);
    void broadcastVerb(std::int32_t msgID, Text command, Text nick, Text text);

    Platform& platform_;
    GlobError& globError_;
    IRCServ& IRCServ1;
    WayOut& out_;
    const Account& account_;
    HostGate& gate_;
    const PresencePanel& presence_;
    const Handovers& to_;
    Winsock gIPSock;  // to the address server; its Tag is the nick that asked
    bool addressTold_ = false;
    bool stopped_ = false;
    Subscriptions on_;
};

}  // namespace talvora
