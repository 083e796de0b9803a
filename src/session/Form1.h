#pragma once
// The main window and session controller. It owns the engine and the controls, and hands the engine's events
// to panels of one subject each.

#include <memory>
#include <optional>
#include <string>

#include "chat/UserList.h"
#include "common/ComponentSettings.h"
#include "common/HostGate.h"
#include "common/Trap.h"
#include "irc/IRCServ.h"
#include "mail/MailPanel.h"
#include "platform/Form.h"
#include "session/Account.h"
#include "session/ChannelPanel.h"
#include "session/FriendsPanel.h"
#include "session/Handovers.h"
#include "session/PresencePanel.h"
#include "session/SessionPanel.h"
#include "session/TextDispatch.h"
#include "session/TroublePanel.h"
#include "session/UserState.h"
#include "session/UsersPanel.h"
#include "session/WayOut.h"
#include "session/WindowsPanel.h"

namespace talvora {

class Form1 final : public Form {
  public:
    // What the window lives on; all of it outlives the window.
    struct Surroundings {
        Platform& ThePlatform;
        GlobError& Reporter;
        ComponentSettings& Settings;
        HostGate& Gate;
        const Account& TheAccount;
        Random& Chance;
        modNickDecode& Nicks;
        modFriendsList& Friends;
        const Handovers& To;
        // The chat windows; without them the program has no list of windows.
        ChatWindowTables* Windows = nullptr;
        // The mail panel, which outlives the window that shows it.
        MailPanel* Mail = nullptr;
    };

    // `ircSocket` is what the engine speaks through.
    Form1(const Surroundings& around, std::unique_ptr<SocketDriver> ircSocket);

    // Settings, connection, the saved channels, and the window's place on the screen.
    void Form_Load();
    void ReConnect();
    // Ends the connection because the user wants it so, with these words.
    void Leave(const std::string& words);
    void RefreshSettings();
    // Files dropped on a user of the lists, by their native paths.
    void OfferFiles(const std::string& nick, const std::vector<std::string>& paths) {
        to_.Files->Offer(nick, paths);
    }
    // Minutes between two checks of mail, as read at start-up.
    void SetMailInterval(std::int32_t minutes) { Session.gMailInterval = minutes; }

    UserList UserList1;  // the users of all joined channels
    UserList UserList2;  // the friends
    UserList UserList3;  // the ignored
    IRCServ IRCServ1;
    UserState State;
    WayOut Out;
    SessionPanel Session;
    ChannelPanel Channels;
    UsersPanel Users;
    PresencePanel Presence;
    FriendsPanel Friends;
    TextDispatch Texts;
    TroublePanel Trouble;
    std::optional<WindowsPanel> Windows;
    MailPanel* const Mail;
    Menu popUserList;  // of a row in a user list
    Menu popULChat;
    Menu popULSendFile;
    Menu popULInfo;
    Menu popULRefresh;
    Menu mnuTransfers;  // opens the window of what was sent and received, whoever owns that
    Menu mnuScripts;    // opens the window of the scripts, likewise
    Menu mnuBar;        // opens the bar of the open windows, likewise

  protected:
    // The user's close box only hides the window; the session stays on line.
    void Form_QueryUnload(bool& cancel, CloseReason reason) override;
    void Form_Unload() override;

  private:
    void connectMenus();
    void connectFriends(modFriendsList& friends);
    void connectUserList(UserList& list);
    void pick(const std::string& nick, int button);
    void popULInfo_Click();
    void startPM(const std::string& nick);
    void sendFile(const std::string& nick);
    void placeAtRightEdge();

    Platform& platform_;
    GlobError& globError_;
    ComponentSettings& settings_;
    const Account& account_;
    const Handovers& to_;
    Subscriptions on_;
};

}  // namespace talvora
