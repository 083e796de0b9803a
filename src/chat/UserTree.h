#pragma once
// The tree of all users on line, by the place that each registered one carries in his real name. The rules
// build it from nothing for each reply of the server: `Clear`, `AddUser` for each user, and `Refresh`, which
// shows what has been built; TreeView1 keeps what is the same. Belongs to the main window.
//
// All trees and lists of users are bounded together (UserMemory): whom there is no room for is left out.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "chat/modNickDecode.h"
#include "platform/TreeView.h"

namespace talvora {

class UserTree {
  public:
    using Text = const std::string&;

    // The image of a group; a user has that of his state, a byte.
    static constexpr int GroupImage = 256;
    // Groups of one path; what is deeper is left out of it, and the user stands below the last.
    static constexpr std::size_t MostGroups = 30;
    // The texts of the two roots, in their order.
    static constexpr const char* Registered = "Registered Users";
    static constexpr const char* Unknown = "Unknown users";

    UserTree(GlobError& globError, modNickDecode& nickDecode);
    UserTree(const UserTree&) = delete;
    UserTree& operator=(const UserTree&) = delete;
    ~UserTree();

    TreeView TreeView1;  // changed by Refresh alone
    // The users added since the last Clear who are on line in no state that is pictured otherwise.
    std::int32_t OnlineCount = 0;

    void Clear();
    // The nick as it came, with its state.
    void AddUser(Text RealName, Text Host, Text Nick);
    void Refresh();

    // Of a user, never of a group; the nick is as it came. The position has one pixel added.
    Event<Text, Text, Text> ClickUser;  // Nick, Path, IP
    static std::string NickOf(const Node& user) { return keyOf(user.Key()).nick; }
    Event<Text, Text, Text> DblClickUser;
    Event<Text, Text, Text, int, int, int, int> MouseUp;  // and Button, Shift, x, y

  private:
    struct User {
        std::string path = {};
        std::string key = {};
        std::string bareNick = {};
        std::string description = {};
        int icon = 0;
    };
    struct Key {
        std::string nick, path, ip;
    };

    void plan();
    static Key keyOf(Text text);
    void UserAddEx(const PlannedNode& root, const User& user);
    const PlannedNode* add(const PlannedNode* parent, PlannedNode node);
    const Node* selectedUser() const;

    GlobError& globError_;
    modNickDecode& nickDecode_;
    TreePlan plan_;
    std::size_t planned_ = 0;  // of the shared memory, by the plan
    std::size_t shown_ = 0;    // and by the nodes
    std::vector<std::string_view> pieces_;
    Subscriptions on_;
};

}  // namespace talvora
