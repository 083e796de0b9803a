#include "common/Numerics.h"
#include "irc/wire/Incoming.h"

namespace talvora {

namespace {

// Signs of ranks that the engine's owner does not know, as the nearest ones that it does.
char knownRank(char sign) {
    switch (sign) {
        case '%':
            return '+';
        case '~':
            [[fallthrough]];
        case '&':
            return '@';
        default:
            return sign;
    }
}

// Numerics that a server puts between 311 and 318, as far as the engine reads them or they are common.
bool belongsToWhois(int numeric) {
    switch (numeric) {
        case Numeric::WhoisSecureLine:
        case Numeric::WhoisCertificate:
        case Numeric::Away:
        case Numeric::WhoisRegistered:
        case Numeric::WhoisAdmin:
        case Numeric::WhoisServicesAdmin:
        case Numeric::WhoisHelper:
        case Numeric::WhoisServer:
        case Numeric::WhoisOperator:
        case Numeric::WhoisChannelOperator:
        case Numeric::WhoisIdle:
        case Numeric::WhoisChannels:
        case Numeric::WhoisSpecial:
        case Numeric::WhoisWebUser:
        case Numeric::WhoisMasked:
        case Numeric::WhoisRealHost:
        case Numeric::WhoisAccount:
        case Numeric::WhoisBot:
        case Numeric::WhoisText:
        case Numeric::WhoisActually:
        case Numeric::WhoisOperatorName:
        case Numeric::WhoisCountry:
        case Numeric::WhoisGateway:
        case Numeric::WhoisHost:
        case Numeric::WhoisModes:
        case Numeric::WhoisNetwork:
        case Numeric::WhoisCloak:
        case Numeric::WhoisBotKind:
        case Numeric::WhoisSecure:
        case Numeric::WhoisLanguage:
            return true;
        default:
            return false;
    }
}

}  // namespace

using Kind = ReplyKeeper::Kind;

void Incoming::piece(Kind kind, std::string_view key, std::string_view line, std::string& out) {
    if (profile_.has(Rewrite::OneReplyAtATime)) {
        replies_.keep(kind, key, line, out);
    } else {
        out.append(line).append("\r\n");
    }
}

void Incoming::names(const LineView& line, std::string& out) {
    sawNames_ = true;
    const auto channel = wordOf(line.rest, 2);
    const auto list = trailingStart(line.rest);
    names_.learn(channel);
    if (list != std::string_view::npos) names_.learnAll(line.rest.substr(list));
    if (!profile_.has(Rewrite::Names) || list == std::string_view::npos ||
        line.rest.find_first_of("%~&", list) == std::string_view::npos) {
        return piece(Kind::Names, channel, line.whole, out);
    }
    changed_ = line.whole;
    const auto start = line.head().size() + list;
    for (auto i = start; i < changed_.size(); ++i) {
        if (i == start || changed_[i - 1] == ' ') changed_[i] = knownRank(changed_[i]);
    }
    piece(Kind::Names, channel, changed_, out);
}

// A list of all channels ends with "*" for its name.
void Incoming::endOfNames(const LineView& line, std::string& out) {
    const auto channel = wordOf(line.rest, 1);
    bool any = sawNames_;
    sawNames_ = false;
    if (profile_.has(Rewrite::OneReplyAtATime)) {
        any = channel == "*" ? replies_.releaseAll(Kind::Names, out)
                             : replies_.release(Kind::Names, channel, out);
    }
    if (any || !profile_.has(Rewrite::Names)) pass(line, out);
}

void Incoming::who(const LineView& line, std::string& out) {
    sawWho_ = true;
    piece(Kind::Who, {}, withoutColons(line, 7), out);
}

void Incoming::endOfWho(const LineView& line, std::string& out) {
    const bool kept = replies_.release(Kind::Who, {}, out);
    const bool any = profile_.has(Rewrite::OneReplyAtATime) ? kept : sawWho_;
    sawWho_ = false;
    if (any || !profile_.has(Rewrite::Names)) pass(line, out);
}

void Incoming::whoisUser(const LineView& line, std::string& out) {
    const auto text = withoutColons(line, 4);
    piece(Kind::Whois, wordOf(line.rest, 1), text, out);
}

// Also every other numeric that needs nothing.
void Incoming::whoisPiece(const LineView& line, std::string& out) {
    if (belongsToWhois(line.numeric) && replies_.underWay(Kind::Whois)) {
        const auto nick = wordOf(line.rest, 1);
        if (replies_.underWay(Kind::Whois, nick)) return piece(Kind::Whois, nick, line.whole, out);
    }
    pass(line, out);
}

// The end names what was asked for, which may be a pattern.
void Incoming::endOfWhois(const LineView& line, std::string& out) {
    const auto asked = wordOf(line.rest, 1);
    if (!replies_.release(Kind::Whois, asked, out) && asked.find_first_of(",*?") != std::string_view::npos) {
        replies_.releaseAll(Kind::Whois, out);
    }
    pass(line, out);
}

void Incoming::endOf(Kind kind, const LineView& line, std::string& out) {
    replies_.releaseAll(kind, out);
    pass(line, out);
}

}  // namespace talvora
