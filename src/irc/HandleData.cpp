// The line reader: a line to its words, the words to a handler.

#include <algorithm>
#include <iterator>

#include "common/Numerics.h"
#include "irc/IRCServ.h"
#include "platform/Text.h"

namespace talvora {

constexpr IRCServ::NumericRow IRCServ::numerics[] = {
    {Numeric::Welcome, &IRCServ::onWelcome},                   // logged in
    {Numeric::Bounce, &IRCServ::onBounce},                     //
    {Numeric::LocalUsers, &IRCServ::onLocalUsers},             //
    {Numeric::GlobalUsers, &IRCServ::onGlobalUsers},           //
    {Numeric::Away, &IRCServ::onAway},                         // somebody is away
    {Numeric::NoLongerAway, &IRCServ::onBack},                 // this user is no longer away
    {Numeric::NowAway, &IRCServ::onMarkedAway},                //
    {Numeric::WhoisUser, &IRCServ::onWhoisUser},               // a WHOIS reply begins
    {Numeric::WhoisServer, &IRCServ::onWhoisServer},           //
    {Numeric::WhoisOperator, &IRCServ::onWhoisOperator},       //
    {Numeric::EndOfWho, &IRCServ::onEndOfWho},                 //
    {Numeric::WhoisIdle, &IRCServ::onWhoisIdle},               //
    {Numeric::EndOfWhois, &IRCServ::onEndOfWhois},             //
    {Numeric::WhoisChannels, &IRCServ::onWhoisChannels},       //
    {Numeric::List, &IRCServ::onListLine},                     // a channel of the server's list
    {Numeric::EndOfList, &IRCServ::onEndOfList},               //
    {Numeric::Who, &IRCServ::onWhoLine},                       // a user of a WHO reply
    {Numeric::Names, &IRCServ::onNames},                       // a piece of a names list
    {Numeric::EndOfNames, &IRCServ::onEndOfNames},             // the list is whole
    {Numeric::Motd, &IRCServ::onMotdLine},                     //
    {Numeric::MotdStart, &IRCServ::onMotdStart},               //
    {Numeric::EndOfMotd, &IRCServ::onEndOfMotd},               //
    {Numeric::NoSuchNick, &IRCServ::onNoSuchNick},             //
    {Numeric::CannotSendToChannel, &IRCServ::onNotInChannel},  //
    {Numeric::UnknownCommand,
     &IRCServ::onUnknownCommand},                       // stands for an empty message of the day, on purpose
    {Numeric::NoNicknameGiven, &IRCServ::onNickError},  //
    {Numeric::ErroneousNickname, &IRCServ::onNickError},  //
    {Numeric::NicknameInUse, &IRCServ::onNickInUse},      //
    {Numeric::NickCollision, &IRCServ::onNickInUse},      //
    {Numeric::NickTooFast, &IRCServ::onNickTooFast},      //
    {Numeric::NotOnChannel, &IRCServ::onNotInChannel},    //
    {Numeric::InviteOnly, &IRCServ::onInviteOnly},        //
    {Numeric::BannedFromChannel, &IRCServ::onBanned},     //
    {Numeric::KeyRequired, &IRCServ::onKeyRequired},      //
    {Numeric::AlreadyJoined, &IRCServ::onAlreadyJoined},  //
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
