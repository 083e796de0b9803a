#include "irc/wire/Outgoing.h"

#include <algorithm>

#include "platform/CodePage1253.h"

namespace talvora {

namespace {

constexpr char Special = '\x01';

std::string userName(std::string_view name) {
    constexpr std::size_t longest = 9;
    std::string result;
    for (const char c : name.substr(0, name.find('['))) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (plain && result.size() < longest) result += c;
    }
    return result.empty() ? "user" : result;
}

Pacing::Kind pacingKind(const LineView& line) {
    if (sameAscii(line.command, "PONG")) return Pacing::Kind::AtOnce;
    if (sameAscii(line.command, "QUIT")) return Pacing::Kind::Last;
    if (!sameAscii(line.command, "NOTICE")) return Pacing::Kind::Own;
    const auto text = trailingStart(line.rest);
    const bool answer = text < line.rest.size() && line.rest[text] == Special;
    return answer ? Pacing::Kind::Answer : Pacing::Kind::Own;
}

std::string_view nextOf(std::string_view& list) {
    const auto item = list.substr(0, list.find(','));
    list.remove_prefix(std::min(item.size() + 1, list.size()));
    return item;
}

void addTo(std::string& list, bool first, std::string_view item) {
    if (!first) list += ',';
    list += item;
}

}  // namespace

void Outgoing::reset() {
    pacing_.reset();
    overflowed_ = passwordSent_ = false;
    heldNick_.clear();
    heldUser_.clear();
}

void Outgoing::line(std::string_view text, Microseconds now, std::string& toServer, std::string& toEngine) {
    if (profile_.has(Rewrite::ServerSpelling) && !isAscii(text)) {
        spell(text);
        text = spelled_;
    }
    const LineView line(text);
    if (sameAscii(line.command, "NICK")) return nick(line, now, toServer);
    if (sameAscii(line.command, "USER")) return user(line, now, toServer);
    if (sameAscii(line.command, "PASS")) return pass(line, now, toServer);
    if (sameAscii(line.command, "JOIN")) return join(line, now, toServer, toEngine);
    if (sameAscii(line.command, "PART")) leave(wordOf(line.rest, 0));
    const bool all = sameAscii(line.command, "WHO") && wordOf(line.rest, 0).empty();
    send(all && profile_.has(Rewrite::WhoAll) ? std::string_view("WHO *") : text, now, toServer);
}

// Puts the line into `spelled_`, its names as the server has them. The own nick's choice is the user's.
void Outgoing::spell(std::string_view text) {
    static constexpr std::string_view naming[] = {"PRIVMSG", "NOTICE", "JOIN",   "PART",  "NAMES", "MODE",
                                                  "KICK",    "TOPIC",  "INVITE", "WHOIS", "WHO"};
    const LineView line(text);
    const auto same = [&](std::string_view name) { return sameAscii(name, line.command); };
    spelled_ = text;
    if (std::none_of(std::begin(naming), std::end(naming), same)) return;
    // What stands behind a colon is text.
    auto words = line.rest.substr(0, line.rest.find(':'));
    spelled_ = line.head();
    while (!words.empty()) {
        const auto word = words.substr(0, words.find_first_of(" ,"));
        spelled_ += names_.spelled(word);
        words.remove_prefix(word.size());
        const auto gap = std::min(words.find_first_not_of(" ,"), words.size());
        spelled_ += words.substr(0, gap);
        words.remove_prefix(gap);
    }
    spelled_ += line.rest.substr(std::min(line.rest.find(':'), line.rest.size()));
}

void Outgoing::nick(const LineView& line, Microseconds now, std::string& toServer) {
    own_.askFor(wordOf(line.rest, 0));
    if (!holds()) return send(line.whole, now, toServer);
    heldNick_ = line.whole;
}

void Outgoing::user(const LineView& line, Microseconds now, std::string& toServer) {
    changed_ = line.whole;
    const auto name = wordOf(line.rest, 0);
    if (profile_.has(Rewrite::UserName) && !name.empty()) {
        const auto at = static_cast<std::size_t>(name.data() - line.whole.data());
        changed_.replace(at, name.size(), userName(name));
    }
    if (!holds()) return send(changed_, now, toServer);
    heldUser_ = changed_;
}

void Outgoing::pass(const LineView& line, Microseconds now, std::string& toServer) {
    send(line.whole, now, toServer);
    passwordSent_ = true;
    for (auto* held : {&heldNick_, &heldUser_}) {
        if (!held->empty()) send(*held, now, toServer);
        held->clear();
    }
}

void Outgoing::join(const LineView& line, Microseconds now, std::string& toServer, std::string& toEngine) {
    auto channels = wordOf(line.rest, 0);
    auto keys = wordOf(line.rest, 1);
    std::string left;
    std::string leftKeys;
    bool answered = false;
    bool first = true;
    while (profile_.has(Rewrite::Rejoin) && !channels.empty()) {
        const auto channel = nextOf(channels);
        const auto key = nextOf(keys);
        if (own_.isIn(channel)) {
            answerJoin(channel, toEngine);
            answered = true;
            continue;
        }
        addTo(left, first, channel);
        addTo(leftKeys, first, key);
        first = false;
    }
    if (!answered) return send(line.whole, now, toServer);
    if (left.empty()) return;
    changed_ = "JOIN " + left + " " + leftKeys.substr(0, leftKeys.find_last_not_of(',') + 1);
    send(changed_, now, toServer);
}

// At once: a JOIN right behind it is meant for the server, whose answer to this is still on its way.
void Outgoing::leave(std::string_view channels) {
    while (!channels.empty()) own_.part(nextOf(channels));
}

void Outgoing::answerJoin(std::string_view channel, std::string& toEngine) const {
    toEngine.append(":").append(own_.server().empty() ? std::string_view("server") : own_.server());
    toEngine.append(" 927 ").append(own_.nick()).append(" ").append(channel);
    toEngine.append(" :You are in that channel already\r\n");
}

void Outgoing::send(std::string_view text, Microseconds now, std::string& toServer) {
    wire_.clear();
    if (profile_.Encoding == Encoding::UTF8 && !isAscii(text)) {
        appendUtf8(wire_, text);
    } else {
        wire_ = text;
    }
    const LineView line(text);
    if (profile_.has(Rewrite::Length)) cut(line.command);
    wire_ += "\r\n";
    if (!profile_.has(Rewrite::Pacing)) {
        toServer += wire_;
    } else if (!pacing_.add(pacingKind(line), wire_, now, toServer)) {
        overflowed_ = true;
    }
}

void Outgoing::cut(std::string_view command) {
    const auto limit = limitOf(command);
    if (wire_.size() <= limit) return;
    const bool closed = wire_.back() == Special;
    auto end = limit - (closed ? 1 : 0);
    if (profile_.Encoding == Encoding::UTF8) {
        while (end > 0 && (static_cast<unsigned char>(wire_[end]) & 0xC0U) == 0x80) --end;
    }
    wire_.resize(end);
    if (closed) wire_ += Special;
}

// Texts are passed on behind the own prefix, ":" before it and a blank behind; the rest only has to arrive.
std::size_t Outgoing::limitOf(std::string_view command) const {
    static constexpr std::string_view relayed[] = {"PRIVMSG", "NOTICE", "TOPIC", "PART", "QUIT", "KICK"};
    const auto same = [&](std::string_view name) { return sameAscii(name, command); };
    if (std::none_of(std::begin(relayed), std::end(relayed), same)) return LongestSent;
    const auto taken = own_.prefixLength() + 2;
    return std::max(ShortestCut, LongestSent - std::min(taken, LongestSent));
}

}  // namespace talvora
