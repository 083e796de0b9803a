#pragma once
// The user's own state as the main window shows it and lets him choose it; UserState owns it. Holds the list
// of ignored users too.

#include <string>

#include "chat/UserList.h"
#include "common/ComponentSettings.h"
#include "common/Trap.h"
#include "platform/Controls.h"
#include "session/UserState.h"
#include "session/UsersPanel.h"

namespace talvora {

class File;

class PresencePanel {
  public:
    PresencePanel(Platform& platform, GlobError& globError, ComponentSettings& settings, UserState& state,
                  const UsersPanel& users, UserList& userList3);

    Menu popState;  // opens from the picture and the name of the state, with these entries:
    Menu popOnline;
    ControlArray<Menu> popStat;  // one entry a state: description, and in Tag its icon, "|" and its tag
    Image imgState;              // the picture of the state
    Label Label18;               // the name of the state
    Label lblNick;               // the nick that the user carries on the network

    // The one that fits the nick last picked is visible.
    Menu mnuIgnore;
    Menu mnuUnignore;

    // The nick last picked in a user list; what the two menus act on.
    std::string SelectedNick;
    void Select(const std::string& nick);

    // Draws the list of ignored users, those on line with their state.
    void RefreshIgnore();

    void popOnline_Click();
    void popStat_Click(int index);

    // The part of RefreshSettings that is about presence: the menu from the table of states and the ignore
    // list. The state stays as it is.
    void RefreshSettings();

    bool DoNotDisturb() const { return state_.DoNotDisturb(); }
    // A nick that is nothing but a suffix can stand in no list of bare nicks.
    bool IsIgnored(const std::string& nick) const;
    // How a list shows one whom it knows by the bare nick: as he came in the last reply of who is on line, or
    // with a state that says that he is not.
    std::string shownName(const std::string& bareNick) const;
    // Whether a row shows one who is not there to be talked to.
    bool IsShownOffline(const std::string& nick) const;
    // Whether the state that the row shows is the one of those who are not there.
    static bool IsMarkedOffline(const std::string& nick);

  private:
    void showState();
    void mnuIgnore_Click();
    void mnuUnignore_Click();
    void rebuildMenu();
    void loadStates(Trap& step, File& states);
    void loadState(int index, const std::string& line);

    Platform& platform_;
    GlobError& globError_;
    ComponentSettings& settings_;
    UserState& state_;
    const UsersPanel& users_;
    UserList& UserList3;
    std::string gIgnoreList;  // bare nicks, each followed by "@"
    Subscriptions on_;
    Subscriptions states_;  // to the entries of popStat
};

}  // namespace talvora
