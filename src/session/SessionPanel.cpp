#include "session/SessionPanel.h"

#include <limits>

#include "platform/Text.h"

namespace talvora {

SessionPanel::SessionPanel(Platform& platform, Event<>& end, GlobError& globError, IRCServ& engine,
                           const Account& account, const Handovers& to)
    : tmrSysChanJoin(platform, end, 30000, true),
      tmrWHOUpdate(platform, end, 60000),
      tmMailRefresh(platform, end, 60000),
      globError_(globError),
      IRCServ1(engine),
      account_(account),
      to_(to) {
    on_ += tmrSysChanJoin.Tick.connect([this] { IRCServ1.SendIRC(joinSystemChannel()); });
    on_ += tmrWHOUpdate.Tick.connect([this] { Refresh(); });
    on_ += tmMailRefresh.Tick.connect([this] { tmMailRefresh_Timer(); });
    on_ += IRCServ1.Logining.connect([this] { IRCServ1_Logining(); });
    on_ += IRCServ1.LoginOK.connect([this] { IRCServ1_LoginOK(); });
    on_ += IRCServ1.SocketConnect.connect([this] { IRCServ1_SocketConnect(); });
    on_ += IRCServ1.SocketDisconnect.connect([this] { IRCServ1_SocketDisconnect(); });
    on_ += IRCServ1.UserNotExist.connect([this](IRCServ::Text nick) { IRCServ1_UserNotExist(nick); });
    on_ += IRCServ1.GlobalUsers.connect([this](IRCServ::Text text) { IRCServ1_GlobalUsers(text); });
}

void SessionPanel::Refresh() {
    trapped(globError_, "Refresh", [&](Trap&) {
        IRCServ1.SendIRC("WHO");
        IRCServ1.SendIRC("LUSERS");
        showRobot(true);
        // A probe: if the robot is absent, the server answers 401.
        IRCServ1.SendText("OrreryServ", ". . .");
    });
}

void SessionPanel::showRobot(bool up) {
    imgMailOK.Visible = up;
    imgMailErr.Visible = !up;
}

std::string SessionPanel::joinSystemChannel() const {
    return "JOIN " + account_.gSysChannel + " " + account_.gSysChanKey;
}

void SessionPanel::IRCServ1_Logining() {
    Label8.Caption = "Loging in...";
}

void SessionPanel::IRCServ1_LoginOK() {
    trapped(globError_, "IRCServ1_LoginOK", [&](Trap&) {
        Refresh();
        IRCServ1.SendIRC(joinSystemChannel());
        tmrWHOUpdate.Enabled = true;
        imgStat.Picture = SessionPicture::OnLine;
        tmMailRefresh.Enabled = true;
        Label8.Caption = "Talvora is Up and Running";
    });
}

void SessionPanel::IRCServ1_SocketConnect() {
    imgStat.Picture = SessionPicture::Connecting;
    SysErr(5);
}

void SessionPanel::IRCServ1_SocketDisconnect() {
    tmrWHOUpdate.Enabled = false;
    imgStat.Picture = SessionPicture::OffLine;
    tmrSysChanJoin.Enabled = false;
    tmMailRefresh.Enabled = false;
    Label8.Caption = "Disconnected from IRC Server";
}

void SessionPanel::IRCServ1_UserNotExist(const std::string& nick) {
    if (UCase(nick) == "ORRERYSERV") showRobot(false);
}

void SessionPanel::IRCServ1_GlobalUsers(const std::string& text) {
    trapped(globError_, "IRCServ1_GlobalUsers", [&](Trap& step) {
        std::string number;
        const bool read = step([&] {
            const auto pieces = Split(text, ":", 3);
            const std::string second = Trim(elementOf(pieces, 1));
            number = second.substr(0, second.find(' '));
        });
        if (read) Label20.Caption = "Global users: " + number;
    });
}

// MailTicks is never set back: once it has reached the interval, every minute checks.
void SessionPanel::tmMailRefresh_Timer() {
    trapped(globError_, "tmMailRefresh_Timer", [&](Trap& step) {
        if (MailTicks < std::numeric_limits<std::int16_t>::max()) ++MailTicks;
        if (MailTicks < gMailInterval) return;
        step([&] { to_.Mail->CheckRCVMail(); });
        step([&] { to_.Announcements->CheckAnn(); });
    });
}

void SessionPanel::SysOK(int state) {
    gSysChanOK = true;
    gSysChanState = state;
    to_.Mail->CheckRCVMail();
}

void SessionPanel::SysErr(int state) {
    gSysChanOK = false;
    gSysChanState = state;
}

}  // namespace talvora
