#pragma once
// The network's service robot: one client of the IRC network that everybody can speak to. It keeps itself
// logged on and in its channel, and hands what users ask for to the desks: mail in both directions,
// announcements, and the question for the address server.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "common/GlobError.h"
#include "irc/IRCServ.h"
#include "platform/Random.h"
#include "platform/Text.h"
#include "robot/AddressServer.h"
#include "robot/AnnouncementDesk.h"
#include "robot/ExpiryClock.h"
#include "robot/FairQueue.h"
#include "robot/MailGiving.h"
#include "robot/MailTaking.h"
#include "robot/RequestLimit.h"
#include "robot/RobotConfig.h"
#include "robot/RobotLog.h"
#include "robot/RobotStore.h"

namespace talvora {

class Robot {
  public:
    Robot(Platform& platform, const RobotConfig& config, RobotStore& store, RobotLog log);
    ~Robot();
    Robot(const Robot&) = delete;
    Robot& operator=(const Robot&) = delete;

    void Start();
    // Makes safe what waits for it, and leaves the network.
    void Stop(const std::string& quitText);

    bool LoggedOn() const { return IRCServ1.LoggedIn; }
    // For whoever watches it.
    const MailTaking& Taking() const { return taking_; }
    const MailGiving& Giving() const { return giving_; }
    const FairQueue& Out() const { return out_; }

  private:
    using Text = IRCServ::Text;

    void listenToEngine();
    void listenToUsers();
    void listenToChannel();
    std::unique_ptr<SocketDriver> socket();
    void put(const std::string& nick, const std::string& text, FairQueue::LineKind kind);

    // ---- Its place on the network
    void IRCServ1_LoginOK();
    void IRCServ1_SocketDisconnect();
    void tellAway(const std::string& line);
    void joinChannel();
    void furnishChannel();
    bool isOwn(const std::string& nick) const { return EqualText(nick, IRCServ1.Nickname()); }
    bool isChannel(const std::string& name) const { return EqualText(name, config_.Network.SysChannel); }
    void tmrMinute_Timer();
    void removeExpired();
    void keepPlace();

    // ---- Requests
    void IRCServ1_PMSpecialTextArrived(Text nick, Text command, Text text);
    bool isRequest(const Caller& caller, std::string_view command, std::string_view verb);
    void serve(const Caller& caller, Text command, std::string_view text);
    void serveMail(const Caller& caller, std::string_view verb, std::string_view rest);
    void tellAddressServer(const Caller& caller, std::string_view nick);
    bool isHeldByAnother(const Caller& caller);
    void sendAway(const Caller& caller, std::string_view verb);
    void forget(const Caller& caller);
    void IRCServ1_UserNotExist(Text nick);
    void IRCServ1_UserChangeNick(Text oldNick, Text newNick);

    // ---- The store
    template <class Work>
    void withStore(Work&& work);
    void tellStoreFault(const StoreError& fault);
    void commit();

    Platform& platform_;
    const RobotConfig config_;
    RobotStore& store_;
    RobotLog log_;
    GlobError globError_;
    Random random_;
    IRCServ IRCServ1;
    FairQueue out_;
    MailTaking taking_;
    MailGiving giving_;
    AnnouncementDesk announcements_;
    AddressServer address_;
    RequestLimit limit_;
    ExpiryClock expiry_;
    Timer tmrCommit;  // what was changed in the meantime is made safe together
    Timer tmrSweep;   // dialogues that lapse
    Timer tmrMinute;
    std::string knownFault_;  // of the store, as it was told last
    bool away_ = false;       // from the network, and told so: the next try is not told again
    bool nickTaken_ = false;
    bool inChannel_ = false;
    Subscriptions on_;
};

}  // namespace talvora
