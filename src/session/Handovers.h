#pragma once
// What the session hands over to the windows and services around it. Each is implemented by the feature that
// owns it; one that is not part of the program is a null pointer, and the session goes on without it.

#include <string>
#include <vector>

namespace talvora {

using NameList = std::vector<std::string>;

// The windows of channels, found by the channel's name.
class ChannelWindows {
  public:
    virtual ~ChannelWindows() = default;
    virtual void StartChan(const std::string& channel) = 0;
    virtual void RemoveChan(const std::string& channel) = 0;
    virtual void NamesChan(const std::string& channel, const NameList& names) = 0;
    virtual void JoinChan(const std::string& channel, const std::string& nick) = 0;
    virtual void PartChan(const std::string& channel, const std::string& nick) = 0;
    virtual void QuitChan(const std::string& nick) = 0;
    virtual void RenameChan(const std::string& oldNick, const std::string& newNick) = 0;
    virtual void ChanDistribute(const std::string& channel, const std::string& nick, const std::string& text,
                                const std::string& command) = 0;
};

// The windows of private chats, found by the other user's nick.
class PrivateWindows {
  public:
    virtual ~PrivateWindows() = default;
    virtual void PMDistribute(const std::string& nick, const std::string& text,
                              const std::string& command) = 0;
    virtual void EnterPM(const std::string& nick) = 0;
    virtual void QuitPM(const std::string& nick) = 0;
    virtual void RenamePM(const std::string& oldNick, const std::string& newNick) = 0;
};

// UserList1 of the main window: the users of all joined channels.
class ChannelUsers {
  public:
    virtual ~ChannelUsers() = default;
    virtual void Clear() = 0;
    virtual void Add(const std::string& nick, const std::string& channel) = 0;
    virtual void Part(const std::string& nick, const std::string& channel) = 0;
    virtual void Remove(const std::string& nick) = 0;
    virtual void Rename(const std::string& oldNick, const std::string& newNick) = 0;
};

// The tree of users by place, and the friends that are shown from the same reply.
class UserDirectory {
  public:
    virtual ~UserDirectory() = default;
    virtual void Clear() = 0;
    virtual void AddUser(const std::string& realName, const std::string& host, const std::string& nick) = 0;
    virtual int Count() const = 0;
    virtual void RefreshFriends() = 0;
};

class KeyPrompt {
  public:
    virtual ~KeyPrompt() = default;
    // Asks for the key of each channel of `list`, each followed by "|".
    virtual void ExecList(const std::string& list) = 0;
};

class MessageOfTheDay {
  public:
    virtual ~MessageOfTheDay() = default;
    virtual void Display(const std::string& text) = 0;
};

// Notes that never block their caller.
class NoteBox {
  public:
    virtual ~NoteBox() = default;
    virtual void Display(const std::string& text, const std::string& title, int icon) = 0;
};

class UserInformation {
  public:
    virtual ~UserInformation() = default;
    virtual void Reply(const NameList& whoisResults, const std::string& nick) = 0;
    virtual void Notice(const std::string& command, const std::string& text) = 0;
};

class MailService {
  public:
    virtual ~MailService() = default;
    virtual void CheckRCVMail() = 0;
    virtual void HandleMailCmd(const std::string& text) = 0;
};

class AnnouncementService {
  public:
    virtual ~AnnouncementService() = default;
    virtual void CheckAnn() = 0;
    virtual void HandleAnnData(const std::string& text) = 0;
};

struct Handovers {
    ChannelWindows* Channels = nullptr;
    PrivateWindows* Privates = nullptr;
    ChannelUsers* Users = nullptr;
    UserDirectory* Directory = nullptr;
    KeyPrompt* Keys = nullptr;
    MessageOfTheDay* MOTD = nullptr;
    NoteBox* Notes = nullptr;
    UserInformation* Whois = nullptr;
    MailService* Mail = nullptr;
    AnnouncementService* Announcements = nullptr;
};

}  // namespace talvora
