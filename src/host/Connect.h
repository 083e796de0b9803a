#pragma once
// The component's face towards the host, and the one place that knows everybody: it stores what the host
// gives, answers the host's messages, runs the start-up and the shutdown.

#include <memory>

#include "common/ComponentSettings.h"
#include "common/GlobError.h"
#include "common/HostGate.h"
#include "common/HostPlugin.h"
#include "host/AnnounceDesk.h"
#include "host/ChatDesk.h"
#include "host/MailDesk.h"
#include "host/NotifyDesk.h"
#include "host/TransferDesk.h"
#include "platform/Random.h"
#include "profile/NetworkProfile.h"
#include "session/Account.h"
#include "session/Form1.h"
#include "session/Handovers.h"
#include "settings/Settings.h"

namespace talvora {

class AdaptedSocket;

class Connect final : public HostPlugin {
  public:
    explicit Connect(const HostServices& services);
    ~Connect() override;

    void Init(MessageDatabase& db, std::int32_t id) override;
    // Says QUIT and unloads the windows; also by message 8. Doing it again does nothing.
    void Class_Terminate();
    void dMsgDB_MessageBroadcasted(const HostMessage& message);
    // Applies the settings again, with a new connection if one of them needs it.
    void LoadSettings();

    // The model of a new settings page; the component outlives it.
    std::unique_ptr<Settings> MakeSettingsPage();

    // The user opens what a notice told of: `window` is a channel, a nick or a mail's file. A window that is
    // gone by now leaves the main window.
    void OpenNotice(const HostValue& window);

    // The main window has been made, and nothing of it has happened yet.
    Event<Form1&> MainWindowLoaded;

    bool Started() const { return gStarted; }
    // The main window; nothing before message 1 and after the end.
    Form1* MainWindow() const;
    ChatDesk& Chats() { return chats_; }
    MailDesk& Mails() { return mails_; }
    AnnounceDesk& Announcements() { return announcements_; }
    TransferDesk& Transfers() { return transfers_; }
    NotifyDesk& Notes() { return notes_; }
    Account& TheAccount() { return account_; }

  private:
    void startUp();
    void terminate(Trap& step);
    void readAccount();
    std::string nickOfSettings() const;
    void loadMainWindow(Trap& step);
    void makeMainWindow();
    void loadFriends();
    void retireMainWindow();
    void bringForward(Form& form);
    void handle(Trap& step, const HostMessage& message);
    void handleText(const HostMessage& message);
    void say(const std::string& to, const std::string& text, bool special);
    std::unique_ptr<SocketDriver> wireTo(const NetworkProfile& profile);
    std::unique_ptr<SocketDriver> ircSocket();
    bool needsNewConnection() const;
    void renewConnection();

    HostServices services_;
    GlobError globError_;
    ComponentSettings settings_;
    HostGate gate_;
    Random random_;
    Account account_;
    ChatDesk chats_;
    MailDesk mails_;
    AnnounceDesk announcements_;
    TransferDesk transfers_;
    NotifyDesk notes_;
    Handovers handovers_;
    bool gStarted = false;  // the main window is loaded, so host messages may reach it
    bool ending_ = false;
    std::unique_ptr<Form1> form1_;
    AdaptedSocket* ircSocket_ = nullptr;  // of the main window
    NetworkProfile connectedBy_;          // as it was when the socket was made
    Subscription sink_;
};

}  // namespace talvora
