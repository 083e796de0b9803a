#include "simulation/Relay.h"

#include <algorithm>
#include <set>

#include "platform/Text.h"

namespace talvora::test {

void Relay::serve(ScriptedServer& server) {
    links_.push_back(std::make_shared<Link>(server));
    // What is said to a server whose relay has gone is heard by nobody.
    server.whenHeard = [this, alive = std::weak_ptr(links_.back())] {
        const auto link = alive.lock();
        if (!link) return;
        for (const std::string& line : link->server.heard()) hear(*link, line);
    };
}

void Relay::hear(Link& from, const std::string& line) {
    const auto words = Split(line, " ");
    const std::string& verb = words.front();
    const std::string target = words.size() > 1 ? words[1] : "";
    if (verb == "NICK") rename(from, target);
    if (verb == "USER") logOn(from);
    if (verb == "QUIT") quit(from, line);
    if (verb == "JOIN") join(from, target);
    if (verb == "PART") part(from, target);
    if (verb == "NAMES") names(from, target);
    if (verb == "WHO") who(from);
    if (verb == "PRIVMSG" || verb == "NOTICE") text(from, target, line);
}

// One who logs on is in no channel yet, though nobody saw him leave.
void Relay::logOn(Link& from) {
    for (auto& channel : channels_) std::erase(channel.second, &from);
    from.welcome = true;
    from.server.says(":srv 001 " + from.nick + " :Welcome");
}

void Relay::rename(Link& from, const std::string& nick) {
    const std::string line = prefixOf(from) + "NICK :" + nick;
    from.nick = nick;
    if (!from.welcome) return;
    from.server.says(line);
    toMates(from, line);
}

void Relay::quit(Link& from, const std::string& line) {
    toMates(from, prefixOf(from) + line);
    for (auto& channel : channels_) std::erase(channel.second, &from);
    from.welcome = false;
    from.server.closes();
}

void Relay::join(Link& from, const std::string& channel) {
    auto& members = channels_[LCase(channel)];
    if (std::ranges::find(members, &from) != members.end()) return;
    members.push_back(&from);
    for (Link* member : members) member->server.says(prefixOf(from) + "JOIN :" + channel);
    names(from, channel);
}

void Relay::part(Link& from, const std::string& channel) {
    auto& members = channels_[LCase(channel)];
    for (Link* member : members) member->server.says(prefixOf(from) + "PART " + channel);
    std::erase(members, &from);
}

void Relay::names(Link& to, const std::string& channel) {
    std::string all;
    for (const Link* member : channels_[LCase(channel)]) all += (all.empty() ? "" : " ") + member->nick;
    to.server.says(":srv 353 " + to.nick + " = " + channel + " :" + all);
    to.server.says(":srv 366 " + to.nick + " " + channel + " :End of NAMES");
}

void Relay::who(Link& to) {
    for (const auto& link : links_) {
        if (!link->welcome) continue;
        to.server.says(":srv 352 " + to.nick + " * u h srv " + link->nick + " H :0 UL:Home");
    }
    to.server.says(":srv 315 " + to.nick + " * :End of WHO");
}

void Relay::text(Link& from, const std::string& target, const std::string& line) {
    if (target.starts_with('#')) {
        for (Link* member : channels_[LCase(target)]) {
            if (member != &from) member->server.says(prefixOf(from) + line);
        }
        return;
    }
    for (const auto& link : links_) {
        if (!link->welcome || !EqualText(link->nick, target)) continue;
        if (loses && loses(prefixOf(from) + line)) return;
        link->server.says(prefixOf(from) + line);
        return;
    }
    from.server.says(":srv 401 " + from.nick + " " + target + " :No such nick");
}

void Relay::toMates(const Link& from, const std::string& line) {
    std::set<Link*> mates;
    for (const auto& [name, members] : channels_) {
        if (std::ranges::find(members, &from) != members.end()) mates.insert(members.begin(), members.end());
    }
    for (Link* mate : mates) {
        if (mate != &from) mate->server.says(line);
    }
}

}  // namespace talvora::test
