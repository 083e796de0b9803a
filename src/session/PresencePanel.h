#pragma once
// The user's own state in the main window. A state is a suffix on the nick and nothing else: changing it asks
// the server for another nick. Holds the list of ignored users too.

#include <string>

#include "chat/UserList.h"
#include "common/ComponentSettings.h"
#include "common/Trap.h"
#include "irc/IRCServ.h"
#include "platform/Controls.h"
#include "session/Account.h"
#include "session/UsersPanel.h"

namespace talvora {

class File;

class PresencePanel {
  public:
    PresencePanel(Platform& platform, GlobError& globError, ComponentSettings& settings, IRCServ& engine,
                  const Account& account, const UsersPanel& users, UserList& userList3);

    Menu popState;  // opens from the picture and the name of the state, with these entries:
    Menu popOnline;
    ControlArray<Menu> popStat;  // one entry a state: description, and in Tag its icon, "|" and its tag
    Image imgState;              // the picture of the state
    Label Label18;               // the name of the state
    Label lblNick;               // the nick that the user carries on the network

    Menu mnuIgnore;
    Menu mnuUnignore;

    // The nick last picked in a user list; what the two menus act on.
    std::string SelectedNick;

    // Draws the list of ignored users, those on line with their state.
    void RefreshIgnore();

    void popOnline_Click();
    void popStat_Click(int index);

    // The part of RefreshSettings that is about presence: the menu from the table of states, the label
    // "Online" (the nick stays as it is), and the ignore list.
    void RefreshSettings();

    // The nick of the network, or the one that the next log-on will ask for.
    void ShowNick();

    // While the state's tag is "DND".
    bool DoNotDisturb() const { return doNotDisturb_; }
    bool IsIgnored(const std::string& nick) const;

  private:
    void mnuIgnore_Click();
    void mnuUnignore_Click();
    std::string shownName(const std::string& ignored) const;
    void rebuildMenu();
    void loadStates(Trap& step, File& states);
    void loadState(int index, const std::string& line);

    Platform& platform_;
    GlobError& globError_;
    ComponentSettings& settings_;
    IRCServ& IRCServ1;
    const Account& account_;
    const UsersPanel& users_;
    UserList& UserList3;
    bool doNotDisturb_ = false;
    std::string gIgnoreList;  // bare nicks, each followed by "@"
    Subscriptions on_;
    Subscriptions states_;  // to the entries of popStat
};

}  // namespace talvora
