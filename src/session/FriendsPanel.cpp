#include "session/FriendsPanel.h"

#include <utility>

#include "platform/Text.h"

namespace talvora {

FriendsPanel::FriendsPanel(GlobError& globError, ComponentSettings& settings, HostGate& gate,
                           modFriendsList& friends, const UsersPanel& users, PresencePanel& presence,
                           UserList& userList2)
    : globError_(globError),
      settings_(settings),
      gate_(gate),
      friends_(friends),
      users_(users),
      presence_(presence),
      UserList2(userList2),
      lastOnline_(users.Online()) {
    popULAddFriends.Caption = "&Add to friends";
    popULRemFriends.Caption = "&Remove from friends";
    on_ += popULAddFriends.Click.connect([this] { popULAddFriends_Click(); });
    on_ += popULRemFriends.Click.connect([this] { popULRemFriends_Click(); });
}

void FriendsPanel::FitMenus() {
    const bool isFriend = IsFriend(presence_.SelectedNick);
    popULAddFriends.Visible = !isFriend;
    popULRemFriends.Visible = isFriend;
}

void FriendsPanel::popULAddFriends_Click() {
    trapped(globError_, "popULAddFriends_Click", [&](Trap&) {
        const std::string nick = presence_.SelectedNick;
        friends_.AddFriend(nick);
        // He may have changed his state since the last reply.
        UserList2.MatchRename(nick, nick);
        friends_.SaveFriends();
    });
}

void FriendsPanel::popULRemFriends_Click() {
    trapped(globError_, "popULRemFriends_Click", [&](Trap&) {
        friends_.RemoveFriend(std::string(presence_.SelectedNick));
        friends_.SaveFriends();
    });
}

void FriendsPanel::RefreshFriends() {
    trapped(globError_, "RefreshFriends", [&](Trap& step) {
        presence_.RefreshIgnore();
        const UsersPanel::Reply online = users_.Online();
        std::vector<std::string> names;
        int count = 0;
        for (const std::string& nick : friends_.FriendList()) {
            names.push_back(presence_.shownName(nick));
            if (online->find(nick) != nullptr) ++count;
        }
        const std::vector<Notice> notices = comings();
        lastOnline_ = online;
        UserList2.Refresh(names, "@friend");
        Label22.Caption = "Friends: " + CStr(count);
        // Last, since whoever hears of it may do anything.
        tell(step, notices);
    });
}

// Each friend is looked for by his whole bare nick: names that contain each other are not one.
std::vector<Notice> FriendsPanel::comings() const {
    std::vector<Notice> notices;
    for (const std::string& nick : friends_.FriendList()) {
        const bool isThere = users_.Online()->find(nick) != nullptr;
        if (isThere == (lastOnline_->find(nick) != nullptr)) continue;
        Notice notice;
        notice.Title = "Friends";
        notice.Text = "User " + nick + (isThere ? " has gone online" : " has gone offline");
        notice.Kind = isThere ? NoticeKind::Other : NoticeKind::FriendGone;
        notice.Value = NoticePicture;
        notices.push_back(std::move(notice));
    }
    return notices;
}

void FriendsPanel::tell(Trap& step, const std::vector<Notice>& notices) {
    for (const Notice& notice : notices) {
        if (settings_.Get(Section::Settings, "PopupFriend", "T") != "T") continue;
        step([&] { gate_.NotifyHost(notice); });
    }
}

}  // namespace talvora
