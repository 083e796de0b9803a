#pragma once
// Which nick the user carries and which one he should: the bare nick, behind it the suffix of the state that
// he has chosen, and what the main window shows of that. The main window owns it. Whoever wants another nick
// asks here, and whoever shows the state or depends on it looks here. The nick in force and the one asked for
// are the engine's; this hears what became of them.

#include <string>

#include "chat/modNickDecode.h"
#include "irc/IRCServ.h"

namespace talvora {

class UserState {
  public:
    UserState(IRCServ& engine, modNickDecode& nicks);

    // The bare nick. One that begins with a bracket is no suffix alone.
    const std::string& gNickname() const { return gNickname_; }
    // The nick that the user should carry: the bare one with the suffix of his state.
    std::string Nick() const { return gNickname_ + suffix_; }
    // The nick that others see him by; off line, the one of the next log-on.
    const std::string& Carried() const { return carried_; }
    // While the tag of the state that he should carry is "DND".
    bool DoNotDisturb() const;
    // What the main window shows: "Online" or the tag, and a picture of the state.
    std::string Name() const;
    int Picture() const { return picture_; }
    // Any of these may be another one.
    Event<> Changed;

    // The nick of the settings, of which the bare one counts: at the start in any case, later if it is news,
    // for the network may have given the user another one since. The state stays.
    void Start(const std::string& setting);
    void Reload(const std::string& setting);
    bool IsNews(const std::string& setting) const { return setting != setting_; }

    // Another state: "[" tag "]", or nothing for "Online".
    void Choose(const std::string& suffix, int picture);
    // Another nick, with a suffix or without one. A server's answer decides; off line it is carried at once.
    void Ask(const std::string& nick);

  private:
    void IRCServ1_LoginOK();
    void IRCServ1_SocketDisconnect();
    void carry(const std::string& nick);
    void follow(const std::string& nick);
    void refused();

    IRCServ& IRCServ1;
    modNickDecode& nicks_;
    std::string setting_;  // as it was read last
    std::string gNickname_;
    std::string suffix_;
    std::string carried_;
    std::string asked_;  // of a server, which has not answered yet
    std::string shown_;  // the suffix that the main window shows in words and as a picture
    int picture_ = modNickDecode::OnlineIcon;
    bool loggingOn_ = false;  // a server has been told a nick and has not welcomed it yet
    Subscriptions on_;
};

}  // namespace talvora
