#pragma once
// The life of the session in the main window: log-on, the periodic refresh, the probe of the robot, the
// system channel's state, and the minute timer of mail and announcements.

#include <cstdint>
#include <string>

#include "common/Trap.h"
#include "irc/IRCServ.h"
#include "platform/Controls.h"
#include "platform/Timer.h"
#include "session/Account.h"
#include "session/Handovers.h"

namespace talvora {

// The pictures of imgStat.
namespace SessionPicture {
inline constexpr int OffLine = 1;
inline constexpr int Connecting = 2;
inline constexpr int OnLine = 3;
}  // namespace SessionPicture

class SessionPanel {
  public:
    // `end` stops the timers for good; so of the other panels.
    SessionPanel(Platform& platform, Event<>& end, GlobError& globError, IRCServ& engine,
                 const Account& account, const Handovers& to);

    Label Label8;   // the user's view of the session
    Label Label20;  // "Global users: " and their number
    Image imgStat{SessionPicture::OffLine};
    Image imgMailOK{0, false};   // the robot is up
    Image imgMailErr{0, false};  // the robot is absent

    Timer tmrSysChanJoin;
    Timer tmrWHOUpdate;
    Timer tmMailRefresh;

    // Minutes between two checks of mail and announcements.
    std::int32_t gMailInterval = 1;

    // WHO, LUSERS and the probe of the robot; also the menu popULRefresh.
    void Refresh();

    // The result of joining the system channel. Its states: 0 joined, 1 by invitation only, 2 key refused,
    // 3 banned, 4 parted, 5 no connection yet.
    bool SysChanOK() const { return gSysChanOK; }
    int SysChanState() const { return gSysChanState; }
    void SysOK(int state);
    void SysErr(int state);

  private:
    void IRCServ1_Logining();
    void IRCServ1_LoginOK();
    void IRCServ1_SocketConnect();
    void IRCServ1_SocketDisconnect();
    void IRCServ1_UserNotExist(const std::string& nick);
    void IRCServ1_GlobalUsers(const std::string& text);
    void tmMailRefresh_Timer();
    std::string joinSystemChannel() const;
    void showRobot(bool up);

    GlobError& globError_;
    IRCServ& IRCServ1;
    const Account& account_;
    const Handovers& to_;
    bool gSysChanOK = false;
    int gSysChanState = 5;
    std::int16_t MailTicks = 0;
    Subscriptions on_;
};

}  // namespace talvora
