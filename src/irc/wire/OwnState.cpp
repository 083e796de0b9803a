#include "irc/wire/OwnState.h"

#include "irc/wire/LineView.h"

namespace talvora {

namespace {

void remember(std::string& place, std::string_view text) {
    if (!text.empty() && text.size() <= OwnState::LongestName) place = text;
}

std::string lower(std::string_view text) {
    std::string result;
    appendLower(text, result);
    return result;
}

}  // namespace

void OwnState::reset() {
    *this = OwnState{};
}

void OwnState::askFor(std::string_view nick) {
    if (!loggedIn_) remember(nick_, nick);
}

void OwnState::welcome(std::string_view nick, std::string_view server) {
    loggedIn_ = true;
    remember(nick_, nick);
    remember(server_, server);
}

void OwnState::changeNick(std::string_view nick) {
    remember(nick_, nick);
}

bool OwnState::isOwn(std::string_view nick) const {
    return !nick_.empty() && sameAscii(nick, nick_);
}

void OwnState::learnPrefix(std::string_view prefix) {
    const auto mark = prefix.find('!');
    if (mark != std::string_view::npos && prefix.find('@', mark) != std::string_view::npos) {
        learnHost(prefix.substr(mark + 1));
    }
}

void OwnState::learnHost(std::string_view host) {
    if (host.empty() || host.size() > LongestName) return;
    const auto at = host.find('@');
    if (at != std::string_view::npos) {
        userLength_ = at;
        host.remove_prefix(at + 1);
    }
    hostLength_ = host.size();
}

void OwnState::join(std::string_view channel) {
    if (joined_.size() < MostChannels && !channel.empty() && channel.size() <= LongestName) {
        joined_.insert(lower(channel));
    }
}

void OwnState::part(std::string_view channel) {
    if (!joined_.empty() && channel.size() <= LongestName) joined_.erase(lower(channel));
}

bool OwnState::isIn(std::string_view channel) const {
    return !joined_.empty() && channel.size() <= LongestName && joined_.count(lower(channel)) != 0;
}

}  // namespace talvora
