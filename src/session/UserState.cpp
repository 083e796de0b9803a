#include "session/UserState.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

// Where the suffix of a state begins, or the end of the nick.
std::size_t suffixOf(const std::string& nick) {
    return std::min(nick.find('[', 1), nick.size());
}

std::string tagOf(const std::string& suffix) {
    return suffix.empty() ? suffix : Replace(suffix.substr(1), "]", "");
}

}  // namespace

UserState::UserState(IRCServ& engine, modNickDecode& nicks) : IRCServ1(engine), nicks_(nicks) {
    on_ += engine.Logining.connect([this] { loggingOn_ = true; });
    on_ += engine.LoginOK.connect([this] { IRCServ1_LoginOK(); });
    on_ += engine.SocketDisconnect.connect([this] { IRCServ1_SocketDisconnect(); });
    on_ += engine.YouChangeNick.connect([this](IRCServ::Text nick) { carry(nick); });
    on_ += engine.NicknameError.connect([this](IRCServ::Text) { refused(); });
    on_ += engine.NicknameInUse.connect([this](IRCServ::Text) { refused(); });
}

bool UserState::DoNotDisturb() const {
    return UCase(tagOf(suffix_)) == "DND";
}

std::string UserState::Name() const {
    return shown_.empty() ? "Online" : ProperCase(tagOf(shown_));
}

void UserState::Start(const std::string& setting) {
    setting_ = setting;
    gNickname_ = setting.substr(0, suffixOf(setting));
}

void UserState::Reload(const std::string& setting) {
    if (IsNews(setting)) Start(setting);
}

void UserState::Choose(const std::string& suffix, int picture) {
    suffix_ = shown_ = suffix;
    picture_ = picture;
    Ask(Nick());
    Changed.raise();
}

void UserState::Ask(const std::string& nick) {
    const std::string wanted = OneLine(nick);
    IRCServ1.SetNickname(wanted);
    if (IRCServ1.LoggedIn) {
        asked_ = wanted == IRCServ1.Nickname() ? std::string() : wanted;
        return;
    }
    asked_.clear();
    // The engine has told this server another nick: the two would know the user by different ones.
    if (loggingOn_) IRCServ1.SendIRC("NICK " + wanted, true);
    carry(wanted);
}

// The log-on may have ended with another nick than it began with; the bare one to go back to stays.
void UserState::IRCServ1_LoginOK() {
    loggingOn_ = false;
    carried_ = IRCServ1.Nickname();
    follow(carried_);
    Changed.raise();
}

// What a server has not answered is carried at the next log-on.
void UserState::IRCServ1_SocketDisconnect() {
    loggingOn_ = false;
    if (asked_.empty()) return;
    const std::string nick = std::exchange(asked_, {});
    IRCServ1.SetNickname(nick);
    carry(nick);
}

void UserState::carry(const std::string& nick) {
    carried_ = nick;
    gNickname_ = nick.substr(0, suffixOf(nick));
    // Of several that were asked for the last one counts, and its answer comes.
    if (asked_.empty() || nick == asked_) {
        asked_.clear();
        follow(nick);
    }
    Changed.raise();
}

// The state is what the nick says, whoever has put it there.
void UserState::follow(const std::string& nick) {
    suffix_ = nick.substr(suffixOf(nick));
    if (EqualText(suffix_, shown_)) return;
    shown_ = suffix_;
    std::string decoded = suffix_;
    std::string description;
    std::uint8_t icon = 0;
    nicks_.GetNickDesc(decoded, description, icon);
    picture_ = icon;
}

// Others see the old nick on, so the user is not busy to them. What the window shows of his choice is not
// turned back; the line of trouble says what became of it. A nick refused at the log-on is asked for again.
void UserState::refused() {
    if (!IRCServ1.LoggedIn) return;
    asked_.clear();
    suffix_ = IRCServ1.Nickname().substr(suffixOf(IRCServ1.Nickname()));
}

}  // namespace talvora
