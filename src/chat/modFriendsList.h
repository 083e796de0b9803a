#pragma once
// The user's friends: bare nicks in System\Friends.lst, one a line, lines ended by CR LF. The program has
// one list, for as long as it runs. What could not be read is not written over.

#include <optional>
#include <string>
#include <vector>

#include "common/Trap.h"
#include "platform/Files.h"

namespace talvora {

class modFriendsList {
  public:
    using Text = const std::string&;

    static constexpr const char* ListFile = R"(System\Friends.lst)";
    // A list beyond this is taken for damaged, in bytes.
    static constexpr std::int64_t LongestList = 1 << 20;

    modFriendsList(GlobError& globError, Files& files) : globError_(globError), files_(files) {}

    // The list is to be drawn then, once there is a log-on. One that is not there is made, empty. Lines that
    // can hold no nick are reported together and left out.
    void LoadFriends();
    void SaveFriends();
    // All work on the bare nick. One that is nothing but a state stands in no list.
    void AddFriend(Text Nick);
    // Exactly as it is written, and as plain text: the end of a longer nick is cut too, and what is left of
    // that one is glued to the next.
    void RemoveFriend(Text Nick);
    bool IsFriend(Text Nick) const;

    const std::vector<std::string>& FriendList() const { return FriendList_; }

    // One was added or removed.
    Event<> Changed;

  private:
    std::string read();

    GlobError& globError_;
    Files& files_;
    std::vector<std::string> FriendList_;
    std::optional<RuntimeError> unreadable_;
};

}  // namespace talvora
