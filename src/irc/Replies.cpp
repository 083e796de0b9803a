// Replies that the server spreads over many lines, collected in the one ReplyBuffer.

#include <utility>

#include "irc/IRCServ.h"

namespace talvora {

namespace {

constexpr std::string_view FieldSeparator = "\5";

// The fields of a WHOIS reply. "{NICK}" holds the user name of the reply; the nick itself is ReplyTarget.
constexpr std::string_view WhoisTemplate =
    "{NICK}\1{HOST}\1{REAL}\1{CHANS}\1{SERVER}\1{AWAYDESC}\1{IDLE}\1{SIGNON}\1{ISADMIN}";

struct Absent {
    std::string_view field;
    std::string_view text;
};
constexpr Absent AbsentFields[] = {
    {"{HOST}", "-"},  {"{NICK}", "-"},   {"{REAL}", "-"},
    {"{CHANS}", "-"}, {"{SERVER}", "-"}, {"{AWAYDESC}", "-"},
    {"{IDLE}", "0"},  {"{SIGNON}", "0"}, {"{ISADMIN}", "is a Normal User"},
};

}  // namespace

void IRCServ::replyTooLong() {
    ReplyBuffer.clear();
    limitExceeded("The server sent a reply without an end");
}

void IRCServ::fillIn(std::string_view field, std::string_view text) {
    if (!ReplyBuffer.replaceAll(field, text)) replyTooLong();
}

void IRCServ::onWhoisUser(const ServerLine& line, Trap& step) {
    std::string user;
    std::string host;
    if (!step([&] { user = line.word(2), host = line.word(3); })) return;
    ReplyTarget = line.word(1);
    if (!ReplyBuffer.assign(WhoisTemplate)) replyTooLong();
    fillIn("{NICK}", user);
    fillIn("{HOST}", host);
    fillIn("{REAL}", line.Tailing);
}

void IRCServ::onWhoisServer(const ServerLine& line, Trap& step) {
    step([&] { fillIn("{SERVER}", line.word(2) + ", " + line.Tailing); });
}

void IRCServ::onWhoisOperator(const ServerLine& line, Trap&) {
    fillIn("{ISADMIN}", line.Tailing);
}

void IRCServ::onWhoisIdle(const ServerLine& line, Trap& step) {
    step([&] {
        const std::string& signOn = line.word(3);
        fillIn("{IDLE}", line.word(2));
        fillIn("{SIGNON}", signOn);
    });
}

void IRCServ::onWhoisChannels(const ServerLine& line, Trap&) {
    fillIn("{CHANS}", line.Tailing);
}

void IRCServ::onEndOfWhois(const ServerLine&, Trap& step) {
    for (const Absent& absent : AbsentFields) fillIn(absent.field, absent.text);
    const StringArray results = ReplyBuffer.takeSplit("\1");
    const std::string nick = std::exchange(ReplyTarget, {});
    step([&] { WhoisReply.raise(results, nick); });
}

void IRCServ::onWhoLine(const ServerLine& line, Trap& step) {
    std::string row;
    const bool complete = step([&] {
        const std::size_t blank = line.Tailing.find(' ');
        std::string text;
        for (std::size_t i = 1; i <= 6; ++i) (text += line.word(i)) += FieldSeparator;
        if (blank == std::string::npos) throw RuntimeError(Fault::SubscriptOutOfRange);
        text.append(line.Tailing, 0, blank).append(FieldSeparator).append(line.Tailing, blank + 1);
        row = std::move(text);
    });
    if (complete && !ReplyBuffer.appendLine(row)) replyTooLong();
}

void IRCServ::onEndOfWho(const ServerLine&, Trap& step) {
    const StringArray list = ReplyBuffer.takeSplit("\r\n");
    step([&] { WHORespond.raise(list); });
}

void IRCServ::onListLine(const ServerLine& line, Trap& step) {
    step([&] {
        std::string row = line.word(1);
        row.append(FieldSeparator).append(line.word(2)).append(FieldSeparator).append(line.Tailing);
        if (!ReplyBuffer.appendLine(row)) replyTooLong();
    });
}

void IRCServ::onEndOfList(const ServerLine&, Trap& step) {
    const StringArray channels = ReplyBuffer.takeSplit("\r\n");
    step([&] { ChannelListReply.raise(channels); });
}

void IRCServ::onNames(const ServerLine& line, Trap& step) {
    step([&] { ReplyTarget = line.word(2); });
    if (!ReplyBuffer.appendNames(line.Tailing)) replyTooLong();
}

void IRCServ::onEndOfNames(const ServerLine&, Trap& step) {
    const StringArray names = ReplyBuffer.takeSplit(" ");
    const std::string channel = std::exchange(ReplyTarget, {});
    step([&] { NamesReceived.raise(channel, names); });
}

void IRCServ::onMotdLine(const ServerLine& line, Trap&) {
    if (MOTD.size() + line.Tailing.size() + 2 > ReplyText::Limit) {
        MOTD = {};
        limitExceeded("The server sent a message of the day without an end");
        return;
    }
    MOTD.append(line.Tailing).append("\r\n");
}

void IRCServ::onMotdStart(const ServerLine& line, Trap&) {
    MOTD = line.Tailing + "\r\n";
}

void IRCServ::onEndOfMotd(const ServerLine&, Trap& step) {
    tellMOTD(step);
}

void IRCServ::onUnknownCommand(const ServerLine&, Trap& step) {
    MOTD = "- There is no MOTD";
    tellMOTD(step);
}

// A copy: a handler may let in a line that begins the next one.
void IRCServ::tellMOTD(Trap& step) {
    const std::string text = MOTD;
    step([&] { MOTDReceived.raise(text); });
}

}  // namespace talvora
