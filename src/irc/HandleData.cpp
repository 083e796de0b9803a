// The line reader: a line to its words, the words to a handler.

#include <algorithm>
#include <iterator>

#include "irc/IRCServ.h"
#include "platform/Text.h"

namespace talvora {

constexpr IRCServ::NumericRow IRCServ::numerics[] = {
    {1, &IRCServ::onWelcome},           // logged in
    {5, &IRCServ::onBounce},            //
    {265, &IRCServ::onLocalUsers},      //
    {266, &IRCServ::onGlobalUsers},     //
    {301, &IRCServ::onAway},            // somebody is away
    {305, &IRCServ::onBack},            // this user is no longer away
    {306, &IRCServ::onMarkedAway},      //
    {311, &IRCServ::onWhoisUser},       // a WHOIS reply begins
    {312, &IRCServ::onWhoisServer},     //
    {313, &IRCServ::onWhoisOperator},   //
    {315, &IRCServ::onEndOfWho},        //
    {317, &IRCServ::onWhoisIdle},       //
    {318, &IRCServ::onEndOfWhois},      //
    {319, &IRCServ::onWhoisChannels},   //
    {322, &IRCServ::onListLine},        // a channel of the server's list
    {323, &IRCServ::onEndOfList},       //
    {352, &IRCServ::onWhoLine},         // a user of a WHO reply
    {353, &IRCServ::onNames},           // a piece of a names list
    {366, &IRCServ::onEndOfNames},      // the list is whole
    {372, &IRCServ::onMotdLine},        //
    {375, &IRCServ::onMotdStart},       //
    {376, &IRCServ::onEndOfMotd},       //
    {401, &IRCServ::onNoSuchNick},      //
    {404, &IRCServ::onNotInChannel},    //
    {421, &IRCServ::onUnknownCommand},  // stands for an empty message of the day, on purpose
    {431, &IRCServ::onNickError},       //
    {432, &IRCServ::onNickError},       //
    {433, &IRCServ::onNickInUse},       //
    {436, &IRCServ::onNickInUse},       //
    {438, &IRCServ::onNickTooFast},     //
    {442, &IRCServ::onNotInChannel},    //
    {473, &IRCServ::onInviteOnly},      //
    {474, &IRCServ::onBanned},          //
    {475, &IRCServ::onKeyRequired},     //
    {927, &IRCServ::onAlreadyJoined},   //
};

constexpr IRCServ::WordRow IRCServ::words[] = {
    {"PRIVMSG", &IRCServ::onPrivmsg}, {"NOTICE", &IRCServ::onNotice}, {"JOIN", &IRCServ::onJoin},
    {"PART", &IRCServ::onPart},       {"QUIT", &IRCServ::onQuit},     {"NICK", &IRCServ::onNick},
    {"PING", &IRCServ::onPing},       {"MODE", &IRCServ::onMode},     {"KICK", &IRCServ::onKick},
};

IRCServ::Handler IRCServ::findNumeric(std::int32_t number) {
    constexpr auto ascending = [] {
        for (std::size_t i = 1; i < std::size(numerics); ++i) {
            if (numerics[i - 1].number >= numerics[i].number) return false;
        }
        return true;
    };
    static_assert(ascending(), "the table is searched by halving");
    const auto* row = std::lower_bound(std::begin(numerics), std::end(numerics), number,
                                       [](const NumericRow& r, std::int32_t n) { return r.number < n; });
    return row != std::end(numerics) && row->number == number ? row->handler : nullptr;
}

IRCServ::Handler IRCServ::findWord(std::string_view word) {
    for (const WordRow& row : words) {
        if (row.word == word) return row.handler;
    }
    return nullptr;
}

void IRCServ::HandleData(const std::string& line) {
    trapped(globError_, "HandleData", [&](Trap& step) {
        ServerLinePool::Lease parts(lines_);
        if (step([&] { parts->read(line); })) dispatch(*parts, step);
    });
}

void IRCServ::dispatch(const ServerLine& line, Trap& step) {
    Handler handler = nullptr;
    if (line.IsNumber) {
        step([&] { ServerRespond.raise(line.Number, line.Parameters, line.Tailing); });
        handler = findNumeric(line.Number);
    } else {
        step([&] { ServerStrRespond.raise(line.Cmd, line.Parameters, line.Tailing); });
        handler = findWord(line.Cmd);
    }
    if (handler != nullptr) (this->*handler)(line, step);
}

bool IRCServ::isOwnNick(const std::string& nick) const {
    constexpr auto trimmed = [](std::string_view text) {
        const std::size_t first = text.find_first_not_of(' ');
        if (first == std::string_view::npos) return std::string_view();
        return text.substr(first, text.find_last_not_of(' ') - first + 1);
    };
    return EqualText(trimmed(nick), trimmed(CurNick));
}

}  // namespace talvora
