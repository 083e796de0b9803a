#include "irc/wire/Incoming.h"

#include <algorithm>

#include "common/Numerics.h"

namespace talvora {

namespace {

enum class Word { Join, Part, Nick, Kick, Mode, Text, Ping, Quit, Other };

Word wordKind(std::string_view command) {
    struct Row {
        std::string_view name;
        Word kind;
    };
    static constexpr Row rows[] = {
        {"PRIVMSG", Word::Text}, {"NOTICE", Word::Text}, {"JOIN", Word::Join},
        {"PART", Word::Part},    {"QUIT", Word::Quit},   {"NICK", Word::Nick},
        {"MODE", Word::Mode},    {"KICK", Word::Kick},   {"PING", Word::Ping},
    };
    for (const auto& row : rows) {
        if (sameAscii(row.name, command)) return row.kind;
    }
    return Word::Other;
}

void append(std::string& out, std::string_view a, std::string_view b, std::string_view c = {}) {
    out.append(a).append(b).append(c).append("\r\n");
}

}  // namespace

void Incoming::reset() {
    modes_ = ModeLetters{};
    replies_.drop();
    sawNames_ = sawWho_ = false;
}

void Incoming::line(std::string_view text, std::string& out) {
    if (profile_.RemoveTags && !text.empty() && text[0] == '@') {
        text.remove_prefix(std::min(text.find(' '), text.size()));
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        if (text.empty()) return;
    }
    const LineView view(text);
    if (view.numeric >= 0) {
        numeric(view, out);
    } else {
        word(view, out);
    }
}

void Incoming::word(const LineView& line, std::string& out) {
    switch (wordKind(line.command)) {
        case Word::Text:
            return text(line, out);
        case Word::Join:
            return join(line, out);
        case Word::Part:
            return part(line, out);
        case Word::Nick:
            return nick(line, out);
        case Word::Kick:
            return kick(line, out);
        case Word::Mode:
            return mode(line, out);
        case Word::Ping:
            [[fallthrough]];
        case Word::Quit:
            return passWithColon(line, 0, out);
        case Word::Other:
            return pass(line, out);
    }
}

void Incoming::numeric(const LineView& line, std::string& out) {
    using Kind = ReplyKeeper::Kind;
    switch (line.numeric) {
        case Numeric::Welcome:
            return welcome(line, out);
        case Numeric::Bounce:
            return support(line, out);
        case Numeric::GlobalUsers:
            return globalUsers(line, out);
        case Numeric::WhoisUser:
            return whoisUser(line, out);
        case Numeric::EndOfWhois:
            return endOfWhois(line, out);
        case Numeric::ListStart:
            [[fallthrough]];
        case Numeric::List:
            return piece(Kind::List, {}, line.whole, out);
        case Numeric::EndOfList:
            return endOf(Kind::List, line, out);
        case Numeric::Who:
            return who(line, out);
        case Numeric::EndOfWho:
            return endOfWho(line, out);
        case Numeric::Names:
            return names(line, out);
        case Numeric::EndOfNames:
            return endOfNames(line, out);
        case Numeric::Motd:
            [[fallthrough]];
        case Numeric::MotdStart:
            return piece(Kind::Motd, {}, line.whole, out);
        case Numeric::EndOfMotd:
            return endOf(Kind::Motd, line, out);
        case Numeric::DisplayedHost:
            return host(line, out);
        case Numeric::CannotSendToChannel:
            return cannotSend(line, out);
        default:
            return whoisPiece(line, out);
    }
}

// The engine needs a blank behind every command, and something in every line.
void Incoming::pass(const LineView& line, std::string& out) const {
    const bool fix = profile_.has(Rewrite::EmptyText);
    if (fix && line.command.empty() && line.rest.empty()) return;
    append(out, line.whole, fix && !line.blankBehind ? " " : "");
}

void Incoming::join(const LineView& line, std::string& out) {
    const auto channel = wordOf(line.rest, 0);
    names_.learn(channel);
    names_.learn(line.nick());
    if (own_.isOwn(line.nick())) {
        own_.join(channel);
        own_.learnPrefix(line.prefix);
    }
    // Whatever stands behind the channel, the engine takes the last text for it.
    if (profile_.has(Rewrite::LastColon) && !channel.empty() && line.rest[0] != ':') {
        return append(out, line.head(), ":", channel);
    }
    pass(line, out);
}

void Incoming::part(const LineView& line, std::string& out) {
    const LineWords words(line.rest);
    if (own_.isOwn(line.nick())) own_.part(words[0]);
    if (!profile_.has(Rewrite::LastColon)) return pass(line, out);
    if (words.isTrailing(0)) return passWithoutColon(line, words, out);
    passWithColon(line, 1, out);
}

void Incoming::nick(const LineView& line, std::string& out) {
    names_.learn(wordOf(line.rest, 0));
    if (own_.isOwn(line.nick())) {
        own_.changeNick(wordOf(line.rest, 0));
        own_.learnPrefix(line.prefix);
    }
    passWithColon(line, 0, out);
}

void Incoming::kick(const LineView& line, std::string& out) {
    const LineWords words(line.rest);
    if (own_.isOwn(words[1])) own_.part(words[0]);
    if (profile_.has(Rewrite::LastColon) && words.isTrailing(1)) return passWithoutColon(line, words, out);
    passWithColon(line, 2, out);
}

void Incoming::text(const LineView& line, std::string& out) {
    names_.learn(line.nick());
    names_.learn(wordOf(line.rest, 0));
    const auto start = trailingStart(line.rest);
    if (start == std::string_view::npos) {
        const bool readable = profile_.has(Rewrite::LastColon) && !wordOf(line.rest, 1).empty();
        if (profile_.has(Rewrite::EmptyText) && !readable) return;
        return passWithColon(line, 1, out);
    }
    if (profile_.has(Rewrite::EmptyText) && start == line.rest.size()) return;
    pass(line, out);
}

// Gives the colon to the word of this index, if it is there, and no earlier word has it.
void Incoming::passWithColon(const LineView& line, std::size_t index, std::string& out) const {
    if (!profile_.has(Rewrite::LastColon) || trailingStart(line.rest) != std::string_view::npos) {
        return pass(line, out);
    }
    const auto word = wordOf(line.rest, index);
    if (word.empty()) return pass(line, out);
    const auto at = static_cast<std::size_t>(word.data() - line.whole.data());
    append(out, line.whole.substr(0, at), ":", line.whole.substr(at));
}

// Takes the colon off the last word.
void Incoming::passWithoutColon(const LineView& line, const LineWords& words, std::string& out) const {
    const auto last = words[words.size() - 1];
    const auto at = static_cast<std::size_t>(last.data() - line.whole.data());
    append(out, line.whole.substr(0, at - 1), last);
}

}  // namespace talvora
