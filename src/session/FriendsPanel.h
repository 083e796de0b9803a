#pragma once
// The friends in the main window: those on line as they came in the last reply of who is there, the others
// marked as off line. Tells the host who has come and gone between two replies. Draws the ignored along, so
// that both lists say the same.

#include <string>
#include <vector>

#include "chat/UserList.h"
#include "chat/modFriendsList.h"
#include "common/ComponentSettings.h"
#include "common/HostGate.h"
#include "platform/Controls.h"
#include "session/PresencePanel.h"
#include "session/UsersPanel.h"

namespace talvora {

class FriendsPanel {
  public:
    // The picture of a notice about friends.
    static constexpr const char* NoticePicture = "ImageList1";

    FriendsPanel(GlobError& globError, ComponentSettings& settings, HostGate& gate, modFriendsList& friends,
                 const UsersPanel& users, PresencePanel& presence, UserList& userList2);

    Label Label22;  // "Friends:" and how many are on line
    Menu popULAddFriends;
    Menu popULRemFriends;

    void RefreshFriends();
    // Shows the one of the two menus that fits whoever has been picked.
    void FitMenus();
    bool IsFriend(const std::string& nick) const { return friends_.IsFriend(nick); }

  private:
    void popULAddFriends_Click();
    void popULRemFriends_Click();
    std::vector<Notice> comings() const;
    void tell(Trap& step, const std::vector<Notice>& notices);

    GlobError& globError_;
    ComponentSettings& settings_;
    HostGate& gate_;
    modFriendsList& friends_;
    const UsersPanel& users_;
    PresencePanel& presence_;
    UserList& UserList2;
    UsersPanel::Reply lastOnline_;  // at the last RefreshFriends
    Subscriptions on_;
};

}  // namespace talvora
