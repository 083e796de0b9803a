#include "chat/modFriendsList.h"

#include <algorithm>

#include "chat/modNickDecode.h"
#include "platform/Text.h"

namespace talvora {
namespace {

constexpr std::string_view FriendLineEnd = "\r\n";
constexpr std::string_view NickMark = "\5";  // between the nicks of the list's working form

bool isDamaged(const std::string& line) {
    return std::ranges::any_of(line, [](unsigned char c) { return c < ' '; });
}

}  // namespace

void modFriendsList::LoadFriends() {
    trapped(globError_, "LoadFriends", [&](Trap& step) {
        std::string text;
        if (!step([&] { text = read(); })) return;
        text = Replace(text, "\r\n\r\n", FriendLineEnd);
        if (text.ends_with(FriendLineEnd)) text.resize(text.size() - FriendLineEnd.size());
        FriendList_ = Split(text, FriendLineEnd);
        if (std::erase_if(FriendList_, isDamaged) != 0)
            step([] { throw RuntimeError(Fault::BadRecordNumber); });
    });
}

std::string modFriendsList::read() {
    unreadable_.reset();
    try {
        if (!files_.Exists(ListFile)) files_.Rewrite(ListFile, "");
        if (files_.FileLen(ListFile) > LongestList) throw RuntimeError(Fault::BadRecordNumber);
        return files_.ReadWhole(ListFile);
    } catch (const RuntimeError& fault) {
        unreadable_ = fault;
        throw;
    }
}

void modFriendsList::SaveFriends() {
    trapped(globError_, "SaveFriends", [&](Trap& step) {
        std::string text;
        for (const std::string& nick : FriendList_) text.append(nick).append(FriendLineEnd);
        step([&] {
            if (unreadable_) throw RuntimeError(*unreadable_);
            files_.Rewrite(ListFile, text);
        });
    });
}

bool modFriendsList::IsFriend(Text Nick) const {
    const std::string_view bare = bareNickOf(Nick);
    return std::ranges::any_of(FriendList_, [&](const auto& nick) { return EqualText(nick, bare); });
}

void modFriendsList::AddFriend(Text Nick) {
    const std::string bare = TruncNick(Nick);
    if (bare.empty() || IsFriend(bare)) return;
    FriendList_.push_back(bare);
    Changed.raise();
}

void modFriendsList::RemoveFriend(Text Nick) {
    const std::string bare = TruncNick(Nick);
    if (bare.empty()) return;
    std::string list = Join(FriendList_, NickMark).append(NickMark);
    list = Replace(list, bare + std::string(NickMark), "");
    list = Replace(list, "\5\5", "");
    if (list.ends_with(NickMark)) list.pop_back();
    FriendList_ = Split(list, NickMark);
    Changed.raise();
}

}  // namespace talvora
