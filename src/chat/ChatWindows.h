#pragma once
// What the session needs of the chat windows: they are found by the name of the channel or of the peer,
// without regard to case.

#include <string>
#include <vector>

namespace talvora {

using NameList = std::vector<std::string>;

class ChannelWindows {
  public:
    virtual ~ChannelWindows() = default;
    virtual void StartChan(const std::string& channel) = 0;
    virtual void RemoveChan(const std::string& channel) = 0;
    // Nobody is known to be anywhere any more.
    virtual void ForgetUsers() = 0;
    virtual void NamesChan(const std::string& channel, const NameList& names) = 0;
    virtual void JoinChan(const std::string& channel, const std::string& nick) = 0;
    virtual void PartChan(const std::string& channel, const std::string& nick) = 0;
    virtual void QuitChan(const std::string& nick) = 0;
    virtual void RenameChan(const std::string& oldNick, const std::string& newNick) = 0;
    virtual void ChanDistribute(const std::string& channel, const std::string& nick, const std::string& text,
                                const std::string& command) = 0;
};

class PrivateWindows {
  public:
    virtual ~PrivateWindows() = default;
    virtual void StartPM(const std::string& nick) = 0;
    virtual void PMDistribute(const std::string& nick, const std::string& text,
                              const std::string& command) = 0;
    virtual void EnterPM(const std::string& nick) = 0;
    virtual void QuitPM(const std::string& nick) = 0;
    virtual void RenamePM(const std::string& oldNick, const std::string& newNick) = 0;
};

}  // namespace talvora
